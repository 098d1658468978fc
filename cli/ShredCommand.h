// "lumenor-cli shred": the named files, and every file below the named folders, shredded
// by one method through the same job as the shred page, one line a file and a summary.
#pragma once

#include "base/StopToken.h"
#include "cli/CliOptions.h"
#include "cli/ConsoleOutput.h"

#include <functional>
#include <string>
#include <string_view>

namespace lumenor {

// Checks every path before anything is touched: a relative or device path, or a folder
// the folder rules protect, goes to `usageError` (whose answer is returned) and nothing
// is shredded. Otherwise the exit status: 0 when every file was shredded, 1 when any
// was not (or the output could not be written). A folder link met below a folder is no
// file: it is told as skipped. A stop request ends the pass at hand, as the page's stop
// button does; that file and the ones after it are told as not shredded.
int RunShredCommand(const ShredCommandOptions& options, const ConsoleOutput& out, const ConsoleOutput& err,
                    const std::function<int(std::wstring_view)>& usageError, const StopToken& stop);

}  // namespace lumenor
