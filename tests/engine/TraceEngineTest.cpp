// Whole items: scanning reports rows and counts them up the tree, erasing runs every
// location, and single listed traces are removed as the results list does it.
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "engine/Locations.h"
#include "engine/Registry.h"
#include "engine/TraceEngine.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace lumenor {
namespace {

using testing::MakeFile;
using testing::RecordedTrace;
using testing::TempFolder;
using testing::TestKey;

LocationRecord Key(const std::wstring& path, const std::wstring& selector = L"*.*") {
  LocationRecord record;
  record.rootKey = HKEY_CURRENT_USER;
  record.rootPrefix = RootPrefixOf(HKEY_CURRENT_USER);
  record.path = path;
  record.selector = selector;
  return record;
}

LocationRecord Folder(const std::wstring& path, const std::wstring& selector, int kind) {
  LocationRecord record;
  record.path = path;
  record.selector = selector;
  record.kind = kind;
  return record;
}

class ItemInTree : public ::testing::Test {
 protected:
  CCatalogue catalogue_ = CCatalogue::Build();
  CMyObject& Node(unsigned id) { return *FindNodeById(catalogue_.Root(), id); }
  // A run of the items, each with the locations given.
  std::unique_ptr<ScanRun> RunOf(const std::vector<std::pair<unsigned, std::vector<LocationRecord>>>& items) {
    std::vector<const CMyObject*> nodes;
    for (const auto& [id, locations] : items) nodes.push_back(&Node(id));
    auto run = std::make_unique<ScanRun>(nodes);
    for (size_t index = 0; index < items.size(); ++index) run->Items()[index].locations = items[index].second;
    return run;
  }
};

TEST_F(ItemInTree, ScanReportsRowsInLocationOrderAndCountsItemApplicationAndCategory) {
  TestKey key;
  key.SetText(L"MRU", L"a", L"notepad");
  key.SetText(L"MRU", L"b", L"cmd");
  TempFolder folder;
  MakeFile(folder / L"report.lnk");

  const auto run = RunOf(
      {{kItemRunHistory, {Key(key / L"MRU"), Folder(folder.Path(), L"*.*", kMatchEveryFile), Key(key / L"Missing")}},
       {kItemDocumentHistory, {Folder(folder.Path(), L"report.lnk", kMatchExactName)}}});
  const CMyObject& item = Node(kItemRunHistory);
  const CMyObject& other = Node(kItemDocumentHistory);

  testing::RecordingSink sink;
  for (ScanRun::Item& runItem : run->Items()) ScanItem(*run, runItem, sink, StopToken(), testing::MachineGuard());
  const std::wstring keyText = L"HKEY_CURRENT_USER\\" + (key / L"MRU");
  EXPECT_EQ(sink.traces, (std::vector<RecordedTrace>{{kItemRunHistory, L"a", keyText, true},
                                                     {kItemRunHistory, L"b", keyText, true},
                                                     {kItemRunHistory, L"report.lnk", folder.Path(), false},
                                                     {kItemDocumentHistory, L"report.lnk", folder.Path(), false}}));
  EXPECT_EQ(sink.started, (std::vector<unsigned>{kItemRunHistory, kItemDocumentHistory}));
  EXPECT_EQ(sink.finished, (std::vector<unsigned>{kItemRunHistory, kItemDocumentHistory}));
  EXPECT_EQ(run->FoundCount(item), 3);
  EXPECT_EQ(run->FoundCount(other), 1);
  EXPECT_EQ(run->FoundCount(*item.Parent()), 4) << "Windows Entries counts both items";
  EXPECT_EQ(run->FoundCount(*item.Parent()->Parent()), 4);
  EXPECT_EQ(run->FoundCount(Node(kItemIeTemporaryFiles)), 0) << "an item outside the run";
  EXPECT_EQ(run->TraceCount(), 4);

  // "notepad" and "cmd" as text with their terminators, and the five bytes of "trace".
  EXPECT_EQ(sink.bytes, (std::vector<uint64_t>{16, 8, 5, 5}));
  EXPECT_EQ(run->FoundBytes(item), 29u);
  EXPECT_EQ(run->FoundBytes(other), 5u);
  EXPECT_EQ(run->FoundBytes(*item.Parent()), 34u);
  EXPECT_EQ(run->FoundBytes(*item.Parent()->Parent()), 34u);
  EXPECT_EQ(run->TraceBytes(), 34u);
}

TEST_F(ItemInTree, EachRunKeepsItsOwnCountsAndTheCatalogueNone) {
  TestKey key;
  key.SetText(L"MRU", L"a", L"notepad");
  const auto first = RunOf({{kItemRunHistory, {Key(key / L"MRU")}}});
  testing::RecordingSink sink;
  ScanItem(*first, first->Items()[0], sink, StopToken(), testing::MachineGuard());
  key.SetText(L"MRU", L"b", L"cmd");
  const auto second = RunOf({{kItemRunHistory, {Key(key / L"MRU")}}});
  EXPECT_EQ(second->FoundCount(Node(kItemRunHistory)), 0) << "a new run starts from nothing, without a reset";
  ScanItem(*second, second->Items()[0], sink, StopToken(), testing::MachineGuard());
  EXPECT_EQ(first->FoundCount(Node(kItemRunHistory)), 1);
  EXPECT_EQ(second->FoundCount(Node(kItemRunHistory)), 2);
  EXPECT_EQ(second->FoundCount(*Node(kItemRunHistory).Parent()->Parent()), 2);
}

TEST_F(ItemInTree, EraseRunsEveryLocationAndTalliesDeletions) {
  TestKey key;
  key.SetText(L"MRU", L"a", L"notepad");
  key.SetText(L"MRU", L"b", L"cmd");
  key.SetText(L"Values", L"lastkey", L"x");
  TempFolder folder;
  MakeFile(folder / L"one.tmp");
  MakeFile(folder / L"sub\\two.tmp");

  const auto run =
      RunOf({{kItemLastRegistryKey,
              {Key(key / L"MRU"), Folder(folder.Path(), L"*.*", 1),  // a kind no scan reports, erased all the same
               Key(key / L"Values", L"lastkey")}}});
  testing::RecordingSink sink;
  ScanItem(*run, run->Items()[0], sink, StopToken(), testing::MachineGuard());
  testing::RecordingTally tally;
  EraseItem(run->Items()[0], tally, testing::MachineGuard(), run->CookiesToKeep());
  EXPECT_EQ(tally.reports, (std::vector<int>{2, 1, 1, 1}));
  EXPECT_EQ(tally.erasedBytes, 16u + 8u + 5u + 5u + 4u)
      << "the files' sizes, the named value's data, and what the scan found in the whole key";
  EXPECT_FALSE(key.KeyExists(L"MRU"));
  EXPECT_FALSE(key.ValueExists(L"Values", L"lastkey"));
  EXPECT_FALSE(testing::FileExists(folder.Path()));
}

TEST_F(ItemInTree, VisitedSitesAlsoClearTheBrowserStoreWhereThereIsOne) {
  LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();  // the browser's own history goes
  TempFolder history;
  MakeFile(history / L"index.dat");
  const auto run = RunOf({{kItemVisitedSites, {Folder(history.Path(), L"*.*", kMatchEveryFile)}}});
  testing::RecordingTally tally;
  // The store may be missing here: nothing must break.
  EraseItem(run->Items()[0], tally, testing::MachineGuard(), run->CookiesToKeep());
  EXPECT_EQ(tally.erased, 1);
}

TEST_F(ItemInTree, RecycleBinsAreEmptiedWithoutGoingThroughALinkInThem) {
  LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
  if (GetFileAttributesW(L"E:\\RECYCLER\\bin-link") == INVALID_FILE_ATTRIBUTES) {
    GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
  }
  MakeFile(L"E:\\RECYCLER\\S-1-5-21-1\\Dc1.txt");
  MakeFile(L"C:\\RECYCLER\\S-1-5-21-1\\Dc2.txt");
  const auto run = RunOf({{kItemRecycleBins, FixedItemLocations(kItemRecycleBins)}});
  testing::RecordingSink sink;
  ScanItem(*run, run->Items()[0], sink, StopToken(), testing::MachineGuard());
  for (const RecordedTrace& trace : sink.traces) {
    EXPECT_NE(trace.name, L"canary.txt");
  }
  testing::RecordingTally tally;
  EraseItem(run->Items()[0], tally, testing::MachineGuard(), run->CookiesToKeep());
  EXPECT_FALSE(testing::FileExists(L"E:\\RECYCLER\\S-1-5-21-1\\Dc1.txt"));
  EXPECT_FALSE(testing::FileExists(L"C:\\RECYCLER\\S-1-5-21-1\\Dc2.txt"));
  EXPECT_TRUE(testing::FileExists(L"E:\\link-fixtures\\targets\\bin\\canary.txt"));
}

// A profile of its own for the test, with the folder rules of a machine where it is the
// user's profile: the profile itself is protected, its temporary folder is not.
class GuardedProfile : public ItemInTree {
 protected:
  void SetUp() override {
    profile_ = root_ / L"Users\\Tester\\";
    temp_ = profile_ + L"AppData\\Local\\Temp\\";
    for (const std::wstring& file : {profile_ + L"ntuser.log", profile_ + L"Documents\\letter.doc", temp_ + L"a.tmp",
                                     temp_ + L"sub\\b.tmp", profile_ + L"sub\\ntuser.log"}) {
      MakeFile(file);
    }
    paths_.shellFolders[CSIDL_PROFILE] = profile_.substr(0, profile_.size() - 1);
    paths_.shellFolders[CSIDL_LOCAL_APPDATA] = profile_ + L"AppData\\Local";
  }
  std::vector<std::wstring> Files() const { return testing::EntriesBelow(profile_); }

