#include "engine/TraceEngine.h"

#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "engine/FilePath.h"
#include "engine/FileTraces.h"
#include "engine/Registry.h"
#include "engine/RegistryTraces.h"
#include "engine/UrlHistory.h"

#include <windows.h>

namespace lumenor {

namespace {

// How a file location may be handled, as the folder guard decides.
struct FileLocationPlan {
  std::optional<SafeFolder> walk;  // set: the whole folder may be walked
  std::wstring oneFileFolder;      // set: only the named file of this folder may be touched
  SkippedLocation skipped;         // its reason is set: nothing may be touched
};

FileLocationPlan PlanFileLocation(const CMyObject& item, int index, const LocationRecord& location,
                                  const FolderGuard& guard) {
  FileLocationPlan plan;
  if (location.path.empty()) {
    return plan;  // the folder could not be found: there is nothing to look at
  }
  FolderGuard::Check check;
  plan.walk = guard.Admit(location.path, &check);
  if (plan.walk) {
    return plan;
  }
  if (check.verdict == FolderVerdict::kProtectedFolder && NamesOneFile(location.selector)) {
    plan.oneFileFolder = check.folder;
    return plan;
  }
  plan.skipped = {&item, index, check.folder.empty() ? location.path : check.folder, check.verdict};
  return plan;
}

void ReportTrace(CMyObject& item, TraceSink& sink, std::wstring location, std::wstring_view name, bool isRegistry) {
  FoundTrace trace;
  trace.item = &item;
  trace.name = name;
  trace.location = std::move(location);
  trace.isRegistry = isRegistry;
  item.IncrementFoundCount();
  if (CMyObject* application = item.Parent()) {
    application->IncrementFoundCount();
    if (CMyObject* category = application->Parent()) {
      category->IncrementFoundCount();
    }
  }
  sink.TraceFound(trace);
}

}  // namespace

void ScanItem(CMyObject& item, TraceSink& sink, const StopToken& stop, const FolderGuard& guard) {
  sink.ItemStarted(item);
  for (int index = 0; index < item.LocationCount(); ++index) {
    item.SetCurrentLocation(index);
    const LocationRecord& location = item.Locations()[static_cast<size_t>(index)];
    if (location.IsRegistry()) {
      ScanRegistryLocation(location.rootKey, location.path, location.selector, stop,
                           [&](std::wstring_view keyPath, std::wstring_view valueName) {
                             ReportTrace(item, sink, location.rootPrefix + std::wstring(keyPath), valueName, true);
                           });
      continue;
    }
    const FileLocationPlan plan = PlanFileLocation(item, index, location, guard);
    const auto report = [&](std::wstring_view folder, std::wstring_view fileName) {
      ReportTrace(item, sink, std::wstring(folder), fileName, false);
    };
    if (plan.walk) {
      ScanFileLocation(*plan.walk, location.selector, location.kind, stop, report);
    } else if (!plan.oneFileFolder.empty()) {
      ScanOneFile(plan.oneFileFolder, location.selector, location.kind, report);
    } else if (plan.skipped.item != nullptr) {
      sink.LocationSkipped(plan.skipped);
    }
  }
  sink.ItemFinished(item);
}

void EraseItem(CMyObject& item, EraseTally& tally, const FolderGuard& guard) {
  for (int index = 0; index < item.LocationCount(); ++index) {
    item.SetCurrentLocation(index);
    const LocationRecord& location = item.Locations()[static_cast<size_t>(index)];
    if (location.IsRegistry()) {
      EraseRegistryLocation(location.rootKey, location.path, location.selector, tally);
      continue;
    }
    const FileLocationPlan plan = PlanFileLocation(item, index, location, guard);
    if (plan.skipped.item != nullptr) {
      tally.LocationSkipped(plan.skipped);
      continue;
    }
    if (item.Id() == kItemVisitedSites) {
      ClearUrlHistoryStore();
    }
    if (plan.walk) {
      // The temporary folder and the shell's folders are emptied; programs expect them there.
      EraseFileLocation(*plan.walk, location.selector, tally, guard.IsWellKnownFolder(plan.walk->Path()));
    } else if (!plan.oneFileFolder.empty()) {
      EraseOneFile(plan.oneFileFolder, location.selector, tally);
    }
  }
}

bool RemoveListedTrace(const std::wstring& name, const std::wstring& location, bool isRegistry) {
  if (!isRegistry) {
    // The row holds the folder and name as the walk listed them: deleted as they stand,
    // so "a." is never read as "a". A folder that is not such a listing is refused.
    if (!IsExactFolderPath(location) || !NamesOneFile(name)) {
      return false;
    }
    return DeleteFileW(ForFileApi(location + name).c_str()) != FALSE;
  }
  // Every row is taken to be under the current user, whatever root it names; that is how
  // the list has always removed single values.
  const size_t rootEnd = location.find(L'\\');
  const std::wstring keyPath = rootEnd == std::wstring::npos ? std::wstring() : location.substr(rootEnd + 1);
  const UniqueKey key = OpenKey(HKEY_CURRENT_USER, keyPath, KEY_SET_VALUE);
  if (key) {
    (void)RegDeleteValueW(key.Get(), name.c_str());  // the row goes whether or not the value did
  }
  return true;
}

void ResetFoundCounts(CMyObject* root) {
  ForEachNode(root, [](CMyObject& node) { node.SetFoundCount(0); });
}

}  // namespace lumenor
