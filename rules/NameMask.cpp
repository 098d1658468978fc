#include "rules/NameMask.h"

#include <algorithm>

namespace lumenor::rules {

namespace {

wchar_t FoldAscii(wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c; }

}  // namespace

bool MatchesEveryName(std::wstring_view mask) {
  return !mask.empty() &&
         (mask == L"*.*" || std::all_of(mask.begin(), mask.end(), [](wchar_t c) { return c == L'*'; }));
}

bool HasWildcard(std::wstring_view text) { return text.find_first_of(L"*?") != std::wstring_view::npos; }

bool MaskMatches(std::wstring_view mask, std::wstring_view name) {
  if (MatchesEveryName(mask)) return true;
  // Greedy matching with one remembered star: linear in practice, never recursive.
  size_t m = 0;
  size_t n = 0;
  size_t star = std::wstring_view::npos;
  size_t resume = 0;
  while (n < name.size()) {
    if (m < mask.size() && mask[m] == L'*') {
      star = m++;
      resume = n;
    } else if (m < mask.size() && (mask[m] == L'?' || FoldAscii(mask[m]) == FoldAscii(name[n]))) {
      ++m;
      ++n;
    } else if (star != std::wstring_view::npos) {
      m = star + 1;
      n = ++resume;
    } else {
      return false;
    }
  }
  while (m < mask.size() && mask[m] == L'*') ++m;
  return m == mask.size();
}

}  // namespace lumenor::rules
