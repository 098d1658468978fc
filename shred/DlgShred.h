// The shredder page: the list of files to shred, the three methods, and the Shred button
// that becomes Stop while the job, or the walk of Add Directory, runs on the page's
// worker. Other parts hand it paths to list (the "-S:" start-up path, a path another
// program sends to the main window).
//
// The worker never touches a window: it hands each finished file, and each file a walk
// lists, to the page's thread through the task queue, and keeps the job's progress in
// counters the page reads on a timer. While it runs, every control that could change the
// list is disabled.
#pragma once

#include "controls/Dialog.h"
#include "controls/FolderPicker.h"
#include "controls/ListFeed.h"
#include "controls/MyCheckBox.h"
#include "controls/MyListCtrl.h"
#include "controls/NButtonEx.h"
#include "controls/PageWorker.h"
#include "controls/UiTasks.h"
#include "shred/Pickers.h"
#include "shred/ProgressScale.h"
#include "shred/ShredJob.h"
#include "shred/ShredList.h"

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <vector>

namespace lumenor {

class CDlgShred : public controls::CDialog {
 public:
  // Going, the page stops a running job or walk and waits for its thread: the job stops
  // at its next chunk, the walk at its next entry.
  CDlgShred();

  // Lists one file given by its whole path, split at its last backslash. Files that
  // cannot be overwritten safely and rows already listed are left out. Returns whether a
  // row was added.
  bool AddPath(const std::wstring& fullPath);
  // What "Add File" and "Add Directory" do with the pickers' choice. Files left out for
  // the user's safety (links, files with other hard links) are told in one message;
  // files that cannot be opened for writing are left out silently. A folder is walked on
  // the worker, its files listed as they are found; false when it was refused or no
  // walk could start.
  void AddFiles(const std::vector<std::wstring>& paths);
  bool AddFolder(const std::wstring& folder);

  // "Shred": asks, then starts the job; while the job or a walk runs, stops it.
  void PressShred();
  // While the job or the walk of a folder runs.
  bool Running() const { return worker_.Running(); }
  ShredMethod Method() const;

  // Questions (Yes/No) and notices go through these, so that tests can answer them.
  using Ask = std::function<bool(const std::wstring& text)>;
  using Tell = std::function<void(const std::wstring& text)>;
  void SetMessageBoxes(Ask ask, Tell tell);
  // How the worker's thread is started; tests make it fail or wait.
  void SetThreadStarter(controls::ThreadStarter starter) { worker_.SetThreadStarter(std::move(starter)); }

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
  void JobEnded(controls::RunEnd run, ShredJobEnd end);
  void ListWalked(std::vector<ShredTarget> found);
  void WalkEnded(controls::RunEnd run);
  void TellRefusals(unsigned heading, const std::vector<Refusal>& refusals);

  controls::CMyListCtrl list_;
  std::array<controls::CMyCheckBox, 3> methods_;
  controls::CNButtonEx shred_;
  controls::UiTaskQueue tasks_;
  ShredList listed_;
  controls::FolderPicker folderPicker_;
  Ask ask_;
  Tell tell_;

  std::atomic<uint64_t> range_{0};
  std::atomic<uint64_t> position_{0};
  ProgressScale scale_{0};
  size_t rowsRemoved_ = 0;  // rows of the running job already done and taken away
  std::vector<Refusal> problems_;
  controls::RowFeed<ShredTarget> walked_{tasks_,
                                         [this](std::vector<ShredTarget> found) { ListWalked(std::move(found)); }};
  std::vector<Refusal> walkRefusals_;  // the walk's own until its end reaches the page
  // Last: its thread is stopped and joined before anything it uses goes.
  controls::PageWorker worker_{tasks_};
};

}  // namespace lumenor
