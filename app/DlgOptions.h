// The settings page. Made once by the main window; making it loads the option values
// from "setting.ini" into Options, which the main window and the scheduler read.
#pragma once

#include "app/Settings.h"
#include "controls/Bitmap.h"
#include "controls/Dialog.h"
#include "controls/NButtonEx.h"

namespace lumenor {

// The option values in force for the whole program, owned by the settings page.
extern OptionValues Options;

class CDlgOptions : public controls::CDialog {
 public:
  CDlgOptions();

  // Shows or hides the page (SW_SHOW / SW_HIDE).
  void ShowPage(int showCommand) const { Show(showCommand); }

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnEraseBackground(HDC dc) override;

 private:
  controls::CBitmapResource panel_;
  controls::CNButtonEx save_;
};

}  // namespace lumenor
