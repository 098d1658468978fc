#include "controls/PageWorker.h"

#include <utility>

namespace lumenor::controls {

std::thread StartSystemThread(std::function<void()> entry) { return std::thread(std::move(entry)); }

// The queue belongs to the owner, who outlives the thread: shared without ownership.
PageWorker::PageWorker(UiTaskQueue& tasks) : tasks_(std::shared_ptr<UiTaskQueue>(), &tasks), leftRunning_(false) {}

PageWorker::PageWorker(std::shared_ptr<UiTaskQueue> tasks) : tasks_(std::move(tasks)), leftRunning_(true) {}

PageWorker::~PageWorker() {
  tasks_->Unbind();  // what the thread still sends has nobody to go to
  RequestStop();
  if (!thread_.joinable()) {
    return;
  }
  if (leftRunning_) {
    thread_.detach();  // it holds its own share of everything it touches
  } else {
    thread_.join();
  }
}

bool PageWorker::Start(Job job, const Ended& ended) {
  if (running_) {
    return false;
  }
  Join();  // the last run has told its end: its thread is returning
  // Without a window to tell the end to, the run would never end for the owner.
  if (tasks_->Bound() && StartThread(std::move(job), ended)) {
    return true;
  }
  running_ = false;
  if (ended) {
    ended(RunEnd::kNotStarted);
  }
  return false;
}

bool PageWorker::StartThread(Job job, const Ended& ended) {
  try {
    // Made here, so that the thread's last act needs no memory.
    UiTaskQueue::Reserved end([this, ended] { Finish(ended); });
    stop_ = std::make_shared<StopSignal>();
    running_ = true;
    thread_ = startThread_([tasks = tasks_, stop = stop_, job = std::move(job), end = std::move(end)]() mutable {
      try {
        job(StopToken(stop.get()));
      } catch (...) {
        // Out of memory for a report: the run ends with what it handed over.
      }
      (void)tasks->Post(std::move(end));  // refused once the owner's window went
    });
    return true;
  } catch (...) {
    return false;  // no thread (std::system_error), or no memory to describe one: nothing ran
  }
}

void PageWorker::RequestStop() {
  if (stop_) {
    stop_->Request();
  }
}

void PageWorker::Join() {
  if (thread_.joinable()) {
    thread_.join();
  }
}

void PageWorker::Finish(const Ended& ended) {
  Join();
  running_ = false;
  if (ended) {
    ended(RunEnd::kFinished);
  }
}

}  // namespace lumenor::controls
