#include "scan/MyTreeCtrl.h"

#include "base/ResourceString.h"
#include "base/Texts.h"
#include "controls/GdiOwners.h"
#include "res/artwork_ids.h"

#include <windowsx.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

namespace {

constexpr int kStatusCellWidth = 20;  // the busy or done mark, 16 wide, and a little air
constexpr int kRightMargin = 4;
constexpr int kMarkSize = 16;
constexpr int kBusyFrames = 8;
constexpr COLORREF kCountColour = 0x636363;
constexpr COLORREF kMarkBackground = RGB(255, 0, 255);
constexpr int kNotShown = -1;  // the box of a row not made yet
// More rows changing at once than this are changed with the tree's drawing held off.
constexpr size_t kManyChanges = 32;

// For every row whose box changes while the tree shows, Wine's tree view does work in
// proportion to all its open rows: ticking the 944 items of one open application kept
// the window's thread busy for seconds. Many rows change with the tree's drawing held off
// (the system's WM_SETREDRAW, which the tree view otherwise keeps to itself), and the
// tree is drawn once after.
class DrawingHeldOff {
 public:
  DrawingHeldOff(HWND tree, bool hold)
      : tree_(hold && (::GetWindowLongW(tree, GWL_STYLE) & WS_VISIBLE) != 0 ? tree : nullptr) {
    if (tree_ != nullptr) (void)::DefWindowProcW(tree_, WM_SETREDRAW, FALSE, 0);  // answers nothing
  }
  ~DrawingHeldOff() {
    if (tree_ == nullptr) return;
    (void)::DefWindowProcW(tree_, WM_SETREDRAW, TRUE, 0);
    // Fails only for a tree that went, which has nothing to draw.
    (void)::RedrawWindow(tree_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME);
  }
  DrawingHeldOff(const DrawingHeldOff&) = delete;
  DrawingHeldOff& operator=(const DrawingHeldOff&) = delete;

 private:
  HWND tree_;
};

}  // namespace

CMyTreeCtrl::~CMyTreeCtrl() {
  if (Exists()) {
    (void)StopTimer(kAnimationTimer);  // a timer of a window that goes anyway
  }
}

bool CMyTreeCtrl::CreateTree(HWND parent, int id, const RECT& rect, HFONT font) {
  const DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                      TVS_FULLROWSELECT | TVS_SHOWSELALWAYS;
  if (!Create(WC_TREEVIEWW, L"", style, WS_EX_CLIENTEDGE, rect, parent, id)) {
    return false;
  }
  (void)Send(WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);  // answers nothing
  pictures_.Reset(MakeCatalogueImageList());
  checks_.Reset(MakeCheckImageList());
  // Both answer the list they replace, which is none.
  (void)Send(TVM_SETIMAGELIST, TVSIL_NORMAL, reinterpret_cast<LPARAM>(pictures_.Get()));
  (void)Send(TVM_SETIMAGELIST, TVSIL_STATE, reinterpret_cast<LPARAM>(checks_.Get()));
  (void)busyStrip_.Load(IDB_TREE_BUSY);  // missing: no mark is drawn
  (void)doneMark_.Load(IDB_TREE_DONE);

  // Room for five digits of counts and a size in the tree's font.
  const controls::WindowDC dc(window_);
  if (dc) {
    const controls::SelectedObject selected(dc.Get(), font != nullptr ? font : ::GetStockObject(DEFAULT_GUI_FONT));
    constexpr std::wstring_view kWidest = L"67890 (999.9 MB)";
    if (::GetTextExtentPoint32W(dc.Get(), kWidest.data(), static_cast<int>(kWidest.size()), &countLabel_) == FALSE) {
      countLabel_ = SIZE{100, 16};
    }
  }
  return true;
}

void CMyTreeCtrl::Fill(ItemSelection& selection, std::vector<const CMyObject*> nodes) {
  selection_ = &selection;
  nodes_ = std::move(nodes);
  const std::vector<ItemSelection::Row>& rows = selection.Rows();
  nodes_.resize(rows.size(), nullptr);
  images_.assign(rows.size(), 0);
  items_.assign(rows.size(), nullptr);
  shownStates_.assign(rows.size(), kNotShown);
  scanStates_.assign(rows.size(), kUntouched);
  (void)Send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));  // empty already the first time
  int lastImage = 0;
  for (size_t row = 0; row < rows.size(); ++row) {
    // A row without a node shows the picture of the row before it, a sibling of its kind.
    images_[row] = nodes_[row] != nullptr ? nodes_[row]->Image() : lastImage;
    lastImage = images_[row];
  }
  for (size_t row = 0; row < rows.size(); ++row) {
    if (rows[row].parent < 0) InsertRow(static_cast<int>(row));
  }
}

