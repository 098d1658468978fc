#include "app/DlgHelp.h"

#include "base/ModulePath.h"
#include "res/resource.h"

namespace lumenor {

namespace {

constexpr int kBackgroundPicture = 232;

struct HelpButton {
  int command;
  RECT rect;
  int pictures[4];
};
constexpr HelpButton kButtons[] = {
    {IDC_HELP_SUPPORT, {20, 180, 171, 346}, {250, 384, 249, 249}},
    {IDC_HELP_MANUAL, {211, 180, 362, 346}, {252, 385, 251, 251}},
    {IDC_HELP_SUPPORT_AGAIN, {402, 180, 553, 346}, {248, 383, 253, 253}},
};

}  // namespace

CDlgHelp::CDlgHelp(PageOpener opener) : CDialog(IDD_HELP), opener_(std::move(opener)) {}

bool CDlgHelp::OnInit() {
  (void)background_.Load(kBackgroundPicture);  // without it the page is plain white
  for (size_t index = 0; index < buttons_.size(); ++index) {
    const HelpButton& spec = kButtons[index];
    if (buttons_[index].CreateButton(window_, spec.command, spec.rect)) {
      buttons_[index].SetPictures(spec.pictures[0], spec.pictures[1], spec.pictures[2], spec.pictures[3]);
    }
  }
  return true;
}

bool CDlgHelp::OnEraseBackground(HDC dc) {
  const RECT client = ClientRect();
  (void)::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  // The picture heads the page, centred above the buttons.
  (void)background_.Draw(dc, (client.right - background_.Size().cx) / 2, 6);
  return true;
}

void CDlgHelp::OpenManual() const {
  // The manual opens by its bare name from the program's folder, which stays the current
  // folder afterwards (later file dialogs start there too).
  const std::wstring folder = ModuleFolder();
  if (!folder.empty()) {
    (void)::SetCurrentDirectoryW(folder.c_str());  // a failure leaves the manual unfound, as the shell reports
  }
  opener_(L"Manual.chm", SW_SHOWMAXIMIZED);
}

bool CDlgHelp::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDC_HELP_SUPPORT:
    case IDC_HELP_SUPPORT_AGAIN:
      opener_(MakerPage(L"/support.php"), SW_SHOWNORMAL);
      return true;
    case IDC_HELP_MANUAL:
      OpenManual();
      return true;
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

}  // namespace lumenor
