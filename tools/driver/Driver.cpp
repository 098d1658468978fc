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
//   junk-tab:N      click tab N of the junk page's strip (0 set-up, 1 results)
//   junk-scan:PATH  on the junk set-up page, choose the folder PATH and press Start
#include "app/ShellMessages.h"
#include "res/resource.h"

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

struct ChildSearch {
  int id;
  HWND found;
};

BOOL CALLBACK FindChildProc(HWND window, LPARAM parameter) {
  auto* search = reinterpret_cast<ChildSearch*>(parameter);
  if (GetDlgCtrlID(window) == search->id) {
    search->found = window;
    return FALSE;
  }
  return TRUE;
}

// A control anywhere below the main window, by its id.
HWND FindControl(HWND main, int id) {
  ChildSearch search{id, nullptr};
  if (main != nullptr) {
    (void)EnumChildWindows(main, FindChildProc, reinterpret_cast<LPARAM>(&search));
  }
  return search.found;
}

// The junk page's strip has two tabs of one width.
bool ClickJunkTab(HWND main, int tab) {
  HWND strip = FindControl(main, IDC_JUNK_TABS);
  RECT rect{};
  if (strip == nullptr || GetClientRect(strip, &rect) == FALSE) {
    return false;
  }
  const LPARAM point = MAKELPARAM(rect.right / 4 + tab * rect.right / 2, rect.bottom / 2);
  return PostMessageW(strip, WM_LBUTTONDOWN, MK_LBUTTON, point) != FALSE &&
         PostMessageW(strip, WM_LBUTTONUP, 0, point) != FALSE;
}

bool StartJunkScan(HWND main, const std::wstring& folder) {
  HWND start = FindControl(main, IDC_JUNK_START);
  HWND page = start != nullptr ? GetParent(start) : nullptr;
  if (page == nullptr) {
    return false;
  }
  (void)SendDlgItemMessageW(page, IDC_JUNK_ALL_DISKS, BM_SETCHECK, BST_UNCHECKED, 0);
  (void)SendDlgItemMessageW(page, IDC_JUNK_CHOOSE_FOLDER, BM_SETCHECK, BST_CHECKED, 0);
  (void)SendMessageW(page, WM_COMMAND, MAKEWPARAM(IDC_JUNK_CHOOSE_FOLDER, BN_CLICKED), 0);
  return SetDlgItemTextW(page, IDC_JUNK_FOLDER, folder.c_str()) != FALSE &&
         PostMessageW(page, WM_COMMAND, MAKEWPARAM(IDC_JUNK_START, BN_CLICKED), reinterpret_cast<LPARAM>(start)) !=
             FALSE;
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
    } else if (step == L"escape") {
      if (!PressEscape()) {
        return 1;
      }
    } else if (step.rfind(L"junk-tab:", 0) == 0) {
      if (!ClickJunkTab(main, static_cast<int>(std::wcstoul(step.c_str() + 9, nullptr, 10)))) {
        std::fprintf(stderr, "driver: no junk tab strip\n");
        return 1;
      }
    } else if (step.rfind(L"junk-scan:", 0) == 0) {
      if (!StartJunkScan(main, step.substr(10))) {
        std::fprintf(stderr, "driver: no junk set-up page\n");
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
