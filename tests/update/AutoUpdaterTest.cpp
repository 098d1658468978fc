// The update check: how versions compare, and whole checks against a server on this
// machine: newer, equal, older and malformed versions, a file without the key, a missing
// file, no server at all, and a server that never answers.
#include "base/ModulePath.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TempFolder.h"
#include "update/AutoUpdater.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

using testing::LoopbackServer;

TEST(CompareVersions, ComparesUpToFourPlacesAndRefusesAnythingButDigits) {
  const struct {
    const wchar_t* a;
    const wchar_t* b;
    int expected;
  } cases[] = {
      {L"5.9.5.13", L"5.9.5.12", 1},
      {L"5.9.5.12", L"5.9.5.13", -1},
      {L"5.9.5.12", L"5.9.5.12", 0},
      {L"6", L"5.9.5.12", 1},
      {L"5.9", L"5.9.0.0", 0},
      {L"5.9.5.12.1", L"5.9.5.12", 0},
      {L"3.1", L"3.0.0.0", 1},
      {L"10.0", L"9.99", 1},
      {L"9b", L"1", -21},
      {L"1", L"9b", -21},
      {L"", L"1.0", -21},
      {L"1..2", L"1.0", -21},
      {L"1.2.", L"1.2", -21},
      {L" 1.2", L"1.2", -21},
      {L"-1", L"1", -21},
      {L"99999999999999", L"1", -21},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CompareVersions(c.a, c.b), c.expected)
        << ::testing::PrintToString(std::wstring(c.a)) << " against " << ::testing::PrintToString(std::wstring(c.b));
  }
}

TEST(IniValue, FindsTheKeyOfItsSectionWhateverTheCaseAndSpacing) {
  EXPECT_EQ(IniValue("[Program]\r\nVersion=3.2\r\n", L"Program", L"Version", L"x"), L"3.2");
  EXPECT_EQ(IniValue("\xEF\xBB\xBF[program]\nversion = 3.2.1 \n", L"Program", L"Version", L"x"), L"3.2.1");
  EXPECT_EQ(IniValue("[Other]\nVersion=9\n[Program]\nName=x\n", L"Program", L"Version", L"3.0.0.0"), L"3.0.0.0");
  EXPECT_EQ(IniValue("<html>404</html>", L"Program", L"Version", L"3.0.0.0"), L"3.0.0.0");
}

TEST(LocalVersion, IsTheVersionResourceShortenedWhenItsLastPartsAreZero) { EXPECT_EQ(LocalVersionText(), L"3.1"); }

class UpdateCheck : public ::testing::Test {
 protected:
  static std::string Description(const std::string& version) { return "[Program]\r\nVersion=" + version + "\r\n"; }
  static CAutoUpdater::Findings LookAt(const LoopbackServer& server) {
    CAutoUpdater updater;
    return updater.Look(server.Url() + L"/download/");
  }
};

TEST_F(UpdateCheck, ANewerVersionAsksAndTheAnswerDecides) {
  LoopbackServer server(LoopbackServer::Answer(Description("3.2.0.0")));
  ASSERT_TRUE(server.Listening());
  int asked = 0;
  CAutoUpdater updater;
  EXPECT_EQ(updater.CheckForUpdate(server.Url() + L"/download/", [&] { return ++asked, true; }), kUpdateAccepted);
  EXPECT_EQ(updater.CheckForUpdate(server.Url() + L"/download/", [&] { return ++asked, false; }), kUpdateDeclined);
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(testing::ReadFileBytes(ModuleFolder() + L"update.ini"), Description("3.2.0.0"))
      << "the description is kept beside the program";
}

TEST_F(UpdateCheck, EqualOlderMalformedOrMissingVersionsAreNoUpdate) {
  for (const std::string& body : {Description("3.1"), Description("3.1.0.0"), Description("3.0.9"), Description("3.2b"),
                                  Description(""), std::string("[Program]\r\nName=Lumenor\r\n")}) {
    LoopbackServer server(LoopbackServer::Answer(body));
    const CAutoUpdater::Findings findings = LookAt(server);
    EXPECT_EQ(findings.result, kUpdateCurrent) << body;
    EXPECT_EQ(findings.local, L"3.1");
  }
  LoopbackServer missing(LoopbackServer::Answer("<html>not here</html>", 404));
  const CAutoUpdater::Findings findings = LookAt(missing);
  EXPECT_EQ(findings.result, kUpdateCurrent) << "no file reads as the default version, which is older";
  EXPECT_EQ(findings.remote, L"3.0.0.0");
}

TEST_F(UpdateCheck, NoServerIsUnreachable) {
  int closedPort = 0;
  {
    LoopbackServer gone(LoopbackServer::Answer(""));
    closedPort = gone.Port();
  }
  CAutoUpdater updater;
  EXPECT_EQ(updater.Look(L"http://127.0.0.1:" + std::to_wstring(closedPort) + L"/download/").result,
            kUpdateUnreachable);
}

TEST_F(UpdateCheck, ASilentServerIsUnreachableWithinTheTimeout) {
  if (testing::RunningUnderWine()) {
    GTEST_SKIP() << "Wine's WinINet neither keeps the time-outs nor gives up when its session is closed";
  }
  LoopbackServer silent("", true);
  const auto start = GetTickCount64();
  EXPECT_EQ(LookAt(silent).result, kUpdateUnreachable);
  EXPECT_LT(GetTickCount64() - start, 30000u) << "the check gives up on its own";
}

}  // namespace
}  // namespace lumenor
