// lumenor-cli shred end to end: files and folders shredded with one line each and a
// summary, files that cannot be shredded reported with the exit status 1, and mistakes
// in the arguments refused with 2 before anything is touched.
#include "tests/support/ChildProcess.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "base/TextEncoding.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::MakeFile;
using testing::ProgramResult;
using testing::ReadFileBytes;
using testing::TempFolder;

ProgramResult Shred(const std::wstring& arguments) {
  static const std::wstring program = testing::ProgramBesideTest(L"lumenor-cli.exe");
  ProgramResult result = testing::RunProgram(program, L"shred " + arguments);
  EXPECT_TRUE(result.finished);
  return result;
}

bool Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(ShredCommand, ShredsFilesAndEveryFileBelowAFolderWithOneJsonLineEach) {
  TempFolder root;
  MakeFile(root / L"a.txt", "12345");
  MakeFile(root / L"tree\\b.txt", "123");
  MakeFile(root / L"tree\\deeper\\c.txt", "1234567");
  const ProgramResult run =
      Shred(L"--method safe --json " + testing::QuotedArgument(root / L"a.txt") + L" " +
            testing::QuotedArgument(root / L"tree") + L" " + testing::QuotedArgument(root / L"A.TXT"));
  EXPECT_EQ(run.exitCode, 0u) << run.out;
  EXPECT_EQ(run.out.rfind("{\"type\":\"shredded\",\"path\":\"" + testing::JsonEscaped(root / L"a.txt") +
                              "\",\"bytes\":5,\"passes\":3}\n",
                          0),
            0u)
      << run.out;
  EXPECT_TRUE(Has(run.out, "{\"type\":\"shredded\",\"path\":\"" + testing::JsonEscaped(root / L"tree\\b.txt") +
                               "\",\"bytes\":3,\"passes\":3}\n"))
      << run.out;
  EXPECT_TRUE(Has(run.out, "{\"type\":\"shredded\",\"path\":\"" + testing::JsonEscaped(root / L"tree\\deeper\\c.txt") +
                               "\",\"bytes\":7,\"passes\":3}\n"))
      << run.out;
  EXPECT_TRUE(run.out.ends_with("{\"type\":\"summary\",\"files\":3,\"shredded\":3,\"failed\":0,\"bytes\":15}\n"))
      << run.out;
  EXPECT_EQ(testing::EntriesBelow(root.Path()), (std::vector<std::wstring>{L"tree\\", L"tree\\deeper\\"}))
      << "files go, folders stay";
}

TEST(ShredCommand, QuickIsTheDefaultAndPlainOutputHasALineAFileAndASummary) {
  TempFolder root;
  MakeFile(root / L"a.txt", "12345");
  const ProgramResult run = Shred(testing::QuotedArgument(root / L"a.txt"));
  EXPECT_EQ(run.exitCode, 0u);
  EXPECT_EQ(run.out,
            ToUtf8(L"shredded\t" + root / L"a.txt") + "\t5 bytes\t1 passes\n1 files: 1 shredded, 0 failed, 5 bytes\n");
  EXPECT_FALSE(FileExists(root / L"a.txt"));
}

