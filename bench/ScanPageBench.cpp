// lumenor-scan-page-bench.exe: how fast found traces reach the scan page's list, and how
// long the page's thread is busy at a time, and the page's scan against lumenor-cli scan
// of the same traces, in the same run. Prints figures; runs in a prefix of its own
// (scripts/bench.sh).
//   targets: at least 100,000 rows a second into the list, no stall of the window's
//   thread over 100 ms; the page's scan within 1.2 times the command-line tool's.
#include "base/ModulePath.h"
#include "bench/BenchSupport.h"
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "controls/Dialog.h"
#include "controls/ListFeed.h"
#include "controls/MyListCtrl.h"
#include "controls/UiTasks.h"
#include "res/resource.h"
#include "scan/DlgScan.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

namespace {

using lumenor::bench::Clock;
using lumenor::bench::PumpUntil;
using lumenor::bench::Seconds;

constexpr int kRows = 100000;
constexpr int kFolders = 200;
const std::wstring kTemp = L"C:\\lumenor-page-bench\\Temp";

class ListHost : public lumenor::controls::CDialog {
 public:
  ListHost() : CDialog(IDD_HELP) {}
  lumenor::controls::UiTaskQueue tasks;

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    if (message == lumenor::controls::kRunUiTasksMessage) {
      tasks.RunPending();
      result = 0;
      return true;
    }
    return CDialog::OnMessage(message, wParam, lParam, result);
  }
};

// A worker hands rows to the list as the scan page's worker does: one task per batch of
// rows waiting, however many there are.
void ListFill(HWND owner) {
  ListHost host;
  if (!host.Create(owner)) return;
  host.Show(SW_SHOW);
  host.tasks.Bind(host.Handle());
  lumenor::controls::CMyListCtrl list;
  (void)list.CreateList(host.Handle(), 500, RECT{0, 0, 600, 400});
  (void)list.AddColumn(L"Name", 200);
  (void)list.AddColumn(L"Value", 100);
  (void)list.AddColumn(L"Item", 240);
  lumenor::controls::ListFeed feed(host.tasks, list);
  const auto start = Clock::now();
  std::thread worker([&] {
    for (int row = 0; row < kRows; ++row) {
      feed.Add({{L"Temporary file directory", L"file" + std::to_wstring(row) + L".tmp",
                 L"C:\\Users\\me\\AppData\\Local\\Temp\\folder" + std::to_wstring(row / 500) + L"\\"},
                0});
    }
    feed.HandOver();
  });
  const double stall = PumpUntil([&] { return list.RowCount() == kRows; });
  const double seconds = Seconds(Clock::now() - start);
  worker.join();
  std::printf(
      "list fill                 %d rows in %.3f s: %.0f rows/s (target >= 100000)  longest stall %.1f ms "
      "(target <= 100)\n",
      kRows, seconds, kRows / seconds, stall * 1000);
}

void SeedTemp() {
  CreateDirectoryW(L"C:\\lumenor-page-bench", nullptr);
  CreateDirectoryW(kTemp.c_str(), nullptr);
  for (int folder = 0; folder < kFolders; ++folder) {
    const std::wstring path = kTemp + L"\\folder" + std::to_wstring(folder) + L"\\";
    CreateDirectoryW(path.c_str(), nullptr);
    for (int file = 0; file < kRows / kFolders; ++file) {
      HANDLE handle = CreateFileW((path + L"file" + std::to_wstring(file) + L".tmp").c_str(), GENERIC_WRITE, 0, nullptr,
                                  CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
      if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
    }
  }
}

double CommandLineScan() {
  const std::wstring program = lumenor::ModuleFolder() + L"lumenor-cli.exe";
  std::wstring command = L"\"" + program + L"\" scan --json --items 106";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  HANDLE nul = CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_WRITE, &inherit, OPEN_EXISTING, 0, nullptr);
  startup.hStdOutput = nul;
  startup.hStdError = nul;
  PROCESS_INFORMATION process{};
  const auto start = Clock::now();
  if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                      &process)) {
    CloseHandle(nul);
    return -1;
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  const double seconds = Seconds(Clock::now() - start);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  CloseHandle(nul);
  return seconds;
}

double PageScan(HWND owner, int& rows, double& stall) {
  lumenor::CDlgScan page;
  page.SetSettingsFile(lumenor::CIniFileRW::AtPath(L"C:\\lumenor-page-bench\\setting.ini"));
  if (!page.Create(owner)) return -1;
  page.Show(SW_SHOW);
  page.Selection().UntickAll();
  page.Selection().TickById(lumenor::kItemTemporaryFiles);
  const auto start = Clock::now();
  SendMessageW(page.Handle(), WM_COMMAND, IDC_SCAN_START, 0);
  stall = PumpUntil([&] { return !page.Busy(); });
  const double seconds = Seconds(Clock::now() - start);
  rows = page.Results().RowCount();
  return seconds;
}

}  // namespace

int wmain() {
  HWND owner =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 800, 600, nullptr, nullptr, nullptr, nullptr);
  ListFill(owner);
  std::fflush(stdout);

  std::printf("seeding %d temporary files in %d folders...\n", kRows, kFolders);
  std::fflush(stdout);
  SeedTemp();
  SetEnvironmentVariableW(L"TEMP", kTemp.c_str());
  lumenor::BuildCatalogue();
  double best = 1e9, bestCli = 1e9, stall = 0;
  int rows = 0;
  for (int round = 0; round < 3; ++round) {
    double roundStall = 0;
    best = std::min(best, PageScan(owner, rows, roundStall));
    stall = std::max(stall, roundStall);
    bestCli = std::min(bestCli, CommandLineScan());
  }
  std::printf(
      "page scan                 page %8.3f s  lumenor-cli %8.3f s  ratio %5.2f  (target <= 1.2)  rows %d, "
      "%.0f rows/s, longest stall %.1f ms\n",
      best, bestCli, best / bestCli, rows, rows / best, stall * 1000);
  lumenor::FreeCatalogue();
  DestroyWindow(owner);
  return 0;
}
