// A progress bar counts in int: a range above 2 GB is counted in larger steps, so the
// bar neither wraps nor runs backwards.
#pragma once

#include <climits>
#include <cstdint>

namespace lumenor {

class ProgressScale {
 public:
  explicit ProgressScale(uint64_t range) {
    while ((range >> shift_) > static_cast<uint64_t>(INT_MAX)) {
      ++shift_;
    }
    range_ = static_cast<int>(range >> shift_);
  }
  int Range() const { return range_; }
  int Position(uint64_t position) const {
    const uint64_t scaled = position >> shift_;
    return scaled > static_cast<uint64_t>(range_) ? range_ : static_cast<int>(scaled);
  }

 private:
  int shift_ = 0;
  int range_ = 0;
};

}  // namespace lumenor
