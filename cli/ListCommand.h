// "lumenor-cli list": the privacy catalogue, one node a line (id, level, display name,
// separated by tabs), in catalogue order.
#pragma once

#include "cli/ConsoleOutput.h"

namespace lumenor {

class CMyObject;

int RunListCommand(CMyObject* catalogueRoot, const ConsoleOutput& out);

}  // namespace lumenor
