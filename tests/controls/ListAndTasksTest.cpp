// The virtual report list and the posting of work to a window's thread: rows come from
// the list's own store (the list view asks for them), deleting a row moves the rest up,
// and tasks posted from another thread run on the window's thread, in order, or not at
// all once the window is gone.
#include "controls/Dialog.h"
#include "controls/MyListCtrl.h"
#include "controls/UiTasks.h"
#include "res/resource.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace lumenor::controls {
namespace {

class TaskPage : public CDialog {
 public:
  TaskPage() : CDialog(IDD_HELP) {}
  UiTaskQueue tasks;

 protected:
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override {
    if (message == kRunUiTasksMessage) {
      tasks.RunPending();
      result = 0;
      return true;
    }
    return CDialog::OnMessage(message, wParam, lParam, result);
  }
};

class PageHost : public ::testing::Test {
 protected:
  void SetUp() override {
    owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(owner_, nullptr);
    ASSERT_TRUE(page_.Create(owner_));
    page_.tasks.Bind(page_.Handle());
  }
  void TearDown() override { DestroyWindow(owner_); }
  static void PumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }

  HWND owner_ = nullptr;
  TaskPage page_;
};

TEST_F(PageHost, TasksFromAWorkerRunOnTheWindowsThreadInTheOrderPosted) {
  std::vector<int> ran;
  std::vector<DWORD> threads;
  std::thread worker([&] {
    for (int task = 0; task < 100; ++task) {
      EXPECT_TRUE(page_.tasks.Post([&, task] {
        ran.push_back(task);
        threads.push_back(GetCurrentThreadId());
      }));
    }
  });
  worker.join();
  EXPECT_TRUE(ran.empty()) << "nothing runs before the window's loop comes to it";
  PumpMessages();
  ASSERT_EQ(ran.size(), 100u);
  for (int task = 0; task < 100; ++task) EXPECT_EQ(ran[static_cast<size_t>(task)], task);
  for (const DWORD thread : threads) EXPECT_EQ(thread, GetCurrentThreadId());
}

TEST_F(PageHost, TasksWaitingWhenTheWindowGoesAreDroppedUnrun) {
  auto held = std::make_shared<int>(0);
  bool ran = false;
  ASSERT_TRUE(page_.tasks.Post([&ran, held] { ran = true; }));
  EXPECT_EQ(held.use_count(), 2);
  page_.tasks.Unbind();
  EXPECT_EQ(held.use_count(), 1) << "what the task held is freed";
  EXPECT_FALSE(page_.tasks.Post([&ran] { ran = true; }));
  PumpMessages();
  EXPECT_FALSE(ran);
}

TEST_F(PageHost, AVirtualListShowsItsOwnRowsAndDeletingOneMovesTheRestUp) {
  CMyListCtrl list;
  ASSERT_TRUE(list.CreateList(page_.Handle(), 500, RECT{0, 0, 500, 300}));
  ASSERT_TRUE(list.AddColumn(L"Name", 100));
  ASSERT_TRUE(list.AddColumn(L"Value", 100));
  std::vector<ListRow> rows;
  for (int row = 0; row < 100000; ++row) {
    rows.push_back({{L"name" + std::to_wstring(row), L"value" + std::to_wstring(row)}, row % 2});
  }
  ASSERT_TRUE(list.AppendRows(std::move(rows)));
  EXPECT_EQ(list.RowCount(), 100000);
  EXPECT_EQ(list.Send(LVM_GETITEMCOUNT), 100000) << "the list view knows the count";

  // The list view asks the store for a row's text, as it does for what it shows.
  wchar_t text[64] = {};
  LVITEMW item{};
  item.iSubItem = 1;
  item.pszText = text;
  item.cchTextMax = 64;
  ASSERT_GT(list.Send(LVM_GETITEMTEXTW, 99999, reinterpret_cast<LPARAM>(&item)), 0);
  EXPECT_STREQ(text, L"value99999");

  EXPECT_TRUE(list.SelectRow(3));
  EXPECT_EQ(list.SelectedRow(), 3);
  ASSERT_TRUE(list.DeleteRow(3));
  EXPECT_EQ(list.RowText(3, 0), L"name4");
  EXPECT_EQ(list.RowTag(3), 0);
  EXPECT_EQ(list.Send(LVM_GETITEMCOUNT), 99999);
  EXPECT_FALSE(list.DeleteRow(99999)) << "no such row";
  EXPECT_EQ(list.RowText(5, 7), L"") << "a column the row does not have";
  EXPECT_EQ(list.AppendRow({L"last"}, 1), 99999);
  ASSERT_TRUE(list.DeleteAll());
  EXPECT_EQ(list.Send(LVM_GETITEMCOUNT), 0);
}

TEST_F(PageHost, AListOfATemplateMustBeVirtualToBeTakenOver) {
  const HWND plain = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | LVS_REPORT, 0, 0, 100, 100, page_.Handle(),
                                     reinterpret_cast<HMENU>(501), nullptr, nullptr);
  ASSERT_NE(plain, nullptr);
  CMyListCtrl list;
  EXPECT_FALSE(list.Attach(page_.Handle(), 501)) << "rows could not come from the store";
}

}  // namespace
}  // namespace lumenor::controls
