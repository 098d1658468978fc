// lumenor-community-page-bench.exe: the scan page with every entry of the community's
// winapp2.ini shown, as on a machine where all of them apply. Measures how long the
// window's thread is busy at once while the page is made, the "Community Rules" category
// and its largest application are expanded and collapsed, every box is ticked and
// unticked, all community items are scanned, and the page is made again with that scan's
// selection restored. Prints figures; runs in a prefix of its own (scripts/bench.sh).
//   target: no stall of the window's thread over 100 ms.
#include "bench/BenchSupport.h"
#include "catalogue/Catalogue.h"
#include "engine/RuleLoading.h"
#include "engine/RulePlan.h"
#include "res/resource.h"
#include "rules/Winapp2Reader.h"
#include "scan/DlgScan.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>

namespace {

using lumenor::bench::Clock;
using lumenor::bench::PumpUntil;
using lumenor::bench::Seconds;

const std::wstring kBenchFolder = L"C:\\lumenor-community-bench\\";

// What a step cost the window's thread: all of it, and the longest time it was busy at
// once (the step itself, or one of the messages it left to run, painting included).
struct StepCost {
  double seconds = 0;
  double longest = 0;
};

// Runs what was left waiting after a step, noting the longest dispatch.
double RunWaitingMessages() {
  Clock::duration longest{};
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    const auto start = Clock::now();
    TranslateMessage(&message);
    DispatchMessageW(&message);
    longest = std::max(longest, Clock::now() - start);
  }
  return Seconds(longest);
}

StepCost Step(const std::function<void()>& action) {
  const auto start = Clock::now();
  action();
  const double acting = Seconds(Clock::now() - start);
  const double after = RunWaitingMessages();
  return {Seconds(Clock::now() - start), std::max(acting, after)};
}

// Prints each step's figures and keeps the longest stall of them all.
class StallReport {
 public:
  void Add(const char* what, const StepCost& cost, const std::string& detail = {}) {
    longest_ = std::max(longest_, cost.longest);
    std::printf("%-34s %9.1f ms  longest stall %7.1f ms (target <= 100)%s%s\n", what, cost.seconds * 1000,
                cost.longest * 1000, detail.empty() ? "" : "  ", detail.c_str());
    std::fflush(stdout);
  }
  double Longest() const { return longest_; }

 private:
  double longest_ = 0;
};

bool WriteBenchFile(const std::wstring& path, std::string_view bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool whole = WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
                     written == bytes.size();
  return CloseHandle(file) != FALSE && whole;
}

const lumenor::CMyObject* CommunityCategory() {
  for (const lumenor::CMyObject* category = lumenor::CatalogueRoot(); category != nullptr;
       category = category->ForwardLink()) {
    if (category->Image() == lumenor::kPictureCommunityRules) return category;
  }
  return nullptr;
}

int ChildCount(const lumenor::CMyObject& node) {
  int count = 0;
  for (const lumenor::CMyObject* child = node.FirstChild(); child != nullptr; child = child->NextSibling()) ++count;
  return count;
}

const lumenor::CMyObject* LargestApplication(const lumenor::CMyObject& category) {
  const lumenor::CMyObject* largest = nullptr;
  for (const lumenor::CMyObject* application = category.FirstChild(); application != nullptr;
       application = application->NextSibling()) {
    if (largest == nullptr || ChildCount(*application) > ChildCount(*largest)) largest = application;
  }
  return largest;
}

std::unique_ptr<lumenor::CDlgScan> MakePage(HWND owner) {
  auto page = std::make_unique<lumenor::CDlgScan>();
  page->SetSettingsFile(lumenor::CIniFileRW::AtPath(kBenchFolder + L"setting.ini"));
  page->SetSelectAllConfirmation([] { return true; });
  page->SetMessageBox([](HWND, const std::wstring&, const std::wstring&, UINT) { return IDOK; });
  if (!page->Create(owner)) return nullptr;
  page->Show(SW_SHOW);
  return page;
}

void Expand(lumenor::CDlgScan& page, const lumenor::CMyObject& node, UINT how) {
  const HTREEITEM item = page.Tree().ItemOfRow(page.Selection().RowOf(node.Id()));
  // What a click on the row's button does; the answer tells only whether anything changed.
  (void)SendMessageW(page.Tree().Handle(), TVM_EXPAND, how, reinterpret_cast<LPARAM>(item));
}

// The space bar on the row of `node`, made the current row first: as a press on its box.
void PressSpaceOn(lumenor::CDlgScan& page, const lumenor::CMyObject& node) {
  const HWND tree = page.Tree().Handle();
  const HTREEITEM item = page.Tree().ItemOfRow(page.Selection().RowOf(node.Id()));
  (void)SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));  // the row exists
  (void)SendMessageW(tree, WM_KEYDOWN, VK_SPACE, 0);                                     // keys answer nothing
  (void)SendMessageW(tree, WM_KEYUP, VK_SPACE, 0);
}

