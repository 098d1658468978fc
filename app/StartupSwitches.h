// The switches of lumenor.exe's command line, read from the whole line without windows.
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

struct StartupSwitches {
  bool autoStarted = false;
  bool hasShredPath = false;
  std::wstring shredPath;
};

// Reads the switches from a whole command line (program path included). Both are found
// by a case-sensitive plain substring search: "-A" anywhere after the first character,
// and "-S:" followed by everything to the end of the line, kept exactly as it stands.
StartupSwitches ReadStartupSwitches(std::wstring_view commandLine);

}  // namespace lumenor
