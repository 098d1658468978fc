#include "controls/ListFeed.h"

#include <iterator>
#include <utility>

namespace lumenor::controls {

ListFeed::ListFeed(UiTaskQueue& tasks, CMyListCtrl& list, std::function<void(const std::vector<ListRow>&)> appended)
    : tasks_(tasks), list_(list), appended_(std::move(appended)) {}

void ListFeed::Add(ListRow row) {
  if (lot_.empty()) {
    lotStarted_ = std::chrono::steady_clock::now();
  }
  lot_.push_back(std::move(row));
  if (lot_.size() >= kRowsPerLot || std::chrono::steady_clock::now() - lotStarted_ >= kLotAge) {
    HandOver();
  }
}

void ListFeed::HandOver() {
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
    (void)tasks_.Post([this] { AppendWaiting(); });  // refused only once the list's window is gone
  }
}

void ListFeed::AppendWaiting() {
  std::vector<ListRow> rows;
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
  if (appended_) {
    appended_(rows);
  }
  (void)list_.AppendRows(std::move(rows));  // a list that is gone shows nothing anyway
  if (more) {
    (void)tasks_.Post([this] { AppendWaiting(); });  // the rest after the messages waiting now
  }
}

}  // namespace lumenor::controls
