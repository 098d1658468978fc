#include "junk/DlgJunk.h"

#include "controls/Layout.h"
#include "controls/Paint.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

namespace lumenor {

CDlgJunk::CDlgJunk() : CDialog(IDD_JUNK) {}

bool CDlgJunk::OnInit() {
  if (tabs_.CreateStrip(window_, IDC_JUNK_TABS, POINT{0, 0}, kShowTabMessage)) {
    (void)tabs_.AddTab(IDB_JUNK_TAB_SETUP_NORMAL, IDB_JUNK_TAB_SETUP_HOT, IDB_JUNK_TAB_SETUP_SELECTED);
    (void)tabs_.AddTab(IDB_JUNK_TAB_RESULTS_NORMAL, IDB_JUNK_TAB_RESULTS_HOT, IDB_JUNK_TAB_RESULTS_SELECTED);
    tabs_.PostOnlyOnChange(true);
    tabs_.SetClickBlocker([this] { return results_.Scanning(); });
  }
  setUp_.SetStartHandler(
      [this](const std::wstring& folder, const std::vector<std::wstring>& masks) { StartJunkScan(folder, masks); });
  (void)setUp_.Create(window_);  // a sub-page that could not be made stays blank
  (void)results_.Create(window_);
  LayOut();
  tabs_.Select(kSetUpTab);
  ShowSubPage(kSetUpTab);
  return true;
}

void CDlgJunk::LayOut() {
  // The sub-pages share the room under the strip, whatever their templates say.
  const RECT client = ClientRect();
  const RECT strip = tabs_.RectInParent();
  for (controls::CDialog* page :
       {static_cast<controls::CDialog*>(&setUp_), static_cast<controls::CDialog*>(&results_)}) {
    if (page->Handle() != nullptr) {
      (void)page->Move(RECT{client.left, strip.bottom, client.right, client.bottom});  // unmoved: shown at 0, 0
    }
  }
}

void CDlgJunk::ShowSubPage(int index) {
  setUp_.Show(SW_HIDE);
  results_.Show(SW_HIDE);
  if (index == kSetUpTab) {
    setUp_.Show(SW_SHOW);
  } else if (index == kResultsTab) {
    results_.Show(SW_SHOW);
  }
}

void CDlgJunk::StartJunkScan(const std::wstring& folder, const std::vector<std::wstring>& masks) {
  tabs_.Select(kResultsTab);
  ShowSubPage(kResultsTab);
  (void)results_.StartScan(folder, masks);  // refused only while a walk runs, which the strip keeps out
}

void CDlgJunk::ResetToSetUp() {
  if (results_.Scanning()) {
    return;
  }
  ++resets_;
  if (window_ == nullptr) {
    return;
  }
  tabs_.Select(kSetUpTab);
  ShowSubPage(kSetUpTab);
  setUp_.ResetScope();
  results_.ClearResults();
}

void CDlgJunk::SetMessageBox(const MessageBoxFunction& messageBox) {
  setUp_.SetMessageBox(messageBox);
  results_.SetMessageBox(messageBox);
}

bool CDlgJunk::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (message == kShowTabMessage) {
    ShowSubPage(static_cast<int>(lParam));
    result = 0;
    return true;
  }
  if (controls::ColourWhitePage(message, wParam, result)) {
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
