// Work handed from a worker thread to the thread of a window. A worker posts a task and
// goes on at once: it never waits for the window. The window's thread runs the tasks, in
// the order posted, when its message loop comes to them. Tasks still waiting when the
// window goes (or the queue is unbound) are dropped without running.
//
// The owner (a page) binds the queue to its window at start-up and hands its messages to
// HandleMessage. The queue outlives every worker that posts to
// it: the owner joins its workers before the queue goes.
#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <mutex>

namespace lumenor::controls {

inline constexpr UINT kRunUiTasksMessage = WM_APP + 0x200;

class UiTaskQueue {
 public:
  using Task = std::function<void()>;

  UiTaskQueue() = default;
  UiTaskQueue(const UiTaskQueue&) = delete;
  UiTaskQueue& operator=(const UiTaskQueue&) = delete;

  void Bind(HWND window);
  // Drops the waiting tasks; later posts are refused.
  void Unbind();

  // Any thread. False, and the task dropped, when no window takes it.
  bool Post(Task task);
  // The window's thread, on kRunUiTasksMessage: runs every task waiting now.
  void RunPending();
  // For the owner's message handler: runs the tasks on kRunUiTasksMessage (true: the
  // message is answered), and unbinds on WM_DESTROY (false: the window goes on with it).
  bool HandleMessage(UINT message, LRESULT& result);
  // How many tasks wait; for tests.
  size_t Waiting() const;

 private:
  mutable std::mutex mutex_;
  HWND window_ = nullptr;
  std::deque<Task> tasks_;
  bool wakeUpPosted_ = false;
};

}  // namespace lumenor::controls
