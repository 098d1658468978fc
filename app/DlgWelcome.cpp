#include "app/DlgWelcome.h"

#include "controls/GdiOwners.h"
#include "controls/Layout.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

namespace lumenor {

namespace {
// The OK button's distance from the picture's bottom right corner, in dialog units.
constexpr SIZE kButtonInsetUnits{6, 6};
}  // namespace

CDlgWelcome::CDlgWelcome() : CDialog(IDD_WELCOME) {}

bool CDlgWelcome::OnInit() {
  (void)picture_.Load(ShowPlainPicture == 1 ? IDB_SPLASH : IDB_SPLASH_WELCOME);  // missing: plain face
  (void)ChangeStyle(WS_CAPTION, 0);  // a picture only; with a caption it would just be smaller
  // As large as the picture; the OK button keeps its template size in the picture's corner.
  const SIZE size = picture_ ? picture_.Size() : SIZE{kWidth, kHeight};
  CWindow button(Item(IDOK));
  const RECT buttonRect = button.RectInParent();
  const SIZE buttonSize{controls::Width(buttonRect), controls::Height(buttonRect)};
  (void)button.Move(controls::AtCorner(RECT{0, 0, size.cx, size.cy}, buttonSize, controls::Corner::kBottomRight,
                                       controls::DialogUnits(window_, kButtonInsetUnits.cx, kButtonInsetUnits.cy)));
  button.Show(ShowPlainPicture == 1 ? SW_HIDE : SW_SHOW);
  // Centred on the work area of the primary screen.
  RECT work{};
  if (::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0) == FALSE) {
    work = RECT{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
  }
  RECT window{0, 0, size.cx, size.cy};
  (void)::AdjustWindowRectEx(&window, static_cast<DWORD>(::GetWindowLongW(window_, GWL_STYLE)), FALSE,
                             static_cast<DWORD>(::GetWindowLongW(window_, GWL_EXSTYLE)));  // unchanged: no frame
  const int width = controls::Width(window);
  const int height = controls::Height(window);
  (void)Move(work.left + (controls::Width(work) - width) / 2, work.top + (controls::Height(work) - height) / 2, width,
             height);
  return true;
}

bool CDlgWelcome::OnEraseBackground(HDC) { return true; }

bool CDlgWelcome::OnPaint() {
  const controls::PaintDC dc(window_);
  if (!dc) {
    return false;
  }
  const RECT client = ClientRect();
  if (!picture_.DrawStretched(dc.Get(), client)) {
    (void)::FillRect(dc.Get(), &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  }
  return true;
}

}  // namespace lumenor
