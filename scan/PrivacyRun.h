// The privacy scan, erase and one-click erase as plain functions, without windows: the
// scan page runs them on its workers, lumenor-cli runs them in its own thread, the tests
// run them directly. They report through the engine's interfaces and a few stages the
// main window shows as status texts.
#pragma once

#include "base/StopToken.h"
#include "catalogue/CMyObject.h"
#include "engine/FolderSafety.h"
#include "engine/TraceSink.h"
#include "scan/ItemSelection.h"
#include "settings/IniFileRW.h"

#include <vector>

namespace lumenor {

enum class RunStage {
  kScanStarted,    // "Scanning in process"
  kScanFinished,   // "Scanning is completed"
  kEraseStarted,   // "Deleting in process" (one-click only)
  kEraseFinished,  // "Deleting is completed" (one-click only)
};

// Everything a run tells: the traces, the deletions, the skipped locations, the stages.
class RunReports : public TraceSink, public EraseTally {
 public:
  virtual void StageReached(RunStage stage) = 0;
};

// The catalogue items the ids name, in catalogue order; ids without an item (such as the
// one-click tree's "Favorites") are left out.
std::vector<CMyObject*> ItemsInCatalogueOrder(CMyObject* root, const std::vector<unsigned>& ids);

// A scan of the ticked items: every node's found count back to 0, the ids saved as the
// recent selection (when `recentTo` is given), then each item's locations filled and
// scanned in order. A stop request ends the run after the item being scanned. Returns the
// items scanned: those cut off by a stop are neither scanned nor erased later.
std::vector<CMyObject*> ScanTickedItems(CMyObject* root, const std::vector<unsigned>& tickedIds,
                                        const CIniFileRW* recentTo, RunReports& reports, const StopToken& stop,
                                        const FolderGuard& guard);

// Erases each item whose last scan found something, in order.
void EraseFoundItems(const std::vector<CMyObject*>& items, EraseTally& tally, const FolderGuard& guard);

// Unticks everything, then ticks the one-click list of the settings file. A missing count
// reads as one entry, itself reading as 1, which names no item: nothing is ticked then.
void TickOneClickList(ItemSelection& selection, const CIniFileRW& settings);

// The one-click erase after the list is ticked: a scan of the ticked items, then an erase
// of every one of them, whether the scan found anything in it or not.
void RunOneClickErase(CMyObject* root, const std::vector<unsigned>& tickedIds, const CIniFileRW* recentTo,
                      RunReports& reports, const StopToken& stop, const FolderGuard& guard);

}  // namespace lumenor
