// lumenor-bench.exe: how long start-up takes to a visible main window, without the
// splash's one-second pause.
//   in-process: the steps of start-up timed one by one in this process (catalogue,
//               splash, main window made, shown and painted);
//   whole program: lumenor.exe started and watched until its main window is visible,
//               less the one-second pause (includes the system's process start-up).
#include "app/DlgWelcome.h"
#include "app/PcDlg.h"
#include "base/ModulePath.h"
#include "catalogue/Catalogue.h"
#include "settings/Settings.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cwchar>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double MsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

void Pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message != WM_QUIT) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
}

struct WindowSearch {
  DWORD processId;
  HWND found;
};

BOOL CALLBACK FindVisibleMainWindow(HWND window, LPARAM data) {
  auto* search = reinterpret_cast<WindowSearch*>(data);
  DWORD owner = 0;
  (void)GetWindowThreadProcessId(window, &owner);
  RECT rect{};
  if (owner == search->processId && IsWindowVisible(window) != FALSE && GetWindowRect(window, &rect) != FALSE &&
      rect.right - rect.left >= 600) {
    search->found = window;
    return FALSE;
  }
  return TRUE;
}

BOOL CALLBACK FindVisibleTree(HWND window, LPARAM data) {
  wchar_t name[32] = {};
  if (IsWindowVisible(window) != FALSE && GetClassNameW(window, name, 32) > 0 && wcscmp(name, L"SysTreeView32") == 0) {
    *reinterpret_cast<HWND*>(data) = window;
    return FALSE;
  }
  return TRUE;
}

// The privacy page is ready when its item tree shows.
bool FirstPageReady(HWND mainWindow) {
  HWND tree = nullptr;
  (void)EnumChildWindows(mainWindow, FindVisibleTree, reinterpret_cast<LPARAM>(&tree));
  return tree != nullptr;
}

// The main window is the wide one (the splash is narrower).
HWND VisibleMainWindowOf(DWORD processId) {
  WindowSearch search{processId, nullptr};
  (void)EnumWindows(FindVisibleMainWindow, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

void InProcess() {
  // As at every start but the first: the settings file is there.
  (void)lumenor::WriteDefaultSettings(lumenor::CIniFileRW(lumenor::kSettingsFileName));
  const auto start = Clock::now();
  lumenor::CDlgWelcome splash;
  if (splash.Create(nullptr)) {
    splash.Show(SW_SHOW);
    (void)UpdateWindow(splash.Handle());
  }
  const double splashMs = MsSince(start);
  auto step = Clock::now();
  lumenor::BuildCatalogue();
  const double catalogueMs = MsSince(step);
  (void)splash.End(0);

  step = Clock::now();
  lumenor::CPcDlg window([](const std::wstring&, int) {});
  const bool made = window.Create(nullptr);
  const double createMs = MsSince(step);
  step = Clock::now();
  window.Show(SW_SHOW);
  (void)UpdateWindow(window.Handle());
  const double showMs = MsSince(step);
  const double visibleMs = MsSince(start);
  step = Clock::now();
  Pump();  // the rest of start-up: the first page, the notification icon
  const double pageMs = MsSince(step);
  std::printf(
      "in-process: splash %.1f ms, catalogue %.1f ms, main window made %.1f ms, shown and painted %.1f ms: "
      "visible main window after %.1f ms of our own work (target 150); first page made %.1f ms later%s\n",
      splashMs, catalogueMs, createMs, showMs, visibleMs, pageMs, made ? "" : " (main window failed)");
  lumenor::FreeCatalogue();
}

void WholeProgram(int runs) {
  const std::wstring program = lumenor::ModuleFolder() + L"lumenor.exe";
  std::vector<double> figures;
  std::vector<double> ready;
  for (int run = 0; run < runs; ++run) {
    std::wstring commandLine = L"\"" + program + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    const auto start = Clock::now();
    if (CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                       &process) == FALSE) {
      std::printf("whole program: cannot start %ls\n", program.c_str());
      return;
    }
    HWND window = nullptr;
    while ((window = VisibleMainWindowOf(process.dwProcessId)) == nullptr && MsSince(start) < 30000) {
      Sleep(2);
    }
    figures.push_back(MsSince(start) - 1000.0);
    while (window != nullptr && !FirstPageReady(window) && MsSince(start) < 30000) {
      Sleep(2);
    }
    ready.push_back(MsSince(start) - 1000.0);
    if (window != nullptr) {
      (void)PostMessageW(window, WM_COMMAND, 20007, 0);  // "Exit"
    }
    (void)WaitForSingleObject(process.hProcess, 10000);
    (void)CloseHandle(process.hThread);
    (void)CloseHandle(process.hProcess);
  }
  std::sort(figures.begin(), figures.end());
  std::sort(ready.begin(), ready.end());
  std::printf(
      "whole program, start to visible main window less the 1000 ms pause, %d runs: median %.0f ms, "
      "best %.0f ms, worst %.0f ms\n",
      runs, figures[figures.size() / 2], figures.front(), figures.back());
  std::printf(
      "whole program, start to the privacy page's tree shown, less the pause: median %.0f ms, best %.0f ms, "
      "worst %.0f ms\n",
      ready[ready.size() / 2], ready.front(), ready.back());
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  const int runs = argc > 1 ? std::max(1, _wtoi(argv[1])) : 5;
  InProcess();
  WholeProgram(runs);
  return 0;
}
