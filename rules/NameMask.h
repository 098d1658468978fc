// Masks of rule files matched against names: a whole file name (or one folder name of a
// wildcard folder), letter case aside, `*` standing for any run of characters and `?` for
// one. The match is anchored at both ends: "LOG" matches "log", never "other.log". "*.*"
// matches every name, with or without an extension, as users of Windows expect.
#pragma once

#include <string_view>

namespace lumenor::rules {

// Letter case is folded for ASCII letters; other characters must be the same.
bool MaskMatches(std::wstring_view mask, std::wstring_view name);

// Whether the text holds `*` or `?`.
bool HasWildcard(std::wstring_view text);

// Whether the mask matches every name: "*", "*.*", "**".
bool MatchesEveryName(std::wstring_view mask);

}  // namespace lumenor::rules
