// The pictures an item tree shows beside its rows: every index a node may name is in the
// tree's list, and the rules' categories each draw a picture of their own, told apart
// from one another and from the fixed categories they sit beside.
#include "catalogue/Catalogue.h"
#include "scan/CatalogueImages.h"
#include "scan/MyTreeCtrl.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <windows.h>

#include <array>
#include <vector>

namespace lumenor {
namespace {

constexpr int kSide = 16;
constexpr COLORREF kRow = RGB(0, 200, 0);  // a row colour no picture uses
constexpr int kPictureWindows = 0;
constexpr int kPictureInternet = 1;
constexpr int kPictureThirdParty = 7;
constexpr std::array<int, 5> kRulePictures = {kPictureBrowsersToday, kPictureWindowsToday, kPictureApplicationsToday,
                                              kPictureCommunityRules, kPictureOwnRules};

class TreePictures : public ::testing::Test {
 protected:
  void SetUp() override {
    const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_TREEVIEW_CLASSES};
    ASSERT_TRUE(InitCommonControlsEx(&classes));
    owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 300, 300, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(owner_, nullptr);
    ASSERT_TRUE(tree_.CreateTree(owner_, 100, RECT{0, 0, 280, 280}, nullptr));
    pictures_ = TreeView_GetImageList(tree_.Handle(), TVSIL_NORMAL);
    ASSERT_NE(pictures_, nullptr);
  }
  void TearDown() override {
    if (owner_ != nullptr) DestroyWindow(owner_);
  }

  // The picture at `index` as the tree draws it over a row: 16 by 16 colours, row by row.
  std::vector<COLORREF> Drawn(int index) const {
    std::vector<COLORREF> pixels;
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP surface = CreateCompatibleBitmap(screen, kSide, kSide);
    const HGDIOBJ previous = SelectObject(dc, surface);
    const RECT all{0, 0, kSide, kSide};
    HBRUSH brush = CreateSolidBrush(kRow);
    FillRect(dc, &all, brush);
    DeleteObject(brush);
    if (ImageList_Draw(pictures_, index, dc, 0, 0, ILD_TRANSPARENT)) {
      for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) pixels.push_back(GetPixel(dc, x, y));
      }
    }
    SelectObject(dc, previous);
    DeleteObject(surface);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return pixels;
  }

  static int Covered(const std::vector<COLORREF>& picture) {
    int covered = 0;
    for (const COLORREF pixel : picture) covered += pixel != kRow ? 1 : 0;
    return covered;
  }
  static int Differing(const std::vector<COLORREF>& one, const std::vector<COLORREF>& other) {
    int differing = 0;
    for (size_t i = 0; i < one.size() && i < other.size(); ++i) differing += one[i] != other[i] ? 1 : 0;
    return differing;
  }

  HWND owner_ = nullptr;
  CMyTreeCtrl tree_;
  HIMAGELIST pictures_ = nullptr;
};

TEST_F(TreePictures, TheListHoldsEveryPictureANodeMayName) {
  EXPECT_EQ(kCataloguePictureCount, 42);
  EXPECT_EQ(ImageList_GetImageCount(pictures_), kCataloguePictureCount);
  EXPECT_EQ(kPictureOwnRules, kCataloguePictureCount - 1) << "the last rule picture is the list's last";
}

TEST_F(TreePictures, EachRuleCategoryDrawsAPictureOfItsOwn) {
  const std::vector<COLORREF> fixed[] = {Drawn(kPictureWindows), Drawn(kPictureInternet), Drawn(kPictureThirdParty)};
  std::vector<std::vector<COLORREF>> rules;
  for (const int index : kRulePictures) {
    const std::vector<COLORREF> picture = Drawn(index);
    ASSERT_EQ(picture.size(), static_cast<size_t>(kSide * kSide)) << "picture " << index << " could not be drawn";
    // An empty place (a bitmap missing from the program) draws nothing over the row.
    EXPECT_GE(Covered(picture), kSide * kSide / 4) << "picture " << index << " is empty or almost";
    EXPECT_EQ(picture.front(), kRow) << "picture " << index << " hides the row at its corner";
    for (const std::vector<COLORREF>& category : fixed) {
      EXPECT_GE(Differing(picture, category), kSide * kSide / 4)
          << "picture " << index << " looks like one of the fixed categories'";
    }
    for (size_t other = 0; other < rules.size(); ++other) {
      EXPECT_GE(Differing(picture, rules[other]), kSide * kSide / 4)
          << "pictures " << index << " and " << kRulePictures[other] << " look alike";
    }
    rules.push_back(picture);
  }
}

}  // namespace
}  // namespace lumenor
