// lumenor-cli junk end to end: the rows and the summary, plain and as JSON, removal with
// its failures, every fixed disk, links, and the arguments it refuses.
#include "base/TextEncoding.h"
#include "tests/junk/JunkFixtures.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lumenor {
namespace {

using testing::MakeFile;
using testing::ProgramResult;
using testing::ScratchFolder;

ProgramResult RunJunk(const std::wstring& arguments) {
  static const std::wstring program = testing::ProgramBesideTest(L"lumenor-cli.exe");
  ProgramResult result = testing::RunProgram(program, L"junk " + arguments);
  EXPECT_TRUE(result.finished);
  return result;
}

std::vector<std::string> Lines(const std::string& text) { return testing::SplitLines(text); }

TEST(JunkCommand, PrintsEachJunkFileAsNameTabFolderThenTheSummary) {
  ScratchFolder root;
  const testing::SeededTree tree = testing::SeedJunkTree(root.Path());
  std::wstring typed = root.Path();
  typed.pop_back();
  const ProgramResult result = RunJunk(L"--folder " + testing::QuotedArgument(typed));
  EXPECT_EQ(result.exitCode, 0u) << result.err;
  std::vector<std::string> lines = Lines(result.out);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "6 junk files, 30 bytes");
  lines.pop_back();
  std::vector<std::string> expected;
  for (const testing::JunkRow& row : tree.defaultRows) expected.push_back(ToUtf8(row.second + L"\t" + row.first));
  std::sort(lines.begin(), lines.end());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(lines, expected);

  const ProgramResult all = RunJunk(L"--masks all --folder " + testing::QuotedArgument(root.Path()));
  EXPECT_EQ(Lines(all.out).size(), tree.allRows.size() + 1);
}

TEST(JunkCommand, JsonGivesEachFilesMaskAndSizeAndTheTotals) {
  ScratchFolder root;
  MakeFile(root / L"~Draft.TMP", "twelve bytes");
  MakeFile(root / L"sub\\x.ab~", "abc");
  MakeFile(root / L"notes.txt");
  const ProgramResult result =
      RunJunk(L"--masks *.TMP,~*.*,*.??~ --json --folder " + testing::QuotedArgument(root.Path()));
  EXPECT_EQ(result.exitCode, 0u) << result.err;
  std::vector<std::string> lines = Lines(result.out);
  ASSERT_EQ(lines.size(), 3u) << result.out;
  EXPECT_EQ(lines.back(), "{\"type\":\"summary\",\"files\":2,\"bytes\":15}");
  lines.pop_back();
  std::sort(lines.begin(), lines.end());
  const std::string folder = testing::JsonEscaped(root.Path());
  EXPECT_EQ(
      lines,
      (std::vector<std::string>{
          "{\"type\":\"junk\",\"name\":\"x.ab~\",\"folder\":\"" + folder + "sub\\\\\",\"mask\":\"*.??~\",\"bytes\":3}",
          "{\"type\":\"junk\",\"name\":\"~draft.tmp\",\"folder\":\"" + folder + "\",\"mask\":\"*.tmp\",\"bytes\":12}",
      }))
      << "the first mask given that accepts the name is the one reported";
}

TEST(JunkCommand, DeleteRemovesWhatItFoundAndAFileThatStaysMakesTheStatusOne) {
  ScratchFolder root;
  MakeFile(root / L"plain.tmp");
  MakeFile(root / L"readonly.tmp");
  MakeFile(root / L"held.tmp");
  MakeFile(root / L"keep.txt");
  ASSERT_TRUE(SetFileAttributesW((root / L"readonly.tmp").c_str(), FILE_ATTRIBUTE_READONLY));
  const HANDLE held = CreateFileW((root / L"held.tmp").c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  const ProgramResult result = RunJunk(L"--delete --json --folder " + testing::QuotedArgument(root.Path()));
  CloseHandle(held);
  EXPECT_EQ(result.exitCode, 1u);
  const std::vector<std::string> lines = Lines(result.out);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "{\"type\":\"summary\",\"files\":3,\"bytes\":15,\"deleted\":2,\"failed\":1}");
  EXPECT_NE(std::find(lines.begin(), lines.end(),
                      "{\"type\":\"failure\",\"path\":\"" + testing::JsonEscaped(root / L"held.tmp") + "\"}"),
            lines.end());
  EXPECT_EQ(testing::EntriesBelow(root.Path()), (std::vector<std::wstring>{L"held.tmp", L"keep.txt"}));

  const ProgramResult again = RunJunk(L"--delete --folder " + testing::QuotedArgument(root.Path()));
  EXPECT_EQ(again.exitCode, 0u) << again.out;
  EXPECT_EQ(Lines(again.out).back(), "1 junk files, 5 bytes, 1 deleted, 0 failed");
}

