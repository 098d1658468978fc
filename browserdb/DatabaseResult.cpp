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
  const auto counted = [](uint64_t count, std::wstring_view one, std::wstring_view many) {
    return std::to_wstring(count) + L" " + std::wstring(count == 1 ? one : many);
  };
  switch (content) {
    case DatabaseContent::kCookies:
      return line.label + L" (" + counted(line.rows, L"cookie", L"cookies") + L")";
    case DatabaseContent::kHistory:
      return counted(line.rows, L"visit", L"visits") + L", " + counted(line.places, L"address", L"addresses");
    case DatabaseContent::kFormData:
      break;
  }
  return counted(line.rows, L"form entry", L"form entries");
}

}  // namespace lumenor
