#include "engine/FilePath.h"

#include <windows.h>

namespace lumenor {

namespace {

constexpr std::wstring_view kLongPrefix = L"\\\\?\\";

bool IsDriveLetter(wchar_t c) { return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z'); }

bool StartsWithDrive(std::wstring_view path) {
  return path.size() >= 3 && IsDriveLetter(path[0]) && path[1] == L':' && path[2] == L'\\';
}

bool StartsWithShare(std::wstring_view path) {
  if (path.size() < 5 || path[0] != L'\\' || path[1] != L'\\' || path[2] == L'\\' || path[2] == L'?' ||
      path[2] == L'.') {
    return false;
  }
  const size_t shareStart = path.find(L'\\', 2);
  return shareStart != std::wstring_view::npos && shareStart + 1 < path.size() && path[shareStart + 1] != L'\\';
}

// The "\\?\" form passes the path to the file system as it is, so runs of backslashes
// that the plain API would have folded must be folded here.
std::wstring FoldBackslashes(std::wstring_view path, size_t from) {
  std::wstring folded(path.substr(0, from));
  for (size_t i = from; i < path.size(); ++i) {
    if (path[i] == L'\\' && !folded.empty() && folded.back() == L'\\') {
      continue;
    }
    folded += path[i];
  }
  return folded;
}

}  // namespace

std::wstring ForFileApi(std::wstring_view path) {
  // Folders get 12 characters less than MAX_PATH from the plain API (room for an 8.3 name).
  if (path.size() < MAX_PATH - 12 || path.substr(0, kLongPrefix.size()) == kLongPrefix) {
    return std::wstring(path);
  }
  if (StartsWithDrive(path)) {
    return std::wstring(kLongPrefix) + FoldBackslashes(path, 3);
  }
  if (StartsWithShare(path)) {
    return std::wstring(kLongPrefix) + L"UNC\\" + FoldBackslashes(path.substr(2), 0);
  }
  return std::wstring(path);
}

}  // namespace lumenor
