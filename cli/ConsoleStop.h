// lumenor-cli's stop request: Ctrl+C, Ctrl+Break and the console closing set it, as the
// stop button does on a page. The commands test it between entries, end the file or pass
// at hand, print their summary so far and return; the program then exits with 130.
#pragma once

#include "base/StopToken.h"

namespace lumenor {

// The program's exit status after a stop, as shells report a command ended by Ctrl+C.
inline constexpr int kStoppedExitStatus = 130;

// Listens for the console's stop events while it exists; one at a time.
class ConsoleStop {
 public:
  ConsoleStop();
  ConsoleStop(const ConsoleStop&) = delete;
  ConsoleStop& operator=(const ConsoleStop&) = delete;
  // Tells a console that is closing that the command has ended and printed all it had.
  ~ConsoleStop();

  StopToken Token() const;
  bool Requested() const;
};

}  // namespace lumenor
