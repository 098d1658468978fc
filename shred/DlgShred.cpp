#include "shred/DlgShred.h"

#include "base/ResourceString.h"
#include "base/Texts.h"
#include "controls/Paint.h"
#include "engine/SystemPaths.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

#include <commctrl.h>

#include <memory>
#include <utility>

namespace lumenor {

namespace {

constexpr UINT_PTR kProgressTimer = 1;
constexpr UINT kProgressPeriodMs = 200;

constexpr int kMethodIds[3] = {IDC_SHRED_QUICK, IDC_SHRED_SAFE, IDC_SHRED_THOROUGH};
// With the three method buttons, what the running job disables.
constexpr int kListButtons[4] = {IDC_SHRED_ADD_FILE, IDC_SHRED_ADD_FOLDER, IDC_SHRED_CANCEL_FILE, IDC_SHRED_CANCEL_ALL};

constexpr int kSizeDecimals = 1;  // "2.0 MB"

// Refusals the user is told of: those made for the user's safety. Files that cannot be
// opened for writing are left out silently, as they always were.
bool IsToldOnAdding(ShredFailure failure) {
  return failure == ShredFailure::kLink || failure == ShredFailure::kHardLinks ||
         failure == ShredFailure::kAmbiguousName;
}

}  // namespace

// Runs on the worker thread; everything it hands over goes through the page's queue or
// its counters, never to a window.
class CDlgShred::WorkerReports final : public ShredReports {
 public:
  explicit WorkerReports(CDlgShred& page) : page_(page) {}

  void RangeSet(uint64_t totalBytes) override { page_.range_.store(totalBytes); }
  void ProgressMoved(uint64_t position) override { page_.position_.store(position); }
  void FileShredded(size_t index, int /*passes*/) override {
    (void)page_.tasks_.Post([&page = page_, index] { page.FileDone(index); });  // dropped only when the page goes
  }
  void FileFailed(size_t index, ShredFailure failure, const std::wstring& path) override {
    (void)page_.tasks_.Post([&page = page_, index, failure, path] { page.FileProblem(index, failure, path); });
  }

