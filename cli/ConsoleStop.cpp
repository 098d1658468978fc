#include "cli/ConsoleStop.h"

#include <windows.h>

#include <atomic>

namespace lumenor {

namespace {

// When the console closes, the system ends the process as soon as the handler returns,
// and at the latest after five seconds: the handler waits for the command to end first.
constexpr DWORD kCloseGraceMs = 4500;
constexpr DWORD kCloseStepMs = 20;

// The handler takes no argument and runs on a thread the system starts for it, so what it
// sets lives here, for the whole process; nothing in it needs destroying.
struct ConsoleStopState {
  StopSignal signal;
  std::atomic<bool> commandEnded{false};
};
ConsoleStopState consoleStopState;

BOOL WINAPI OnConsoleEvent(DWORD event) {
  switch (event) {
    case CTRL_C_EVENT:
    case CTRL_BREAK_EVENT:
      consoleStopState.signal.Request();
      return TRUE;
    case CTRL_CLOSE_EVENT:
    case CTRL_LOGOFF_EVENT:
    case CTRL_SHUTDOWN_EVENT:
      consoleStopState.signal.Request();
      for (DWORD waited = 0; waited < kCloseGraceMs && !consoleStopState.commandEnded.load(); waited += kCloseStepMs) {
        Sleep(kCloseStepMs);
      }
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

ConsoleStop::ConsoleStop() {
  // Without the handler the system ends the program at once, as before; the command
  // runs all the same.
  (void)SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

ConsoleStop::~ConsoleStop() {
  consoleStopState.commandEnded.store(true);
  // The handler stays: a stop that comes now finds the command ended and changes nothing.
}

StopToken ConsoleStop::Token() const { return StopToken(&consoleStopState.signal); }

bool ConsoleStop::Requested() const { return consoleStopState.signal.Requested(); }

}  // namespace lumenor
