// Why a file was not shredded, as the page and lumenor-cli report it.
#pragma once

#include <string_view>

namespace lumenor {

enum class ShredFailure {
  kNone,
  kBadPath,        // not a whole path: relative, a device, or no name
  kAmbiguousName,  // ends in a dot or blank, or names a device: Windows would read another file
  kMissing,        // no such file (any more)
  kNotAFile,       // a folder
  kLink,           // a symbolic link or other reparse point: writing would reach its target
  kHardLinks,      // the data has other names too, which overwriting would destroy
  kCannotOpen,     // read-only, locked, or access denied
  kWriteFailed,    // a pass could not be written or flushed
  kStopped,        // the user stopped the job
  kDeleteFailed,   // overwritten, but it could not be deleted
  kNotReached,     // the job ended at an earlier file
};

// The words a failure is reported with: "missing", "link", "cannot be opened for
// writing", ...
std::wstring_view FailureReason(ShredFailure failure);

}  // namespace lumenor
