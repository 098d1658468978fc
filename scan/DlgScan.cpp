#include "scan/DlgScan.h"

#include "base/ResourceString.h"
#include "base/Texts.h"
#include "catalogue/Catalogue.h"
#include "controls/Layout.h"
#include "controls/ListFeed.h"
#include "engine/TraceEngine.h"
#include "res/artwork_ids.h"
#include "res/resource.h"
#include "scan/DlgCookiesToKeep.h"
#include "scan/DlgScanResult.h"
#include "scan/ItemWarnings.h"
#include "settings/Settings.h"

#include <commctrl.h>

#include <algorithm>

namespace lumenor {

namespace {

// The page's skinned layout, in pixels: 10 from the page's edges; the three selection
// buttons in a row over the tree; the action buttons stacked right of it, in a column as
// wide as the widest look of the scan button (the stop look); the results list under
// the tree over the page's width; the animation below the action buttons.
constexpr int kMargin = 10;
constexpr SIZE kSelectionButton{149, 21};
constexpr SIZE kActionButton{104, 27};
constexpr SIZE kScanButtonLater{128, 29};  // the stop look, and the scan look after a first scan
constexpr int kActionColumnWidth = 128;
constexpr int kActionStep = 33;     // from one action button's top to the next
constexpr int kTreeToActions = 26;  // between the tree and the action column
constexpr int kTreeToResults = 4;
constexpr int kSummaryHeight = 16;  // the line under the results: one line of the page's font
// The keep-list's button, right of that line, in dialog units: it holds text.
constexpr SIZE kCookiesButtonUnits{76, 14};

// The tag of a row that tells of a skipped location rather than a trace.
constexpr LPARAM kSkippedRowTag = 2;
constexpr LPARAM kRegistryRowTag = 1;

constexpr size_t kScanButtonSlot = 0;
constexpr size_t kDeleteRowSlot = 1;
constexpr size_t kEraseSlot = 2;

struct ButtonSpec {
  size_t slot;
  int command;
  int pictures[4];
};
// Scan, delete-row and erase, then select all, none and default.
constexpr ButtonSpec kActionButtons[] = {
    {kScanButtonSlot, IDC_SCAN_START, {IDB_SCAN_NORMAL, IDB_SCAN_HOT, IDB_SCAN_PRESSED, IDB_SCAN_DISABLED}},
    {kDeleteRowSlot,
     IDC_SCAN_DELETE_ROW,
     {IDB_DELETE_ROW_NORMAL, IDB_DELETE_ROW_HOT, IDB_DELETE_ROW_PRESSED, IDB_DELETE_ROW_DISABLED}},
    {kEraseSlot, IDC_SCAN_ERASE, {IDB_ERASE_NORMAL, IDB_ERASE_HOT, IDB_ERASE_PRESSED, IDB_ERASE_DISABLED}},
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

INT_PTR RunEraseProgressDialog(HWND owner, int total, std::function<void(EraseTally&)> erase) {
  CDlgScanResult dialog(total, std::move(erase));
  return dialog.Run(owner);
}

void RunCookiesToKeepDialog(HWND owner, const CIniFileRW& settings, std::vector<std::wstring> foundHosts) {
  (void)ChooseCookiesToKeep(owner, settings, std::move(foundHosts));  // the next run reads what it wrote
}

}  // namespace

// Runs on the worker: each trace becomes a row, and rows reach the page in batches; the
// page's tree hears which item is being scanned. Nothing here waits for the page.
class CDlgScan::PageReports final : public RunReports {
 public:
  explicit PageReports(CDlgScan& page)
      : page_(page), rows_(page.tasks_, page.results_, [&page](std::span<const controls::ListRow> rows) {
          for (const controls::ListRow& row : rows) page.foundCount_ += row.tag == kSkippedRowTag ? 0 : 1;
          page.tree_.RefreshCounts();
          page.ShowSummary();
        }) {}

