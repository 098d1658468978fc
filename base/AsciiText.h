// Letter case of the ASCII letters alone, for the fixed words of paths, switches and
// settings files ("UNC", "CON", "Version"). Unlike the system's case tables it gives the
// same answer everywhere, and no letter outside ASCII ever matches one inside it.
#pragma once

#include <algorithm>
#include <string_view>

namespace lumenor {

inline wchar_t AsciiUpper(wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c; }
inline wchar_t AsciiLower(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

inline bool SameAsciiTextIgnoringCase(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) { return AsciiUpper(x) == AsciiUpper(y); });
}

inline bool StartsWithAsciiTextIgnoringCase(std::wstring_view text, std::wstring_view start) {
  return text.size() >= start.size() && SameAsciiTextIgnoringCase(text.substr(0, start.size()), start);
}

}  // namespace lumenor
