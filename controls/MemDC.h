// An off-screen drawing context for flicker-free painting: draw into it, and the result
// is copied onto the target in one step when the object goes.
#pragma once

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
  HDC Get() const { return memory_ != nullptr ? memory_ : target_; }

 private:
  HDC target_;
  RECT area_;
  HDC memory_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ oldBitmap_ = nullptr;
};

}  // namespace lumenor::controls
