// Which registry keys, values, folders and files each item of the fixed catalogue
// covers: the rows of its location table, made into records for this machine.
#pragma once

#include "catalogue/LocationRecord.h"
#include "engine/SystemPaths.h"

#include <cstddef>
#include <vector>

namespace lumenor {

// At most this many locations for an item of the fixed catalogue; a checked bound.
inline constexpr size_t kMaxFixedItemLocations = 26;

// The locations of one item of the fixed catalogue, in their fixed order. When a folder
// the item needs cannot be found (a shell folder, a variable, a registry value, a
// profile), the list ends there: what was made before stays. A record whose path or
// selector does not fit (kMaxLocationText) is left out, never shortened, and so is any
// record past kMaxFixedItemLocations. Ids without locations give an empty list.
std::vector<LocationRecord> FixedItemLocations(unsigned id, const SystemPaths& paths = MachinePaths());

}  // namespace lumenor
