#include "junk/JunkCatalogueList.h"

#include "controls/Layout.h"

#include <commctrl.h>

#include <array>

namespace lumenor {

namespace {

// State-image indexes of the list's check boxes.
constexpr UINT kUnchecked = 1;
constexpr UINT kChecked = 2;

}  // namespace

bool CJunkCatalogueList::Attach(HWND dialog, int id) {
  if (!SubclassItem(dialog, id)) {
    return false;
  }
  (void)Send(LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT,
             LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);  // answers the old style
  return true;
}

bool CJunkCatalogueList::AddColumn(const std::wstring& title, int width) {
  if (columns_ > 0) {
    // The column that was last gives up what it took from the list.
    (void)Send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(columns_ - 1), MAKELPARAM(lastColumnWidth_, 0));
  }
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  column.cx = controls::TextPixels(window_, width);
  column.pszText = const_cast<wchar_t*>(title.c_str());
  column.iSubItem = columns_;
  if (Send(LVM_INSERTCOLUMNW, static_cast<WPARAM>(columns_), reinterpret_cast<LPARAM>(&column)) < 0) {
    return false;
  }
  ++columns_;
  lastColumnWidth_ = column.cx;
  return controls::FitLastColumn(window_, lastColumnWidth_);
}

bool CJunkCatalogueList::AppendRow(const std::wstring& mask, const std::wstring& description) {
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = RowCount();
  item.pszText = const_cast<wchar_t*>(mask.c_str());
  const int row = static_cast<int>(Send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
  if (row < 0) {
    return false;
  }
  item.iSubItem = 1;
  item.pszText = const_cast<wchar_t*>(description.c_str());
  const bool described = Send(LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item)) != FALSE;
  // The first row that needs a scroll bar narrows what the last column may take.
  return controls::FitLastColumn(window_, lastColumnWidth_) && described;
}

std::wstring CJunkCatalogueList::RowText(int row, int column) const {
  // The catalogue's texts are short; a longer one would be shown cut, never acted on.
  std::array<wchar_t, 256> text{};
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  const LRESULT length = Send(LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
  return std::wstring(text.data(), static_cast<size_t>(length > 0 ? length : 0));
}

bool CJunkCatalogueList::Checked(int row) const {
  const auto state = static_cast<UINT>(Send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK));
  return (state >> 12) == kChecked;
}

bool CJunkCatalogueList::SetChecked(int row, bool checked) const {
  LVITEMW item{};
  item.stateMask = LVIS_STATEIMAGEMASK;
  item.state = INDEXTOSTATEIMAGEMASK(checked ? kChecked : kUnchecked);
  return Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item)) != FALSE;
}

LRESULT CJunkCatalogueList::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = Default(message, wParam, lParam);
  // A move, or a scroll bar coming or going, changes the width the last column can take.
  if (message == WM_SIZE && columns_ > 0) {
    (void)controls::FitLastColumn(window_, lastColumnWidth_);  // without it the column keeps its width
  }
  return result;
}

}  // namespace lumenor
