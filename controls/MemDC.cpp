#include "controls/MemDC.h"

namespace lumenor::controls {

CMemDC::CMemDC(HDC target, const RECT& area) : target_(target), area_(area) {
  const int width = area.right - area.left;
  const int height = area.bottom - area.top;
  if (width <= 0 || height <= 0) {
    return;
  }
  memory_ = ::CreateCompatibleDC(target);
  bitmap_ = memory_ != nullptr ? ::CreateCompatibleBitmap(target, width, height) : nullptr;
  oldBitmap_ = bitmap_ != nullptr ? ::SelectObject(memory_, bitmap_) : nullptr;
  if (oldBitmap_ == nullptr || oldBitmap_ == HGDI_ERROR) {
    if (bitmap_ != nullptr) {
      (void)::DeleteObject(bitmap_);
    }
    if (memory_ != nullptr) {
      (void)::DeleteDC(memory_);
    }
    memory_ = nullptr;
    bitmap_ = nullptr;
    oldBitmap_ = nullptr;
    return;
  }
  // Callers draw in the target's coordinates.
  (void)::SetWindowOrgEx(memory_, area.left, area.top, nullptr);  // a fresh DC accepts any origin
}

CMemDC::~CMemDC() {
  if (memory_ == nullptr) {
    return;
  }
  // A failed copy leaves the old picture on screen; the next paint tries again.
  (void)::BitBlt(target_, area_.left, area_.top, area_.right - area_.left, area_.bottom - area_.top, memory_,
                 area_.left, area_.top, SRCCOPY);
  (void)::SelectObject(memory_, oldBitmap_);
  (void)::DeleteObject(bitmap_);
  (void)::DeleteDC(memory_);
}

}  // namespace lumenor::controls
