#include "rules/MaskRules.h"

namespace lumenor::rules {

namespace {

std::wstring Quoted(std::wstring_view text) { return L"\"" + std::wstring(text) + L"\""; }

bool OnlyDots(std::wstring_view name) {
  return !name.empty() && name.find_first_not_of(L'.') == std::wstring_view::npos;
}

}  // namespace

int CountWildcards(std::wstring_view name) {
  int count = 0;
  for (const wchar_t c : name) count += (c == L'*' || c == L'?') ? 1 : 0;
  return count;
}

std::wstring_view TrimBlanks(std::wstring_view text) {
  constexpr std::wstring_view kBlanks = L" \t\r\f\v";
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

MaskList SplitMasks(std::wstring_view text) {
  MaskList list;
  while (true) {
    const size_t end = text.find(L';');
    const std::wstring_view mask = TrimBlanks(text.substr(0, end));
    if (mask.find_first_of(L"\\/:") != std::wstring_view::npos) {
      return {{}, L"mask " + Quoted(mask) + L" names a path, not a file name"};
    }
    if (OnlyDots(mask)) return {{}, L"mask " + Quoted(mask) + L" names no file"};
    if (CountWildcards(mask) > kMaxWildcards) {
      return {{}, L"mask " + Quoted(mask) + L" has more than " + std::to_wstring(kMaxWildcards) + L" wildcards"};
    }
    if (!mask.empty()) list.masks.emplace_back(mask);
    if (end == std::wstring_view::npos) return list;
    text.remove_prefix(end + 1);
  }
}

}  // namespace lumenor::rules
