// The erase progress dialog: how it counts and when its figures and bar move, and the
// dialog itself: the erase runs while it shows, Close appears at the end with the warning
// when something failed, and Esc never ends it in any way but Close.
#include "res/resource.h"
#include "scan/DlgScanResult.h"
#include "scan/EraseProgress.h"
#include "tests/support/ThreadStarters.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace lumenor {
namespace {

TEST(EraseProgressModel, StepIsATenthOfTheTotalAndNeverZero) {
  EXPECT_EQ(EraseProgress(5).StepSize(), 1);
  EXPECT_EQ(EraseProgress(25).StepSize(), 2);
  EXPECT_EQ(EraseProgress(100).StepSize(), 10);
}

TEST(EraseProgressModel, FiguresMoveOnlyWithTheBarSoTheLastShownLagsBehind) {
  EraseProgress progress(100);
  int refreshes = 0;
  for (int trace = 0; trace < 100; ++trace) refreshes += progress.Deleted(1).displays ? 1 : 0;
  EXPECT_EQ(progress.LitCells(), 10) << "the bar is full";
  EXPECT_EQ(progress.DeletedCount(), 100);
  EXPECT_EQ(progress.ShownDeleted(), 91) << "the figures are not refreshed once more at the end";
  EXPECT_EQ(refreshes, 9);
}

TEST(EraseProgressModel, AWholeKeyCountsItsValuesAndAnEmptyReportCountsOne) {
  EraseProgress progress(20);
  EXPECT_TRUE(progress.Deleted(7).displays) << "7 deleted passes the first two steps at once";
  EXPECT_EQ(progress.DeletedCount(), 7);
  EXPECT_EQ(progress.LitCells(), 1) << "one report moves the bar by one cell";
  (void)progress.Deleted(0);
  EXPECT_EQ(progress.DeletedCount(), 8);
  (void)progress.Failed();
  EXPECT_EQ(progress.FailedCount(), 1);
  EXPECT_EQ(progress.ShownFailed(), 1);
}

// Watches the dialog from another thread and acts on it, as a user would.
class EraseDialog : public ::testing::Test {
 protected:
  static bool WaitFor(const std::function<bool()>& condition) {
    for (int waited = 0; waited < 10000; waited += 20) {
      if (condition()) return true;
      Sleep(20);
    }
    return false;
  }
};

TEST_F(EraseDialog, ShowsCloseAndTheWarningAtTheEndAndEscBeforeThatDoesNothing) {
  std::atomic<bool> escPressed{false};
  CDlgScanResult* shown = nullptr;
  CDlgScanResult dialog(4, [&](EraseTally& tally) {
    // Esc while the erase runs: the dialog must stay.
    (void)PostMessageW(shown->Handle(), WM_COMMAND, IDCANCEL, 0);
    (void)PostMessageW(shown->Handle(), WM_CLOSE, 0, 0);
    escPressed = true;
    Sleep(200);
    tally.Erased(1, 0);
    tally.Erased(2, 0);
    tally.EraseFailed(L"C:\\locked.dat");
  });
  shown = &dialog;
  bool closeWasShown = false;
  bool warningWasShown = false;
  std::thread user([&] {
    ASSERT_TRUE(WaitFor([&] { return escPressed.load() && dialog.Finished() && dialog.CloseShown(); }));
    closeWasShown = dialog.CloseShown();
    warningWasShown = dialog.WarningShown();
    (void)PostMessageW(dialog.Handle(), WM_KEYDOWN, VK_ESCAPE, 0);
    (void)PostMessageW(dialog.Handle(), WM_COMMAND, IDCANCEL, 0);  // Esc now means Close
  });
  const INT_PTR result = dialog.Run(nullptr);
  user.join();
  EXPECT_EQ(result, IDOK) << "Esc closes as Close does, never as Cancel";
  EXPECT_TRUE(closeWasShown);
  EXPECT_TRUE(warningWasShown);
  const EraseProgress progress = dialog.Progress();
  EXPECT_EQ(progress.DeletedCount(), 3);
  EXPECT_EQ(progress.FailedCount(), 1);
  EXPECT_EQ(progress.LitCells(), 10);
}

TEST_F(EraseDialog, WithoutFailuresTheWarningStaysHiddenAndOnlyTheHiddenButtonCancels) {
  CDlgScanResult dialog(2, [](EraseTally& tally) {
    tally.Erased(1, 0);
    tally.Erased(1, 0);
  });
  bool warningWasShown = true;
  std::thread user([&] {
    ASSERT_TRUE(WaitFor([&] { return dialog.Finished() && dialog.CloseShown(); }));
    warningWasShown = dialog.WarningShown();
    (void)PostMessageW(dialog.Handle(), WM_COMMAND, 1029, 0);
  });
  EXPECT_EQ(dialog.Run(nullptr), IDCANCEL);
  user.join();
  EXPECT_FALSE(warningWasShown);
}

TEST_F(EraseDialog, AnEraseWhoseThreadCannotStartEndsAtOnceWithTheWarningAndCloses) {
  bool erased = false;
  CDlgScanResult dialog(3, [&](EraseTally&) { erased = true; });
  dialog.SetThreadStarter(testing::FailingThreadStarter());
  bool warningWasShown = false;
  std::thread user([&] {
    ASSERT_TRUE(WaitFor([&] { return dialog.Finished() && dialog.CloseShown(); }));
    warningWasShown = dialog.WarningShown();
    (void)PostMessageW(dialog.Handle(), WM_COMMAND, IDC_ERASE_CLOSE, 0);
  });
  EXPECT_EQ(dialog.Run(nullptr), IDOK) << "closed by Close, never by a restart";
  user.join();
  EXPECT_FALSE(erased);
  EXPECT_TRUE(warningWasShown);
  EXPECT_EQ(dialog.Progress().DeletedCount(), 0);
  EXPECT_EQ(dialog.Progress().FailedCount(), 1) << "the erase that never ran is told as one failure";
}

}  // namespace
}  // namespace lumenor
