#include "app/DlgOptions.h"

#include "catalogue/DlgOptionsChoose.h"
#include "controls/Layout.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

namespace lumenor {

OptionValues Options;

CDlgOptions::CDlgOptions() : CDialog(IDD_OPTIONS) {}

namespace {
// The panel's corner lies this far in from the page's; it reaches as far in from the others.
constexpr int kPanelInset = 10;
}  // namespace

bool CDlgOptions::OnInit() {
  Options = ReadOptionValues(CIniFileRW(kSettingsFileName));
  (void)panel_.Load(IDB_SETTINGS_PANEL);  // without it the page is plain white
  if (save_.Attach(window_, IDC_OPTIONS_SAVE)) {
    save_.SetPictures(IDB_SETTINGS_SAVE_NORMAL, IDB_SETTINGS_SAVE_HOT, IDB_SETTINGS_SAVE_PRESSED,
                      IDB_SETTINGS_SAVE_DISABLED);
    (void)save_.FitToPicture(controls::Corner::kBottomRight);  // else the picture is stretched to the template's size
  }
  return true;
}

bool CDlgOptions::OnEraseBackground(HDC dc) {
  const RECT client = ClientRect();
  (void)::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  // The panel frames every control of the page, however large dialog units make it.
  const RECT panel{kPanelInset, kPanelInset, client.right - kPanelInset, client.bottom - kPanelInset};
  (void)panel_.DrawStretched(dc, panel);
  return true;
}

bool CDlgOptions::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  // Labels and frames lie over the panel picture.
  if (message == WM_CTLCOLORSTATIC || message == WM_CTLCOLORBTN || message == WM_CTLCOLORDLG) {
    (void)::SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
    result = reinterpret_cast<LRESULT>(::GetStockObject(message == WM_CTLCOLORDLG ? NULL_BRUSH : WHITE_BRUSH));
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

bool CDlgOptions::OnCommand(int id, int code, HWND control) {
  if (id == IDC_OPTIONS_ONE_CLICK) {
    (void)ChooseOneClickItems(window_, CIniFileRW(kSettingsFileName));  // saved or not, the page stays as it is
    return true;
  }
  return CDialog::OnCommand(id, code, control);
}

}  // namespace lumenor
