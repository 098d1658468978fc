#include "junk/DlgJunk.h"

#include "base/ResourceString.h"
#include "controls/Layout.h"
#include "controls/Paint.h"
#include "res/artwork_ids.h"
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
    start_.SetPictures(IDB_JUNK_START_NORMAL, IDB_JUNK_START_HOT, IDB_JUNK_START_PRESSED, IDB_JUNK_START_DISABLED);
    (void)start_.FitToPicture(controls::Corner::kBottomRight);  // else the picture is stretched to the template's size
  }
  if (catalogue_.Attach(window_, IDC_JUNK_CATALOG)) {
    (void)catalogue_.Send(LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_CHECKBOXES,
                          LVS_EX_CHECKBOXES);  // answers the old style
    (void)catalogue_.AddColumn(LoadResourceString(IDS_JUNK_COLUMN_TYPE), 80);
    (void)catalogue_.AddColumn(LoadResourceString(IDS_JUNK_COLUMN_DESCRIPTION), 170);
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
