// Process-wide flag of the junk cleaner, set by the junk scan and read by the main
// window and the junk page's tab strip: 1 while a junk search runs.
#pragma once

#include <atomic>

namespace lumenor {

extern std::atomic<int> JunkSearchRunning;

}  // namespace lumenor
