// The junk walk over real folders on the scratch fixed disk: which files it lists and how,
// where it never goes (links, folders named like junk, drives that are not fixed disks),
// how deep it goes, and the removal of what it found.
#include "engine/FilePath.h"
#include "junk/JunkCatalogue.h"
#include "junk/JunkRemoval.h"
#include "junk/JunkWalk.h"
#include "tests/junk/JunkFixtures.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lumenor {
namespace {

using testing::JunkRow;
using testing::MakeFile;
using testing::ScratchFolder;
using testing::WalkRows;

TEST(JunkWalk, ListsLowerCasedJunkFilesOfNestedFoldersForTheDefaultAndTheWholeCatalogue) {
  ScratchFolder root;
  const testing::SeededTree tree = testing::SeedJunkTree(root.Path());
  EXPECT_EQ(WalkRows(root.Path(), DefaultJunkMasks()), tree.defaultRows);
  EXPECT_EQ(WalkRows(root.Path(), AllJunkMasks()), tree.allRows);
}

TEST(JunkWalk, ReportsTheFirstAcceptingMaskAndTheSizeOnceForEachFile) {
  ScratchFolder root;
  MakeFile(root / L"~draft.tmp", "twelve bytes");
  const std::vector<std::wstring> masks = {L"*.tmp", L"~*.*", L"*.tmp"};
  std::vector<JunkFile> found;
  WalkFolderForJunk(root.Path(), masks, StopToken(), [&](JunkFile&& file) { found.push_back(std::move(file)); });
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].name, L"~draft.tmp");
  EXPECT_EQ(found[0].folder, root.Path());
  EXPECT_EQ(found[0].maskIndex, 0u);
  EXPECT_EQ(found[0].bytes, 12u);
}

TEST(JunkWalk, GoesThroughTreesDeeperAndLongerThanAPathMayBeElsewhere) {
  ScratchFolder root;
  std::wstring folder = root.Path();
  for (int level = 0; level < 200; ++level) folder += L"level" + std::to_wstring(level) + L"\\";
  ASSERT_GT(folder.size(), static_cast<size_t>(MAX_PATH));
  MakeFile(ForFileApi(folder + L"bottom.tmp"));
  EXPECT_EQ(WalkRows(root.Path(), DefaultJunkMasks()), (std::vector<JunkRow>{{folder, L"bottom.tmp"}}));
}

TEST(JunkWalk, AStopEndsTheWalkAtTheEntryItStandsOn) {
  ScratchFolder root;
  for (int index = 0; index < 20; ++index) MakeFile(root / (L"sub\\f" + std::to_wstring(index) + L".tmp"));
  StopSignal signal;
  signal.Request();
  EXPECT_LE(WalkRows(root.Path(), DefaultJunkMasks(), StopToken(&signal)).size(), 1u);
}

TEST(JunkWalk, AMissingFolderOrNoMaskYieldsNothing) {
  ScratchFolder root;
  MakeFile(root / L"a.tmp");
  EXPECT_TRUE(WalkRows(root / L"missing\\", DefaultJunkMasks()).empty());
  EXPECT_TRUE(WalkRows(root.Path(), {}).empty());
}

TEST(JunkScope, TypedFoldersMustBeAbsoluteAndBecomeCanonical) {
  for (const wchar_t* refused : {L"", L"temp", L"C:temp", L"C:", L"\\temp", L"\\\\.\\C:\\"}) {
    EXPECT_FALSE(JunkScopeOfFolder(refused)) << ::testing::PrintToString(std::wstring(refused));
  }
  EXPECT_EQ(JunkScopeOfFolder(L"C:\\Temp")->folder, L"C:\\Temp\\");
  EXPECT_EQ(JunkScopeOfFolder(L"c:/Temp\\")->folder, L"C:\\Temp\\");
  EXPECT_EQ(JunkScopeOfFolder(L"E:\\")->folder, L"E:\\") << "a drive root is allowed: only matching files go";
  EXPECT_FALSE(JunkScopeOfFolder(L"E:\\")->allFixedDisks);
}

