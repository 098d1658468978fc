// File locations: which files a scan reports, what an erase deletes, and the folders it
// must never touch.
#include "engine/FilePath.h"
#include "engine/FileTraces.h"
#include "engine/Registry.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace lumenor {
namespace {

using testing::EntriesBelow;
using testing::MakeFile;
using testing::TempFolder;
using Found = std::pair<std::wstring, std::wstring>;  // folder, file name

std::vector<Found> Scan(const std::wstring& folder, std::wstring_view selector, int kind,
                        const StopToken& stop = StopToken()) {
  std::vector<Found> found;
  const auto admitted = testing::Admitted(folder);
  EXPECT_TRUE(admitted) << "refused: " << ::testing::PrintToString(folder);
  if (!admitted) return found;
  ScanFileLocation(*admitted, selector, kind, stop,
                   [&](std::wstring_view where, std::wstring_view name, uint64_t) { found.emplace_back(where, name); });
  std::sort(found.begin(), found.end());
  return found;
}

void Erase(const std::wstring& folder, std::wstring_view selector, EraseTally& tally) {
  const auto admitted = testing::Admitted(folder);
  EXPECT_TRUE(admitted) << "refused: " << ::testing::PrintToString(folder);
  if (admitted) EraseFileLocation(*admitted, selector, tally);
}

class FileLocation : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const wchar_t* name : {L"a.txt", L"b.TXT", L"a.txt.bak", L"noextension", L"sub\\c.txt", L"sub\\deep\\d.log"}) {
      MakeFile(root_ / name);
    }
  }
  TempFolder root_;
};

TEST_F(FileLocation, KindDecidesWhichFilesAScanReports) {
  const std::wstring top = root_.Path();
  const std::wstring sub = root_ / L"sub\\";
  EXPECT_EQ(Scan(top, L"*.*", kMatchEveryFile), (std::vector<Found>{{top, L"a.txt"},
                                                                    {top, L"a.txt.bak"},
                                                                    {top, L"b.TXT"},
                                                                    {top, L"noextension"},
                                                                    {sub, L"c.txt"},
                                                                    {sub + L"deep\\", L"d.log"}}));
  EXPECT_EQ(Scan(top, L"*.*", kMatchEveryFileToo).size(), 6u);
  EXPECT_EQ(Scan(top, L".txt", kMatchExtension), (std::vector<Found>{{top, L"a.txt"}, {sub, L"c.txt"}}));
  EXPECT_EQ(Scan(top, L"a.txt", kMatchExactName), (std::vector<Found>{{top, L"a.txt"}}));
  EXPECT_TRUE(Scan(top, L"*.*", 1).empty());
  EXPECT_TRUE(Scan(top, L"*.*", 0).empty());
}

TEST(FileMatch, ExtensionsAndNamesCompareWithCase) {
  EXPECT_TRUE(ScanReportsFile(L"a.txt", L".txt", kMatchExtension));
  EXPECT_FALSE(ScanReportsFile(L"a.TXT", L".txt", kMatchExtension));
  EXPECT_FALSE(ScanReportsFile(L"a.txt.bak", L".txt", kMatchExtension));
  EXPECT_FALSE(ScanReportsFile(L"txt", L".txt", kMatchExtension));
  EXPECT_TRUE(ScanReportsFile(L"archive.tar.wmdb", L".wmdb", kMatchExtension));
  EXPECT_TRUE(ScanReportsFile(L"key3.db", L"key3.db", kMatchExactName));
  EXPECT_FALSE(ScanReportsFile(L"Key3.db", L"key3.db", kMatchExactName));
  EXPECT_FALSE(ScanReportsFile(L"x.torrent", L"*.torrent", kMatchExactName)) << "no pattern matching in a scan";
}

TEST(FileScanSpecialNames, LookOnlyForThatFileAndEnterNoSubFolder) {
  TempFolder windows;
  for (const wchar_t* name : {L"setupapi.log", L"other.log", L"sub\\setupapi.log", L"DirectX.log"}) {
    MakeFile(windows / name);
  }
  EXPECT_EQ(Scan(windows.Path(), L"setupapi.log", kMatchExactName),
            (std::vector<Found>{{windows.Path(), L"setupapi.log"}}));
  EXPECT_EQ(Scan(windows.Path(), L"DirectX.log", kMatchExactName),
            (std::vector<Found>{{windows.Path(), L"DirectX.log"}}));
  // Any other name walks the whole tree.
  EXPECT_EQ(Scan(windows.Path(), L"other.log", kMatchExactName), (std::vector<Found>{{windows.Path(), L"other.log"}}));
  EXPECT_EQ(Scan(windows.Path(), L"*.*", kMatchEveryFile).size(), 4u);
}

TEST_F(FileLocation, ScanStopsAfterTheEntryBeingHandled) {
  StopSignal stop;
  int reported = 0;
  ScanFileLocation(*testing::Admitted(root_.Path()), L"*.*", kMatchEveryFile, StopToken(&stop),
                   [&](std::wstring_view, std::wstring_view, uint64_t) {
                     ++reported;
                     stop.Request();
                   });
  EXPECT_EQ(reported, 1);
}

TEST_F(FileLocation, EraseDeletesByPatternAndRemovesEmptiedFolders) {
  testing::RecordingTally tally;
  Erase(root_.Path(), L"*.*", tally);
  EXPECT_EQ(tally.erased, 6);
  EXPECT_EQ(tally.reports, std::vector<int>(6, 1));
  EXPECT_FALSE(testing::FileExists(root_.Path())) << "the emptied location folder goes too";
}

