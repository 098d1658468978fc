#include "cli/ListCommand.h"

#include "catalogue/Catalogue.h"
#include "cli/JsonText.h"
#include "settings/Settings.h"

#include <algorithm>
#include <string>

namespace lumenor {

int RunListCommand(const CCatalogue& catalogue, bool json, const ConsoleOutput& out) {
  const rules::RuleBook* rules = catalogue.Rules();
  const std::vector<unsigned> fixedDefaults = BuiltInSelection(Selection::kDefault);
  std::wstring text;
  ForEachNode(catalogue.Root(), [&](const CMyObject& node) {
    if (!json) {
      text += std::to_wstring(node.Id()) + L'\t' + std::to_wstring(node.Level()) + L'\t' + node.Name() + L'\n';
      return;
    }
    const unsigned parent = node.Parent() != nullptr ? node.Parent()->Id() : 0;
    text += L"{\"type\":\"node\",\"id\":" + std::to_wstring(node.Id()) + L",\"level\":" +
            std::to_wstring(node.Level()) + L",\"name\":" + JsonString(node.Name()) + L",\"parent\":" +
            std::to_wstring(parent);
    if (node.Level() == CMyObject::kItem) {
      const rules::RuleBook::Entry* entry = rules != nullptr ? rules->Find(node.Id()) : nullptr;
      const bool ticked = entry != nullptr
                              ? rules::RuleBook::TickedByDefault(*entry)
                              : std::find(fixedDefaults.begin(), fixedDefaults.end(), node.Id()) != fixedDefaults.end();
      text += std::wstring(L",\"default\":") + (ticked ? L"true" : L"false");
      if (entry != nullptr && !entry->item->warning.empty())
        text += L",\"warning\":" + JsonString(entry->item->warning);
    }
    text += L"}\n";
  });
  return out.Write(text) ? 0 : 1;
}

}  // namespace lumenor
