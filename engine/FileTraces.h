// Scanning and erasing one file location: a folder walked with everything below it.
#pragma once

#include "catalogue/LocationRecord.h"
#include "engine/StopToken.h"
#include "engine/TraceSink.h"

#include <functional>
#include <string_view>

namespace lumenor {

// Called for each file found: its folder (ending with "\") and its name.
using FileTraceFound = std::function<void(std::wstring_view folder, std::wstring_view fileName)>;

// True when a scan reports `fileName` for a location of this selector and kind:
// kinds 10 and 13 every file; 11 a name whose extension (from its last ".") equals the
// selector; 12 a name equal to the selector; any other kind nothing. Case counts.
bool ScanReportsFile(std::wstring_view fileName, std::wstring_view selector, int kind);

// Walks `folder` and every sub-folder, reporting each file the kind selects. The walk
// looks at every entry, except for the selectors "setupapi.log", "DirectX.log" and
// "pagefile.sys", which look only for that name. Links are never entered. Ends early on
// a stop request. A folder that is not absolute is not walked.
void ScanFileLocation(std::wstring_view folder, std::wstring_view selector, int kind, const StopToken& stop,
                      const FileTraceFound& found);

// Deletes every file of `folder` that matches `selector` as a wildcard pattern, entering
// sub-folders whose names match it too, and removes each folder it emptied, `folder`
// itself included. A file that cannot be deleted is reported as failed and scheduled for
// deletion at the next restart. Links are removed, never entered. A folder that is not
// absolute is left alone, and so is a whole drive.
void EraseFileLocation(std::wstring_view folder, std::wstring_view selector, EraseTally& tally);

}  // namespace lumenor