void CMyTreeCtrl::InsertRow(int row) {
  const ItemSelection::Row& shown = selection_->Rows()[static_cast<size_t>(row)];
  const CMyObject* node = nodes_[static_cast<size_t>(row)];
  const std::wstring name = node != nullptr ? node->Name() : LoadResourceString(shown.id);
  TVINSERTSTRUCTW insert{};
  insert.hParent = shown.parent < 0 ? TVI_ROOT : items_[static_cast<size_t>(shown.parent)];
  insert.hInsertAfter = TVI_LAST;
  insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM | TVIF_STATE | TVIF_CHILDREN;
  insert.item.pszText = const_cast<wchar_t*>(name.c_str());
  insert.item.iImage = images_[static_cast<size_t>(row)];
  insert.item.iSelectedImage = insert.item.iImage;
  insert.item.lParam = static_cast<LPARAM>(row);
  insert.item.stateMask = TVIS_STATEIMAGEMASK;
  insert.item.state = INDEXTOSTATEIMAGEMASK(shown.state);
  // The button shows before the rows under it are made.
  insert.item.cChildren = shown.children.empty() ? 0 : 1;
  const auto item = reinterpret_cast<HTREEITEM>(Send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
  items_[static_cast<size_t>(row)] = item;
  shownStates_[static_cast<size_t>(row)] = item != nullptr ? shown.state : kNotShown;
}

void CMyTreeCtrl::MakeChildren(int row) {
  if (selection_ == nullptr || row < 0 || static_cast<size_t>(row) >= items_.size() ||
      items_[static_cast<size_t>(row)] == nullptr) {
    return;
  }
  const std::vector<int>& children = selection_->Rows()[static_cast<size_t>(row)].children;
  if (children.empty() || items_[static_cast<size_t>(children.front())] != nullptr) {
    return;
  }
  const DrawingHeldOff heldOff(window_, children.size() > kManyChanges);
  for (const int child : children) InsertRow(child);
}

HTREEITEM CMyTreeCtrl::ItemOfRow(int row) {
  if (selection_ == nullptr || row < 0 || static_cast<size_t>(row) >= items_.size()) {
    return nullptr;
  }
  // The rows above it are made from the category down.
  std::vector<int> above;
  for (int current = selection_->Rows()[static_cast<size_t>(row)].parent; current >= 0;
       current = selection_->Rows()[static_cast<size_t>(current)].parent) {
    above.push_back(current);
  }
  for (auto parent = above.rbegin(); parent != above.rend(); ++parent) MakeChildren(*parent);
  return items_[static_cast<size_t>(row)];
}

HTREEITEM CMyTreeCtrl::MadeItem(int row) const {
  return row >= 0 && static_cast<size_t>(row) < items_.size() ? items_[static_cast<size_t>(row)] : nullptr;
}

void CMyTreeCtrl::RefreshChecks() {
  if (selection_ == nullptr) {
    return;
  }
  const std::vector<ItemSelection::Row>& rows = selection_->Rows();
  std::vector<size_t> changed;
  for (size_t row = 0; row < rows.size() && row < items_.size(); ++row) {
    if (items_[row] != nullptr && shownStates_[row] != rows[row].state) changed.push_back(row);
  }
  const DrawingHeldOff heldOff(window_, changed.size() > kManyChanges);
  for (const size_t row : changed) {
    TVITEMW item{};
    item.mask = TVIF_STATE;
    item.hItem = items_[row];
    item.stateMask = TVIS_STATEIMAGEMASK;
    item.state = INDEXTOSTATEIMAGEMASK(rows[row].state);
    if (Send(TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item)) != FALSE) shownStates_[row] = rows[row].state;
  }
}

