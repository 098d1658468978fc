// Choosing files for shredding: each file once, split at its last backslash, nothing a
// shred could not overwrite without reaching something else, and folders walked without
// ever going through a link.
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "engine/FilePath.h"
#include "shred/ProgressScale.h"
#include "shred/ShredJob.h"
#include "shred/ShredList.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::MakeFile;
using testing::ReadFileBytes;
using testing::TempFolder;

class NoReports final : public ShredReports {
 public:
  void FileShredded(size_t, int) override { ++shredded; }
  void FileFailed(size_t, ShredFailure, const std::wstring&) override { ++failed; }
  int shredded = 0;
  int failed = 0;
};

std::vector<std::wstring> PathsOf(const ShredList& list) {
  std::vector<std::wstring> paths;
  for (const ShredTarget& target : list.Targets()) paths.push_back(target.Path());
  return paths;
}

TEST(ShredList, NameAndFolderAreSplitAtTheLastBackslashSoNoOtherFileIsReached) {
  TempFolder root;
  // The name "b.txt" also opens the folder "b.txt_dir": cut at its first occurrence, the
  // folder would be root\ and the file shredded root\b.txt.
  MakeFile(root / L"b.txt", "never chosen");
  MakeFile(root / L"b.txt_dir\\b.txt", "chosen");
  ShredList list;
  ASSERT_EQ(list.AddFile(root / L"b.txt_dir\\b.txt"), AddResult::kAdded);
  ASSERT_EQ(list.Targets().size(), 1u);
  EXPECT_EQ(list.Targets()[0].Folder(), root / L"b.txt_dir\\");
  EXPECT_EQ(list.Targets()[0].Name(), L"b.txt");
  EXPECT_EQ(list.Targets()[0].file.ForApi(), L"\\\\?\\" + root / L"b.txt_dir\\b.txt") << "made once, when listed";
  NoReports reports;
  EXPECT_EQ(RunShredJob(list.Targets(), ShredMethod::kQuick, reports, StopToken()), ShredJobEnd::kDone);
  EXPECT_EQ(reports.shredded, 1);
  EXPECT_EQ(ReadFileBytes(root / L"b.txt"), "never chosen");
  EXPECT_FALSE(FileExists(root / L"b.txt_dir\\b.txt"));
}

TEST(ShredList, AFileListedTwiceInAnotherLetterCaseOrSpellingIsOneRow) {
  TempFolder root;
  MakeFile(root / L"Report.doc");
  ShredList list;
  EXPECT_EQ(list.AddFile(root / L"Report.doc"), AddResult::kAdded);
  EXPECT_EQ(list.AddFile(root / L"REPORT.DOC"), AddResult::kAlreadyListed);
  EXPECT_EQ(list.AddFile(root / L"sub\\..\\report.doc"), AddResult::kAlreadyListed);
  EXPECT_EQ(list.Targets().size(), 1u);
  list.Remove(0);
  EXPECT_EQ(list.AddFile(root / L"report.doc"), AddResult::kAdded) << "a removed row may be listed again";
}