TEST(ShredCommand, FilesThatCannotBeShreddedAreReportedAndTheRestShredded) {
  TempFolder root;
  MakeFile(root / L"readonly.txt", "keep");
  ASSERT_TRUE(SetFileAttributesW((root / L"readonly.txt").c_str(), FILE_ATTRIBUTE_READONLY));
  MakeFile(root / L"linked.txt", "keep too");
  ASSERT_TRUE(CreateHardLinkW((root / L"other-name.txt").c_str(), (root / L"linked.txt").c_str(), nullptr));
  MakeFile(root / L"good.txt", "go");
  std::wstring arguments = L"--json " + testing::QuotedArgument(root / L"missing.txt") + L" " +
                           testing::QuotedArgument(root / L"readonly.txt") + L" " +
                           testing::QuotedArgument(root / L"linked.txt") + L" " +
                           testing::QuotedArgument(root / L"good.txt");
  const bool withLinks = GetFileAttributesW(L"E:\\link-fixtures\\files\\file-link.txt") != INVALID_FILE_ATTRIBUTES;
  if (withLinks) arguments += L" E:\\link-fixtures\\files\\file-link.txt";
  const ProgramResult run = Shred(arguments);
  EXPECT_EQ(run.exitCode, 1u) << run.out;
  const auto failed = [&](const std::wstring& path, const char* reason) {
    return "{\"type\":\"failed\",\"path\":\"" + testing::JsonEscaped(path) + "\",\"reason\":\"" + reason + "\"}\n";
  };
  EXPECT_TRUE(Has(run.out, failed(root / L"missing.txt", "missing"))) << run.out;
  EXPECT_TRUE(Has(run.out, failed(root / L"readonly.txt", "cannot be opened for writing"))) << run.out;
  EXPECT_TRUE(Has(run.out, failed(root / L"linked.txt", "has other hard links"))) << run.out;
  EXPECT_TRUE(
      Has(run.out, "{\"type\":\"shredded\",\"path\":\"" + testing::JsonEscaped(root / L"good.txt") + "\",\"bytes\":2,"))
      << run.out;
  if (withLinks) {
    EXPECT_TRUE(Has(run.out, failed(L"E:\\link-fixtures\\files\\file-link.txt", "link"))) << run.out;
    EXPECT_EQ(ReadFileBytes(L"E:\\link-fixtures\\targets\\file\\canary.txt"), "canary file\n");
  }
  EXPECT_TRUE(Has(run.out, withLinks ? "{\"type\":\"summary\",\"files\":5,\"shredded\":1,\"failed\":4,\"bytes\":2}"
                                     : "{\"type\":\"summary\",\"files\":4,\"shredded\":1,\"failed\":3,\"bytes\":2}"))
      << run.out;
  EXPECT_EQ(ReadFileBytes(root / L"readonly.txt"), "keep");
  EXPECT_EQ(ReadFileBytes(root / L"other-name.txt"), "keep too");
  ASSERT_TRUE(SetFileAttributesW((root / L"readonly.txt").c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST(ShredCommand, ANameEndingInADotOrBlankIsRefusedAndItsPlainTwinUntouched) {
  TempFolder root;
  MakeFile(root / L"a", "never chosen");
  const ProgramResult run =
      Shred(L"--json " + testing::QuotedArgument(root / L"a.") + L" " + testing::QuotedArgument(root / L"a ") + L" " +
            testing::QuotedArgument(root / L"a\\..\\a."));
  EXPECT_EQ(run.exitCode, 1u) << run.out;
  EXPECT_TRUE(Has(run.out, "{\"type\":\"failed\",\"path\":\"" + testing::JsonEscaped(root / L"a.") +
                               "\",\"reason\":\"a device name, or a name ending in a dot or blank\"}"))
      << run.out;
  EXPECT_TRUE(Has(run.out, "\"shredded\":0")) << run.out;
  EXPECT_EQ(ReadFileBytes(root / L"a"), "never chosen");
}

TEST(ShredCommand, MistakesInTheArgumentsAreUsageErrorsThatTouchNothing) {
  TempFolder root;
  MakeFile(root / L"a.txt", "keep");
  const std::wstring file = testing::QuotedArgument(root / L"a.txt");
  const std::pair<std::wstring, const char*> cases[] = {
      {L"", "shred needs at least one file or folder"},
      {L"--method fast " + file, "unknown method: fast"},
      {file + L" --method", "--method needs quick, safe or thorough"},
      {file + L" --force", "unexpected argument: --force"},
      {file + L" a.txt", "relative path: a.txt"},
      {file + L" C:a.txt", "relative path: C:a.txt"},
      {file + L" \\\\.\\C:\\a.txt", "device path"},
  };
  for (const auto& [arguments, problem] : cases) {
    const ProgramResult run = Shred(arguments);
    EXPECT_EQ(run.exitCode, 2u) << ToUtf8(arguments);
    EXPECT_TRUE(Has(run.err, problem)) << ToUtf8(arguments) << "\n" << run.err;
    EXPECT_TRUE(run.out.empty()) << ToUtf8(arguments);
  }
  EXPECT_EQ(ReadFileBytes(root / L"a.txt"), "keep");
}

TEST(ShredCommand, AFolderLinkMetInAFolderIsSkippedAndTheShredStillSucceeds) {
  const std::wstring folder = L"E:\\link-fixtures\\clean";
  if (GetFileAttributesW((folder + L"\\top-link").c_str()) == INVALID_FILE_ATTRIBUTES) {
    GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
  }
  MakeFile(folder + L"\\sub\\plain.txt", "12");
  const ProgramResult run = Shred(L"--json " + folder);
  EXPECT_EQ(run.exitCode, 0u) << run.out;
  for (const wchar_t* link : {L"\\top-link", L"\\sub\\nested-link"}) {
    EXPECT_TRUE(Has(run.out, "{\"type\":\"skipped\",\"path\":\"" + testing::JsonEscaped(folder + link) +
                                 "\",\"reason\":\"link\"}\n"))
        << run.out;
  }
  EXPECT_FALSE(Has(run.out, "\"type\":\"failed\"")) << run.out;
  EXPECT_TRUE(run.out.ends_with("{\"type\":\"summary\",\"files\":1,\"shredded\":1,\"failed\":0,\"bytes\":2}\n"))
      << run.out;
  EXPECT_FALSE(FileExists(folder + L"\\sub\\plain.txt"));
  EXPECT_EQ(ReadFileBytes(L"E:\\link-fixtures\\targets\\top\\canary.txt"), "canary top\n");
  EXPECT_EQ(ReadFileBytes(L"E:\\link-fixtures\\targets\\nested\\canary.txt"), "canary nested\n");
}

TEST(ShredCommand, AProtectedFolderOrAFolderLinkIsRefusedWholeAndNothingIsTouched) {
  LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();  // a failing rule would shred the drive
  TempFolder root;
  MakeFile(root / L"a.txt", "keep");
  MakeFile(L"C:\\lumenor-shred-canary.txt", "canary");
  std::vector<std::wstring> folders = {L"C:\\", L"c:/", L"C:\\windows\\..", L"E:\\.",
                                       testing::MachineGuard().ProtectedFolders().back()};
  if (GetFileAttributesW(L"E:\\link-fixtures\\clean\\top-link") != INVALID_FILE_ATTRIBUTES) {
    folders.push_back(L"E:\\link-fixtures\\clean\\top-link");
  }
  for (const std::wstring& folder : folders) {
    const ProgramResult run = Shred(testing::QuotedArgument(root / L"a.txt") + L" " + testing::QuotedArgument(folder));
    EXPECT_EQ(run.exitCode, 2u) << ToUtf8(folder);
    EXPECT_TRUE(Has(run.err, "protected folder: ") || Has(run.err, "link: ")) << ToUtf8(folder) << "\n" << run.err;
    EXPECT_EQ(ReadFileBytes(root / L"a.txt"), "keep") << ToUtf8(folder);
  }
  EXPECT_EQ(ReadFileBytes(L"C:\\lumenor-shred-canary.txt"), "canary");
  if (GetFileAttributesW(L"E:\\link-fixtures\\targets\\top\\canary.txt") != INVALID_FILE_ATTRIBUTES) {
    EXPECT_EQ(ReadFileBytes(L"E:\\link-fixtures\\targets\\top\\canary.txt"), "canary top\n");
  }
  DeleteFileW(L"C:\\lumenor-shred-canary.txt");
}

}  // namespace
}  // namespace lumenor
