// "Community rules" on the settings page: the line telling the file in use, and "Update
// community rules" against a server on this machine, named by "setting.ini" as a user
// would: a good file replaces the old one and the line follows, a refused one leaves it
// with the reason told, and the button rests while the download runs or when no worker
// could start.
#include "app/DlgOptions.h"
#include "base/ModulePath.h"
#include "res/resource.h"
#include "rules/Winapp2Reader.h"
#include "tests/shell/ShellTestSupport.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ThreadStarters.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <thread>

namespace lumenor {
namespace {

using testing::LoopbackServer;

constexpr char kOldRules[] =
    "; Version: 260730\r\n"
    "[Old *]\r\nLangSecRef=3021\r\nRegKey1=HKCU\\Software\\Old\r\n\r\n"
    "[Older *]\r\nLangSecRef=3021\r\nRegKey1=HKCU\\Software\\Older\r\n";
constexpr char kNewRules[] =
    "; Version: 260801\r\n"
    "[First *]\r\nLangSecRef=3024\r\nFileKey1=%AppData%\\First|*.log\r\n\r\n"
    "[Second *]\r\nSection=Games\r\nRegKey1=HKCU\\Software\\Second\r\n\r\n"
    "[Third *]\r\nLangSecRef=3021\r\nFileKey1=%AppData%\\Third|*.tmp\r\n";

constexpr wchar_t kUpdated[] = L"The community rules were updated: 3 entries. They are used from the next start.";
constexpr UINT kWarning = MB_OK | MB_ICONWARNING;

class CommunityRulesPage : public testing::MainWindowTest {
 protected:
  void TearDown() override {
    MainWindowTest::TearDown();
    (void)DeleteFileW(settings_.c_str());  // the next test starts from the built-in defaults
  }

  // Opens the main window on the settings page, the address pointing at `server`, the
  // update writing into this test's folder, and start-up having read `rulesInUse` there.
  void OpenWith(const LoopbackServer& server, const char* rulesInUse) {
    ASSERT_TRUE(server.Listening());
    ASSERT_TRUE(testing::WriteFileBytes(
        settings_, "[CommunityRules]\r\nAddress=" + Narrow(server.Url()) + "/Non-CCleaner/Winapp2.ini\r\n"));
    std::optional<rules::Winapp2Counts> counts;
    if (rulesInUse != nullptr) {
      ASSERT_TRUE(testing::WriteFileBytes(target_, rulesInUse));
      counts = rules::ReadWinapp2(rulesInUse, L"winapp2.ini").counts;
    }
    Open();
    Window().SetCommunityRules(counts);
    Command(ID_TRAY_SETTINGS);
    Page().SetCommunityRulesFile(target_);
  }
  // Addresses and versions are ASCII.
  static std::string Narrow(const std::wstring& text) {
    std::string narrow;
    for (const wchar_t letter : text) narrow += static_cast<char>(letter);
    return narrow;
  }

  CDlgOptions& Page() { return Window().OptionsPage(); }
  HWND Button() { return GetDlgItem(Page().Handle(), IDC_OPTIONS_UPDATE_RULES); }
  bool ButtonUsable() { return IsWindowEnabled(Button()) != FALSE; }
  std::wstring Line() {
    wchar_t text[256] = {};
    GetDlgItemTextW(Page().Handle(), IDC_OPTIONS_COMMUNITY_RULES, text, 256);
    return text;
  }
  void ClickUpdate() {
    SendMessageW(Button(), BM_CLICK, 0, 0);
    Pump();
  }
  // Clicks "Update community rules" and waits for its end.
  void Update() {
    ClickUpdate();
    ASSERT_TRUE(PumpUntil([this] { return !Page().UpdatingRules(); }));
  }

