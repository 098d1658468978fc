// The main window driven by messages: pages by tab, menu and private message; close and
// minimise; the "-A" start; paths handed to the shredder; the notification icon.
#include "app/DlgOptions.h"
#include "app/ShellMessages.h"
#include "base/ModulePath.h"
#include "junk/JunkCatalogue.h"
#include "res/resource.h"
#include "tests/shell/ShellTestSupport.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ThreadStarters.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

using testing::MainWindowTest;
using Pages = std::vector<bool>;

TEST_F(MainWindowTest, MissingSettingsFileIsWrittenWithDefaultsAndLoaded) {
  const std::wstring settings = ModuleFolder() + L"setting.ini";
  (void)DeleteFileW(settings.c_str());
  Open();
  EXPECT_TRUE(testing::FileExists(settings));
  const OptionValues& options = Window().OptionsInForce();
  EXPECT_EQ(options.exitOnClose, 0);
  EXPECT_EQ(options.trayOnClose, 1);
  EXPECT_EQ(options.scheduleOn, 0);
  EXPECT_EQ(options.hour, 9);
  EXPECT_EQ(options.minute, 38);
}

TEST_F(MainWindowTest, StartsOnThePrivacyPageWithTheIconInTheNotificationArea) {
  Open();
  EXPECT_EQ(Window().Tabs().Selected(), 0);
  EXPECT_EQ(VisiblePages(), (Pages{true, false, false, false}));
  EXPECT_TRUE(Window().HelpPage().IsVisible()) << "the help page lies underneath, always shown";
  const NOTIFYICONDATAW& icon = Window().Tray().Record();
  EXPECT_EQ(icon.uID, kTrayIconId);
  EXPECT_EQ(icon.uCallbackMessage, kTrayCallbackMessage);
  EXPECT_EQ(icon.uFlags, 7u);
  EXPECT_STREQ(icon.szTip, L"Lumenor");
}

TEST_F(MainWindowTest, MenuCommandsSelectTheirTabAndPage) {
  Open();
  struct Case {
    int command;
    int tab;
    Pages pages;
  };
  const Case cases[] = {
      {20001, 1, {false, true, false, false}}, {20003, 2, {false, false, true, false}},
      {20002, 3, {false, false, false, true}}, {20004, -1, {false, false, false, false}},
      {20000, 0, {true, false, false, false}},
  };
  for (const Case& c : cases) {
    Window().Show(SW_HIDE);
    Command(c.command);
    EXPECT_EQ(Window().Tabs().Selected(), c.tab) << "command " << c.command;
    EXPECT_EQ(VisiblePages(), c.pages) << "command " << c.command;
    EXPECT_TRUE(Window().IsVisible()) << "command " << c.command << " shows the window";
    EXPECT_TRUE(Window().HelpPage().IsVisible());
  }
  EXPECT_TRUE(opened_.empty());
}

TEST_F(MainWindowTest, EachPageShowsAboveTheHelpPageWhenFirstMade) {
  Open();
  const RECT& pages = Window().Frame().pages;
  const POINT middle{(pages.left + pages.right) / 2, (pages.top + pages.bottom) / 2};
  const struct {
    int command;
    HWND (*page)(CPcDlg&);
  } cases[] = {
      {20001, [](CPcDlg& window) { return window.JunkPage().Handle(); }},
      {20003, [](CPcDlg& window) { return window.ShredPage().Handle(); }},
      {20002, [](CPcDlg& window) { return window.OptionsPage().Handle(); }},
      {20000, [](CPcDlg& window) { return window.ScanPage().Handle(); }},
  };
  for (const auto& c : cases) {
    Command(c.command);
    EXPECT_EQ(ChildWindowFromPointEx(Main(), middle, CWP_SKIPINVISIBLE), c.page(Window())) << c.command;
  }
  Command(20004);
  EXPECT_EQ(ChildWindowFromPointEx(Main(), middle, CWP_SKIPINVISIBLE), Window().HelpPage().Handle());
}

TEST_F(MainWindowTest, ClickingATabShowsItsPageAndRefreshesTheJunkPage) {
  Open();
  const int resetsBefore = Window().JunkPage().Resets();
  HWND strip = GetDlgItem(Main(), 1100);
  const RECT junkTab = Window().Tabs().TabRect(1);
  SendMessageW(strip, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM((junkTab.left + junkTab.right) / 2, junkTab.bottom / 2));
  Pump();  // the strip posts the show-page message
  EXPECT_EQ(Window().Tabs().Selected(), 1);
  EXPECT_EQ(VisiblePages(), (Pages{false, true, false, false}));
  EXPECT_EQ(Window().JunkPage().Resets(), resetsBefore + 1);

  // The show-page message itself, as another part would post it.
  PostMessageW(Main(), kShowPageMessage, 0, CPcDlg::kOptionsPage);
  Pump();
  EXPECT_EQ(VisiblePages(), (Pages{false, false, false, true}));
  PostMessageW(Main(), kShowShredderMessage, 0, 0);
  Pump();
  EXPECT_EQ(VisiblePages(), (Pages{false, false, true, false}));
}

