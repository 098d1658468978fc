#include "controls/HyperLink.h"

#include "controls/Paint.h"

namespace lumenor::controls {

CMyHyperLink::~CMyHyperLink() {
  if (underlined_ != nullptr) {
    (void)::DeleteObject(underlined_);
  }
  if (background_ != nullptr) {
    (void)::DeleteObject(background_);
  }
}

bool CMyHyperLink::Attach(HWND dialog, int id, const std::wstring& text, const std::wstring& address,
                          COLORREF background, Opener opener) {
  address_ = address;
  background_ = ::CreateSolidBrush(background);
  opener_ = std::move(opener);
  if (!SubclassItem(dialog, id)) {
    return false;
  }
  // Clicks reach a static only with SS_NOTIFY.
  (void)::SetWindowLongW(window_, GWL_STYLE, ::GetWindowLongW(window_, GWL_STYLE) | SS_NOTIFY);
  LOGFONTW font{};
  if (::GetObjectW(DialogFont(dialog), sizeof font, &font) != 0) {
    font.lfUnderline = TRUE;
    underlined_ = ::CreateFontIndirectW(&font);
    if (underlined_ != nullptr) {
      (void)Send(WM_SETFONT, reinterpret_cast<WPARAM>(underlined_), FALSE);
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
  result = reinterpret_cast<LRESULT>(background_ != nullptr ? background_ : ::GetStockObject(WHITE_BRUSH));
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
