#include "app/PcDlg.h"

#include "app/Scheduler.h"
#include "app/StartupState.h"
#include "base/ModulePath.h"
#include "base/ResourceString.h"
#include "controls/MemDC.h"
#include "controls/Paint.h"
#include "junk/JunkState.h"
#include "res/resource.h"
#include "scan/ScanState.h"

#include <commctrl.h>
#include <shlwapi.h>

#include <cwchar>
#include <iterator>

namespace lumenor {

namespace {

constexpr int kWindowWidth = 660;
constexpr int kCaptionHeight = 34;
constexpr int kFooterHeight = 40;
constexpr COLORREF kFooterColour = RGB(226, 234, 244);
constexpr POINT kTabOrigin{10, 40};
constexpr SIZE kPageSize{640, 400};
constexpr int kMainIcon = 128;
constexpr int kAnimationIcons[4] = {312, 313, 314, 311};
constexpr int kMenuSideBarPicture = 228;
// Normal, hover and selected pictures of the four tabs.
constexpr int kTabPictures[4][3] = {{366, 365, 364}, {357, 356, 355}, {351, 361, 362}, {202, 200, 199}};

HICON LoadSmallIcon(int id) {
  return static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_ICON,
                                         ::GetSystemMetrics(SM_CXSMICON), ::GetSystemMetrics(SM_CYSMICON), 0));
}

template <size_t N>
void CopyText(wchar_t (&target)[N], const std::wstring& text) {
  (void)wcsncpy_s(target, N, text.c_str(), _TRUNCATE);  // truncation is what the record allows
}

SYSTEMTIME SystemLocalTime() {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return now;
}

}  // namespace

CPcDlg::CPcDlg(PageOpener opener)
    : CDialog(IDD_MAIN), opener_(std::move(opener)), clock_(SystemLocalTime), help_(opener_) {
  // The pages' templates hold list views and progress bars.
  INITCOMMONCONTROLSEX classes{sizeof classes,
                               ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES | ICC_PROGRESS_CLASS | ICC_STANDARD_CLASSES};
  (void)::InitCommonControlsEx(&classes);  // a class it could not register fails the page that needs it
}

CPcDlg::~CPcDlg() {
  if (trayAdded_) {
    (void)::Shell_NotifyIconW(NIM_DELETE, &tray_);  // the icon goes with the window in any case
  }
  for (HICON icon : frameIcons_) {
    if (icon != nullptr) {
      (void)::DestroyIcon(icon);
    }
  }
  if (mainIcon_ != nullptr) {
    (void)::DestroyIcon(mainIcon_);
  }
  for (HFONT font : {glyphFont_, titleFont_}) {
    if (font != nullptr) {
      (void)::DeleteObject(font);
    }
  }
}

bool CPcDlg::OnInit() {
  const std::wstring settingsPath = ModuleFolder() + kSettingsFileName;
  if (::PathFileExistsW(settingsPath.c_str()) == FALSE) {
    (void)WriteDefaultSettings(CIniFileRW(kSettingsFileName));  // a failed write reads as defaults of 1
  }
  SetUpSkin();
  CreatePages();
  AddTrayIcon();

  int tab = kScanPage;
  if (!ShredPathArgument.empty()) {
    tab = kShredPage;
    (void)shred_.AddPath(ShredPathArgument);  // a file that cannot be listed is left out
  }
  tabs_.Select(tab);
  ShowPage(tab);

  (void)StartTimer(kSchedulerTimer, kSchedulerPeriodMs);  // without it there is no scheduled scan
  return true;
}

