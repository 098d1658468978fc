#include "scan/DlgScan.h"

#include "base/ResourceString.h"
#include "catalogue/Catalogue.h"
#include "res/resource.h"

#include <commctrl.h>

namespace lumenor {

namespace {

constexpr int kGifBusy = 206;

struct ButtonSpec {
  size_t slot;
  int command;
  int pictures[4];
  int left, top, width, height;
};
// Scan, delete-row and erase stacked right of the tree; the three selection buttons in a
// row over it.
constexpr ButtonSpec kButtons[] = {
    {0, IDC_SCAN_START, {207, 210, 209, 180}, 483, 10, 104, 27},
    {1, IDC_SCAN_DELETE_ROW, {214, 213, 212, 211}, 483, 43, 104, 27},
    {2, IDC_SCAN_ERASE, {215, 218, 217, 216}, 483, 76, 104, 27},
    {4, IDC_SCAN_SELECT_ALL, {327, 326, 325, 325}, 10, 10, 149, 21},
    {5, IDC_SCAN_SELECT_NONE, {324, 332, 331, 331}, 159, 10, 149, 21},
    {6, IDC_SCAN_SELECT_DEFAULT, {330, 329, 328, 328}, 308, 10, 149, 21},
};

}  // namespace

CDlgScan::CDlgScan() : CDialog(IDD_SCAN) {}

void CDlgScan::StartOneClickErase() { ++oneClickRequests_; }

bool CDlgScan::OnInit() {
  (void)animation_.Attach(window_, IDC_SCAN_ANIMATION);
  (void)animation_.Load(kGifBusy);  // without the picture the area stays blank
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
  for (const ButtonSpec& spec : kButtons) {
    controls::CNButtonEx& button = buttons_[spec.slot];
    const RECT rect{spec.left, spec.top, spec.left + spec.width, spec.top + spec.height};
    if (button.CreateButton(window_, spec.command, rect)) {
      button.SetPictures(spec.pictures[0], spec.pictures[1], spec.pictures[2], spec.pictures[3]);
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
  const int width = client.right;
  const int height = client.bottom;
  if (tree_ != nullptr) {
    (void)::MoveWindow(tree_, 10, 30, 457 - 10, height / 2 - 30, TRUE);
  }
  (void)results_.Move(RECT{10, height / 2 + 4, width - 10, height - 10});
  (void)animation_.Move(RECT{467, 110, width - 10, height / 2});
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
