// The help page: three large picture buttons (support page, manual, support page again)
// over a white page with the help picture. It lies under every other page and is never
// hidden.
#pragma once

#include "controls/Bitmap.h"
#include "controls/Dialog.h"
#include "controls/NButtonEx.h"
#include "update/MakerSite.h"

#include <array>

namespace lumenor {

class CDlgHelp : public controls::CDialog {
 public:
  explicit CDlgHelp(PageOpener opener);

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnEraseBackground(HDC dc) override;

 private:
  void OpenManual() const;
  void LayOut() const;

  PageOpener opener_;
  std::array<controls::CNButtonEx, 3> buttons_;
  controls::CBitmapResource background_;
};

}  // namespace lumenor