void CMyTreeCtrl::ClickBox(int row) {
  if (selection_ == nullptr || row < 0) {
    return;
  }
  const std::vector<int> before = selection_->States();
  selection_->Click(row);
  if (confirmTicks) {
    const std::vector<unsigned> ticked = selection_->TickedSince(before);
    if (!ticked.empty() && !confirmTicks(ticked)) selection_->RestoreStates(before);
  }
  RefreshChecks();
  if (onChecksChanged) {
    onChecksChanged();
  }
}

int CMyTreeCtrl::RowOfItem(HTREEITEM item) const {
  if (item == nullptr) {
    return -1;
  }
  TVITEMW query{};
  query.mask = TVIF_PARAM;
  query.hItem = item;
  return Send(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&query)) != FALSE ? static_cast<int>(query.lParam) : -1;
}

void CMyTreeCtrl::SetScanState(int row, int state) {
  // The row and every row above it: a category is busy while any of its items is.
  for (int current = row; current >= 0 && selection_ != nullptr;
       current = selection_->Rows()[static_cast<size_t>(current)].parent) {
    scanStates_[static_cast<size_t>(current)] = state;
  }
}

void CMyTreeCtrl::ResetScanStates() {
  (void)StopTimer(kAnimationTimer);  // none may be running
  animating_ = false;
  scanStates_.assign(scanStates_.size(), kUntouched);
  currentRow_ = -1;
  (void)Invalidate();
}

void CMyTreeCtrl::BeginItem(unsigned id) {
  const int row = selection_ != nullptr ? selection_->RowOf(id) : -1;
  if (row < 0) {
    return;
  }
  currentRow_ = row;
  SetScanState(row, kInProgress);
  if (!animating_) animating_ = StartTimer(kAnimationTimer, kAnimationPeriodMs);  // without it the mark stands still
  (void)Invalidate();
}

void CMyTreeCtrl::EndItem() {
  if (currentRow_ >= 0) {
    SetScanState(currentRow_, kDone);
  }
  currentRow_ = -1;
  (void)Invalidate();
}

int CMyTreeCtrl::ScanStateOf(unsigned id) const {
  const int row = selection_ != nullptr ? selection_->RowOf(id) : -1;
  return row < 0 ? kUntouched : scanStates_[static_cast<size_t>(row)];
}

bool CMyTreeCtrl::LineOf(HTREEITEM item, RECT& line) const {
  // The message takes the item's handle, itself, in the rectangle it fills.
  const auto handle = reinterpret_cast<UINT_PTR>(item);
  static_assert(sizeof line >= sizeof handle);
  std::memcpy(&line, &handle, sizeof handle);
  return item != nullptr && Send(TVM_GETITEMRECT, FALSE, reinterpret_cast<LPARAM>(&line)) != FALSE;
}

RECT CMyTreeCtrl::StatusCell(const RECT& line) const {
  // Room for the vertical scroll bar is kept even while it is not shown, so the marks do
  // not jump when it comes.
  RECT client = ClientRect();
  const bool barShown = (::GetWindowLongW(window_, GWL_STYLE) & WS_VSCROLL) != 0;
  const int width = client.right - (barShown ? 0 : ::GetSystemMetrics(SM_CXVSCROLL));
  return RECT{width - kStatusCellWidth, line.top, width, line.bottom};
}

