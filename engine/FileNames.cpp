#include "engine/FileNames.h"

#include "base/AsciiText.h"

#include <algorithm>
#include <array>

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

// The digits Windows takes after COM and LPT: 0 to 9 and the superscripts one, two, three.
bool IsPortDigit(wchar_t c) { return (c >= L'0' && c <= L'9') || c == L'\u00B9' || c == L'\u00B2' || c == L'\u00B3'; }

}  // namespace

std::wstring ForFileApi(std::wstring_view path) {
  if (path.substr(0, kLongPrefix.size()) == kLongPrefix) {
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

bool IsDeviceName(std::wstring_view name) {
  // The system reads only what stands before the first dot, less trailing blanks.
  std::wstring_view stem = name.substr(0, name.find(L'.'));
  while (!stem.empty() && stem.back() == L' ') stem.remove_suffix(1);
  static constexpr std::array<std::wstring_view, 6> kPlain = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
  if (std::any_of(kPlain.begin(), kPlain.end(),
                  [&](std::wstring_view device) { return SameAsciiTextIgnoringCase(stem, device); })) {
    return true;
  }
  return stem.size() == 4 &&
         (SameAsciiTextIgnoringCase(stem.substr(0, 3), L"COM") ||
          SameAsciiTextIgnoringCase(stem.substr(0, 3), L"LPT")) &&
         IsPortDigit(stem[3]);
}

bool IsUnambiguousFileName(std::wstring_view name) {
  if (name.empty() || name == L"." || name == L".." || name.back() == L'.' || name.back() == L' ') {
    return false;
  }
  const bool forbidden = std::any_of(name.begin(), name.end(), [](wchar_t c) {
    return c < 32 || c == L'<' || c == L'>' || c == L':' || c == L'"' || c == L'/' || c == L'\\' || c == L'|' ||
           c == L'?' || c == L'*';
  });
  return !forbidden && !IsDeviceName(name);
}

}  // namespace lumenor
