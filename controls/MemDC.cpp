#include "controls/MemDC.h"

namespace lumenor::controls {

CMemDC::CMemDC(HDC target, const RECT& area) : target_(target), area_(area), memory_(target) {
  const int width = area.right - area.left;
  const int height = area.bottom - area.top;
  if (width <= 0 || height <= 0 || !memory_) {
    return;
  }
  bitmap_.Reset(::CreateCompatibleBitmap(target, width, height));
  if (!bitmap_) {
    return;
  }
  canvas_.emplace(memory_.Get(), bitmap_.Get());
  if (!canvas_->Selected()) {
    canvas_.reset();
    return;
  }
  // Callers draw in the target's coordinates.
  (void)::SetWindowOrgEx(memory_.Get(), area.left, area.top, nullptr);  // a fresh DC accepts any origin
}

CMemDC::~CMemDC() {
  if (!canvas_) {
    return;
  }
  // A failed copy leaves the old picture on screen; the next paint tries again.
  (void)::BitBlt(target_, area_.left, area_.top, area_.right - area_.left, area_.bottom - area_.top, memory_.Get(),
                 area_.left, area_.top, SRCCOPY);
}

}  // namespace lumenor::controls
