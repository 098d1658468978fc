// The one-click selection dialog against settings files: where it starts from, what
// "Save" writes, and that "Select None" and "Cancel" write nothing.
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "res/resource.h"
#include "scan/DlgOptionsChoose.h"
#include "settings/Settings.h"
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

}  // namespace
}  // namespace lumenor
