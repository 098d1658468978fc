// The junk cleaner's result page: the files the junk walk finds, listed as it finds them,
// with their count and size under the list, and their removal: the selected file, or all
// of them behind the erase progress dialog after the user agreed. The walk runs on the
// page's worker; its rows reach the list in lots through the page's task queue.
#pragma once

#include "controls/Dialog.h"
#include "controls/GifPicture.h"
#include "controls/ListFeed.h"
#include "controls/MyListCtrl.h"
#include "controls/NButtonEx.h"
#include "controls/PageWorker.h"
#include "controls/UiTasks.h"
#include "controls/UserPrompt.h"
#include "engine/SystemPaths.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace lumenor {

class CDlgScanResult;

class CDlgJunkJunk : public controls::CDialog {
 public:
  // Shows the progress dialog of a delete-all; runs it modally unless a test steps in.
  using EraseDialogRunner = std::function<void(CDlgScanResult& dialog, HWND owner)>;

  CDlgJunkJunk();

  // Empties the list and starts the walk of `folder` (canonical, ending with "\"), or of
  // every fixed disk when it is empty. False when a walk runs already, or when its
  // thread could not start (the walk has then ended, with nothing found).
  bool StartScan(const std::wstring& folder, std::vector<std::wstring> masks);
  void StopScan();
  // From the start of a walk until its end has reached the page.
  bool Scanning() const { return worker_.Running(); }
  void ClearResults();

  // Where the walk of every fixed disk finds the drives; the machine's unless replaced.
  void SetSystemPaths(const SystemPaths& paths) { paths_ = &paths; }
  void SetMessageBox(MessageBoxFunction messageBox) { messageBox_ = std::move(messageBox); }
  void SetEraseDialogRunner(EraseDialogRunner runner) { runDialog_ = std::move(runner); }
  // How the walk's thread is started; tests make it fail or wait.
  void SetThreadStarter(controls::ThreadStarter starter) { worker_.SetThreadStarter(std::move(starter)); }

  const controls::CMyListCtrl& Results() const { return results_; }
  uint64_t TotalBytes() const { return totalBytes_; }

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void RowsAppended(std::span<const controls::ListRow> rows);
  void ScanEnded();
  void ShowScanning(bool scanning);
  void ShowSummary() const;
  void DeleteSelected();
  void DeleteAll();
  void LayOut();

  controls::CMyListCtrl results_;
  controls::CNButtonEx stop_;
  controls::CNButtonEx delete_;
  controls::CNButtonEx deleteAll_;
  controls::CMyGifPicture animation_;

  uint64_t totalBytes_ = 0;  // of the listed rows, whose values are their sizes

  controls::UiTaskQueue tasks_;
  controls::ListFeed rows_{tasks_, results_, [this](std::span<const controls::ListRow> rows) { RowsAppended(rows); }};

  const SystemPaths* paths_ = &MachinePaths();
  MessageBoxFunction messageBox_ = SystemMessageBox;
  EraseDialogRunner runDialog_;
  // Last: its thread is stopped and joined before anything it uses goes.
  controls::PageWorker worker_{tasks_};
};

}  // namespace lumenor
