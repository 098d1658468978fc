// The worker every page starts its runs on: reports and the end arrive on the window's
// thread in order, a thread that cannot start ends the run at once, each run has a stop of
// its own, and the worker's end stops and joins its run, or leaves a shared one to end on
// its own.
#include "controls/Dialog.h"
#include "controls/ListFeed.h"
#include "controls/PageWorker.h"
#include "controls/UiTasks.h"
#include "res/resource.h"
#include "tests/support/ThreadStarters.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <new>
#include <vector>

namespace lumenor::controls {
namespace {

class WorkerPage : public CDialog {
 public:
  WorkerPage() : CDialog(IDD_HELP) {}
  UiTaskQueue tasks;

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    if (tasks.HandleMessage(message, result)) return true;
    return CDialog::OnMessage(message, wParam, lParam, result);
  }
};

class PageWithWorker : public ::testing::Test {
 protected:
  void SetUp() override {
    owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(owner_, nullptr);
    ASSERT_TRUE(page_.Create(owner_));
    page_.tasks.Bind(page_.Handle());
  }
  void TearDown() override { DestroyWindow(owner_); }
  // Runs this thread's messages until `done` holds; whether it did within ten seconds.
  static bool PumpUntil(const std::function<bool()>& done, int timeoutMs = 10000) {
    for (int waited = 0; waited < timeoutMs; waited += 5) {
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
      if (done()) return true;
      Sleep(5);
    }
    return false;
  }

