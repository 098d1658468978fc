#include "scan/DlgScanResult.h"

#include "controls/GdiOwners.h"
#include "controls/MemDC.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

#include <string>

namespace lumenor {

namespace {

// Places on the background picture, in its pixels.
// The animation stops where the bar begins: at its full height it would cover the bar.
constexpr RECT kAnimation{157, 14, 157 + 272, 150};
constexpr RECT kDeletedFigure{153, 176, 242, 200};
constexpr RECT kFailedFigure{153, 213, 242, 237};
constexpr RECT kWarning{32, 242, 307, 284};
constexpr RECT kCloseButton{347, 255, 411, 275};
constexpr RECT kCancelButton{276, 255, 340, 275};
constexpr POINT kBarOrigin{90, 150};
constexpr SIZE kCell{24, 11};
constexpr SIZE kPictureFallback{429, 302};
// The picture's rounded corners are magenta where the window should not be.
constexpr COLORREF kOutside = RGB(255, 0, 255);
constexpr int kCornerReach = 10;

constexpr COLORREF kFigureUnlit = 52;
constexpr COLORREF kFigureLit = 0x1B9B46;
constexpr UINT kFigureStyle = 14;  // unlit segments shown, right-aligned, slanted
constexpr DWORD kPauseAfterRefreshMs = 20;

}  // namespace

// Runs on the worker: counts each report, and hands the window what it has to show.
class CDlgScanResult::WorkerTally final : public EraseTally {
 public:
  explicit WorkerTally(CDlgScanResult& dialog) : dialog_(dialog) {}

  void Erased(int count, uint64_t /*bytes*/) override {
    EraseProgress::Refresh refresh;
    {
      const std::lock_guard<std::mutex> lock(dialog_.mutex_);
      refresh = dialog_.progress_.Deleted(count);
    }
    dialog_.Report(refresh);
  }
  void EraseFailed(const std::wstring&) override {
    EraseProgress::Refresh refresh;
    {
      const std::lock_guard<std::mutex> lock(dialog_.mutex_);
      refresh = dialog_.progress_.Failed();
    }
    dialog_.Report(refresh);
  }
  // A location the folder rules refused was never walked: nothing was deleted or failed.
  void LocationSkipped(const SkippedLocation&) override {}

 private:
  CDlgScanResult& dialog_;
};

CDlgScanResult::CDlgScanResult(int total, Job job)
    : CDialog(IDD_ERASE_PROGRESS), job_(std::move(job)), progress_(total) {}

INT_PTR CDlgScanResult::Run(HWND owner) {
  const INT_PTR result = DoModal(owner);
  tasks_.Unbind();
  worker_.Join();  // the dialog closes only once the erase has ended
  return result;
}

EraseProgress CDlgScanResult::Progress() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return progress_;
}

bool CDlgScanResult::WarningShown() const {
  const HWND warning = Item(IDC_ERASE_WARNING);
  return warning != nullptr && ::IsWindowVisible(warning) != FALSE;
}

void CDlgScanResult::Report(EraseProgress::Refresh refresh) {
  if (!refresh.displays && !refresh.bar) {
    return;
  }
  int deleted = 0;
  int failed = 0;
  int lit = 0;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    deleted = progress_.ShownDeleted();
    failed = progress_.ShownFailed();
    lit = progress_.LitCells();
  }
  // Refused only once the window is gone; then there is nothing left to show.
  (void)tasks_.Post([this, deleted, failed, lit, figures = refresh.displays] {
    if (figures) {
      ShowFigures(deleted, failed);
    }
    litCells_ = lit;
    const RECT bar = BarRect();
    (void)::InvalidateRect(window_, &bar, FALSE);  // a window that exists takes it
  });
  if (refresh.displays) {
    ::Sleep(kPauseAfterRefreshMs);  // lets each step of the bar be seen
  }
}

