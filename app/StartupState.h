// What the command line asked for at start-up. Written once before the main window
// exists, then only by the GUI thread.
#pragma once

#include "app/StartupSwitches.h"

#include <string>

namespace lumenor {

// 1 when started at log-on ("-A"): no splash, and the main window starts hidden until a
// page is brought forward from the notification-area menu.
extern int AutoStarted;
// The path handed to the shredder with "-S:", or empty.
extern std::wstring ShredPathArgument;

// Sets AutoStarted and ShredPathArgument from the process's command line; returns 1 when
// "-S:" was given, else 0.
int ParseCommandLine();

}  // namespace lumenor
