#include "app/StartupState.h"

#include <windows.h>

namespace lumenor {

int AutoStarted = 0;
std::wstring ShredPathArgument;

int ParseCommandLine() {
  const wchar_t* commandLine = GetCommandLineW();
  const StartupSwitches switches = ReadStartupSwitches(commandLine != nullptr ? commandLine : L"");
  if (switches.autoStarted) {
    AutoStarted = 1;
  }
  if (!switches.hasShredPath) {
    return 0;
  }
  ShredPathArgument = switches.shredPath;
  return 1;
}

}  // namespace lumenor
