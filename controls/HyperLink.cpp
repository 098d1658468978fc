#include "controls/HyperLink.h"

#include "controls/Paint.h"

namespace lumenor::controls {

bool CMyHyperLink::Attach(HWND dialog, int id, const std::wstring& text, const std::wstring& address,
                          COLORREF background, Opener opener) {
  address_ = address;
  background_.Reset(::CreateSolidBrush(background));
  opener_ = std::move(opener);
  if (!SubclassItem(dialog, id)) {
    return false;
  }
  // Clicks reach a static only with SS_NOTIFY.
  (void)::SetWindowLongW(window_, GWL_STYLE, ::GetWindowLongW(window_, GWL_STYLE) | SS_NOTIFY);
  LOGFONTW font{};
  if (::GetObjectW(DialogFont(dialog), sizeof font, &font) != 0) {
    font.lfUnderline = TRUE;
    underlined_.Reset(::CreateFontIndirectW(&font));
    if (underlined_) {
      (void)Send(WM_SETFONT, reinterpret_cast<WPARAM>(underlined_.Get()), FALSE);
    }
  }
  return SetText(text);
}

bool CMyHyperLink::OnReflected(UINT message, WPARAM wParam, LPARAM, LRESULT& result) {
  if (message != WM_CTLCOLORSTATIC) {
    return false;
  }
  HDC dc = reinterpret_cast<HDC>(wParam);
  (void)::SetTextColor(dc, kSkinAccent);
  (void)::SetBkMode(dc, TRANSPARENT);
  result = reinterpret_cast<LRESULT>(background_ ? background_.Get() : ::GetStockObject(WHITE_BRUSH));
  return true;
}

LRESULT CMyHyperLink::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_SETCURSOR: {
      HCURSOR hand = ::LoadCursorW(nullptr, IDC_HAND);
      if (hand != nullptr) {
        (void)::SetCursor(hand);
        return TRUE;
      }
      break;
    }
    case WM_LBUTTONUP:
      if (opener_) {
        opener_(address_);
      }
      return 0;
    default:
      break;
  }
  return Default(message, wParam, lParam);
}

}  // namespace lumenor::controls