  HWND owner_ = nullptr;
  WorkerPage page_;
};

TEST_F(PageWithWorker, ReportsAndTheEndArriveOnTheWindowsThreadInOrder) {
  PageWorker worker(page_.tasks);
  std::vector<int> seen;
  std::vector<RunEnd> ends;
  const DWORD windowThread = GetCurrentThreadId();
  DWORD endThread = 0;
  ASSERT_TRUE(worker.Start(
      [&](const StopToken&) {
        for (int report = 0; report < 50; ++report) {
          (void)page_.tasks.Post([&seen, report] { seen.push_back(report); });
        }
      },
      [&](RunEnd end) {
        ends.push_back(end);
        endThread = GetCurrentThreadId();
      }));
  EXPECT_TRUE(worker.Running());
  EXPECT_FALSE(worker.Start([](const StopToken&) {}, nullptr)) << "one run at a time";
  ASSERT_TRUE(PumpUntil([&] { return !worker.Running(); }));
  ASSERT_EQ(seen.size(), 50u);
  EXPECT_EQ(seen.back(), 49) << "the end comes after every report";
  EXPECT_EQ(ends, std::vector<RunEnd>{RunEnd::kFinished});
  EXPECT_EQ(endThread, windowThread);
}

TEST_F(PageWithWorker, AThreadThatCannotStartEndsTheRunBeforeStartReturns) {
  PageWorker worker(page_.tasks);
  worker.SetThreadStarter(testing::FailingThreadStarter());
  bool ran = false;
  std::vector<RunEnd> ends;
  EXPECT_FALSE(worker.Start([&](const StopToken&) { ran = true; }, [&](RunEnd end) { ends.push_back(end); }));
  EXPECT_EQ(ends, std::vector<RunEnd>{RunEnd::kNotStarted});
  EXPECT_FALSE(worker.Running());
  EXPECT_FALSE(ran);

  worker.SetThreadStarter(StartSystemThread);
  ASSERT_TRUE(worker.Start([&](const StopToken&) { ran = true; }, [&](RunEnd end) { ends.push_back(end); }));
  ASSERT_TRUE(PumpUntil([&] { return !worker.Running(); }));
  EXPECT_TRUE(ran) << "the next run starts as ever";
  EXPECT_EQ(ends.back(), RunEnd::kFinished);
}

TEST(WorkerWithoutAWindow, EndsTheRunAtOnceForNobodyWouldHearItsEnd) {
  UiTaskQueue unbound;
  PageWorker worker(unbound);
  bool ran = false;
  std::vector<RunEnd> ends;
  EXPECT_FALSE(worker.Start([&](const StopToken&) { ran = true; }, [&](RunEnd end) { ends.push_back(end); }));
  EXPECT_EQ(ends, std::vector<RunEnd>{RunEnd::kNotStarted});
  EXPECT_FALSE(worker.Running()) << "never stuck as running";
  EXPECT_FALSE(ran);
}

TEST_F(PageWithWorker, AStopEndsOnlyTheRunItWasMeantFor) {
  PageWorker worker(page_.tasks);
  std::atomic<bool> firstStopped{false};
  ASSERT_TRUE(worker.Start(
      [&](const StopToken& stop) {
        while (!stop.StopRequested()) Sleep(1);
        firstStopped = true;
      },
      nullptr));
  worker.RequestStop();
  ASSERT_TRUE(PumpUntil([&] { return !worker.Running(); }));
  EXPECT_TRUE(firstStopped);

  bool secondSawAStop = true;
  ASSERT_TRUE(worker.Start([&](const StopToken& stop) { secondSawAStop = stop.StopRequested(); }, nullptr));
  ASSERT_TRUE(PumpUntil([&] { return !worker.Running(); }));
  EXPECT_FALSE(secondSawAStop) << "a fresh stop signal for each run";
}

TEST_F(PageWithWorker, AJobThatThrowsEndsItsRunAsIfItHadReturned) {
  PageWorker worker(page_.tasks);
  std::vector<RunEnd> ends;
  ASSERT_TRUE(worker.Start([](const StopToken&) { throw std::bad_alloc(); }, [&](RunEnd end) { ends.push_back(end); }));
  ASSERT_TRUE(PumpUntil([&] { return !worker.Running(); }));
  EXPECT_EQ(ends, std::vector<RunEnd>{RunEnd::kFinished});
}

TEST_F(PageWithWorker, TheWorkersEndStopsAndJoinsItsRunAndItsEndIsNeverTold) {
  std::atomic<bool> stopped{false};
  bool told = false;
  {
    PageWorker worker(page_.tasks);
    ASSERT_TRUE(worker.Start(
        [&](const StopToken& stop) {
          while (!stop.StopRequested()) Sleep(1);
          Sleep(50);
          stopped = true;
        },
        [&](RunEnd) { told = true; }));
  }
  EXPECT_TRUE(stopped) << "joined: the run had ended before the worker went";
  EXPECT_FALSE(PumpUntil([&] { return told; }, 200));
}

TEST(SharedWorker, ARunLeftRunningEndsOnItsOwnAfterItsOwnerWent) {
  const HWND owner = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  ASSERT_NE(owner, nullptr);
  auto queue = std::make_shared<UiTaskQueue>();
  queue->Bind(owner);
  auto finished = std::make_shared<std::atomic<bool>>(false);
  const testing::HeldThreads held;
  {
    PageWorker worker(queue);
    worker.SetThreadStarter(held.Held());
    ASSERT_TRUE(worker.Start(
        [finished](const StopToken&) {
          Sleep(20);
          *finished = true;
        },
        nullptr));
  }  // gone while its run has not even begun: the run is left, not waited for
  EXPECT_FALSE(finished->load());
  held.Release();
  for (int waited = 0; !finished->load() && waited < 10000; waited += 5) Sleep(5);
  EXPECT_TRUE(finished->load());
  for (int waited = 0; queue.use_count() > 1 && waited < 10000; waited += 5) Sleep(5);
  EXPECT_EQ(queue.use_count(), 1) << "the thread let go of the queue it shared";
  EXPECT_EQ(queue->Waiting(), 0u) << "its end found no window to go to";
  DestroyWindow(owner);
}

TEST_F(PageWithWorker, RowsFedFromTheWorkerAllReachTheReceiverInOrderByTheEnd) {
  PageWorker worker(page_.tasks);
  std::vector<int> received;
  bool ending = false;
  RowFeed<int> feed(page_.tasks, [&](std::vector<int> rows) {
    if (!ending) {
      EXPECT_LE(rows.size(), RowFeed<int>::kRowsPerAppend) << "never more at once while the run goes on";
    }
    received.insert(received.end(), rows.begin(), rows.end());
  });
  size_t receivedAtEnd = 0;
  ASSERT_TRUE(worker.Start(
      [&](const StopToken&) {
        for (int row = 0; row < 20000; ++row) feed.Add(row);
        feed.HandOver();
      },
      [&](RunEnd) {
        ending = true;
        feed.TakeAll();
        receivedAtEnd = received.size();
      }));
  ASSERT_TRUE(PumpUntil([&] { return !worker.Running(); }));
  EXPECT_EQ(receivedAtEnd, 20000u) << "complete when the end is told";
  for (size_t index = 0; index < received.size(); ++index) ASSERT_EQ(received[index], static_cast<int>(index));
}

}  // namespace
}  // namespace lumenor::controls