TEST(ShredList, FilesThatCannotBeOverwrittenAreNotListedAndSayWhy) {
  TempFolder root;
  MakeFile(root / L"readonly.txt");
  ASSERT_TRUE(SetFileAttributesW((root / L"readonly.txt").c_str(), FILE_ATTRIBUTE_READONLY));
  MakeFile(root / L"linked.txt");
  ASSERT_TRUE(CreateHardLinkW((root / L"second-name.txt").c_str(), (root / L"linked.txt").c_str(), nullptr));
  testing::MakeFolders(root / L"folder\\");
  const std::pair<std::wstring, ShredFailure> cases[] = {
      {root / L"readonly.txt", ShredFailure::kCannotOpen}, {root / L"missing.txt", ShredFailure::kMissing},
      {root / L"linked.txt", ShredFailure::kHardLinks},    {root / L"folder", ShredFailure::kNotAFile},
      {L"relative.txt", ShredFailure::kBadPath},           {L"C:relative.txt", ShredFailure::kBadPath},
      {L"\\\\.\\C:\\device.txt", ShredFailure::kBadPath},  {root / L"", ShredFailure::kBadPath},
  };
  ShredList list;
  for (const auto& [path, failure] : cases) {
    Refusal refusal;
    EXPECT_EQ(list.AddFile(path, &refusal), AddResult::kRefused) << ::testing::PrintToString(path);
    EXPECT_EQ(refusal.failure, failure) << ::testing::PrintToString(path);
  }
  EXPECT_TRUE(list.Empty());
  ASSERT_TRUE(SetFileAttributesW((root / L"readonly.txt").c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST(ShredList, TypedNamesThatWindowsReadsAsAnotherFileOrADeviceAreRefused) {
  TempFolder root;
  MakeFile(root / L"a", "never chosen");
  ShredList list;
  for (const std::wstring& path : {root / L"a.", root / L"a ", root / L"a. ", root / L"NUL", root / L"nul.txt",
                                   root / L"COM\u00B9", root / L"CONOUT$", root / L"a\x01"}) {
    Refusal refusal;
    EXPECT_EQ(list.AddFile(path, &refusal), AddResult::kRefused) << ::testing::PrintToString(path);
    EXPECT_EQ(refusal.failure, ShredFailure::kAmbiguousName) << ::testing::PrintToString(path);
  }
  EXPECT_TRUE(list.Empty());
  EXPECT_EQ(ReadFileBytes(root / L"a"), "never chosen");
}

TEST(ShredList, OfTwoFilesNamedAlikeOnlyTheListedOneIsShredded) {
  TempFolder root;
  // "a." and "a" side by side, as "\\?\" names or another system make them.
  ASSERT_TRUE(testing::WriteFileBytes(ForFileApi(root / L"a."), "chosen"));
  ASSERT_TRUE(testing::WriteFileBytes(ForFileApi(root / L"a"), "never chosen"));
  if (ReadFileBytes(ForFileApi(root / L"a.")) != "chosen") {
    GTEST_SKIP() << "this file system does not keep a name's trailing dot";
  }
  ShredList list;
  std::vector<std::wstring> refused;
  ASSERT_EQ(list.AddFolder(*testing::Admitted(root.Path()),
                           [&](const Refusal& refusal) {
                             refused.push_back(refusal.path + L": " + std::wstring(FailureReason(refusal.failure)));
                           }),
            2u)
      << ::testing::PrintToString(refused);
  std::vector<ShredTarget> chosen;
  for (const ShredTarget& target : list.Targets()) {
    if (target.Name() == L"a.") chosen.push_back(target);
  }
  ASSERT_EQ(chosen.size(), 1u);
  EXPECT_EQ(chosen[0].size, 6u) << "the size of the dotted file, not of its twin";
  NoReports reports;
  EXPECT_EQ(RunShredJob(chosen, ShredMethod::kQuick, reports, StopToken()), ShredJobEnd::kDone);
  EXPECT_EQ(reports.shredded, 1);
  EXPECT_FALSE(FileExists(ForFileApi(root / L"a.")));
  EXPECT_EQ(ReadFileBytes(ForFileApi(root / L"a")), "never chosen");
}

TEST(ShredList, AFolderListsEveryFileOfItsTreeEachWithItsOwnFolder) {
  TempFolder root;
  MakeFile(root / L"tree\\a.txt");
  MakeFile(root / L"tree\\sub\\b.txt");
  MakeFile(root / L"tree\\sub\\deeper\\c.txt");
  testing::MakeFolders(root / L"tree\\empty\\");
  MakeFile(root / L"tree\\locked.txt");
  ASSERT_TRUE(SetFileAttributesW((root / L"tree\\locked.txt").c_str(), FILE_ATTRIBUTE_READONLY));
  ShredList list;
  ASSERT_EQ(list.AddFile(root / L"tree\\A.TXT"), AddResult::kAdded);
  std::vector<Refusal> refusals;
  const auto folder = testing::Admitted(root / L"tree");
  ASSERT_TRUE(folder);
  EXPECT_EQ(list.AddFolder(*folder, [&](const Refusal& refusal) { refusals.push_back(refusal); }), 2u);
  std::vector<std::wstring> paths = PathsOf(list);
  std::sort(paths.begin() + 1, paths.end());
  EXPECT_EQ(paths, (std::vector<std::wstring>{root / L"tree\\A.TXT", root / L"tree\\sub\\b.txt",
                                              root / L"tree\\sub\\deeper\\c.txt"}));
  ASSERT_EQ(refusals.size(), 1u);
  EXPECT_EQ(refusals[0].path, root / L"tree\\locked.txt");
  EXPECT_EQ(refusals[0].failure, ShredFailure::kCannotOpen);
  ASSERT_TRUE(SetFileAttributesW((root / L"tree\\locked.txt").c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST(ShredList, AFolderDeeperThanMaxPathIsWalkedWholeOnTheHeap) {
  TempFolder root;
  std::wstring folder = root.Path();
  for (int level = 0; level < 120; ++level) {
    folder += L"level" + std::to_wstring(level) + L"\\";
    ASSERT_TRUE(CreateDirectoryW(ForFileApi(folder).c_str(), nullptr)) << "level " << level;
  }
  ASSERT_GT(folder.size(), static_cast<size_t>(MAX_PATH));
  ASSERT_TRUE(testing::WriteFileBytes(ForFileApi(folder + L"bottom.txt"), "deep"));
  const auto admitted = testing::Admitted(root.Path());
  ASSERT_TRUE(admitted);
  ShredList list;
  std::vector<Refusal> refusals;
  EXPECT_EQ(list.AddFolder(*admitted, [&](const Refusal& refusal) { refusals.push_back(refusal); }), 1u);
  ASSERT_EQ(list.Targets().size(), 1u);
  EXPECT_EQ(list.Targets()[0].Path(), folder + L"bottom.txt");
  EXPECT_EQ(list.Targets()[0].size, 4u);
  EXPECT_TRUE(refusals.empty());
}

// The harness lays out links on E: whose targets each hold canary.txt.
class LinkFixtures : public ::testing::Test {
 protected:
  void SetUp() override {
    if (GetFileAttributesW(L"E:\\link-fixtures\\files\\file-link.txt") == INVALID_FILE_ATTRIBUTES) {
      GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
    }
    for (const wchar_t* target : {L"top", L"nested", L"file"}) {
      canaries_.push_back(std::wstring(L"E:\\link-fixtures\\targets\\") + target + L"\\canary.txt");
      contents_.push_back(ReadFileBytes(canaries_.back()));
      ASSERT_FALSE(contents_.back().empty());
    }
  }
  void ExpectCanariesByteIdentical() const {
    for (size_t index = 0; index < canaries_.size(); ++index) {
      EXPECT_EQ(ReadFileBytes(canaries_[index]), contents_[index]) << ::testing::PrintToString(canaries_[index]);
    }
  }
  std::vector<std::wstring> canaries_;
  std::vector<std::string> contents_;
};

TEST_F(LinkFixtures, AFileThatIsALinkIsNeverListedOrShredded) {
  ShredList list;
  Refusal refusal;
  EXPECT_EQ(list.AddFile(L"E:\\link-fixtures\\files\\file-link.txt", &refusal), AddResult::kRefused);
  EXPECT_EQ(refusal.failure, ShredFailure::kLink);

  // Listed as a plain file, then the link found by the job itself.
  const ShredTarget target{ReadFolderPath(L"E:\\link-fixtures\\files\\")->Entry(L"file-link.txt"), 12};
  NoReports reports;
  EXPECT_EQ(RunShredJob(std::span(&target, 1), ShredMethod::kThorough, reports, StopToken()), ShredJobEnd::kDone);
  EXPECT_EQ(reports.failed, 1);
  EXPECT_TRUE(FileExists(L"E:\\link-fixtures\\files\\file-link.txt"));
  ExpectCanariesByteIdentical();
}

TEST_F(LinkFixtures, AFolderWalkNeverGoesThroughALinkAndShredsOnlyWhatIsBelow) {
  MakeFile(L"E:\\link-fixtures\\clean\\mine.txt", "mine");
  MakeFile(L"E:\\link-fixtures\\clean\\sub\\also-mine.txt", "also mine");
  ShredList list;
  std::vector<Refusal> refusals;
  for (const wchar_t* folder : {L"E:\\link-fixtures\\clean", L"E:\\link-fixtures\\files"}) {
    const auto admitted = testing::Admitted(folder);
    ASSERT_TRUE(admitted);
    list.AddFolder(*admitted, [&](const Refusal& refusal) { refusals.push_back(refusal); });
  }
  std::vector<std::wstring> paths = PathsOf(list);
  std::sort(paths.begin(), paths.end());
  EXPECT_EQ(paths, (std::vector<std::wstring>{L"E:\\link-fixtures\\clean\\mine.txt",
                                              L"E:\\link-fixtures\\clean\\sub\\also-mine.txt"}));
  std::vector<std::wstring> refused;
  for (const Refusal& refusal : refusals) {
    EXPECT_EQ(refusal.failure, ShredFailure::kLink);
    refused.push_back(refusal.path);
  }
  std::sort(refused.begin(), refused.end());
  EXPECT_EQ(refused, (std::vector<std::wstring>{L"E:\\link-fixtures\\clean\\sub\\nested-link",
                                                L"E:\\link-fixtures\\clean\\top-link",
                                                L"E:\\link-fixtures\\files\\file-link.txt"}));
  NoReports reports;
  EXPECT_EQ(RunShredJob(list.Targets(), ShredMethod::kSafe, reports, StopToken()), ShredJobEnd::kDone);
  EXPECT_EQ(reports.shredded, 2);
  ExpectCanariesByteIdentical();
}

TEST(ProgressScale, RangesAbove2GBFitTheBarAndNeverRunBackwards) {
  const ProgressScale small(100000);
  EXPECT_EQ(small.Range(), 100000);
  EXPECT_EQ(small.Position(33333), 33333);
  const uint64_t threeGB = 3000000000ull;
  const ProgressScale large(threeGB);
  EXPECT_GT(large.Range(), 0);
  EXPECT_EQ(large.Position(threeGB), large.Range());
  EXPECT_NEAR(large.Position(threeGB / 2), large.Range() / 2, 1);
  int previous = 0;
  for (uint64_t position = 0; position <= threeGB; position += threeGB / 64) {
    EXPECT_GE(large.Position(position), previous);
    previous = large.Position(position);
  }
  const ProgressScale huge(~0ull);
  EXPECT_EQ(huge.Position(~0ull), huge.Range());
}

}  // namespace
}  // namespace lumenor