// Every fixed disk: the drives as the system tells them, C: left out to keep it short.
class DrivesOfThisMachine final : public SystemPaths {
 public:
  std::optional<std::wstring> ShellFolder(int) const override { return std::nullopt; }
  std::optional<std::wstring> WindowsFolder() const override { return std::nullopt; }
  std::optional<std::wstring> EnvironmentVariable(const wchar_t*) const override { return std::nullopt; }
  std::vector<std::wstring> DriveRoots() const override { return {L"D:\\", L"E:\\"}; }
  UINT DriveType(const std::wstring& root) const override { return MachinePaths().DriveType(root); }
  std::optional<std::wstring> ProgramFolder() const override { return std::nullopt; }
  std::optional<std::wstring> RegistryText(HKEY, std::wstring_view, std::wstring_view) const override {
    return std::nullopt;
  }
  std::vector<std::wstring> SubKeyNames(HKEY, std::wstring_view) const override { return {}; }
};

TEST(JunkWalkOfAllDisks, ListsFixedDisksAndSkipsTheOpticalDrive) {
  if (GetDriveTypeW(L"D:\\") != DRIVE_CDROM || GetDriveTypeW(L"E:\\") != DRIVE_FIXED) {
    GTEST_SKIP() << "needs the harness's scratch drives: D: optical, E: fixed";
  }
  ScratchFolder onE;
  const std::wstring onD = L"D:\\junk-test-" + std::to_wstring(GetCurrentProcessId()) + L"\\";
  MakeFile(onE / L"mscreate.dir");
  MakeFile(onD + L"mscreate.dir");
  ASSERT_TRUE(testing::FileExists(onD + L"mscreate.dir")) << "the scratch optical drive takes files";
  std::vector<JunkRow> rows;
  const std::vector<std::wstring> masks = {L"mscreate.dir"};
  WalkFixedDisksForJunk(DrivesOfThisMachine(), masks, StopToken(),
                        [&](JunkFile&& file) { rows.emplace_back(file.folder, file.name); });
  testing::RemoveTree(onD);
  EXPECT_NE(std::find(rows.begin(), rows.end(), JunkRow{onE.Path(), L"mscreate.dir"}), rows.end());
  for (const JunkRow& row : rows) EXPECT_NE(row.first.rfind(L"D:", 0), 0u) << "listed from D:";
}

// The harness lays out folder links on E: whose targets each hold canary.txt.
class JunkAndLinks : public ::testing::Test {
 protected:
  void SetUp() override {
    if (GetFileAttributesW(L"E:\\link-fixtures\\clean\\top-link") == INVALID_FILE_ATTRIBUTES) {
      GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
    }
    for (const wchar_t* target : {L"top", L"nested", L"bin"}) {
      MakeFile(std::wstring(L"E:\\link-fixtures\\targets\\") + target + L"\\behind.tmp");
    }
  }
};

TEST_F(JunkAndLinks, NoRowLiesBehindALink) {
  MakeFile(L"E:\\link-fixtures\\clean\\sub\\here.tmp");
  const std::vector<std::wstring> masks = {L"*.tmp", L"*.txt"};
  for (const wchar_t* folder : {L"E:\\link-fixtures\\clean\\", L"E:\\RECYCLER\\"}) {
    for (const JunkRow& row : WalkRows(folder, masks)) {
      EXPECT_EQ(row.first.find(L"-link"), std::wstring::npos) << "listed behind a link";
      EXPECT_NE(row.second, L"canary.txt");
      EXPECT_NE(row.second, L"behind.tmp");
    }
  }
  EXPECT_EQ(WalkRows(L"E:\\link-fixtures\\clean\\", masks),
            (std::vector<JunkRow>{{L"E:\\link-fixtures\\clean\\sub\\", L"here.tmp"}}));
  EXPECT_TRUE(WalkRows(L"E:\\link-fixtures\\clean\\top-link\\", masks).empty()) << "a link is not walked as the top";
}

