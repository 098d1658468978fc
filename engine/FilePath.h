// Path rules of the file primitives: the names and paths of FileNames.h, what the file
// system knows a file by, and links known by their attribute.
#pragma once

#include "engine/FileNames.h"

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumenor {

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
