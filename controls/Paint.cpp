#include "controls/Paint.h"

#include "controls/GdiOwners.h"

namespace lumenor::controls {

bool FillGradient(HDC dc, const RECT& rect, COLORREF from, COLORREF to, bool vertical) {
  TRIVERTEX corners[2] = {
      {rect.left, rect.top, static_cast<COLOR16>(GetRValue(from) << 8), static_cast<COLOR16>(GetGValue(from) << 8),
       static_cast<COLOR16>(GetBValue(from) << 8), 0},
      {rect.right, rect.bottom, static_cast<COLOR16>(GetRValue(to) << 8), static_cast<COLOR16>(GetGValue(to) << 8),
       static_cast<COLOR16>(GetBValue(to) << 8), 0},
  };
  GRADIENT_RECT mesh{0, 1};
  return ::GradientFill(dc, corners, 2, &mesh, 1, vertical ? GRADIENT_FILL_RECT_V : GRADIENT_FILL_RECT_H) != FALSE;
}

bool FillSolid(HDC dc, const RECT& rect, COLORREF colour) {
  const OwnedBrush brush(::CreateSolidBrush(colour));
  return brush && ::FillRect(dc, &rect, brush.Get()) != 0;
}

bool DrawFrame(HDC dc, const RECT& rect, COLORREF colour) {
  const OwnedBrush brush(::CreateSolidBrush(colour));
  return brush && ::FrameRect(dc, &rect, brush.Get()) != 0;
}

HFONT DialogFont(HWND window) {
  auto font = reinterpret_cast<HFONT>(::SendMessageW(window, WM_GETFONT, 0, 0));
  return font != nullptr ? font : static_cast<HFONT>(::GetStockObject(DEFAULT_GUI_FONT));
}

bool ColourWhitePage(UINT message, WPARAM wParam, LRESULT& result) {
  if (message != WM_CTLCOLORDLG && message != WM_CTLCOLORSTATIC) {
    return false;
  }
  (void)::SetBkColor(reinterpret_cast<HDC>(wParam), kPageBackground);  // returns the old colour only
  result = reinterpret_cast<LRESULT>(::GetStockObject(WHITE_BRUSH));
  return true;
}

}  // namespace lumenor::controls
