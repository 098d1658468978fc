// Path rules of the file primitives. Every path handed to the file API goes in its
// "\\?\" form, so the system acts on exactly the name given: the plain form would drop a
// trailing dot or blank ("a." opens "a") and read "NUL" as a device. Paths are never
// shortened, and links are known by their attribute.
#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
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

// What the file system knows a file or folder by on its volume, whatever its spelling
// (a short name, a folder link above it, a drive letter given to a folder).
struct FileIdentity {
  uint32_t volume = 0;
  uint64_t file = 0;
  bool operator==(const FileIdentity&) const = default;
};
// Of what `handle` has open; nothing when the system does not tell, or tells no number.
std::optional<FileIdentity> IdentityOfHandle(HANDLE handle);
// Of the file or folder `path` (any form) leads to; nothing when it cannot be opened or the
// system tells no number.
std::optional<FileIdentity> IdentityOfPath(std::wstring_view path);

inline bool IsFolder(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }

// Whether the entry is a link of any kind (junction, symbolic link, mount point): such
// an entry is never entered.
inline bool IsReparsePoint(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }

}  // namespace lumenor