  const std::wstring settings_ = ModuleFolder() + L"setting.ini";
  testing::TempFolder folder_;
  const std::wstring target_ = folder_ / L"winapp2.ini";
};

TEST_F(CommunityRulesPage, TellsTheDayAndEntriesOfTheFileInUseOrThatThereIsNone) {
  LoopbackServer server(LoopbackServer::Answer(kNewRules));
  OpenWith(server, nullptr);
  EXPECT_EQ(Line(), L"No community rules yet");
  EXPECT_TRUE(ButtonUsable());

  rules::Winapp2Counts counts;
  counts.version = L"260730";
  counts.entriesLoaded = 4065;
  Window().SetCommunityRules(counts);
  EXPECT_EQ(Line(), L"winapp2.ini of 2026-07-30, 4,065 entries");
  for (const wchar_t* version : {L"", L"261331", L"2607301", L"26O730"}) {
    counts.version = version;
    Window().SetCommunityRules(counts);
    EXPECT_EQ(Line(), L"winapp2.ini, 4,065 entries") << "a version that names no day: " << Narrow(version);
  }
  counts.entriesLoaded = 1;
  Window().SetCommunityRules(counts);
  EXPECT_EQ(Line(), L"winapp2.ini, 1 entry");
  Window().SetCommunityRules(std::nullopt);
  EXPECT_EQ(Line(), L"No community rules yet");
  EXPECT_EQ(server.Requests(), 0) << "showing the page downloads nothing";
}

TEST_F(CommunityRulesPage, AGoodDownloadReplacesTheFileAndTheLineTellsTheNewOne) {
  LoopbackServer server(LoopbackServer::Answer(kNewRules));
  OpenWith(server, kOldRules);
  EXPECT_EQ(Line(), L"winapp2.ini of 2026-07-30, 2 entries") << "as start-up read it";
  Update();
  EXPECT_EQ(server.Requests(), 1);
  EXPECT_EQ(testing::ReadFileBytes(target_), kNewRules);
  EXPECT_EQ(Line(), L"winapp2.ini of 2026-08-01, 3 entries");
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(messageBoxes_[0].text, kUpdated);
  EXPECT_EQ(messageBoxes_[0].caption, L"Lumenor");
  EXPECT_EQ(messageBoxes_[0].type, static_cast<UINT>(MB_OK | MB_ICONINFORMATION));
  EXPECT_TRUE(ButtonUsable());
}

TEST_F(CommunityRulesPage, ARefusedDownloadKeepsTheFileAndSaysWhy) {
  LoopbackServer missing(LoopbackServer::Answer("<html><body>404: Not Found</body></html>", 404));
  OpenWith(missing, kOldRules);
  Update();
  EXPECT_EQ(testing::ReadFileBytes(target_), kOldRules);
  EXPECT_FALSE(testing::FileExists(target_ + L".download"));
  EXPECT_EQ(Line(), L"winapp2.ini of 2026-07-30, 2 entries");
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(messageBoxes_[0].text,
            L"The community rules were not updated: the server answered with HTTP status 404. The file you have "
            L"stays in use.");
  EXPECT_EQ(messageBoxes_[0].type, kWarning);
  EXPECT_TRUE(ButtonUsable());

  // Without a file in use there is none to keep.
  ASSERT_TRUE(DeleteFileW(target_.c_str()));
  Window().SetCommunityRules(std::nullopt);
  Update();
  ASSERT_EQ(messageBoxes_.size(), 2u);
  EXPECT_EQ(messageBoxes_[1].text,
            L"The community rules could not be downloaded: the server answered with HTTP status 404.");
  EXPECT_FALSE(testing::FileExists(target_));
  EXPECT_EQ(Line(), L"No community rules yet");
}

TEST_F(CommunityRulesPage, TheButtonRestsWhileTheDownloadRuns) {
  LoopbackServer server(LoopbackServer::Answer(kNewRules));
  server.Hold();
  OpenWith(server, kOldRules);
  ClickUpdate();
  ASSERT_TRUE(PumpUntil([&server] { return server.Requests() == 1; }));
  EXPECT_TRUE(Page().UpdatingRules());
  EXPECT_FALSE(ButtonUsable());
  EXPECT_FALSE(Page().StartRulesUpdate()) << "one download at a time";
  Pump();
  EXPECT_EQ(server.Requests(), 1);
  EXPECT_TRUE(messageBoxes_.empty());

  server.Release();
  ASSERT_TRUE(PumpUntil([this] { return !Page().UpdatingRules(); }));
  EXPECT_TRUE(ButtonUsable());
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(messageBoxes_[0].text, kUpdated);
  EXPECT_EQ(testing::ReadFileBytes(target_), kNewRules);
}

TEST_F(CommunityRulesPage, AWorkerThatCannotStartLeavesTheButtonUsableAndSaysSo) {
  LoopbackServer server(LoopbackServer::Answer(kNewRules));
  OpenWith(server, kOldRules);
  Page().SetThreadStarter(testing::FailingThreadStarter());
  ClickUpdate();
  EXPECT_FALSE(Page().UpdatingRules());
  EXPECT_TRUE(ButtonUsable());
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(messageBoxes_[0].text,
            L"Lumenor could not start this task: Windows has no room for another thread. Nothing was changed.");
  EXPECT_EQ(messageBoxes_[0].type, kWarning);
  EXPECT_EQ(server.Requests(), 0);
  EXPECT_EQ(testing::ReadFileBytes(target_), kOldRules);

  Page().SetThreadStarter(controls::StartSystemThread);
  Update();
  EXPECT_EQ(testing::ReadFileBytes(target_), kNewRules) << "the next click tries again";
}

TEST_F(CommunityRulesPage, ClosingTheWindowMidDownloadStopsItAndKeepsTheOldFile) {
  LoopbackServer server(LoopbackServer::Answer(kNewRules));
  server.Hold();
  OpenWith(server, kOldRules);
  ClickUpdate();
  ASSERT_TRUE(PumpUntil([&server] { return server.Requests() == 1; }));
  // Where the system's Internet functions cannot be interrupted, the answer ends the wait.
  std::thread answer([&server] {
    Sleep(300);
    server.Release();
  });
  window_.reset();
  answer.join();
  EXPECT_EQ(testing::ReadFileBytes(target_), kOldRules);
  EXPECT_FALSE(testing::FileExists(target_ + L".download"));
  EXPECT_TRUE(messageBoxes_.empty()) << "nobody is left to tell";
}

}  // namespace
}  // namespace lumenor
