// lumenor-cli rules update end to end, against a server on this machine: the line it
// prints, plain and as JSON, its exit status, winapp2.ini beside the program replaced or
// kept, and the arguments it refuses.
#include "tests/support/ChildProcess.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace lumenor {
namespace {

using testing::LoopbackServer;
using testing::ProgramResult;

constexpr char kRules[] =
    "; Version: 260801\r\n"
    "[First *]\r\nLangSecRef=3024\r\nFileKey1=%AppData%\\First|*.log\r\n\r\n"
    "[Second *]\r\nSection=Games\r\nRegKey1=HKCU\\Software\\Second\r\nRegKey2=HKXX\\Nowhere\r\n";

ProgramResult Rules(const std::wstring& arguments) {
  ProgramResult result = testing::RunProgram(testing::CliProgram(), L"rules " + arguments);
  EXPECT_TRUE(result.finished);
  return result;
}

// The file beside lumenor-cli.exe, as the program finds it; none before and after each test.
class CliRulesUpdate : public ::testing::Test {
 protected:
  void SetUp() override { (void)DeleteFileW(rulesFile_.c_str()); }  // left by an earlier run, if any
  void TearDown() override { EXPECT_TRUE(DeleteFileW(rulesFile_.c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND); }

  const std::wstring rulesFile_ = testing::ProgramBesideTest(L"winapp2.ini");
};

TEST_F(CliRulesUpdate, AGoodFileIsPutBesideTheProgramAndReported) {
  LoopbackServer server(LoopbackServer::Answer(kRules));
  ASSERT_TRUE(server.Listening());
  const ProgramResult json = Rules(L"update --json --url " + server.Url() + L"/Winapp2.ini");
  EXPECT_EQ(json.exitCode, 0u) << json.err;
  EXPECT_EQ(json.out,
            "{\"type\":\"rules-update\",\"result\":\"replaced\",\"entries\":2,\"version\":\"260801\","
            "\"problems\":1}\n");
  EXPECT_EQ(testing::ReadFileBytes(rulesFile_), kRules);

  const ProgramResult plain = Rules(L"update --url " + server.Url() + L"/Winapp2.ini");
  EXPECT_EQ(plain.exitCode, 0u) << plain.err;
  EXPECT_EQ(plain.out, "winapp2.ini replaced: 2 entries, version 260801; 1 fault left out\n");
}

TEST_F(CliRulesUpdate, AFailedDownloadKeepsTheFileExitsWithOneAndSaysWhy) {
  ASSERT_TRUE(testing::WriteFileBytes(rulesFile_, kRules));
  LoopbackServer missing(LoopbackServer::Answer("Not Found", 404));
  const ProgramResult json = Rules(L"update --url " + missing.Url() + L"/Winapp2.ini --json");
  EXPECT_EQ(json.exitCode, 1u);
  EXPECT_EQ(json.out,
            "{\"type\":\"rules-update\",\"result\":\"kept\",\"reason\":\"the server answered with HTTP "
            "status 404\"}\n");
  LoopbackServer page(LoopbackServer::Answer("<html>\"Sign in\"</html>"));
  const ProgramResult plain = Rules(L"update --url " + page.Url() + L"/Winapp2.ini");
  EXPECT_EQ(plain.exitCode, 1u);
  EXPECT_EQ(plain.out, "winapp2.ini kept: the server sent a web page (HTML), not rules\n");
  EXPECT_EQ(testing::ReadFileBytes(rulesFile_), kRules);
}

TEST(CliRules, MistakesExitWithTwoAndNameTheBadArgument) {
  struct Case {
    const wchar_t* arguments;
    const char* named;
  };
  for (const Case& mistake :
       {Case{L"", "no sub-command"}, Case{L"upgrade", "unknown sub-command: upgrade"},
        Case{L"update --url", "--url needs an address"}, Case{L"update --jsn", "unexpected argument: --jsn"}}) {
    const ProgramResult result = Rules(mistake.arguments);
    EXPECT_EQ(result.exitCode, 2u) << mistake.named;
    EXPECT_EQ(result.out, "") << mistake.named;
    EXPECT_NE(result.err.find(mistake.named), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("rules update [--url URL] [--json]"), std::string::npos) << result.err;
  }
}

}  // namespace
}  // namespace lumenor
