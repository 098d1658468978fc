// Scan, erase and one-click erase runs against the real engine, on traces seeded in the
// test machine: the rows, the counts up the tree, the recent list, what an erase leaves,
// a stop that cuts the run short, and one-click erasing items that found nothing.
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "engine/Registry.h"
#include "scan/PrivacyRun.h"
#include "settings/Settings.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

namespace lumenor {
namespace {

constexpr wchar_t kRunMruKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\RunMRU";
constexpr wchar_t kPaintKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List";
constexpr wchar_t kWordPadKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Wordpad\\Recent File List";

class RecordingReports final : public RunReports {
 public:
  void StageReached(RunStage stage) override { stages.push_back(stage); }
  void ItemStarted(const CMyObject& item) override {
    started.push_back(item.Id());
    if (onItemStarted) onItemStarted(item);
  }
  void TraceFound(const FoundTrace& trace) override { traces.push_back({trace.item->Id(), trace.name}); }
  void LocationSkipped(const SkippedLocation& location) override { skipped.push_back(location.item->Id()); }
  void Erased(int count, uint64_t bytes) override {
    erased += count;
    erasedBytes += bytes;
    if (onErased) onErased();
  }
  void EraseFailed(const std::wstring& what) override { failures.push_back(what); }

  std::vector<RunStage> stages;
  std::vector<unsigned> started;
  std::vector<std::pair<unsigned, std::wstring>> traces;
  std::vector<unsigned> skipped;
  std::vector<std::wstring> failures;
  int erased = 0;
  uint64_t erasedBytes = 0;
  std::function<void(const CMyObject&)> onItemStarted;
  std::function<void()> onErased;
};

// Temporary files, the Run list and Paint's recent files seeded where the items look.
class SeededItems : public ::testing::Test {
 protected:
  void SetUp() override {
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
    previousTemp_ = MachinePaths().EnvironmentVariable(L"TEMP").value_or(L"");
    std::wstring temp = temp_.Path();
    temp.pop_back();
    ASSERT_TRUE(SetEnvironmentVariableW(L"TEMP", temp.c_str()));
    for (const wchar_t* key : {kRunMruKey, kPaintKey, kWordPadKey}) RegDeleteTreeW(HKEY_CURRENT_USER, key);
    testing::MakeFile(temp_ / L"a.tmp");
    testing::MakeFile(temp_ / L"sub\\b.tmp");
    testing::SetRegistryText(HKEY_CURRENT_USER, kRunMruKey, L"a", L"notepad\\1");
    testing::SetRegistryText(HKEY_CURRENT_USER, kPaintKey, L"File1", L"C:\\picture.bmp");
    testing::SetRegistryText(HKEY_CURRENT_USER, kPaintKey, L"File2", L"C:\\other.bmp");
  }
  void TearDown() override {
    if (!previousTemp_.empty()) SetEnvironmentVariableW(L"TEMP", previousTemp_.c_str());
    for (const wchar_t* key : {kRunMruKey, kPaintKey, kWordPadKey}) RegDeleteTreeW(HKEY_CURRENT_USER, key);
  }
  bool KeyExists(const wchar_t* path) const { return static_cast<bool>(OpenKey(HKEY_CURRENT_USER, path, KEY_READ)); }