bool CDlgScanResult::OnInit() {
  (void)background_.Load(IDB_ERASE_BACKGROUND);  // missing: a plain face of the same size
  (void)cells_.Load(IDB_ERASE_CELLS);
  PlaceControls();
  ShapeWindowToPicture();
  CentreOverOwner();

  // The worker starts only now, with the queue bound: what it reports finds the window.
  tasks_.Bind(window_);
  (void)worker_.Start(
      [this](const StopToken&) {
        WorkerTally tally(*this);
        if (job_) {
          job_(tally);
        }
      },
      [this](controls::RunEnd end) { ShowEnd(end); });  // an erase runs to its end: no stop
  return true;
}

void CDlgScanResult::PlaceControls() {
  const auto place = [this](int id, const RECT& rect) {
    (void)controls::CWindow(Item(id)).Move(rect);  // a missing control stays missing
  };
  if (animation_.Attach(window_, IDC_ERASE_ANIMATION) && animation_.Load(IDR_GIF_ERASE)) {
    place(IDC_ERASE_ANIMATION, kAnimation);
    animation_.Start();
  }
  const int total = Progress().Total();
  for (controls::CMyDigitDisplay* figure : {&totalDisplay_, &deletedDisplay_, &failedDisplay_}) {
    const int id = figure == &totalDisplay_     ? IDC_ERASE_TOTAL
                   : figure == &deletedDisplay_ ? IDC_ERASE_DELETED
                                                : IDC_ERASE_FAILED;
    if (figure->Attach(window_, id)) {
      figure->SetColours(kFigureUnlit, kFigureLit);
      figure->SetTransparent(true);
      figure->SetStyle(kFigureStyle);
    }
  }
  totalDisplay_.SetDigits(std::to_wstring(total));
  totalDisplay_.Show(SW_HIDE);
  deletedDisplay_.SetDigits(L"0");
  failedDisplay_.SetDigits(L"0");
  place(IDC_ERASE_DELETED, kDeletedFigure);
  place(IDC_ERASE_FAILED, kFailedFigure);

  if (warningPicture_.Load(IDB_ERASE_WARNING)) {
    (void)controls::CWindow(Item(IDC_ERASE_WARNING))
        .Send(STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(warningPicture_.Handle()));
  }
  place(IDC_ERASE_WARNING, kWarning);
  controls::CWindow(Item(IDC_ERASE_WARNING)).Show(SW_HIDE);

  if (close_.Attach(window_, IDC_ERASE_CLOSE)) {
    close_.SetPictures(IDB_ERASE_CLOSE_NORMAL, IDB_ERASE_CLOSE_HOT, IDB_ERASE_CLOSE_PRESSED, IDB_ERASE_CLOSE_PRESSED);
    (void)close_.Move(kCloseButton);
    close_.Show(SW_HIDE);
  }
  if (cancel_.Attach(window_, IDC_ERASE_CANCEL)) {
    cancel_.SetPictures(IDB_ERASE_CANCEL_NORMAL, IDB_ERASE_CANCEL_HOT, IDB_ERASE_CANCEL_PRESSED,
                        IDB_ERASE_CLOSE_PRESSED);
    (void)cancel_.Move(kCancelButton);
    cancel_.Show(SW_HIDE);  // never shown
  }
}

void CDlgScanResult::ShapeWindowToPicture() {
  const SIZE size = background_ ? background_.Size() : kPictureFallback;
  RECT window{0, 0, size.cx, size.cy};
  (void)::AdjustWindowRectEx(&window, static_cast<DWORD>(::GetWindowLongW(window_, GWL_STYLE)), FALSE,
                             static_cast<DWORD>(::GetWindowLongW(window_, GWL_EXSTYLE)));  // no menu
  (void)Move(0, 0, controls::Width(window), controls::Height(window), false);

  // The window leaves out the magenta pixels near each corner of the picture, so its
  // corners follow the picture's rounded ones.
  controls::OwnedRegion shape(::CreateRectRgn(0, 0, size.cx, size.cy));
  if (!shape) {
    return;
  }
  const RECT corners[] = {{0, 0, kCornerReach, kCornerReach},
                          {size.cx - kCornerReach, 0, size.cx, kCornerReach},
                          {0, size.cy - kCornerReach, kCornerReach, size.cy},
                          {size.cx - kCornerReach, size.cy - kCornerReach, size.cx, size.cy}};
  for (const RECT& corner : corners) {
    for (const POINT pixel : background_.PixelsOfColour(kOutside, corner)) {
      const controls::OwnedRegion dot(::CreateRectRgn(pixel.x, pixel.y, pixel.x + 1, pixel.y + 1));
      if (dot) {
        (void)::CombineRgn(shape.Get(), shape.Get(), dot.Get(), RGN_DIFF);  // a pixel left in is only a pixel
      }
    }
  }
  if (::SetWindowRgn(window_, shape.Get(), TRUE) != 0) {
    (void)shape.Release();  // the system owns it from now on; on failure it stays ours
  }
}

