// The update check as the windows run it. The download runs on a worker thread, so a
// slow or silent server never holds a window; the question and the messages come on the
// window's thread when the result arrives. One check at a time: a click while one runs
// starts nothing. A server may keep the download waiting past the window's end, so the
// worker shares its queue with the thread and leaves it to end on its own.
#pragma once

#include "controls/PageWorker.h"
#include "controls/UiTasks.h"
#include "controls/UserPrompt.h"
#include "update/AutoUpdater.h"
#include "update/MakerSite.h"

#include <windows.h>

#include <memory>

namespace lumenor {

class UpdateCheckRunner {
 public:
  enum class Mode { kSilent, kInteractive };

  explicit UpdateCheckRunner(PageOpener opener);
  UpdateCheckRunner(const UpdateCheckRunner&) = delete;
  UpdateCheckRunner& operator=(const UpdateCheckRunner&) = delete;

  // The window whose thread shows the results and owns the message boxes; it hands its
  // messages to HandleMessage.
  void Bind(HWND owner);
  bool HandleMessage(UINT message, LRESULT& result);
  void SetMessageBox(MessageBoxFunction messageBox) { messageBox_ = std::move(messageBox); }
  // How the download's thread is started; tests make it fail.
  void SetThreadStarter(controls::ThreadStarter starter) { worker_.SetThreadStarter(std::move(starter)); }

  // Starts a check of the maker's download folder. The silent one speaks only when a
  // newer version is offered. False when a check is already running; an interactive
  // request then makes the running check report its result. False too when no thread
  // could start; an interactive check then says so.
  bool Start(Mode mode);
  bool Running() const { return worker_.Running(); }

 private:
  void Finish(const CAutoUpdater::Findings& findings);
  void NotStarted();

  PageOpener opener_;
  MessageBoxFunction messageBox_ = SystemMessageBox;
  HWND owner_ = nullptr;
  bool interactive_ = false;
  // Shared with the worker's thread, which may outlive this object while a server keeps
  // it waiting; a check still downloading then ends on its own and its result is dropped.
  std::shared_ptr<controls::UiTaskQueue> results_ = std::make_shared<controls::UiTaskQueue>();
  controls::PageWorker worker_{results_};
};

}  // namespace lumenor
