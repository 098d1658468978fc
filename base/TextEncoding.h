// Conversions between the program's UTF-16 text and UTF-8 (console and file output).
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

}  // namespace lumenor
