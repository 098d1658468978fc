#include "junk/JunkTexts.h"

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

std::wstring MegabytesText(uint64_t bytes) {
  // Hundredths of a megabyte, rounded, in whole numbers: no floating-point formatting.
  constexpr uint64_t kMegabyte = 1024 * 1024;
  const uint64_t hundredths = bytes / kMegabyte * 100 + (bytes % kMegabyte * 100 + kMegabyte / 2) / kMegabyte;
  std::wstring decimals = std::to_wstring(hundredths % 100);
  if (decimals.size() < 2) {
    decimals.insert(0, 1, L'0');
  }
  return std::to_wstring(hundredths / 100) + L"." + decimals;
}

}  // namespace lumenor
