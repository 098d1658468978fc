// The catalogue tree against the published list of categories, applications and items.
#include "base/ResourceString.h"
#include "base/TextEncoding.h"
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <set>

namespace lumenor {
namespace {

struct ExpectedNode {
  unsigned id;
  int level;
  int image;
  std::wstring name;
};

std::vector<ExpectedNode> ExpectedCatalogue() {
  std::vector<ExpectedNode> nodes;
  for (const std::string& line : testing::SplitLines(testing::LoadTestData(IDR_EXPECTED_CATALOGUE))) {
    const std::vector<std::string> fields = testing::SplitTabs(line);
    if (fields.size() == 4) {
      nodes.push_back({static_cast<unsigned>(std::stoul(fields[0])), std::stoi(fields[1]), std::stoi(fields[2]),
                       FromUtf8(fields[3])});
    }
  }
  return nodes;
}

class CatalogueTree : public ::testing::Test {
 protected:
  CCatalogue catalogue_ = CCatalogue::Build();
};

TEST_F(CatalogueTree, WalkYieldsEveryNodeInOrderWithLevelImageAndExactName) {
  const std::vector<ExpectedNode> expected = ExpectedCatalogue();
  ASSERT_EQ(expected.size(), 175u) << "expected catalogue resource is incomplete";
  size_t index = 0;
  ForEachNode(catalogue_.Root(), [&](const CMyObject& node) {
    ASSERT_LT(index, expected.size());
    const ExpectedNode& want = expected[index++];
    EXPECT_EQ(node.Id(), want.id) << "at position " << index;
    EXPECT_EQ(node.Level(), want.level) << "node " << want.id;
    EXPECT_EQ(node.Image(), want.image) << "node " << want.id;
    EXPECT_EQ(node.Name(), want.name) << "node " << want.id;
  });
  EXPECT_EQ(index, expected.size());
}

TEST_F(CatalogueTree, HoldsEightCategoriesTwentyEightApplicationsAndItems139) {
  int counts[3] = {};
  ForEachNode(catalogue_.Root(), [&](const CMyObject& node) { ++counts[node.Level()]; });
  EXPECT_EQ(counts[0], 8);
  EXPECT_EQ(counts[1], 28);
  EXPECT_EQ(counts[2], 139);
}

TEST_F(CatalogueTree, CategoriesAreChainedForwardOnlyAndTheLastEndsTheChain) {
  std::vector<unsigned> ids;
  const CMyObject* last = nullptr;
  for (const CMyObject* category = catalogue_.Root(); category != nullptr; category = category->ForwardLink()) {
    ids.push_back(category->Id());
    EXPECT_EQ(category->Parent(), nullptr);
    EXPECT_EQ(category->NextSibling(), nullptr);
    last = category;
  }
  EXPECT_EQ(ids,
            (std::vector<unsigned>{kCategoryWindows, kCategoryBrowsing, kCategoryInstantMessaging, kCategoryOffice,
                                   kCategoryMultimedia, kCategoryFileSharing, kCategoryMail, kCategoryThirdParty}));
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(last->ForwardLink(), nullptr);
}

TEST_F(CatalogueTree, EveryNodeHangsUnderTheNodeOneLevelUp) {
  ForEachNode(catalogue_.Root(), [](const CMyObject& node) {
    if (node.Level() == CMyObject::kCategory) {
      return;
    }
    ASSERT_NE(node.Parent(), nullptr) << node.Id();
    EXPECT_EQ(node.Parent()->Level(), node.Level() - 1) << node.Id();
    if (node.Level() == CMyObject::kItem) {
      EXPECT_EQ(node.FirstChild(), nullptr) << node.Id();
    }
  });
}

TEST_F(CatalogueTree, ChildrenKeepBuildingOrder) {
  auto childIds = [&](unsigned parentId) {
    std::vector<unsigned> ids;
    const CMyObject* parent = FindNodeById(catalogue_.Root(), parentId);
    for (const CMyObject* child = parent ? parent->FirstChild() : nullptr; child; child = child->NextSibling()) {
      ids.push_back(child->Id());
    }
    return ids;
  };
  std::vector<unsigned> windowsEntries;
  for (unsigned id = kItemDocumentHistory; id <= kItemWordPadRecentFiles; ++id) windowsEntries.push_back(id);
  EXPECT_EQ(childIds(kAppWindowsEntries), windowsEntries);
  std::vector<unsigned> office2003;
  for (unsigned id = kItemWord2003; id <= kItemSaveMySettings; ++id) office2003.push_back(id);
  EXPECT_EQ(childIds(kAppOffice2003), office2003);
  EXPECT_EQ(childIds(kAppMediaPlayer), (std::vector<unsigned>{kItemMediaPlayerRecentFiles, kItemMediaPlayerRecentUrls,
                                                              kItemMediaPlayerDatabase, kItemMediaPlayerCache}));
}

TEST_F(CatalogueTree, ItemsShowTheirApplicationsPictureButAcdseeSearchItemsAndNoneUses29) {
  ForEachNode(catalogue_.Root(), [](const CMyObject& node) {
    EXPECT_NE(node.Image(), 29) << node.Id();
    if (node.Level() != CMyObject::kItem) {
      return;
    }
    if (node.Id() == kItemAcdseeSearchHistory || node.Id() == kItemAcdseeScreenCaptureFolder) {
      EXPECT_EQ(node.Image(), 2) << node.Id();
    } else {
      EXPECT_EQ(node.Image(), node.Parent()->Image()) << node.Id();
    }
  });
}

TEST_F(CatalogueTree, LeftOutIdsHaveNoNodeButKeepTheirText) {
  std::set<unsigned> inTree;
  ForEachNode(catalogue_.Root(), [&](const CMyObject& node) { inTree.insert(node.Id()); });
  // String ids between the catalogue's, such as IE's "Index.dat files" and "AOL Browser".
  EXPECT_EQ(FindNodeById(catalogue_.Root(), 134), nullptr);
  EXPECT_EQ(FindNodeById(catalogue_.Root(), 151), nullptr);
  int leftOut = 0;
  for (unsigned id = 102; id <= 387; ++id) {
    EXPECT_FALSE(LoadResourceString(id).empty()) << "string " << id << " is missing";
    if (inTree.count(id) == 0) {
      ++leftOut;
      EXPECT_EQ(FindNodeById(catalogue_.Root(), id), nullptr) << id;
    }
  }
  EXPECT_EQ(leftOut, 286 - 175);
}

TEST_F(CatalogueTree, TrailingBlanksOfNamesAreKept) {
  EXPECT_EQ(FindNodeById(catalogue_.Root(), kItemNetscapePageHistory)->Name(), L"Address bar and page history ");
  EXPECT_EQ(FindNodeById(catalogue_.Root(), kAppMsnMessenger)->Name(), L"MSN Messager and Window Living Messager ");
}

TEST(ProcessCatalogue, IsBuiltOnceAndFreedAtExit) {
  EXPECT_EQ(CatalogueRoot(), nullptr);
  BuildCatalogue();
  ASSERT_NE(CatalogueRoot(), nullptr);
  EXPECT_EQ(CatalogueRoot()->Id(), kCategoryWindows);
  FreeCatalogue();
  EXPECT_EQ(CatalogueRoot(), nullptr);
}

}  // namespace
}  // namespace lumenor
