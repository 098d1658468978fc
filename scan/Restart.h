// Restarting Windows, which the privacy erase does when its progress dialog ends in any
// way but Close. The pages call it through this seam so that tests put a recorder in its
// place: no test may restart the machine it runs on.
#pragma once

#include <functional>

namespace lumenor {

using RestartMachine = std::function<void()>;

// Enables the shutdown privilege and restarts at once, closing every program by force.
void RestartWindowsNow();

}  // namespace lumenor
