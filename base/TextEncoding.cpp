#include "base/TextEncoding.h"

#include <windows.h>

#include <climits>

namespace lumenor {

std::string ToUtf8(std::wstring_view text) {
  if (text.empty() || text.size() > INT_MAX) {
    return {};
  }
  const int sourceLength = static_cast<int>(text.size());
  const int length = WideCharToMultiByte(CP_UTF8, 0, text.data(), sourceLength, nullptr, 0, nullptr, nullptr);
  if (length <= 0) {
    return {};
  }
  std::string result(static_cast<size_t>(length), '\0');
  const int written =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), sourceLength, result.data(), length, nullptr, nullptr);
  result.resize(written > 0 ? static_cast<size_t>(written) : 0);
  return result;
}

std::wstring FromUtf8(std::string_view text) {
  if (text.empty() || text.size() > INT_MAX) {
    return {};
  }
  const int sourceLength = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), sourceLength, nullptr, 0);
  if (length <= 0) {
    return {};
  }
  std::wstring result(static_cast<size_t>(length), L'\0');
  const int written = MultiByteToWideChar(CP_UTF8, 0, text.data(), sourceLength, result.data(), length);
  result.resize(written > 0 ? static_cast<size_t>(written) : 0);
  return result;
}

}  // namespace lumenor
