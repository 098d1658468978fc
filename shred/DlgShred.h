// The shredder page: the list of files to shred, the three methods, and the Shred button
// that becomes Stop while the job runs on the page's worker thread. Other parts hand it
// paths to list (the "-S:" start-up path, a path another program sends to the main
// window).
//
// The worker never touches a window: it hands each finished file to the page's thread
// through a task queue, and keeps the progress in counters the page reads on a timer.
// While it runs, every control that could change the list is disabled.
#pragma once

#include "base/UniqueHandle.h"
#include "controls/Dialog.h"
#include "controls/MyCheckBox.h"
#include "controls/MyListCtrl.h"
#include "controls/NButtonEx.h"
#include "controls/UiTasks.h"
#include "engine/StopToken.h"
#include "shred/Pickers.h"
#include "shred/ProgressScale.h"
#include "shred/ShredJob.h"
#include "shred/ShredList.h"

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace lumenor {

class CDlgShred : public controls::CDialog {
 public:
  CDlgShred();
  // Stops a running job and waits for its thread: the job stops at its next chunk.
  ~CDlgShred() override;

  // Lists one file given by its whole path, split at its last backslash. Files that
  // cannot be overwritten safely and rows already listed are left out. Returns whether a
  // row was added.
  bool AddPath(const std::wstring& fullPath);
  // What "Add File" and "Add Directory" do with the pickers' choice. Files left out for
  // the user's safety (links, files with other hard links) are told in one message;
  // files that cannot be opened for writing are left out silently.
  void AddFiles(const std::vector<std::wstring>& paths);
  void AddFolder(const std::wstring& folder);

  // "Shred": asks, then starts the job; while it runs, stops it.
  void PressShred();
  bool Running() const { return running_; }
  ShredMethod Method() const;

  // Questions (Yes/No) and notices go through these, so that tests can answer them.
  using Ask = std::function<bool(const std::wstring& text)>;
  using Tell = std::function<void(const std::wstring& text)>;
  void SetMessageBoxes(Ask ask, Tell tell);

  const controls::CMyListCtrl& List() const { return list_; }
  controls::CMyListCtrl& List() { return list_; }
  HWND ProgressBar() const;

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnTimer(UINT_PTR id) override;

 private:
  class WorkerReports;

  void AppendListed(size_t from);
  void CancelSelected();
  void CancelAll();
  void StartJob();
  void ShowRunning(bool running);
  void ShowProgress();
  // On the page's thread, in the order the worker finished them.
  void FileDone(size_t index);
  void FileProblem(size_t index, ShredFailure failure, const std::wstring& path);
  void JobEnded(ShredJobEnd end);
  void TellRefusals(unsigned heading, const std::vector<Refusal>& refusals);
  void Join();

  controls::CMyListCtrl list_;
  std::array<controls::CMyCheckBox, 3> methods_;
  controls::CNButtonEx shred_;
  controls::UiTaskQueue tasks_;
  ShredList listed_;
  FolderPicker folderPicker_;
  Ask ask_;
  Tell tell_;

  bool running_ = false;
  std::thread worker_;
  std::shared_ptr<StopSignal> stop_;  // the running job's, fresh for each job
  std::atomic<uint64_t> range_{0};
  std::atomic<uint64_t> position_{0};
  ProgressScale scale_{0};
  size_t rowsRemoved_ = 0;  // rows of the running job already done and taken away
  std::vector<Refusal> problems_;
};

}  // namespace lumenor
