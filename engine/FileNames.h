// Names and paths as the file API reads them, without windows. Every path handed to the
// file API goes in its "\\?\" form, so the system acts on exactly the name given: the
// plain form would drop a trailing dot or blank ("a." opens "a") and read "NUL" as a
// device. Paths are never shortened.
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

// `path` (absolute: "X:\..." or "\\server\share\...") as the file API takes it: in
// "\\?\" form with runs of backslashes folded; a path already in that form, or one that
// is not absolute, unchanged.
std::wstring ForFileApi(std::wstring_view path);

// Whether the system reads `name` as a device in any folder: CON, PRN, AUX, NUL,
// CONIN$, CONOUT$, COM0 to COM9 and LPT0 to LPT9 (with the superscript digits 1, 2 and
// 3 too), in any letter case, also when followed by blanks, dots or an extension.
bool IsDeviceName(std::wstring_view name);

// Whether a file name typed or handed over by someone names the same file in the plain
// form as in the "\\?\" form: not empty, no "." or "..", no control character or one of
// <>:"/\|?*, no trailing dot or blank, and no device name.
bool IsUnambiguousFileName(std::wstring_view name);

}  // namespace lumenor