  void StageReached(RunStage stage) override {
    rows_.HandOver();
    Post([&page = page_, stage] { page.OnStage(stage); });
  }
  void ItemStarted(const CMyObject& item) override {
    const unsigned id = item.Id();
    Post([&page = page_, id] { page.tree_.BeginItem(id); });
  }
  void ItemFinished(const CMyObject&) override {
    rows_.HandOver();
    Post([&page = page_] { page.tree_.EndItem(); });
  }
  void TraceFound(const FoundTrace& trace) override {
    rows_.Add(controls::ListRow{{trace.item->Name(), trace.name, trace.location},
                                trace.isRegistry ? kRegistryRowTag : LPARAM{0}});
  }
  void LocationSkipped(const SkippedLocation& skipped) override {
    std::wstring text = FillIn(LoadResourceString(IDS_SCAN_SKIPPED), {SkipReason(skipped)});
    rows_.Add(controls::ListRow{{skipped.item->Name(), std::move(text), skipped.location}, kSkippedRowTag});
  }
  // The one-click erase runs without the progress dialog: nobody counts its deletions.
  void Erased(int, uint64_t) override {}
  void EraseFailed(const std::wstring&) override {}

 private:
  void Post(controls::UiTaskQueue::Task task) {
    (void)page_.tasks_.Post(std::move(task));  // refused only once the page's window is gone
  }

