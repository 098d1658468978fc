#include "scan/ItemWarnings.h"

#include "base/ResourceString.h"
#include "res/resource.h"

namespace lumenor {

std::wstring WarningsOf(const rules::RuleBook* rules, const std::vector<unsigned>& ids) {
  std::wstring text;
  if (rules == nullptr) return text;
  for (const unsigned id : ids) {
    const rules::RuleBook::Entry* entry = rules->Find(id);
    if (entry == nullptr || entry->item->warning.empty()) continue;
    if (!text.empty()) text += L"\n\n";
    text += entry->application->name + L", " + entry->item->name + L": " + entry->item->warning;
  }
  return text;
}

bool ConfirmWarnings(HWND owner, const MessageBoxFunction& ask, const rules::RuleBook* rules,
                     const std::vector<unsigned>& ids) {
  const std::wstring warnings = WarningsOf(rules, ids);
  if (warnings.empty()) return true;
  return ask(owner, warnings, LoadResourceString(IDS_RULE_WARNING_CAPTION), MB_OKCANCEL | MB_ICONWARNING) == IDOK;
}

}  // namespace lumenor
