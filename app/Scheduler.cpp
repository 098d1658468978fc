#include "app/Scheduler.h"

namespace lumenor {

bool ScheduledScanDue(const OptionValues& options, const SYSTEMTIME& now) {
  if (options.scheduleOn == 0) {
    return false;
  }
  if (options.day != 0 && options.day != now.wDay + 1) {
    return false;
  }
  // Any hour the settings file holds is taken as it stands, so the sum is made wide
  // enough for all of them.
  const long long hour = static_cast<long long>(options.hour) + (options.pm == 1 ? 12 : 0);
  return hour == now.wHour && options.minute == now.wMinute;
}

}  // namespace lumenor
