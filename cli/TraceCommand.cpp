#include "cli/TraceCommand.h"

#include "app/Settings.h"
#include "catalogue/Catalogue.h"
#include "cli/JsonText.h"
#include "engine/FolderSafety.h"
#include "engine/Locations.h"
#include "engine/TraceEngine.h"

#include <windows.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace lumenor {

namespace {

// The ids the options select. The settings file is read, never written; without one,
// the lists are those a fresh settings file would hold.
std::vector<unsigned> SelectedIds(const TraceCommandOptions& options, CMyObject* root) {
  std::vector<unsigned> ids;
  switch (options.source) {
    case SelectionSource::kAll:
      ForEachNode(root, [&](const CMyObject& node) {
        if (node.Level() == CMyObject::kItem) ids.push_back(node.Id());
      });
      return ids;
    case SelectionSource::kItems:
      return options.items;
    case SelectionSource::kRecent:
    case SelectionSource::kDefault:
    case SelectionSource::kOneClick:
      break;
  }
  const CIniFileRW settings(kSettingsFileName);
  const bool haveFile = GetFileAttributesW(settings.Path().c_str()) != INVALID_FILE_ATTRIBUTES;
  if (options.source == SelectionSource::kOneClick) {
    return haveFile ? ReadSelection(settings, Selection::kOneClick) : BuiltInSelection(Selection::kOneClick);
  }
  if (options.source == SelectionSource::kDefault) {
    return haveFile ? ReadSelection(settings, Selection::kDefault) : BuiltInSelection(Selection::kDefault);
  }
  return haveFile ? ReadScanSelection(settings) : BuiltInSelection(Selection::kRecent);
}

// The selected items in catalogue order; ids that name no item are ignored.
std::vector<CMyObject*> SelectedItems(const std::vector<unsigned>& ids, CMyObject* root) {
  const std::set<unsigned> wanted(ids.begin(), ids.end());
  std::vector<CMyObject*> items;
  ForEachNode(root, [&](CMyObject& node) {
    if (node.Level() == CMyObject::kItem && wanted.count(node.Id()) != 0) items.push_back(&node);
  });
  return items;
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

class PrintingSink final : public TraceSink {
 public:
  PrintingSink(BufferedOutput& out, bool json, const ConsoleOutput* progress, SkipReport& skips)
      : out_(out), json_(json), progress_(progress), skips_(skips) {}

  void ItemStarted(const CMyObject& item) override {
    if (progress_ != nullptr) {
      (void)progress_->WriteLine(L"scanning: " + item.Name());  // progress only; losing it changes nothing
    }
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

  void LocationSkipped(const SkippedLocation& skipped) override { skips_.Add(skipped); }

  int Traces() const { return traces_; }

 private:
  BufferedOutput& out_;
  bool json_;
  const ConsoleOutput* progress_;
  SkipReport& skips_;
  int traces_ = 0;
};

class PrintingTally final : public EraseTally {
 public:
  PrintingTally(BufferedOutput& out, bool json, SkipReport& skips) : out_(out), json_(json), skips_(skips) {}

  void Erased(int count) override { deleted_ += count; }
  void EraseFailed(const std::wstring& what) override {
    ++failed_;
    out_.Line(json_ ? L"{\"type\":\"failure\",\"path\":" + JsonString(what) + L"}" : L"failed\t" + what);
  }

  void LocationSkipped(const SkippedLocation& skipped) override { skips_.Add(skipped); }

  int Deleted() const { return deleted_; }
  int Failed() const { return failed_; }

 private:
  BufferedOutput& out_;
  bool json_;
  SkipReport& skips_;
  int deleted_ = 0;
  int failed_ = 0;
};

}  // namespace

int RunTraceCommand(TraceCommand command, const TraceCommandOptions& options, CMyObject* catalogueRoot,
                    const ConsoleOutput& out, const ConsoleOutput& err) {
  BufferedOutput lines(out);
  const std::vector<CMyObject*> items = SelectedItems(SelectedIds(options, catalogueRoot), catalogueRoot);

  ResetFoundCounts(catalogueRoot);
  const FolderGuard guard(MachinePaths());
  SkipReport skips(lines, err, options.json);
  PrintingSink sink(lines, options.json, err.IsConsole() ? &err : nullptr, skips);
  for (CMyObject* item : items) {
    FillLocations(*item);
    ScanItem(*item, sink, StopToken(), guard);
  }
  int itemsWithTraces = 0;
  for (const CMyObject* item : items) {
    itemsWithTraces += item->FoundCount() > 0 ? 1 : 0;
  }

  const std::wstring traces = std::to_wstring(sink.Traces());
  if (command == TraceCommand::kScan) {
    lines.Line(options.json ? L"{\"type\":\"summary\",\"traces\":" + traces + L",\"items\":" +
                                  std::to_wstring(itemsWithTraces) + L"}"
                            : traces + L" traces found in " + std::to_wstring(itemsWithTraces) + L" items");
    return lines.Flush() ? 0 : 1;
  }

  PrintingTally tally(lines, options.json, skips);
  for (CMyObject* item : items) {
    if (item->FoundCount() > 0) {
      if (err.IsConsole()) {
        (void)err.WriteLine(L"erasing: " + item->Name());  // progress only
      }
      EraseItem(*item, tally, guard);
    }
  }
  const std::wstring deleted = std::to_wstring(tally.Deleted());
  const std::wstring failed = std::to_wstring(tally.Failed());
  const std::wstring skipped = std::to_wstring(skips.Count());
  lines.Line(options.json ? L"{\"type\":\"summary\",\"traces\":" + traces + L",\"deleted\":" + deleted +
                                L",\"failed\":" + failed + L",\"skipped\":" + skipped + L"}"
                          : traces + L" traces found, " + deleted + L" deleted, " + failed + L" failed, " + skipped +
                                L" skipped");
  const bool written = lines.Flush();
  return written && tally.Failed() == 0 && skips.Count() == 0 ? 0 : 1;
}

}  // namespace lumenor
