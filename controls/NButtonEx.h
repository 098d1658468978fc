// Owner-drawn picture button: four pictures (normal, hover, pressed, disabled) and a
// size. A button without pictures draws its caption on the skin's gradient; a picture
// number with no bitmap behind it draws nothing.
#pragma once

#include "controls/Bitmap.h"
#include "controls/Control.h"
#include "controls/Layout.h"

#include <array>
#include <string>

namespace lumenor::controls {

class CNButtonEx : public CControl {
 public:
  enum Look { kNormal = 0, kHover = 1, kPressed = 2, kDisabled = 3 };

  // Makes the button as a child of `parent` with an empty caption.
  bool CreateButton(HWND parent, int id, const RECT& rect, const std::wstring& caption = L"");
  // Takes over a push button of a dialog template and makes it owner-drawn.
  bool Attach(HWND dialog, int id);

  // The pictures in the order normal, hover, pressed, disabled.
  void SetPictures(int normal, int hover, int pressed, int disabled);
  // Resizes the button, keeping its top left corner.
  bool SetSize(int width, int height) const;
  // The normal picture's size; zero without one.
  SIZE PictureSize() const { return pictures_[kNormal].Size(); }
  // Takes the normal picture's size, keeping `corner` where it is; a button without a
  // picture keeps its size.
  bool FitToPicture(Corner corner) const;

  // Which picture a button in the drawing state `itemState` (ODS_*) shows.
  Look LookFor(UINT itemState) const;
  bool Hovering() const { return hover_; }

  bool OnReflected(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Draw(const DRAWITEMSTRUCT& item) const;

  std::array<CBitmapResource, 4> pictures_;
  bool hasPictures_ = false;
  bool hover_ = false;
};

}  // namespace lumenor::controls