  TempFolder root_;
  std::wstring profile_;
  std::wstring temp_;
  testing::FakeSystemPaths paths_;
};

TEST_F(GuardedProfile, RefusedFoldersAreReportedAndLeftWholeByScanAndErase) {
  const std::wstring profileText = profile_.substr(0, profile_.size() - 1);
  std::vector<LocationRecord> locations;
  for (const std::wstring& folder : {profile_ + L".\\", profile_ + L"AppData\\..\\", profileText + L"/AppData/Local/",
                                     std::wstring(L"\\\\?\\") + profile_, std::wstring(L"Temp\\"), temp_}) {
    locations.push_back(Folder(folder, L"*.*", kMatchEveryFile));
  }
  const auto run = RunOf({{kItemTemporaryFiles, locations}});
  const std::vector<std::wstring> before = Files();
  const FolderGuard guard(paths_);
  testing::RecordingSink sink;
  ScanItem(*run, run->Items()[0], sink, StopToken(), guard);
  ASSERT_EQ(sink.skipped.size(), 5u);
  EXPECT_EQ(sink.skipped[0].location, profile_) << "reported in canonical form";
  EXPECT_EQ(sink.skipped[0].reason, FolderVerdict::kProtectedFolder);
  EXPECT_EQ(sink.skipped[2].index, 2);
  EXPECT_EQ(sink.skipped[3].reason, FolderVerdict::kProtectedFolder);
  EXPECT_EQ(sink.skipped[4].location, L"Temp\\");
  EXPECT_EQ(sink.skipped[4].reason, FolderVerdict::kRelativePath);
  EXPECT_EQ(sink.traces.size(), 2u) << "only the temporary folder is walked";

  testing::RecordingTally tally;
  EraseItem(run->Items()[0], tally, guard, run->CookiesToKeep());
  EXPECT_EQ(tally.skipped.size(), 5u);
  EXPECT_EQ(tally.erased, 2);
  std::vector<std::wstring> expected;
  for (const std::wstring& entry : before) {
    if (entry.rfind(L"AppData\\Local\\Temp\\", 0) != 0) expected.push_back(entry);
  }
  EXPECT_EQ(Files(), expected) << "nothing outside the temporary folder went";
}

TEST_F(GuardedProfile, TheTemporaryFolderIsEmptiedButKeptWhereProgramsExpectIt) {
  paths_.variables[L"TEMP"] = temp_.substr(0, temp_.size() - 1);
  const std::wstring cache = profile_ + L"AppData\\Local\\Cache\\";
  MakeFile(cache + L"entry.bin");
  const auto run =
      RunOf({{kItemTemporaryFiles, {Folder(temp_, L"*.*", kMatchEveryFile), Folder(cache, L"*.*", kMatchEveryFile)}}});
  testing::RecordingTally tally;
  EraseItem(run->Items()[0], tally, FolderGuard(paths_), run->CookiesToKeep());
  EXPECT_EQ(tally.erased, 3);
  EXPECT_TRUE(testing::EntriesBelow(temp_).empty());
  EXPECT_TRUE(testing::FileExists(temp_)) << "the temporary folder itself stays";
  EXPECT_FALSE(testing::FileExists(cache)) << "an emptied cache folder goes with its contents";
}

TEST_F(GuardedProfile, InAProtectedFolderANamedFileIsTheOnlyThingTouched) {
  const auto run =
      RunOf({{kItemWindowsLogFiles,
              {Folder(profile_, L"ntuser.log", kMatchExactName), Folder(profile_, L"*.log", kMatchExactName)}}});
  const FolderGuard guard(paths_);
  testing::RecordingSink sink;
  ScanItem(*run, run->Items()[0], sink, StopToken(), guard);
  EXPECT_EQ(sink.traces, (std::vector<RecordedTrace>{{kItemWindowsLogFiles, L"ntuser.log", profile_, false}}))
      << "the copy in a sub-folder is not looked for";
  ASSERT_EQ(sink.skipped.size(), 1u) << "a pattern would need the folder walked";
  EXPECT_EQ(sink.skipped[0].index, 1);

  testing::RecordingTally tally;
  EraseItem(run->Items()[0], tally, guard, run->CookiesToKeep());
  EXPECT_EQ(tally.erased, 1);
  EXPECT_FALSE(testing::FileExists(profile_ + L"ntuser.log"));
  EXPECT_TRUE(testing::FileExists(profile_ + L"sub\\ntuser.log"));
  EXPECT_TRUE(testing::FileExists(profile_ + L"Documents\\letter.doc"));
}

TEST_F(ItemInTree, ALocationWithoutAFolderIsPassedOverQuietly) {
  const auto run = RunOf({{kItemOperaTransfers, {Folder(L"", L"download.dat", kMatchExactName)}}});
  testing::RecordingSink sink;
  ScanItem(*run, run->Items()[0], sink, StopToken(), testing::MachineGuard());
  testing::RecordingTally tally;
  EraseItem(run->Items()[0], tally, testing::MachineGuard(), run->CookiesToKeep());
  EXPECT_TRUE(sink.skipped.empty());
  EXPECT_TRUE(tally.skipped.empty());
  EXPECT_TRUE(sink.traces.empty());
}

TEST(RemoveListedTrace, AFileRowGoesOnlyWithItsFile) {
  TempFolder folder;
  MakeFile(folder / L"cookie.txt", "session=1");
  EXPECT_EQ(RemoveListedTrace(L"cookie.txt", folder.Path(), false), std::optional<uint64_t>(9))
      << "the row goes, and its size with it";
  EXPECT_FALSE(testing::FileExists(folder / L"cookie.txt"));
  EXPECT_FALSE(RemoveListedTrace(L"cookie.txt", folder.Path(), false)) << "already gone: the row stays";
  EXPECT_FALSE(RemoveListedTrace(L"cookie.txt", L"relative\\", false));
}

TEST(RemoveListedTrace, ARegistryRowAlwaysGoesAndActsOnTheCurrentUser) {
  TestKey user;
  user.SetText(L"", L"url1", L"http://a.example/");
  EXPECT_EQ(RemoveListedTrace(L"url1", L"HKEY_CURRENT_USER\\" + user.Path(), true), std::optional<uint64_t>(36));
  EXPECT_FALSE(user.ValueExists(L"", L"url1"));

  // A row of the machine branch names the same path under the current user.
  TestKey machine(HKEY_LOCAL_MACHINE);
  machine.SetText(L"", L"DefaultUserName", L"me");
  testing::SetRegistryText(HKEY_CURRENT_USER, machine.Path(), L"DefaultUserName", L"twin");
  EXPECT_TRUE(RemoveListedTrace(L"DefaultUserName", L"HKEY_LOCAL_MACHINE\\" + machine.Path(), true));
  EXPECT_TRUE(machine.ValueExists(L"", L"DefaultUserName"));
  const UniqueKey twin = OpenKey(HKEY_CURRENT_USER, machine.Path(), KEY_READ);
  ASSERT_TRUE(twin);
  EXPECT_NE(RegQueryValueExW(twin.Get(), L"DefaultUserName", nullptr, nullptr, nullptr, nullptr), ERROR_SUCCESS);
  RegDeleteKeyExW(HKEY_CURRENT_USER, machine.Path().c_str(), kRegistryView, 0);

  EXPECT_EQ(RemoveListedTrace(L"gone", L"HKEY_CURRENT_USER\\Software\\LumenorTests\\nowhere", true),
            std::optional<uint64_t>(0))
      << "the row goes; nothing went with it";
}

}  // namespace
}  // namespace lumenor
