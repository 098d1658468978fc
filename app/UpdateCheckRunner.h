// The update check as the windows run it. The download runs on a worker thread, so a
// slow or silent server never holds a window; the question and the messages come on the
// window's thread when the result arrives. One check at a time: a click while one runs
// starts nothing.
#pragma once

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
  // A check still downloading is left to end on its own; its result is dropped.
  ~UpdateCheckRunner();

  // The window whose thread shows the results and owns the message boxes; it hands its
  // messages to HandleMessage.
  void Bind(HWND owner);
  bool HandleMessage(UINT message, LRESULT& result);
  void SetMessageBox(MessageBoxFunction messageBox) { messageBox_ = std::move(messageBox); }

  // Starts a check of the maker's download folder. The silent one speaks only when a
  // newer version is offered. False when a check is already running; an interactive
  // request then makes the running check report its result.
  bool Start(Mode mode);
  bool Running() const { return running_; }

 private:
  void Finish(const CAutoUpdater::Findings& findings);

  PageOpener opener_;
  MessageBoxFunction messageBox_ = SystemMessageBox;
  HWND owner_ = nullptr;
  // Shared with the worker, which may outlive this object while a server keeps it waiting.
  std::shared_ptr<controls::UiTaskQueue> results_ = std::make_shared<controls::UiTaskQueue>();
  bool running_ = false;
  bool interactive_ = false;
};

}  // namespace lumenor