void Press(lumenor::CDlgScan& page, int command) {
  (void)SendMessageW(page.Handle(), WM_COMMAND, static_cast<WPARAM>(command), 0);  // a command answers nothing
}

}  // namespace

int wmain() {
  const std::string_view file = lumenor::bench::EmbeddedWinapp2();
  if (file.empty()) {
    std::printf("no winapp2.ini was built in (it is looked for at ../shared/winapp2/Winapp2.ini)\n");
    return 0;
  }
  (void)CreateDirectoryW(kBenchFolder.c_str(), nullptr);       // there already from an earlier run
  (void)DeleteFileW((kBenchFolder + L"setting.ini").c_str());  // each run starts without a recent selection
  if (!WriteBenchFile(kBenchFolder + lumenor::rules::kWinapp2FileName, file)) {
    std::printf("cannot write %ls\n", (kBenchFolder + lumenor::rules::kWinapp2FileName).c_str());
    return 1;
  }

  // The rules as the program loads them, the community file beside the program; every
  // entry shown, as where all of them apply.
  const auto loadStart = Clock::now();
  lumenor::LoadedRules loaded = lumenor::LoadRules(kBenchFolder);
  const lumenor::RememberedPaths paths(lumenor::MachinePaths());
  int detectedHere = 0;
  for (const auto& entry : loaded.book->Entries()) {
    if (entry.origin == lumenor::rules::RuleOrigin::kCommunity && lumenor::IsRuleDetected(entry, paths)) ++detectedHere;
  }
  lumenor::InstallCatalogue(lumenor::CCatalogue::Build(std::move(loaded.book), [](const auto&) { return true; }));
  const double loadSeconds = Seconds(Clock::now() - loadStart);
  const lumenor::CMyObject* community = CommunityCategory();
  if (community == nullptr) {
    std::printf("the catalogue shows no community rules\n");
    return 1;
  }
  const lumenor::CMyObject* largest = LargestApplication(*community);
  std::printf(
      "community rules: %d entries, all shown (%d apply in this prefix), %d applications, the largest "
      "\"%ls\" with %d items; rules read and catalogue made in %.3f s\n",
      lumenor::ProcessCatalogue().CommunityShown(), detectedHere, ChildCount(*community), largest->Name().c_str(),
      ChildCount(*largest), loadSeconds);

  StallReport report;
  HWND owner =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 800, 600, nullptr, nullptr, nullptr, nullptr);
  std::unique_ptr<lumenor::CDlgScan> page;
  const StepCost made = Step([&] { page = MakePage(owner); });
  if (!page) {
    std::printf("the scan page could not be made\n");
    return 1;
  }
  report.Add("page made", made, std::to_string(page->Selection().Rows().size()) + " rows");

  report.Add("Community Rules expanded", Step([&] { Expand(*page, *community, TVE_EXPAND); }));
  report.Add("largest application expanded", Step([&] { Expand(*page, *largest, TVE_EXPAND); }));
  report.Add("Select All", Step([&] { Press(*page, IDC_SCAN_SELECT_ALL); }));
  report.Add("Select None", Step([&] { Press(*page, IDC_SCAN_SELECT_NONE); }));
  report.Add("Community Rules ticked", Step([&] { PressSpaceOn(*page, *community); }));

  // The scan: the press, then every message until the page is idle again.
  const auto scanStart = Clock::now();
  double scanStall = Step([&] { Press(*page, IDC_SCAN_START); }).longest;
  scanStall = std::max(scanStall, PumpUntil([&] { return !page->Busy(); }));
  scanStall = std::max(scanStall, RunWaitingMessages());
  const size_t scanned = page->Run() != nullptr ? page->Run()->Items().size() : 0;
  report.Add("scan of every community item", StepCost{Seconds(Clock::now() - scanStart), scanStall},
             std::to_string(scanned) + " items, " + std::to_string(page->ItemsDone()) + " traces");

  report.Add("largest application collapsed", Step([&] { Expand(*page, *largest, TVE_COLLAPSE); }));
  report.Add("Community Rules collapsed", Step([&] { Expand(*page, *community, TVE_COLLAPSE); }));

  report.Add("page closed", Step([&] { page.reset(); }));
  const StepCost madeAgain = Step([&] { page = MakePage(owner); });
  report.Add("page made again, scan's selection", madeAgain,
             page ? std::to_string(page->Selection().TickedItems().size()) + " items ticked" : "not made");
  page.reset();

  std::printf("community page longest stall of the window's thread %.1f ms (target <= 100)\n", report.Longest() * 1000);
  lumenor::FreeCatalogue();
  DestroyWindow(owner);
  return 0;
}
