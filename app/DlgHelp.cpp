#include "app/DlgHelp.h"

#include "base/ModulePath.h"
#include "controls/Layout.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

namespace lumenor {

namespace {

constexpr int kHeadingTop = 6;  // the heading picture's distance from the page's top

struct HelpButton {
  int command;
  int pictures[4];
};
constexpr HelpButton kButtons[] = {
    {IDC_HELP_SUPPORT,
     {IDB_HELP_SUPPORT_NORMAL, IDB_HELP_SUPPORT_HOT, IDB_HELP_SUPPORT_PRESSED, IDB_HELP_SUPPORT_PRESSED}},
    {IDC_HELP_MANUAL, {IDB_HELP_MANUAL_NORMAL, IDB_HELP_MANUAL_HOT, IDB_HELP_MANUAL_PRESSED, IDB_HELP_MANUAL_PRESSED}},
    {IDC_HELP_SUPPORT_AGAIN,
     {IDB_HELP_CONTACT_NORMAL, IDB_HELP_CONTACT_HOT, IDB_HELP_CONTACT_PRESSED, IDB_HELP_CONTACT_PRESSED}},
};

}  // namespace

CDlgHelp::CDlgHelp(PageOpener opener) : CDialog(IDD_HELP), opener_(std::move(opener)) {}

bool CDlgHelp::OnInit() {
  (void)background_.Load(IDB_HELP_BACKGROUND);  // without it the page is plain white
  for (size_t index = 0; index < buttons_.size(); ++index) {
    const HelpButton& wanted = kButtons[index];
    if (buttons_[index].CreateButton(window_, wanted.command, RECT{})) {
      buttons_[index].SetPictures(wanted.pictures[0], wanted.pictures[1], wanted.pictures[2], wanted.pictures[3]);
    }
  }
  LayOut();
  return true;
}

void CDlgHelp::LayOut() const {
  // The buttons, at their pictures' size, share the page's width evenly and stand in the
  // middle of the room the heading picture leaves below it.
  const RECT client = ClientRect();
  const RECT below{client.left, kHeadingTop + background_.Size().cy, client.right, client.bottom};
  int widths = 0;
  for (const controls::CNButtonEx& button : buttons_) {
    widths += button.PictureSize().cx;
  }
  const int space = (controls::Width(below) - widths) / static_cast<int>(buttons_.size() + 1);
  int left = below.left + space;
  for (const controls::CNButtonEx& button : buttons_) {
    const SIZE size = button.PictureSize();
    const int top = below.top + (controls::Height(below) - size.cy) / 2;
    (void)button.Move(left, top, size.cx, size.cy);  // a button that cannot move stays out of sight at 0 by 0
    left += size.cx + space;
  }
}

bool CDlgHelp::OnEraseBackground(HDC dc) {
  const RECT client = ClientRect();
  (void)::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  // The picture heads the page, centred above the buttons.
  (void)background_.Draw(dc, (client.right - background_.Size().cx) / 2, kHeadingTop);
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
