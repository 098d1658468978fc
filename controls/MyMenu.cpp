#include "controls/MyMenu.h"

#include "controls/Paint.h"

namespace lumenor::controls {

namespace {

constexpr int kIconSize = 16;
constexpr int kIconGap = 6;
constexpr int kTextRightPad = 24;
// Entries carry their index plus this tag as item data, so foreign items are told apart.
constexpr ULONG_PTR kItemTag = 0x4C000000;

HFONT CreateMenuFont(LONG escapement) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  LOGFONTW font{};
  if (::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0) != FALSE) {
    font = metrics.lfMenuFont;
  } else if (::GetObjectW(::GetStockObject(DEFAULT_GUI_FONT), sizeof font, &font) == 0) {
    return nullptr;
  }
  font.lfEscapement = escapement;
  font.lfOrientation = escapement;
  if (escapement != 0) {
    font.lfWeight = FW_BOLD;
    font.lfHeight = -16;
    (void)wcscpy_s(font.lfFaceName, L"Arial");  // a TrueType face turns; fits the buffer
  }
  return ::CreateFontIndirectW(&font);
}

}  // namespace

CMyMenu::~CMyMenu() {
  if (menu_ != nullptr) {
    (void)::DestroyMenu(menu_);  // our own menu; nothing to do if the system refuses
  }
}

bool CMyMenu::Build(std::span<const MenuEntry> entries, const std::wstring& sideBarText, int sideBarPicture) {
  if (menu_ != nullptr) {
    return true;
  }
  menu_ = ::CreatePopupMenu();
  if (menu_ == nullptr) {
    return false;
  }
  sideBarText_ = sideBarText;
  (void)sideBarPicture_.Load(sideBarPicture);  // without it the band shows the text alone
  font_.Reset(CreateMenuFont(0));
  for (const MenuEntry& source : entries) {
    Entry& entry = entries_.emplace_back();
    entry.entry = source;
    if (source.iconId != 0) {
      entry.icon.Reset(static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(source.iconId),
                                                       IMAGE_ICON, kIconSize, kIconSize, 0)));
    }
    const UINT flags = MF_OWNERDRAW | (source.command == 0 ? MF_SEPARATOR : 0u);
    const ULONG_PTR data = kItemTag + (entries_.size() - 1);
    if (::AppendMenuW(menu_, flags, source.command, reinterpret_cast<const wchar_t*>(data)) == FALSE) {
      return false;
    }
  }
  return true;
}

HGDIOBJ CMyMenu::MenuFont() const { return font_ ? font_.Get() : ::GetStockObject(DEFAULT_GUI_FONT); }

int CMyMenu::EntryHeight(size_t index) const {
  return entries_[index].entry.command == 0 ? kSeparatorHeight : kEntryHeight;
}

int CMyMenu::EntryTop(size_t index) const {
  int top = 0;
  for (size_t before = 0; before < index && before < entries_.size(); ++before) {
    top += EntryHeight(before);
  }
  return top;
}

bool CMyMenu::IsOurs(ULONG_PTR itemData) const { return itemData >= kItemTag && itemData - kItemTag < entries_.size(); }

bool CMyMenu::OnMeasureItem(MEASUREITEMSTRUCT& measure) const {
  if (measure.CtlType != ODT_MENU || !IsOurs(measure.itemData)) {
    return false;
  }
  const size_t index = measure.itemData - kItemTag;
  measure.itemHeight = static_cast<UINT>(EntryHeight(index));
  int textWidth = 0;
  const WindowDC screen(nullptr);
  if (screen) {
    const SelectedObject font(screen.Get(), MenuFont());
    RECT textRect{};
    const std::wstring& text = entries_[index].entry.text;
    (void)::DrawTextW(screen.Get(), text.c_str(), static_cast<int>(text.size()), &textRect,
                      DT_SINGLELINE | DT_CALCRECT);
    textWidth = textRect.right;
  }
  measure.itemWidth = static_cast<UINT>(kSideBarWidth + kIconGap + kIconSize + kIconGap + textWidth + kTextRightPad);
  return true;
}

