// Scanning and erasing one file location: a folder walked with everything below it.
#pragma once

#include "base/StopToken.h"
#include "catalogue/LocationRecord.h"
#include "engine/FolderSafety.h"
#include "engine/TraceSink.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace lumenor {

// Called for each file found: its folder (ending with "\"), its name and its size in bytes
// as the folder's listing gives it.
using FileTraceFound = std::function<void(std::wstring_view folder, std::wstring_view fileName, uint64_t bytes)>;

// True when a scan reports `fileName` for a location of this selector and kind:
// kinds 10 and 13 every file; 11 a name whose extension (from its last ".") equals the
// selector; 12 a name equal to the selector; any other kind nothing. Case counts.
bool ScanReportsFile(std::wstring_view fileName, std::wstring_view selector, int kind);

// Walks `folder` and every sub-folder, reporting each file the kind selects. The walk
// looks at every entry, except for the selectors "setupapi.log", "DirectX.log" and
// "pagefile.sys", which look only for that name. Links are never entered. Ends early on
// a stop request.
void ScanFileLocation(const SafeFolder& folder, std::wstring_view selector, int kind, const StopToken& stop,
                      const FileTraceFound& found);

// Deletes every file of `folder` that matches `selector` as a wildcard pattern, entering
// sub-folders whose names match it too, and removes each folder it emptied, `folder`
// itself included. A file that cannot be deleted is reported as failed and scheduled for
// deletion at the next restart. Links are removed, never entered. With `keepFolder` the
// location's own folder stays, emptied.
void EraseFileLocation(const SafeFolder& folder, std::wstring_view selector, EraseTally& tally,
                       bool keepFolder = false);

// Whether `selector` names one file rather than a pattern.
bool NamesOneFile(std::wstring_view selector);

// The same for a location whose folder may not be walked (it holds the system or the
// user's files) but whose selector names one file: only that file of the folder itself
// is looked at or deleted; no folder is entered or removed. `folder` is canonical.
void ScanOneFile(const std::wstring& folder, std::wstring_view fileName, int kind, const FileTraceFound& found);
void EraseOneFile(const std::wstring& folder, std::wstring_view fileName, EraseTally& tally);

}  // namespace lumenor
