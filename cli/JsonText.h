// JSON string literals for the command-line tool's --json output.
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

// `text` as a quoted JSON string, with quotes, backslashes and control characters escaped,
// and a surrogate without its partner written as its "\uXXXX" escape.
std::wstring JsonString(std::wstring_view text);

}  // namespace lumenor
