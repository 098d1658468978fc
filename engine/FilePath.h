// Path rules of the file primitives: the names and paths of FileNames.h, and links known
// by their attribute.
#pragma once

#include "engine/FileNames.h"

#include <windows.h>

namespace lumenor {

// Whether the entry is a link of any kind (junction, symbolic link, mount point): such
// an entry is never entered.
inline bool IsReparsePoint(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }

}  // namespace lumenor
