// Where the rules come from at start-up: the built-in rule file compiled into the
// program, every "*.xml" in the "rules" folder beside it (the user's own), and the
// community's "winapp2.ini" beside it. A file that does not load is reported and left
// out; every other file loads.
#pragma once

#include "catalogue/Catalogue.h"
#include "engine/SystemPaths.h"
#include "rules/RuleBook.h"
#include "rules/Winapp2Reader.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumenor {

// The largest rule file read; the community file is about 1.3 MB.
inline constexpr size_t kMaxRuleFileBytes = size_t{64} * 1024 * 1024;

struct LoadedRules {
  std::unique_ptr<rules::RuleBook> book;
  // Problems of the built-in and the user's rule files (the community file's are its own).
  std::vector<rules::Problem> problems;
  // The community file as read, when there is one.
  std::optional<rules::Winapp2Counts> community;
  std::vector<rules::Problem> communityProblems;
};

// Reads every rule of the program's folder (ending with "\") and of its resources.
LoadedRules LoadRules(const std::wstring& programFolder);

// The catalogue with the rules loaded (the book moves into it), each rule item shown
// where it applies on this machine.
CCatalogue CatalogueWithRules(LoadedRules& loaded, const SystemPaths& paths);

// The whole of a file as bytes, or nothing when it is missing, a link, a folder, or
// larger than `limit`.
std::optional<std::string> ReadWholeFile(const std::wstring& path, size_t limit = kMaxRuleFileBytes);

}  // namespace lumenor
