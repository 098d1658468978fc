// The shred job, without windows: the listed files overwritten by one method and
// deleted, from the first to the last. The shred page runs it on its worker thread,
// lumenor-cli runs it directly, the tests run it with a pass hook.
#pragma once

#include "base/StopToken.h"
#include "engine/FolderSafety.h"
#include "shred/ShredFailure.h"
#include "shred/ShredMethod.h"

#include <cstdint>
#include <span>
#include <string>

namespace lumenor {

struct ShredTarget {
  SafePath file;      // as listed: both its forms made once
  uint64_t size = 0;  // when it was listed

  const std::wstring& Path() const { return file.Text(); }
  std::wstring_view Folder() const { return file.Folder(); }
  std::wstring_view Name() const { return file.Name(); }
};

// What a job tells, each from the job's thread, in this order for every file: passes,
// then done or failed. Positions are the bytes written so far by every pass of every
// file, divided by the method's pass count, so they run from 0 to the range.
class ShredReports {
 public:
  virtual ~ShredReports() = default;
  virtual void RangeSet(uint64_t /*totalBytes*/) {}
  virtual void ProgressMoved(uint64_t /*position*/) {}
  // After pass `pass` (1 for the first) of the file at `index` has reached the disk and
  // the file is closed again.
  virtual void PassFinished(size_t /*index*/, int /*pass*/) {}
  // The file at `index` was overwritten `passes` times and deleted.
  virtual void FileShredded(size_t index, int passes) = 0;
  // The file at `index` was not shredded, or not deleted; `path` is where it is now.
  virtual void FileFailed(size_t index, ShredFailure failure, const std::wstring& path) = 0;
};

enum class ShredJobEnd {
  kDone,        // every file was dealt with
  kEndedEarly,  // a failed pass (or a stop) ended it; the files after were not reached
  kNoMemory,    // the pattern buffers could not be made; no file was touched
};

// Runs the job over `targets`:
//  - A file that cannot be opened for writing, or whose pass fails or is stopped, ends
//    the job, with the method's one exception: in Thorough's repeated triples a failed
//    pass goes straight to the deletion. The files after it are reported not reached.
//  - A file that is, at its first pass, a link, a folder, or has other hard links is
//    refused, reported,
//    and the job goes on.
ShredJobEnd RunShredJob(std::span<const ShredTarget> targets, ShredMethod method, ShredReports& reports,
                        const StopToken& stop);

}  // namespace lumenor
