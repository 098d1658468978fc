// "lumenor-cli list": the privacy catalogue, one node a line (id, level, display name,
// separated by tabs), in catalogue order: the fixed catalogue, then the rule items found
// on this machine. With --json one object a line, with its parent, and for items whether
// they are ticked by default and the warning shown when they are ticked.
#pragma once

#include "cli/ConsoleOutput.h"

namespace lumenor {

class CCatalogue;

int RunListCommand(const CCatalogue& catalogue, bool json, const ConsoleOutput& out);

}  // namespace lumenor