void CPcDlg::SetUpSkin() {
  // The caption in the template names the window (task bar, other programs); the skin
  // draws its own caption band instead of the system's.
  (void)ChangeStyle(WS_CAPTION | WS_THICKFRAME, 0);  // with the frame left, the skin is only smaller
  mainIcon_ = LoadSmallIcon(kMainIcon);
  for (size_t frame = 0; frame < frameIcons_.size(); ++frame) {
    frameIcons_[frame] = LoadSmallIcon(kAnimationIcons[frame]);
  }
  if (mainIcon_ != nullptr) {
    (void)Send(WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(mainIcon_));  // answers the old icon
  }

  (void)tabs_.CreateStrip(window_, IDC_MAIN_TABS, kTabOrigin, kShowPageMessage);
  for (const auto& pictures : kTabPictures) {
    (void)tabs_.AddTab(pictures[0], pictures[1], pictures[2]);
  }

  const int ids[6] = {IDC_MAIN_UPDATE, IDC_MAIN_HELP,     IDC_MAIN_HELP_FOOTER,
                      IDC_MAIN_AD,     IDC_SKIN_MINIMIZE, IDC_SKIN_CLOSE};
  for (size_t index = 0; index < buttons_.size(); ++index) {
    (void)buttons_[index].Attach(window_, ids[index]);
  }
  LOGFONTW title{};
  if (::GetObjectW(controls::DialogFont(window_), sizeof title, &title) != 0) {
    title.lfWeight = FW_BOLD;
    title.lfHeight = -15;
    titleFont_ = ::CreateFontIndirectW(&title);
    glyphFont_ = ::CreateFontIndirectW(&title);
  }

  const RECT page = PageRect();
  const int height = page.bottom + kFooterHeight;
  RECT work{};
  if (::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0) == FALSE) {
    work = RECT{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
  }
  (void)Move(work.left + (work.right - work.left - kWindowWidth) / 2, work.top + (work.bottom - work.top - height) / 2,
             kWindowWidth, height);

  // Caption band: Update and Help, then minimise and close at the right edge.
  (void)CWindow(Item(IDC_SKIN_CLOSE)).Move(kWindowWidth - 34, 6, 28, 22);
  (void)CWindow(Item(IDC_SKIN_MINIMIZE)).Move(kWindowWidth - 64, 6, 28, 22);
  (void)CWindow(Item(IDC_MAIN_HELP)).Move(kWindowWidth - 136, 7, 64, 20);
  (void)CWindow(Item(IDC_MAIN_UPDATE)).Move(kWindowWidth - 206, 7, 64, 20);
  if (glyphFont_ != nullptr) {
    for (int id : {IDC_SKIN_CLOSE, IDC_SKIN_MINIMIZE}) {
      (void)::SendMessageW(Item(id), WM_SETFONT, reinterpret_cast<WPARAM>(glyphFont_), FALSE);
    }
  }
  // The AD banner fills the tab row right of the tabs.
  const SIZE strip = tabs_.StripSize();
  const int adLeft = kTabOrigin.x + strip.cx + 10;
  (void)CWindow(Item(IDC_MAIN_AD)).Move(adLeft, kTabOrigin.y + 4, kWindowWidth - 10 - adLeft, strip.cy - 8);
  // Footer: the home-page link at the left, Help at the right.
  (void)CWindow(Item(IDC_MAIN_HOME_LINK)).Move(14, page.bottom + 14, 240, 16);
  (void)CWindow(Item(IDC_MAIN_HELP_FOOTER)).Move(kWindowWidth - 90, page.bottom + 9, 80, 22);
  const std::wstring home = MakerHomePage();
  (void)homeLink_.Attach(window_, IDC_MAIN_HOME_LINK, home, home, kFooterColour,
                         [this](const std::wstring& address) { opener_(address, SW_SHOWNORMAL); });
}

RECT CPcDlg::PageRect() const {
  const int top = kTabOrigin.y + tabs_.StripSize().cy + 4;
  return RECT{10, top, 10 + kPageSize.cx, top + kPageSize.cy};
}

void CPcDlg::CreatePages() {
  const RECT rect = PageRect();
  controls::CDialog* pages[] = {&scan_, &options_, &shred_, &junk_, &help_};
  for (controls::CDialog* page : pages) {
    if (page->Create(window_)) {
      (void)page->Move(rect);
    }
  }
  // The help page lies under the others.
  if (help_.Handle() != nullptr) {
    (void)::SetWindowPos(help_.Handle(), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    help_.Show(SW_SHOW);
  }
}

void CPcDlg::AddTrayIcon() {
  tray_.cbSize = sizeof tray_;
  tray_.hWnd = window_;
  tray_.uID = kTrayIconId;
  tray_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
  tray_.uCallbackMessage = kTrayCallbackMessage;
  tray_.hIcon = mainIcon_ != nullptr ? mainIcon_ : ::LoadIconW(nullptr, IDI_APPLICATION);
  CopyText(tray_.szTip, LoadResourceString(IDS_PRODUCT_NAME));
  trayAdded_ = ::Shell_NotifyIconW(NIM_ADD, &tray_) != FALSE;
}

bool CPcDlg::ModifyTrayIcon() { return ::Shell_NotifyIconW(NIM_MODIFY, &tray_) != FALSE; }

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
      scan_.Show(SW_SHOW);
      break;
    case kJunkPage:
      junk_.ResetToSetUp();
      junk_.Show(SW_SHOW);
      break;
    case kShredPage:
      shred_.Show(SW_SHOW);
      break;
    case kOptionsPage:
      options_.ShowPage(SW_SHOW);
      break;
    default:
      break;  // the help page, always underneath, shows through
  }
}

