// A bitmap resource of the executable, loaded by number and freed with the object. A
// number with no bitmap behind it gives an empty object that draws nothing.
#pragma once

#include "controls/GdiOwners.h"

#include <windows.h>

#include <vector>

namespace lumenor::controls {

class CBitmapResource {
 public:
  CBitmapResource() = default;
  explicit CBitmapResource(int id) { Load(id); }
  CBitmapResource(const CBitmapResource&) = delete;
  CBitmapResource& operator=(const CBitmapResource&) = delete;
  CBitmapResource(CBitmapResource&& other) noexcept;
  CBitmapResource& operator=(CBitmapResource&& other) noexcept;

  bool Load(int id);
  void Reset();

  HBITMAP Handle() const { return bitmap_.Get(); }
  explicit operator bool() const { return static_cast<bool>(bitmap_); }
  SIZE Size() const { return size_; }

  // Draws the bitmap with its top left corner at (x, y), at its own size.
  bool Draw(HDC dc, int x, int y) const;
  // Draws the part `part` of the bitmap with its top left corner at (x, y).
  bool DrawPart(HDC dc, int x, int y, const RECT& part) const;
  // The pixels of `area` that have exactly `colour`.
  std::vector<POINT> PixelsOfColour(COLORREF colour, const RECT& area) const;
  // Draws the bitmap scaled into `rect`.
  bool DrawStretched(HDC dc, const RECT& rect) const;

 private:
  OwnedBitmap bitmap_;
  SIZE size_{};
};

}  // namespace lumenor::controls
