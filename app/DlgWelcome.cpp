#include "app/DlgWelcome.h"

#include "res/resource.h"

namespace lumenor {

namespace {
constexpr int kPlainPicture = 227;
constexpr int kPictureWithButton = 228;
}  // namespace

CDlgWelcome::CDlgWelcome() : CDialog(IDD_WELCOME) {}

bool CDlgWelcome::OnInit() {
  (void)picture_.Load(ShowPlainPicture == 1 ? kPlainPicture : kPictureWithButton);  // missing: plain face
  CWindow(Item(IDOK)).Show(ShowPlainPicture == 1 ? SW_HIDE : SW_SHOW);
  (void)ChangeStyle(WS_CAPTION, 0);  // a picture only; with a caption it would just be smaller
  (void)Move(0, 0, kWidth, kHeight);
  // Centred on the work area of the primary screen.
  RECT work{};
  if (::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0) == FALSE) {
    work = RECT{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
  }
  (void)Move(work.left + (work.right - work.left - kWidth) / 2, work.top + (work.bottom - work.top - kHeight) / 2,
             kWidth, kHeight);
  return true;
}

bool CDlgWelcome::OnEraseBackground(HDC) { return true; }

bool CDlgWelcome::OnPaint() {
  PAINTSTRUCT paint{};
  HDC dc = ::BeginPaint(window_, &paint);
  if (dc == nullptr) {
    return false;
  }
  const RECT client = ClientRect();
  if (!picture_.DrawStretched(dc, client)) {
    (void)::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
  }
  (void)::EndPaint(window_, &paint);
  return true;
}

}  // namespace lumenor