void CPcDlg::ShowFromMenu(int tab, int page) {
  AutoStarted = 0;
  tabs_.Select(tab);
  ShowPage(page);
  Show(SW_SHOWNORMAL);
}

void CPcDlg::Quit() {
  if (trayAdded_) {
    trayAdded_ = ::Shell_NotifyIconW(NIM_DELETE, &tray_) == FALSE;
  }
  ::PostQuitMessage(-1);
}

void CPcDlg::CloseButton() {
  if (JunkSearchRunning != 0) {
    return;
  }
  if (Options.exitOnClose == 1) {
    Quit();
  }
  if (Options.trayOnClose == 1) {
    Show(SW_HIDE);
  }
}

bool CPcDlg::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDC_SKIN_CLOSE:
      CloseButton();
      return true;
    case IDC_SKIN_MINIMIZE:
      if (JunkSearchRunning == 0) {
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
      if (ScanBusy == 0) {
        scan_.StartOneClickErase();
      }
      return true;
    case ID_TRAY_EXIT:
      Quit();
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
  if (id == kAnimationTimer) {
    AnimateTrayIcon(trayFrame_);
    return true;
  }
  return false;
}

void CPcDlg::SchedulerTick() {
  if (schedulerSuspended_ == 1 || Options.scheduleOn == 0) {
    return;
  }
  if (!ScheduledScanDue(Options, clock_())) {
    return;
  }
  tray_.uFlags = NIF_INFO;
  tray_.uTimeout = 2000;
  tray_.dwInfoFlags = NIIF_INFO;
  CopyText(tray_.szInfo, LoadResourceString(IDS_AUTO_SCAN_TEXT));
  CopyText(tray_.szInfoTitle, LoadResourceString(IDS_AUTO_SCAN_TITLE));
  (void)ModifyTrayIcon();  // without a notification area the scan still runs
  scan_.StartOneClickErase();
}

void CPcDlg::StartTrayAnimation(const std::wstring& title, const std::wstring& text) {
  trayTitle_ = title;
  trayText_ = text;
  (void)StartTimer(kAnimationTimer, kAnimationPeriodMs);  // without it the icon simply stays still
}

void CPcDlg::StopTrayAnimation(const std::wstring& title, const std::wstring& text) {
  trayTitle_ = title;
  trayText_ = text;
  (void)StopTimer(kAnimationTimer);  // fails only when it was not running
  AnimateTrayIcon(-1);
}

void CPcDlg::AnimateTrayIcon(int frame) {
  if (!IsVisible()) {
    tray_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_INFO;
    tray_.uTimeout = 1000;
    tray_.dwInfoFlags = NIIF_INFO;
    wchar_t balloon[std::size(NOTIFYICONDATAW{}.szInfo)] = {};
    (void)swprintf(balloon, std::size(balloon), L"%ls%d", trayText_.c_str(), scan_.ItemsDone());  // cut to fit
    CopyText(tray_.szInfo, balloon);
    CopyText(tray_.szInfoTitle, trayTitle_);
  } else {
    tray_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
  }
  if (frame == -1) {
    tray_.hIcon = mainIcon_ != nullptr ? mainIcon_ : ::LoadIconW(nullptr, IDI_APPLICATION);
    trayTitle_ = LoadResourceString(IDS_PRODUCT_NAME);
  } else if (frame >= 0 && frame < static_cast<int>(frameIcons_.size())) {
    tray_.hIcon = frameIcons_[static_cast<size_t>(frame)];
  }
  CopyText(tray_.szTip, trayTitle_);
  (void)ModifyTrayIcon();  // a lost frame is drawn again at the next tick
  if (++trayFrame_ > 3) {
    trayFrame_ = 0;
  }
}

void CPcDlg::OnTrayCallback(UINT iconId, UINT mouseMessage) {
  if (ScanBusy != 0 || EraseDialogOpen != 0 || JunkSearchRunning != 0) {
    return;
  }
  if (iconId != kTrayIconId) {
    return;
  }
  if (mouseMessage == WM_LBUTTONDBLCLK) {
    AutoStarted = 0;
    Show(SW_SHOW);
  } else if (mouseMessage == WM_RBUTTONUP) {
    ShowTrayMenu();
  }
}

