// Conversions between the program's UTF-16 text and UTF-8 (console and file output, and
// the files other programs write), without windows, so that the readers built on them
// run and are tested the same everywhere.
//
// Text that is not well formed is never refused and never stops a conversion: each
// surrogate without its partner, and each unit that is no UTF-16 code unit at all,
// becomes U+FFFD in UTF-8; each maximal ill-formed part of UTF-8 (a stray byte, a cut
// sequence, an overlong form, an encoded surrogate, anything above U+10FFFF) becomes one
// U+FFFD, as the Unicode standard recommends. Well-formed text goes there and back
// unchanged.
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

}  // namespace lumenor
