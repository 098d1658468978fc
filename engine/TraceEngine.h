// Scanning and erasing whole items: each location of an item handed to the registry or
// file primitives, every trace found reported as a row and counted in the run on the
// item, its application and its category.
#pragma once

#include "base/StopToken.h"
#include "engine/FolderSafety.h"
#include "engine/ScanRun.h"
#include "engine/TraceSink.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumenor {

// Scans every location of the run's item (filled beforehand), in order, counting each
// trace in `run`. A file location whose folder the guard refuses is reported as skipped
// and not walked; in a protected folder a location that names one file looks at that file
// alone. A location without a folder (one that could not be found) is passed over
// without a word. Where Firefox's "places.sqlite" holds bookmarks, or the run keeps the
// cookies of some domain, the rows an erase would delete are reported instead of the file.
void ScanItem(ScanRun& run, ScanRun::Item& item, TraceSink& sink, const StopToken& stop, const FolderGuard& guard);

// Erases every location of the item, in order, under the same folder rules as the scan.
// Before each file location of "History (Visited sites)" the browser's own history store
// is cleared too. Firefox's "places.sqlite" and "cookies.sqlite" (see FirefoxStores.h)
// are edited row by row where they must stay, the cookies of `keep` staying.
void EraseItem(const ScanRun::Item& item, EraseTally& tally, const FolderGuard& guard, const CookieKeepList& keep);

// Deletes the trace of one row of the results list. A file row goes only if the file
// could be deleted, a folder row (its name ending with "\") only if the folder was empty;
// a registry row always goes, after its value is deleted from the current user's branch
// whatever root the row names. When the row should go, the bytes
// deleted with it (the file's size, the value's data); nothing when it stays.
std::optional<uint64_t> RemoveListedTrace(const std::wstring& name, const std::wstring& location, bool isRegistry);

}  // namespace lumenor
