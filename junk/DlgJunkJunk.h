// The junk cleaner's result page: the files the junk walk finds, listed as it finds them,
// with their count and size under the list, and their removal: the selected file, or all
// of them behind the erase progress dialog after the user agreed. The walk runs on a
// worker of its own; its rows reach the list in batches through the page's task queue.
#pragma once

#include "controls/Dialog.h"
#include "controls/GifPicture.h"
#include "controls/MyListCtrl.h"
#include "controls/NButtonEx.h"
#include "controls/UiTasks.h"
#include "engine/StopToken.h"
#include "engine/SystemPaths.h"
#include "controls/UserPrompt.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace lumenor {

class CDlgScanResult;

class CDlgJunkJunk : public controls::CDialog {
 public:
  // Shows the progress dialog of a delete-all; runs it modally unless a test steps in.
  using EraseDialogRunner = std::function<void(CDlgScanResult& dialog, HWND owner)>;

  CDlgJunkJunk();
  ~CDlgJunkJunk() override;

  // Empties the list and starts the walk of `folder` (canonical, ending with "\"), or of
  // every fixed disk when it is empty. False when a walk runs already.
  bool StartScan(const std::wstring& folder, std::vector<std::wstring> masks);
  void StopScan();
  bool Scanning() const { return scanning_; }
  void ClearResults();

  // Where the walk of every fixed disk finds the drives; the machine's unless replaced.
  void SetSystemPaths(const SystemPaths& paths) { paths_ = &paths; }
  void SetMessageBox(MessageBoxFunction messageBox) { messageBox_ = std::move(messageBox); }
  void SetEraseDialogRunner(EraseDialogRunner runner) { runDialog_ = std::move(runner); }

  const controls::CMyListCtrl& Results() const { return results_; }
  uint64_t TotalBytes() const { return totalBytes_; }

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  class RowBatcher;

  void AddRows(std::vector<controls::ListRow> rows, const std::vector<uint64_t>& sizes);
  void ScanEnded();
  void ShowScanning(bool scanning);
  void ShowSummary() const;
  void DeleteSelected();
  void DeleteAll();
  void LayOut();
  void JoinWorker();

  controls::CMyListCtrl results_;
  controls::CNButtonEx stop_;
  controls::CNButtonEx delete_;
  controls::CNButtonEx deleteAll_;
  controls::CMyGifPicture animation_;

  std::vector<uint64_t> rowBytes_;  // beside the list's rows, one a row
  uint64_t totalBytes_ = 0;

  controls::UiTaskQueue tasks_;
  std::thread worker_;
  std::shared_ptr<StopSignal> walkStop_;  // the running walk's, fresh for each walk
  bool scanning_ = false;

  const SystemPaths* paths_ = &MachinePaths();
  MessageBoxFunction messageBox_ = SystemMessageBox;
  EraseDialogRunner runDialog_;
};

}  // namespace lumenor
