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

#include <functional>
#include <list>
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

  // A task made ahead of time, on the owner's thread: posting it later needs no memory, so
  // a worker's last word reaches the window even when memory has run out.
  class Reserved {
   public:
    explicit Reserved(Task task) { node_.push_back(std::move(task)); }

   private:
    friend class UiTaskQueue;
    std::list<Task> node_;
  };

  // Any thread. False, and the task dropped, when no window takes it.
  bool Post(Task task);
  bool Post(Reserved reserved);
  // The window's thread, on kRunUiTasksMessage: runs every task waiting now.
  void RunPending();
  // For the owner's message handler: runs the tasks on kRunUiTasksMessage (true: the
  // message is answered), and unbinds on WM_DESTROY (false: the window goes on with it).
  bool HandleMessage(UINT message, LRESULT& result);
  // Whether a window takes tasks now.
  bool Bound() const;
  // How many tasks wait; for tests.
  size_t Waiting() const;

 private:
  mutable std::mutex mutex_;
  HWND window_ = nullptr;
  // Waiting tasks; a list, so that a reserved task joins it without allocating.
  std::list<Task> tasks_;
  bool wakeUpPosted_ = false;

  bool Enqueue(std::list<Task>& node);  // under the lock
};

}  // namespace lumenor::controls
