// Seven- or fourteen-segment digit display: a row of digit cells drawn as segments in
// an "on" colour, unlit segments optionally in an "off" colour, on a transparent or
// plain background.
#pragma once

#include "controls/Control.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::controls {

class CMyDigitDisplay : public CControl {
 public:
  // Style flags.
  static constexpr UINT kFourteenSegments = 0x01;  // else seven
  static constexpr UINT kShowUnlit = 0x02;         // draw unlit segments in the off colour
  static constexpr UINT kAlignRight = 0x04;        // else left
  static constexpr UINT kSlanted = 0x08;           // lean the digits to the right

  // Segment bits. Seven segments: a top, b upper right, c lower right, d bottom,
  // e lower left, f upper left, g middle. Fourteen add the split middle (g is its left
  // half, kMiddleRight the right half) and the four diagonals and two centre strokes.
  enum Segment : uint16_t {
    kA = 1 << 0,
    kB = 1 << 1,
    kC = 1 << 2,
    kD = 1 << 3,
    kE = 1 << 4,
    kF = 1 << 5,
    kG = 1 << 6,
    kMiddleRight = 1 << 7,
    kUpperLeftDiagonal = 1 << 8,
    kUpperCentre = 1 << 9,
    kUpperRightDiagonal = 1 << 10,
    kLowerLeftDiagonal = 1 << 11,
    kLowerCentre = 1 << 12,
    kLowerRightDiagonal = 1 << 13,
  };

  // The lit segments of one character; 0 (blank) for characters the display cannot show.
  static uint16_t SegmentsOf(wchar_t character, bool fourteen);
  // The cells of a row of `cells` digits showing `text`: aligned left or right, blank
  // cells padding; a text longer than the row shows its last (least significant) part.
  static std::vector<uint16_t> Layout(std::wstring_view text, size_t cells, UINT style);

  // Takes over a static of a dialog template.
  bool Attach(HWND dialog, int id);
  void SetColours(COLORREF off, COLORREF on);
  void SetTransparent(bool transparent);
  void SetStyle(UINT style);
  void SetNumber(long long number);
  void SetDigits(std::wstring_view text);
  const std::wstring& Digits() const { return text_; }
  // How many cells fit the control's height and width.
  size_t CellCount() const;

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Paint(HDC dc) const;

  std::wstring text_;
  COLORREF off_ = RGB(52, 0, 0);
  COLORREF on_ = RGB(70, 155, 27);
  bool transparent_ = true;
  UINT style_ = kAlignRight;
};

}  // namespace lumenor::controls
