// "lumenor-cli update-check": whether the maker's site offers a newer version. It never
// asks anything.
#pragma once

#include "cli/ConsoleOutput.h"

namespace lumenor {

// 0 when the check completed (whatever it found), 1 when it could not connect.
int RunUpdateCheck(bool json, const ConsoleOutput& out);

}  // namespace lumenor