TEST_F(MainWindowTest, WebHelpOpensTheFaqWithoutChangingThePage) {
  ASSERT_TRUE(SetEnvironmentVariableW(kMakerSiteVariable, L"http://127.0.0.1:8080"));
  Open();
  Command(20005);
  Command(1002);
  Command(1039);
  PostMessageW(Main(), kShowPageMessage, 0, CPcDlg::kFaqPage);
  Pump();
  Command(1040);
  ASSERT_TRUE(SetEnvironmentVariableW(kMakerSiteVariable, nullptr));
  ASSERT_EQ(opened_.size(), 5u);
  for (size_t index = 0; index < 4; ++index) {
    EXPECT_EQ(opened_[index].target, L"http://127.0.0.1:8080/faq.php");
  }
  EXPECT_EQ(opened_[4].target, L"http://127.0.0.1:8080/go.asp?id=201");
  EXPECT_EQ(opened_[4].showCommand, SW_SHOWNORMAL);
  EXPECT_EQ(VisiblePages(), (Pages{true, false, false, false}));
}

TEST_F(MainWindowTest, CloseButtonFollowsTheExitAndTraySettings) {
  struct Case {
    int exit, tray;
    bool quits, hides;
  };
  const Case cases[] = {{1, 0, true, false}, {0, 1, false, true}, {1, 1, true, true}, {0, 0, false, false}};
  for (const Case& c : cases) {
    Open();
    quitPosted_ = false;
    Window().OptionsInForce().exitOnClose = c.exit;
    Window().OptionsInForce().trayOnClose = c.tray;
    Command(10200);
    EXPECT_EQ(quitPosted_, c.quits) << "exit " << c.exit << " tray " << c.tray;
    if (c.quits) {
      EXPECT_EQ(static_cast<int>(quitCode_), -1);
      EXPECT_FALSE(Window().Tray().Added()) << "quitting removes the icon";
    }
    EXPECT_EQ(Window().IsVisible(), !c.hides) << "exit " << c.exit << " tray " << c.tray;
    window_.reset();
  }
}

TEST_F(MainWindowTest, CloseAndMinimiseAreIgnoredDuringAJunkSearch) {
  Open();
  Window().OptionsInForce().exitOnClose = 1;
  Window().OptionsInForce().trayOnClose = 1;
  {
    const testing::HeldThreads held;
    StartHeldJunkSearch(held);
    Command(10200);
    Command(10202);
    EXPECT_FALSE(quitPosted_);
    EXPECT_TRUE(Window().IsVisible());
  }
  ASSERT_TRUE(PumpUntil([this] { return !Window().JunkPage().Searching(); }));
  Command(10202);
  EXPECT_FALSE(Window().IsVisible()) << "minimise hides to the notification area";
  EXPECT_FALSE(quitPosted_);
  EXPECT_TRUE(Window().Tray().Added());
}

TEST_F(MainWindowTest, ExitCommandRemovesTheIconAndQuits) {
  Open();
  ASSERT_TRUE(Window().Tray().Added());
  Command(20007);
  EXPECT_TRUE(quitPosted_);
  EXPECT_EQ(static_cast<int>(quitCode_), -1);
  EXPECT_FALSE(Window().Tray().Added());
}

TEST_F(MainWindowTest, AutoStartStaysHiddenUntilAPageCommand) {
  switches_.autoStarted = true;
  Open();
  EXPECT_FALSE(Window().IsVisible()) << "the first paint hides it";
  Window().Show(SW_SHOW);
  UpdateWindow(Main());
  Pump();
  EXPECT_FALSE(Window().IsVisible()) << "every paint hides it while started at log-on";

  Command(20003);
  EXPECT_FALSE(Window().StaysHidden());
  EXPECT_TRUE(Window().IsVisible());
  InvalidateRect(Main(), nullptr, TRUE);
  UpdateWindow(Main());
  Pump();
  EXPECT_TRUE(Window().IsVisible()) << "later paints leave it shown";
}

TEST_F(MainWindowTest, CopiedPathIsListedOnTheShredderAndTheWindowShown) {
  testing::TempFolder folder;
  const std::wstring file = folder / L"report.txt";
  ASSERT_TRUE(testing::WriteFileBytes(file, "12345"));
  Open();
  Window().Show(SW_HIDE);
  std::string narrow(file.begin(), file.end());  // the sender's narrow text, with its null
  COPYDATASTRUCT data{0, static_cast<DWORD>(narrow.size() + 1), narrow.data()};
  EXPECT_EQ(SendMessageW(Main(), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data)), TRUE);
  Pump();
  EXPECT_EQ(VisiblePages(), (Pages{false, false, true, false}));
  EXPECT_TRUE(Window().IsVisible());
  const auto& list = Window().ShredPage().List();
  ASSERT_EQ(list.RowCount(), 1);
  EXPECT_EQ(list.RowText(0, 0), L"report.txt");
  EXPECT_EQ(list.RowText(0, 1), folder.Path());
  EXPECT_EQ(list.RowText(0, 2), L"5");
}