  CDlgScan& page_;
  controls::ListFeed rows_;
};

CDlgScan::CDlgScan()
    : CDialog(IDD_SCAN),
      settings_(kSettingsFileName),
      reports_(std::make_unique<PageReports>(*this)),
      runEraseDialog_(RunEraseProgressDialog),
      runCookiesDialog_(RunCookiesToKeepDialog) {}

// The worker goes first: a scan stops after its current item; an erase runs to its end.
CDlgScan::~CDlgScan() = default;

bool CDlgScan::OnInit() {
  (void)animation_.Attach(window_, IDC_SCAN_ANIMATION);
  (void)animation_.Load(IDR_GIF_BUSY);  // without the picture the area stays blank
  animation_.Start();

  (void)tree_.CreateTree(window_, IDC_SCAN_TREE, RECT{}, reinterpret_cast<HFONT>(Send(WM_GETFONT)));
  (void)results_.CreateList(window_, IDC_SCAN_RESULTS, RECT{});
  (void)results_.AddColumn(LoadResourceString(IDS_SCAN_COLUMN_NAME), 200);
  (void)results_.AddColumn(LoadResourceString(IDS_SCAN_COLUMN_VALUE), 100);
  (void)results_.AddColumn(LoadResourceString(IDS_SCAN_COLUMN_ITEM), 240);
  MakeButtons();
  FillTree();
  selection_.RestoreScanSelection(settings_);
  tree_.RefreshChecks();
  LayOut();
  ShowSummary();
  animation_.Stop();
  tasks_.Bind(window_);
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
  selection_ = ItemSelection::FromCatalogue(CatalogueRoot());
  const rules::RuleBook* rules = ProcessCatalogue().Rules();
  if (rules != nullptr) selection_.SetRuleDefaults(rules->Defaults());
  std::vector<const CMyObject*> nodes;
  ForEachNode(CatalogueRoot(), [&](const CMyObject& node) { nodes.push_back(&node); });
  tree_.Fill(selection_, std::move(nodes));
  tree_.confirmTicks = [this, rules](const std::vector<unsigned>& ticked) {
    return ConfirmWarnings(window_, ask_, rules, ticked);
  };
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
  (void)tree_.Move(tree);
  // Under the results, the summary line and the keep-list's button right of it.
  const SIZE cookiesButton = controls::DialogUnits(window_, kCookiesButtonUnits.cx, kCookiesButtonUnits.cy);
  const int bandHeight = std::max<int>(kSummaryHeight, cookiesButton.cy);
  const int bandTop = client.bottom - kMargin - bandHeight;
  (void)results_.Move(
      RECT{client.left + kMargin, tree.bottom + kTreeToResults, client.right - kMargin, bandTop - kTreeToResults});
  (void)controls::CWindow(Item(IDC_SCAN_COOKIES_TO_KEEP))
      .Move(RECT{client.right - kMargin - cookiesButton.cx, bandTop, client.right - kMargin, bandTop + bandHeight});
  // A page made without the line has nothing to place.
  (void)::MoveWindow(::GetDlgItem(window_, IDC_SCAN_SUMMARY), client.left + kMargin,
                     bandTop + (bandHeight - kSummaryHeight) / 2,
                     client.right - client.left - 3 * kMargin - cookiesButton.cx, kSummaryHeight, TRUE);
  // Where a fourth action button would go, in what is left beside the tree; the picture
  // is drawn centred in it.
  (void)animation_.Move(RECT{tree.right + kMargin, actionTop, client.right - kMargin, tree.bottom});
}

void CDlgScan::ShowScanLook(bool running) {
  controls::CNButtonEx& scan = buttons_[kScanButtonSlot];
  if (running) {
    scan.SetPictures(IDB_STOP_NORMAL, IDB_STOP_PRESSED, IDB_STOP_PRESSED, IDB_STOP_PRESSED);
  } else {
    scan.SetPictures(IDB_SCAN_NORMAL, IDB_SCAN_HOT, IDB_SCAN_PRESSED, IDB_SCAN_DISABLED);
  }
  // The page first shows the scan look at its own size; from the first scan on, both
  // looks are shown at the stop look's size.
  (void)scan.SetSize(kScanButtonLater.cx, kScanButtonLater.cy);
  (void)scan.Invalidate();
}

void CDlgScan::EnableActions(bool enable) {
  buttons_[kDeleteRowSlot].Enable(enable);
  buttons_[kEraseSlot].Enable(enable);
}

void CDlgScan::EmptyResults() {
  (void)results_.DeleteAll();  // a list that is gone has nothing to show
  foundCount_ = 0;
  bytesDeletedByHand_ = 0;
  ShowSummary();
}

void CDlgScan::DropRun() {
  tree_.ShowRun(nullptr);
  run_.reset();
}

uint64_t CDlgScan::BytesFound() const {
  const uint64_t found = run_ ? run_->TraceBytes() : 0;
  return found > bytesDeletedByHand_ ? found - bytesDeletedByHand_ : 0;
}

void CDlgScan::ShowSummary() {
  std::wstring text;
  const CCatalogue& catalogue = ProcessCatalogue();
  if (run_) {
    text = FillIn(LoadResourceString(IDS_SCAN_SUMMARY), {std::to_wstring(foundCount_), FormatByteSize(BytesFound())});
  } else if (catalogue.CommunityEntries() > 0) {
    // Before a scan the line tells what the community file holds beyond what shows.
    text = FillIn(LoadResourceString(IDS_COMMUNITY_NOTE),
                  {std::to_wstring(catalogue.CommunityShown()),
                   std::to_wstring(catalogue.CommunityEntries() - catalogue.CommunityShown())});
  }
  (void)::SetDlgItemTextW(window_, IDC_SCAN_SUMMARY, text.c_str());  // a page without the line shows no total
}

void CDlgScan::BeginScanLook() {
  scanning_ = true;
  ShowScanLook(true);
  EnableActions(false);
  DropRun();
  EmptyResults();
  tree_.ResetScanStates();
  animation_.Start();
}

void CDlgScan::OnStage(RunStage stage) {
  const auto status = [this](bool started, unsigned text, unsigned caption) {
    if (statusSink_) statusSink_(started, LoadResourceString(text), LoadResourceString(caption));
  };
  switch (stage) {
    case RunStage::kScanStarted:
      status(true, IDS_STATUS_SCANNING, IDS_STATUS_SCAN_ITEMS);
      break;
    case RunStage::kScanFinished:
      ShowScanLook(false);
      EnableActions(true);
      animation_.Stop();
      scanning_ = false;
      status(false, IDS_STATUS_SCAN_DONE, IDS_STATUS_SCAN_TOTAL);
      break;
    case RunStage::kEraseStarted:
      status(true, IDS_STATUS_DELETING, IDS_STATUS_DELETE_ITEMS);
      break;
    case RunStage::kEraseFinished:
      tree_.ResetScanStates();
      DropRun();
      EmptyResults();
      status(false, IDS_STATUS_DELETE_DONE, IDS_STATUS_DELETE_TOTAL);
      break;
  }
}

bool CDlgScan::StartWorker(std::function<void(PageReports& reports, const StopToken& stop)> run) {
  return worker_.Start([this, run = std::move(run)](const StopToken& stop) { run(*reports_, stop); },
                       [this](controls::RunEnd end) {
                         if (end == controls::RunEnd::kNotStarted) RunNotStarted();
                       });
}

void CDlgScan::RunNotStarted() {
  // No stage was reached, so the notification area was never told of this run.
  ShowScanLook(false);
  EnableActions(true);
  animation_.Stop();
  scanning_ = false;
  DropRun();
  ShowSummary();
}

bool CDlgScan::StartRun(std::function<void(ScanRun& run, PageReports& reports, const StopToken& stop)> work) {
  // The run of the ticked items is made here, before the worker fills it, so the tree can
  // show its counts from the first trace on.
  run_ = MakeScanRun(CatalogueRoot(), selection_.TickedItems(), ProcessCatalogue().Rules());
  for (const std::wstring& domain : ReadCookiesToKeep(settings_)) (void)run_->CookiesToKeep().Add(domain);
  tree_.ShowRun(run_.get());
  ShowSummary();
  return StartWorker(
      [run = run_, work = std::move(work)](PageReports& reports, const StopToken& stop) { work(*run, reports, stop); });
}

void CDlgScan::StartScan() {
  if (scanning_) {
    worker_.RequestStop();
    return;
  }
  if (worker_.Running()) {
    return;  // a one-click erase is still erasing
  }
  BeginScanLook();
  (void)StartRun(
      [this](ScanRun& run, PageReports& reports, const StopToken& stop) {  // one that cannot start ends at once
        ScanItems(run, &settings_, reports, stop, FolderGuard(MachinePaths()));
      });
}

bool CDlgScan::StartOneClickErase() {
  if (Busy()) {
    return false;
  }
  ++oneClickRequests_;
  TickOneClickList(selection_, settings_);
  tree_.RefreshChecks();
  BeginScanLook();
  return StartRun([this](ScanRun& run, PageReports& reports, const StopToken& stop) {
    RunOneClickErase(run, &settings_, reports, stop, FolderGuard(MachinePaths()));
  });
}

void CDlgScan::Erase() {
  if (!run_ || foundCount_ < 1 || Busy()) {
    return;
  }
  eraseDialogOpen_ = true;
  const INT_PTR result = runEraseDialog_(window_, foundCount_, [run = run_](EraseTally& tally) {
    EraseFoundItems(*run, tally, FolderGuard(MachinePaths()));
  });
  eraseDialogOpen_ = false;
  // Only the dialog's hidden Cancel button ends it so; a dialog that could not be shown
  // (-1) never restarts the machine.
  if (result != IDOK && result != -1) {
    restart_();
  }
  tree_.ResetScanStates();
  DropRun();
  EmptyResults();
}

void CDlgScan::DeleteSelectedRow() {
  const int row = results_.SelectedRow();
  if (row < 0) {
    return;
  }
  const LPARAM tag = results_.RowTag(row);
  if (tag == kSkippedRowTag) {
    (void)results_.DeleteRow(row);  // a note, not a trace: nothing to delete behind it
    return;
  }
  const std::optional<uint64_t> bytes =
      RemoveListedTrace(results_.RowText(row, 1), results_.RowText(row, 2), tag == kRegistryRowTag);
  if (!bytes) {
    return;  // the file is still there: so is its row
  }
  if (results_.DeleteRow(row)) {
    --foundCount_;
    bytesDeletedByHand_ += *bytes;
    ShowSummary();
  }
}

void CDlgScan::SelectAll() {
  const auto ask = [this] {
    if (confirmSelectAll_) return confirmSelectAll_();
    return ::MessageBoxW(window_, LoadResourceString(IDS_SELECT_ALL_WARNING).c_str(),
                         LoadResourceString(IDS_SELECT_ALL_CAPTION).c_str(), MB_YESNO | MB_ICONEXCLAMATION) != IDNO;
  };
  selection_.SelectAll(scanning_, ask);
}

void CDlgScan::WaitForWorker() {
  worker_.Join();
  tasks_.RunPending();
}

bool CDlgScan::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDC_SCAN_START:
      StartScan();
      return true;
    case IDC_SCAN_DELETE_ROW:
      DeleteSelectedRow();
      return true;
    case IDC_SCAN_ERASE:
      Erase();
      return true;
    case IDC_SCAN_SELECT_ALL:
      SelectAll();
      tree_.RefreshChecks();
      return true;
    case IDC_SCAN_SELECT_NONE:
      selection_.SelectNone(scanning_);
      tree_.RefreshChecks();
      return true;
    case IDC_SCAN_SELECT_DEFAULT:
      selection_.SelectDefault(scanning_, settings_);
      tree_.RefreshChecks();
      return true;
    case IDC_SCAN_COOKIES_TO_KEEP:
      // The hosts of the last scan, once its worker has ended; none while one runs.
      runCookiesDialog_(window_, settings_, run_ && !Busy() ? run_->CookieHostsFound() : std::vector<std::wstring>());
      return true;
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

bool CDlgScan::OnEraseBackground(HDC dc) {
  const RECT client = ClientRect();
  return ::FillRect(dc, &client, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH))) != 0;
}

bool CDlgScan::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (tasks_.HandleMessage(message, result)) {
    return true;
  }
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
