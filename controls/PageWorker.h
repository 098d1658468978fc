// The worker thread of a page or dialog, started and ended one way for all of them. Each
// run has a stop signal of its own, so a stop meant for one run never ends a later one.
// The run reports through the owner's task queue, and its end comes the same way, as a
// task on the owner's thread. A thread that cannot start (or a queue bound to no window)
// ends the run at once: Start answers false and the end is told kNotStarted before Start
// returns. When the worker goes, the queue is unbound, the run asked to stop and its
// thread joined: the owner declares its worker after everything the job uses. A worker
// sharing its queue is instead left to end on its own (a server may keep a download
// waiting past its window's end).
#pragma once

#include "base/StopToken.h"
#include "controls/UiTasks.h"

#include <functional>
#include <memory>
#include <thread>

namespace lumenor::controls {

enum class RunEnd { kFinished, kNotStarted };

// Starts a thread on `entry`, or throws std::system_error. Pages take another one from
// tests that need a thread that cannot start, or one that waits.
using ThreadStarter = std::function<std::thread(std::function<void()> entry)>;
std::thread StartSystemThread(std::function<void()> entry);

class PageWorker {
 public:
  // Runs on the worker thread; what it throws ends the run as if it had returned.
  using Job = std::function<void(const StopToken& stop)>;
  // Runs on the owner's thread once the run has ended.
  using Ended = std::function<void(RunEnd end)>;

  explicit PageWorker(UiTaskQueue& tasks);
  // The thread shares `tasks` and may outlive this worker; its job must hold nothing of
  // the owner but what the queue's tasks reach while it is bound.
  explicit PageWorker(std::shared_ptr<UiTaskQueue> tasks);
  PageWorker(const PageWorker&) = delete;
  PageWorker& operator=(const PageWorker&) = delete;
  ~PageWorker();

  // False, with nothing started, while a run is under way; false, with the run ended at
  // once, when no thread could start.
  bool Start(Job job, const Ended& ended);
  void RequestStop();
  // From Start until the run's end has been told on the owner's thread.
  bool Running() const { return running_; }
  // Waits for the thread; its end still waits in the queue. For tests and the owner's end.
  void Join();

  void SetThreadStarter(ThreadStarter starter) { startThread_ = std::move(starter); }

 private:
  bool StartThread(Job job, const Ended& ended);
  void Finish(const Ended& ended);

  std::shared_ptr<UiTaskQueue> tasks_;
  bool leftRunning_;
  ThreadStarter startThread_ = StartSystemThread;
  std::shared_ptr<StopSignal> stop_;  // the running job's, fresh for each run
  std::thread thread_;
  bool running_ = false;
};

}  // namespace lumenor::controls
