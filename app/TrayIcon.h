// The program's icon in the notification area: the icon record kept for the whole run,
// the balloon, the four-frame animation while a worker runs, and the owner-drawn menu
// built on its first use. Mouse messages and menu choices go to the owner window.
#pragma once

#include "controls/GdiOwners.h"
#include "controls/MyMenu.h"

#include <windows.h>

#include <shellapi.h>

#include <array>
#include <string>

namespace lumenor {

class CTrayIcon {
 public:
  static constexpr UINT_PTR kAnimationTimer = 1000;
  static constexpr UINT kAnimationPeriodMs = 500;
  static constexpr int kMainIconFrame = -1;

  CTrayIcon();
  CTrayIcon(const CTrayIcon&) = delete;
  CTrayIcon& operator=(const CTrayIcon&) = delete;
  ~CTrayIcon();

  // Adds the icon, with `owner` receiving its callback message; false without a
  // notification area.
  bool Add(HWND owner);
  void Remove();

  // The workers' status: start runs the animation on the owner's timer, stop ends it and
  // puts the main icon back (with the balloon while the owner is hidden).
  void StartAnimation(const std::wstring& title, const std::wstring& text);
  void StopAnimation(const std::wstring& title, const std::wstring& text, bool ownerVisible, int count);
  // One tick of the animation. While the owner is hidden the balloon shows the text and
  // `count`. kMainIconFrame puts the main icon back.
  void Animate(int frame, bool ownerVisible, int count);
  void AnimateNextFrame(bool ownerVisible, int count) { Animate(frame_, ownerVisible, count); }
  // A balloon over the icon, e.g. when a scheduled scan starts.
  void ShowBalloon(const std::wstring& title, const std::wstring& text, UINT timeoutMs);

  // Shows the menu at the cursor; the choice arrives at the owner as WM_COMMAND.
  void ShowMenu();
  // The owner hands these on: the menu is drawn by its owner window.
  bool OnMeasureItem(MEASUREITEMSTRUCT& measure) const { return menu_.OnMeasureItem(measure); }
  bool OnDrawItem(const DRAWITEMSTRUCT& draw) { return menu_.OnDrawItem(draw); }

  HICON MainIcon() const { return mainIcon_.Get(); }
  const NOTIFYICONDATAW& Record() const { return record_; }
  bool Added() const { return added_; }
  bool MenuBuilt() const { return menu_.Built(); }
  const std::wstring& Title() const { return title_; }

 private:
  bool Modify();

  HWND owner_ = nullptr;
  NOTIFYICONDATAW record_{};
  bool added_ = false;
  controls::CMyMenu menu_;
  std::wstring title_;
  std::wstring text_;
  int frame_ = 0;
  controls::OwnedIcon mainIcon_;
  std::array<controls::OwnedIcon, 4> frameIcons_;
};

}  // namespace lumenor
