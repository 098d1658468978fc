// The folders a rule's folder text stands for on this machine. Its variables get their
// folders ("%ProgramFiles%" both Program Files folders, the 64-bit ones from the 32-bit
// program too); then every name the rule wrote is looked at on the disk, a wildcard name
// against the sub-folders there. A link is never matched, entered or passed through:
// where the path meets one, that path ends and the link is reported.
#pragma once

#include "base/StopToken.h"
#include "engine/SystemPaths.h"
#include "rules/Variables.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// A variable's values on this machine, each a folder without trailing backslash (or, for
// %UserName%, a name); none when the machine does not have it.
std::vector<std::wstring> VariableValues(rules::Variable variable, const SystemPaths& paths);

// The text with its variables given their values: one text for every combination (two for
// "%ProgramFiles%\x", one where both Program Files folders are the same). `base` is the
// length of the part the variables gave (the rest is the rule's own). Nothing when a
// variable is unknown or the machine has no value for it.
struct ExpandedText {
  std::wstring text;
  size_t base = 0;
};
std::vector<ExpandedText> ExpandVariables(std::wstring_view text, const SystemPaths& paths);

struct RuleFolders {
  std::vector<std::wstring> folders;  // each existing, none a link, ending with "\"
  std::vector<std::wstring> links;    // links met on the way, in the form the path had
  bool overLimit = false;             // more folders than the limit: the rest not looked at
};

// The folders below `base` (an existing folder, ending with "\") that `relative` names,
// its names separated by backslashes, each name with `*` or `?` matched against the
// sub-folders there. A name that does not exist ends its path without a word.
RuleFolders FindFoldersBelow(const std::wstring& base, std::wstring_view relative, const StopToken& stop, size_t limit);

// The same for a whole folder text with variables.
RuleFolders FindRuleFolders(std::wstring_view text, const SystemPaths& paths, const StopToken& stop, size_t limit);

// Whether the file or folder `text` names exists (its last name may hold `*` or `?` and
// then matches files as well as folders). Links count as existing: a link is a sign of
// the application too, but nothing is reached through it.
bool RulePathExists(std::wstring_view text, const SystemPaths& paths);

}  // namespace lumenor
