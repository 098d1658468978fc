// The scheduled scan: the 60-second tick against an injected local time.
#include "app/DlgOptions.h"
#include "app/Scheduler.h"
#include "tests/shell/ShellTestSupport.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <climits>

namespace lumenor {
namespace {

using testing::MainWindowTest;

SYSTEMTIME At(WORD day, WORD hour, WORD minute) {
  SYSTEMTIME time{};
  time.wYear = 2024;
  time.wMonth = 5;
  time.wDay = day;
  time.wHour = hour;
  time.wMinute = minute;
  return time;
}

OptionValues Schedule(int every, int day, int hour, int minute, int pm) {
  OptionValues options;
  options.scheduleOn = every;
  options.day = day;
  options.hour = hour;
  options.minute = minute;
  options.pm = pm;
  return options;
}

class SchedulerTick : public MainWindowTest {
 protected:
  // Ticks once at `time` and answers how many one-click erases it started. The page's
  // one-click list is empty here, so a started erase erases nothing.
  int TickAt(const OptionValues& options, const SYSTEMTIME& time) {
    Window().OptionsInForce() = options;
    now_ = time;
    CDlgScan& page = Window().ScanPage();
    page.SetSettingsFile(oneClickList_);
    const int before = page.OneClickRequests();
    SendMessageW(Main(), WM_TIMER, CPcDlg::kSchedulerTimer, 0);
    page.WaitForWorker();
    return page.OneClickRequests() - before;
  }
  void SetUp() override {
    MainWindowTest::SetUp();
    ASSERT_TRUE(testing::WriteFileBytes(folder_ / L"setting.ini", "[OneClickItem]\r\nOneClickItems=0\r\n"));
  }