void CDlgScanResult::CentreOverOwner() {
  HWND owner = ::GetWindow(window_, GW_OWNER);
  RECT area{};
  if (owner == nullptr || ::GetWindowRect(owner, &area) == FALSE) {
    if (::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0) == FALSE) {
      return;
    }
  }
  RECT own{};
  if (::GetWindowRect(window_, &own) == FALSE) {
    return;
  }
  const int width = controls::Width(own);
  const int height = controls::Height(own);
  (void)Move(area.left + (controls::Width(area) - width) / 2, area.top + (controls::Height(area) - height) / 2, width,
             height, false);
}

void CDlgScanResult::ShowFigures(int deleted, int failed) {
  deletedDisplay_.SetDigits(std::to_wstring(deleted));
  failedDisplay_.SetDigits(std::to_wstring(failed));
}

void CDlgScanResult::ShowEnd(controls::RunEnd end) {
  if (end == controls::RunEnd::kNotStarted) {
    // Nothing was erased: told as one failure, with the figures and the warning.
    int failed = 0;
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      (void)progress_.Failed();
      failed = progress_.FailedCount();
    }
    ShowFigures(0, failed);
  }
  finished_.store(true);
  animation_.Stop();
  // The warning first: once Close shows, the dialog's end is all on screen.
  if (Progress().FailedCount() > 0) {
    controls::CWindow(Item(IDC_ERASE_WARNING)).Show(SW_SHOW);
  }
  close_.Show(SW_SHOW);
}

RECT CDlgScanResult::BarRect() const {
  return RECT{kBarOrigin.x, kBarOrigin.y, kBarOrigin.x + EraseProgress::kCells * kCell.cx, kBarOrigin.y + kCell.cy};
}

bool CDlgScanResult::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (tasks_.HandleMessage(message, result)) {
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

bool CDlgScanResult::OnCommand(int id, int, HWND) {
  switch (id) {
    case IDC_ERASE_CLOSE:
      return End(IDOK);
    case IDC_ERASE_CANCEL:
      return End(IDCANCEL);
    case IDCANCEL:
      // Esc means Close, and only once there is something to close.
      return Finished() && End(IDOK);
    default:
      return true;  // Enter does nothing
  }
}

bool CDlgScanResult::OnClose() {
  if (Finished()) {
    (void)End(IDOK);
  }
  return true;
}

bool CDlgScanResult::OnEraseBackground(HDC) { return true; }

bool CDlgScanResult::OnPaint() {
  const controls::PaintDC dc(window_);
  if (!dc) {
    return false;
  }
  {
    const RECT client = ClientRect();
    controls::CMemDC canvas(dc.Get(), client);
    if (!background_.Draw(canvas.Get(), 0, 0)) {
      (void)::FillRect(canvas.Get(), &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
    }
    for (int cell = 0; cell < EraseProgress::kCells; ++cell) {
      const int source = cell < litCells_ ? 0 : kCell.cx;
      (void)cells_.DrawPart(canvas.Get(), kBarOrigin.x + cell * kCell.cx, kBarOrigin.y,
                            RECT{source, 0, source + kCell.cx, kCell.cy});  // missing picture: no bar
    }
  }
  return true;
}

}  // namespace lumenor
