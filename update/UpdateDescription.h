// Reading what the maker's site says about its latest version, without windows: the
// "update.ini" text and the dotted versions it holds.
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

// 1 when `a` is newer, -1 when `b` is, 0 when equal, -21 when either is malformed. Up
// to four dotted decimal parts count; missing ones are zeros, further ones are ignored.
int CompareVersions(std::wstring_view a, std::wstring_view b);

// The value of `key` in `section` of an INI text in UTF-8 (a byte-order mark ignored;
// the letter case of names and the blanks around names and values do not count); the
// default when either is missing.
std::wstring IniValue(std::string_view text, std::wstring_view section, std::wstring_view key,
                      std::wstring_view fallback);

}  // namespace lumenor
