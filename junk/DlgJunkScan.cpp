#include "junk/DlgJunkScan.h"

#include "base/ResourceString.h"
#include "controls/Layout.h"
#include "controls/Paint.h"
#include "junk/JunkCatalogue.h"
#include "junk/JunkWalk.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

#include <commctrl.h>

namespace lumenor {

namespace {

enum Choice : size_t { kAllDisks, kOneFolder, kDefault, kAll, kNone };
constexpr int kChoiceIds[] = {IDC_JUNK_ALL_DISKS, IDC_JUNK_CHOOSE_FOLDER, IDC_JUNK_DEFAULT, IDC_JUNK_ALL,
                              IDC_JUNK_NONE};

constexpr int kMargin = 10;  // pixels from the page's edges to the list's foot and the start button
}  // namespace

CDlgJunkScan::CDlgJunkScan() : CDialog(IDD_JUNK_SCAN) {}

bool CDlgJunkScan::OnInit() {
  for (size_t index = 0; index < choices_.size(); ++index) {
    (void)choices_[index].Attach(window_, kChoiceIds[index], 0, 0, controls::kPageBackground);
  }
  if (startButton_.Attach(window_, IDC_JUNK_START)) {
    startButton_.SetPictures(IDB_JUNK_START_NORMAL, IDB_JUNK_START_HOT, IDB_JUNK_START_PRESSED,
                             IDB_JUNK_START_DISABLED);
  }
  if (catalogue_.Attach(window_, IDC_JUNK_CATALOG)) {
    (void)catalogue_.AddColumn(LoadResourceString(IDS_JUNK_COLUMN_TYPE), 80);
    (void)catalogue_.AddColumn(LoadResourceString(IDS_JUNK_COLUMN_DESCRIPTION), 170);
    FillCatalogue();
  }
  choices_[kDefault].SetChecked(true);
  ResetScope();
  LayOut();
  return true;
}

void CDlgJunkScan::FillCatalogue() {
  for (const JunkMaskRow& row : JunkMaskCatalogue()) {
    (void)catalogue_.AppendRow(std::wstring(row.mask), LoadResourceString(row.descriptionId));
  }
  // Every row goes in ticked, then the default choice leaves the first rows ticked.
  TickRows(catalogue_.RowCount());
  TickRows(kDefaultJunkRows);
}

void CDlgJunkScan::TickRows(size_t firstUnticked) {
  for (int row = 0; row < catalogue_.RowCount(); ++row) {
    (void)catalogue_.SetChecked(row, static_cast<size_t>(row) < firstUnticked);  // a row that refuses stays as it was
  }
}

void CDlgJunkScan::LayOut() {
  const RECT client = ClientRect();
  // The list keeps its template's place and width and reaches down to the page's foot.
  const RECT list = catalogue_.RectInParent();
  (void)catalogue_.Move(list.left, list.top, controls::Width(list), client.bottom - kMargin - list.top);
  const SIZE picture = startButton_.PictureSize();
  if (picture.cx > 0) {
    (void)startButton_.Move(controls::AtCorner(client, picture, controls::Corner::kBottomRight, {kMargin, kMargin}));
  }
}

void CDlgJunkScan::ResetScope() {
  if (window_ == nullptr) {
    return;
  }
  (void)controls::CWindow(Item(IDC_JUNK_FOLDER)).SetText(L"");
  choices_[kAllDisks].SetChecked(true);
  choices_[kOneFolder].SetChecked(false);
  EnableFolder(false);
}

void CDlgJunkScan::EnableFolder(bool enable) const {
  controls::CWindow(Item(IDC_JUNK_FOLDER)).Enable(enable);
  controls::CWindow(Item(IDC_JUNK_BROWSE)).Enable(enable);
}

bool CDlgJunkScan::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDC_JUNK_ALL_DISKS:
    case IDC_JUNK_CHOOSE_FOLDER:
      EnableFolder(choices_[kOneFolder].Checked());
      return true;
    case IDC_JUNK_DEFAULT:
      TickRows(kDefaultJunkRows);
      return true;
    case IDC_JUNK_ALL:
      TickRows(JunkMaskCatalogue().size());
      return true;
    case IDC_JUNK_NONE:
      TickRows(0);
      return true;
    case IDC_JUNK_BROWSE:
      Browse();
      return true;
    case IDC_JUNK_START:
      Start();
      return true;
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

void CDlgJunkScan::Browse() {
  if (const auto folder = picker_.Pick(window_, LoadResourceString(IDS_JUNK_BROWSE_TITLE))) {
    (void)controls::CWindow(Item(IDC_JUNK_FOLDER)).SetText(*folder);  // the field stays as it was
  }
}

void CDlgJunkScan::Start() {
  chosenMasks_.clear();
  for (int row = 0; row < catalogue_.RowCount(); ++row) {
    if (catalogue_.Checked(row)) {
      chosenMasks_.push_back(catalogue_.RowText(row, 0));
    }
  }
  if (chosenMasks_.empty()) {
    (void)messageBox_(window_, LoadResourceString(IDS_JUNK_NOTHING_CHOSEN), L"", MB_OK);
    return;
  }
  if (choices_[kAllDisks].Checked()) {
    if (start_) {
      start_(L"", chosenMasks_);
    }
    return;
  }
  if (!choices_[kOneFolder].Checked()) {
    return;
  }
  // The folder must be absolute ("temp" and "C:temp" depend on where the program
  // stands); its canonical form ends with the backslash the walk needs.
  const std::optional<JunkScope> scope = JunkScopeOfFolder(controls::CWindow(Item(IDC_JUNK_FOLDER)).Text());
  if (!scope) {
    (void)messageBox_(window_, LoadResourceString(IDS_JUNK_CHOOSE_PATH), L"", MB_OK);
    return;
  }
  if (start_) {
    start_(scope->folder, chosenMasks_);
  }
}

bool CDlgJunkScan::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (controls::ColourWhitePage(message, wParam, result)) {
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
