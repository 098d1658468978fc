// The stop request of a running scan: an event that the page signals. The scan tests
// it with a zero wait between entries. An event that does not exist yet (the page makes
// it just after starting the worker) counts as not signalled. A walk of whole disks tests
// a flag instead: a wait is a call into the system, which a test per file cannot afford.
#pragma once

#include <windows.h>

#include <atomic>

namespace lumenor {

class StopToken {
 public:
  StopToken() = default;  // never stops
  explicit StopToken(const std::atomic<HANDLE>* event) : event_(event) {}
  explicit StopToken(const std::atomic<bool>* flag) : flag_(flag) {}

  bool StopRequested() const {
    if (flag_ != nullptr) {
      return flag_->load(std::memory_order_relaxed);
    }
    if (event_ == nullptr) {
      return false;
    }
    const HANDLE event = event_->load(std::memory_order_acquire);
    return event != nullptr && WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
  }

 private:
  const std::atomic<HANDLE>* event_ = nullptr;
  const std::atomic<bool>* flag_ = nullptr;
};

}  // namespace lumenor
