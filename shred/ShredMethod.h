// The three overwrite methods: how many passes each writes, and with which pattern.
#pragma once

#include <span>

namespace lumenor {

enum class ShredMethod { kQuick = 1, kSafe = 3, kThorough = 7 };

enum class ShredPattern { kRandom, kZero, kOnes };

// The patterns a method writes over each file, first pass first.
std::span<const ShredPattern> PassSequence(ShredMethod method);

inline int PassCount(ShredMethod method) { return static_cast<int>(method); }

}  // namespace lumenor