 private:
  CDlgShred& page_;
};

CDlgShred::CDlgShred() : CDialog(IDD_SHRED) {
  const std::wstring caption = LoadResourceString(IDS_PRODUCT_NAME);
  ask_ = [this, caption](const std::wstring& text) {
    return ::MessageBoxW(window_, text.c_str(), caption.c_str(), MB_YESNO | MB_ICONQUESTION) == IDYES;
  };
  tell_ = [this, caption](const std::wstring& text) {
    (void)::MessageBoxW(window_, text.c_str(), caption.c_str(), MB_OK | MB_ICONWARNING);  // only OK to answer
  };
}

void CDlgShred::SetMessageBoxes(Ask ask, Tell tell) {
  ask_ = std::move(ask);
  tell_ = std::move(tell);
}

HWND CDlgShred::ProgressBar() const { return Item(IDC_SHRED_PROGRESS); }

bool CDlgShred::OnInit() {
  tasks_.Bind(window_);
  if (list_.Attach(window_, IDC_SHRED_LIST)) {
    (void)list_.AddColumn(LoadResourceString(IDS_SHRED_COLUMN_NAME), 120);
    (void)list_.AddColumn(LoadResourceString(IDS_SHRED_COLUMN_PATH), 180);
    (void)list_.AddColumn(LoadResourceString(IDS_SHRED_COLUMN_SIZE), 160);
  }
  for (size_t index = 0; index < methods_.size(); ++index) {
    (void)methods_[index].Attach(window_, kMethodIds[index], 0, 0, controls::kPageBackground);
  }
  methods_[0].SetChecked(true);
  if (shred_.Attach(window_, IDC_SHRED_SHRED)) {
    ShowRunning(false);
    (void)shred_.FitToPicture(controls::Corner::kBottomRight);  // else the picture is stretched to the template's size
  }
  return true;
}

ShredMethod CDlgShred::Method() const {
  // Tested in this order, the later one winning, as the page always has.
  ShredMethod method = ShredMethod::kQuick;
  if (methods_[1].Checked()) method = ShredMethod::kSafe;
  if (methods_[2].Checked()) method = ShredMethod::kThorough;
  return method;
}

bool CDlgShred::AddPath(const std::wstring& fullPath) {
  const size_t before = listed_.Targets().size();
  if (Running()) {
    return false;
  }
  Refusal refusal;
  if (listed_.AddFile(fullPath, &refusal) != AddResult::kAdded) {
    if (IsToldOnAdding(refusal.failure)) TellRefusals(IDS_SHRED_NOT_LISTED, {refusal});
    return false;
  }
  AppendListed(before);
  return true;
}

void CDlgShred::AddFiles(const std::vector<std::wstring>& paths) {
  if (Running()) {
    return;
  }
  const size_t before = listed_.Targets().size();
  std::vector<Refusal> told;
  for (const std::wstring& path : paths) {
    Refusal refusal;
    if (listed_.AddFile(path, &refusal) == AddResult::kRefused && IsToldOnAdding(refusal.failure)) {
      told.push_back(std::move(refusal));
    }
  }
  AppendListed(before);
  TellRefusals(IDS_SHRED_NOT_LISTED, told);
}

bool CDlgShred::AddFolder(const std::wstring& folder) {
  if (Running()) {
    return false;
  }
  const FolderGuard guard(MachinePaths());
  FolderGuard::Check check = guard.Inspect(folder);
  if (!check.admitted) {
    const std::wstring shown = check.folder.empty() ? folder : check.folder;
    tell_(check.verdict == FolderVerdict::kProtectedFolder
              ? FillIn(LoadResourceString(IDS_SHRED_PROTECTED_FOLDER), {shown})
              : FillIn(LoadResourceString(IDS_SHRED_FOLDER_REFUSED), {shown, VerdictReason(check.verdict)}));
    return false;
  }
  // A big tree takes its time: it is walked on the worker, and Stop ends the walk.
  walkRefusals_.clear();
  ShowRunning(true);
  return worker_.Start(
      [this, top = std::move(*check.admitted)](const StopToken& stop) {
        WalkFolderToShred(
            top, stop, [this](ShredTarget&& target) { walked_.Add(std::move(target)); },
            [this](const Refusal& refusal) {
              if (IsToldOnAdding(refusal.failure)) walkRefusals_.push_back(refusal);
            });
        walked_.HandOver();
      },
      [this](controls::RunEnd run) { WalkEnded(run); });
}

void CDlgShred::ListWalked(std::vector<ShredTarget> found) {
  const size_t before = listed_.Targets().size();
  for (ShredTarget& target : found) {
    (void)listed_.AddChecked(std::move(target));  // a file listed already stays one row
  }
  AppendListed(before);
}

void CDlgShred::WalkEnded(controls::RunEnd run) {
  walked_.TakeAll();  // every file the walk found is listed before the page is free again
  ShowRunning(false);
  if (run == controls::RunEnd::kNotStarted) {
    tell_(LoadResourceString(IDS_TASK_NOT_STARTED));
    return;
  }
  std::vector<Refusal> told;
  told.swap(walkRefusals_);
  TellRefusals(IDS_SHRED_NOT_LISTED, told);
}

void CDlgShred::AppendListed(size_t from) {
  const std::vector<ShredTarget>& targets = listed_.Targets();
  std::vector<controls::ListRow> rows;
  rows.reserve(targets.size() - from);
  for (size_t index = from; index < targets.size(); ++index) {
    rows.push_back({{std::wstring(targets[index].Name()), std::wstring(targets[index].Folder()),
                     std::to_wstring(targets[index].size)},
                    0});
  }
  (void)list_.AppendRows(std::move(rows));  // the rows are the store; a failed repaint shows them later
}

void CDlgShred::TellRefusals(unsigned heading, const std::vector<Refusal>& refusals) {
  if (refusals.empty()) {
    return;
  }
  // A message box grows with its text: past a screenful the rest is counted, not shown.
  constexpr size_t kShown = 20;
  std::wstring text = LoadResourceString(heading);
  for (size_t index = 0; index < refusals.size() && index < kShown; ++index) {
    text += L"\n" + refusals[index].path + L" (" + std::wstring(FailureReason(refusals[index].failure)) + L")";
  }
  if (refusals.size() > kShown) {
    text += L"\n... (" + std::to_wstring(refusals.size() - kShown) + L")";
  }
  tell_(text);
}

void CDlgShred::CancelSelected() {
  // A virtual list keeps its selection by row number, not by row: deleting one selected
  // row would shift others under the remaining marks. So every selected row is known
  // first, the marks cleared, and the rows deleted from the bottom up.
  std::vector<int> selected;
  const HWND list = list_.Handle();
  for (int row = list_.SelectedRow(); row >= 0;
       row = static_cast<int>(::SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED))) {
    selected.push_back(row);
  }
  LVITEMW clear{};
  clear.stateMask = LVIS_SELECTED;
  (void)::SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&clear));
  for (auto row = selected.rbegin(); row != selected.rend(); ++row) {
    if (list_.DeleteRow(*row)) {
      listed_.Remove(static_cast<size_t>(*row));
    }
  }
}

void CDlgShred::CancelAll() {
  (void)list_.DeleteAll();  // the store is emptied whatever the view says
  listed_.Clear();
}

void CDlgShred::PressShred() {
  if (Running()) {
    worker_.RequestStop();
    return;
  }
  if (listed_.Empty()) {
    return;  // a job over no file would end at once
  }
  uint64_t bytes = 0;
  for (const ShredTarget& target : listed_.Targets()) bytes += target.size;
  if (!ask_(FillIn(LoadResourceString(IDS_SHRED_CONFIRM),
                   {std::to_wstring(listed_.Targets().size()), MegabytesText(bytes, kSizeDecimals)}))) {
    return;
  }
  StartJob();
}

