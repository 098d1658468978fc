#include "app/PcDlg.h"

#include "app/Scheduler.h"
#include "app/ShellMessages.h"
#include "base/ModulePath.h"
#include "base/ResourceString.h"
#include "controls/GdiOwners.h"
#include "res/resource.h"

#include <commctrl.h>
#include <shlwapi.h>

#include <utility>

namespace lumenor {

namespace {

SYSTEMTIME SystemLocalTime() {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return now;
}

}  // namespace

CPcDlg::CPcDlg(PageOpener opener, StartupSwitches switches)
    : CDialog(IDD_MAIN),
      opener_(std::move(opener)),
      clock_(SystemLocalTime),
      autoStarted_(switches.autoStarted),
      shredPath_(std::move(switches.shredPath)),
      help_(opener_),
      updateCheck_(opener_) {
  // The pages' templates hold list views and progress bars.
  INITCOMMONCONTROLSEX classes{sizeof classes,
                               ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES | ICC_PROGRESS_CLASS | ICC_STANDARD_CLASSES};
  (void)::InitCommonControlsEx(&classes);  // a class it could not register fails the page that needs it
}

bool CPcDlg::OnInit() {
  const std::wstring settingsPath = ModuleFolder() + kSettingsFileName;
  if (::PathFileExistsW(settingsPath.c_str()) == FALSE) {
    (void)WriteDefaultSettings(CIniFileRW(kSettingsFileName));  // a failed write reads as defaults of 1
  }
  // The options are in force from the start; the settings page that shows them is made
  // when it is first shown, as every page but the first.
  options_.LoadValues();
  skin_.SetUp(window_, tray_.MainIcon(), opener_);
  const controls::CDialog* const pages[] = {&scan_, &options_, &shred_, &junk_, &help_};
  skin_.LayOut(pages);
  WirePages();
  (void)StartTimer(kSchedulerTimer, kSchedulerPeriodMs);  // without it there is no scheduled scan
  updateCheck_.Bind(window_);
  // The rest waits until the frame is on screen.
  if (!Post(kFinishStartUpMessage)) {
    FinishStartUp();
  }
  return true;
}

void CPcDlg::FinishStartUp() {
  if (!autoStarted_) {
    // The frame shows at once; the first page, the slowest part to make, fills it next.
    Show(SW_SHOW);
    (void)::UpdateWindow(window_);  // nothing to paint yet is no failure
  }
  (void)MadePage(help_);
  (void)tray_.Add(window_);  // without a notification area the window works all the same
  int tab = kScanPage;
  if (!shredPath_.empty()) {
    tab = kShredPage;
    (void)ShredPage().AddPath(shredPath_);  // a file that cannot be listed is left out
  }
  skin_.Tabs().Select(tab);
  ShowPage(tab);
  if (options_.Values().autoUpdate == 1) {
    (void)updateCheck_.Start(UpdateCheckRunner::Mode::kSilent);  // speaks only of a newer version
  }
}

void CPcDlg::WirePages() {
  // The scan page's workers tell their stages in the notification area.
  scan_.SetStatusSink([this](bool started, const std::wstring& status, const std::wstring& caption) {
    if (started) {
      StartTrayAnimation(status, caption);
    } else {
      StopTrayAnimation(status, caption);
    }
  });
  options_.SetUpdateCheck([this] { (void)updateCheck_.Start(UpdateCheckRunner::Mode::kInteractive); });
}

bool CPcDlg::MadePage(controls::CDialog& page) {
  if (page.Handle() != nullptr) {
    return true;
  }
  if (window_ == nullptr || !page.Create(window_)) {
    return false;  // a page that could not be made stays blank
  }
  skin_.PlacePage(page);
  // A new child window goes to the bottom of its siblings: the help page lies under the
  // others, every other page above it.
  const bool help = &page == &help_;
  (void)::SetWindowPos(page.Handle(), help ? HWND_BOTTOM : HWND_TOP, 0, 0, 0, 0,
                       SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);  // fails only for a window that went
  if (help) {
    help_.Show(SW_SHOW);
  }
  return true;
}

void CPcDlg::ShowPage(int index) {
  if (index == kFaqPage) {
    opener_(MakerPage(L"/faq.php"), SW_SHOWNORMAL);
    return;
  }
  scan_.Show(SW_HIDE);
  options_.ShowPage(SW_HIDE);
  shred_.Show(SW_HIDE);
  junk_.Show(SW_HIDE);
  switch (index) {
    case kScanPage:
      ScanPage().Show(SW_SHOW);
      break;
    case kJunkPage:
      JunkPage().ResetToSetUp();
      junk_.Show(SW_SHOW);
      break;
    case kShredPage:
      ShredPage().Show(SW_SHOW);
      break;
    case kOptionsPage:
      OptionsPage().ShowPage(SW_SHOW);
      break;
    default:
      break;  // the help page, always underneath, shows through
  }
}

void CPcDlg::ShowFromMenu(int tab, int page) {
  autoStarted_ = false;
  skin_.Tabs().Select(tab);
  ShowPage(page);
  Show(SW_SHOWNORMAL);
}

void CPcDlg::Quit() {
  tray_.Remove();
  ::PostQuitMessage(-1);
}

void CPcDlg::CloseButton() {
  if (junk_.Searching()) {
    return;
  }
  if (options_.Values().exitOnClose == 1) {
    Quit();
  }
  if (options_.Values().trayOnClose == 1) {
    Show(SW_HIDE);
  }
}

bool CPcDlg::AnyWorkRuns() const { return scan_.Scanning() || scan_.EraseDialogOpen() || junk_.Searching(); }

bool CPcDlg::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDC_SKIN_CLOSE:
      CloseButton();
      return true;
    case IDC_SKIN_MINIMIZE:
      if (!junk_.Searching()) {
        Show(SW_HIDE);
      }
      return true;
    case ID_TRAY_SECURITY:
      ShowFromMenu(0, kScanPage);
      return true;
    case ID_TRAY_JUNK:
      ShowFromMenu(1, kJunkPage);
      return true;
    case ID_TRAY_SHREDDER:
      ShowFromMenu(2, kShredPage);
      return true;
    case ID_TRAY_SETTINGS:
      ShowFromMenu(3, kOptionsPage);
      return true;
    case ID_TRAY_HELP_PAGE:
      ShowFromMenu(4, kHelpPage);
      return true;
    case ID_TRAY_HELP:
    case IDC_MAIN_HELP:
    case IDC_MAIN_HELP_FOOTER:
      opener_(MakerPage(L"/faq.php"), SW_SHOWNORMAL);
      return true;
    case ID_TRAY_ONE_CLICK:
      if (!scan_.Scanning()) {
        (void)ScanPage().StartOneClickErase();  // refused while the page's worker runs
      }
      return true;
    case ID_TRAY_EXIT:
      Quit();
      return true;
    case IDC_MAIN_UPDATE:
      (void)updateCheck_.Start(UpdateCheckRunner::Mode::kInteractive);  // ignored while a check runs
      return true;
    case IDC_MAIN_AD:
      opener_(MakerAdPage(L"/go.asp?id=201"), SW_SHOWNORMAL);
      return true;
    case IDOK:
    case IDCANCEL:
      return true;  // Enter and Esc do not close the main window
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

bool CPcDlg::OnClose() {
  CloseButton();
  return true;
}

bool CPcDlg::OnTimer(UINT_PTR id) {
  if (id == kSchedulerTimer) {
    SchedulerTick();
    return true;
  }
  if (id == CTrayIcon::kAnimationTimer) {
    tray_.AnimateNextFrame(IsVisible(), scan_.ItemsDone());
    return true;
  }
  return false;
}

void CPcDlg::SchedulerTick() {
  if (schedulerSuspended_ == 1 || options_.Values().scheduleOn == 0) {
    return;
  }
  if (!ScheduledScanDue(options_.Values(), clock_())) {
    return;
  }
  // Two workers over one list of items would tangle it: a tick that finds one running
  // is skipped.
  if (scan_.Busy() || junk_.Searching()) {
    return;
  }
  tray_.ShowBalloon(LoadResourceString(IDS_AUTO_SCAN_TITLE), LoadResourceString(IDS_AUTO_SCAN_TEXT), 2000);
  (void)ScanPage().StartOneClickErase();  // cannot be refused: nothing runs
}

void CPcDlg::StartTrayAnimation(const std::wstring& title, const std::wstring& text) {
  tray_.StartAnimation(title, text);
}

void CPcDlg::StopTrayAnimation(const std::wstring& title, const std::wstring& text) {
  tray_.StopAnimation(title, text, IsVisible(), scan_.ItemsDone());
}

void CPcDlg::OnTrayCallback(UINT iconId, UINT mouseMessage) {
  if (AnyWorkRuns()) {
    return;
  }
  if (iconId != kTrayIconId) {
    return;
  }
  if (mouseMessage == WM_LBUTTONDBLCLK) {
    autoStarted_ = false;
    Show(SW_SHOW);
  } else if (mouseMessage == WM_RBUTTONUP) {
    tray_.ShowMenu();
  }
}

void CPcDlg::OnCopyData(const COPYDATASTRUCT& data) {
  std::wstring path;
  const char* text = static_cast<const char*>(data.lpData);
  int length = text != nullptr ? static_cast<int>(data.cbData) : 0;
  while (length > 0 && text[length - 1] == '\0') {
    --length;
  }
  if (length > 0) {
    const int wide = ::MultiByteToWideChar(CP_ACP, 0, text, length, nullptr, 0);
    if (wide > 0) {
      path.resize(static_cast<size_t>(wide));
      path.resize(static_cast<size_t>(::MultiByteToWideChar(CP_ACP, 0, text, length, path.data(), wide)));
    }
  }
  ShowPage(kShredPage);
  (void)ShredPage().AddPath(path);  // a file that cannot be listed is left out
  Show(SW_SHOWNORMAL);
}

bool CPcDlg::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (updateCheck_.HandleMessage(message, result)) {
    return true;
  }
  switch (message) {
    case kTrayCallbackMessage:
      OnTrayCallback(static_cast<UINT>(wParam), static_cast<UINT>(lParam));
      return true;
    case kShowPageMessage:
      autoStarted_ = false;
      ShowPage(static_cast<int>(lParam));
      return true;
    case kShowShredderMessage:
      ShowPage(kShredPage);
      return true;
    case kFinishStartUpMessage:
      FinishStartUp();
      return true;
    case WM_COPYDATA:
      OnCopyData(*reinterpret_cast<const COPYDATASTRUCT*>(lParam));
      result = TRUE;
      return true;
    case WM_MEASUREITEM:
      if (tray_.OnMeasureItem(*reinterpret_cast<MEASUREITEMSTRUCT*>(lParam))) {
        result = TRUE;
        return true;
      }
      break;
    case WM_DRAWITEM:
      if (tray_.OnDrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam))) {
        result = TRUE;
        return true;
      }
      break;
    case WM_NCHITTEST: {
      // The caption band moves the window, as a system caption would.
      POINT point{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
      if (::ScreenToClient(window_, &point) != FALSE && skin_.OnCaption(point)) {
        result = HTCAPTION;
        return true;
      }
      break;
    }
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLORDLG:
      if (CDialog::OnMessage(message, wParam, lParam, result)) {
        return true;
      }
      (void)::SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
      result = reinterpret_cast<LRESULT>(::GetStockObject(NULL_BRUSH));
      return true;
    default:
      break;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

bool CPcDlg::OnEraseBackground(HDC) { return true; }

bool CPcDlg::OnPaint() {
  // An "-A" start stays in the notification area: every paint hides the window until a
  // page is brought forward.
  if (autoStarted_) {
    Show(SW_HIDE);
  }
  const controls::PaintDC dc(window_);
  if (!dc) {
    return false;
  }
  skin_.Paint(dc.Get());
  return true;
}

}  // namespace lumenor
