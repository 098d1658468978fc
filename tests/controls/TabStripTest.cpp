// The skinned tab strip: where the tabs lie, which look each shows, and what a click
// tells the owner.
#include "controls/MyTabCtrl.h"
#include "res/artwork_ids.h"

#include <gtest/gtest.h>

namespace lumenor::controls {
namespace {

constexpr UINT kShowMessage = WM_USER + 100;

class TabStrip : public ::testing::Test {
 protected:
  void SetUp() override {
    owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 700, 100, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(owner_, nullptr);
    ASSERT_TRUE(strip_.CreateStrip(owner_, 1100, POINT{10, 10}, kShowMessage));
  }
  void TearDown() override { DestroyWindow(owner_); }

  // The tab index the owner was told about, or -1 when nothing was posted.
  int Posted() {
    MSG message{};
    int index = -1;
    while (PeekMessageW(&message, owner_, kShowMessage, kShowMessage, PM_REMOVE)) {
      index = static_cast<int>(message.lParam);
    }
    return index;
  }
  POINT CentreOf(int tab) const {
    const RECT rect = strip_.TabRect(tab);
    return POINT{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
  }

  HWND owner_ = nullptr;
  CMyTabCtrl strip_;
};

TEST_F(TabStrip, TabsLieSideBySideAtTheirPicturesSize) {
  strip_.AddTab(IDB_TAB_SCAN_NORMAL, IDB_TAB_SCAN_HOT, IDB_TAB_SCAN_SELECTED);
  strip_.AddTab(9990, 9991, 9992);  // no such pictures: the plain tab
  const SIZE picture = strip_.TabRect(0).right > 0 ? SIZE{strip_.TabRect(0).right, strip_.TabRect(0).bottom} : SIZE{};
  EXPECT_GT(picture.cx, 0);
  EXPECT_EQ(strip_.TabRect(1).left, picture.cx);
  EXPECT_EQ(strip_.TabRect(1).right - strip_.TabRect(1).left, CMyTabCtrl::kFallbackTabSize.cx);
  EXPECT_EQ(strip_.HitTest(CentreOf(1)), 1);
  EXPECT_EQ(strip_.HitTest(POINT{strip_.StripSize().cx + 5, 5}), -1);
}

TEST_F(TabStrip, ClickSelectsAndPostsTheIndexAndLooksFollow) {
  for (int tab = 0; tab < 4; ++tab) {
    strip_.AddTab(9990, 9991, 9992);
  }
  strip_.Select(0);
  strip_.Click(CentreOf(2));
  EXPECT_EQ(Posted(), 2);
  EXPECT_EQ(strip_.Selected(), 2);
  EXPECT_EQ(strip_.LookOf(2), CMyTabCtrl::Look::kSelected);
  EXPECT_EQ(strip_.LookOf(0), CMyTabCtrl::Look::kNormal);

  SendMessageW(strip_.Handle(), WM_MOUSEMOVE, 0, MAKELPARAM(CentreOf(3).x, CentreOf(3).y));
  EXPECT_EQ(strip_.LookOf(3), CMyTabCtrl::Look::kHover);
  SendMessageW(strip_.Handle(), WM_MOUSEMOVE, 0, MAKELPARAM(CentreOf(2).x, CentreOf(2).y));
  EXPECT_EQ(strip_.LookOf(2), CMyTabCtrl::Look::kSelected) << "the selected look wins over hover";
  EXPECT_EQ(strip_.LookOf(3), CMyTabCtrl::Look::kNormal);

  strip_.Click(CentreOf(2));
  EXPECT_EQ(Posted(), 2) << "choosing the current tab still tells the owner";
  strip_.PostOnlyOnChange(true);
  strip_.Click(CentreOf(2));
  EXPECT_EQ(Posted(), -1);

  strip_.Select(4);
  EXPECT_EQ(strip_.Selected(), -1) << "an index past the tabs selects none";
}

TEST_F(TabStrip, BlockedClicksChangeNothing) {
  strip_.AddTab(9990, 9991, 9992);
  strip_.AddTab(9990, 9991, 9992);
  strip_.Select(0);
  bool busy = true;
  strip_.SetClickBlocker([&busy] { return busy; });
  strip_.Click(CentreOf(1));
  EXPECT_EQ(Posted(), -1);
  EXPECT_EQ(strip_.Selected(), 0);
  busy = false;
  SendMessageW(strip_.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(CentreOf(1).x, CentreOf(1).y));
  EXPECT_EQ(Posted(), 1);
}

}  // namespace
}  // namespace lumenor::controls
