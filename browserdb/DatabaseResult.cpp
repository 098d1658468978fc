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

std::wstring DatabaseLineText(DatabaseContent content, const DatabaseLine& line) {
  switch (content) {
    case DatabaseContent::kCookies:
      return line.label + L" (" + std::to_wstring(line.rows) + (line.rows == 1 ? L" cookie)" : L" cookies)");
    case DatabaseContent::kHistory:
      return std::to_wstring(line.rows) + L" visits, " + std::to_wstring(line.places) + L" addresses";
    case DatabaseContent::kFormData:
      break;
  }
  return std::to_wstring(line.rows) + L" form entries";
}

}  // namespace lumenor
