#include "base/TextFormat.h"

#include <vector>

namespace lumenor {

std::wstring FillPlaceholders(std::wstring_view text, std::initializer_list<std::wstring_view> values) {
  const std::vector<std::wstring_view> given(values);
  std::wstring filled;
  filled.reserve(text.size());
  for (size_t index = 0; index < text.size(); ++index) {
    const wchar_t next = index + 1 < text.size() ? text[index + 1] : L'\0';
    if (text[index] == L'%' && next >= L'1' && next <= L'9' && static_cast<size_t>(next - L'1') < given.size()) {
      filled += given[static_cast<size_t>(next - L'1')];
      ++index;
      continue;
    }
    filled += text[index];
  }
  return filled;
}

std::wstring FormatByteSize(uint64_t bytes) {
  constexpr uint64_t kKilobyte = 1024;
  constexpr uint64_t kMegabyte = kKilobyte * kKilobyte;
  if (bytes < kMegabyte) {
    return std::to_wstring((bytes + kKilobyte - 1) / kKilobyte) + L" KB";
  }
  // Tenths of a megabyte, rounded to the nearest, in whole numbers: no floating point.
  const uint64_t tenths = bytes / kMegabyte * 10 + (bytes % kMegabyte * 10 + kMegabyte / 2) / kMegabyte;
  return std::to_wstring(tenths / 10) + L"." + std::to_wstring(tenths % 10) + L" MB";
}

}  // namespace lumenor
