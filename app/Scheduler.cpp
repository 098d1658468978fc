#include "app/Scheduler.h"

namespace lumenor {

bool ScheduledScanDue(const OptionValues& options, const SYSTEMTIME& now) {
  if (options.scheduleOn == 0) {
    return false;
  }
  if (options.day != 0 && options.day != now.wDay + 1) {
    return false;
  }
  const int hour = options.hour + (options.pm == 1 ? 12 : 0);
  return hour == now.wHour && options.minute == now.wMinute;
}

}  // namespace lumenor
