// The privacy scan, erase and one-click erase as plain functions, without windows: the
// scan page runs them on its workers, lumenor-cli runs them in its own thread, the tests
// run them directly. They report through the engine's interfaces and a few stages the
// main window shows as status texts.
#pragma once

#include "base/StopToken.h"
#include "catalogue/CMyObject.h"
#include "engine/FolderSafety.h"
#include "engine/ScanRun.h"
#include "engine/TraceSink.h"
#include "scan/ItemSelection.h"
#include "settings/IniFileRW.h"

#include <memory>
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

// A run over the ticked ids' items, in catalogue order, with nothing found yet. It is
// made before its scan starts, so that a page can show its counts while a worker raises
// them. Items the rule book knows are scanned and erased by their rules.
std::unique_ptr<ScanRun> MakeScanRun(CMyObject* root, const std::vector<unsigned>& tickedIds,
                                     const rules::RuleBook* rules = nullptr);

// The scan of a run: its ids saved as the recent selection (when `recentTo` is given),
// then each item's locations filled and scanned in order. A stop request ends the scan
// after the item being scanned; the items after it leave the run, neither scanned nor
// erased later.
void ScanItems(ScanRun& run, const CIniFileRW* recentTo, RunReports& reports, const StopToken& stop,
               const FolderGuard& guard);

// Erases each item of the run whose scan found something, in order; a stop request ends
// it before the next item (the erase dialog has no stop, and passes none).
void EraseFoundItems(const ScanRun& run, EraseTally& tally, const FolderGuard& guard,
                     const StopToken& stop = StopToken());

// Unticks everything, then ticks the one-click list of the settings file. A missing count
// reads as one entry, itself reading as 1, which names no item: nothing is ticked then.
void TickOneClickList(ItemSelection& selection, const CIniFileRW& settings);

// The one-click erase after the list is ticked: a scan of the run, then an erase of every
// item scanned, whether the scan found anything in it or not. `stop` ends the scan;
// `eraseStop`, tested before each item of the erase, ends the erase too (the page's stop
// ends only the scan, the command line's the whole run).
void RunOneClickErase(ScanRun& run, const CIniFileRW* recentTo, RunReports& reports, const StopToken& stop,
                      const FolderGuard& guard, const StopToken& eraseStop = StopToken());

}  // namespace lumenor
