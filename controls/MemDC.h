// An off-screen drawing context for flicker-free painting: draw into it, and the result
// is copied onto the target in one step when the object goes.
#pragma once

#include "controls/GdiOwners.h"

#include <optional>

#include <windows.h>

namespace lumenor::controls {

class CMemDC {
 public:
  CMemDC(HDC target, const RECT& area);
  CMemDC(const CMemDC&) = delete;
  CMemDC& operator=(const CMemDC&) = delete;
  ~CMemDC();

  // The off-screen DC, or the target itself when no off-screen one could be made (then
  // painting simply goes straight to the screen).
  HDC Get() const { return canvas_ ? memory_.Get() : target_; }

 private:
  HDC target_;
  RECT area_;
  // In this order: the selection is undone before the bitmap and the context go.
  MemoryDC memory_;
  OwnedBitmap bitmap_;
  std::optional<SelectedObject> canvas_;  // set when the bitmap is in the memory context
};

}  // namespace lumenor::controls
