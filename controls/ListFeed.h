// Rows from a worker thread to a window's thread. The worker gathers rows in lots of its
// own (every few hundred rows, or every few tens of milliseconds) and hands each lot
// over with one short lock; the window's thread takes what is waiting, at most a bounded
// number of rows at a time, so it is never busy for long whatever the worker finds.
// RowFeed hands the rows of any kind to a receiver; ListFeed appends them to a list.
#pragma once

#include "controls/MyListCtrl.h"
#include "controls/UiTasks.h"

#include <chrono>
#include <functional>
#include <iterator>
#include <mutex>
#include <span>
#include <utility>
#include <vector>

namespace lumenor::controls {

template <typename Row>
class RowFeed {
 public:
  static constexpr size_t kRowsPerLot = 512;
  static constexpr std::chrono::milliseconds kLotAge{30};
  static constexpr size_t kRowsPerAppend = 5000;

  // `receive` runs on the window's thread with the rows, in the order they were added.
  using Receiver = std::function<void(std::vector<Row> rows)>;

  RowFeed(UiTaskQueue& tasks, Receiver receive) : tasks_(tasks), receive_(std::move(receive)) {}
  RowFeed(const RowFeed&) = delete;
  RowFeed& operator=(const RowFeed&) = delete;

  // The worker's side.
  void Add(Row row) {
    if (lot_.empty()) {
      lotStarted_ = std::chrono::steady_clock::now();
    }
    lot_.push_back(std::move(row));
    if (lot_.size() >= kRowsPerLot || std::chrono::steady_clock::now() - lotStarted_ >= kLotAge) {
      HandOver();
    }
  }
  // Hands over the rows gathered so far, such as at the end of an item or of the run.
  void HandOver() {
    if (lot_.empty()) {
      return;
    }
    bool firstWaiting = false;
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      firstWaiting = waiting_.empty();
      waiting_.insert(waiting_.end(), std::make_move_iterator(lot_.begin()), std::make_move_iterator(lot_.end()));
    }
    lot_.clear();
    if (firstWaiting) {
      (void)tasks_.Post([this] { TakeWaiting(); });  // refused only once the window is gone
    }
  }

  // The window's thread, once the run has ended: takes every row handed over, so that
  // what the window shows at the end is complete. A task still waiting finds none.
  void TakeAll() {
    std::vector<Row> rows;
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      rows.swap(waiting_);
    }
    if (!rows.empty()) {
      receive_(std::move(rows));
    }
  }

 private:
  void TakeWaiting() {
    std::vector<Row> rows;
    bool more = false;
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (waiting_.size() <= kRowsPerAppend) {
        rows.swap(waiting_);
      } else {
        rows.assign(std::make_move_iterator(waiting_.begin()),
                    std::make_move_iterator(waiting_.begin() + kRowsPerAppend));
        waiting_.erase(waiting_.begin(), waiting_.begin() + kRowsPerAppend);
        more = true;
      }
    }
    if (!rows.empty()) {
      receive_(std::move(rows));
    }
    if (more) {
      (void)tasks_.Post([this] { TakeWaiting(); });  // the rest after the messages waiting now
    }
  }

  UiTaskQueue& tasks_;
  Receiver receive_;
  std::vector<Row> lot_;  // the worker's own
  std::chrono::steady_clock::time_point lotStarted_;
  std::mutex mutex_;
  std::vector<Row> waiting_;
};

class ListFeed {
 public:
  static constexpr size_t kRowsPerLot = RowFeed<ListRow>::kRowsPerLot;
  static constexpr size_t kRowsPerAppend = RowFeed<ListRow>::kRowsPerAppend;

  // `appended`, when given, runs on the list's thread after each append, with the rows
  // as the list now holds them.
  using Appended = std::function<void(std::span<const ListRow> rows)>;
  ListFeed(UiTaskQueue& tasks, CMyListCtrl& list, Appended appended = nullptr);

  void Add(ListRow row) { feed_.Add(std::move(row)); }
  void HandOver() { feed_.HandOver(); }
  // The list's thread, once the run has ended: appends every row handed over.
  void AppendAll() { feed_.TakeAll(); }

 private:
  void Append(std::vector<ListRow> rows);

  CMyListCtrl& list_;
  Appended appended_;
  RowFeed<ListRow> feed_;
};

}  // namespace lumenor::controls
