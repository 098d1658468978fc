// The community rules' update against a server on this machine: a whole file with entries
// replaces winapp2.ini; a cut-off download, an error status, a web page, an empty file,
// a file without entries, no server and a stop leave the old file in place, each with its
// reason in plain words. Also where the address comes from.
#include "tests/support/DestructiveTests.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TempFolder.h"
#include "update/CommunityRules.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <thread>

namespace lumenor {
namespace {

using testing::LoopbackServer;

constexpr char kOldRules[] = "; Version: 250101\r\n[Old *]\r\nLangSecRef=3021\r\nRegKey1=HKCU\\Software\\Old\r\n";
constexpr char kNewRules[] =
    "; Version: 260801\r\n"
    "[First *]\r\nLangSecRef=3024\r\nFileKey1=%AppData%\\First|*.log\r\n\r\n"
    "[Second *]\r\nSection=Games\r\nRegKey1=HKCU\\Software\\Second\r\n\r\n"
    "[Faulty *]\r\nLangSecRef=3021\r\nFileKey1=%Package\\LocalCache|*.log\r\nFileKey2=%AppData%\\Faulty|*.tmp\r\n";

std::string Response(const std::string& headers, const std::string& body) {
  return "HTTP/1.1 200 OK\r\n" + headers + "Connection: close\r\n\r\n" + body;
}

class CommunityRulesUpdateTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(testing::WriteFileBytes(target_, kOldRules)); }

  CommunityRulesUpdate UpdateFrom(const LoopbackServer& server) const {
    EXPECT_TRUE(server.Listening());
    return UpdateCommunityRules(server.Url() + L"/Non-CCleaner/Winapp2.ini", target_);
  }

  // The old file whole, and nothing left beside it.
  void ExpectOldFileKept() const {
    EXPECT_EQ(testing::ReadFileBytes(target_), kOldRules);
    EXPECT_FALSE(testing::FileExists(target_ + L".download"));
  }

  testing::TempFolder folder_;
  const std::wstring target_ = folder_ / L"winapp2.ini";
};

TEST_F(CommunityRulesUpdateTest, AWholeFileWithEntriesReplacesTheOldOne) {
  LoopbackServer server(LoopbackServer::Answer(kNewRules));
  const CommunityRulesUpdate update = UpdateFrom(server);
  EXPECT_TRUE(update.replaced) << ::testing::PrintToString(update.reason);
  EXPECT_EQ(update.reason, L"");
  EXPECT_EQ(update.entries, 3);
  EXPECT_EQ(update.problems, 1) << "the %Package key, passed over";
  EXPECT_EQ(update.version, L"260801");
  EXPECT_EQ(testing::ReadFileBytes(target_), kNewRules);
  EXPECT_FALSE(testing::FileExists(target_ + L".download"));
}

TEST_F(CommunityRulesUpdateTest, AFirstDownloadNeedsNoOldFile) {
  ASSERT_TRUE(DeleteFileW(target_.c_str()));
  LoopbackServer server(LoopbackServer::Answer(kNewRules));
  EXPECT_TRUE(UpdateFrom(server).replaced);
  EXPECT_EQ(testing::ReadFileBytes(target_), kNewRules);
}

TEST_F(CommunityRulesUpdateTest, ACutOffDownloadLeavesTheOldFile) {
  const std::string body = kNewRules;
  const std::string half = body.substr(0, body.size() / 2);
  LoopbackServer server(Response("Content-Length: " + std::to_string(body.size()) + "\r\n", half));
  const CommunityRulesUpdate update = UpdateFrom(server);
  EXPECT_FALSE(update.replaced);
  // WinINet either sees the short body end or calls the early close a failure.
  const std::wstring arrived = std::to_wstring(half.size());
  EXPECT_TRUE(update.reason == L"cut off: " + arrived + L" of " + std::to_wstring(body.size()) + L" bytes arrived" ||
              update.reason == L"the connection broke off: cut off after " + arrived + L" bytes")
      << ::testing::PrintToString(update.reason);
  ExpectOldFileKept();
}

TEST_F(CommunityRulesUpdateTest, AFileCutInALineWithoutAnnouncedLengthLeavesTheOldFile) {
  const std::string body = kNewRules;
  LoopbackServer server(Response("", body.substr(0, body.size() - 10)));
  const CommunityRulesUpdate update = UpdateFrom(server);
  EXPECT_FALSE(update.replaced);
  EXPECT_EQ(update.reason, L"cut off: the file ends in the middle of a line");
  ExpectOldFileKept();

  LoopbackServer whole(Response("", body));
  EXPECT_TRUE(UpdateFrom(whole).replaced) << "a whole file needs no announced length";
}

TEST_F(CommunityRulesUpdateTest, AnErrorStatusLeavesTheOldFile) {
  LoopbackServer server(LoopbackServer::Answer("<html><body>404: Not Found</body></html>", 404));
  const CommunityRulesUpdate update = UpdateFrom(server);
  EXPECT_FALSE(update.replaced);
  EXPECT_EQ(update.reason, L"the server answered with HTTP status 404");
  ExpectOldFileKept();
}

