#include "controls/DigitDisplay.h"

#include "controls/GdiOwners.h"
#include "controls/MemDC.h"
#include "controls/Paint.h"

#include <algorithm>

namespace lumenor::controls {

namespace {

using Segment = CMyDigitDisplay::Segment;

constexpr uint16_t kSevenSegmentDigits[10] = {
    Segment::kA | Segment::kB | Segment::kC | Segment::kD | Segment::kE | Segment::kF,                // 0
    Segment::kB | Segment::kC,                                                                        // 1
    Segment::kA | Segment::kB | Segment::kG | Segment::kE | Segment::kD,                              // 2
    Segment::kA | Segment::kB | Segment::kG | Segment::kC | Segment::kD,                              // 3
    Segment::kF | Segment::kG | Segment::kB | Segment::kC,                                            // 4
    Segment::kA | Segment::kF | Segment::kG | Segment::kC | Segment::kD,                              // 5
    Segment::kA | Segment::kF | Segment::kG | Segment::kE | Segment::kC | Segment::kD,                // 6
    Segment::kA | Segment::kB | Segment::kC,                                                          // 7
    Segment::kA | Segment::kB | Segment::kC | Segment::kD | Segment::kE | Segment::kF | Segment::kG,  // 8
    Segment::kA | Segment::kB | Segment::kC | Segment::kD | Segment::kF | Segment::kG,                // 9
};

// A cell is 3 units wide and 5 high (before scaling): the ends of each stroke.
struct Stroke {
  uint16_t segment;
  float x1, y1, x2, y2;
};
constexpr Stroke kStrokes[] = {
    {Segment::kA, 0, 0, 3, 0},
    {Segment::kB, 3, 0, 3, 2.5F},
    {Segment::kC, 3, 2.5F, 3, 5},
    {Segment::kD, 0, 5, 3, 5},
    {Segment::kE, 0, 2.5F, 0, 5},
    {Segment::kF, 0, 0, 0, 2.5F},
    {Segment::kG, 0, 2.5F, 1.5F, 2.5F},
    {Segment::kMiddleRight, 1.5F, 2.5F, 3, 2.5F},
    {Segment::kUpperLeftDiagonal, 0, 0, 1.5F, 2.5F},
    {Segment::kUpperCentre, 1.5F, 0, 1.5F, 2.5F},
    {Segment::kUpperRightDiagonal, 3, 0, 1.5F, 2.5F},
    {Segment::kLowerLeftDiagonal, 1.5F, 2.5F, 0, 5},
    {Segment::kLowerCentre, 1.5F, 2.5F, 1.5F, 5},
    {Segment::kLowerRightDiagonal, 1.5F, 2.5F, 3, 5},
};

}  // namespace

uint16_t CMyDigitDisplay::SegmentsOf(wchar_t character, bool fourteen) {
  uint16_t segments = 0;
  if (character >= L'0' && character <= L'9') {
    segments = kSevenSegmentDigits[character - L'0'];
  } else if (character == L'-') {
    segments = kG;
  }
  if (fourteen && (segments & kG) != 0) {
    segments |= kMiddleRight;  // the middle bar has two halves on fourteen segments
  }
  return segments;
}

std::vector<uint16_t> CMyDigitDisplay::Layout(std::wstring_view text, size_t cells, UINT style) {
  std::vector<uint16_t> layout(cells, 0);
  if (text.size() > cells) {
    text.remove_prefix(text.size() - cells);
  }
  const size_t first = (style & kAlignRight) != 0 ? cells - text.size() : 0;
  for (size_t index = 0; index < text.size(); ++index) {
    layout[first + index] = SegmentsOf(text[index], (style & kFourteenSegments) != 0);
  }
  return layout;
}

bool CMyDigitDisplay::Attach(HWND dialog, int id) { return SubclassItem(dialog, id); }

void CMyDigitDisplay::SetColours(COLORREF off, COLORREF on) {
  off_ = off;
  on_ = on;
  (void)Invalidate();
}

void CMyDigitDisplay::SetTransparent(bool transparent) {
  transparent_ = transparent;
  (void)Invalidate();
}

void CMyDigitDisplay::SetStyle(UINT style) {
  style_ = style;
  (void)Invalidate();
}

void CMyDigitDisplay::SetNumber(long long number) { SetDigits(std::to_wstring(number)); }

void CMyDigitDisplay::SetDigits(std::wstring_view text) {
  text_ = text;
  (void)Invalidate();
}

size_t CMyDigitDisplay::CellCount() const {
  const RECT client = ClientRect();
  const int height = client.bottom - client.top;
  const int cellWidth = std::max(1, height * 3 / 5);
  return static_cast<size_t>(std::max(1, static_cast<int>(client.right - client.left) / cellWidth));
}

void CMyDigitDisplay::Paint(HDC target) const {
  const RECT client = ClientRect();
  CMemDC memory(target, client);
  HDC dc = memory.Get();
  HWND parent = ::GetParent(window_);
  HBRUSH background = nullptr;
  if (transparent_ && parent != nullptr) {
    // Ask the parent for the brush it paints its own controls' background with.
    background = reinterpret_cast<HBRUSH>(
        ::SendMessageW(parent, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(window_)));
  }
  if (background != nullptr && background != ::GetStockObject(NULL_BRUSH)) {
    (void)::FillRect(dc, &client, background);
  } else {
    (void)FillSolid(dc, client, transparent_ ? ::GetSysColor(COLOR_BTNFACE) : RGB(0, 0, 0));
  }

  const std::vector<uint16_t> cells = Layout(text_, CellCount(), style_);
  const int height = client.bottom - client.top;
  const int cellWidth = std::max(1, height * 3 / 5);
  const int thickness = std::max(2, height / 9);
  const float scale = static_cast<float>(height - 2 * thickness) / 5.0F;
  const float slant = (style_ & kSlanted) != 0 ? 0.12F : 0.0F;
  const OwnedPen onPen(::CreatePen(PS_SOLID, thickness, on_));
  const OwnedPen offPen(::CreatePen(PS_SOLID, thickness, off_));
  if (!onPen || !offPen) {
    return;
  }
  const SelectedObject pen(dc, onPen.Get());
  const uint16_t drawable = (style_ & kFourteenSegments) != 0 ? 0x3FFF : 0x7F;
  for (size_t cell = 0; cell < cells.size(); ++cell) {
    const float left = static_cast<float>(cell) * static_cast<float>(cellWidth) + static_cast<float>(thickness) * 1.5F;
    const float top = static_cast<float>(thickness);
    for (const Stroke& stroke : kStrokes) {
      if ((stroke.segment & drawable) == 0) {
        continue;
      }
      const bool lit = (cells[cell] & stroke.segment) != 0;
      if (!lit && (style_ & kShowUnlit) == 0) {
        continue;
      }
      pen.Select(lit ? onPen.Get() : offPen.Get());
      const float y1 = top + stroke.y1 * scale;
      const float y2 = top + stroke.y2 * scale;
      const float lean1 = slant * (static_cast<float>(height) - y1);
      const float lean2 = slant * (static_cast<float>(height) - y2);
      (void)::MoveToEx(dc, static_cast<int>(left + stroke.x1 * scale * 0.8F + lean1), static_cast<int>(y1), nullptr);
      (void)::LineTo(dc, static_cast<int>(left + stroke.x2 * scale * 0.8F + lean2), static_cast<int>(y2));
    }
  }
}

LRESULT CMyDigitDisplay::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT painted = 0;
  if (HandlePaintMessage(
          message, [this](HDC dc) { Paint(dc); }, painted)) {
    return painted;
  }
  return Default(message, wParam, lParam);
}

}  // namespace lumenor::controls
