// The owner-drawn menu: entries measured to one side bar as tall as the menu, and each
// entry drawing its own slice of that bar wherever the system puts the entry.
#include "controls/GdiOwners.h"
#include "controls/MyMenu.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

#include <gtest/gtest.h>

#include <vector>

namespace lumenor::controls {
namespace {

std::vector<MenuEntry> TrayEntries() {
  return {{ID_TRAY_SECURITY, L"Security(&S)", IDI_MENU_SECURITY},
          {ID_TRAY_JUNK, L"Junk(&J)", IDI_MENU_JUNK},
          {ID_TRAY_SHREDDER, L"Shredder(&F)", IDI_MENU_SHREDDER},
          {ID_TRAY_SETTINGS, L"Settings(&O)", IDI_MENU_SETTINGS},
          {ID_TRAY_HELP, L"Help(&H)", IDI_MENU_HELP},
          {0, L"", 0},
          {ID_TRAY_ONE_CLICK, L"One-click Erase(&C)", IDI_MENU_ONE_CLICK},
          {0, L"", 0},
          {ID_TRAY_EXIT, L"Exit(&C)", IDI_MENU_EXIT}};
}

ULONG_PTR ItemData(HMENU menu, UINT position) {
  MENUITEMINFOW info{};
  info.cbSize = sizeof info;
  info.fMask = MIIM_DATA;
  return GetMenuItemInfoW(menu, position, TRUE, &info) != FALSE ? info.dwItemData : 0;
}

// The pixels of column `x` of a 32-bit top-down picture, rows [top, top + height).
std::vector<COLORREF> Column(HDC dc, int x, int top, int height) {
  std::vector<COLORREF> pixels;
  for (int y = top; y < top + height; ++y) {
    pixels.push_back(GetPixel(dc, x, y));
  }
  return pixels;
}

TEST(MenuSideBar, EntriesStackToTheSideBarsHeight) {
  CMyMenu menu;
  const std::vector<MenuEntry> entries = TrayEntries();
  ASSERT_TRUE(menu.Build(entries, L"Lumenor", IDB_SPLASH_WELCOME));
  ASSERT_EQ(GetMenuItemCount(menu.Handle()), 9);
  int total = 0;
  for (UINT position = 0; position < entries.size(); ++position) {
    MEASUREITEMSTRUCT measure{};
    measure.CtlType = ODT_MENU;
    measure.itemID = entries[position].command;
    measure.itemData = ItemData(menu.Handle(), position);
    ASSERT_TRUE(menu.OnMeasureItem(measure)) << "entry " << position;
    EXPECT_EQ(menu.EntryTop(position), total);
    EXPECT_GT(static_cast<int>(measure.itemWidth), CMyMenu::kSideBarWidth);
    total += static_cast<int>(measure.itemHeight);
  }
  EXPECT_EQ(menu.TotalHeight(), total);
  EXPECT_EQ(menu.TotalHeight(), 7 * CMyMenu::kEntryHeight + 2 * CMyMenu::kSeparatorHeight);

  MEASUREITEMSTRUCT foreign{};
  foreign.CtlType = ODT_MENU;
  foreign.itemData = 12345;
  EXPECT_FALSE(menu.OnMeasureItem(foreign)) << "items of other menus are left alone";
}

TEST(MenuSideBar, EachEntryDrawsItsOwnSliceOfTheBarEvenInsideAFrame) {
  CMyMenu menu;
  const std::vector<MenuEntry> entries = TrayEntries();
  ASSERT_TRUE(menu.Build(entries, L"Lumenor", IDB_SPLASH_WELCOME));
  const WindowDC screen(nullptr);
  const MemoryDC bar(screen.Get());
  const MemoryDC canvas(screen.Get());
  const OwnedBitmap canvasBitmap(CreateCompatibleBitmap(screen.Get(), 200, menu.TotalHeight() + 20));
  const SelectedObject canvasSelected(canvas.Get(), canvasBitmap.Get());
  ASSERT_TRUE(canvasSelected.Selected());

  constexpr int kFrame = 3;  // where a menu with a border puts its first entry
  for (UINT position = 0; position < entries.size(); ++position) {
    const int height = position + 1 < entries.size() ? menu.EntryTop(position + 1) - menu.EntryTop(position)
                                                     : menu.TotalHeight() - menu.EntryTop(position);
    DRAWITEMSTRUCT draw{};
    draw.CtlType = ODT_MENU;
    draw.itemID = entries[position].command;
    draw.itemData = ItemData(menu.Handle(), position);
    draw.hDC = canvas.Get();
    draw.rcItem =
        RECT{kFrame, kFrame + menu.EntryTop(position), 200 - kFrame, kFrame + menu.EntryTop(position) + height};
    ASSERT_TRUE(menu.OnDrawItem(draw));
  }
  // The bar can be in one DC at a time: look at it once the entries have drawn.
  ASSERT_NE(menu.SideBar(), nullptr);
  const SelectedObject barSelected(bar.Get(), menu.SideBar());
  for (int x : {2, CMyMenu::kSideBarWidth / 2, CMyMenu::kSideBarWidth - 1}) {
    EXPECT_EQ(Column(canvas.Get(), kFrame + x, kFrame, menu.TotalHeight()), Column(bar.Get(), x, 0, menu.TotalHeight()))
        << "column " << x << " of the assembled side bar";
  }
}

}  // namespace
}  // namespace lumenor::controls
