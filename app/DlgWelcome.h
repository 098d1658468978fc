// The splash shown while the catalogue is built: a borderless picture centred on the
// screen. With ShowPlainPicture at 0 it would show its OK button over the other picture;
// the program only ever shows the plain one.
#pragma once

#include "controls/Bitmap.h"
#include "controls/Dialog.h"

namespace lumenor {

class CDlgWelcome : public controls::CDialog {
 public:
  // The size of the splash picture, should it be missing.
  static constexpr int kWidth = 456;
  static constexpr int kHeight = 300;

  CDlgWelcome();
  int ShowPlainPicture = 1;
  SIZE PictureSize() const { return picture_.Size(); }

 protected:
  bool OnInit() override;
  bool OnPaint() override;
  bool OnEraseBackground(HDC dc) override;

 private:
  controls::CBitmapResource picture_;
};

}  // namespace lumenor