TEST_F(CommunityRulesUpdateTest, AWebPageLeavesTheOldFileWhateverItsType) {
  const std::string page = "<!DOCTYPE html>\n<html><head><title>Sign in</title></head><body>[x]</body></html>\n";
  for (const std::string& headers :
       {std::string("Content-Type: text/html; charset=utf-8\r\n"), std::string("Content-Type: text/plain\r\n")}) {
    LoopbackServer server(Response(headers + "Content-Length: " + std::to_string(page.size()) + "\r\n", page));
    const CommunityRulesUpdate update = UpdateFrom(server);
    EXPECT_FALSE(update.replaced) << headers;
    EXPECT_EQ(update.reason, L"the server sent a web page (HTML), not rules") << headers;
    ExpectOldFileKept();
  }
}

TEST_F(CommunityRulesUpdateTest, AnEmptyFileOrOneWithoutEntriesLeavesTheOldFile) {
  LoopbackServer empty(LoopbackServer::Answer(""));
  CommunityRulesUpdate update = UpdateFrom(empty);
  EXPECT_FALSE(update.replaced);
  EXPECT_EQ(update.reason, L"the downloaded file is empty");
  ExpectOldFileKept();

  LoopbackServer commentsOnly(LoopbackServer::Answer("; Version: 260801\r\n; nothing else\r\n"));
  update = UpdateFrom(commentsOnly);
  EXPECT_FALSE(update.replaced);
  EXPECT_EQ(update.reason, L"the file holds no usable winapp2.ini entries");
  ExpectOldFileKept();
}

TEST_F(CommunityRulesUpdateTest, NoServerOrAnAddressOfAnotherKindLeavesTheOldFile) {
  int closedPort = 0;
  {
    LoopbackServer gone(LoopbackServer::Answer(""));
    closedPort = gone.Port();
  }
  CommunityRulesUpdate update =
      UpdateCommunityRules(L"http://127.0.0.1:" + std::to_wstring(closedPort) + L"/Winapp2.ini", target_);
  EXPECT_FALSE(update.replaced);
  EXPECT_EQ(update.reason.rfind(L"connection failed", 0), 0u) << ::testing::PrintToString(update.reason);
  ExpectOldFileKept();

  for (const wchar_t* address : {L"ftp://127.0.0.1/Winapp2.ini", L"C:\\Winapp2.ini", L""}) {
    update = UpdateCommunityRules(address, target_);
    EXPECT_FALSE(update.replaced);
    EXPECT_EQ(update.reason, L"the address \"" + std::wstring(address) + L"\" does not start with http:// or https://");
  }
  ExpectOldFileKept();
}

TEST_F(CommunityRulesUpdateTest, AStopLeavesTheOldFile) {
  LoopbackServer server(LoopbackServer::Answer(kNewRules));
  StopSignal stop;
  stop.Request();
  const CommunityRulesUpdate update = UpdateCommunityRules(server.Url() + L"/Winapp2.ini", target_, StopToken(&stop));
  EXPECT_FALSE(update.replaced);
  EXPECT_EQ(update.reason, L"stopped before the download was complete");
  ExpectOldFileKept();
}

TEST_F(CommunityRulesUpdateTest, AStopEndsTheWaitForASilentServer) {
  if (testing::RunningUnderWine()) {
    GTEST_SKIP() << "Wine's WinINet neither keeps the time-outs nor gives up when its session is closed";
  }
  LoopbackServer silent("", true);
  StopSignal stop;
  std::thread stopper([&stop] {
    Sleep(300);
    stop.Request();
  });
  const ULONGLONG start = GetTickCount64();
  const CommunityRulesUpdate update = UpdateCommunityRules(silent.Url() + L"/Winapp2.ini", target_, StopToken(&stop));
  stopper.join();
  EXPECT_LT(GetTickCount64() - start, 5000u);
  EXPECT_FALSE(update.replaced);
  ExpectOldFileKept();
}

TEST(CommunityRulesAddress, IsTheSettingOrTheProjectsOwnFile) {
  testing::TempFolder folder;
  const CIniFileRW settings = CIniFileRW::AtPath(folder / L"setting.ini");
  EXPECT_EQ(CommunityRulesAddress(settings), kCommunityRulesDefaultAddress) << "no file";
  ASSERT_TRUE(testing::WriteFileBytes(settings.Path(), "[CommunityRules]\r\nAddress=   \r\n"));
  EXPECT_EQ(CommunityRulesAddress(settings), kCommunityRulesDefaultAddress) << "a blank address";
  ASSERT_TRUE(testing::WriteFileBytes(settings.Path(),
                                      "[CommunityRules]\r\nAddress= https://example.org/rules/Winapp2.ini\r\n"));
  EXPECT_EQ(CommunityRulesAddress(settings), L"https://example.org/rules/Winapp2.ini");
}

}  // namespace
}  // namespace lumenor
