// Which registry keys, values, folders and files each privacy item covers.
#pragma once

#include "catalogue/LocationRecord.h"
#include "engine/SystemPaths.h"

#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// The paging file named by the "PagingFiles" setting, such as
// "C:\pagefile.sys 1536 3072": its folder (up to the last backslash before the first
// blank) and its name (the rest up to that blank). Empty parts when there is none.
struct PagingFile {
  std::wstring folder;
  std::wstring name;
};
PagingFile ParsePagingFile(std::wstring_view value);

// At most this many locations for an item of the fixed catalogue; a checked bound.
inline constexpr size_t kMaxFixedItemLocations = 26;

// The locations of one item of the fixed catalogue, in their fixed order. When a folder
// the item needs cannot be found (a shell folder, a variable, a registry value, a
// profile), the list ends there: what was added stays. A record whose path does not fit
// is left out, never shortened, and so is one past the bound. Ids without locations give
// an empty list.
std::vector<LocationRecord> FixedItemLocations(unsigned id, const SystemPaths& paths = MachinePaths());

}  // namespace lumenor