void CDlgShred::StartJob() {
  range_.store(0);
  position_.store(0);
  rowsRemoved_ = 0;
  problems_.clear();
  ShowRunning(true);
  const ShredMethod method = Method();
  auto end = std::make_shared<ShredJobEnd>(ShredJobEnd::kEndedEarly);
  (void)worker_.Start(
      [this, end, targets = listed_.Targets(), method](const StopToken& stop) {
        WorkerReports reports(*this);
        *end = RunShredJob(targets, method, reports, stop);  // out of memory for a report: ended early
      },
      [this, end](controls::RunEnd run) { JobEnded(run, *end); });
}

void CDlgShred::ShowRunning(bool running) {
  for (const int id : kMethodIds) CWindow(Item(id)).Enable(!running);
  for (const int id : kListButtons) CWindow(Item(id)).Enable(!running);
  if (running) {
    shred_.SetPictures(IDB_SHRED_STOP_NORMAL, IDB_SHRED_STOP_HOT, IDB_SHRED_STOP_PRESSED, IDB_SHRED_STOP_DISABLED);
    (void)StartTimer(kProgressTimer, kProgressPeriodMs);
  } else {
    shred_.SetPictures(IDB_SHRED_NORMAL, IDB_SHRED_HOT, IDB_SHRED_PRESSED, IDB_SHRED_DISABLED);
    (void)StopTimer(kProgressTimer);  // fails only when it was not running
  }
  (void)shred_.Invalidate();
  scale_ = ProgressScale(0);
  (void)::SendMessageW(ProgressBar(), PBM_SETRANGE32, 0, 0);
  (void)::SendMessageW(ProgressBar(), PBM_SETPOS, 0, 0);
}

void CDlgShred::ShowProgress() {
  const uint64_t range = range_.load();
  if (range > 0 && scale_.Range() != ProgressScale(range).Range()) {
    scale_ = ProgressScale(range);
    (void)::SendMessageW(ProgressBar(), PBM_SETRANGE32, 0, scale_.Range());
  }
  (void)::SendMessageW(ProgressBar(), PBM_SETPOS, static_cast<WPARAM>(scale_.Position(position_.load())), 0);
}

void CDlgShred::FileDone(size_t index) {
  // Rows go in the order their files are done, so the row of file `index` has moved up
  // by the rows taken away before it; rows of refused files stay.
  const size_t row = index - rowsRemoved_;
  if (list_.DeleteRow(static_cast<int>(row))) {
    listed_.Remove(row);
    ++rowsRemoved_;
  }
}

void CDlgShred::FileProblem(size_t index, ShredFailure failure, const std::wstring& path) {
  switch (failure) {
    case ShredFailure::kDeleteFailed:
      FileDone(index);  // overwritten all the same: no longer a row to shred
      problems_.push_back({path, failure});
      break;
    case ShredFailure::kLink:
    case ShredFailure::kHardLinks:
    case ShredFailure::kNotAFile:
      problems_.push_back({path, failure});
      break;
    default:
      break;  // the row stays: the files left in the list are those not shredded
  }
}

void CDlgShred::JobEnded(controls::RunEnd run, ShredJobEnd end) {
  ShowRunning(false);
  if (run == controls::RunEnd::kNotStarted) {
    tell_(LoadResourceString(IDS_TASK_NOT_STARTED));  // nothing was touched; the rows stay
    return;
  }
  if (end == ShredJobEnd::kNoMemory) {
    tell_(LoadResourceString(IDS_SHRED_NO_MEMORY));
  }
  TellRefusals(IDS_SHRED_NOT_SHREDDED, problems_);
  problems_.clear();
}

bool CDlgShred::OnTimer(UINT_PTR id) {
  if (id != kProgressTimer) {
    return false;
  }
  ShowProgress();
  return true;
}

bool CDlgShred::OnCommand(int id, int code, HWND control) {
  if (code != BN_CLICKED) {
    return CDialog::OnCommand(id, code, control);
  }
  switch (id) {
    case IDC_SHRED_ADD_FILE:
      AddFiles(PickFiles(window_));
      return true;
    case IDC_SHRED_ADD_FOLDER:
      if (const auto folder = folderPicker_.Pick(window_, LoadResourceString(IDS_SHRED_CHOOSE_FOLDER))) {
        (void)AddFolder(*folder);  // a refusal or a walk that could not start has been told
      }
      return true;
    case IDC_SHRED_CANCEL_FILE:
      if (!Running()) CancelSelected();
      return true;
    case IDC_SHRED_CANCEL_ALL:
      if (!Running()) CancelAll();
      return true;
    case IDC_SHRED_SHRED:
      PressShred();
      return true;
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

bool CDlgShred::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (controls::ColourWhitePage(message, wParam, result)) {
    return true;
  }
  if (tasks_.HandleMessage(message, result)) {
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