TEST(FileErasePattern, EntersOnlyMatchingFoldersAndKeepsWhatDoesNotMatch) {
  TempFolder client;
  for (const wchar_t* name :
       {L"x.torrent", L"resume.dat", L"old.torrent\\inner.torrent", L"old.torrent\\keep.txt", L"sub\\y.torrent"}) {
    MakeFile(client / name);
  }
  testing::RecordingTally tally;
  Erase(client.Path(), L"*.torrent", tally);
  EXPECT_EQ(EntriesBelow(client.Path()), (std::vector<std::wstring>{L"old.torrent\\", L"old.torrent\\keep.txt",
                                                                    L"resume.dat", L"sub\\", L"sub\\y.torrent"}));
  EXPECT_EQ(tally.erased, 2);
}

TEST(FileEraseFailure, ReadOnlyFileStaysAndIsLeftToTheNextRestart) {
  TempFolder cache;
  MakeFile(cache / L"locked.dat");
  MakeFile(cache / L"free.dat");
  const std::wstring locked = cache / L"locked.dat";
  ASSERT_TRUE(SetFileAttributesW(locked.c_str(), FILE_ATTRIBUTE_READONLY));

  testing::RecordingTally tally;
  Erase(cache.Path(), L"*.*", tally);
  EXPECT_EQ(tally.erased, 1);
  EXPECT_EQ(tally.failures, std::vector<std::wstring>{locked});
  EXPECT_TRUE(testing::FileExists(locked));
  EXPECT_TRUE(testing::FileExists(cache.Path())) << "a folder that keeps a file stays";

  const auto pending = [] {
    HKEY key = nullptr;
    std::wstring text;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"System\\CurrentControlSet\\Control\\Session Manager", 0, KEY_READ, &key) ==
        ERROR_SUCCESS) {
      DWORD size = 0;
      if (RegQueryValueExW(key, L"PendingFileRenameOperations", nullptr, nullptr, nullptr, &size) == ERROR_SUCCESS) {
        text.resize(size / sizeof(wchar_t));
        RegQueryValueExW(key, L"PendingFileRenameOperations", nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()),
                         &size);
      }
      RegCloseKey(key);
    }
    return text;
  }();
  EXPECT_NE(pending.find(locked), std::wstring::npos) << "not scheduled for deletion at restart";
  SetFileAttributesW(locked.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(FileLocationDepth, TreesTwoHundredFoldersDeepAndLongerThanMaxPath) {
  TempFolder root;
  std::wstring folder = root.Path();
  for (int level = 0; level < 200; ++level) {
    folder += L"level" + std::to_wstring(level) + L"\\";
    ASSERT_TRUE(CreateDirectoryW(ForFileApi(folder).c_str(), nullptr)) << "level " << level;
  }
  ASSERT_GT(folder.size(), 1000u);
  ASSERT_TRUE(testing::WriteFileBytes(ForFileApi(folder + L"bottom.txt"), "deep"));

  const std::vector<Found> found = Scan(root.Path(), L"*.*", kMatchEveryFile);
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0], Found(folder, L"bottom.txt")) << "reported paths are whole, without any prefix";

  testing::RecordingTally tally;
  Erase(root.Path(), L"*.*", tally);
  EXPECT_EQ(tally.erased, 1);
  EXPECT_FALSE(testing::FileExists(root.Path()));
}

// The harness lays out folder links on E: whose targets each hold canary.txt.
class FolderLinks : public ::testing::Test {
 protected:
  void SetUp() override {
    if (GetFileAttributesW(L"E:\\link-fixtures\\clean\\top-link") == INVALID_FILE_ATTRIBUTES) {
      GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
    }
  }
  static bool CanariesIntact() {
    for (const wchar_t* target : {L"top", L"nested", L"bin"}) {
      if (!testing::FileExists(std::wstring(L"E:\\link-fixtures\\targets\\") + target + L"\\canary.txt")) {
        return false;
      }
    }
    return true;
  }
};

TEST_F(FolderLinks, AreReportedAsLinksByTheSystem) {
  const DWORD attributes = GetFileAttributesW(L"E:\\link-fixtures\\clean\\top-link");
  EXPECT_TRUE(IsReparsePoint(attributes));
}

TEST_F(FolderLinks, ScanNeverEntersThem) {
  MakeFile(L"E:\\link-fixtures\\clean\\sub\\trace.txt");
  for (const Found& found : Scan(L"E:\\link-fixtures\\clean\\", L"*.*", kMatchEveryFile)) {
    EXPECT_NE(found.second, L"canary.txt") << "found through a link in " << ::testing::PrintToString(found.first);
  }
  EXPECT_EQ(Scan(L"E:\\link-fixtures\\clean\\", L"*.*", kMatchEveryFile).size(), 1u);
}

TEST_F(FolderLinks, EraseLeavesTheirTargetsWhole) {
  MakeFile(L"E:\\link-fixtures\\clean\\trace.txt");
  MakeFile(L"E:\\link-fixtures\\clean\\sub\\trace.txt");
  MakeFile(L"E:\\RECYCLER\\deleted.txt");
  testing::RecordingTally tally;
  Erase(L"E:\\link-fixtures\\clean\\", L"*.*", tally);
  Erase(L"E:\\RECYCLER\\", L"*.*", tally);
  EXPECT_TRUE(CanariesIntact());
  EXPECT_EQ(tally.erased, 3);
  EXPECT_FALSE(testing::FileExists(L"E:\\RECYCLER\\deleted.txt"));
}

}  // namespace
}  // namespace lumenor
