// lumenor-cli junk: the junk walk of every fixed disk or one folder, printed one file a
// line, and with --delete the removal of what it found.
#pragma once

#include "cli/ConsoleOutput.h"
#include "engine/SystemPaths.h"

#include <optional>
#include <string>
#include <vector>

namespace lumenor {

struct JunkCommandOptions {
  std::optional<std::wstring> folder;  // as typed; every fixed disk without it
  std::vector<std::wstring> masks;     // catalogue masks, in the order given
  bool remove = false;
  bool json = false;
};

// Reads the arguments after "junk". On a mistake (an unknown mask, a folder that is not
// absolute, ...), `problem` names it.
std::optional<JunkCommandOptions> ParseJunkCommandOptions(const std::vector<std::wstring>& arguments,
                                                          std::wstring& problem);

// Exit status: 0 done, 1 a deletion failed or could not be written.
int RunJunkCommand(const JunkCommandOptions& options, const SystemPaths& paths, const ConsoleOutput& out,
                   const ConsoleOutput& err);

}  // namespace lumenor
