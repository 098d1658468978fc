#include "app/StartupSwitches.h"

namespace lumenor {

StartupSwitches ReadStartupSwitches(std::wstring_view commandLine) {
  StartupSwitches switches;
  // A match at the very start is ignored; the line starts with the program's path anyway.
  const size_t autoSwitch = commandLine.find(L"-A");
  switches.autoStarted = autoSwitch != std::wstring_view::npos && autoSwitch > 0;

  constexpr std::wstring_view kShredSwitch = L"-S:";
  const size_t shredSwitch = commandLine.find(kShredSwitch);
  if (shredSwitch != std::wstring_view::npos) {
    switches.hasShredPath = true;
    switches.shredPath = commandLine.substr(shredSwitch + kShredSwitch.size());
  }
  return switches;
}

}  // namespace lumenor
