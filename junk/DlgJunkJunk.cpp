#include "junk/DlgJunkJunk.h"

#include "base/ResourceString.h"
#include "base/Texts.h"
#include "controls/Layout.h"
#include "controls/Paint.h"
#include "junk/JunkRemoval.h"
#include "junk/JunkWalk.h"
#include "res/artwork_ids.h"
#include "res/resource.h"
#include "scan/DlgScanResult.h"

#include <utility>

namespace lumenor {

namespace {

// The page's layout, in pixels: 10 from the page's edges; a column on the right as wide
// as the busy animation, with the three buttons at its top and the animation under them;
// the list over the rest, with the line of totals under it.
constexpr int kMargin = 10;
constexpr int kColumnWidth = 128;
constexpr int kButtonStep = 33;  // from one button's top to the next
constexpr int kSummaryGap = 4;

constexpr int kSizeDecimals = 2;  // "0.00 MB"

}  // namespace

CDlgJunkJunk::CDlgJunkJunk() : CDialog(IDD_JUNK_RESULTS) {
  runDialog_ = [](CDlgScanResult& dialog, HWND owner) {
    (void)dialog.Run(owner);  // whatever ends it, nothing follows but emptying the list
  };
}

bool CDlgJunkJunk::OnInit() {
  if (results_.Attach(window_, IDC_JUNK_RESULTS)) {
    (void)results_.AddColumn(LoadResourceString(IDS_JUNK_COLUMN_FILE), 100);
    (void)results_.AddColumn(LoadResourceString(IDS_JUNK_COLUMN_PATH), 350);
  }
  const struct {
    controls::CNButtonEx* button;
    int id;
    int pictures[4];
  } buttons[] = {
      {&stop_, IDC_JUNK_STOP, {IDB_JUNK_STOP_NORMAL, IDB_JUNK_STOP_HOT, IDB_JUNK_STOP_PRESSED, IDB_JUNK_STOP_DISABLED}},
      {&delete_,
       IDC_JUNK_DELETE,
       {IDB_JUNK_DELETE_NORMAL, IDB_JUNK_DELETE_HOT, IDB_JUNK_DELETE_PRESSED, IDB_JUNK_DELETE_DISABLED}},
      {&deleteAll_,
       IDC_JUNK_DELETE_ALL,
       {IDB_JUNK_DELETE_ALL_NORMAL, IDB_JUNK_DELETE_ALL_HOT, IDB_JUNK_DELETE_ALL_PRESSED,
        IDB_JUNK_DELETE_ALL_DISABLED}},
  };
  for (const auto& wanted : buttons) {
    if (wanted.button->Attach(window_, wanted.id)) {
      wanted.button->SetPictures(wanted.pictures[0], wanted.pictures[1], wanted.pictures[2], wanted.pictures[3]);
    }
  }
  if (animation_.Attach(window_, IDC_JUNK_ANIMATION)) {
    (void)animation_.Load(IDR_GIF_BUSY);  // without the picture the area stays blank
  }
  tasks_.Bind(window_);
  LayOut();
  ShowScanning(false);
  ShowSummary();
  return true;
}

void CDlgJunkJunk::LayOut() {
  const RECT client = ClientRect();
  const int columnLeft = client.right - kMargin - kColumnWidth;
  int buttonTop = client.top + kMargin;
  for (controls::CNButtonEx* button : {&stop_, &delete_, &deleteAll_}) {
    const SIZE picture = button->PictureSize();
    if (picture.cx > 0) {
      (void)button->Move(columnLeft + (kColumnWidth - picture.cx) / 2, buttonTop, picture.cx, picture.cy);
    }
    buttonTop += kButtonStep;
  }
  (void)animation_.Move(RECT{columnLeft, buttonTop, client.right - kMargin, client.bottom - kMargin});

  const int summaryHeight = controls::DialogUnits(window_, 0, 10).cy;
  const RECT summary{client.left + kMargin, client.bottom - kMargin - summaryHeight, columnLeft - kMargin,
                     client.bottom - kMargin};
  (void)controls::CWindow(Item(IDC_JUNK_SUMMARY)).Move(summary);
  (void)results_.Move(
      RECT{client.left + kMargin, client.top + kMargin, columnLeft - kMargin, summary.top - kSummaryGap});
}

bool CDlgJunkJunk::StartScan(const std::wstring& folder, std::vector<std::wstring> masks) {
  if (Scanning() || window_ == nullptr) {
    return false;
  }
  ClearResults();
  ShowScanning(true);
  const JunkScope scope{folder.empty(), folder};
  return worker_.Start(
      [this, scope, masks = std::move(masks)](const StopToken& stop) {
        WalkJunkScope(scope, *paths_, masks, stop, [this](JunkFile&& file) {
          rows_.Add(controls::ListRow{{std::move(file.name), std::move(file.folder)}, 0, file.bytes});
        });
        rows_.HandOver();
      },
      [this](controls::RunEnd) { ScanEnded(); });
}

void CDlgJunkJunk::StopScan() { worker_.RequestStop(); }

void CDlgJunkJunk::RowsAppended(std::span<const controls::ListRow> rows) {
  for (const controls::ListRow& row : rows) {
    totalBytes_ += row.value;
  }
  ShowSummary();
}

void CDlgJunkJunk::ScanEnded() {
  rows_.AppendAll();  // the count and size under the list are complete at the end
  ShowScanning(false);
}

void CDlgJunkJunk::ShowScanning(bool scanning) {
  stop_.Enable(scanning);
  delete_.Enable(!scanning);
  deleteAll_.Enable(!scanning);
  if (scanning) {
    animation_.Start();
  } else {
    animation_.Stop();
  }
}

void CDlgJunkJunk::ClearResults() {
  (void)results_.DeleteAll();
  totalBytes_ = 0;
  ShowSummary();
}

void CDlgJunkJunk::ShowSummary() const {
  const std::wstring text = FillIn(LoadResourceString(IDS_JUNK_SUMMARY),
                                   {std::to_wstring(results_.RowCount()), MegabytesText(totalBytes_, kSizeDecimals)});
  (void)controls::CWindow(Item(IDC_JUNK_SUMMARY)).SetText(text);  // the old line stays if this fails
}

bool CDlgJunkJunk::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDC_JUNK_STOP:
      StopScan();
      return true;
    case IDC_JUNK_DELETE:
      DeleteSelected();
      return true;
    case IDC_JUNK_DELETE_ALL:
      DeleteAll();
      return true;
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

void CDlgJunkJunk::DeleteSelected() {
  const int row = results_.SelectedRow();
  if (Scanning() || row < 0 || row >= results_.RowCount()) {
    return;
  }
  if (!DeleteJunkFile(JunkPath(results_.RowText(row, 1), results_.RowText(row, 0)))) {
    (void)messageBox_(window_, LoadResourceString(IDS_JUNK_DELETE_FAILED), L"", MB_OK);
    return;
  }
  totalBytes_ -= results_.RowValue(row);
  (void)results_.DeleteRow(row);
  ShowSummary();
}

void CDlgJunkJunk::DeleteAll() {
  const int count = results_.RowCount();
  if (Scanning() || count == 0) {
    return;
  }
  const std::wstring question = LoadResourceString(IDS_JUNK_CONFIRM_DELETE_ALL);
  if (messageBox_(window_, FillIn(question, {std::to_wstring(count), MegabytesText(totalBytes_, kSizeDecimals)}),
                  LoadResourceString(IDS_PRODUCT_NAME), MB_YESNO | MB_ICONQUESTION) != IDYES) {
    return;
  }
  std::vector<std::wstring> paths;
  paths.reserve(static_cast<size_t>(count));
  for (int row = 0; row < count; ++row) {
    paths.push_back(JunkPath(results_.RowText(row, 1), results_.RowText(row, 0)));
  }
  CDlgScanResult dialog(count, [paths = std::move(paths)](EraseTally& tally) { DeleteJunkFiles(paths, tally); });
  runDialog_(dialog, window_);
  // Whatever went, the list is emptied: files that stayed are no longer listed.
  ClearResults();
}

bool CDlgJunkJunk::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (tasks_.HandleMessage(message, result)) {
    return true;
  }
  if (controls::ColourWhitePage(message, wParam, result)) {
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
