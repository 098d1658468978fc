#include "junk/DlgJunk.h"

#include "base/ResourceString.h"
#include "controls/Paint.h"
#include "res/resource.h"

#include <commctrl.h>

namespace lumenor {

namespace {
constexpr int kChoiceIds[] = {IDC_JUNK_ALL_DISKS, IDC_JUNK_CHOOSE_FOLDER, IDC_JUNK_DEFAULT, IDC_JUNK_ALL,
                              IDC_JUNK_NONE};
}  // namespace

CDlgJunk::CDlgJunk() : CDialog(IDD_JUNK) {}

bool CDlgJunk::OnInit() {
  for (size_t index = 0; index < choices_.size(); ++index) {
    (void)choices_[index].Attach(window_, kChoiceIds[index], 0, 0, controls::kPageBackground);
  }
  if (start_.Attach(window_, IDC_JUNK_START)) {
    start_.SetPictures(511, 512, 513, 514);
  }
  HWND catalogue = Item(IDC_JUNK_CATALOG);
  (void)::SendMessageW(catalogue, LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT,
                       LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);  // answers the old style
  const int columnIds[2] = {IDS_JUNK_COLUMN_TYPE, IDS_JUNK_COLUMN_DESCRIPTION};
  const int widths[2] = {80, 170};
  for (int column = 0; column < 2; ++column) {
    std::wstring title = LoadResourceString(static_cast<unsigned>(columnIds[column]));
    LVCOLUMNW header{};
    header.mask = LVCF_TEXT | LVCF_WIDTH;
    header.cx = widths[column];
    header.pszText = title.data();
    (void)::SendMessageW(catalogue, LVM_INSERTCOLUMNW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&header));
  }
  choices_[0].SetChecked(true);
  choices_[2].SetChecked(true);
  return true;
}

void CDlgJunk::EnableFolder(bool enable) const {
  CWindow(Item(IDC_JUNK_FOLDER)).Enable(enable);
  CWindow(Item(IDC_JUNK_BROWSE)).Enable(enable);
}

void CDlgJunk::ResetToSetUp() {
  ++resets_;
  if (window_ == nullptr) {
    return;
  }
  (void)CWindow(Item(IDC_JUNK_FOLDER)).SetText(L"");
  choices_[0].SetChecked(true);
  choices_[1].SetChecked(false);
  EnableFolder(false);
}

bool CDlgJunk::OnCommand(int id, int code, HWND control) {
  if (id == IDC_JUNK_ALL_DISKS || id == IDC_JUNK_CHOOSE_FOLDER) {
    EnableFolder(choices_[1].Checked());
    return true;
  }
  return CDialog::OnCommand(id, code, control);
}

bool CDlgJunk::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (controls::ColourWhitePage(message, wParam, result)) {
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