  testing::TempFolder folder_;
  CIniFileRW oneClickList_ = CIniFileRW::AtPath(folder_ / L"setting.ini");
};

TEST_F(SchedulerTick, EveryDayAtNineThirtyEightInTheMorning) {
  Open();
  const OptionValues daily = Schedule(1, 0, 9, 38, 0);
  EXPECT_EQ(TickAt(daily, At(14, 9, 38)), 1);
  EXPECT_EQ(TickAt(daily, At(15, 9, 38)), 1) << "every day";
  EXPECT_EQ(TickAt(daily, At(14, 9, 37)), 0);
  EXPECT_EQ(TickAt(daily, At(14, 9, 39)), 0);
  EXPECT_EQ(TickAt(daily, At(14, 21, 38)), 0) << "AM is not PM";
  // No record of the last run: each tick within the minute fires.
  EXPECT_EQ(TickAt(daily, At(14, 9, 38)), 1);
}

TEST_F(SchedulerTick, AfternoonAddsTwelveToTheHour) {
  Open();
  EXPECT_EQ(TickAt(Schedule(1, 0, 11, 38, 1), At(3, 23, 38)), 1);
  EXPECT_EQ(TickAt(Schedule(1, 0, 11, 38, 1), At(3, 11, 38)), 0);
  EXPECT_EQ(TickAt(Schedule(1, 0, 0, 5, 1), At(3, 12, 5)), 1) << "hour 0 PM is 12:xx";
  EXPECT_EQ(TickAt(Schedule(1, 0, 0, 5, 1), At(3, 0, 5)), 0);
  EXPECT_EQ(TickAt(Schedule(1, 0, 0, 5, 0), At(3, 0, 5)), 1) << "hour 0 AM is 0:xx";
}

TEST_F(SchedulerTick, DayIsComparedWithTheDayOfTheMonthPlusOne) {
  Open();
  const OptionValues monday = Schedule(1, 2, 9, 38, 0);
  EXPECT_EQ(TickAt(monday, At(1, 9, 38)), 1) << "\"Monday\" fires on the first of the month";
  EXPECT_EQ(TickAt(monday, At(2, 9, 38)), 0);
  EXPECT_EQ(TickAt(monday, At(8, 9, 38)), 0);
  const OptionValues sunday = Schedule(1, 1, 9, 38, 0);
  for (WORD day = 1; day <= 31; ++day) {
    EXPECT_EQ(TickAt(sunday, At(day, 9, 38)), 0) << "\"Sunday\" never fires; day " << day;
  }
}

TEST_F(SchedulerTick, NothingFiresWhenSwitchedOffOrSuspended) {
  Open();
  EXPECT_EQ(TickAt(Schedule(0, 0, 9, 38, 0), At(14, 9, 38)), 0);
  Window().SetSchedulerSuspended(1);
  EXPECT_EQ(TickAt(Schedule(1, 0, 9, 38, 0), At(14, 9, 38)), 0);
  Window().SetSchedulerSuspended(0);
  EXPECT_EQ(TickAt(Schedule(2, 0, 9, 38, 0), At(14, 9, 38)), 1) << "any \"every\" but 0 counts as on";
}

TEST_F(SchedulerTick, ATickIsSkippedWhileAScanOrAJunkSearchRuns) {
  Open();
  const OptionValues daily = Schedule(1, 0, 9, 38, 0);
  {
    const testing::HeldThreads held;
    StartHeldScan(held);
    Window().OptionsInForce() = daily;
    now_ = At(14, 9, 38);
    const int before = Window().ScanPage().OneClickRequests();
    SendMessageW(Main(), WM_TIMER, CPcDlg::kSchedulerTimer, 0);
    EXPECT_EQ(Window().ScanPage().OneClickRequests(), before) << "two workers would tangle the list of items";
  }
  Window().ScanPage().WaitForWorker();
  {
    const testing::HeldThreads held;
    StartHeldJunkSearch(held);
    EXPECT_EQ(TickAt(daily, At(14, 9, 38)), 0);
  }
  ASSERT_TRUE(PumpUntil([this] { return !Window().JunkPage().Searching(); }));
  EXPECT_EQ(TickAt(daily, At(14, 9, 38)), 1);
}

TEST(ScheduledScanDue, HoursOutOfRangeAreTakenAsTheyStandWithoutOverflow) {
  for (const int hour : {INT_MAX, INT_MAX - 11, INT_MAX - 12}) {
    for (const WORD now : {0, 11, 12, 23}) {
      EXPECT_FALSE(ScheduledScanDue(Schedule(1, 0, hour, 38, 1), At(14, now, 38))) << hour << " PM at " << now;
    }
  }
  EXPECT_TRUE(ScheduledScanDue(Schedule(1, 0, -12, 38, 1), At(14, 0, 38))) << "-12 PM reads as 0:38, as ever";
  EXPECT_TRUE(ScheduledScanDue(Schedule(1, 0, 14, 38, 0), At(14, 14, 38))) << "14 AM reads as 14:38, as ever";
  EXPECT_FALSE(ScheduledScanDue(Schedule(1, 0, INT_MIN, 38, 1), At(14, 0, 38)));
}

TEST_F(SchedulerTick, FiringShowsTheBalloonBeforeTheErasesStagesTakeOver) {
  Open();
  Window().OptionsInForce() = Schedule(1, 0, 9, 38, 0);
  now_ = At(14, 9, 38);
  Window().ScanPage().SetSettingsFile(oneClickList_);
  SendMessageW(Main(), WM_TIMER, CPcDlg::kSchedulerTimer, 0);
  const NOTIFYICONDATAW& icon = Window().Tray().Record();
  EXPECT_EQ(icon.uFlags, 16u);
  EXPECT_EQ(icon.uTimeout, 2000u);
  EXPECT_EQ(icon.dwInfoFlags, static_cast<DWORD>(NIIF_INFO));
  EXPECT_STREQ(icon.szInfoTitle, L"Auto Scan");
  EXPECT_STREQ(icon.szInfo, L"正在执行自动扫描程序");
  Window().ScanPage().WaitForWorker();
  EXPECT_EQ(Window().Tray().Title(), L"Lumenor") << "the erase ended and the icon is the main one again";
}

}  // namespace
}  // namespace lumenor
