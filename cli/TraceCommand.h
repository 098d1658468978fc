// "lumenor-cli scan" and "lumenor-cli erase": the selected items scanned in catalogue
// order, every trace printed, and for erase every item with traces erased after the scan.
#pragma once

#include "base/StopToken.h"
#include "cli/CliOptions.h"
#include "cli/ConsoleOutput.h"

namespace lumenor {

class CCatalogue;

enum class TraceCommand { kScan, kErase };

// The exit status: 0, or 1 when a deletion failed or the output could not be written. A
// stop request ends the scan after the entry at hand and erases nothing more; the
// summary so far is printed.
int RunTraceCommand(TraceCommand command, const TraceCommandOptions& options, const CCatalogue& catalogue,
                    const ConsoleOutput& out, const ConsoleOutput& err, const StopToken& stop);

}  // namespace lumenor
