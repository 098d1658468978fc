// The one-click selection dialog against settings files: where it starts from, what
// "Save" writes, and that "Select None" and "Cancel" write nothing; the rule items of a
// user's file among the others, and the question before a warned one is ticked.
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "res/resource.h"
#include "rules/RuleModel.h"
#include "scan/DlgOptionsChoose.h"
#include "settings/Settings.h"
#include "tests/scan/RuleTreeFixtures.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

class OneClickDialog : public ::testing::Test {
 protected:
  void SetUp() override { BuildCatalogue(); }
  void TearDown() override {
    dialog_.reset();
    FreeCatalogue();
  }
  // Opens the dialog (modeless, so the test can press its buttons) on a file holding `text`.
  void Open(const std::string& text) {
    ASSERT_TRUE(testing::WriteFileBytes(path_, text));
    dialog_ = std::make_unique<CDlgOptionsChoose>(file_);
    ASSERT_TRUE(dialog_->Create(nullptr));
  }
  void Press(int id) { SendMessageW(dialog_->Handle(), WM_COMMAND, static_cast<WPARAM>(id), 0); }

  testing::TempFolder folder_;
  std::wstring path_ = folder_ / L"setting.ini";
  CIniFileRW file_ = CIniFileRW::AtPath(path_);
  std::unique_ptr<CDlgOptionsChoose> dialog_;
};

TEST_F(OneClickDialog, StartsFromTheDefaultListOnlyWhileNoOneClickListWasSaved) {
  Open("[OneClickItem]\r\nOneClickItems=-1\r\n[DefaultItem]\r\nDefaultItems=2\r\nitem0=132\r\nitem1=104\r\n");
  EXPECT_EQ(dialog_->Selection().TickedItems(), (std::vector<unsigned>{kItemDocumentHistory, kItemIeCookies}));
  const HTREEITEM cookies = dialog_->Tree().ItemOfRow(dialog_->Selection().RowOf(kItemIeCookies));
  EXPECT_EQ(TreeView_GetCheckState(dialog_->Tree().Handle(), cookies), 2u) << "the box shows state 3 (ticked)";

  Open("[DefaultItem]\r\nDefaultItems=2\r\nitem0=132\r\nitem1=104\r\n");
  EXPECT_TRUE(dialog_->Selection().TickedItems().empty()) << "no one-click section: nothing ticked";
  Open("[OneClickItem]\r\nOneClickItems=0\r\n[DefaultItem]\r\nDefaultItems=1\r\nitem0=104\r\n");
  EXPECT_TRUE(dialog_->Selection().TickedItems().empty()) << "a saved empty list stays empty";
}

TEST_F(OneClickDialog, SaveWritesTheTickedItemsInCatalogueOrderFavoritesIncluded) {
  Open("[OneClickItem]\r\nOneClickItems=3\r\nitem0=372\r\nitem1=106\r\nitem2=5\r\n");
  dialog_->Selection().TickById(kItemAcdseeFavorites);
  Press(IDOK);
  EXPECT_EQ(ReadSelection(file_, Selection::kOneClick),
            (std::vector<unsigned>{kItemTemporaryFiles, kItemAcdseeFavorites, kItemFlashPlayerHistory}));
  EXPECT_EQ(file_.ReadInt(L"OneClickItem", L"item2"), int{kItemFlashPlayerHistory});
}

TEST_F(OneClickDialog, SelectNoneThenCancelLeavesTheFileAsItWas) {
  const std::string text = "[OneClickItem]\r\nOneClickItems=2\r\nitem0=106\r\nitem1=113\r\n";
  Open(text);
  Press(IDC_ONE_CLICK_SELECT_NONE);
  EXPECT_TRUE(dialog_->Selection().TickedItems().empty());
  Press(IDCANCEL);
  EXPECT_EQ(testing::ReadFileBytes(path_), text);
  Open(text);
  Press(IDC_ONE_CLICK_SELECT_NONE);
  Press(IDOK);
  EXPECT_EQ(file_.ReadInt(L"OneClickItem", L"OneClickItems"), 0);
}

