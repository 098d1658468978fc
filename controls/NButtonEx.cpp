#include "controls/NButtonEx.h"

#include "controls/GdiOwners.h"
#include "controls/MemDC.h"
#include "controls/Paint.h"

namespace lumenor::controls {

bool CNButtonEx::CreateButton(HWND parent, int id, const RECT& rect, const std::wstring& caption) {
  return Create(L"BUTTON", caption.c_str(), WS_VISIBLE | WS_TABSTOP | BS_OWNERDRAW, 0, rect, parent, id);
}

bool CNButtonEx::Attach(HWND dialog, int id) {
  if (!SubclassItem(dialog, id)) {
    return false;
  }
  // BS_OWNERDRAW replaces the button's kind in the low bits of its style.
  const LONG style = ::GetWindowLongW(window_, GWL_STYLE);
  (void)::SetWindowLongW(window_, GWL_STYLE, (style & ~static_cast<LONG>(BS_TYPEMASK)) | BS_OWNERDRAW);
  return (::GetWindowLongW(window_, GWL_STYLE) & BS_TYPEMASK) == BS_OWNERDRAW;
}

void CNButtonEx::SetPictures(int normal, int hover, int pressed, int disabled) {
  const int ids[4] = {normal, hover, pressed, disabled};
  hasPictures_ = true;
  for (size_t look = 0; look < pictures_.size(); ++look) {
    // A missing picture stays empty and draws nothing.
    (void)pictures_[look].Load(ids[look]);
  }
  if (window_ != nullptr) {
    (void)Invalidate();
  }
}

bool CNButtonEx::SetSize(int width, int height) const {
  const RECT rect = RectInParent();
  return Move(rect.left, rect.top, width, height);
}

bool CNButtonEx::FitToPicture(Corner corner) const {
  const SIZE size = PictureSize();
  if (size.cx <= 0 || size.cy <= 0) {
    return false;
  }
  return ResizeKeepingCorner(window_, size, corner);
}

CNButtonEx::Look CNButtonEx::LookFor(UINT itemState) const {
  if ((itemState & ODS_DISABLED) != 0) {
    return kDisabled;
  }
  if ((itemState & ODS_SELECTED) != 0) {
    return kPressed;
  }
  return hover_ ? kHover : kNormal;
}

bool CNButtonEx::OnReflected(UINT message, WPARAM, LPARAM lParam, LRESULT& result) {
  if (message != WM_DRAWITEM) {
    return false;
  }
  Draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
  result = TRUE;
  return true;
}

void CNButtonEx::Draw(const DRAWITEMSTRUCT& item) const {
  const RECT& rect = item.rcItem;
  // A look without its picture shows the normal picture; without that, the plain face.
  if (hasPictures_ && (pictures_[LookFor(item.itemState)].DrawStretched(item.hDC, rect) ||
                       pictures_[kNormal].DrawStretched(item.hDC, rect))) {
    return;
  }
  CMemDC memory(item.hDC, rect);
  HDC dc = memory.Get();
  const Look look = LookFor(item.itemState);
  const COLORREF top = look == kPressed ? kSkinCaptionBottom : look == kHover ? RGB(60, 150, 215) : kSkinCaptionTop;
  const COLORREF bottom = look == kPressed ? kSkinCaptionTop : kSkinCaptionBottom;
  (void)FillGradient(dc, rect, look == kDisabled ? RGB(200, 205, 210) : top,
                     look == kDisabled ? RGB(180, 185, 190) : bottom);
  (void)DrawFrame(dc, rect, RGB(12, 40, 80));

  RECT textRect = rect;
  std::wstring caption = Text();
  const SelectedObject font(dc, DialogFont(window_));
  (void)::SetBkMode(dc, TRANSPARENT);
  (void)::SetTextColor(dc, look == kDisabled ? RGB(110, 110, 110) : RGB(255, 255, 255));
  (void)::DrawTextW(dc, caption.c_str(), static_cast<int>(caption.size()), &textRect,
                    DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
}

LRESULT CNButtonEx::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_MOUSEMOVE:
      if (!hover_) {
        TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, window_, 0};
        hover_ = ::TrackMouseEvent(&track) != FALSE;
        (void)Invalidate();
      }
      break;
    case WM_MOUSELEAVE:
      hover_ = false;
      (void)Invalidate();
      break;
    case WM_LBUTTONDBLCLK:
      // A quick second click is a click, not a double-click, on a picture button.
      return Default(WM_LBUTTONDOWN, wParam, lParam);
    case WM_ERASEBKGND:
      return TRUE;  // the whole face is drawn in WM_DRAWITEM
    default:
      break;
  }
  return Default(message, wParam, lParam);
}

}  // namespace lumenor::controls
