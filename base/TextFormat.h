// Small text helpers every layer shares: filling numbered places in a text from the string
// table, and sizes as users read them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace lumenor {

// `text` with "%1", "%2", ... (up to "%9") replaced by the values, in order; a place
// without a value, and a "%" that starts none, stay as they are.
std::wstring FillPlaceholders(std::wstring_view text, std::initializer_list<std::wstring_view> values);

// A size as a cleaner shows it: "12.3 MB" from one megabyte (1,048,576 bytes) on, with one
// decimal; below that in whole kilobytes, rounded up ("1 KB" for a single byte, "0 KB"
// for nothing).
std::wstring FormatByteSize(uint64_t bytes);

}  // namespace lumenor
