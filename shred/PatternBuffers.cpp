#include "shred/PatternBuffers.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <ctime>

namespace lumenor {

void PatternBuffers::Release::operator()(unsigned char* pages) const {
  (void)VirtualFree(pages, 0, MEM_RELEASE);  // releasing our own allocation cannot usefully fail
}

PatternBuffers::Pages PatternBuffers::Allocate(unsigned char fill) {
  auto* pages = static_cast<unsigned char*>(VirtualAlloc(nullptr, kSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  if (pages != nullptr && fill != 0) {
    std::memset(pages, fill, kSize);  // fresh pages are zero already
  }
  return Pages(pages);
}

std::optional<PatternBuffers> PatternBuffers::Make(int passCount) {
  PatternBuffers buffers;
  buffers.random_ = Allocate(0);
  if (!buffers.random_) {
    return std::nullopt;
  }
  std::srand(static_cast<unsigned>(_time64(nullptr)));
  unsigned char* random = buffers.random_.get();
  for (size_t index = 0; index < kSize; ++index) {
    random[index] = static_cast<unsigned char>(std::rand() & 0xFF);
  }
  if (passCount != 1) {
    buffers.zero_ = Allocate(0x00);
    // 0x01, not 0xFF: the byte value one, as this method has always written it.
    buffers.ones_ = Allocate(0x01);
    if (!buffers.zero_ || !buffers.ones_) {
      return std::nullopt;
    }
  }
  return buffers;
}

const unsigned char* PatternBuffers::For(ShredPattern pattern) const {
  switch (pattern) {
    case ShredPattern::kZero:
      return zero_.get();
    case ShredPattern::kOnes:
      return ones_.get();
    case ShredPattern::kRandom:
      break;
  }
  return random_.get();
}

}  // namespace lumenor
