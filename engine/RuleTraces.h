// Scanning and erasing a rule item by its plan: the files its masks pick in its folders
// (never one that no rule may delete, never one it excludes, never through a link), its
// registry keys and values (keys it excludes staying), and its databases edited row by
// row. Each trace is reported with its size and counted in the run, and so is each
// folder a scope removes once emptied (with no size, its name ending with "\"); each
// refusal is reported once as a skip with its reason. Files that cannot be deleted are counted as
// failed and left in place: a rule never schedules a deletion for the next restart.
#pragma once

#include "engine/RulePlan.h"
#include "engine/ScanRun.h"

namespace lumenor {

void ScanRuleItem(ScanRun& run, ScanRun::Item& item, TraceSink& sink, const RuleContext& context,
                  const StopToken& stop);

// Erases what the scan's plan reaches. When the application runs now, nothing is touched
// and the skip is reported.
void EraseRuleItem(const ScanRun::Item& item, EraseTally& tally, const RuleContext& context);

}  // namespace lumenor
