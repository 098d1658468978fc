#include "scan/EraseProgress.h"

namespace lumenor {

EraseProgress::EraseProgress(int total) : total_(total), stepSize_(total / kCells > 0 ? total / kCells : 1) {}

EraseProgress::Refresh EraseProgress::Deleted(int count) {
  deleted_ += count == 0 ? 1 : count;
  return Update();
}

EraseProgress::Refresh EraseProgress::Failed() {
  ++failed_;
  return Update();
}

EraseProgress::Refresh EraseProgress::Update() {
  Refresh refresh;
  const long long done = static_cast<long long>(deleted_) + failed_;
  if (done > static_cast<long long>(litCells_ + 1) * stepSize_) {
    shownDeleted_ = deleted_;
    shownFailed_ = failed_;
    if (litCells_ < kCells) ++litCells_;
    refresh.displays = true;
    refresh.bar = true;
  }
  if (done >= total_ && litCells_ != kCells) {
    litCells_ = kCells;
    refresh.bar = true;
  }
  return refresh;
}

}  // namespace lumenor
