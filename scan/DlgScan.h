// The privacy scan page: the catalogue as a tree with tick boxes, the selection and action
// buttons, the list of traces found and the busy animation. Scans and erases run on a
// worker of the page; what the worker finds reaches the page in batches through the
// page's task queue, so the page stays responsive and the worker never waits for it. The
// main window starts the page's one-click erase and shows the stages in the notification
// area.
#pragma once

#include "controls/Dialog.h"
#include "controls/GifPicture.h"
#include "controls/MyListCtrl.h"
#include "controls/NButtonEx.h"
#include "controls/PageWorker.h"
#include "controls/UiTasks.h"
#include "controls/UserPrompt.h"
#include "engine/FolderSafety.h"
#include "scan/ItemSelection.h"
#include "scan/MyTreeCtrl.h"
#include "scan/PrivacyRun.h"
#include "scan/Restart.h"
#include "settings/IniFileRW.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lumenor {

class CDlgScan : public controls::CDialog {
 public:
  // A stage of a run as the notification area shows it: started or stopped, with the
  // status text and the counter's caption.
  using StatusSink = std::function<void(bool started, const std::wstring& status, const std::wstring& caption)>;
  // Asks the select-all question; true unless the answer is No.
  using Confirmation = std::function<bool()>;
  // Runs the erase progress dialog over an erase; answers how it ended.
  using EraseDialogRunner = std::function<INT_PTR(HWND owner, int total, std::function<void(EraseTally&)> erase)>;
  // Runs the "Cookies to Keep" dialog on the settings file, offering the hosts found.
  using CookiesDialogRunner =
      std::function<void(HWND owner, const CIniFileRW& settings, std::vector<std::wstring> foundHosts)>;

  CDlgScan();
  ~CDlgScan() override;

  // Ticks the one-click selection and scans and erases it without the progress dialog.
  // Refused (false) while a scan or erase of the page runs; false too when its thread
  // could not start (the run has then ended).
  bool StartOneClickErase();
  int OneClickRequests() const { return oneClickRequests_; }
  // Traces found by the running or last scan, less the rows deleted by hand.
  int ItemsDone() const { return foundCount_; }
  // Their bytes, as the line under the results tells them.
  uint64_t BytesFound() const;
  // Whether a scan, an erase or a one-click erase of the page is under way.
  bool Busy() const { return worker_.Running() || eraseDialogOpen_; }
  // From the start of a scan (or one-click erase) to the end of its scan pass.
  bool Scanning() const { return scanning_; }
  // While the erase progress dialog runs.
  bool EraseDialogOpen() const { return eraseDialogOpen_; }

  void SetStatusSink(StatusSink sink) { statusSink_ = std::move(sink); }
  void SetSelectAllConfirmation(Confirmation confirm) { confirmSelectAll_ = std::move(confirm); }
  // How the page asks about the warnings of the items the user ticks.
  void SetMessageBox(MessageBoxFunction ask) { ask_ = std::move(ask); }
  void SetRestart(RestartMachine restart) { restart_ = std::move(restart); }
  void SetEraseDialogRunner(EraseDialogRunner runner) { runEraseDialog_ = std::move(runner); }
  void SetCookiesDialogRunner(CookiesDialogRunner runner) { runCookiesDialog_ = std::move(runner); }
  // How the worker's thread is started; tests make it fail or wait.
  void SetThreadStarter(controls::ThreadStarter starter) { worker_.SetThreadStarter(std::move(starter)); }
  // The settings file the page reads and writes; "setting.ini" beside the program unless
  // a test gives another.
  void SetSettingsFile(const CIniFileRW& settings) { settings_ = settings; }

  // The page's parts, for the main window and the tests.
  ItemSelection& Selection() { return selection_; }
  CMyTreeCtrl& Tree() { return tree_; }
  controls::CMyListCtrl& Results() { return results_; }
  // The running or last scan's run; null before the first scan and after an erase.
  const ScanRun* Run() const { return run_.get(); }
  // Waits until the running worker has ended and its results are shown; for tests and
  // the program's end.
  void WaitForWorker();

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnEraseBackground(HDC dc) override;

 private:
  class PageReports;

  void MakeButtons();
  void FillTree();
  void LayOut();
  void StartScan();
  void Erase();
  void DeleteSelectedRow();
  void SelectAll();
  void ShowScanLook(bool running);
  void EnableActions(bool enable);
  // Common to a scan and a one-click erase: the run on the page's worker.
  bool StartWorker(std::function<void(PageReports& reports, const StopToken& stop)> run);
  // A new run of the ticked items, shown in the tree and filled by `work` on the worker.
  bool StartRun(std::function<void(ScanRun& run, PageReports& reports, const StopToken& stop)> work);
  void BeginScanLook();
  // A run whose thread could not start: the page as it was before it.
  void RunNotStarted();
  void OnStage(RunStage stage);
  void EmptyResults();
  void DropRun();
  void ShowSummary();

  CIniFileRW settings_;
  controls::CMyGifPicture animation_;
  controls::CMyListCtrl results_;
  CMyTreeCtrl tree_;
  ItemSelection selection_;
  // Seven slots as the page has always had; the fourth is never made.
  std::array<controls::CNButtonEx, 7> buttons_;

  controls::UiTaskQueue tasks_;
  std::unique_ptr<PageReports> reports_;
  // Shared with the worker that fills it; the tree reads its counts.
  std::shared_ptr<ScanRun> run_;
  int foundCount_ = 0;
  uint64_t bytesDeletedByHand_ = 0;
  int oneClickRequests_ = 0;
  bool scanning_ = false;
  bool eraseDialogOpen_ = false;

  StatusSink statusSink_;
  Confirmation confirmSelectAll_;
  MessageBoxFunction ask_ = SystemMessageBox;
  RestartMachine restart_ = RestartWindowsNow;
  EraseDialogRunner runEraseDialog_;
  CookiesDialogRunner runCookiesDialog_;
  // Last: its thread is stopped and joined before anything it uses goes.
  controls::PageWorker worker_{tasks_};
};

}  // namespace lumenor
