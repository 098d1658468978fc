// Small text helpers every layer shares: string-table patterns filled in ("%1", "%2", ...
// in any order, so a translation may reorder them), sizes in megabytes, and names compared
// as the file system compares them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace lumenor {

// `pattern` with "%1", "%2", ... replaced by the values in order; a mark without a value
// stays as it is.
std::wstring FillIn(std::wstring_view pattern, std::initializer_list<std::wstring_view> values);

// `bytes` in megabytes (of 1,048,576 bytes), rounded to `decimals` places (0 to 3):
// "0.00", "12.35", "2.0".
std::wstring MegabytesText(uint64_t bytes, int decimals);

// A size as a cleaner shows it: "12.3 MB" from one megabyte (1,048,576 bytes) on, with one
// decimal; below that in whole kilobytes, rounded up ("1 KB" for a single byte, "0 KB"
// for nothing).
std::wstring FormatByteSize(uint64_t bytes);

// Whether two names are the same regardless of letter case, as the file system compares
// them (ordinal, not by language).
bool SameText(std::wstring_view a, std::wstring_view b);

}  // namespace lumenor
