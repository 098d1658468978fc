// lumenor-cli as a user runs it: the catalogue listing and its usage errors.
#include "tests/support/ChildProcess.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

const std::wstring& CliProgram() {
  static const std::wstring program = testing::ProgramBesideTest(L"lumenor-cli.exe");
  return program;
}

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
  EXPECT_EQ(result.out, expected);
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
