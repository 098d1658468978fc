#include "cli/ListCommand.h"

#include "catalogue/Catalogue.h"

#include <string>

namespace lumenor {

int RunListCommand(CMyObject* catalogueRoot, const ConsoleOutput& out) {
  std::wstring text;
  ForEachNode(catalogueRoot, [&](const CMyObject& node) {
    text += std::to_wstring(node.Id());
    text += L'\t';
    text += std::to_wstring(node.Level());
    text += L'\t';
    text += node.Name();
    text += L'\n';
  });
  return out.Write(text) ? 0 : 1;
}

}  // namespace lumenor