TEST(JunkCommand, AFolderThatDoesNotExistGivesNoRowsAndSucceeds) {
  ScratchFolder root;
  const ProgramResult result = RunJunk(L"--folder " + testing::QuotedArgument(root / L"missing"));
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(Lines(result.out), (std::vector<std::string>{"0 junk files, 0 bytes"}));
}

TEST(JunkCommand, UnknownMasksAndFoldersThatAreNotAbsoluteAreUsageErrors) {
  struct Case {
    const wchar_t* arguments;
    const char* told;
  };
  const Case cases[] = {
      {L"--masks *.txt", "unknown junk mask: \"*.txt\""},
      {L"--masks *.tmp,,*.log", "unknown junk mask: \"\""},
      {L"--masks", "--masks needs"},
      {L"--folder temp", "Please choose a path for cleaning junk files"},
      {L"--folder C:temp", "\"C:temp\" is a relative path"},
      {L"--folder C:\\a*b", "\"C:\\a*b\" is an invalid path"},
      {L"--folder \\\\.\\C:\\", "device path"},
      {L"--folder", "--folder needs"},
      {L"--folder C:\\ --folder D:\\", "more than one --folder"},
      {L"--erase", "unexpected argument: --erase"},
  };
  for (const Case& c : cases) {
    const ProgramResult result = RunJunk(c.arguments);
    EXPECT_EQ(result.exitCode, 2u) << ToUtf8(c.arguments);
    EXPECT_NE(result.err.find(c.told), std::string::npos) << ToUtf8(c.arguments) << ": " << result.err;
    EXPECT_TRUE(result.out.empty()) << ToUtf8(c.arguments);
  }
}

TEST(JunkCommand, WithoutAFolderEveryFixedDiskIsWalkedAndTheOpticalDriveIsNot) {
  if (GetDriveTypeW(L"D:\\") != DRIVE_CDROM || GetDriveTypeW(L"E:\\") != DRIVE_FIXED) {
    GTEST_SKIP() << "needs the harness's scratch drives: D: optical, E: fixed";
  }
  ScratchFolder onE;
  const std::wstring onD = L"D:\\junk-cli-" + std::to_wstring(GetCurrentProcessId()) + L"\\";
  MakeFile(onE / L"MSCREATE.DIR");
  MakeFile(onD + L"mscreate.dir");
  const ProgramResult result = RunJunk(L"--masks mscreate.dir");
  testing::RemoveTree(onD);
  EXPECT_EQ(result.exitCode, 0u) << result.err;
  const std::vector<std::string> lines = Lines(result.out);
  EXPECT_NE(std::find(lines.begin(), lines.end(), ToUtf8(L"mscreate.dir\t" + onE.Path())), lines.end()) << result.out;
  for (const std::string& line : lines) EXPECT_EQ(line.find("\tD:"), std::string::npos) << line;
}

// The harness lays out folder links on E: whose targets each hold canary.txt.
TEST(JunkCommandAndLinks, NothingBehindALinkIsListedOrDeleted) {
  if (GetFileAttributesW(L"E:\\link-fixtures\\clean\\top-link") == INVALID_FILE_ATTRIBUTES) {
    GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
  }
  const std::wstring targets = L"E:\\link-fixtures\\targets\\";
  for (const wchar_t* target : {L"top", L"nested", L"bin"}) MakeFile(targets + target + L"\\behind.tmp");
  MakeFile(L"E:\\link-fixtures\\clean\\sub\\here.tmp");
  for (const wchar_t* folder : {L"E:\\link-fixtures\\clean", L"E:\\RECYCLER", L"E:\\link-fixtures\\clean\\top-link"}) {
    const ProgramResult result = RunJunk(L"--delete --masks *.tmp --folder " + testing::QuotedArgument(folder));
    EXPECT_EQ(result.exitCode, 0u) << ToUtf8(folder) << result.err;
    EXPECT_EQ(result.out.find("behind.tmp"), std::string::npos) << result.out;
  }
  EXPECT_FALSE(testing::FileExists(L"E:\\link-fixtures\\clean\\sub\\here.tmp"));
  for (const wchar_t* target : {L"top", L"nested", L"bin"}) {
    EXPECT_TRUE(testing::FileExists(targets + target + L"\\behind.tmp")) << ToUtf8(target);
    EXPECT_TRUE(testing::FileExists(targets + target + L"\\canary.txt")) << ToUtf8(target);
  }
}

}  // namespace
}  // namespace lumenor
