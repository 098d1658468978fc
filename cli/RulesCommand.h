// "lumenor-cli rules <sub-command>": the community rules, winapp2.ini beside the program.
// "update" fetches a fresh copy and keeps the old one unless the new one arrived whole and
// reads as rules.
#pragma once

#include "cli/ConsoleOutput.h"

#include <optional>
#include <string>
#include <vector>

namespace lumenor {

struct RulesUpdateOptions {
  std::wstring url;  // empty: the address in setting.ini, or the project's own
  bool json = false;
};

// Reads the arguments after "rules update". On a mistake, `problem` names it.
std::optional<RulesUpdateOptions> ParseRulesUpdateOptions(const std::vector<std::wstring>& arguments,
                                                          std::wstring& problem);

// One line: "replaced" with the new file's entries and version, or "kept" with the reason.
// 0 when the file was replaced, 1 when the old one stays (or the line could not be written).
int RunRulesUpdate(const RulesUpdateOptions& options, const ConsoleOutput& out);

}  // namespace lumenor
