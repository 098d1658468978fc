// The junk cleaner page: a two-tab strip over two sub-pages, the set-up page (which masks,
// where) and the result page (what was found, removal). Only one sub-page shows at a
// time. The strip ignores clicks while a junk walk runs, so the set-up page cannot be
// reached then. The main window resets the page to its set-up state each time it shows
// it, except while a walk runs: the reset would empty the list under it.
#pragma once

#include "controls/Dialog.h"
#include "controls/MyTabCtrl.h"
#include "controls/UserPrompt.h"
#include "junk/DlgJunkJunk.h"
#include "junk/DlgJunkScan.h"

#include <string>
#include <vector>

namespace lumenor {

class CDlgJunk : public controls::CDialog {
 public:
  static constexpr int kSetUpTab = 0;
  static constexpr int kResultsTab = 1;
  // The strip's show-tab message, second parameter the tab's index: the number the main
  // window uses for its own pages.
  static constexpr UINT kShowTabMessage = WM_USER + 100;

  CDlgJunk();

  // Hides both sub-pages, then shows the set-up page (0) or the result page (1).
  void ShowSubPage(int index);
  // Shows the result page and starts the walk there.
  void StartJunkScan(const std::wstring& folder, const std::vector<std::wstring>& masks);
  // The set-up page with every fixed disk chosen, the folder cleared and the result
  // list empty; nothing happens while a walk runs.
  void ResetToSetUp();
  int Resets() const { return resets_; }
  // Whether a junk walk runs; the main window asks before it closes or hides.
  bool Searching() const { return results_.Scanning(); }

  void SetMessageBox(const MessageBoxFunction& messageBox);

  CDlgJunkScan& SetUpPage() { return setUp_; }
  CDlgJunkJunk& ResultPage() { return results_; }
  const controls::CMyTabCtrl& Tabs() const { return tabs_; }

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void LayOut();

  controls::CMyTabCtrl tabs_;
  CDlgJunkScan setUp_;
  CDlgJunkJunk results_;
  int resets_ = 0;
};

}  // namespace lumenor