void CMyTreeCtrl::DrawRowExtras(HDC dc, int row, const RECT& line) const {
  if (row < 0 || static_cast<size_t>(row) >= scanStates_.size() || selection_ == nullptr) {
    return;
  }
  const RECT status = StatusCell(line);
  const int state = scanStates_[static_cast<size_t>(row)];
  const CMyObject* node = nodes_[static_cast<size_t>(row)];
  if (state != kUntouched && node != nullptr) {
    // Items' counts end left of the status cell; an application's one indent further
    // left, a category's two.
    const int indent = static_cast<int>(Send(TVM_GETINDENT));
    const int level = selection_->Rows()[static_cast<size_t>(row)].level;
    const int right = status.left - kRightMargin - (CMyObject::kItem - level) * indent;
    RECT label{right - countLabel_.cx, line.top, right, line.bottom};
    // The tree repaints only its rows' texts: an older count would show through.
    (void)::FillRect(dc, &label, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
    const std::wstring count = run_ == nullptr ? L"0"
                                               : std::to_wstring(run_->FoundCount(*node)) + L" (" +
                                                     FormatByteSize(run_->FoundBytes(*node)) + L")";
    (void)::SetBkMode(dc, TRANSPARENT);
    (void)::SetTextColor(dc, kCountColour);
    (void)::DrawTextW(dc, count.c_str(), static_cast<int>(count.size()), &label,
                      DT_RIGHT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
  }
  const int top = status.top + (status.bottom - status.top - kMarkSize) / 2;
  const int left = status.left + (status.right - status.left - kMarkSize) / 2;
  const controls::CBitmapResource* mark = nullptr;
  int frame = 0;
  if (row == currentRow_) {
    mark = &busyStrip_;
    frame = frame_;
  } else if (state == kDone && selection_->Rows()[static_cast<size_t>(row)].level == CMyObject::kItem) {
    mark = &doneMark_;
  }
  if (mark == nullptr || !*mark) {
    return;
  }
  const controls::MemoryDC source(dc);
  const controls::SelectedObject picture(source.Get(), mark->Handle());
  if (!picture.Selected()) {
    return;
  }
  (void)::TransparentBlt(dc, left, top, kMarkSize, kMarkSize, source.Get(), frame * kMarkSize, 0, kMarkSize, kMarkSize,
                         kMarkBackground);  // a mark not drawn is only a mark
}

LRESULT CMyTreeCtrl::CustomDraw(NMTVCUSTOMDRAW& draw) const {
  switch (draw.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      return CDRF_NOTIFYPOSTPAINT;
    case CDDS_ITEMPOSTPAINT: {
      RECT line{};
      if (!LineOf(reinterpret_cast<HTREEITEM>(draw.nmcd.dwItemSpec), line)) {
        return CDRF_DODEFAULT;
      }
      DrawRowExtras(draw.nmcd.hdc, static_cast<int>(draw.nmcd.lItemlParam), line);
      return CDRF_DODEFAULT;
    }
    default:
      return CDRF_DODEFAULT;
  }
}

bool CMyTreeCtrl::OnReflected(UINT message, WPARAM, LPARAM lParam, LRESULT& result) {
  if (message != WM_NOTIFY) {
    return false;
  }
  NMHDR* header = reinterpret_cast<NMHDR*>(lParam);
  if (header->code == TVN_ITEMEXPANDINGW || header->code == TVN_ITEMEXPANDINGA) {
    const auto& change = *reinterpret_cast<const NMTREEVIEWW*>(lParam);  // the item is the same in both kinds
    if ((change.action & TVE_EXPAND) != 0) MakeChildren(RowOfItem(change.itemNew.hItem));
    result = FALSE;  // the row opens
    return true;
  }
  if (header->code != NM_CUSTOMDRAW) {
    return false;
  }
  result = CustomDraw(*reinterpret_cast<NMTVCUSTOMDRAW*>(lParam));
  return true;
}

LRESULT CMyTreeCtrl::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_LBUTTONDOWN: {
      TVHITTESTINFO hit{};
      hit.pt = POINT{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
      const auto item = reinterpret_cast<HTREEITEM>(Send(TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
      if (item != nullptr && (hit.flags & TVHT_ONITEMSTATEICON) != 0) {
        ClickBox(RowOfItem(item));
      }
      break;  // the press goes on: it selects the row as any press does
    }
    case WM_KEYDOWN:
      if (wParam == VK_SPACE) {
        ClickBox(RowOfItem(reinterpret_cast<HTREEITEM>(Send(TVM_GETNEXTITEM, TVGN_CARET))));
        return 0;
      }
      break;
    case WM_TIMER:
      if (wParam == kAnimationTimer) {
        if (currentRow_ < 0) {
          (void)StopTimer(kAnimationTimer);  // it is running: this is its tick
          animating_ = false;
          return 0;
        }
        frame_ = (frame_ + 1) % kBusyFrames;
        RECT line{};
        if (LineOf(MadeItem(currentRow_), line)) {
          const RECT status = StatusCell(line);
          (void)::InvalidateRect(window_, &status, TRUE);  // a row out of sight has nothing to repaint
        }
        return 0;
      }
      break;
    default:
      break;
  }
  return Default(message, wParam, lParam);
}

}  // namespace lumenor
