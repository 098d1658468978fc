// Skinned check box and radio button: a system check box or radio button (so checking
// and radio groups behave as usual) painted with two pictures, clear and checked, and
// its caption on the page's background.
#pragma once

#include "controls/Bitmap.h"
#include "controls/Control.h"

namespace lumenor::controls {

class CMyCheckBox : public CControl {
 public:
  // Takes over a check box or radio button of a dialog template. Pictures that do not
  // exist are replaced by the system's own check mark.
  bool Attach(HWND dialog, int id, int clearPicture, int checkedPicture, COLORREF background);

  bool Checked() const { return Send(BM_GETCHECK) == BST_CHECKED; }
  void SetChecked(bool checked) const { (void)Send(BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED); }

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Paint(HDC dc) const;
  bool IsRadio() const;

  CBitmapResource clear_;
  CBitmapResource checked_;
  COLORREF background_ = RGB(255, 255, 255);
};

}  // namespace lumenor::controls
