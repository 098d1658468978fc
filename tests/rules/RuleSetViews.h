// Views of a read rule set that make a failing test say what it found: an item by its
// name, and the problems as "line [entry] message".
#pragma once

#include "rules/RuleModel.h"

#include <string>
#include <string_view>
#include <vector>

namespace lumenor::testing {

// The item named `name` (the first, in file order), of the application named `application`
// when one is given; or nullptr.
const rules::Item* FindItem(const rules::RuleSet& rules, std::wstring_view name, std::wstring_view application = {});
// The application named `name`, or nullptr.
const rules::Application* FindApplication(const rules::RuleSet& rules, std::wstring_view name);
// Every loaded item's name, in file order within each application.
std::vector<std::wstring> ItemNames(const rules::RuleSet& rules);
// Each problem as "12 [Entry] message", in UTF-8.
std::vector<std::string> ProblemTexts(const rules::RuleSet& rules);

}  // namespace lumenor::testing
