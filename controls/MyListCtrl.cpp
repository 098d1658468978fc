#include "controls/MyListCtrl.h"

#include "controls/Layout.h"
#include "controls/Paint.h"

#include <commctrl.h>

namespace lumenor::controls {

CMyListCtrl::~CMyListCtrl() {
  if (rowHeight_ != nullptr) {
    (void)::ImageList_Destroy(rowHeight_);
  }
}

bool CMyListCtrl::CreateList(HWND parent, int id, const RECT& rect, DWORD extraStyle) {
  const DWORD style = WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_OWNERDRAWFIXED | extraStyle;
  return Create(WC_LISTVIEWW, L"", style, WS_EX_CLIENTEDGE, rect, parent, id) && SetUp();
}

bool CMyListCtrl::Attach(HWND dialog, int id) { return SubclassItem(dialog, id) && SetUp(); }

bool CMyListCtrl::SetUp() {
  (void)Send(LVM_SETEXTENDEDLISTVIEWSTYLE, LVS_EX_FULLROWSELECT, LVS_EX_FULLROWSELECT);  // answers the old style
  // The system asks an owner-drawn list's row height before we can answer; a small image
  // list of the row's height sets it instead.
  rowHeight_ = ::ImageList_Create(1, kRowHeight, ILC_COLOR32, 1, 0);
  if (rowHeight_ != nullptr) {
    (void)Send(LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(rowHeight_));  // answers the old list
  }
  return true;
}

bool CMyListCtrl::AddColumn(const std::wstring& title, int width) {
  if (columns_ > 0) {
    // The column that was last gives up what it took from the list.
    (void)Send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(columns_ - 1), MAKELPARAM(lastColumnWidth_, 0));
  }
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  column.cx = TextPixels(window_, width);
  column.pszText = const_cast<wchar_t*>(title.c_str());
  column.iSubItem = columns_;
  if (Send(LVM_INSERTCOLUMNW, static_cast<WPARAM>(columns_), reinterpret_cast<LPARAM>(&column)) < 0) {
    return false;
  }
  ++columns_;
  lastColumnWidth_ = column.cx;
  (void)FitLastColumn(window_, lastColumnWidth_);  // without it the column keeps its given width
  return true;
}

int CMyListCtrl::AppendRow(const std::vector<std::wstring>& texts, LPARAM tag) {
  LVITEMW item{};
  item.mask = LVIF_TEXT | LVIF_PARAM;
  item.iItem = RowCount();
  item.pszText = const_cast<wchar_t*>(texts.empty() ? L"" : texts[0].c_str());
  item.lParam = tag;
  const int row = static_cast<int>(Send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)));
  if (row < 0) {
    return -1;
  }
  for (size_t column = 1; column < texts.size(); ++column) {
    LVITEMW sub{};
    sub.iSubItem = static_cast<int>(column);
    sub.pszText = const_cast<wchar_t*>(texts[column].c_str());
    if (Send(LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&sub)) == FALSE) {
      return -1;
    }
  }
  return row;
}

std::wstring CMyListCtrl::RowText(int row, int column) const {
  wchar_t buffer[1024] = {};
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = buffer;
  item.cchTextMax = static_cast<int>(std::size(buffer));
  const auto length =
      static_cast<size_t>(Send(LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item)));
  return std::wstring(buffer, length < std::size(buffer) ? length : 0);
}

LPARAM CMyListCtrl::RowTag(int row) const {
  LVITEMW item{};
  item.mask = LVIF_PARAM;
  item.iItem = row;
  return Send(LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) != FALSE ? item.lParam : 0;
}

LRESULT CMyListCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = Default(message, wParam, lParam);
  // A move, or a scroll bar coming or going, changes the width the last column can take.
  if (message == WM_SIZE && columns_ > 0) {
    (void)FitLastColumn(window_, lastColumnWidth_);  // without it the column keeps its width
  }
  return result;
}

bool CMyListCtrl::OnReflected(UINT message, WPARAM, LPARAM lParam, LRESULT& result) {
  if (message != WM_DRAWITEM) {
    return false;
  }
  DrawRow(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
  result = TRUE;
  return true;
}

void CMyListCtrl::DrawRow(const DRAWITEMSTRUCT& draw) const {
  const int row = static_cast<int>(draw.itemID);
  const bool selected = (draw.itemState & ODS_SELECTED) != 0;
  HDC dc = draw.hDC;
  if (selected) {
    (void)FillGradient(dc, draw.rcItem, RGB(206, 228, 250), RGB(170, 206, 240));
  } else {
    (void)FillSolid(dc, draw.rcItem, row % 2 == 0 ? RGB(255, 255, 255) : RGB(244, 248, 252));
  }
  (void)::SetBkMode(dc, TRANSPARENT);
  (void)::SetTextColor(dc, kSkinText);
  int left = draw.rcItem.left;
  for (int column = 0; column < columns_; ++column) {
    const int width = static_cast<int>(Send(LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column)));
    RECT cell{left + 4, draw.rcItem.top, left + width - 2, draw.rcItem.bottom};
    const std::wstring text = RowText(row, column);
    (void)::DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &cell,
                      DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
    left += width;
  }
}

}  // namespace lumenor::controls
