#include "shred/ShredMethod.h"

namespace lumenor {

namespace {

using enum ShredPattern;

constexpr ShredPattern kQuickPasses[] = {kRandom};
constexpr ShredPattern kSafePasses[] = {kZero, kOnes, kRandom};
constexpr ShredPattern kThoroughPasses[] = {kRandom, kZero, kOnes, kRandom, kZero, kOnes, kRandom};

}  // namespace

std::span<const ShredPattern> PassSequence(ShredMethod method) {
  switch (method) {
    case ShredMethod::kSafe:
      return kSafePasses;
    case ShredMethod::kThorough:
      return kThoroughPasses;
    case ShredMethod::kQuick:
      break;
  }
  return kQuickPasses;
}

}  // namespace lumenor
