// Process-wide flags of the privacy scan workflow, set by the scan and erase workers
// and read by the main window. Each is 0 or 1.
#pragma once

#include <atomic>

namespace lumenor {

// From the start of a scan (or one-click erase) to its end.
extern std::atomic<int> ScanBusy;
// Set and cleared together with ScanBusy.
extern std::atomic<int> ScanRunning;
// While the erase progress dialog runs.
extern std::atomic<int> EraseDialogOpen;

}  // namespace lumenor
