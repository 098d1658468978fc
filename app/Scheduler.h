// When the scheduled scan fires. The main window asks this at every tick of its
// 60-second timer with the local time.
#pragma once

#include "settings/Settings.h"

#include <windows.h>

namespace lumenor {

// True when a tick at `now` starts the one-click erase: the scheduler is on ("every" not
// 0); "day" is 0 or equals the day of the month plus one (the month's day, not the week's,
// so "Sunday" never fires and "Monday" fires on the 1st: kept as it has always been);
// and the hour ("hour", plus 12 when "when" is 1) and the minute match.
bool ScheduledScanDue(const OptionValues& options, const SYSTEMTIME& now);

}  // namespace lumenor
