// "lumenor-cli rules check FILE": reads one rule file as the program would load it and
// prints every problem with its place in the file, then how much of it loads. Nothing is
// scanned or erased.
#pragma once

#include "cli/ConsoleOutput.h"

#include <optional>
#include <string>
#include <vector>

namespace lumenor {

struct RulesCheckOptions {
  std::wstring file;  // as typed; a relative path is taken from the current folder
  bool json = false;
};

// Reads the arguments after "rules check". On a mistake, `problem` names it.
std::optional<RulesCheckOptions> ParseRulesCheckOptions(const std::vector<std::wstring>& arguments,
                                                        std::wstring& problem);

// 0 when the file loads without a problem, 1 with problems (or when the lines could not be
// written), 2 when it cannot be read at all: missing, over 64 MiB, or not a rule file.
int RunRulesCheck(const RulesCheckOptions& options, const ConsoleOutput& out, const ConsoleOutput& err);

}  // namespace lumenor
