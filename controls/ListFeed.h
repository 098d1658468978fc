// Rows from a worker thread into a virtual list. The worker gathers rows in lots of its
// own (every few hundred rows, or every few tens of milliseconds) and hands each lot
// over with one short lock; the list's thread appends what is waiting, at most a bounded
// number of rows at a time, so it is never busy for long whatever the worker finds.
#pragma once

#include "controls/MyListCtrl.h"
#include "controls/UiTasks.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <vector>

namespace lumenor::controls {

class ListFeed {
 public:
  static constexpr size_t kRowsPerLot = 512;
  static constexpr std::chrono::milliseconds kLotAge{30};
  static constexpr size_t kRowsPerAppend = 5000;

  // `appended`, when given, runs on the list's thread after each append, with the rows.
  ListFeed(UiTaskQueue& tasks, CMyListCtrl& list,
           std::function<void(const std::vector<ListRow>& rows)> appended = nullptr);
  ListFeed(const ListFeed&) = delete;
  ListFeed& operator=(const ListFeed&) = delete;

  // The worker's side.
  void Add(ListRow row);
  // Hands over the rows gathered so far, such as at the end of an item or of the run.
  void HandOver();

 private:
  void AppendWaiting();  // the list's thread

  UiTaskQueue& tasks_;
  CMyListCtrl& list_;
  std::function<void(const std::vector<ListRow>&)> appended_;
  std::vector<ListRow> lot_;  // the worker's own
  std::chrono::steady_clock::time_point lotStarted_;
  std::mutex mutex_;
  std::vector<ListRow> waiting_;
};

}  // namespace lumenor::controls
