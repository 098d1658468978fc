// The stop request of a running scan: an event that the page signals. The scan tests
// it with a zero wait between entries. An event that does not exist yet (the page makes
// it just after starting the worker) counts as not signalled.
#pragma once

#include <windows.h>

#include <atomic>

namespace lumenor {

class StopToken {
 public:
  StopToken() = default;  // never stops
  explicit StopToken(const std::atomic<HANDLE>* event) : event_(event) {}

  bool StopRequested() const {
    if (event_ == nullptr) {
      return false;
    }
    const HANDLE event = event_->load(std::memory_order_acquire);
    return event != nullptr && WaitForSingleObject(event, 0) == WAIT_OBJECT_0;
  }

 private:
  const std::atomic<HANDLE>* event_ = nullptr;
};

}  // namespace lumenor
