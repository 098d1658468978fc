#include "app/PcDlg.h"

#include "app/Scheduler.h"
#include "app/StartupState.h"
#include "base/ModulePath.h"
#include "base/ResourceString.h"
#include "controls/Layout.h"
#include "controls/MemDC.h"
#include "controls/Paint.h"
#include "junk/JunkState.h"
#include "res/artwork_ids.h"
#include "res/resource.h"
#include "scan/ScanState.h"

#include <commctrl.h>
#include <shlwapi.h>

#include <algorithm>
#include <cwchar>
#include <initializer_list>
#include <iterator>
#include <utility>

namespace lumenor {

namespace {

constexpr COLORREF kFooterColour = RGB(226, 234, 244);
constexpr int kAnimationIcons[4] = {IDI_TRAY_FRAME0, IDI_TRAY_FRAME1, IDI_TRAY_FRAME2, IDI_TRAY_FRAME3};
// Normal, hover and selected pictures of the four tabs.
constexpr int kTabPictures[4][3] = {{IDB_TAB_SCAN_NORMAL, IDB_TAB_SCAN_HOT, IDB_TAB_SCAN_SELECTED},
                                    {IDB_TAB_JUNK_NORMAL, IDB_TAB_JUNK_HOT, IDB_TAB_JUNK_SELECTED},
                                    {IDB_TAB_SHRED_NORMAL, IDB_TAB_SHRED_HOT, IDB_TAB_SHRED_SELECTED},
                                    {IDB_TAB_SETTINGS_NORMAL, IDB_TAB_SETTINGS_HOT, IDB_TAB_SETTINGS_SELECTED}};
// Space around the frame's bands and between neighbours, in dialog units.
constexpr SIZE kMarginUnits{6, 4};
constexpr SIZE kGapUnits{2, 2};

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
  LayOutFrame();
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
  mainIcon_ = LoadSmallIcon(IDI_MAIN);
  for (size_t frame = 0; frame < frameIcons_.size(); ++frame) {
    frameIcons_[frame] = LoadSmallIcon(kAnimationIcons[frame]);
  }
  if (mainIcon_ != nullptr) {
    (void)Send(WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(mainIcon_));  // answers the old icon
  }

  (void)tabs_.CreateStrip(window_, IDC_MAIN_TABS, POINT{}, kShowPageMessage);
  for (const auto& pictures : kTabPictures) {
    (void)tabs_.AddTab(pictures[0], pictures[1], pictures[2]);
  }

