#include "cli/TraceCommand.h"

#include "base/Texts.h"
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

// Whether an item of the catalogue comes from rules of `origin`.
bool ComesFrom(const rules::RuleBook* rules, unsigned id, rules::RuleOrigin origin) {
  const rules::RuleBook::Entry* entry = rules != nullptr ? rules->Find(id) : nullptr;
  return entry != nullptr && entry->origin == origin;
}

// The ids of the items the options select, ticked as the scan page ticks them. The
// settings file is read, never written; without one, the lists are those a fresh
// settings file would hold. "--all" is the fixed catalogue and the built-in rules; the
// user's own and the community's rules are taken only when named.
std::vector<unsigned> SelectedIds(const TraceCommandOptions& options, const CCatalogue& catalogue) {
  CMyObject* root = catalogue.Root();
  const rules::RuleBook* rules = catalogue.Rules();
  if (options.source == SelectionSource::kItems) {
    std::vector<unsigned> ids;
    for (const CMyObject* item : ItemsInCatalogueOrder(root, options.items)) ids.push_back(item->Id());
    return ids;
  }
  ItemSelection selection = ItemSelection::FromCatalogue(root);
  if (rules != nullptr) selection.SetRuleDefaults(rules->Defaults());
  if (options.source == SelectionSource::kAll || options.source == SelectionSource::kCommunity) {
    selection.TickAll();
    std::vector<unsigned> ids = selection.TickedItems();
    std::erase_if(ids, [&](unsigned id) {
      const bool community = ComesFrom(rules, id, rules::RuleOrigin::kCommunity);
      return options.source == SelectionSource::kCommunity
                 ? !community
                 : community || ComesFrom(rules, id, rules::RuleOrigin::kUserFile);
    });
    return ids;
  }
  const CIniFileRW settings(kSettingsFileName);
  const bool haveFile = GetFileAttributesW(settings.Path().c_str()) != INVALID_FILE_ATTRIBUTES;
  if (!haveFile) {
    const Selection builtIn = options.source == SelectionSource::kOneClick  ? Selection::kOneClick
                              : options.source == SelectionSource::kDefault ? Selection::kDefault
                                                                            : Selection::kRecent;
    for (const unsigned id : BuiltInSelection(builtIn)) (void)selection.TickById(id);
    if (builtIn != Selection::kOneClick && rules != nullptr) {
      for (const unsigned id : rules->Defaults()) (void)selection.TickById(id);
    }
  } else if (options.source == SelectionSource::kOneClick) {
    TickOneClickList(selection, settings);
  } else if (options.source == SelectionSource::kDefault) {
    selection.SelectDefault(false, settings);
  } else {
    selection.RestoreScanSelection(settings);
  }
  return selection.TickedItems();
}

// Locations refused (by the folder rules, or as what no rule may touch), each told once
// however often the scan and the erase come upon it: as a JSON line, or as a warning on
// standard error.
class SkipReport {
 public:
  SkipReport(BufferedOutput& out, const ConsoleOutput& err, bool json) : out_(out), err_(err), json_(json) {}

  void Add(const SkippedLocation& skipped) {
    const std::wstring reason = SkipReason(skipped);
    if (!told_.insert({skipped.item->Id(), skipped.location + L"\n" + reason}).second) return;
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
  std::set<std::pair<unsigned, std::wstring>> told_;
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
    if (json_) {
      out_.Line(L"{\"type\":\"trace\",\"id\":" + std::to_wstring(trace.item->Id()) + L",\"item\":" +
                JsonString(trace.item->Name()) + L",\"name\":" + JsonString(trace.name) + L",\"location\":" +
                JsonString(trace.location) + L",\"registry\":" + (trace.isRegistry ? L"true" : L"false") +
                L",\"bytes\":" + std::to_wstring(trace.bytes) + L"}");
    } else {
      out_.Line(trace.item->Name() + L"\t" + trace.name + L"\t" + trace.location);
    }
  }

  void Erased(int count, uint64_t bytes) override {
    deleted_ += count;
    deletedBytes_ += bytes;
  }
  void EraseFailed(const std::wstring& what) override {
    ++failed_;
    out_.Line(json_ ? L"{\"type\":\"failure\",\"path\":" + JsonString(what) + L"}" : L"failed\t" + what);
  }

  void LocationSkipped(const SkippedLocation& skipped) override { skips_.Add(skipped); }

  int Deleted() const { return deleted_; }
  uint64_t DeletedBytes() const { return deletedBytes_; }
  int Failed() const { return failed_; }

 private:
  BufferedOutput& out_;
  bool json_;
  const ConsoleOutput* progress_;
  SkipReport& skips_;
  int deleted_ = 0;
  uint64_t deletedBytes_ = 0;
  int failed_ = 0;
};

}  // namespace

int RunTraceCommand(TraceCommand command, const TraceCommandOptions& options, const CCatalogue& catalogue,
                    const ConsoleOutput& out, const ConsoleOutput& err, const StopToken& stop) {
  BufferedOutput lines(out);
  const std::vector<unsigned> ids = SelectedIds(options, catalogue);
  const FolderGuard guard(MachinePaths());
  SkipReport skips(lines, err, options.json);
  PrintingReports reports(lines, options.json, err.IsConsole() ? &err : nullptr, skips);

  const std::unique_ptr<ScanRun> run = MakeScanRun(catalogue.Root(), ids, catalogue.Rules());
  for (const std::wstring& domain : ReadCookiesToKeep(CIniFileRW(kSettingsFileName))) {
    (void)run->CookiesToKeep().Add(domain);
  }
  if (command == TraceCommand::kScan) {
    ScanItems(*run, nullptr, reports, stop, guard);
    const std::wstring traces = std::to_wstring(run->TraceCount());
    const std::wstring items = std::to_wstring(run->ItemsWithTraces());
    lines.Line(options.json ? L"{\"type\":\"summary\",\"traces\":" + traces + L",\"items\":" + items + L",\"bytes\":" +
                                  std::to_wstring(run->TraceBytes()) + L"}"
                            : traces + L" traces found in " + items + L" items, " + FormatByteSize(run->TraceBytes()) +
                                  L" to be recovered");
    return lines.Flush() ? 0 : 1;
  }

  if (options.source == SelectionSource::kOneClick) {
    // As the one-click worker does it: every ticked item is erased, found or not.
    RunOneClickErase(*run, nullptr, reports, stop, guard, stop);
  } else {
    ScanItems(*run, nullptr, reports, stop, guard);
    EraseFoundItems(*run, reports, guard, stop);
  }
  const std::wstring traces = std::to_wstring(run->TraceCount());
  const std::wstring deleted = std::to_wstring(reports.Deleted());
  const std::wstring failed = std::to_wstring(reports.Failed());
  const std::wstring skipped = std::to_wstring(skips.Count());
  lines.Line(options.json ? L"{\"type\":\"summary\",\"traces\":" + traces + L",\"deleted\":" + deleted +
                                L",\"failed\":" + failed + L",\"skipped\":" + skipped + L",\"bytes\":" +
                                std::to_wstring(reports.DeletedBytes()) + L"}"
                          : traces + L" traces found, " + deleted + L" deleted, " + failed + L" failed, " + skipped +
                                L" skipped, " + FormatByteSize(reports.DeletedBytes()) + L" recovered");
  const bool written = lines.Flush();
  return written && reports.Failed() == 0 && skips.Count() == 0 ? 0 : 1;
}

}  // namespace lumenor
