#include "cli/TraceCommand.h"

#include "catalogue/Catalogue.h"
#include "cli/JsonText.h"
#include "engine/FolderSafety.h"
#include "engine/Locations.h"
#include "engine/TraceEngine.h"
#include "scan/ItemSelection.h"
#include "scan/PrivacyRun.h"
#include "settings/Settings.h"

#include <windows.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace lumenor {

namespace {

// The ids of the items the options select, ticked as the scan page ticks them. The
// settings file is read, never written; without one, the lists are those a fresh
// settings file would hold.
std::vector<unsigned> SelectedIds(const TraceCommandOptions& options, CMyObject* root) {
  if (options.source == SelectionSource::kItems) {
    std::vector<unsigned> ids;
    for (const CMyObject* item : ItemsInCatalogueOrder(root, options.items)) ids.push_back(item->Id());
    return ids;
  }
  ItemSelection selection = ItemSelection::FromCatalogue(root);
  if (options.source == SelectionSource::kAll) {
    selection.TickAll();
    return selection.TickedItems();
  }
  const CIniFileRW settings(kSettingsFileName);
  const bool haveFile = GetFileAttributesW(settings.Path().c_str()) != INVALID_FILE_ATTRIBUTES;
  if (!haveFile) {
    const Selection builtIn = options.source == SelectionSource::kOneClick  ? Selection::kOneClick
                              : options.source == SelectionSource::kDefault ? Selection::kDefault
                                                                            : Selection::kRecent;
    for (const unsigned id : BuiltInSelection(builtIn)) (void)selection.TickById(id);
  } else if (options.source == SelectionSource::kOneClick) {
    TickOneClickList(selection, settings);
  } else if (options.source == SelectionSource::kDefault) {
    selection.SelectDefault(false, settings);
  } else {
    selection.RestoreScanSelection(settings);
  }
  return selection.TickedItems();
}

// Locations the folder rules refused, each told once however often the scan and the
// erase come upon it: as a JSON line, or as a warning on standard error.
class SkipReport {
 public:
  SkipReport(BufferedOutput& out, const ConsoleOutput& err, bool json) : out_(out), err_(err), json_(json) {}

  void Add(const SkippedLocation& skipped) {
    if (!told_.insert({skipped.item->Id(), skipped.index}).second) return;
    const std::wstring reason(VerdictReason(skipped.reason));
    if (json_) {
      out_.Line(L"{\"type\":\"skipped\",\"id\":" + std::to_wstring(skipped.item->Id()) + L",\"location\":" +
                JsonString(skipped.location) + L",\"reason\":" + JsonString(reason) + L"}");
    } else {
      // A warning that cannot be written changes nothing: the count still makes the exit status.
      (void)err_.WriteLine(L"warning: skipped " + skipped.location + L" (" + skipped.item->Name() + L"): " + reason);
    }
  }
  int Count() const { return static_cast<int>(told_.size()); }

 private:
  BufferedOutput& out_;
  const ConsoleOutput& err_;
  bool json_;
  std::set<std::pair<unsigned, int>> told_;
};

class PrintingReports final : public RunReports {
 public:
  PrintingReports(BufferedOutput& out, bool json, const ConsoleOutput* progress, SkipReport& skips)
      : out_(out), json_(json), progress_(progress), skips_(skips) {}

  void StageReached(RunStage) override {}  // the tool has no status line

  void ItemStarted(const CMyObject& item) override {
    // Progress only; losing it changes nothing.
    if (progress_ != nullptr) (void)progress_->WriteLine(L"scanning: " + item.Name());
  }

  void TraceFound(const FoundTrace& trace) override {
    ++traces_;
    if (json_) {
      out_.Line(L"{\"type\":\"trace\",\"id\":" + std::to_wstring(trace.item->Id()) + L",\"item\":" +
                JsonString(trace.item->Name()) + L",\"name\":" + JsonString(trace.name) + L",\"location\":" +
                JsonString(trace.location) + L",\"registry\":" + (trace.isRegistry ? L"true" : L"false") + L"}");
    } else {
      out_.Line(trace.item->Name() + L"\t" + trace.name + L"\t" + trace.location);
    }
  }

  void Erased(int count) override { deleted_ += count; }
  void EraseFailed(const std::wstring& what) override {
    ++failed_;
    out_.Line(json_ ? L"{\"type\":\"failure\",\"path\":" + JsonString(what) + L"}" : L"failed\t" + what);
  }

  void LocationSkipped(const SkippedLocation& skipped) override { skips_.Add(skipped); }

  int Traces() const { return traces_; }
  int Deleted() const { return deleted_; }
  int Failed() const { return failed_; }

 private:
  BufferedOutput& out_;
  bool json_;
  const ConsoleOutput* progress_;
  SkipReport& skips_;
  int traces_ = 0;
  int deleted_ = 0;
  int failed_ = 0;
};

}  // namespace

int RunTraceCommand(TraceCommand command, const TraceCommandOptions& options, CMyObject* catalogueRoot,
                    const ConsoleOutput& out, const ConsoleOutput& err, const StopToken& stop) {
  BufferedOutput lines(out);
  const std::vector<unsigned> ids = SelectedIds(options, catalogueRoot);
  const FolderGuard guard(MachinePaths());
  SkipReport skips(lines, err, options.json);
  PrintingReports reports(lines, options.json, err.IsConsole() ? &err : nullptr, skips);

  if (command == TraceCommand::kScan) {
    const std::vector<CMyObject*> items = ScanTickedItems(catalogueRoot, ids, nullptr, reports, stop, guard);
    int itemsWithTraces = 0;
    for (const CMyObject* item : items) itemsWithTraces += item->FoundCount() > 0 ? 1 : 0;
    const std::wstring traces = std::to_wstring(reports.Traces());
    lines.Line(options.json ? L"{\"type\":\"summary\",\"traces\":" + traces + L",\"items\":" +
                                  std::to_wstring(itemsWithTraces) + L"}"
                            : traces + L" traces found in " + std::to_wstring(itemsWithTraces) + L" items");
    return lines.Flush() ? 0 : 1;
  }

  if (options.source == SelectionSource::kOneClick) {
    // As the one-click worker does it: every ticked item is erased, found or not.
    RunOneClickErase(catalogueRoot, ids, nullptr, reports, stop, guard, stop);
  } else {
    EraseFoundItems(ScanTickedItems(catalogueRoot, ids, nullptr, reports, stop, guard), reports, guard, stop);
  }
  const std::wstring traces = std::to_wstring(reports.Traces());
  const std::wstring deleted = std::to_wstring(reports.Deleted());
  const std::wstring failed = std::to_wstring(reports.Failed());
  const std::wstring skipped = std::to_wstring(skips.Count());
  lines.Line(options.json ? L"{\"type\":\"summary\",\"traces\":" + traces + L",\"deleted\":" + deleted +
                                L",\"failed\":" + failed + L",\"skipped\":" + skipped + L"}"
                          : traces + L" traces found, " + deleted + L" deleted, " + failed + L" failed, " + skipped +
                                L" skipped");
  const bool written = lines.Flush();
  return written && reports.Failed() == 0 && skips.Count() == 0 ? 0 : 1;
}

}  // namespace lumenor
