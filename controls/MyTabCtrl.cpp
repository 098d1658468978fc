#include "controls/MyTabCtrl.h"

#include "controls/MemDC.h"
#include "controls/Paint.h"

namespace lumenor::controls {

bool CMyTabCtrl::CreateStrip(HWND parent, int id, POINT origin, UINT showMessage) {
  showMessage_ = showMessage;
  const RECT rect{origin.x, origin.y, origin.x + kFallbackTabSize.cx, origin.y + kFallbackTabSize.cy};
  return Create(L"STATIC", L"", WS_VISIBLE | SS_NOTIFY, 0, rect, parent, id);
}

int CMyTabCtrl::AddTab(int normal, int hover, int selected) {
  Tab& tab = tabs_.emplace_back();
  const int ids[3] = {normal, hover, selected};
  for (size_t look = 0; look < tab.pictures.size(); ++look) {
    (void)tab.pictures[look].Load(ids[look]);  // a missing picture draws the plain tab
  }
  if (window_ != nullptr) {
    const SIZE size = StripSize();
    const RECT rect = RectInParent();
    (void)Move(rect.left, rect.top, size.cx, size.cy);
  }
  return TabCount() - 1;
}

void CMyTabCtrl::Select(int index) {
  selected_ = index >= 0 && index < TabCount() ? index : -1;
  if (window_ != nullptr) {
    (void)Invalidate();
  }
}

CMyTabCtrl::Look CMyTabCtrl::LookOf(int index) const {
  if (index == selected_) {
    return Look::kSelected;
  }
  return index == hot_ ? Look::kHover : Look::kNormal;
}

SIZE CMyTabCtrl::TabSize(int index) const {
  for (const CBitmapResource& picture : tabs_[static_cast<size_t>(index)].pictures) {
    if (picture) {
      return picture.Size();
    }
  }
  return kFallbackTabSize;
}

RECT CMyTabCtrl::TabRect(int index) const {
  RECT rect{};
  if (index < 0 || index >= TabCount()) {
    return rect;
  }
  for (int before = 0; before < index; ++before) {
    rect.left += TabSize(before).cx;
  }
  const SIZE size = TabSize(index);
  rect.right = rect.left + size.cx;
  rect.bottom = size.cy;
  return rect;
}

SIZE CMyTabCtrl::StripSize() const {
  SIZE size{0, 0};
  for (int index = 0; index < TabCount(); ++index) {
    const SIZE tab = TabSize(index);
    size.cx += tab.cx;
    size.cy = tab.cy > size.cy ? tab.cy : size.cy;
  }
  return size;
}

int CMyTabCtrl::HitTest(POINT point) const {
  for (int index = 0; index < TabCount(); ++index) {
    const RECT rect = TabRect(index);
    if (::PtInRect(&rect, point) != FALSE) {
      return index;
    }
  }
  return -1;
}

void CMyTabCtrl::Click(POINT point) {
  const int index = HitTest(point);
  if (index < 0 || (blocked_ && blocked_())) {
    return;
  }
  if (onlyOnChange_ && index == selected_) {
    return;
  }
  Select(index);
  // If the owner is gone there is nobody to tell.
  (void)::PostMessageW(::GetParent(window_), showMessage_, 0, index);
}

void CMyTabCtrl::SetHot(int index) {
  if (index != hot_) {
    hot_ = index;
    (void)Invalidate();
  }
}

void CMyTabCtrl::Paint(HDC target) const {
  const RECT client = ClientRect();
  CMemDC memory(target, client);
  HDC dc = memory.Get();
  (void)FillSolid(dc, client, kSkinBackground);
  for (int index = 0; index < TabCount(); ++index) {
    const RECT rect = TabRect(index);
    const Look look = LookOf(index);
    if (!tabs_[static_cast<size_t>(index)].pictures[static_cast<size_t>(look)].DrawStretched(dc, rect)) {
      const RECT inner{rect.left + 2, rect.top + 4, rect.right - 2, rect.bottom};
      (void)FillGradient(dc, inner, look == Look::kSelected ? RGB(255, 255, 255) : RGB(214, 226, 240),
                         look == Look::kHover ? RGB(190, 215, 240) : RGB(236, 242, 248));
      (void)DrawFrame(dc, inner, kSkinBorder);
    }
  }
}

LRESULT CMyTabCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT painted = 0;
  if (HandlePaintMessage(
          message, [this](HDC dc) { Paint(dc); }, painted)) {
    return painted;
  }
  switch (message) {
    case WM_MOUSEMOVE: {
      if (hot_ < 0) {
        TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, window_, 0};
        (void)::TrackMouseEvent(&track);  // without it the hover look stays until the next move
      }
      SetHot(HitTest(POINT{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))}));
      return 0;
    }
    case WM_MOUSELEAVE:
      SetHot(-1);
      return 0;
    case WM_LBUTTONDOWN:
      Click(POINT{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
      return 0;
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace lumenor::controls
