// lumenor-cli as a user runs it: the catalogue listing and its usage errors.
#include "tests/support/ChildProcess.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <set>

namespace lumenor {
namespace {

const std::wstring& CliProgram() {
  static const std::wstring program = testing::ProgramBesideTest(L"lumenor-cli.exe");
  return program;
}

// The fixed catalogue comes first, unchanged; the built-in rules' categories follow with
// whatever applications the test machine has (earlier tests leave some behind).
TEST(CliList, PrintsIdLevelAndNameOfEveryNodeInCatalogueOrder) {
  std::string expected;
  for (const std::string& line : testing::SplitLines(testing::LoadTestData(IDR_EXPECTED_CATALOGUE))) {
    const std::vector<std::string> fields = testing::SplitTabs(line);
    ASSERT_EQ(fields.size(), 4u) << line;
    expected += fields[0] + "\t" + fields[1] + "\t" + fields[3] + "\n";
  }
  const testing::ProgramResult result = testing::RunProgram(CliProgram(), L"list");
  ASSERT_TRUE(result.finished);
  EXPECT_EQ(result.exitCode, 0u) << result.err;
  ASSERT_GE(result.out.size(), expected.size()) << result.out;
  EXPECT_EQ(result.out.substr(0, expected.size()), expected);
  const std::set<std::string> ruleCategories = {"Web Browsers Today", "Windows 10 and 11", "Applications Today"};
  for (const std::string& line : testing::SplitLines(result.out.substr(expected.size()))) {
    const std::vector<std::string> fields = testing::SplitTabs(line);
    ASSERT_EQ(fields.size(), 3u) << line;
    if (fields[1] == "0") {
      EXPECT_EQ(ruleCategories.count(fields[2]), 1u) << line;
    }
  }
  EXPECT_EQ(result.err, "");
}

TEST(CliUsage, MistakesExitWithTwoAndNameTheBadArgument) {
  struct Case {
    const wchar_t* arguments;
    const char* named;
  };
  for (const Case& mistake : {Case{L"", "no command"}, Case{L"lsit", "lsit"}, Case{L"list --json-ish", "--json-ish"}}) {
    const testing::ProgramResult result = testing::RunProgram(CliProgram(), mistake.arguments);
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(result.exitCode, 2u) << mistake.named;
    EXPECT_EQ(result.out, "") << mistake.named;
    EXPECT_NE(result.err.find(mistake.named), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("usage: lumenor-cli"), std::string::npos) << result.err;
  }
}

TEST(CliUsage, HelpGoesToStandardOutput) {
  const testing::ProgramResult result = testing::RunProgram(CliProgram(), L"--help");
  ASSERT_TRUE(result.finished);
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_NE(result.out.find("list"), std::string::npos);
}

}  // namespace
}  // namespace lumenor
