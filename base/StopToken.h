// The stop request of a running job. The owner makes a fresh signal for each run and sets
// it from its own thread; the walks and passes test it between entries. Testing costs no
// system call, which matters when a walk passes a hundred thousand entries.
#pragma once

#include <atomic>

namespace lumenor {

class StopSignal {
 public:
  void Request() { requested_.store(true, std::memory_order_release); }
  bool Requested() const { return requested_.load(std::memory_order_acquire); }

 private:
  std::atomic<bool> requested_{false};
};

class StopToken {
 public:
  StopToken() = default;  // never stops
  explicit StopToken(const StopSignal* signal) : signal_(signal) {}

  bool StopRequested() const { return signal_ != nullptr && signal_->Requested(); }

 private:
  const StopSignal* signal_ = nullptr;
};

}  // namespace lumenor
