#include "scan/PrivacyRun.h"

#include "catalogue/Catalogue.h"
#include "engine/Locations.h"
#include "engine/TraceEngine.h"
#include "settings/Settings.h"

#include <set>

namespace lumenor {

std::vector<CMyObject*> ItemsInCatalogueOrder(CMyObject* root, const std::vector<unsigned>& ids) {
  const std::set<unsigned> wanted(ids.begin(), ids.end());
  std::vector<CMyObject*> items;
  ForEachNode(root, [&](CMyObject& node) {
    if (node.Level() == CMyObject::kItem && wanted.count(node.Id()) != 0) items.push_back(&node);
  });
  return items;
}

std::vector<CMyObject*> ScanTickedItems(CMyObject* root, const std::vector<unsigned>& tickedIds,
                                        const CIniFileRW* recentTo, RunReports& reports, const StopToken& stop,
                                        const FolderGuard& guard) {
  reports.StageReached(RunStage::kScanStarted);
  ResetFoundCounts(root);
  std::vector<CMyObject*> items = ItemsInCatalogueOrder(root, tickedIds);
  if (recentTo != nullptr) {
    std::vector<unsigned> ids;
    for (const CMyObject* item : items) ids.push_back(item->Id());
    // A selection that could not be saved changes nothing about this scan.
    (void)WriteSelection(*recentTo, Selection::kRecent, ids);
  }
  for (size_t index = 0; index < items.size(); ++index) {
    FillLocations(*items[index]);
    ScanItem(*items[index], reports, stop, guard);
    if (stop.StopRequested()) {
      items.resize(index + 1);
      break;
    }
  }
  reports.StageReached(RunStage::kScanFinished);
  return items;
}

void EraseFoundItems(const std::vector<CMyObject*>& items, EraseTally& tally, const FolderGuard& guard,
                     const StopToken& stop) {
  for (CMyObject* item : items) {
    if (stop.StopRequested()) return;
    if (item->FoundCount() > 0) EraseItem(*item, tally, guard);
  }
}

void TickOneClickList(ItemSelection& selection, const CIniFileRW& settings) {
  selection.UntickAll();
  for (const unsigned id : ReadSelection(settings, Selection::kOneClick)) (void)selection.TickById(id);
}

void RunOneClickErase(CMyObject* root, const std::vector<unsigned>& tickedIds, const CIniFileRW* recentTo,
                      RunReports& reports, const StopToken& stop, const FolderGuard& guard,
                      const StopToken& eraseStop) {
  const std::vector<CMyObject*> scanned = ScanTickedItems(root, tickedIds, recentTo, reports, stop, guard);
  reports.StageReached(RunStage::kEraseStarted);
  for (CMyObject* item : scanned) {
    if (eraseStop.StopRequested()) break;
    EraseItem(*item, reports, guard);
  }
  ResetFoundCounts(root);
  reports.StageReached(RunStage::kEraseFinished);
}

}  // namespace lumenor
