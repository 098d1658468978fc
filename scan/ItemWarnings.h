// The warnings of rule items, shown when the user ticks them: what ticking the item will
// cost ("open tabs and tab groups are lost"). OK keeps the ticks, Cancel takes them back.
#pragma once

#include "controls/UserPrompt.h"
#include "rules/RuleBook.h"

#include <string>
#include <vector>

namespace lumenor {

// One paragraph for each item among `ids` that carries a warning ("Google Chrome, Saved
// passwords: ..."); empty when none does.
std::wstring WarningsOf(const rules::RuleBook* rules, const std::vector<unsigned>& ids);

// True when no item carries a warning, or the user answers OK to them.
bool ConfirmWarnings(HWND owner, const MessageBoxFunction& ask, const rules::RuleBook* rules,
                     const std::vector<unsigned>& ids);

}  // namespace lumenor
