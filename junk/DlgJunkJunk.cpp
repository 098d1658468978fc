#include "junk/DlgJunkJunk.h"

#include "base/ResourceString.h"
#include "controls/Layout.h"
#include "controls/Paint.h"
#include "junk/JunkRemoval.h"
#include "junk/JunkState.h"
#include "junk/JunkTexts.h"
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

// Rows reach the list at most this many at a time, and at least this often while the
// walk finds any: few enough wake-ups for the window, soon enough to watch.
constexpr size_t kRowsPerBatch = 2000;
constexpr ULONGLONG kBatchIntervalMs = 100;

// Posted by the worker as its last act. A plain message needs no memory, so the end of a
// walk always reaches a window that is still there, after every row sent before it.
constexpr UINT kWalkEndedMessage = controls::kRunUiTasksMessage + 1;

}  // namespace

// Runs on the worker: gathers found files into rows and hands them to the page's thread.
class CDlgJunkJunk::RowBatcher {
 public:
  explicit RowBatcher(CDlgJunkJunk& page) : page_(page), lastSent_(::GetTickCount64()) {}

  void Add(JunkFile&& file) {
    rows_.push_back(controls::ListRow{{std::move(file.name), std::move(file.folder)}, 0});
    sizes_.push_back(file.bytes);
    if (rows_.size() >= kRowsPerBatch || ::GetTickCount64() - lastSent_ >= kBatchIntervalMs) {
      Send();
    }
  }

  void Send() {
    lastSent_ = ::GetTickCount64();
    if (rows_.empty()) {
      return;
    }
    // Refused only once the window is gone; then nobody is left to show them.
    (void)page_.tasks_.Post([page = &page_, rows = std::move(rows_), sizes = std::move(sizes_)]() mutable {
      page->AddRows(std::move(rows), sizes);
    });
    rows_.clear();
    sizes_.clear();
  }

 private:
  CDlgJunkJunk& page_;
  std::vector<controls::ListRow> rows_;
  std::vector<uint64_t> sizes_;
  ULONGLONG lastSent_;
};

CDlgJunkJunk::CDlgJunkJunk() : CDialog(IDD_JUNK_RESULTS) {
  runDialog_ = [](CDlgScanResult& dialog, HWND owner) {
    (void)dialog.Run(owner);  // whatever ends it, nothing follows but emptying the list
  };
}

CDlgJunkJunk::~CDlgJunkJunk() {
  StopScan();
  tasks_.Unbind();
  JoinWorker();
  if (scanning_) {
    JunkSearchRunning = 0;  // the walk's end never reached the window
  }
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
  for (const auto& spec : buttons) {
    if (spec.button->Attach(window_, spec.id)) {
      spec.button->SetPictures(spec.pictures[0], spec.pictures[1], spec.pictures[2], spec.pictures[3]);
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
  if (scanning_ || window_ == nullptr) {
    return false;
  }
  JoinWorker();
  // A fresh signal for each walk, made before it starts: a stop meant for the last one
  // never ends this one, and a stop pressed at once is never lost.
  walkStop_ = std::make_shared<StopSignal>();
  ClearResults();
  scanning_ = true;
  JunkSearchRunning = 1;
  ShowScanning(true);
  const JunkScope scope{folder.empty(), folder};
  const HWND page = window_;
  try {
    worker_ = std::thread([this, page, scope, stop = walkStop_, masks = std::move(masks)] {
      try {
        RowBatcher batch(*this);
        WalkJunkScope(scope, *paths_, masks, StopToken(stop.get()),
                      [&batch](JunkFile&& file) { batch.Add(std::move(file)); });
        batch.Send();
      } catch (...) {
        // Out of memory: the walk ends with what it has handed over.
      }
      // Refused once the window is gone; the page's destructor then clears the busy flag.
      (void)::PostMessageW(page, kWalkEndedMessage, 0, 0);
    });
  } catch (...) {
    ScanEnded();  // no thread to run the walk
    return false;
  }
  return true;
}

void CDlgJunkJunk::StopScan() {
  if (walkStop_) walkStop_->Request();
}

void CDlgJunkJunk::JoinWorker() {
  if (worker_.joinable()) {
    worker_.join();
  }
}

void CDlgJunkJunk::AddRows(std::vector<controls::ListRow> rows, const std::vector<uint64_t>& sizes) {
  for (const uint64_t bytes : sizes) {
    totalBytes_ += bytes;
  }
  rowBytes_.insert(rowBytes_.end(), sizes.begin(), sizes.end());
  (void)results_.AppendRows(std::move(rows));  // the store has them even if the view missed the count
  ShowSummary();
}

void CDlgJunkJunk::ScanEnded() {
  JoinWorker();  // it has posted the message and is returning
  scanning_ = false;
  ShowScanning(false);
  JunkSearchRunning = 0;
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
  rowBytes_.clear();
  totalBytes_ = 0;
  ShowSummary();
}

void CDlgJunkJunk::ShowSummary() const {
  const std::wstring text =
      FillIn(LoadResourceString(IDS_JUNK_SUMMARY), {std::to_wstring(results_.RowCount()), MegabytesText(totalBytes_)});
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
  if (scanning_ || row < 0 || row >= results_.RowCount()) {
    return;
  }
  if (!DeleteJunkFile(JunkPath(results_.RowText(row, 1), results_.RowText(row, 0)))) {
    (void)messageBox_(window_, LoadResourceString(IDS_JUNK_DELETE_FAILED), L"", MB_OK);
    return;
  }
  (void)results_.DeleteRow(row);
  totalBytes_ -= rowBytes_[static_cast<size_t>(row)];
  rowBytes_.erase(rowBytes_.begin() + row);
  ShowSummary();
}

void CDlgJunkJunk::DeleteAll() {
  const int count = results_.RowCount();
  if (scanning_ || count == 0) {
    return;
  }
  const std::wstring question = LoadResourceString(IDS_JUNK_CONFIRM_DELETE_ALL);
  if (messageBox_(window_, FillIn(question, {std::to_wstring(count), MegabytesText(totalBytes_)}),
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
  if (message == kWalkEndedMessage) {
    ScanEnded();
    result = 0;
    return true;
  }
  if (controls::ColourWhitePage(message, wParam, result)) {
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
