// The update check as the main window runs it: at start when the settings ask for it,
// from the "Update" button and from the settings page's "Check Update", against a server
// the test runs on this machine.
#include "app/DlgOptions.h"
#include "base/ModulePath.h"
#include "res/resource.h"
#include "tests/shell/ShellTestSupport.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace lumenor {
namespace {

using testing::LoopbackServer;

std::string Description(const std::string& version) {
  return LoopbackServer::Answer("[Program]\r\nVersion=" + version + "\r\n");
}

class UpdateButton : public testing::MainWindowTest {
 protected:
  void TearDown() override {
    MainWindowTest::TearDown();
    (void)DeleteFileW(settings_.c_str());
  }
  // Opens the main window with "Automaticly update" as given, the site at `server`.
  void OpenAgainst(const LoopbackServer& server, int automaticUpdate) {
    ASSERT_TRUE(server.Listening());
    ASSERT_TRUE(SetEnvironmentVariableW(kMakerSiteVariable, server.Url().c_str()));
    ASSERT_TRUE(testing::WriteFileBytes(
        settings_, "[General Settings]\r\nAutomaticly update=" + std::to_string(automaticUpdate) + "\r\n"));
    Open();
  }
  bool CheckEnded() {
    return PumpUntil([this] { return !Window().UpdateCheck().Running(); });
  }

  const std::wstring settings_ = ModuleFolder() + L"setting.ini";
};

TEST_F(UpdateButton, ANewerVersionAsksAndOpensTheHomePageOnlyOnOk) {
  LoopbackServer server(Description("3.2.0.0"));
  OpenAgainst(server, 0);
  EXPECT_FALSE(Window().UpdateCheck().Running()) << "no check at start while the setting is off";

  answer_ = IDOK;
  Command(IDC_MAIN_UPDATE);
  ASSERT_TRUE(CheckEnded());
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(messageBoxes_[0].text, L"An update is now available. Proceed with the update?");
  EXPECT_EQ(messageBoxes_[0].caption, L"Lumenor");
  EXPECT_EQ(messageBoxes_[0].type, static_cast<UINT>(MB_OKCANCEL | MB_ICONQUESTION));
  ASSERT_EQ(opened_.size(), 1u);
  EXPECT_EQ(opened_[0].target, server.Url());
  EXPECT_EQ(opened_[0].showCommand, SW_SHOW);

  answer_ = IDCANCEL;
  Command(IDC_MAIN_UPDATE);
  ASSERT_TRUE(CheckEnded());
  EXPECT_EQ(messageBoxes_.size(), 2u);
  EXPECT_EQ(opened_.size(), 1u) << "Cancel opens nothing";
}

TEST_F(UpdateButton, TheCheckAtStartSpeaksOnlyOfANewerVersion) {
  {
    LoopbackServer same(Description("3.1.0.0"));
    OpenAgainst(same, 1);
    ASSERT_TRUE(CheckEnded());
    EXPECT_EQ(same.Requests(), 1);
    EXPECT_TRUE(messageBoxes_.empty()) << "an up-to-date program says nothing at start";
    window_.reset();
  }
  LoopbackServer newer(Description("3.1.0.1"));
  answer_ = IDOK;
  OpenAgainst(newer, 1);
  ASSERT_TRUE(CheckEnded());
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(messageBoxes_[0].text, L"An update is now available. Proceed with the update?");
  ASSERT_EQ(opened_.size(), 1u);
  EXPECT_EQ(opened_[0].target, newer.Url());
}

TEST_F(UpdateButton, ButtonsReportAnUpToDateProgramAndAFailedConnection) {
  {
    LoopbackServer same(Description("3.1"));
    OpenAgainst(same, 0);
    SendMessageW(Window().OptionsPage().Handle(), WM_COMMAND, IDC_OPTIONS_CHECK_UPDATE, 0);  // "Check Update"
    ASSERT_TRUE(CheckEnded());
    ASSERT_EQ(messageBoxes_.size(), 1u);
    EXPECT_EQ(messageBoxes_[0].text, L"There are no updates available at this time.\n Your Lumenor is up-to-date.");
    EXPECT_EQ(messageBoxes_[0].type, static_cast<UINT>(MB_OK | MB_ICONINFORMATION));
  }
  int closedPort = 0;
  {
    LoopbackServer gone(LoopbackServer::Answer(""));
    closedPort = gone.Port();
  }
  ASSERT_TRUE(
      SetEnvironmentVariableW(kMakerSiteVariable, (L"http://127.0.0.1:" + std::to_wstring(closedPort)).c_str()));
  Command(IDC_MAIN_UPDATE);
  ASSERT_TRUE(CheckEnded());
  ASSERT_EQ(messageBoxes_.size(), 2u);
  EXPECT_EQ(messageBoxes_[1].text, L"Internet connection failed. ");
  EXPECT_EQ(messageBoxes_[1].caption, L"Lumenor");
  EXPECT_EQ(messageBoxes_[1].type, static_cast<UINT>(MB_OK | MB_ICONWARNING));
  EXPECT_TRUE(opened_.empty());
}

TEST_F(UpdateButton, AServerThatNeverAnswersHoldsNeitherTheWindowNorASecondCheck) {
  LoopbackServer silent("", true);
  const ULONGLONG start = GetTickCount64();
  OpenAgainst(silent, 1);
  EXPECT_LT(GetTickCount64() - start, 5000u) << "the window does not wait for the site";
  ASSERT_TRUE(PumpUntil([&] { return silent.Requests() == 1; }));
  EXPECT_TRUE(Window().IsVisible());

  Command(ID_TRAY_JUNK);
  EXPECT_TRUE(Window().JunkPage().IsVisible()) << "the window takes commands while the check waits";
  Command(IDC_MAIN_UPDATE);
  Command(IDC_MAIN_UPDATE);
  EXPECT_TRUE(Window().UpdateCheck().Running());
  (void)PumpUntil([] { return false; }, 300);
  EXPECT_EQ(silent.Requests(), 1) << "clicks while a check runs start no other";
  EXPECT_TRUE(messageBoxes_.empty());
  window_.reset();  // the waiting check is left behind; its answer has nowhere to go
}

TEST_F(UpdateButton, ACheckWhoseThreadCannotStartSaysSoWhenAskedAndTheNextClickTriesAgain) {
  LoopbackServer server(Description("3.1"));
  OpenAgainst(server, 0);
  Window().UpdateCheck().SetThreadStarter(testing::FailingThreadStarter());
  EXPECT_FALSE(Window().UpdateCheck().Start(UpdateCheckRunner::Mode::kSilent));
  EXPECT_TRUE(messageBoxes_.empty()) << "the silent check says nothing";
  Command(IDC_MAIN_UPDATE);
  EXPECT_FALSE(Window().UpdateCheck().Running());
  ASSERT_EQ(messageBoxes_.size(), 1u);
  EXPECT_EQ(messageBoxes_[0].text,
            L"Lumenor could not start this task: Windows has no room for another thread. Nothing was changed.");
  EXPECT_EQ(messageBoxes_[0].type, static_cast<UINT>(MB_OK | MB_ICONWARNING));
  EXPECT_EQ(server.Requests(), 0);

  Window().UpdateCheck().SetThreadStarter(controls::StartSystemThread);
  Command(IDC_MAIN_UPDATE);
  ASSERT_TRUE(CheckEnded());
  ASSERT_EQ(messageBoxes_.size(), 2u);
  EXPECT_EQ(messageBoxes_[1].text, L"There are no updates available at this time.\n Your Lumenor is up-to-date.");
}

}  // namespace
}  // namespace lumenor
