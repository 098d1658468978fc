#include "controls/ListFeed.h"

namespace lumenor::controls {

ListFeed::ListFeed(UiTaskQueue& tasks, CMyListCtrl& list, Appended appended)
    : list_(list),
      appended_(std::move(appended)),
      feed_(tasks, [this](std::vector<ListRow> rows) { Append(std::move(rows)); }) {}

void ListFeed::Append(std::vector<ListRow> rows) {
  const size_t first = static_cast<size_t>(list_.RowCount());
  (void)list_.AppendRows(std::move(rows));  // the store takes them even when the view missed the count
  if (appended_) {
    appended_(list_.Rows().subspan(first));
  }
}

}  // namespace lumenor::controls
