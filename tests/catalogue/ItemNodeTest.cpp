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

TEST(ItemNode, SetIdLoadsTheNameAndUnknownIdsGiveAnEmptyName) {
  CMyObject node;
  node.SetId(kItemVisitedSites);
  EXPECT_EQ(node.Name(), L"History (Visited sites)");
  node.SetId(99999);
  EXPECT_EQ(node.Id(), 99999u);
  EXPECT_EQ(node.Name(), L"");
  node.SetIdAndName(100123, L"Cache");
  EXPECT_EQ(node.Id(), 100123u);
  EXPECT_EQ(node.Name(), L"Cache") << "a rule's node keeps the name it was given";
}

}  // namespace
}  // namespace lumenor
