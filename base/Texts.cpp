#include "base/Texts.h"

#include <windows.h>

#include <algorithm>
#include <vector>

namespace lumenor {

std::wstring FillIn(std::wstring_view pattern, std::initializer_list<std::wstring_view> values) {
  const std::vector<std::wstring_view> filling(values);
  std::wstring text;
  for (size_t at = 0; at < pattern.size(); ++at) {
    const wchar_t next = at + 1 < pattern.size() ? pattern[at + 1] : L'\0';
    const size_t index = static_cast<size_t>(next - L'1');
    if (pattern[at] == L'%' && next >= L'1' && next <= L'9' && index < filling.size()) {
      text += filling[index];
      ++at;
    } else {
      text += pattern[at];
    }
  }
  return text;
}

std::wstring MegabytesText(uint64_t bytes, int decimals) {
  // Whole numbers of the last decimal place, rounded half up: no floating-point formatting.
  constexpr uint64_t kMegabyte = uint64_t{1024} * 1024;
  decimals = std::clamp(decimals, 0, 3);
  uint64_t scale = 1;
  for (int place = 0; place < decimals; ++place) scale *= 10;
  const uint64_t units = bytes / kMegabyte * scale + (bytes % kMegabyte * scale + kMegabyte / 2) / kMegabyte;
  std::wstring text = std::to_wstring(units / scale);
  if (decimals > 0) {
    std::wstring fraction = std::to_wstring(units % scale);
    fraction.insert(0, static_cast<size_t>(decimals) - fraction.size(), L'0');
    text += L"." + fraction;
  }
  return text;
}

std::wstring GroupedNumber(uint64_t number) {
  std::wstring text = std::to_wstring(number);
  for (size_t digitsAfter = 3; digitsAfter < text.size(); digitsAfter += 4) {  // each comma adds one
    text.insert(text.size() - digitsAfter, 1, L',');
  }
  return text;
}

bool SameText(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && ::CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                                        static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
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