TEST(JunkRemoval, ClearsTheReadOnlyBitAloneAndDeletesTheFile) {
  ScratchFolder root;
  const std::wstring path = root / L"locked.tmp";
  MakeFile(path);
  ASSERT_TRUE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN));
  EXPECT_TRUE(DeleteJunkFile(path));
  EXPECT_FALSE(testing::FileExists(path));
}

TEST(JunkRemoval, OfTwoFilesNamedAlikeOnlyTheListedOneGoes) {
  ScratchFolder root;
  // "x.tmp." and "x.tmp" side by side: the plain form of the first names the second.
  ASSERT_TRUE(testing::WriteFileBytes(ForFileApi(root / L"x.tmp."), "listed"));
  ASSERT_TRUE(testing::WriteFileBytes(ForFileApi(root / L"x.tmp"), "not listed"));
  if (testing::ReadFileBytes(ForFileApi(root / L"x.tmp.")) != "listed") {
    GTEST_SKIP() << "this file system does not keep a name's trailing dot";
  }
  EXPECT_TRUE(DeleteJunkFile(root / L"x.tmp."));
  EXPECT_FALSE(testing::FileExists(ForFileApi(root / L"x.tmp.")));
  EXPECT_EQ(testing::ReadFileBytes(ForFileApi(root / L"x.tmp")), "not listed");
}

TEST(JunkRemoval, AFileHeldOpenOrAFolderInItsPlaceStaysAndCountsAsFailed) {
  ScratchFolder root;
  const std::wstring held = root / L"held.tmp";
  const std::wstring gone = root / L"gone.tmp";
  const std::wstring folder = root / L"folder.tmp";
  MakeFile(held);
  MakeFile(gone);
  MakeFile(folder + L"\\inside.txt");
  const HANDLE open = CreateFileW(held.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(open, INVALID_HANDLE_VALUE);
  testing::RecordingTally tally;
  const std::vector<std::wstring> paths = {held, gone, folder, root / L"vanished.tmp"};
  DeleteJunkFiles(paths, tally);
  CloseHandle(open);
  EXPECT_EQ(tally.erased, 1);
  EXPECT_EQ(tally.failures, (std::vector<std::wstring>{held, folder, root / L"vanished.tmp"}));
  EXPECT_TRUE(testing::FileExists(held));
  EXPECT_TRUE(testing::FileExists(folder + L"\\inside.txt"));
}

TEST(JunkRemoval, AStopEndsItBetweenFilesAndLeavesTheRestInPlace) {
  ScratchFolder root;
  const std::vector<std::wstring> paths = {root / L"a.tmp", root / L"b.tmp", root / L"c.tmp"};
  for (const std::wstring& path : paths) MakeFile(path);
  // Stopped while the first file goes: the command line's Ctrl+C lands so.
  class StoppingTally final : public EraseTally {
   public:
    void Erased(int count, uint64_t) override {
      erased += count;
      stop.Request();
    }
    void EraseFailed(const std::wstring&) override { ++failed; }
    void LocationSkipped(const SkippedLocation&) override {}
    StopSignal stop;
    int erased = 0;
    int failed = 0;
  } tally;
  DeleteJunkFiles(paths, tally, StopToken(&tally.stop));
  EXPECT_EQ(tally.erased, 1);
  EXPECT_EQ(tally.failed, 0) << "the files after the stop are neither deleted nor failed";
  EXPECT_FALSE(testing::FileExists(paths[0]));
  EXPECT_TRUE(testing::FileExists(paths[1]));
  EXPECT_TRUE(testing::FileExists(paths[2]));
}

}  // namespace
}  // namespace lumenor
