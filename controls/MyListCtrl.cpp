#include "controls/MyListCtrl.h"

#include "controls/Layout.h"
#include "controls/Paint.h"

#include <commctrl.h>

#include <algorithm>
#include <iterator>

namespace lumenor::controls {

CMyListCtrl::~CMyListCtrl() {
  if (rowHeight_ != nullptr) {
    (void)::ImageList_Destroy(rowHeight_);
  }
}

bool CMyListCtrl::CreateList(HWND parent, int id, const RECT& rect, DWORD extraStyle) {
  const DWORD style =
      WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_OWNERDRAWFIXED | LVS_OWNERDATA | extraStyle;
  return Create(WC_LISTVIEWW, L"", style, WS_EX_CLIENTEDGE, rect, parent, id) && SetUp();
}

bool CMyListCtrl::Attach(HWND dialog, int id) {
  const HWND list = ::GetDlgItem(dialog, id);
  if (list == nullptr || (::GetWindowLongW(list, GWL_STYLE) & LVS_OWNERDATA) == 0) {
    return false;
  }
  return Subclass(list) && SetUp();
}

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

int CMyListCtrl::AppendRow(std::vector<std::wstring> texts, LPARAM tag) {
  rows_.push_back(ListRow{std::move(texts), tag});
  return UpdateCount() ? RowCount() - 1 : -1;
}

bool CMyListCtrl::AppendRows(std::vector<ListRow> rows) {
  if (rows_.empty()) {
    rows_ = std::move(rows);
  } else {
    rows_.insert(rows_.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
  }
  return UpdateCount();
}

bool CMyListCtrl::DeleteRow(int row) {
  if (row < 0 || row >= RowCount()) {
    return false;
  }
  rows_.erase(rows_.begin() + row);
  // The rows below move up: every row from here on shows another row now.
  return UpdateCount() && Invalidate();
}

bool CMyListCtrl::DeleteAll() {
  rows_.clear();
  return UpdateCount() && Invalidate();
}

bool CMyListCtrl::UpdateCount() const {
  // Keeps the scroll position and repaints only what the new rows change.
  return Send(LVM_SETITEMCOUNT, static_cast<WPARAM>(rows_.size()), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL) != FALSE;
}

std::wstring CMyListCtrl::RowText(int row, int column) const {
  if (row < 0 || row >= RowCount() || column < 0) {
    return {};
  }
  const std::vector<std::wstring>& texts = rows_[static_cast<size_t>(row)].texts;
  return static_cast<size_t>(column) < texts.size() ? texts[static_cast<size_t>(column)] : std::wstring();
}

LPARAM CMyListCtrl::RowTag(int row) const {
  return row >= 0 && row < RowCount() ? rows_[static_cast<size_t>(row)].tag : 0;
}

uint64_t CMyListCtrl::RowValue(int row) const {
  return row >= 0 && row < RowCount() ? rows_[static_cast<size_t>(row)].value : 0;
}

int CMyListCtrl::SelectedRow() const {
  return static_cast<int>(Send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

bool CMyListCtrl::SelectRow(int row) const {
  LVITEMW item{};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  item.state = LVIS_SELECTED | LVIS_FOCUSED;
  return Send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item)) != FALSE;
}

void CMyListCtrl::GiveText(NMLVDISPINFOW& request) const {
  if ((request.item.mask & LVIF_TEXT) == 0 || request.item.pszText == nullptr || request.item.cchTextMax <= 0) {
    return;
  }
  const std::wstring text = RowText(request.item.iItem, request.item.iSubItem);
  // The list's buffer is bounded; a text longer than it is shown cut, never acted on.
  const size_t length = std::min(text.size(), static_cast<size_t>(request.item.cchTextMax) - 1);
  std::copy_n(text.data(), length, request.item.pszText);
  request.item.pszText[length] = L'\0';
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
  if (message == WM_NOTIFY) {
    NMHDR* header = reinterpret_cast<NMHDR*>(lParam);
    if (header->code != LVN_GETDISPINFOW) {
      return false;
    }
    GiveText(*reinterpret_cast<NMLVDISPINFOW*>(lParam));
    result = 0;
    return true;
  }
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
