#include "app/DlgOptions.h"

#include "res/resource.h"

namespace lumenor {

OptionValues Options;

CDlgOptions::CDlgOptions() : CDialog(IDD_OPTIONS) {}

bool CDlgOptions::OnInit() {
  Options = ReadOptionValues(CIniFileRW(kSettingsFileName));
  return true;
}

bool CDlgOptions::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (message == WM_CTLCOLORDLG || message == WM_CTLCOLORSTATIC || message == WM_CTLCOLORBTN) {
    (void)::SetBkColor(reinterpret_cast<HDC>(wParam), RGB(255, 255, 255));
    result = reinterpret_cast<LRESULT>(::GetStockObject(WHITE_BRUSH));
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
