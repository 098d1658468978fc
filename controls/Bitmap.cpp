#include "controls/Bitmap.h"

#include "controls/GdiOwners.h"

#include <algorithm>

#include <utility>

namespace lumenor::controls {

namespace {

// Selects a bitmap into a fresh memory DC for the length of one drawing call.
class CSourceDC {
 public:
  CSourceDC(HDC target, HBITMAP bitmap) : dc_(target), selected_(dc_.Get(), bitmap) {}
  HDC Get() const { return selected_.Selected() ? dc_.Get() : nullptr; }

 private:
  MemoryDC dc_;
  SelectedObject selected_;  // taken out again before the context goes
};

}  // namespace

CBitmapResource::CBitmapResource(CBitmapResource&& other) noexcept
    : bitmap_(std::move(other.bitmap_)), size_(std::exchange(other.size_, SIZE{})) {}

CBitmapResource& CBitmapResource::operator=(CBitmapResource&& other) noexcept {
  if (this != &other) {
    bitmap_ = std::move(other.bitmap_);
    size_ = std::exchange(other.size_, SIZE{});
  }
  return *this;
}

bool CBitmapResource::Load(int id) {
  Reset();
  bitmap_.Reset(static_cast<HBITMAP>(
      ::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
  BITMAP info{};
  if (!bitmap_ || ::GetObjectW(bitmap_.Get(), sizeof info, &info) == 0) {
    Reset();
    return false;
  }
  size_ = SIZE{info.bmWidth, info.bmHeight < 0 ? -info.bmHeight : info.bmHeight};
  return true;
}

void CBitmapResource::Reset() {
  bitmap_.Reset();  // ours and not selected anywhere
  size_ = SIZE{};
}

bool CBitmapResource::Draw(HDC dc, int x, int y) const {
  if (!bitmap_) {
    return false;
  }
  const CSourceDC source(dc, bitmap_.Get());
  return source.Get() != nullptr && ::BitBlt(dc, x, y, size_.cx, size_.cy, source.Get(), 0, 0, SRCCOPY) != FALSE;
}

bool CBitmapResource::DrawPart(HDC dc, int x, int y, const RECT& part) const {
  if (!bitmap_) {
    return false;
  }
  const CSourceDC source(dc, bitmap_.Get());
  return source.Get() != nullptr && ::BitBlt(dc, x, y, part.right - part.left, part.bottom - part.top, source.Get(),
                                             part.left, part.top, SRCCOPY) != FALSE;
}

std::vector<POINT> CBitmapResource::PixelsOfColour(COLORREF colour, const RECT& area) const {
  std::vector<POINT> found;
  if (!bitmap_) {
    return found;
  }
  const WindowDC screen(nullptr);
  if (!screen) {
    return found;
  }
  const CSourceDC source(screen.Get(), bitmap_.Get());
  if (source.Get() != nullptr) {
    for (LONG y = std::max(area.top, 0L); y < std::min(area.bottom, size_.cy); ++y) {
      for (LONG x = std::max(area.left, 0L); x < std::min(area.right, size_.cx); ++x) {
        if (::GetPixel(source.Get(), x, y) == colour) {
          found.push_back(POINT{x, y});
        }
      }
    }
  }
  return found;
}

bool CBitmapResource::DrawStretched(HDC dc, const RECT& rect) const {
  if (!bitmap_) {
    return false;
  }
  const CSourceDC source(dc, bitmap_.Get());
  if (source.Get() == nullptr) {
    return false;
  }
  (void)::SetStretchBltMode(dc, HALFTONE);  // answers the previous mode
  return ::StretchBlt(dc, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, source.Get(), 0, 0,
                      size_.cx, size_.cy, SRCCOPY) != FALSE;
}

}  // namespace lumenor::controls
