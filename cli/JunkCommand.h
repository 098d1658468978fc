// lumenor-cli junk: the junk walk of every fixed disk or one folder, printed one file a
// line, and with --delete the removal of what it found.
#pragma once

#include "base/StopToken.h"
#include "cli/CliOptions.h"
#include "cli/ConsoleOutput.h"
#include "engine/SystemPaths.h"

namespace lumenor {

// Exit status: 0 done, 1 a deletion failed or could not be written. A stop request ends
// the walk, or the removal, between files; what was found or deleted so far is printed.
int RunJunkCommand(const JunkCommandOptions& options, const SystemPaths& paths, const ConsoleOutput& out,
                   const ConsoleOutput& err, const StopToken& stop);

}  // namespace lumenor
