#include "shred/ShredFailure.h"

namespace lumenor {

std::wstring_view FailureReason(ShredFailure failure) {
  switch (failure) {
    case ShredFailure::kNone:
      return L"";
    case ShredFailure::kBadPath:
      return L"not a whole path";
    case ShredFailure::kAmbiguousName:
      return L"a device name, or a name ending in a dot or blank";
    case ShredFailure::kMissing:
      return L"missing";
    case ShredFailure::kNotAFile:
      return L"not a file";
    case ShredFailure::kLink:
      return L"link";
    case ShredFailure::kHardLinks:
      return L"has other hard links";
    case ShredFailure::kCannotOpen:
      return L"cannot be opened for writing";
    case ShredFailure::kWriteFailed:
      return L"overwrite failed";
    case ShredFailure::kStopped:
      return L"stopped";
    case ShredFailure::kDeleteFailed:
      return L"overwritten but not deleted";
    case ShredFailure::kNotReached:
      return L"not reached: the job ended at an earlier file";
  }
  return L"";
}

}  // namespace lumenor
