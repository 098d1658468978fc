// For the tests of the item trees with rule items: a catalogue holding a small rule file
// of the user's, the user's presses on a tree's boxes (the space bar on a row, a click on
// its box), and the questions a page asks, answered by the test.
#pragma once

#include "catalogue/Catalogue.h"
#include "controls/UserPrompt.h"
#include "scan/ItemSelection.h"
#include "scan/MyTreeCtrl.h"

#include <string>
#include <string_view>
#include <vector>

namespace lumenor::testing {

// The fixed catalogue, then "Lumenor Tests" with "Rule App" (items "Sessions" and
// "Passwords", each with a warning, and "Cache") and "Quiet App" ("Cache"), every file of
// them under %Temp%\Rule App and %Temp%\Quiet App.
CCatalogue CatalogueWithTestRules();
inline constexpr wchar_t kSessionsWarning[] = L"Open tabs are not reopened next time.";
inline constexpr wchar_t kPasswordsWarning[] = L"Saved passwords are gone for good.";

// The id of the first node of the process catalogue at `level` named `name`; 0 for none.
unsigned NodeIdNamed(int level, std::wstring_view name);

// The space bar pressed on the row of `id`, made the tree's current row first.
void PressSpaceOn(CMyTreeCtrl& tree, const ItemSelection& selection, unsigned id);
// A click with the mouse on the box of the row of `id`; false when no point of the row
// is its box.
bool ClickBoxOf(CMyTreeCtrl& tree, const ItemSelection& selection, unsigned id);
// The state the tree shows in the box of the row of `id` (ItemSelection::CheckState).
int BoxState(CMyTreeCtrl& tree, const ItemSelection& selection, unsigned id);

// The questions a page asks through its message box function, each answered `answer`.
class RecordedQuestions {
 public:
  struct Question {
    std::wstring text;
    std::wstring caption;
    UINT type = 0;
  };
  MessageBoxFunction Ask();

  std::vector<Question> asked;
  int answer = IDOK;
};

}  // namespace lumenor::testing
