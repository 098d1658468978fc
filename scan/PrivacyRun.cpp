#include "scan/PrivacyRun.h"

#include "catalogue/Catalogue.h"
#include "engine/Locations.h"
#include "engine/RuleTraces.h"
#include "engine/RunningPrograms.h"
#include "engine/TraceEngine.h"
#include "settings/Settings.h"

#include <set>

namespace lumenor {

namespace {

void EraseOne(const ScanRun::Item& item, EraseTally& tally, const FolderGuard& guard, const RuleContext& context) {
  if (item.rule != nullptr) {
    EraseRuleItem(item, tally, context);
  } else {
    EraseItem(item, tally, guard, context.keep);
  }
}

}  // namespace

std::vector<CMyObject*> ItemsInCatalogueOrder(CMyObject* root, const std::vector<unsigned>& ids) {
  const std::set<unsigned> wanted(ids.begin(), ids.end());
  std::vector<CMyObject*> items;
  ForEachNode(root, [&](CMyObject& node) {
    if (node.Level() == CMyObject::kItem && wanted.count(node.Id()) != 0) items.push_back(&node);
  });
  return items;
}

std::unique_ptr<ScanRun> MakeScanRun(CMyObject* root, const std::vector<unsigned>& tickedIds,
                                     const rules::RuleBook* rules) {
  const std::vector<CMyObject*> items = ItemsInCatalogueOrder(root, tickedIds);
  return std::make_unique<ScanRun>(std::vector<const CMyObject*>(items.begin(), items.end()), rules);
}

void ScanItems(ScanRun& run, const CIniFileRW* recentTo, RunReports& reports, const StopToken& stop,
               const FolderGuard& guard) {
  reports.StageReached(RunStage::kScanStarted);
  if (recentTo != nullptr) {
    std::vector<unsigned> ids;
    for (const ScanRun::Item& item : run.Items()) ids.push_back(item.node->Id());
    // A selection that could not be saved changes nothing about this scan.
    (void)WriteSelection(*recentTo, Selection::kRecent, ids);
  }
  const RunningPrograms running = RunningPrograms::Now();
  const RememberedPaths paths(MachinePaths());
  const RuleContext context{paths, guard, running, run.CookiesToKeep()};
  std::vector<ScanRun::Item>& items = run.Items();
  for (size_t index = 0; index < items.size(); ++index) {
    if (items[index].rule != nullptr) {
      ScanRuleItem(run, items[index], reports, context, stop);
    } else {
      items[index].locations = FixedItemLocations(items[index].node->Id());
      ScanItem(run, items[index], reports, stop, guard);
    }
    if (stop.StopRequested()) {
      run.KeepFirst(index + 1);
      break;
    }
  }
  reports.StageReached(RunStage::kScanFinished);
}

void EraseFoundItems(const ScanRun& run, EraseTally& tally, const FolderGuard& guard, const StopToken& stop) {
  const RunningPrograms running = RunningPrograms::Now();
  const RememberedPaths paths(MachinePaths());
  const RuleContext context{paths, guard, running, run.CookiesToKeep()};
  for (const ScanRun::Item& item : run.Items()) {
    if (stop.StopRequested()) return;
    if (run.FoundCount(*item.node) > 0) EraseOne(item, tally, guard, context);
  }
}

void TickOneClickList(ItemSelection& selection, const CIniFileRW& settings) {
  selection.UntickAll();
  for (const unsigned id : ReadSelection(settings, Selection::kOneClick)) (void)selection.TickById(id);
}

void RunOneClickErase(ScanRun& run, const CIniFileRW* recentTo, RunReports& reports, const StopToken& stop,
                      const FolderGuard& guard, const StopToken& eraseStop) {
  ScanItems(run, recentTo, reports, stop, guard);
  reports.StageReached(RunStage::kEraseStarted);
  const RunningPrograms running = RunningPrograms::Now();
  const RememberedPaths paths(MachinePaths());
  const RuleContext context{paths, guard, running, run.CookiesToKeep()};
  for (const ScanRun::Item& item : run.Items()) {
    if (eraseStop.StopRequested()) break;
    EraseOne(item, reports, guard, context);
  }
  reports.StageReached(RunStage::kEraseFinished);
}

}  // namespace lumenor
