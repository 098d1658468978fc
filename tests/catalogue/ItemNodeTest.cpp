// Tree and chain links of a single node, and the bounds of its location list.
#include "catalogue/CMyObject.h"
#include "catalogue/ItemIds.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace lumenor {
namespace {

std::unique_ptr<CMyObject> NodeWithId(unsigned id) {
  auto node = std::make_unique<CMyObject>();
  node->SetId(id);
  return node;
}

std::vector<unsigned> ChildIds(const CMyObject& parent) {
  std::vector<unsigned> ids;
  for (const CMyObject* child = parent.FirstChild(); child != nullptr; child = child->NextSibling()) {
    ids.push_back(child->Id());
  }
  return ids;
}

TEST(ItemNodeChildren, AreAppendedInTurnWithThisNodeAsParent) {
  CMyObject parent;
  CMyObject* first = parent.AddChild(NodeWithId(kItemDocumentHistory));
  CMyObject* second = parent.AddChild(NodeWithId(kItemSearchHistory));
  CMyObject* third = parent.AddChild(NodeWithId(kItemTemporaryFiles));
  EXPECT_EQ(ChildIds(parent), (std::vector<unsigned>{kItemDocumentHistory, kItemSearchHistory, kItemTemporaryFiles}));
  EXPECT_EQ(parent.FirstChild(), first);
  for (const CMyObject* child : {first, second, third}) {
    EXPECT_EQ(child->Parent(), &parent);
  }
}

TEST(ItemNodeChildren, RemovingFirstMiddleOrLastKeepsTheRestLinked) {
  CMyObject parent;
  CMyObject* first = parent.AddChild(NodeWithId(kItemDocumentHistory));
  CMyObject* second = parent.AddChild(NodeWithId(kItemSearchHistory));
  CMyObject* third = parent.AddChild(NodeWithId(kItemTemporaryFiles));
  CMyObject* fourth = parent.AddChild(NodeWithId(kItemRecycleBins));

  std::unique_ptr<CMyObject> removed = parent.RemoveChild(first);
  ASSERT_EQ(removed.get(), first);
  EXPECT_EQ(parent.FirstChild(), second);
  EXPECT_EQ(removed->NextSibling(), nullptr);
  EXPECT_EQ(removed->Parent(), nullptr);

  EXPECT_EQ(parent.RemoveChild(third).get(), third);
  EXPECT_EQ(ChildIds(parent), (std::vector<unsigned>{kItemSearchHistory, kItemRecycleBins}));
  EXPECT_EQ(parent.RemoveChild(fourth).get(), fourth);
  EXPECT_EQ(ChildIds(parent), (std::vector<unsigned>{kItemSearchHistory}));
}

TEST(ItemNodeChildren, RemovingANodeThatIsNoChildChangesNothing) {
  CMyObject parent;
  parent.AddChild(NodeWithId(kItemDocumentHistory));
  CMyObject stranger;
  EXPECT_EQ(parent.RemoveChild(&stranger), nullptr);
  EXPECT_EQ(parent.RemoveChild(nullptr), nullptr);
  EXPECT_EQ(ChildIds(parent), (std::vector<unsigned>{kItemDocumentHistory}));
}

TEST(ItemNodeChain, AppendLinksBothWaysAtTheEnd) {
  CMyObject head, second, third;
  EXPECT_EQ(head.AppendToChain(&second), &second);
  EXPECT_EQ(head.AppendToChain(&third), &third);
  EXPECT_EQ(head.ForwardLink(), &second);
  EXPECT_EQ(second.ForwardLink(), &third);
  EXPECT_EQ(third.BackwardLink(), &second);
  EXPECT_EQ(second.BackwardLink(), &head);
  EXPECT_EQ(third.ForwardLink(), nullptr);
}

TEST(ItemNodeChain, RemovingJoinsNeighboursAndRefusesTheHeadItself) {
  CMyObject head, second, third;
  head.AppendToChain(&second);
  head.AppendToChain(&third);

  EXPECT_FALSE(head.RemoveFromChain(&head));
  EXPECT_TRUE(head.RemoveFromChain(&second));
  EXPECT_EQ(head.ForwardLink(), &third);
  EXPECT_EQ(third.BackwardLink(), &head);
  EXPECT_EQ(second.ForwardLink(), nullptr);
  EXPECT_EQ(second.BackwardLink(), nullptr);

  EXPECT_TRUE(head.RemoveFromChain(&third));
  EXPECT_EQ(head.ForwardLink(), nullptr);
}

TEST(ItemNodeLocations, RecordsKeepRootPrefixAndStopAtTwentySix) {
  CMyObject item;
  ASSERT_TRUE(item.AddLocation(HKEY_CURRENT_USER, L"Software\\Test", L"*.*", 0));
  ASSERT_TRUE(item.AddLocation(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Test", L"Value", 0));
  ASSERT_TRUE(item.AddLocation(nullptr, L"C:\\temp\\", L".txt", kMatchExtension));
  EXPECT_EQ(item.Locations()[0].rootPrefix, L"HKEY_CURRENT_USER\\");
  EXPECT_EQ(item.Locations()[1].rootPrefix, L"HKEY_LOCAL_MACHINE\\");
  EXPECT_EQ(item.Locations()[2].rootPrefix, L"");
  EXPECT_FALSE(item.Locations()[2].IsRegistry());
  EXPECT_EQ(item.Locations()[2].kind, kMatchExtension);

  while (item.LocationCount() < CMyObject::kMaxLocations) {
    ASSERT_TRUE(item.AddLocation(nullptr, L"C:\\x\\", L"*.*", kMatchEveryFile));
  }
  EXPECT_FALSE(item.AddLocation(nullptr, L"C:\\y\\", L"*.*", kMatchEveryFile));
  EXPECT_EQ(item.LocationCount(), 26);
  EXPECT_EQ(item.Locations().back().path, L"C:\\x\\");
}

TEST(ItemNodeLocations, APathOrSelectorThatDoesNotFitIsRefusedNotShortened) {
  CMyObject item;
  const std::wstring fits = L"C:\\" + std::wstring(kMaxLocationText - 4, L'a') + L"\\";
  ASSERT_EQ(fits.size(), kMaxLocationText);
  EXPECT_TRUE(item.AddLocation(nullptr, fits, L"*.*", kMatchEveryFile));
  EXPECT_FALSE(item.AddLocation(nullptr, fits + L"b\\", L"*.*", kMatchEveryFile));
  EXPECT_FALSE(item.AddLocation(HKEY_CURRENT_USER, L"Software", std::wstring(kMaxLocationText + 1, L'v'), 0));
  ASSERT_EQ(item.LocationCount(), 1);
  EXPECT_EQ(item.Locations()[0].path, fits);
}

TEST(ItemNodeLocations, ClearingEmptiesTheListAndRefillingStartsAfresh) {
  CMyObject item;
  item.ClearLocations();
  EXPECT_EQ(item.LocationCount(), 0);
  for (int i = 0; i < CMyObject::kMaxLocations; ++i) {
    item.AddLocation(nullptr, L"C:\\a\\", L"*.*", kMatchEveryFile);
  }
  item.ClearLocations();
  EXPECT_EQ(item.LocationCount(), 0);
  EXPECT_TRUE(item.AddLocation(nullptr, L"C:\\b\\", L"*.*", kMatchEveryFile));
  EXPECT_EQ(item.LocationCount(), 1);
}

TEST(ItemNodeLists, HoldTwentySixTextsOfUpTo1023Characters) {
  CMyObject node;
  EXPECT_FALSE(node.AddToFirstList(std::wstring(1024, L'x')));
  for (int i = 0; i < CMyObject::kMaxListStrings; ++i) {
    ASSERT_TRUE(node.AddToFirstList(std::wstring(1023, L'x')));
  }
  EXPECT_FALSE(node.AddToFirstList(L"one too many"));
  EXPECT_TRUE(node.SecondList().empty());
}

TEST(ItemNode, SetIdLoadsTheNameAndUnknownIdsGiveAnEmptyName) {
  CMyObject node;
  node.SetId(kItemVisitedSites);
  EXPECT_EQ(node.Name(), L"History (Visited sites)");
  node.SetId(99999);
  EXPECT_EQ(node.Id(), 99999u);
  EXPECT_EQ(node.Name(), L"");
}

}  // namespace
}  // namespace lumenor
