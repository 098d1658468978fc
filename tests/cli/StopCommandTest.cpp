// lumenor-cli stopped from its console: Ctrl+C (Ctrl+Break and the console closing reach
// the same handler) ends the file at hand, every line written is whole, the summary so
// far is printed, and the exit status is 130.
#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "base/TextEncoding.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::ProgramResult;

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The names in `folder`, in the order the file system lists them.
std::vector<std::wstring> EntriesOf(const std::wstring& folder) {
  std::vector<std::wstring> names;
  WIN32_FIND_DATAW entry{};
  const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return names;
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) names.push_back(entry.cFileName);
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  return names;
}

int Number(const std::string& line, const std::string& field) {
  std::smatch match;
  return std::regex_search(line, match, std::regex("\"" + field + "\":([0-9]+)")) ? std::stoi(match[1]) : -1;
}

TEST(StoppedCommand, CtrlCEndsAShredAtTheFileAtHandWithTheSummarySoFarAndStatus130) {
  testing::TempFolder root;
  constexpr int kFiles = 200;
  const std::string content(256 * 1024, 'x');
  for (int index = 0; index < kFiles; ++index) {
    testing::MakeFile(root / (L"f" + std::to_wstring(1000 + index) + L".bin"), content);
  }
  const std::wstring first = root / EntriesOf(root.Path()).front();
  bool delivered = false;
  const ProgramResult run = testing::RunProgramAndPressCtrlC(
      testing::CliProgram(), L"shred --method thorough --json " + testing::QuotedArgument(root.Path()),
      [&] { return !FileExists(first); }, delivered);
  ASSERT_TRUE(run.finished);
  ASSERT_TRUE(delivered) << "the console took no Ctrl+C: " << GetLastError();
  EXPECT_EQ(run.exitCode, 130u) << run.err;

  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), static_cast<size_t>(kFiles + 1)) << run.out;
  int shredded = 0;
  int stopped = 0;
  for (size_t index = 0; index + 1 < lines.size(); ++index) {
    const std::string& line = lines[index];
    ASSERT_TRUE(line.starts_with("{\"type\":") && line.ends_with("}")) << "a whole line: " << line;
    const size_t pathAt = line.find("\"path\":\"") + 8;
    std::string path = line.substr(pathAt, line.find('"', pathAt) - pathAt);
    path = std::regex_replace(path, std::regex("\\\\\\\\"), "\\");
    const std::wstring file = FromUtf8(path);
    if (line.starts_with("{\"type\":\"shredded\"")) {
      ++shredded;
      EXPECT_FALSE(FileExists(file)) << path;
    } else if (line.find("\"reason\":\"stopped\"") != std::string::npos) {
      ++stopped;
      EXPECT_TRUE(FileExists(file)) << "the file the stop came upon stays, closed: " << path;
    } else {
      EXPECT_NE(line.find("\"reason\":\"not reached: the job ended at an earlier file\""), std::string::npos) << line;
      EXPECT_EQ(testing::ReadFileBytes(file), content) << "untouched: " << path;
    }
  }
  EXPECT_GE(shredded, 1);
  EXPECT_LT(shredded, kFiles) << "stopped before the end";
  EXPECT_EQ(stopped, 1);
  EXPECT_EQ(lines.back(), "{\"type\":\"summary\",\"files\":" + std::to_string(kFiles) + ",\"shredded\":" +
                              std::to_string(shredded) + ",\"failed\":" + std::to_string(kFiles - shredded) +
                              ",\"bytes\":" + std::to_string(shredded * 262144) + "}");
}

TEST(StoppedCommand, CtrlCEndsAJunkRemovalBetweenFilesWithTheSummarySoFarAndStatus130) {
  testing::TempFolder root;
  constexpr int kFiles = 2000;
  for (int index = 0; index < kFiles; ++index) testing::MakeFile(root / (L"f" + std::to_wstring(index) + L".tmp"));
  const std::wstring first = root / EntriesOf(root.Path()).front();  // the walk lists, and deletes, in this order
  bool delivered = false;
  const ProgramResult run = testing::RunProgramAndPressCtrlC(
      testing::CliProgram(), L"junk --json --delete --folder " + testing::QuotedArgument(root.Path()),
      [&] { return !FileExists(first); }, delivered);
  ASSERT_TRUE(run.finished);
  ASSERT_TRUE(delivered) << "the console took no Ctrl+C: " << GetLastError();
  EXPECT_EQ(run.exitCode, 130u) << run.err;

  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_FALSE(lines.empty());
  const std::string& summary = lines.back();
  ASSERT_TRUE(summary.starts_with("{\"type\":\"summary\",")) << summary;
  EXPECT_EQ(Number(summary, "files"), kFiles) << "the walk had ended: " << summary;
  const int deleted = Number(summary, "deleted");
  EXPECT_GE(deleted, 1) << summary;
  EXPECT_LT(deleted, kFiles) << "stopped before the end: " << summary;
  EXPECT_EQ(Number(summary, "failed"), 0) << summary;
  EXPECT_EQ(EntriesOf(root.Path()).size(), static_cast<size_t>(kFiles - deleted));
}

}  // namespace
}  // namespace lumenor
