// Gradient and background painting, and the colours of the program's skin.
#pragma once

#include <windows.h>

namespace lumenor::controls {

// The skin's colours: a deep blue caption band, a light page background, an accent.
inline constexpr COLORREF kSkinCaptionTop = RGB(22, 64, 122);
inline constexpr COLORREF kSkinCaptionBottom = RGB(30, 110, 170);
inline constexpr COLORREF kSkinBackground = RGB(240, 245, 250);
inline constexpr COLORREF kSkinAccent = RGB(0, 122, 204);
inline constexpr COLORREF kSkinText = RGB(32, 40, 52);
inline constexpr COLORREF kSkinBorder = RGB(160, 178, 198);

// Fills `rect` with a gradient from `from` to `to`, top to bottom or left to right.
bool FillGradient(HDC dc, const RECT& rect, COLORREF from, COLORREF to, bool vertical = true);
bool FillSolid(HDC dc, const RECT& rect, COLORREF colour);
// A one-pixel frame inside `rect`.
bool DrawFrame(HDC dc, const RECT& rect, COLORREF colour);

// White pages: the page and its static texts sit on white. Answers WM_CTLCOLORDLG and
// WM_CTLCOLORSTATIC for a page's message handler; true when `message` was one of them.
inline constexpr COLORREF kPageBackground = RGB(255, 255, 255);
bool ColourWhitePage(UINT message, WPARAM wParam, LRESULT& result);

// The font of the given window's dialog (WM_GETFONT), or the system's GUI font.
HFONT DialogFont(HWND window);

}  // namespace lumenor::controls
