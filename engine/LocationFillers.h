// The fillers of the location table: the folder each base of a row stands for on this
// machine, worked out afresh at every call, and the bases that stand for several folders
// (recycle bins, Messenger logs) or a whole file (the paging file).
#pragma once

#include "engine/LocationTable.h"
#include "engine/SystemPaths.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// The one folder a folder base stands for; nothing when it cannot be found, and for the
// registry roots and the bases that stand for more than one folder.
std::optional<std::wstring> FindBaseFolder(From base, const SystemPaths& paths);

// "RECYCLER\" and then "Recycled\" on every fixed drive, in drive order.
std::vector<std::wstring> RecycleBinFolders(const SystemPaths& paths);

// The log folder named by every Messenger passport that names one, in key order.
std::vector<std::wstring> MessengerLogFolders(const SystemPaths& paths);

// The paging file named by the "PagingFiles" setting, such as
// "C:\pagefile.sys 1536 3072": its folder (up to the last backslash before the first
// blank) and its name (the rest up to that blank). Empty parts when there is none.
struct PagingFile {
  std::wstring folder;
  std::wstring name;
};
PagingFile ParsePagingFile(std::wstring_view value);

// The machine's paging file; nothing without a setting, or when it lacks a folder or a name.
std::optional<PagingFile> FindPagingFile(const SystemPaths& paths);

}  // namespace lumenor
