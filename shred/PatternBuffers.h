// The three 64 KiB patterns a shred job writes from: random, zero and ones. They are
// made once per job, so no pass and no file allocates anything.
#pragma once

#include "shred/ShredMethod.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace lumenor {

class PatternBuffers {
 public:
  static constexpr size_t kSize = 0x10000;

  // The buffers a job of `passCount` passes needs: the random one always, zero and ones
  // only when there is more than one pass. The random bytes come from rand(), seeded once
  // here with the time in seconds; rand() keeps its state per thread, so this runs on
  // the job's own thread. Nothing when the memory cannot be had.
  static std::optional<PatternBuffers> Make(int passCount);

  // The buffer of `pattern`; null when this job made none.
  const unsigned char* For(ShredPattern pattern) const;

 private:
  struct Release {
    void operator()(unsigned char* pages) const;
  };
  using Pages = std::unique_ptr<unsigned char, Release>;

  static Pages Allocate(unsigned char fill);

  Pages random_;
  Pages zero_;
  Pages ones_;
};

}  // namespace lumenor
