// Skinned tab strip: a row of tabs, each drawn with three pictures (normal, hover,
// selected) side by side. Choosing a tab selects it and posts the owner's show-page
// message with the tab's index as the second parameter.
#pragma once

#include "controls/Bitmap.h"
#include "controls/Control.h"

#include <array>
#include <functional>
#include <vector>

namespace lumenor::controls {

class CMyTabCtrl : public CControl {
 public:
  enum class Look { kNormal = 0, kHover = 1, kSelected = 2 };
  // Size of a tab whose pictures are missing.
  static constexpr SIZE kFallbackTabSize{130, 48};

  // Makes the strip at `origin` of `parent`; a tab click posts `showMessage` to the parent.
  bool CreateStrip(HWND parent, int id, POINT origin, UINT showMessage);
  // Adds a tab with its pictures in the order normal, hover, selected; returns its index.
  int AddTab(int normal, int hover, int selected);

  // Selects a tab without posting anything; an index outside the strip leaves no tab
  // selected (the main window's help page has no tab).
  void Select(int index);
  int Selected() const { return selected_; }
  int TabCount() const { return static_cast<int>(tabs_.size()); }
  Look LookOf(int index) const;

  // The tab under a point of the strip's client area, or -1.
  int HitTest(POINT point) const;
  RECT TabRect(int index) const;
  SIZE StripSize() const;

  // With this set, clicking the tab that is already selected posts nothing.
  void PostOnlyOnChange(bool onlyOnChange) { onlyOnChange_ = onlyOnChange; }
  // While this answers true, clicks are ignored.
  void SetClickBlocker(std::function<bool()> blocked) { blocked_ = std::move(blocked); }

  // What a click at `point` does; the mouse handler calls it.
  void Click(POINT point);

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  struct Tab {
    std::array<CBitmapResource, 3> pictures;
  };
  SIZE TabSize(int index) const;
  void Paint(HDC dc) const;
  void SetHot(int index);

  std::vector<Tab> tabs_;
  int selected_ = -1;
  int hot_ = -1;
  UINT showMessage_ = 0;
  bool onlyOnChange_ = false;
  std::function<bool()> blocked_;
};

}  // namespace lumenor::controls