  const int ids[6] = {IDC_MAIN_UPDATE, IDC_MAIN_HELP,     IDC_MAIN_HELP_FOOTER,
                      IDC_MAIN_AD,     IDC_SKIN_MINIMIZE, IDC_SKIN_CLOSE};
  for (size_t index = 0; index < buttons_.size(); ++index) {
    (void)buttons_[index].Attach(window_, ids[index]);
  }
  // The title and the glyphs of minimise and close: a third larger than the dialog font,
  // bold, so they grow with it.
  LOGFONTW title{};
  if (::GetObjectW(controls::DialogFont(window_), sizeof title, &title) != 0) {
    title.lfWeight = FW_BOLD;
    title.lfHeight = ::MulDiv(title.lfHeight, 4, 3);
    titleFont_ = ::CreateFontIndirectW(&title);
    glyphFont_ = ::CreateFontIndirectW(&title);
  }
  if (glyphFont_ != nullptr) {
    for (int id : {IDC_SKIN_CLOSE, IDC_SKIN_MINIMIZE}) {
      (void)::SendMessageW(Item(id), WM_SETFONT, reinterpret_cast<WPARAM>(glyphFont_), FALSE);
    }
  }
  const std::wstring home = MakerHomePage();
  (void)homeLink_.Attach(window_, IDC_MAIN_HOME_LINK, home, home, kFooterColour,
                         [this](const std::wstring& address) { opener_(address, SW_SHOWNORMAL); });
}

SIZE CPcDlg::TitleSize() const {
  SIZE size{};
  HDC dc = ::GetDC(window_);
  if (dc == nullptr) {
    return size;
  }
  HGDIOBJ oldFont = ::SelectObject(dc, titleFont_ != nullptr ? titleFont_ : controls::DialogFont(window_));
  const std::wstring title = Text();
  if (::GetTextExtentPoint32W(dc, title.c_str(), static_cast<int>(title.size()), &size) == FALSE) {
    size = SIZE{};
  }
  (void)::SelectObject(dc, oldFont);
  (void)::ReleaseDC(window_, dc);
  return size;
}

void CPcDlg::CreatePages() {
  // The scan page's workers tell their stages in the notification area.
  scan_.SetStatusSink([this](bool started, const std::wstring& status, const std::wstring& caption) {
    if (started) {
      StartTrayAnimation(status, caption);
    } else {
      StopTrayAnimation(status, caption);
    }
  });
  controls::CDialog* pages[] = {&scan_, &options_, &shred_, &junk_, &help_};
  for (controls::CDialog* page : pages) {
    (void)page->Create(window_);  // a page that could not be made stays blank
  }
  // The help page lies under the others.
  if (help_.Handle() != nullptr) {
    (void)::SetWindowPos(help_.Handle(), HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    help_.Show(SW_SHOW);
  }
}

void CPcDlg::LayOutFrame() {
  const auto templateSize = [this](int id) {
    const RECT rect = CWindow(Item(id)).RectInParent();
    return SIZE{controls::Width(rect), controls::Height(rect)};
  };
  FrameParts parts;
  for (const controls::CDialog* page :
       std::initializer_list<const controls::CDialog*>{&scan_, &options_, &shred_, &junk_, &help_}) {
    if (page->Handle() != nullptr) {
      const SIZE size = controls::TemplateSize(page->Handle(), page->TemplateId());
      parts.largestPage.cx = std::max(parts.largestPage.cx, size.cx);
      parts.largestPage.cy = std::max(parts.largestPage.cy, size.cy);
    }
  }
  parts.tabStrip = tabs_.StripSize();
  parts.icon = SIZE{::GetSystemMetrics(SM_CXSMICON), ::GetSystemMetrics(SM_CYSMICON)};
  parts.title = TitleSize();
  parts.update = templateSize(IDC_MAIN_UPDATE);
  parts.help = templateSize(IDC_MAIN_HELP);
  parts.minimise = templateSize(IDC_SKIN_MINIMIZE);
  parts.close = templateSize(IDC_SKIN_CLOSE);
  parts.ad = templateSize(IDC_MAIN_AD);
  parts.homeLink = templateSize(IDC_MAIN_HOME_LINK);
  parts.footerHelp = templateSize(IDC_MAIN_HELP_FOOTER);
  parts.margin = controls::DialogUnits(window_, kMarginUnits.cx, kMarginUnits.cy);
  parts.gap = controls::DialogUnits(window_, kGapUnits.cx, kGapUnits.cy);
  frame_ = ComputeFrameLayout(parts);

  const std::pair<int, const RECT*> places[] = {
      {IDC_MAIN_UPDATE, &frame_.update},
      {IDC_MAIN_HELP, &frame_.help},
      {IDC_SKIN_MINIMIZE, &frame_.minimise},
      {IDC_SKIN_CLOSE, &frame_.close},
      {IDC_MAIN_AD, &frame_.ad},
      {IDC_MAIN_HOME_LINK, &frame_.homeLink},
      {IDC_MAIN_HELP_FOOTER, &frame_.footerHelp},
  };
  for (const auto& [id, rect] : places) {
    (void)CWindow(Item(id)).Move(*rect);  // a control that cannot move stays where the template put it
  }
  (void)tabs_.Move(frame_.tabOrigin.x, frame_.tabOrigin.y, parts.tabStrip.cx, parts.tabStrip.cy);
  for (controls::CDialog* page :
       std::initializer_list<controls::CDialog*>{&scan_, &options_, &shred_, &junk_, &help_}) {
    if (page->Handle() != nullptr) {
      const SIZE size = controls::TemplateSize(page->Handle(), page->TemplateId());
      (void)page->Move(frame_.pages.left, frame_.pages.top, size.cx, size.cy);  // an unmoved page shows at 0, 0
    }
  }

  // The window around the client area, centred on the work area.
  RECT window{0, 0, frame_.client.cx, frame_.client.cy};
  (void)::AdjustWindowRectEx(&window, static_cast<DWORD>(::GetWindowLongW(window_, GWL_STYLE)), FALSE,
                             static_cast<DWORD>(::GetWindowLongW(window_, GWL_EXSTYLE)));  // unchanged: no frame
  const int width = controls::Width(window);
  const int height = controls::Height(window);
  RECT work{};
  if (::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0) == FALSE) {
    work = RECT{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
  }
  (void)Move(work.left + (controls::Width(work) - width) / 2, work.top + (controls::Height(work) - height) / 2, width,
             height);
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
        (void)scan_.StartOneClickErase();  // refused while the page's worker runs
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
  // Two workers over one list of items would tangle it: a tick that finds one running
  // is skipped.
  if (scan_.Busy() || JunkSearchRunning != 0) {
    return;
  }
  tray_.uFlags = NIF_INFO;
  tray_.uTimeout = 2000;
  tray_.dwInfoFlags = NIIF_INFO;
  CopyText(tray_.szInfo, LoadResourceString(IDS_AUTO_SCAN_TEXT));
  CopyText(tray_.szInfoTitle, LoadResourceString(IDS_AUTO_SCAN_TITLE));
  (void)ModifyTrayIcon();            // without a notification area the scan still runs
  (void)scan_.StartOneClickErase();  // cannot be refused: nothing runs
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
        {ID_TRAY_SECURITY, LoadResourceString(IDS_TRAY_SECURITY), IDI_MENU_SECURITY},
        {ID_TRAY_JUNK, LoadResourceString(IDS_TRAY_JUNK), IDI_MENU_JUNK},
        {ID_TRAY_SHREDDER, LoadResourceString(IDS_TRAY_SHREDDER), IDI_MENU_SHREDDER},
        {ID_TRAY_SETTINGS, LoadResourceString(IDS_TRAY_SETTINGS), IDI_MENU_SETTINGS},
        {ID_TRAY_HELP, LoadResourceString(IDS_TRAY_HELP), IDI_MENU_HELP},
        {0, L"", 0},
        {ID_TRAY_ONE_CLICK, LoadResourceString(IDS_TRAY_ONE_CLICK), IDI_MENU_ONE_CLICK},
        {0, L"", 0},
        {ID_TRAY_EXIT, LoadResourceString(IDS_TRAY_EXIT), IDI_MENU_EXIT},
    };
    if (!trayMenu_.Build(entries, LoadResourceString(IDS_PRODUCT_NAME), IDB_SPLASH_WELCOME)) {
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
      if (::ScreenToClient(window_, &point) != FALSE && point.y >= 0 && point.y < frame_.caption.bottom) {
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
  (void)controls::FillGradient(dc, frame_.caption, controls::kSkinCaptionTop, controls::kSkinCaptionBottom);
  (void)controls::FillSolid(dc, frame_.footer, kFooterColour);
  const RECT& pages = frame_.pages;
  const RECT pageFrame{pages.left - 1, pages.top - 1, pages.right + 1, pages.bottom + 1};
  (void)controls::DrawFrame(dc, pageFrame, controls::kSkinBorder);
  (void)controls::DrawFrame(dc, client, controls::kSkinCaptionTop);

  if (mainIcon_ != nullptr) {
    (void)::DrawIconEx(dc, frame_.icon.left, frame_.icon.top, mainIcon_, controls::Width(frame_.icon),
                       controls::Height(frame_.icon), 0, nullptr, DI_NORMAL);
  }
  const std::wstring title = Text();
  RECT titleRect{frame_.title.left, frame_.caption.top, frame_.update.left, frame_.caption.bottom};
  HGDIOBJ oldFont = ::SelectObject(dc, titleFont_ != nullptr ? titleFont_ : controls::DialogFont(window_));
  (void)::SetBkMode(dc, TRANSPARENT);
  (void)::SetTextColor(dc, RGB(255, 255, 255));
  (void)::DrawTextW(dc, title.c_str(), static_cast<int>(title.size()), &titleRect,
                    DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
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
