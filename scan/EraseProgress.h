// What the erase progress dialog counts and shows, without the dialog: deletions and
// failures as they are reported, and a ten-cell bar that moves on each further tenth of
// the total. The displays are brought up to date only when the bar moves, so the last
// figures shown can lag behind the counts; that is how the dialog has always shown them.
#pragma once

namespace lumenor {

class EraseProgress {
 public:
  static constexpr int kCells = 10;

  explicit EraseProgress(int total);

  // What a report changed on screen.
  struct Refresh {
    bool displays = false;  // the two figures show new values (and the bar one more cell)
    bool bar = false;       // the bar changed
  };

  // A success report: `count` traces went, or one when `count` is 0.
  Refresh Deleted(int count);
  Refresh Failed();

  int Total() const { return total_; }
  int StepSize() const { return stepSize_; }
  int LitCells() const { return litCells_; }
  int DeletedCount() const { return deleted_; }
  int FailedCount() const { return failed_; }
  // The figures the displays show.
  int ShownDeleted() const { return shownDeleted_; }
  int ShownFailed() const { return shownFailed_; }

 private:
  Refresh Update();

  int total_;
  int stepSize_;
  int litCells_ = 0;
  int deleted_ = 0;
  int failed_ = 0;
  int shownDeleted_ = 0;
  int shownFailed_ = 0;
};

}  // namespace lumenor
