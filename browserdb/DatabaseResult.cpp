#include "browserdb/DatabaseResult.h"

namespace lumenor {

std::wstring_view FailureReason(DatabaseFailure failure) {
  switch (failure) {
    case DatabaseFailure::kNone:
      return {};
    case DatabaseFailure::kLocked:
      return L"locked";
    case DatabaseFailure::kCorrupt:
      return L"corrupt";
    case DatabaseFailure::kUnknownSchema:
      return L"unknown schema";
    case DatabaseFailure::kCannotOpen:
      return L"cannot open";
    case DatabaseFailure::kLink:
      return L"link";
    case DatabaseFailure::kReadWriteError:
      return L"read or write error";
    case DatabaseFailure::kStopped:
      break;
  }
  return L"stopped";
}

}  // namespace lumenor
