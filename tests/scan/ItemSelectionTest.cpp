// The tick boxes of the item trees: how a new state travels down and up, clicks, the
// order ticked items are gathered in, and the selections read from and saved to
// "setting.ini" by the scan page and the one-click dialog.
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "scan/ItemSelection.h"
#include "settings/Settings.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

using State = ItemSelection::CheckState;

// Two categories: 1 holds applications 10 (items 100, 101, 102) and 11 (item 110);
// 2 holds application 20 (item 200).
class SmallTree : public ::testing::Test {
 protected:
  SmallTree() {
    const int one = tree_.AddRow(1, CMyObject::kCategory, -1);
    const int ten = tree_.AddRow(10, CMyObject::kApplication, one);
    for (const unsigned id : {100u, 101u, 102u}) tree_.AddRow(id, CMyObject::kItem, ten);
    const int eleven = tree_.AddRow(11, CMyObject::kApplication, one);
    tree_.AddRow(110, CMyObject::kItem, eleven);
    const int two = tree_.AddRow(2, CMyObject::kCategory, -1);
    const int twenty = tree_.AddRow(20, CMyObject::kApplication, two);
    tree_.AddRow(200, CMyObject::kItem, twenty);
  }
  int StateOf(unsigned id) const { return tree_.State(tree_.RowOf(id)); }

  ItemSelection tree_;
};

TEST_F(SmallTree, TickingItemsMakesTheirAncestorsPartlyOrWhollyTicked) {
  tree_.TickById(100);
  EXPECT_EQ(StateOf(10), State::kPartly);
  EXPECT_EQ(StateOf(1), State::kPartly);
  EXPECT_EQ(StateOf(2), State::kUnticked) << "another category is not touched";
  tree_.TickById(101);
  tree_.TickById(102);
  EXPECT_EQ(StateOf(10), State::kTicked);
  EXPECT_EQ(StateOf(1), State::kPartly) << "application 11 is still unticked";
  tree_.TickById(110);
  EXPECT_EQ(StateOf(11), State::kTicked);
  EXPECT_EQ(StateOf(1), State::kTicked);
}

TEST_F(SmallTree, ClickingAPartlyTickedCategoryTicksEverythingBelowItAndAgainUnticks) {
  tree_.TickById(101);
  ASSERT_EQ(StateOf(1), State::kPartly);
  tree_.Click(tree_.RowOf(1));
  for (const unsigned id : {1u, 10u, 100u, 101u, 102u, 11u, 110u}) EXPECT_EQ(StateOf(id), State::kTicked) << id;
  tree_.Click(tree_.RowOf(1));
  for (const unsigned id : {1u, 10u, 100u, 101u, 102u, 11u, 110u}) EXPECT_EQ(StateOf(id), State::kUnticked) << id;
}

TEST_F(SmallTree, UntickingTheLastTickedItemUnticksItsAncestors) {
  tree_.TickById(110);
  EXPECT_EQ(StateOf(1), State::kPartly);
  tree_.Click(tree_.RowOf(110));
  EXPECT_EQ(StateOf(11), State::kUnticked);
  EXPECT_EQ(StateOf(1), State::kUnticked);
}

TEST_F(SmallTree, RowsWithoutABoxAreLeftOutExceptAFirstChild) {
  tree_.SetState(tree_.RowOf(101), State::kNoBox);
  tree_.SetState(tree_.RowOf(100), State::kNoBox);
  tree_.TickById(102);
  EXPECT_EQ(StateOf(10), State::kTicked) << "siblings without a box do not disagree";
  tree_.TickById(10);
  EXPECT_EQ(StateOf(100), State::kTicked) << "the first child always takes the new state";
  EXPECT_EQ(StateOf(101), State::kNoBox);
}

TEST_F(SmallTree, TickedItemsAreGatheredInCatalogueOrderWhateverTheOrderOfTicking) {
  for (const unsigned id : {200u, 110u, 100u, 20u}) tree_.TickById(id);
  EXPECT_EQ(tree_.TickedItems(), (std::vector<unsigned>{100, 110, 200}));
  EXPECT_FALSE(tree_.TickById(999));
}

TEST_F(SmallTree, SelectionButtonsRespectTheBusyScanAndTheWarning) {
  int asked = 0;
  tree_.SelectAll(false, [&] {
    ++asked;
    return false;
  });
  EXPECT_TRUE(tree_.TickedItems().empty()) << "answered no";
  tree_.SelectAll(true, [&] {
    ++asked;
    return true;
  });
  EXPECT_EQ(asked, 1) << "no warning during a scan";
  EXPECT_TRUE(tree_.TickedItems().empty());
  tree_.SelectAll(false, [&] { return true; });
  EXPECT_EQ(tree_.TickedItems().size(), 5u);
  tree_.SelectNone(true);
  EXPECT_EQ(tree_.TickedItems().size(), 5u);
  tree_.SelectNone(false);
  EXPECT_TRUE(tree_.TickedItems().empty());
}

