// "lumenor-cli shred": the named files, and every file below the named folders, shredded
// by one method through the same job as the shred page, one line a file and a summary.
#pragma once

#include "cli/ConsoleOutput.h"
#include "shred/ShredMethod.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

struct ShredCommandOptions {
  ShredMethod method = ShredMethod::kQuick;  // the page's default
  bool json = false;
  std::vector<std::wstring> paths;
};

// Reads the arguments after the command name. On a mistake, `problem` names it.
std::optional<ShredCommandOptions> ParseShredCommandOptions(const std::vector<std::wstring>& arguments,
                                                            std::wstring& problem);

// Checks every path before anything is touched: a relative or device path, or a folder
// the folder rules protect, goes to `usageError` (whose answer is returned) and nothing
// is shredded. Otherwise the exit status: 0 when every file was shredded, 1 when any
// was not (or the output could not be written).
int RunShredCommand(const ShredCommandOptions& options, const ConsoleOutput& out, const ConsoleOutput& err,
                    const std::function<int(std::wstring_view)>& usageError);

}  // namespace lumenor
