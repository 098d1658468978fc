#include "tests/scan/RuleTreeFixtures.h"

#include "base/TextEncoding.h"
#include "rules/XmlRuleReader.h"

#include <commctrl.h>

#include <cstring>
#include <memory>

namespace lumenor::testing {

namespace {

constexpr char kTestRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <item name="Sessions">
        <warning>{sessions}</warning>
        <files folder="%Temp%\Rule App\Sessions" masks="*"/>
      </item>
      <item name="Passwords">
        <warning>{passwords}</warning>
        <files folder="%Temp%\Rule App\Passwords" masks="*"/>
      </item>
      <item name="Cache">
        <files folder="%Temp%\Rule App\Cache" masks="*" scope="remove-self"/>
      </item>
    </application>
    <application name="Quiet App">
      <item name="Cache">
        <files folder="%Temp%\Quiet App" masks="*"/>
      </item>
    </application>
  </category>
</rules>
)";

std::string WithText(std::string text, std::string_view placeholder, std::wstring_view value) {
  text.replace(text.find(placeholder), placeholder.size(), ToUtf8(value));
  return text;
}

HTREEITEM ItemOf(CMyTreeCtrl& tree, const ItemSelection& selection, unsigned id) {
  return tree.ItemOfRow(selection.RowOf(id));
}

}  // namespace

CCatalogue CatalogueWithTestRules() {
  const std::string text =
      WithText(WithText(kTestRules, "{sessions}", kSessionsWarning), "{passwords}", kPasswordsWarning);
  auto book = std::make_unique<rules::RuleBook>();
  book->Add(rules::ReadXmlRules(text, L"lumenor-tests.xml", rules::RuleOrigin::kUserFile));
  return CCatalogue::Build(std::move(book), [](const rules::RuleBook::Entry&) { return true; });
}

unsigned NodeIdNamed(int level, std::wstring_view name) {
  unsigned id = 0;
  ForEachNode(CatalogueRoot(), [&](const CMyObject& node) {
    if (id == 0 && node.Level() == level && node.Name() == name) id = node.Id();
  });
  return id;
}

void PressSpaceOn(CMyTreeCtrl& tree, const ItemSelection& selection, unsigned id) {
  SendMessageW(tree.Handle(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(ItemOf(tree, selection, id)));
  SendMessageW(tree.Handle(), WM_KEYDOWN, VK_SPACE, 0);
  SendMessageW(tree.Handle(), WM_KEYUP, VK_SPACE, 0);
}

bool ClickBoxOf(CMyTreeCtrl& tree, const ItemSelection& selection, unsigned id) {
  const HTREEITEM item = ItemOf(tree, selection, id);
  SendMessageW(tree.Handle(), TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
  RECT text{};
  std::memcpy(&text, &item, sizeof item);  // the message takes the item in the rectangle it fills
  if (SendMessageW(tree.Handle(), TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&text)) == FALSE) return false;
  // The box stands left of the row's picture and text; its place depends on the indent.
  for (int x = 0; x < text.left; ++x) {
    TVHITTESTINFO hit{};
    hit.pt = POINT{x, (text.top + text.bottom) / 2};
    const auto found =
        reinterpret_cast<HTREEITEM>(SendMessageW(tree.Handle(), TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
    if (found == item && (hit.flags & TVHT_ONITEMSTATEICON) != 0) {
      SendMessageW(tree.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(hit.pt.x, hit.pt.y));
      SendMessageW(tree.Handle(), WM_LBUTTONUP, 0, MAKELPARAM(hit.pt.x, hit.pt.y));
      return true;
    }
  }
  return false;
}

int BoxState(CMyTreeCtrl& tree, const ItemSelection& selection, unsigned id) {
  const auto state = static_cast<UINT>(SendMessageW(
      tree.Handle(), TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(ItemOf(tree, selection, id)), TVIS_STATEIMAGEMASK));
  return static_cast<int>(state >> 12);
}

MessageBoxFunction RecordedQuestions::Ask() {
  return [this](HWND, const std::wstring& text, const std::wstring& caption, UINT type) {
    asked.push_back({text, caption, type});
    return answer;
  };
}

}  // namespace lumenor::testing
