// Texts the junk pages build from string-table patterns: "%1" and "%2" filled in, so a
// translation may put them in another order, and sizes in megabytes.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace lumenor {

// `pattern` with "%1", "%2", ... replaced by the values in order.
std::wstring FillIn(std::wstring_view pattern, std::initializer_list<std::wstring_view> values);

// `bytes` in megabytes with two decimals: "0.00", "12.35".
std::wstring MegabytesText(uint64_t bytes);

}  // namespace lumenor