void CMyMenu::DrawSideBar(HDC dc) const {
  const RECT band{0, 0, kSideBarWidth, TotalHeight()};
  (void)FillGradient(dc, band, kSkinCaptionBottom, kSkinCaptionTop);
  int textBottom = band.bottom - 6;
  if (sideBarPicture_) {
    // The picture keeps its proportions, as wide as the band, at the band's foot.
    const SIZE size = sideBarPicture_.Size();
    const int height = size.cx > 0 ? size.cy * kSideBarWidth / size.cx : 0;
    const RECT picture{0, band.bottom - height, kSideBarWidth, band.bottom};
    (void)sideBarPicture_.DrawStretched(dc, picture);
    textBottom = picture.top - 6;
  }
  const OwnedFont upwards(CreateMenuFont(900));
  if (!upwards) {
    return;
  }
  const SelectedObject font(dc, upwards.Get());
  (void)::SetBkMode(dc, TRANSPARENT);
  (void)::SetTextColor(dc, RGB(255, 255, 255));
  (void)::TextOutW(dc, 4, textBottom, sideBarText_.c_str(), static_cast<int>(sideBarText_.size()));
}

HBITMAP CMyMenu::SideBar() {
  if (sideBar_) {
    return sideBar_.Get();
  }
  const WindowDC screen(nullptr);
  if (!screen) {
    return nullptr;
  }
  const MemoryDC dc(screen.Get());
  OwnedBitmap bitmap(dc ? ::CreateCompatibleBitmap(screen.Get(), kSideBarWidth, TotalHeight()) : nullptr);
  if (!bitmap) {
    return nullptr;
  }
  {
    const SelectedObject canvas(dc.Get(), bitmap.Get());
    if (!canvas.Selected()) {
      return nullptr;
    }
    DrawSideBar(dc.Get());
  }  // taken out of the context before it is kept
  sideBar_ = std::move(bitmap);
  return sideBar_.Get();
}

bool CMyMenu::OnDrawItem(const DRAWITEMSTRUCT& draw) {
  if (draw.CtlType != ODT_MENU || !IsOurs(draw.itemData)) {
    return false;
  }
  const size_t index = draw.itemData - kItemTag;
  const RECT& item = draw.rcItem;
  HDC dc = draw.hDC;

  // The slice of the band beside this entry, found from the entry's place in the menu,
  // not from where the system put the item rectangle (menus may have a frame).
  if (HBITMAP band = SideBar(); band != nullptr) {
    const MemoryDC source(dc);
    const SelectedObject slice(source.Get(), band);
    if (slice.Selected()) {
      (void)::BitBlt(dc, item.left, item.top, kSideBarWidth, item.bottom - item.top, source.Get(), 0, EntryTop(index),
                     SRCCOPY);  // a slice that fails stays blank
    }
  }

  RECT body{item.left + kSideBarWidth, item.top, item.right, item.bottom};
  const Entry& entry = entries_[index];
  if (entry.entry.command == 0) {
    (void)FillSolid(dc, body, RGB(255, 255, 255));
    const int middle = (item.top + item.bottom) / 2;
    const RECT line{body.left + kIconGap, middle, body.right - kIconGap, middle + 1};
    (void)FillSolid(dc, line, kSkinBorder);
    return true;
  }

  const bool selected = (draw.itemState & ODS_SELECTED) != 0;
  const bool disabled = (draw.itemState & (ODS_DISABLED | ODS_GRAYED)) != 0;
  if (selected && !disabled) {
    (void)FillGradient(dc, body, RGB(214, 234, 252), RGB(176, 212, 244));
    (void)DrawFrame(dc, body, kSkinAccent);
  } else {
    (void)FillSolid(dc, body, RGB(255, 255, 255));
  }
  const int iconLeft = body.left + kIconGap;
  if (entry.icon) {
    (void)::DrawIconEx(dc, iconLeft, item.top + (item.bottom - item.top - kIconSize) / 2, entry.icon.Get(), kIconSize,
                       kIconSize, 0, nullptr, DI_NORMAL);
  }
  RECT textRect{iconLeft + kIconSize + kIconGap, item.top, body.right, item.bottom};
  const SelectedObject font(dc, MenuFont());
  (void)::SetBkMode(dc, TRANSPARENT);
  (void)::SetTextColor(dc, disabled ? RGB(150, 150, 150) : kSkinText);
  const UINT prefix = (draw.itemState & ODS_NOACCEL) != 0 ? DT_HIDEPREFIX : 0u;
  (void)::DrawTextW(dc, entry.entry.text.c_str(), static_cast<int>(entry.entry.text.size()), &textRect,
                    DT_LEFT | DT_VCENTER | DT_SINGLELINE | prefix);
  return true;
}

}  // namespace lumenor::controls
