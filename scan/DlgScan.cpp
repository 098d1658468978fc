#include "scan/DlgScan.h"

#include "base/ResourceString.h"
#include "catalogue/Catalogue.h"
#include "controls/Layout.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

#include <commctrl.h>

namespace lumenor {

namespace {

// The page's skinned layout, in pixels: 10 from the page's edges; the three selection
// buttons in a row over the tree; the action buttons stacked right of it, in a column as
// wide as the widest look of the scan button (the stop look); the results list under
// the tree over the page's width; the animation below the action buttons.
constexpr int kMargin = 10;
constexpr SIZE kSelectionButton{149, 21};
constexpr SIZE kActionButton{104, 27};
constexpr int kActionColumnWidth = 128;
constexpr int kActionStep = 33;     // from one action button's top to the next
constexpr int kTreeToActions = 26;  // between the tree and the action column
constexpr int kTreeToResults = 4;

struct ButtonSpec {
  size_t slot;
  int command;
  int pictures[4];
};
// Scan, delete-row and erase, then select all, none and default.
constexpr ButtonSpec kActionButtons[] = {
    {0, IDC_SCAN_START, {IDB_SCAN_NORMAL, IDB_SCAN_HOT, IDB_SCAN_PRESSED, IDB_SCAN_DISABLED}},
    {1,
     IDC_SCAN_DELETE_ROW,
     {IDB_DELETE_ROW_NORMAL, IDB_DELETE_ROW_HOT, IDB_DELETE_ROW_PRESSED, IDB_DELETE_ROW_DISABLED}},
    {2, IDC_SCAN_ERASE, {IDB_ERASE_NORMAL, IDB_ERASE_HOT, IDB_ERASE_PRESSED, IDB_ERASE_DISABLED}},
};
constexpr ButtonSpec kSelectionButtons[] = {
    {4,
     IDC_SCAN_SELECT_ALL,
     {IDB_SELECT_ALL_NORMAL, IDB_SELECT_ALL_HOT, IDB_SELECT_ALL_PRESSED, IDB_SELECT_ALL_PRESSED}},
    {5,
     IDC_SCAN_SELECT_NONE,
     {IDB_SELECT_NONE_NORMAL, IDB_SELECT_NONE_HOT, IDB_SELECT_NONE_PRESSED, IDB_SELECT_NONE_PRESSED}},
    {6,
     IDC_SCAN_SELECT_DEFAULT,
     {IDB_SELECT_DEFAULT_NORMAL, IDB_SELECT_DEFAULT_HOT, IDB_SELECT_DEFAULT_PRESSED, IDB_SELECT_DEFAULT_PRESSED}},
};

RECT Sized(int left, int top, SIZE size) { return RECT{left, top, left + size.cx, top + size.cy}; }

}  // namespace

CDlgScan::CDlgScan() : CDialog(IDD_SCAN) {}

void CDlgScan::StartOneClickErase() { ++oneClickRequests_; }

bool CDlgScan::OnInit() {
  (void)animation_.Attach(window_, IDC_SCAN_ANIMATION);
  (void)animation_.Load(IDR_GIF_BUSY);  // without the picture the area stays blank
  animation_.Start();

  tree_ = ::CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"",
                            WS_CHILD | WS_VISIBLE | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT |
                                TVS_CHECKBOXES | TVS_FULLROWSELECT,
                            0, 0, 0, 0, window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_SCAN_TREE)),
                            ::GetModuleHandleW(nullptr), nullptr);
  if (tree_ != nullptr) {
    (void)::SendMessageW(tree_, WM_SETFONT, Send(WM_GETFONT), FALSE);
  }
  (void)results_.CreateList(window_, IDC_SCAN_RESULTS, RECT{});
  (void)results_.AddColumn(LoadResourceString(IDS_SCAN_COLUMN_NAME), 200);
  (void)results_.AddColumn(LoadResourceString(IDS_SCAN_COLUMN_VALUE), 100);
  (void)results_.AddColumn(LoadResourceString(IDS_SCAN_COLUMN_ITEM), 240);
  MakeButtons();
  FillTree();
  LayOut();
  animation_.Stop();
  return true;
}

void CDlgScan::MakeButtons() {
  // Made at their pictures' size; LayOut places them.
  for (const auto* specs : {&kActionButtons, &kSelectionButtons}) {
    for (const ButtonSpec& spec : *specs) {
      controls::CNButtonEx& button = buttons_[spec.slot];
      const SIZE size = specs == &kActionButtons ? kActionButton : kSelectionButton;
      if (button.CreateButton(window_, spec.command, Sized(0, 0, size))) {
        button.SetPictures(spec.pictures[0], spec.pictures[1], spec.pictures[2], spec.pictures[3]);
      }
    }
  }
}

void CDlgScan::FillTree() {
  if (tree_ == nullptr) {
    return;
  }
  HTREEITEM parents[3] = {TVI_ROOT, TVI_ROOT, TVI_ROOT};
  ForEachNode(CatalogueRoot(), [&](CMyObject& node) {
    const int level = node.Level();
    if (level < 0 || level > 2) {
      return;
    }
    TVINSERTSTRUCTW insert{};
    insert.hParent = parents[level];
    insert.hInsertAfter = TVI_LAST;
    insert.item.mask = TVIF_TEXT;
    insert.item.pszText = const_cast<wchar_t*>(node.Name().c_str());
    auto* inserted =
        reinterpret_cast<HTREEITEM>(::SendMessageW(tree_, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
    if (level < 2) {
      parents[level + 1] = inserted != nullptr ? inserted : TVI_ROOT;
    }
  });
}

void CDlgScan::LayOut() {
  const RECT client = ClientRect();
  int left = client.left + kMargin;
  for (const ButtonSpec& spec : kSelectionButtons) {
    (void)buttons_[spec.slot].Move(Sized(left, client.top + kMargin, kSelectionButton));
    left += kSelectionButton.cx;
  }
  const int actionLeft = client.right - kMargin - kActionColumnWidth;
  int actionTop = client.top + kMargin;
  for (const ButtonSpec& spec : kActionButtons) {
    (void)buttons_[spec.slot].Move(Sized(actionLeft, actionTop, kActionButton));
    actionTop += kActionStep;
  }
  const RECT tree{client.left + kMargin, client.top + kMargin + kSelectionButton.cy, actionLeft - kTreeToActions,
                  client.bottom / 2};
  if (tree_ != nullptr) {
    (void)::MoveWindow(tree_, tree.left, tree.top, controls::Width(tree), controls::Height(tree), TRUE);
  }
  (void)results_.Move(
      RECT{client.left + kMargin, tree.bottom + kTreeToResults, client.right - kMargin, client.bottom - kMargin});
  // Where a fourth action button would go, in what is left beside the tree; the picture
  // is drawn centred in it.
  (void)animation_.Move(RECT{tree.right + kMargin, actionTop, client.right - kMargin, tree.bottom});
}

bool CDlgScan::OnEraseBackground(HDC dc) {
  const RECT client = ClientRect();
  return ::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH))) != 0;
}

bool CDlgScan::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (message == WM_CTLCOLORDLG || (message == WM_CTLCOLORSTATIC && reinterpret_cast<HWND>(lParam) == window_)) {
    (void)::SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
    result = reinterpret_cast<LRESULT>(::GetStockObject(NULL_BRUSH));
    return true;
  }
  if (message == WM_CTLCOLORSTATIC) {
    result = reinterpret_cast<LRESULT>(::GetStockObject(WHITE_BRUSH));
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
