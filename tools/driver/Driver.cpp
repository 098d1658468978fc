// lumenor-driver.exe: drives a running lumenor.exe from outside, for the screenshot
// script. Each argument is one step:
//   wait            wait (up to 30 s) until the main window is visible
//   command:N       send the main window command N (20000 to 20007)
//   tray-menu       right-click the notification icon (the menu opens at the cursor)
//   escape          press Esc (closes an open menu)
//   sleep:MS        pause
//   info            print the main window's place and size
//   geometry        print the main window's place and size as WIDTHxHEIGHT+X+Y
//   splash-geometry the same for the splash
//   page-command:ID:N        send command N to the main window's page that holds control ID
//   dialog-geometry:ID       print the place and size of the dialog that shows control ID
//   dialog-command:ID:N      send command N to the dialog that shows control ID
#include "app/ShellMessages.h"

#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

namespace {

using lumenor::kTrayCallbackMessage;
using lumenor::kTrayIconId;

struct Search {
  bool splash;
  HWND found;
};

BOOL CALLBACK FindWindowProc(HWND window, LPARAM parameter) {
  auto* search = reinterpret_cast<Search*>(parameter);
  wchar_t title[64] = {};
  RECT rect{};
  if (GetWindowTextW(window, title, 64) > 0 && wcscmp(title, L"Lumenor") == 0 &&
      GetWindowRect(window, &rect) != FALSE && (rect.right - rect.left >= 600) != search->splash &&
      (!search->splash || IsWindowVisible(window) != FALSE)) {
    search->found = window;
    return FALSE;
  }
  return TRUE;
}

// Both are titled "Lumenor": the main window is the wide one, the splash the narrow one
// (its picture is 456 pixels wide).
HWND FindMainWindow() {
  Search search{false, nullptr};
  (void)EnumWindows(FindWindowProc, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND FindSplash() {
  Search search{true, nullptr};
  (void)EnumWindows(FindWindowProc, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

bool PrintGeometry(HWND window) {
  RECT rect{};
  if (window == nullptr || GetWindowRect(window, &rect) == FALSE) {
    std::fprintf(stderr, "driver: no such window\n");
    return false;
  }
  std::printf("%ldx%ld+%ld+%ld\n", rect.right - rect.left, rect.bottom - rect.top, rect.left, rect.top);
  return true;
}

// The first window below `parent` (itself included) that holds a visible control `id`.
struct ControlSearch {
  int id;
  HWND found;
};

BOOL CALLBACK FindHolderProc(HWND window, LPARAM parameter) {
  auto* search = reinterpret_cast<ControlSearch*>(parameter);
  HWND control = GetDlgItem(window, search->id);
  if (control != nullptr && IsWindowVisible(control) != FALSE && IsWindowVisible(window) != FALSE) {
    search->found = window;
    return FALSE;
  }
  return TRUE;
}

HWND FindPageHolding(HWND main, int id) {
  ControlSearch search{id, nullptr};
  if (main != nullptr) (void)EnumChildWindows(main, FindHolderProc, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

HWND FindDialogHolding(int id) {
  ControlSearch search{id, nullptr};
  for (int waited = 0; search.found == nullptr && waited < 10000; waited += 100) {
    (void)EnumWindows(FindHolderProc, reinterpret_cast<LPARAM>(&search));
    if (search.found == nullptr) Sleep(100);
  }
  return search.found;
}

// "ID:N" into its two numbers.
bool TwoNumbers(const wchar_t* text, int& first, int& second) {
  wchar_t* end = nullptr;
  first = static_cast<int>(std::wcstol(text, &end, 10));
  if (end == nullptr || *end != L':') return false;
  second = static_cast<int>(std::wcstol(end + 1, nullptr, 10));
  return true;
}

bool PressEscape() {
  INPUT keys[2] = {};
  keys[0].type = INPUT_KEYBOARD;
  keys[0].ki.wVk = VK_ESCAPE;
  keys[1] = keys[0];
  keys[1].ki.dwFlags = KEYEVENTF_KEYUP;
  return SendInput(2, keys, sizeof(INPUT)) == 2;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  for (int index = 1; index < argc; ++index) {
    const std::wstring step = argv[index];
    HWND main = FindMainWindow();
    if (step == L"wait") {
      for (int waited = 0; (main == nullptr || IsWindowVisible(main) == FALSE) && waited < 30000; waited += 50) {
        Sleep(50);
        main = FindMainWindow();
      }
      if (main == nullptr) {
        std::fprintf(stderr, "driver: no main window\n");
        return 1;
      }
    } else if (step.rfind(L"command:", 0) == 0) {
      if (main == nullptr || PostMessageW(main, WM_COMMAND, std::wcstoul(step.c_str() + 8, nullptr, 10), 0) == FALSE) {
        std::fprintf(stderr, "driver: cannot send %ls\n", step.c_str());
        return 1;
      }
    } else if (step == L"tray-menu") {
      RECT rect{};
      if (main == nullptr || GetWindowRect(main, &rect) == FALSE) {
        return 1;
      }
      // The menu opens at the cursor: put it inside the window's right half.
      (void)SetCursorPos(rect.right - 260, rect.top + 120);
      if (PostMessageW(main, kTrayCallbackMessage, kTrayIconId, WM_RBUTTONUP) == FALSE) {
        return 1;
      }
    } else if (step == L"info") {
      RECT window{};
      RECT client{};
      if (main == nullptr || GetWindowRect(main, &window) == FALSE || GetClientRect(main, &client) == FALSE) {
        return 1;
      }
      std::printf("window %ld,%ld %ldx%ld client %ldx%ld\n", window.left, window.top, window.right - window.left,
                  window.bottom - window.top, client.right, client.bottom);
      // The child windows from the top of the z-order down.
      for (HWND child = GetWindow(main, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        wchar_t kind[64] = {};
        (void)GetClassNameW(child, kind, 64);
        std::printf("  child %d %ls%s\n", GetDlgCtrlID(child), kind, IsWindowVisible(child) != FALSE ? " visible" : "");
      }
    } else if (step == L"geometry" || step == L"splash-geometry") {
      if (!PrintGeometry(step == L"geometry" ? main : FindSplash())) {
        return 1;
      }
    } else if (step.rfind(L"page-command:", 0) == 0 || step.rfind(L"dialog-command:", 0) == 0) {
      const bool page = step[0] == L'p';
      int id = 0;
      int command = 0;
      if (!TwoNumbers(step.c_str() + (page ? 13 : 15), id, command)) return 2;
      const HWND target = page ? FindPageHolding(main, id) : FindDialogHolding(id);
      if (target == nullptr || PostMessageW(target, WM_COMMAND, static_cast<WPARAM>(command), 0) == FALSE) {
        std::fprintf(stderr, "driver: cannot send %ls\n", step.c_str());
        return 1;
      }
    } else if (step.rfind(L"dialog-geometry:", 0) == 0) {
      if (!PrintGeometry(FindDialogHolding(static_cast<int>(std::wcstol(step.c_str() + 16, nullptr, 10))))) {
        return 1;
      }
    } else if (step == L"escape") {
      if (!PressEscape()) {
        return 1;
      }
    } else if (step.rfind(L"sleep:", 0) == 0) {
      Sleep(std::wcstoul(step.c_str() + 6, nullptr, 10));
    } else {
      std::fprintf(stderr, "driver: unknown step %ls\n", step.c_str());
      return 2;
    }
  }
  return 0;
}
