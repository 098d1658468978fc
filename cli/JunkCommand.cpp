#include "cli/JunkCommand.h"

#include "cli/JsonText.h"
#include "junk/JunkRemoval.h"
#include "junk/JunkWalk.h"

#include <windows.h>

#include <cstdint>

namespace lumenor {

namespace {

constexpr ULONGLONG kProgressIntervalMs = 1000;

class JunkPrinter {
 public:
  JunkPrinter(BufferedOutput& out, bool json, const std::vector<std::wstring>& masks)
      : out_(out), json_(json), masks_(masks) {}

  void Found(const JunkFile& file) {
    ++files_;
    bytes_ += file.bytes;
    if (json_) {
      out_.Line(L"{\"type\":\"junk\",\"name\":" + JsonString(file.name) + L",\"folder\":" + JsonString(file.folder) +
                L",\"mask\":" + JsonString(masks_[file.maskIndex]) + L",\"bytes\":" + std::to_wstring(file.bytes) +
                L"}");
    } else {
      out_.Line(file.name + L"\t" + file.folder);
    }
  }

  void Failed(const std::wstring& path) {
    out_.Line(json_ ? L"{\"type\":\"failure\",\"path\":" + JsonString(path) + L"}" : L"failed\t" + path);
  }

  void Summary(const std::optional<std::pair<int, int>>& deletedAndFailed) {
    const std::wstring files = std::to_wstring(files_);
    const std::wstring bytes = std::to_wstring(bytes_);
    std::wstring line = json_ ? L"{\"type\":\"summary\",\"files\":" + files + L",\"bytes\":" + bytes
                              : files + L" junk files, " + bytes + L" bytes";
    if (deletedAndFailed) {
      const std::wstring deleted = std::to_wstring(deletedAndFailed->first);
      const std::wstring failed = std::to_wstring(deletedAndFailed->second);
      line += json_ ? L",\"deleted\":" + deleted + L",\"failed\":" + failed
                    : L", " + deleted + L" deleted, " + failed + L" failed";
    }
    out_.Line(json_ ? line + L"}" : line);
  }

 private:
  BufferedOutput& out_;
  bool json_;
  const std::vector<std::wstring>& masks_;
  int files_ = 0;
  uint64_t bytes_ = 0;
};

class CountingTally final : public EraseTally {
 public:
  explicit CountingTally(JunkPrinter& printer) : printer_(printer) {}
  void Erased(int count, uint64_t /*bytes*/) override { deleted += count; }
  void EraseFailed(const std::wstring& what) override {
    ++failed;
    printer_.Failed(what);
  }
  void LocationSkipped(const SkippedLocation&) override {}  // junk removal walks no locations

  int deleted = 0;
  int failed = 0;

 private:
  JunkPrinter& printer_;
};

}  // namespace

int RunJunkCommand(const JunkCommandOptions& options, const SystemPaths& paths, const ConsoleOutput& out,
                   const ConsoleOutput& err, const StopToken& stop) {
  BufferedOutput lines(out);
  JunkPrinter printer(lines, options.json, options.masks);
  JunkScope scope;
  if (options.folder) {
    std::optional<JunkScope> typed = JunkScopeOfFolder(*options.folder);
    if (!typed) {
      return 2;  // the options were checked when they were read
    }
    scope = std::move(*typed);
  }
  if (!scope.allFixedDisks && IsLinkFolder(scope.folder)) {
    // Told, not an error: the walk would find nothing in it, as in any folder it cannot enter.
    (void)err.WriteLine(L"warning: " + scope.folder + L" is a link; links are never entered");
  }

  std::vector<std::wstring> found;
  ULONGLONG lastProgress = 0;
  const bool showProgress = err.IsConsole();
  WalkJunkScope(scope, paths, options.masks, stop, [&](JunkFile&& file) {
    printer.Found(file);
    if (options.remove) {
      found.push_back(JunkPath(file.folder, file.name));
    }
    if (showProgress && GetTickCount64() - lastProgress >= kProgressIntervalMs) {
      lastProgress = GetTickCount64();
      (void)err.WriteLine(L"searching: " + file.folder);  // progress only; losing it changes nothing
    }
  });

  std::optional<std::pair<int, int>> deletedAndFailed;
  if (options.remove) {
    CountingTally tally(printer);
    DeleteJunkFiles(found, tally, stop);
    deletedAndFailed = std::make_pair(tally.deleted, tally.failed);
  }
  printer.Summary(deletedAndFailed);
  const bool written = lines.Flush();
  return written && (!deletedAndFailed || deletedAndFailed->second == 0) ? 0 : 1;
}

}  // namespace lumenor