// The whole catalogue and a settings file of the test's own.
class CatalogueSelection : public ::testing::Test {
 protected:
  void Write(const std::string& text) { ASSERT_TRUE(testing::WriteFileBytes(path_, text)); }
  ItemSelection Fresh(bool withFavorites = false) const {
    return ItemSelection::FromCatalogue(catalogue_.Root(), withFavorites);
  }

  CCatalogue catalogue_ = CCatalogue::Build();
  testing::TempFolder folder_;
  std::wstring path_ = folder_ / L"setting.ini";
  CIniFileRW file_ = CIniFileRW::AtPath(path_);
};

TEST_F(CatalogueSelection, TheScanPageRestoresTheRecentListOrTheDefaultOneOnlyForMinusOne) {
  Write("[RecentItem]\r\nRecentItems=-1\r\nitem0=183\r\n[DefaultItem]\r\nDefaultItems=2\r\nitem0=132\r\nitem1=104\r\n");
  ItemSelection selection = Fresh();
  selection.RestoreScanSelection(file_);
  EXPECT_EQ(selection.TickedItems(), (std::vector<unsigned>{kItemDocumentHistory, kItemIeCookies}));

  Write("[RecentItem]\r\nRecentItems=0\r\n[DefaultItem]\r\nDefaultItems=2\r\nitem0=132\r\nitem1=104\r\n");
  selection = Fresh();
  selection.RestoreScanSelection(file_);
  EXPECT_TRUE(selection.TickedItems().empty()) << "an empty recent list is no reason for the default one";

  Write("[DefaultItem]\r\nDefaultItems=1\r\nitem0=104\r\n");
  selection = Fresh();
  selection.RestoreScanSelection(file_);
  EXPECT_TRUE(selection.TickedItems().empty()) << "a missing count reads as one entry naming no item";
}

TEST_F(CatalogueSelection, SelectDefaultReplacesTheTicksWithTheDefaultList) {
  Write("[DefaultItem]\r\nDefaultItems=3\r\nitem0=246\r\nitem1=106\r\nitem2=99\r\n");
  ItemSelection selection = Fresh();
  selection.TickById(kAppWindowsEntries);
  selection.SelectDefault(true, file_);
  EXPECT_GT(selection.TickedItems().size(), 10u) << "nothing changes during a scan";
  selection.SelectDefault(false, file_);
  EXPECT_EQ(selection.TickedItems(), (std::vector<unsigned>{kItemTemporaryFiles, kItemMediaPlayerRecentFiles}));
}

TEST_F(CatalogueSelection, TheOneClickTreeHasFavoritesUnderAcdseeAndSavesItInOrder) {
  ItemSelection selection = Fresh(true);
  ASSERT_EQ(Fresh(false).Rows().size() + 1, selection.Rows().size());
  const int favorites = selection.RowOf(kItemAcdseeFavorites);
  ASSERT_EQ(favorites, selection.RowOf(kItemAcdseeScreenCaptureFolder) + 1);
  EXPECT_EQ(selection.Rows()[static_cast<size_t>(favorites)].parent, selection.RowOf(kAppAcdsee));

  Write("[OneClickItem]\r\nOneClickItems=6\r\nitem0=1\r\nitem1=2\r\nitem2=3\r\nitem3=4\r\nitem4=5\r\nitem5=6\r\n");
  for (const unsigned id : {kItemAcdseeFavorites, kItemIeCookies, kItemDocumentHistory}) selection.TickById(id);
  ASSERT_TRUE(selection.SaveOneClickSelection(file_));
  EXPECT_EQ(ReadSelection(file_, Selection::kOneClick),
            (std::vector<unsigned>{kItemDocumentHistory, kItemIeCookies, kItemAcdseeFavorites}));
  EXPECT_EQ(file_.ReadInt(L"OneClickItem", L"item5"), 6) << "keys of a longer list stay behind";
}

TEST_F(CatalogueSelection, TheOneClickDialogStartsFromTheDefaultListOnlyWhileNoneWasSaved) {
  const auto loaded = [&] {
    ItemSelection selection = Fresh(true);
    selection.LoadOneClickSelection(file_);
    return selection.TickedItems();
  };
  Write("[OneClickItem]\r\nOneClickItems=-1\r\n[DefaultItem]\r\nDefaultItems=2\r\nitem0=113\r\nitem1=141\r\n");
  EXPECT_EQ(loaded(), (std::vector<unsigned>{kItemRunHistory, kItemIeAddressBarHistory}));
  Write("[DefaultItem]\r\nDefaultItems=2\r\nitem0=113\r\nitem1=141\r\n");
  EXPECT_TRUE(loaded().empty()) << "no one-click section at all";

  Write("[OneClickItem]\r\nOneClickItems=-1\r\n[DefaultItem]\r\nDefaultItems=2\r\nitem0=113\r\nitem1=141\r\n");
  ItemSelection none = Fresh(true);
  ASSERT_TRUE(none.SaveOneClickSelection(file_));
  EXPECT_EQ(file_.ReadInt(L"OneClickItem", L"OneClickItems"), 0);
  EXPECT_TRUE(loaded().empty()) << "a saved empty list does not fall back to the default one";
}

}  // namespace
}  // namespace lumenor
