#include "app/DlgOptions.h"

#include "res/resource.h"

namespace lumenor {

OptionValues Options;

CDlgOptions::CDlgOptions() : CDialog(IDD_OPTIONS) {}

namespace {
constexpr int kPanelPicture = 219;
constexpr int kSavePictures[4] = {501, 502, 503, 504};
}  // namespace

bool CDlgOptions::OnInit() {
  Options = ReadOptionValues(CIniFileRW(kSettingsFileName));
  (void)panel_.Load(kPanelPicture);  // without it the page is plain white
  if (save_.Attach(window_, IDC_OPTIONS_SAVE)) {
    save_.SetPictures(kSavePictures[0], kSavePictures[1], kSavePictures[2], kSavePictures[3]);
  }
  return true;
}

bool CDlgOptions::OnEraseBackground(HDC dc) {
  const RECT client = ClientRect();
  (void)::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  (void)panel_.Draw(dc, 10, 10);
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

}  // namespace lumenor
