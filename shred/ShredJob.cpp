#include "shred/ShredJob.h"

#include "shred/PatternBuffers.h"
#include "shred/ShredFile.h"

#include <windows.h>

namespace lumenor {

namespace {

// The size the file has now, for the progress range; what cannot be asked counts 0.
uint64_t CurrentSize(const ShredTarget& target) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(target.file.ForApi().c_str(), GetFileExInfoStandard, &data) == FALSE) {
    return 0;
  }
  return (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

bool IsRefusal(ShredFailure failure) {
  return failure == ShredFailure::kLink || failure == ShredFailure::kHardLinks || failure == ShredFailure::kNotAFile;
}

class Job {
 public:
  Job(ShredMethod method, const PatternBuffers& buffers, ShredReports& reports, const StopToken& stop)
      : method_(method), buffers_(buffers), reports_(reports), stop_(stop) {}

  // False when the failure of this file ends the job.
  bool Shred(size_t index, const ShredTarget& target) {
    // Tested before the file too, so that a stop also ends the job at an empty file.
    if (stop_.StopRequested()) {
      reports_.FileFailed(index, ShredFailure::kStopped, target.Path());
      return false;
    }
    int passesDone = 0;
    for (const ShredPattern pattern : PassSequence(method_)) {
      const ShredFailure failure = Pass(target, pattern);
      if (failure != ShredFailure::kNone) {
        if (passesDone == 0 && IsRefusal(failure)) {
          reports_.FileFailed(index, failure, target.Path());
          return true;  // nothing of it was touched; the others may go on
        }
        // Thorough's first pass has written random data all over the file; a failure in
        // the triples after it still ends in the deletion.
        if (method_ == ShredMethod::kThorough && passesDone >= 1) {
          break;
        }
        reports_.FileFailed(index, failure, target.Path());
        return false;
      }
      ++passesDone;
      reports_.PassFinished(index, passesDone);
    }
    const Deletion deletion = DeleteUnderRandomName(target.file);
    if (deletion.deleted) {
      reports_.FileShredded(index, passesDone);
    } else {
      reports_.FileFailed(index, ShredFailure::kDeleteFailed, deletion.path);
    }
    return true;
  }

 private:
  // One pass opens the file anew and closes it on every way out, so that between passes
  // the file is on the disk and checked again before it is written.
  ShredFailure Pass(const ShredTarget& target, ShredPattern pattern) {
    const OpenedForOverwrite opened = OpenForOverwrite(target.file);
    if (opened.failure != ShredFailure::kNone) {
      return opened.failure;
    }
    return OverwritePass(opened.file.Get(), opened.size, buffers_.For(pattern), stop_,
                         [this](uint32_t bytes) { Count(bytes); });
  }

  void Count(uint32_t bytes) {
    bytesWritten_ += bytes;
    reports_.ProgressMoved(bytesWritten_ / static_cast<uint64_t>(PassCount(method_)));
  }

  ShredMethod method_;
  const PatternBuffers& buffers_;
  ShredReports& reports_;
  const StopToken& stop_;
  uint64_t bytesWritten_ = 0;
};

}  // namespace

ShredJobEnd RunShredJob(std::span<const ShredTarget> targets, ShredMethod method, ShredReports& reports,
                        const StopToken& stop) {
  uint64_t totalBytes = 0;
  for (const ShredTarget& target : targets) {
    totalBytes += CurrentSize(target);
  }
  reports.RangeSet(totalBytes);
  const std::optional<PatternBuffers> buffers = PatternBuffers::Make(PassCount(method));
  if (!buffers) {
    return ShredJobEnd::kNoMemory;
  }
  Job job(method, *buffers, reports, stop);
  for (size_t index = 0; index < targets.size(); ++index) {
    if (!job.Shred(index, targets[index])) {
      for (size_t later = index + 1; later < targets.size(); ++later) {
        reports.FileFailed(later, ShredFailure::kNotReached, targets[later].Path());
      }
      return ShredJobEnd::kEndedEarly;
    }
  }
  return ShredJobEnd::kDone;
}

}  // namespace lumenor
