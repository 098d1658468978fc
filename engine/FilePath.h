// Path rules of the file primitives: they act only on absolute folders, and a path too
// long for the plain API is handed over in its "\\?\" form, never shortened.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace lumenor {

// "C:\..." or "\\server\share\...": a folder the primitives may walk. Anything else
// (empty, relative, "C:" without backslash) would be taken relative to the current
// folder, so it is refused.
bool IsAbsoluteFolder(std::wstring_view folder);

// "C:\" and the like.
bool IsDriveRoot(std::wstring_view folder);

// `path` as the file API needs it: unchanged while short, in "\\?\" form when long.
std::wstring ForFileApi(std::wstring_view path);

// Whether the entry is a link of any kind (junction, symbolic link, mount point): such
// an entry is never entered.
inline bool IsReparsePoint(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }

}  // namespace lumenor