void CPcDlg::ShowTrayMenu() {
  if (!trayMenu_.Built()) {
    const controls::MenuEntry entries[] = {
        {ID_TRAY_SECURITY, LoadResourceString(IDS_TRAY_SECURITY), 299},
        {ID_TRAY_JUNK, LoadResourceString(IDS_TRAY_JUNK), 386},
        {ID_TRAY_SHREDDER, LoadResourceString(IDS_TRAY_SHREDDER), 297},
        {ID_TRAY_SETTINGS, LoadResourceString(IDS_TRAY_SETTINGS), 300},
        {ID_TRAY_HELP, LoadResourceString(IDS_TRAY_HELP), 231},
        {0, L"", 0},
        {ID_TRAY_ONE_CLICK, LoadResourceString(IDS_TRAY_ONE_CLICK), 229},
        {0, L"", 0},
        {ID_TRAY_EXIT, LoadResourceString(IDS_TRAY_EXIT), 161},
    };
    if (!trayMenu_.Build(entries, LoadResourceString(IDS_PRODUCT_NAME), kMenuSideBarPicture)) {
      return;
    }
  }
  POINT cursor{};
  if (::GetCursorPos(&cursor) == FALSE) {
    return;
  }
  // Without the foreground the menu would not close when the user clicks elsewhere.
  (void)::SetForegroundWindow(window_);
  (void)::TrackPopupMenu(trayMenu_.Handle(), TPM_LEFTALIGN | TPM_RIGHTBUTTON, cursor.x, cursor.y, 0, window_,
                         nullptr);  // the choice arrives as WM_COMMAND
  (void)Post(WM_NULL);
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
  (void)shred_.AddPath(path);  // a file that cannot be listed is left out
  Show(SW_SHOWNORMAL);
}

bool CPcDlg::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  switch (message) {
    case kTrayCallbackMessage:
      OnTrayCallback(static_cast<UINT>(wParam), static_cast<UINT>(lParam));
      return true;
    case kShowPageMessage:
      AutoStarted = 0;
      ShowPage(static_cast<int>(lParam));
      return true;
    case kShowShredderMessage:
      ShowPage(kShredPage);
      return true;
    case WM_COPYDATA:
      OnCopyData(*reinterpret_cast<const COPYDATASTRUCT*>(lParam));
      result = TRUE;
      return true;
    case WM_MEASUREITEM:
      if (trayMenu_.OnMeasureItem(*reinterpret_cast<MEASUREITEMSTRUCT*>(lParam))) {
        result = TRUE;
        return true;
      }
      break;
    case WM_DRAWITEM:
      if (trayMenu_.OnDrawItem(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam))) {
        result = TRUE;
        return true;
      }
      break;
    case WM_NCHITTEST: {
      // The caption band moves the window, as a system caption would.
      POINT point{static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
      if (::ScreenToClient(window_, &point) != FALSE && point.y >= 0 && point.y < kCaptionHeight) {
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

void CPcDlg::Paint(HDC target) const {
  const RECT client = ClientRect();
  controls::CMemDC memory(target, client);
  HDC dc = memory.Get();
  (void)controls::FillSolid(dc, client, controls::kSkinBackground);
  const RECT caption{0, 0, client.right, kCaptionHeight};
  (void)controls::FillGradient(dc, caption, controls::kSkinCaptionTop, controls::kSkinCaptionBottom);
  const RECT page = PageRect();
  const RECT footer{0, page.bottom + 4, client.right, client.bottom};
  (void)controls::FillSolid(dc, footer, kFooterColour);
  const RECT pageFrame{page.left - 1, page.top - 1, page.right + 1, page.bottom + 1};
  (void)controls::DrawFrame(dc, pageFrame, controls::kSkinBorder);
  (void)controls::DrawFrame(dc, client, controls::kSkinCaptionTop);

  if (mainIcon_ != nullptr) {
    (void)::DrawIconEx(dc, 10, (kCaptionHeight - 16) / 2, mainIcon_, 16, 16, 0, nullptr, DI_NORMAL);
  }
  const std::wstring title = Text();
  RECT titleRect{34, 0, client.right / 2, kCaptionHeight};
  HGDIOBJ oldFont = ::SelectObject(dc, titleFont_ != nullptr ? titleFont_ : controls::DialogFont(window_));
  (void)::SetBkMode(dc, TRANSPARENT);
  (void)::SetTextColor(dc, RGB(255, 255, 255));
  (void)::DrawTextW(dc, title.c_str(), static_cast<int>(title.size()), &titleRect,
                    DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
  (void)::SelectObject(dc, oldFont);
}

bool CPcDlg::OnPaint() {
  // An "-A" start stays in the notification area: every paint hides the window until a
  // page is brought forward.
  if (AutoStarted == 1) {
    Show(SW_HIDE);
  }
  PAINTSTRUCT paint{};
  HDC dc = ::BeginPaint(window_, &paint);
  if (dc == nullptr) {
    return false;
  }
  Paint(dc);
  (void)::EndPaint(window_, &paint);
  return true;
}

}  // namespace lumenor
