#include "app/TrayIcon.h"

#include "app/ShellMessages.h"
#include "base/ResourceString.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

#include <cwchar>
#include <iterator>

namespace lumenor {

namespace {

constexpr int kAnimationIcons[4] = {IDI_TRAY_FRAME0, IDI_TRAY_FRAME1, IDI_TRAY_FRAME2, IDI_TRAY_FRAME3};

HICON LoadSmallIcon(int id) {
  return static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(id), IMAGE_ICON,
                                         ::GetSystemMetrics(SM_CXSMICON), ::GetSystemMetrics(SM_CYSMICON), 0));
}

template <size_t N>
void CopyText(wchar_t (&target)[N], const std::wstring& text) {
  (void)wcsncpy_s(target, N, text.c_str(), _TRUNCATE);  // truncation is what the record allows
}

}  // namespace

CTrayIcon::CTrayIcon() {
  mainIcon_.Reset(LoadSmallIcon(IDI_MAIN));
  for (size_t frame = 0; frame < frameIcons_.size(); ++frame) {
    frameIcons_[frame].Reset(LoadSmallIcon(kAnimationIcons[frame]));
  }
}

CTrayIcon::~CTrayIcon() { Remove(); }  // the icons go after it: the record holds one of them

bool CTrayIcon::Add(HWND owner) {
  owner_ = owner;
  record_.cbSize = sizeof record_;
  record_.hWnd = owner;
  record_.uID = kTrayIconId;
  record_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
  record_.uCallbackMessage = kTrayCallbackMessage;
  record_.hIcon = mainIcon_ ? mainIcon_.Get() : ::LoadIconW(nullptr, IDI_APPLICATION);
  CopyText(record_.szTip, LoadResourceString(IDS_PRODUCT_NAME));
  added_ = ::Shell_NotifyIconW(NIM_ADD, &record_) != FALSE;
  return added_;
}

void CTrayIcon::Remove() {
  if (added_) {
    added_ = ::Shell_NotifyIconW(NIM_DELETE, &record_) == FALSE;
  }
}

bool CTrayIcon::Modify() { return ::Shell_NotifyIconW(NIM_MODIFY, &record_) != FALSE; }

void CTrayIcon::StartAnimation(const std::wstring& title, const std::wstring& text) {
  title_ = title;
  text_ = text;
  (void)::SetTimer(owner_, kAnimationTimer, kAnimationPeriodMs, nullptr);  // without it the icon simply stays still
}

void CTrayIcon::StopAnimation(const std::wstring& title, const std::wstring& text, bool ownerVisible, int count) {
  title_ = title;
  text_ = text;
  (void)::KillTimer(owner_, kAnimationTimer);  // fails only when it was not running
  Animate(kMainIconFrame, ownerVisible, count);
}

void CTrayIcon::Animate(int frame, bool ownerVisible, int count) {
  if (!ownerVisible) {
    record_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_INFO;
    record_.uTimeout = 1000;
    record_.dwInfoFlags = NIIF_INFO;
    wchar_t balloon[std::size(NOTIFYICONDATAW{}.szInfo)] = {};
    (void)swprintf(balloon, std::size(balloon), L"%ls%d", text_.c_str(), count);  // cut to fit
    CopyText(record_.szInfo, balloon);
    CopyText(record_.szInfoTitle, title_);
  } else {
    record_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
  }
  if (frame == kMainIconFrame) {
    record_.hIcon = mainIcon_ ? mainIcon_.Get() : ::LoadIconW(nullptr, IDI_APPLICATION);
    title_ = LoadResourceString(IDS_PRODUCT_NAME);
  } else if (frame >= 0 && frame < static_cast<int>(frameIcons_.size())) {
    record_.hIcon = frameIcons_[static_cast<size_t>(frame)].Get();
  }
  CopyText(record_.szTip, title_);
  (void)Modify();  // a lost frame is drawn again at the next tick
  if (++frame_ > 3) {
    frame_ = 0;
  }
}

void CTrayIcon::ShowBalloon(const std::wstring& title, const std::wstring& text, UINT timeoutMs) {
  record_.uFlags = NIF_INFO;
  record_.uTimeout = timeoutMs;
  record_.dwInfoFlags = NIIF_INFO;
  CopyText(record_.szInfo, text);
  CopyText(record_.szInfoTitle, title);
  (void)Modify();  // without a notification area there is nothing to tell
}

void CTrayIcon::ShowMenu() {
  if (!menu_.Built()) {
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
    if (!menu_.Build(entries, LoadResourceString(IDS_PRODUCT_NAME), IDB_SPLASH_WELCOME)) {
      return;
    }
  }
  POINT cursor{};
  if (::GetCursorPos(&cursor) == FALSE) {
    return;
  }
  // Without the foreground the menu would not close when the user clicks elsewhere.
  (void)::SetForegroundWindow(owner_);
  (void)::TrackPopupMenu(menu_.Handle(), TPM_LEFTALIGN | TPM_RIGHTBUTTON, cursor.x, cursor.y, 0, owner_,
                         nullptr);  // the choice arrives as WM_COMMAND
  (void)::PostMessageW(owner_, WM_NULL, 0, 0);
}

}  // namespace lumenor
