#include "controls/UiTasks.h"

#include <utility>

namespace lumenor::controls {

void UiTaskQueue::Bind(HWND window) {
  const std::lock_guard<std::mutex> lock(mutex_);
  window_ = window;
  wakeUpPosted_ = false;
}

void UiTaskQueue::Unbind() {
  std::list<Task> dropped;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    window_ = nullptr;
    dropped.swap(tasks_);
  }
  // The tasks go here, outside the lock: what they hold may take its time to free.
}

bool UiTaskQueue::Post(Task task) {
  std::list<Task> node;
  node.push_back(std::move(task));
  const std::lock_guard<std::mutex> lock(mutex_);
  return Enqueue(node);
}

bool UiTaskQueue::Post(Reserved reserved) {
  const std::lock_guard<std::mutex> lock(mutex_);
  return Enqueue(reserved.node_);
}

bool UiTaskQueue::Enqueue(std::list<Task>& node) {
  if (window_ == nullptr || ::IsWindow(window_) == FALSE) {
    return false;
  }
  const auto added = node.begin();
  tasks_.splice(tasks_.end(), node);
  // One wake-up for any number of tasks: the window runs them all when it comes to it.
  if (!wakeUpPosted_) {
    wakeUpPosted_ = ::PostMessageW(window_, kRunUiTasksMessage, 0, 0) != FALSE;
    if (!wakeUpPosted_) {
      tasks_.erase(added);  // the queue is full or the window went: nobody would run it
      return false;
    }
  }
  return true;
}

void UiTaskQueue::RunPending() {
  std::list<Task> ready;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    ready.swap(tasks_);
    wakeUpPosted_ = false;
  }
  for (Task& task : ready) {
    task();
  }
}

bool UiTaskQueue::HandleMessage(UINT message, LRESULT& result) {
  if (message == kRunUiTasksMessage) {
    RunPending();
    result = 0;
    return true;
  }
  if (message == WM_DESTROY) {
    Unbind();  // what a worker still sends has no window to go to
  }
  return false;
}

bool UiTaskQueue::Bound() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return window_ != nullptr && ::IsWindow(window_) != FALSE;
}

size_t UiTaskQueue::Waiting() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return tasks_.size();
}

}  // namespace lumenor::controls
