// What happens to one file: it is opened for overwriting only when that cannot reach
// anything but its own data (never through a link, never a file with other names),
// overwritten pass by pass, each pass flushed to the disk, and deleted under a random
// name so that its own name leaves no trace in the folder.
#pragma once

#include "base/StopToken.h"
#include "base/UniqueHandle.h"
#include "engine/FolderSafety.h"
#include "shred/ShredFailure.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace lumenor {

struct OpenedForOverwrite {
  UniqueHandle file;
  uint64_t size = 0;
  ShredFailure failure = ShredFailure::kNone;
};

// Opens `file` (any length) for writing, or says why not. The handle is checked to be the
// file of that very name: on Windows a link shows by its attribute; where the system shows
// a file link as a plain file (Wine does), the handle's final path gives it away.
OpenedForOverwrite OpenForOverwrite(const SafePath& file);

// Writes `pattern` over the whole file from its start in chunks of at most 64 KiB,
// testing `stop` before each chunk, then flushes it to the disk. `chunkWritten` hears of
// each chunk. The file's length never changes.
ShredFailure OverwritePass(HANDLE file, uint64_t size, const unsigned char* pattern, const StopToken& stop,
                           const std::function<void(uint32_t bytes)>& chunkWritten);

// A name as long as `name`, of letters and digits, from rand().
std::wstring RandomNameLike(std::wstring_view name);

struct Deletion {
  bool deleted = false;
  std::wstring path;  // where the file is now when it could not be deleted
};

// Renames the closed `file` to a random name of the same length in the same folder, then
// deletes it. A failed rename does not stop the deletion.
Deletion DeleteUnderRandomName(const SafePath& file);

}  // namespace lumenor
