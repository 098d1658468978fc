#include "controls/Bitmap.h"

#include <algorithm>

#include <utility>

namespace lumenor::controls {

namespace {

// Selects a bitmap into a fresh memory DC for the length of one drawing call.
class CSourceDC {
 public:
  CSourceDC(HDC target, HBITMAP bitmap) : dc_(::CreateCompatibleDC(target)) {
    if (dc_ != nullptr) {
      old_ = ::SelectObject(dc_, bitmap);
    }
  }
  CSourceDC(const CSourceDC&) = delete;
  CSourceDC& operator=(const CSourceDC&) = delete;
  ~CSourceDC() {
    if (dc_ != nullptr) {
      (void)::SelectObject(dc_, old_);  // restores the DC's own bitmap
      (void)::DeleteDC(dc_);            // a DC we made; nothing to do if it fails
    }
  }
  HDC Get() const { return old_ != nullptr && old_ != HGDI_ERROR ? dc_ : nullptr; }

 private:
  HDC dc_;
  HGDIOBJ old_ = nullptr;
};

}  // namespace

CBitmapResource::CBitmapResource(CBitmapResource&& other) noexcept
    : bitmap_(std::exchange(other.bitmap_, nullptr)), size_(std::exchange(other.size_, SIZE{})) {}

CBitmapResource& CBitmapResource::operator=(CBitmapResource&& other) noexcept {
  if (this != &other) {
    Reset();
    bitmap_ = std::exchange(other.bitmap_, nullptr);
    size_ = std::exchange(other.size_, SIZE{});
  }
  return *this;
}

bool CBitmapResource::Load(int id) {
  Reset();
  bitmap_ = static_cast<HBITMAP>(
      ::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION));
  if (bitmap_ == nullptr) {
    return false;
  }
  BITMAP info{};
  if (::GetObjectW(bitmap_, sizeof info, &info) == 0) {
    Reset();
    return false;
  }
  size_ = SIZE{info.bmWidth, info.bmHeight < 0 ? -info.bmHeight : info.bmHeight};
  return true;
}

void CBitmapResource::Reset() {
  if (bitmap_ != nullptr) {
    (void)::DeleteObject(bitmap_);  // ours and not selected anywhere
  }
  bitmap_ = nullptr;
  size_ = SIZE{};
}

bool CBitmapResource::Draw(HDC dc, int x, int y) const {
  if (bitmap_ == nullptr) {
    return false;
  }
  CSourceDC source(dc, bitmap_);
  return source.Get() != nullptr && ::BitBlt(dc, x, y, size_.cx, size_.cy, source.Get(), 0, 0, SRCCOPY) != FALSE;
}

bool CBitmapResource::DrawPart(HDC dc, int x, int y, const RECT& part) const {
  if (bitmap_ == nullptr) {
    return false;
  }
  CSourceDC source(dc, bitmap_);
  return source.Get() != nullptr && ::BitBlt(dc, x, y, part.right - part.left, part.bottom - part.top, source.Get(),
                                             part.left, part.top, SRCCOPY) != FALSE;
}

std::vector<POINT> CBitmapResource::PixelsOfColour(COLORREF colour, const RECT& area) const {
  std::vector<POINT> found;
  if (bitmap_ == nullptr) {
    return found;
  }
  const HDC screen = ::GetDC(nullptr);
  if (screen == nullptr) {
    return found;
  }
  {
    CSourceDC source(screen, bitmap_);
    if (source.Get() != nullptr) {
      for (LONG y = std::max(area.top, 0L); y < std::min(area.bottom, size_.cy); ++y) {
        for (LONG x = std::max(area.left, 0L); x < std::min(area.right, size_.cx); ++x) {
          if (::GetPixel(source.Get(), x, y) == colour) {
            found.push_back(POINT{x, y});
          }
        }
      }
    }
  }
  (void)::ReleaseDC(nullptr, screen);  // a screen DC we took: giving it back cannot usefully fail
  return found;
}

bool CBitmapResource::DrawStretched(HDC dc, const RECT& rect) const {
  if (bitmap_ == nullptr) {
    return false;
  }
  CSourceDC source(dc, bitmap_);
  if (source.Get() == nullptr) {
    return false;
  }
  (void)::SetStretchBltMode(dc, HALFTONE);  // answers the previous mode
  return ::StretchBlt(dc, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, source.Get(), 0, 0,
                      size_.cx, size_.cy, SRCCOPY) != FALSE;
}

}  // namespace lumenor::controls
