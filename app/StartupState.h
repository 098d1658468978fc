// What the command line asked for at start-up. Written once before the main window
// exists, then only by the GUI thread.
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

// 1 when started at log-on ("-A"): no splash, and the main window starts hidden until a
// page is brought forward from the notification-area menu.
extern int AutoStarted;
// The path handed to the shredder with "-S:", or empty.
extern std::wstring ShredPathArgument;

struct StartupSwitches {
  bool autoStarted = false;
  bool hasShredPath = false;
  std::wstring shredPath;
};

// Reads the switches from a whole command line (program path included). Both are found
// by a case-sensitive plain substring search: "-A" anywhere after the first character,
// and "-S:" followed by everything to the end of the line, kept exactly as it stands.
StartupSwitches ReadStartupSwitches(std::wstring_view commandLine);

// Sets AutoStarted and ShredPathArgument from the process's command line; returns 1 when
// "-S:" was given, else 0.
int ParseCommandLine();

}  // namespace lumenor
