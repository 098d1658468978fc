// Owner-drawn pop-up menu with a side bar: a band down the menu's left edge showing a
// picture and the product's name written upwards. Each entry has a 16 by 16 icon. The
// side bar is drawn once into a picture as tall as the whole menu; each entry copies
// the slice that lies beside it.
#pragma once

#include "controls/Bitmap.h"
#include "controls/GdiOwners.h"

#include <windows.h>

#include <span>
#include <string>
#include <vector>

namespace lumenor::controls {

struct MenuEntry {
  UINT command = 0;  // 0: a separator
  std::wstring text;
  int iconId = 0;
};

class CMyMenu {
 public:
  static constexpr int kEntryHeight = 24;
  static constexpr int kSeparatorHeight = 9;
  static constexpr int kSideBarWidth = 26;

  CMyMenu() = default;
  CMyMenu(const CMyMenu&) = delete;
  CMyMenu& operator=(const CMyMenu&) = delete;
  ~CMyMenu();

  bool Build(std::span<const MenuEntry> entries, const std::wstring& sideBarText, int sideBarPicture);
  HMENU Handle() const { return menu_; }
  bool Built() const { return menu_ != nullptr; }

  // Answers WM_MEASUREITEM and WM_DRAWITEM for the menu's entries; false for others.
  bool OnMeasureItem(MEASUREITEMSTRUCT& measure) const;
  bool OnDrawItem(const DRAWITEMSTRUCT& draw);

  // Where an entry lies from the menu's top, and the menu's whole height.
  int EntryTop(size_t index) const;
  int TotalHeight() const { return EntryTop(entries_.size()); }
  // The side bar picture (kSideBarWidth by TotalHeight), made on first use.
  HBITMAP SideBar();

 private:
  struct Entry {
    MenuEntry entry;
    OwnedIcon icon;
  };
  int EntryHeight(size_t index) const;
  HGDIOBJ MenuFont() const;
  bool IsOurs(ULONG_PTR itemData) const;
  void DrawSideBar(HDC dc) const;

  HMENU menu_ = nullptr;
  std::vector<Entry> entries_;
  std::wstring sideBarText_;
  CBitmapResource sideBarPicture_;
  OwnedBitmap sideBar_;
  OwnedFont font_;
};

}  // namespace lumenor::controls