TEST_F(MainWindowTest, ShredPathOnTheCommandLineSelectsTheShredderTab) {
  testing::TempFolder folder;
  const std::wstring file = folder / L"old.doc";
  ASSERT_TRUE(testing::WriteFileBytes(file, "x"));
  switches_.hasShredPath = true;
  switches_.shredPath = file;
  Open();
  EXPECT_EQ(Window().Tabs().Selected(), 2);
  EXPECT_EQ(VisiblePages(), (Pages{false, false, true, false}));
  EXPECT_EQ(Window().ShredPage().List().RowCount(), 1);
}

void CALLBACK CloseMenu(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  EndMenu();
}

TEST_F(MainWindowTest, IconClicksAreIgnoredWhileAScanOrAJunkSearchRuns) {
  Open();
  Window().Show(SW_HIDE);
  const auto clicksIgnored = [this](const char* during) {
    SendMessageW(Main(), kTrayCallbackMessage, kTrayIconId, WM_LBUTTONDBLCLK);
    SendMessageW(Main(), kTrayCallbackMessage, kTrayIconId, WM_RBUTTONUP);
    Pump();
    EXPECT_FALSE(Window().IsVisible()) << during;
    EXPECT_FALSE(Window().Tray().MenuBuilt()) << during;
  };
  {
    const testing::HeldThreads held;
    StartHeldScan(held);
    clicksIgnored("a scan");
  }
  Window().ScanPage().WaitForWorker();
  {
    const testing::HeldThreads held;
    StartHeldJunkSearch(held);
    clicksIgnored("a junk search");
  }
  ASSERT_TRUE(PumpUntil([this] { return !Window().JunkPage().Searching(); }));

  SendMessageW(Main(), kTrayCallbackMessage, kTrayIconId + 1, WM_LBUTTONDBLCLK);
  EXPECT_FALSE(Window().IsVisible()) << "another icon's clicks are not ours";

  SendMessageW(Main(), kTrayCallbackMessage, kTrayIconId, WM_LBUTTONDBLCLK);
  EXPECT_TRUE(Window().IsVisible());
  EXPECT_FALSE(Window().StaysHidden());

  ASSERT_NE(SetTimer(nullptr, 0, 300, CloseMenu), 0u);
  SendMessageW(Main(), kTrayCallbackMessage, kTrayIconId, WM_RBUTTONUP);
  EXPECT_TRUE(Window().Tray().MenuBuilt()) << "the menu is built on first use";
}

TEST_F(MainWindowTest, OneClickEraseIsRefusedDuringAScan) {
  Open();
  testing::TempFolder folder;
  ASSERT_TRUE(testing::WriteFileBytes(folder / L"setting.ini", "[OneClickItem]\r\nOneClickItems=0\r\n"));
  Window().ScanPage().SetSettingsFile(CIniFileRW::AtPath(folder / L"setting.ini"));  // an erase of nothing
  {
    const testing::HeldThreads held;
    StartHeldScan(held);
    Command(20006);
    EXPECT_EQ(Window().ScanPage().OneClickRequests(), 0);
  }
  Window().ScanPage().WaitForWorker();
  Command(20006);
  EXPECT_EQ(Window().ScanPage().OneClickRequests(), 1);
  Window().ScanPage().WaitForWorker();
}

TEST_F(MainWindowTest, IconAnimatesThroughFourFramesAndShowsTheBalloonWhenHidden) {
  Open();
  Window().StartTrayAnimation(L"Scanning in process", L"Scan Items:");
  std::vector<HICON> frames;
  for (int tick = 0; tick < 5; ++tick) {
    SendMessageW(Main(), WM_TIMER, CTrayIcon::kAnimationTimer, 0);
    frames.push_back(Window().Tray().Record().hIcon);
    EXPECT_EQ(Window().Tray().Record().uFlags, 7u) << "no balloon while the window shows";
  }
  EXPECT_EQ(frames[4], frames[0]) << "four frames, then again from the first";
  for (size_t a = 0; a < 4; ++a) {
    for (size_t b = a + 1; b < 4; ++b) {
      EXPECT_NE(frames[a], frames[b]) << "frames " << a << " and " << b;
    }
  }
  EXPECT_STREQ(Window().Tray().Record().szTip, L"Scanning in process");

  Window().Show(SW_HIDE);
  SendMessageW(Main(), WM_TIMER, CTrayIcon::kAnimationTimer, 0);
  EXPECT_EQ(Window().Tray().Record().uFlags, 23u);
  EXPECT_EQ(Window().Tray().Record().uTimeout, 1000u);
  EXPECT_STREQ(Window().Tray().Record().szInfo, L"Scan Items:0");
  EXPECT_STREQ(Window().Tray().Record().szInfoTitle, L"Scanning in process");

  Window().StopTrayAnimation(L"Scanning is completed", L"Total Scan Items:");
  EXPECT_STREQ(Window().Tray().Record().szTip, L"Lumenor") << "the title goes back to the product";
  EXPECT_STREQ(Window().Tray().Record().szInfoTitle, L"Scanning is completed");
  EXPECT_NE(Window().Tray().Record().hIcon, frames[0]);
}

}  // namespace
}  // namespace lumenor
