#include "cli/ShredCommand.h"

#include "cli/JsonText.h"
#include "engine/FilePath.h"
#include "engine/FolderSafety.h"
#include "shred/ShredJob.h"
#include "shred/ShredList.h"

#include <windows.h>

namespace lumenor {

namespace {

// One line a file, as it is decided, and the counts for the summary.
class FileLines {
 public:
  FileLines(BufferedOutput& out, bool json) : out_(out), json_(json) {}

  void Shredded(const std::wstring& path, uint64_t bytes, int passes) {
    ++shredded_;
    bytes_ += bytes;
    out_.Line(json_ ? L"{\"type\":\"shredded\",\"path\":" + JsonString(path) + L",\"bytes\":" + std::to_wstring(bytes) +
                          L",\"passes\":" + std::to_wstring(passes) + L"}"
                    : L"shredded\t" + path + L"\t" + std::to_wstring(bytes) + L" bytes\t" + std::to_wstring(passes) +
                          L" passes");
  }
  void Failed(const std::wstring& path, ShredFailure failure) {
    ++failed_;
    const std::wstring reason(FailureReason(failure));
    out_.Line(json_ ? L"{\"type\":\"failed\",\"path\":" + JsonString(path) + L",\"reason\":" + JsonString(reason) + L"}"
                    : L"failed\t" + path + L"\t" + reason);
  }
  // A folder link met in a folder walk: no file, so neither shredded nor failed.
  void Skipped(const std::wstring& path, ShredFailure failure) {
    const std::wstring reason(FailureReason(failure));
    out_.Line(json_
                  ? L"{\"type\":\"skipped\",\"path\":" + JsonString(path) + L",\"reason\":" + JsonString(reason) + L"}"
                  : L"skipped\t" + path + L"\t" + reason);
  }
  void Summary() {
    const std::wstring files = std::to_wstring(shredded_ + failed_);
    const std::wstring shredded = std::to_wstring(shredded_);
    const std::wstring failed = std::to_wstring(failed_);
    const std::wstring bytes = std::to_wstring(bytes_);
    out_.Line(json_ ? L"{\"type\":\"summary\",\"files\":" + files + L",\"shredded\":" + shredded + L",\"failed\":" +
                          failed + L",\"bytes\":" + bytes + L"}"
                    : files + L" files: " + shredded + L" shredded, " + failed + L" failed, " + bytes + L" bytes");
  }
  int FailedCount() const { return failed_; }

 private:
  BufferedOutput& out_;
  bool json_;
  int shredded_ = 0;
  int failed_ = 0;
  uint64_t bytes_ = 0;
};

class JobLines final : public ShredReports {
 public:
  JobLines(const std::vector<ShredTarget>& targets, FileLines& lines, const ConsoleOutput* progress)
      : targets_(targets), lines_(lines), progress_(progress) {}

  void RangeSet(uint64_t totalBytes) override { range_ = totalBytes; }
  void ProgressMoved(uint64_t position) override {
    if (progress_ == nullptr || range_ == 0) return;
    const int percent = static_cast<int>(position * 100 / range_);
    if (percent != shownPercent_) {
      shownPercent_ = percent;
      (void)progress_->Write(L"\rshredding: " + std::to_wstring(percent) + L"%");  // progress only
    }
  }
  void FileShredded(size_t index, int passes) override {
    lines_.Shredded(targets_[index].Path(), targets_[index].size, passes);
  }
  void FileFailed(size_t /*index*/, ShredFailure failure, const std::wstring& path) override {
    lines_.Failed(path, failure);
  }
  void Finish() const {
    if (progress_ != nullptr && shownPercent_ >= 0) (void)progress_->Write(L"\n");  // progress only
  }

 private:
  const std::vector<ShredTarget>& targets_;
  FileLines& lines_;
  const ConsoleOutput* progress_;
  uint64_t range_ = 0;
  int shownPercent_ = -1;
};

// The last name of a path as typed, separators at its end aside.
std::wstring_view LastName(std::wstring_view path) {
  while (!path.empty() && (path.back() == L'\\' || path.back() == L'/')) path.remove_suffix(1);
  const size_t slash = path.find_last_of(L"\\/");
  return slash == std::wstring_view::npos ? path : path.substr(slash + 1);
}

bool EndsInDotOrBlank(std::wstring_view name) {
  return name != L"." && name != L".." && !name.empty() && (name.back() == L'.' || name.back() == L' ');
}

}  // namespace

int RunShredCommand(const ShredCommandOptions& options, const ConsoleOutput& out, const ConsoleOutput& err,
                    const std::function<int(std::wstring_view)>& usageError, const StopToken& stop) {
  BufferedOutput output(out);
  FileLines lines(output, options.json);
  const FolderGuard guard(MachinePaths());
  ShredList list;
  // Every path is judged before anything is shredded, so that a usage error touches
  // nothing; refusals of single files are only printed.
  std::vector<Refusal> refusals;
  for (const std::wstring& path : options.paths) {
    // The folder rules read "a." as "a", as Windows does; here that would shred "a".
    if (EndsInDotOrBlank(LastName(path))) {
      refusals.push_back({path, ShredFailure::kAmbiguousName});
      continue;
    }
    // Read and judged once; what travels on is that one reading.
    const FolderGuard::Check check = guard.Inspect(path);
    if (!check.path) {
      return usageError(std::wstring(VerdictReason(check.verdict)) + L": " + path);
    }
    const SafePath entry = check.path->AsEntry();
    const DWORD attributes = GetFileAttributesW(entry.ForApi().c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
      refusals.push_back({entry.Text(), ShredFailure::kMissing});
    } else if (IsFolder(attributes)) {
      if (!check.admitted) {
        return usageError(std::wstring(VerdictReason(check.verdict)) + L": " + path);
      }
      (void)list.AddFolder(*check.admitted, [&refusals](const Refusal& refusal) { refusals.push_back(refusal); });
    } else {
      Refusal refusal;
      if (list.AddFile(entry, &refusal) == AddResult::kRefused) refusals.push_back(refusal);
    }
  }
  for (const Refusal& refusal : refusals) {
    if (refusal.folderLink) {
      lines.Skipped(refusal.path, refusal.failure);
    } else {
      lines.Failed(refusal.path, refusal.failure);
    }
  }

  const std::vector<ShredTarget>& targets = list.Targets();
  JobLines job(targets, lines, err.IsConsole() ? &err : nullptr);
  if (RunShredJob(targets, options.method, job, stop) == ShredJobEnd::kNoMemory) {
    (void)err.WriteLine(L"lumenor-cli: not enough memory for the overwrite patterns");  // the lines say the rest
    for (const ShredTarget& target : targets) lines.Failed(target.Path(), ShredFailure::kNotReached);
  }
  job.Finish();
  lines.Summary();
  return output.Flush() && lines.FailedCount() == 0 ? 0 : 1;
}

}  // namespace lumenor
