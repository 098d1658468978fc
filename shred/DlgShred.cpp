#include "shred/DlgShred.h"

#include "base/ResourceString.h"
#include "controls/Paint.h"
#include "engine/SystemPaths.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

#include <commctrl.h>

#include <cwchar>
#include <utility>

namespace lumenor {

namespace {

constexpr UINT_PTR kProgressTimer = 1;
constexpr UINT kProgressPeriodMs = 200;

constexpr int kMethodIds[3] = {IDC_SHRED_QUICK, IDC_SHRED_SAFE, IDC_SHRED_THOROUGH};
// With the three method buttons, what the running job disables.
constexpr int kListButtons[4] = {IDC_SHRED_ADD_FILE, IDC_SHRED_ADD_FOLDER, IDC_SHRED_CANCEL_FILE, IDC_SHRED_CANCEL_ALL};

// `text` with "%1", "%2" replaced by the arguments.
std::wstring Filled(std::wstring text, const std::wstring& first, const std::wstring& second = L"") {
  for (const auto& [mark, value] : {std::pair{L"%1", &first}, std::pair{L"%2", &second}}) {
    const size_t at = text.find(mark);
    if (at != std::wstring::npos) {
      text.replace(at, 2, *value);
    }
  }
  return text;
}

std::wstring Megabytes(uint64_t bytes) {
  wchar_t text[32] = {};
  (void)std::swprintf(text, std::size(text), L"%.1f", static_cast<double>(bytes) / (1024.0 * 1024.0));
  return text;
}

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

CDlgShred::~CDlgShred() {
  if (stop_) {
    stop_->Request();
  }
  tasks_.Unbind();
  Join();
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
  if (running_) {
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
  if (running_) {
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

void CDlgShred::AddFolder(const std::wstring& folder) {
  if (running_) {
    return;
  }
  const FolderGuard guard(MachinePaths());
  FolderGuard::Check check;
  const std::optional<SafeFolder> admitted = guard.Admit(folder, &check);
  if (!admitted) {
    const std::wstring shown = check.folder.empty() ? folder : check.folder;
    tell_(
        check.verdict == FolderVerdict::kProtectedFolder
            ? Filled(LoadResourceString(IDS_SHRED_PROTECTED_FOLDER), shown)
            : Filled(LoadResourceString(IDS_SHRED_FOLDER_REFUSED), shown, std::wstring(VerdictReason(check.verdict))));
    return;
  }
  const size_t before = listed_.Targets().size();
  std::vector<Refusal> told;
  (void)listed_.AddFolder(*admitted, [&told](const Refusal& refusal) {
    if (IsToldOnAdding(refusal.failure)) told.push_back(refusal);
  });
  AppendListed(before);
  TellRefusals(IDS_SHRED_NOT_LISTED, told);
}

void CDlgShred::AppendListed(size_t from) {
  const std::vector<ShredTarget>& targets = listed_.Targets();
  std::vector<controls::ListRow> rows;
  rows.reserve(targets.size() - from);
  for (size_t index = from; index < targets.size(); ++index) {
    rows.push_back({{targets[index].name, targets[index].folder, std::to_wstring(targets[index].size)}, 0});
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
  if (running_) {
    if (stop_) {
      stop_->Request();
    }
    return;
  }
  if (listed_.Empty()) {
    return;  // a job over no file would end at once
  }
  uint64_t bytes = 0;
  for (const ShredTarget& target : listed_.Targets()) bytes += target.size;
  if (!ask_(
          Filled(LoadResourceString(IDS_SHRED_CONFIRM), std::to_wstring(listed_.Targets().size()), Megabytes(bytes)))) {
    return;
  }
  StartJob();
}

void CDlgShred::StartJob() {
  Join();                                  // the last job's thread has ended; its end was handled
  stop_ = std::make_shared<StopSignal>();  // a fresh one for each job
  range_.store(0);
  position_.store(0);
  rowsRemoved_ = 0;
  problems_.clear();
  ShowRunning(true);
  std::vector<ShredTarget> targets = listed_.Targets();
  const ShredMethod method = Method();
  try {
    worker_ = std::thread([this, stop = stop_, targets = std::move(targets), method] {
      ShredJobEnd end = ShredJobEnd::kEndedEarly;
      try {
        WorkerReports reports(*this);
        end = RunShredJob(targets, method, reports, StopToken(stop.get()));
      } catch (...) {
        // Out of memory for a report: the rows left show what was not done.
      }
      (void)tasks_.Post([this, end] { JobEnded(end); });  // dropped only when the page goes
    });
  } catch (...) {
    ShowRunning(false);  // no thread could be made: nothing was touched
  }
}

void CDlgShred::ShowRunning(bool running) {
  running_ = running;
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

void CDlgShred::JobEnded(ShredJobEnd end) {
  Join();
  ShowRunning(false);
  if (end == ShredJobEnd::kNoMemory) {
    tell_(LoadResourceString(IDS_SHRED_NO_MEMORY));
  }
  TellRefusals(IDS_SHRED_NOT_SHREDDED, problems_);
  problems_.clear();
}

void CDlgShred::Join() {
  if (worker_.joinable()) {
    worker_.join();  // the job never waits for a window, so this ends
  }
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
        AddFolder(*folder);
      }
      return true;
    case IDC_SHRED_CANCEL_FILE:
      if (!running_) CancelSelected();
      return true;
    case IDC_SHRED_CANCEL_ALL:
      if (!running_) CancelAll();
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
