// Path rules of the file primitives: a path too long for the plain API is handed over in
// its "\\?\" form, never shortened, and links are known by their attribute.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace lumenor {

// `path` as the file API needs it: unchanged while short, in "\\?\" form when long.
std::wstring ForFileApi(std::wstring_view path);

// Whether the entry is a link of any kind (junction, symbolic link, mount point): such
// an entry is never entered.
inline bool IsReparsePoint(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }

}  // namespace lumenor
