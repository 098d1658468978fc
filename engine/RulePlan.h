// What a rule item means on this machine for one run: its variables and wildcards turned
// into the folders, keys and databases there are, each through the folder rules, with
// what it leaves alone and what it was refused. A scan makes the plan; its erase works on
// the same plan, so an erase deletes only where its scan looked.
#pragma once

#include "base/StopToken.h"
#include "browserdb/CookieKeepList.h"
#include "engine/FolderSafety.h"
#include "engine/RunningPrograms.h"
#include "engine/SystemPaths.h"
#include "engine/TraceSink.h"
#include "rules/RuleBook.h"

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lumenor {

// What planning and the traces of a rule need from the machine and the user.
struct RuleContext {
  const SystemPaths& paths;
  const FolderGuard& guard;
  const RunningPrograms& running;
  const CookieKeepList& keep;
};

// Files of one folder to clean. `folder` passed the folder rules whole; when it did not,
// because it is a protected folder, `oneFileOnly` is set and only the files the masks
// name one by one are looked at, nothing below.
struct PlannedFiles {
  std::wstring folder;  // canonical, ending with "\"
  std::vector<std::wstring> masks;
  rules::FileScope scope = rules::FileScope::kDirect;
  bool oneFileOnly = false;
  bool keepFolder = false;  // a folder Windows and programs expect: emptied, never removed
};

struct PlannedKey {
  HKEY root = nullptr;
  std::wstring path;
  std::optional<std::wstring> value;
  bool allValues = false;
  REGSAM view = 0;
  std::vector<std::wstring> excluded;  // keys below `path` that stay, as paths under the root
  uint64_t bytesFound = 0;             // what the scan found, for the erase to report
};

struct PlannedDatabase {
  std::wstring action;  // the named action's name
  std::wstring file;    // the exact path
  std::vector<std::pair<std::wstring, std::wstring>> parameters;
  uint64_t bytesFound = 0;  // what the scan found, for the erase to report
  // A cookie action's scan: the hosts whose cookies the erase would delete.
  std::vector<std::wstring> hostsFound;
};

// Files an item leaves alone: those of `folder` (and, when `below`, of every folder under
// it) whose names match a mask (every file when there are no masks).
struct PlannedExclusion {
  std::wstring folder;  // canonical, ending with "\"
  std::vector<std::wstring> masks;
  bool below = false;
};

struct RulePlan {
  // Set when the application runs: nothing of the item is touched. The words of the skip.
  std::wstring runningReason;
  std::wstring runningWhat;  // the process or lock file that told
  std::vector<PlannedFiles> files;
  std::vector<PlannedKey> keys;
  std::vector<PlannedDatabase> databases;
  std::vector<PlannedExclusion> exclusions;
  // Refusals found while planning, each told once: links, protected folders and keys,
  // folders no rule may reach.
  std::vector<SkippedLocation> skipped;
};

// Whether a process of the application runs or one of its lock files is held: the skip's
// words ("Google Chrome is running") and what told it; nothing when it does not run.
std::optional<std::pair<std::wstring, std::wstring>> ApplicationRunning(const rules::Application& application,
                                                                        const RuleContext& context);

// The plan of one rule item for this machine.
RulePlan PlanRuleItem(const CMyObject& node, const rules::RuleBook::Entry& entry, const RuleContext& context,
                      const StopToken& stop);

// Whether the application and the item apply on this machine: any of their detects found
// (none: always), within their Windows versions.
bool IsRuleDetected(const rules::RuleBook::Entry& entry, const SystemPaths& paths);
bool IsDetected(const rules::Detection& detection, const SystemPaths& paths);

// The running Windows version, as the system reports it to programs that ask the kernel.
rules::WindowsVersion RunningWindowsVersion();

// "HKEY_CURRENT_USER" and the like for a hive.
HKEY HiveRoot(rules::Hive hive);

}  // namespace lumenor
