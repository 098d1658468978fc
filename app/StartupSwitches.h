// What the command line asks for at start-up, read from the whole line without windows.
// The application object reads it once and hands it to the main window, which owns it
// from then on.
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

struct StartupSwitches {
  // Started at log-on ("-A"): no splash, and the main window starts hidden until a page
  // is brought forward from the notification-area menu.
  bool autoStarted = false;
  // "-S:" was given; `shredPath` is everything after it, the path handed to the shredder.
  bool hasShredPath = false;
  std::wstring shredPath;
};

// Reads the switches from a whole command line (program path included). Both are found
// by a case-sensitive plain substring search: "-A" anywhere after the first character,
// and "-S:" followed by everything to the end of the line, kept exactly as it stands.
StartupSwitches ReadStartupSwitches(std::wstring_view commandLine);

}  // namespace lumenor