// The same dialog over a catalogue that holds a rule file of the user's.
class OneClickDialogWithRules : public OneClickDialog {
 protected:
  void SetUp() override { InstallCatalogue(testing::CatalogueWithTestRules()); }
  void OpenAsking(const std::string& text) {
    ASSERT_TRUE(testing::WriteFileBytes(path_, text));
    dialog_ = std::make_unique<CDlgOptionsChoose>(file_);
    dialog_->SetMessageBox(questions_.Ask());
    ASSERT_TRUE(dialog_->Create(nullptr));
  }
  std::wstring RowText(unsigned id) const {
    wchar_t text[256] = {};
    TVITEMW item{};
    item.mask = TVIF_TEXT;
    item.hItem = dialog_->Tree().ItemOfRow(dialog_->Selection().RowOf(id));
    item.pszText = text;
    item.cchTextMax = static_cast<int>(std::size(text));
    return SendMessageW(dialog_->Tree().Handle(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) != FALSE ? text
                                                                                                             : L"";
  }

  testing::RecordedQuestions questions_;
  const unsigned sessions_ = rules::DerivedItemId(L"Rule App", L"Sessions");
  const unsigned cache_ = rules::DerivedItemId(L"Rule App", L"Cache");
};

TEST_F(OneClickDialogWithRules, ShowsTheRuleItemsAfterTheFixedOnesAndSavesTheirIds) {
  OpenAsking("[OneClickItem]\r\nOneClickItems=1\r\nitem0=106\r\n");
  const unsigned application = testing::NodeIdNamed(CMyObject::kApplication, L"Rule App");
  EXPECT_EQ(RowText(testing::NodeIdNamed(CMyObject::kCategory, L"Lumenor Tests")), L"Lumenor Tests");
  EXPECT_EQ(RowText(application), L"Rule App");
  EXPECT_EQ(RowText(sessions_), L"Sessions");
  EXPECT_GT(dialog_->Selection().RowOf(cache_), dialog_->Selection().RowOf(kItemAcdseeFavorites));

  testing::PressSpaceOn(dialog_->Tree(), dialog_->Selection(), cache_);
  EXPECT_TRUE(questions_.asked.empty()) << "Cache carries no warning";
  Press(IDOK);
  EXPECT_EQ(ReadSelection(file_, Selection::kOneClick), (std::vector<unsigned>{kItemTemporaryFiles, cache_}));

  OpenAsking(testing::ReadFileBytes(path_));
  EXPECT_EQ(dialog_->Selection().TickedItems(), (std::vector<unsigned>{kItemTemporaryFiles, cache_}))
      << "the saved rule item is ticked when the dialog opens again";
}

TEST_F(OneClickDialogWithRules, TickingAWarnedRuleItemAsksAndCancelTakesTheTickBack) {
  OpenAsking("[OneClickItem]\r\nOneClickItems=0\r\n");
  questions_.answer = IDCANCEL;
  testing::PressSpaceOn(dialog_->Tree(), dialog_->Selection(), sessions_);
  EXPECT_EQ(questions_.asked.size(), 1u);
  EXPECT_TRUE(dialog_->Selection().TickedItems().empty());
  EXPECT_EQ(testing::BoxState(dialog_->Tree(), dialog_->Selection(), sessions_), ItemSelection::kUnticked);
  questions_.answer = IDOK;
  testing::PressSpaceOn(dialog_->Tree(), dialog_->Selection(), sessions_);
  ASSERT_EQ(questions_.asked.size(), 2u);
  EXPECT_EQ(questions_.asked[1].text, std::wstring(L"Rule App, Sessions: ") + testing::kSessionsWarning);
  Press(IDOK);
  EXPECT_EQ(ReadSelection(file_, Selection::kOneClick), std::vector<unsigned>{sessions_});
}

}  // namespace
}  // namespace lumenor
