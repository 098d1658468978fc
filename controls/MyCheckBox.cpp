#include "controls/MyCheckBox.h"

#include "controls/GdiOwners.h"
#include "controls/MemDC.h"
#include "controls/Paint.h"

namespace lumenor::controls {

namespace {
constexpr int kBoxSize = 13;
constexpr int kTextGap = 5;
}  // namespace

bool CMyCheckBox::Attach(HWND dialog, int id, int clearPicture, int checkedPicture, COLORREF background) {
  background_ = background;
  (void)clear_.Load(clearPicture);  // missing pictures fall back to the system's mark
  (void)checked_.Load(checkedPicture);
  return SubclassItem(dialog, id);
}

bool CMyCheckBox::IsRadio() const {
  const LONG kind = ::GetWindowLongW(window_, GWL_STYLE) & BS_TYPEMASK;
  return kind == BS_RADIOBUTTON || kind == BS_AUTORADIOBUTTON;
}

void CMyCheckBox::Paint(HDC target) const {
  const RECT client = ClientRect();
  CMemDC memory(target, client);
  HDC dc = memory.Get();
  (void)FillSolid(dc, client, background_);

  const bool checked = Checked();
  const int boxTop = (client.bottom - kBoxSize) / 2;
  RECT box{0, boxTop, kBoxSize, boxTop + kBoxSize};
  const CBitmapResource& picture = checked ? checked_ : clear_;
  if (!picture.DrawStretched(dc, box)) {
    UINT state = IsRadio() ? DFCS_BUTTONRADIO : DFCS_BUTTONCHECK;
    state |= checked ? DFCS_CHECKED : 0u;
    state |= IsEnabled() ? 0u : DFCS_INACTIVE;
    (void)::DrawFrameControl(dc, &box, DFC_BUTTON, state | DFCS_FLAT);
  }

  const std::wstring caption = Text();
  RECT textRect{kBoxSize + kTextGap, 0, client.right, client.bottom};
  const SelectedObject font(dc, DialogFont(window_));
  (void)::SetBkMode(dc, TRANSPARENT);
  (void)::SetTextColor(dc, IsEnabled() ? kSkinText : RGB(150, 150, 150));
  (void)::DrawTextW(dc, caption.c_str(), static_cast<int>(caption.size()), &textRect,
                    DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS);
  if (::GetFocus() == window_) {
    (void)::DrawFocusRect(dc, &textRect);
  }
}

LRESULT CMyCheckBox::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT painted = 0;
  if (HandlePaintMessage(
          message, [this](HDC dc) { Paint(dc); }, painted)) {
    return painted;
  }
  switch (message) {
    case BM_SETCHECK:
    case BM_SETSTATE:
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
    case WM_ENABLE:
    case WM_SETTEXT:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_UPDATEUISTATE: {
      // The system button paints itself on these outside WM_PAINT; paint over it.
      const LRESULT answer = Default(message, wParam, lParam);
      const WindowDC dc(window_);
      if (dc) {
        Paint(dc.Get());
      }
      return answer;
    }
    default:
      return Default(message, wParam, lParam);
  }
}

}  // namespace lumenor::controls