  CCatalogue catalogue_ = CCatalogue::Build();
  CMyObject& Node(unsigned id) { return *FindNodeById(catalogue_.Root(), id); }
  testing::TempFolder temp_;
  testing::TempFolder settingsFolder_;
  CIniFileRW settings_ = CIniFileRW::AtPath(settingsFolder_ / L"setting.ini");
  std::wstring previousTemp_;
};

TEST_F(SeededItems, AScanListsEveryTraceCountsItUpTheTreeAndSavesTheRecentList) {
  RecordingReports reports;
  const auto run = MakeScanRun(catalogue_.Root(), {kItemPaintRecentFiles, kItemTemporaryFiles, kItemRunHistory, 99});
  ScanItems(*run, &settings_, reports, StopToken(), testing::MachineGuard());
  ASSERT_EQ(run->Items().size(), 3u);
  EXPECT_EQ(reports.started, (std::vector<unsigned>{kItemTemporaryFiles, kItemRunHistory, kItemPaintRecentFiles}))
      << "catalogue order";
  EXPECT_EQ(reports.stages, (std::vector<RunStage>{RunStage::kScanStarted, RunStage::kScanFinished}));
  EXPECT_EQ(reports.traces.size(), 5u);
  EXPECT_EQ(run->FoundCount(Node(kItemTemporaryFiles)), 2);
  EXPECT_EQ(run->FoundCount(Node(kItemRunHistory)), 1);
  EXPECT_EQ(run->FoundCount(Node(kItemPaintRecentFiles)), 2);
  EXPECT_EQ(run->FoundCount(*Node(kItemRunHistory).Parent()), 5) << "all three are Windows entries";
  EXPECT_EQ(run->FoundCount(*Node(kItemRunHistory).Parent()->Parent()), 5);
  // Two files of five bytes; the values' texts with their terminators, two bytes a character.
  EXPECT_EQ(run->FoundBytes(Node(kItemTemporaryFiles)), 10u);
  EXPECT_EQ(run->FoundBytes(Node(kItemRunHistory)), 20u);
  EXPECT_EQ(run->FoundBytes(Node(kItemPaintRecentFiles)), 30u + 26u);
  EXPECT_EQ(run->FoundBytes(*Node(kItemRunHistory).Parent()), 86u);
  EXPECT_EQ(run->TraceBytes(), 86u);
  EXPECT_EQ(ReadSelection(settings_, Selection::kRecent),
            (std::vector<unsigned>{kItemTemporaryFiles, kItemRunHistory, kItemPaintRecentFiles}));

  RecordingReports erase;
  EraseFoundItems(*run, erase, testing::MachineGuard());
  EXPECT_EQ(erase.erased, 5);
  EXPECT_EQ(erase.erasedBytes, 86u) << "what the scan found is what went";
  EXPECT_TRUE(erase.failures.empty());
  EXPECT_FALSE(KeyExists(kRunMruKey));
  EXPECT_FALSE(KeyExists(kPaintKey));
  EXPECT_FALSE(testing::FileExists(temp_ / L"a.tmp"));
}

TEST_F(SeededItems, AStopEndsTheRunAfterTheItemBeingScannedAndNothingLaterIsErased) {
  StopSignal stop;
  RecordingReports reports;
  reports.onItemStarted = [&](const CMyObject& item) {
    if (item.Id() == kItemRunHistory) stop.Request();
  };
  const auto run = MakeScanRun(catalogue_.Root(), {kItemTemporaryFiles, kItemRunHistory, kItemPaintRecentFiles});
  ScanItems(*run, &settings_, reports, StopToken(&stop), testing::MachineGuard());
  ASSERT_EQ(run->Items().size(), 2u);
  EXPECT_EQ(run->Items().back().node->Id(), kItemRunHistory);
  EXPECT_EQ(ReadSelection(settings_, Selection::kRecent).size(), 3u) << "the whole selection was saved at the start";
  EraseFoundItems(*run, reports, testing::MachineGuard());
  EXPECT_TRUE(KeyExists(kPaintKey)) << "cut off by the stop";
  EXPECT_FALSE(testing::FileExists(temp_ / L"a.tmp"));
}

TEST_F(SeededItems, AStopOfTheCommandLineEndsTheEraseBeforeItsNextItem) {
  RecordingReports reports;
  const auto run = MakeScanRun(catalogue_.Root(), {kItemTemporaryFiles, kItemRunHistory, kItemPaintRecentFiles});
  ScanItems(*run, nullptr, reports, StopToken(), testing::MachineGuard());
  ASSERT_EQ(run->Items().size(), 3u);
  StopSignal stop;
  reports.onErased = [&] { stop.Request(); };  // Ctrl+C while the temporary files go
  EraseFoundItems(*run, reports, testing::MachineGuard(), StopToken(&stop));
  EXPECT_FALSE(testing::FileExists(temp_ / L"a.tmp"));
  EXPECT_FALSE(testing::FileExists(temp_ / L"sub\\b.tmp")) << "the item at hand is erased to its end";
  EXPECT_TRUE(KeyExists(kRunMruKey)) << "the items after the stop stay";
  EXPECT_TRUE(KeyExists(kPaintKey));
}

TEST_F(SeededItems, OneClickStoppedFromTheCommandLineErasesNothingMoreButReportsEveryStage) {
  StopSignal stop;
  stop.Request();
  RecordingReports reports;
  const auto run = MakeScanRun(catalogue_.Root(), {kItemRunHistory, kItemPaintRecentFiles});
  RunOneClickErase(*run, &settings_, reports, StopToken(&stop), testing::MachineGuard(), StopToken(&stop));
  EXPECT_EQ(reports.stages, (std::vector<RunStage>{RunStage::kScanStarted, RunStage::kScanFinished,
                                                   RunStage::kEraseStarted, RunStage::kEraseFinished}));
  EXPECT_EQ(reports.erased, 0);
  EXPECT_TRUE(KeyExists(kRunMruKey));
  EXPECT_TRUE(KeyExists(kPaintKey));
}

TEST_F(SeededItems, OneClickErasesEveryTickedItemEvenWhereTheScanFoundNothing) {
  // WordPad's list holds only an empty sub-key: a scan finds nothing there.
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, (std::wstring(kWordPadKey) + L"\\Empty").c_str(), 0, nullptr, 0,
                            KEY_ALL_ACCESS | kRegistryView, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(key);
  ASSERT_TRUE(WriteSelection(settings_, Selection::kOneClick,
                             std::vector<unsigned>{kItemWordPadRecentFiles, kItemRunHistory, kItemAcdseeFavorites}));
  ItemSelection selection = ItemSelection::FromCatalogue(catalogue_.Root(), true);
  selection.TickById(kAppWindowsEntries);
  TickOneClickList(selection, settings_);
  EXPECT_EQ(selection.TickedItems(),
            (std::vector<unsigned>{kItemRunHistory, kItemWordPadRecentFiles, kItemAcdseeFavorites}));

  RecordingReports reports;
  const auto run = MakeScanRun(catalogue_.Root(), selection.TickedItems());
  RunOneClickErase(*run, &settings_, reports, StopToken(), testing::MachineGuard());
  EXPECT_EQ(reports.stages, (std::vector<RunStage>{RunStage::kScanStarted, RunStage::kScanFinished,
                                                   RunStage::kEraseStarted, RunStage::kEraseFinished}));
  EXPECT_FALSE(KeyExists(kWordPadKey)) << "found nothing, erased all the same";
  EXPECT_FALSE(KeyExists(kRunMruKey));
  EXPECT_TRUE(KeyExists(kPaintKey)) << "not in the one-click list";
  EXPECT_EQ(reports.erased, 2);
  EXPECT_EQ(MakeScanRun(catalogue_.Root(), {kItemRunHistory})->FoundCount(Node(kItemRunHistory)), 0)
      << "the next run starts from nothing";
}

TEST_F(SeededItems, TheSameTreeScannedTwiceGivesTheSameCountsWithoutAnyReset) {
  const std::vector<unsigned> ids = {kItemTemporaryFiles, kItemRunHistory, kItemPaintRecentFiles};
  RecordingReports reports;
  const auto first = MakeScanRun(catalogue_.Root(), ids);
  ScanItems(*first, nullptr, reports, StopToken(), testing::MachineGuard());
  const auto second = MakeScanRun(catalogue_.Root(), ids);
  ScanItems(*second, nullptr, reports, StopToken(), testing::MachineGuard());
  ForEachNode(catalogue_.Root(), [&](const CMyObject& node) {
    EXPECT_EQ(second->FoundCount(node), first->FoundCount(node)) << node.Id();
    EXPECT_EQ(second->FoundBytes(node), first->FoundBytes(node)) << node.Id();
  });
  EXPECT_EQ(second->TraceCount(), 5);
}

TEST_F(SeededItems, OneClickWithoutAListTicksNothingAndStillReportsEveryStage) {
  ItemSelection selection = ItemSelection::FromCatalogue(catalogue_.Root(), true);
  TickOneClickList(selection, settings_);  // the file does not exist
  EXPECT_TRUE(selection.TickedItems().empty());
  RecordingReports reports;
  const auto run = MakeScanRun(catalogue_.Root(), selection.TickedItems());
  RunOneClickErase(*run, &settings_, reports, StopToken(), testing::MachineGuard());
  EXPECT_EQ(reports.stages.size(), 4u);
  EXPECT_EQ(reports.erased, 0);
  EXPECT_TRUE(KeyExists(kRunMruKey));
  EXPECT_EQ(settings_.ReadInt(L"RecentItem", L"RecentItems"), 0);
}

}  // namespace
}  // namespace lumenor
