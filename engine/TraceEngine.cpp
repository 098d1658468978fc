#include "engine/TraceEngine.h"

#include "catalogue/ItemIds.h"
#include "engine/FilePath.h"
#include "engine/FileTraces.h"
#include "engine/FirefoxStores.h"
#include "engine/NeverDelete.h"
#include "engine/Registry.h"
#include "engine/RegistryTraces.h"
#include "engine/UrlHistory.h"

#include <windows.h>

#include <algorithm>
#include <vector>

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
  plan.skipped = {&item, index, check.folder.empty() ? location.path : check.folder, check.verdict, L""};
  return plan;
}

// Whether a location of the item names one of Firefox's databases that may have to stay
// (or its journal). "cookies.sqlite" only while a domain is kept: otherwise it goes as a
// file, as it always has.
bool IsFirefoxStoreLocation(unsigned itemId, const LocationRecord& location, const CookieKeepList& keep) {
  std::optional<FirefoxStore> store = FirefoxStoreOf(itemId, location.selector);
  if (!store) store = FirefoxStoreJournalOf(itemId, location.selector);
  return store && (*store != FirefoxStore::kCookies || !keep.Empty());
}

// A Firefox database, or its journal, found in a store location, and how it is treated.
struct FoundStoreFile {
  std::wstring folder;
  std::wstring name;
  uint64_t bytes = 0;
  FirefoxStore store = FirefoxStore::kPlaces;
  bool isJournal = false;
  StoreUse use;
};

std::vector<FoundStoreFile> FindStoreFiles(const ScanRun::Item& item, const SafeFolder& folder,
                                           const LocationRecord& location, const CookieKeepList& keep,
                                           const StopToken& stop) {
  std::vector<FoundStoreFile> found;
  const unsigned id = item.node->Id();
  ScanFileLocation(folder, location.selector, location.kind, stop,
                   [&](std::wstring_view where, std::wstring_view fileName, uint64_t bytes) {
                     FoundStoreFile file;
                     file.folder = where;
                     file.name = fileName;
                     file.bytes = bytes;
                     const std::optional<FirefoxStore> store = FirefoxStoreOf(id, fileName);
                     file.isJournal = !store;
                     file.store = store ? *store : FirefoxStoreJournalOf(id, fileName).value_or(FirefoxStore::kPlaces);
                     // A journal goes only with its database: it follows what is done with that.
                     const std::wstring database =
                         file.folder + (file.isJournal ? std::wstring(SqliteDatabaseOf(fileName)) : file.name);
                     file.use = DecideFirefoxStore(file.store, database, keep, stop);
                     found.push_back(std::move(file));
                   });
  return found;
}

SkippedLocation KeptStoreFile(const ScanRun::Item& item, size_t index, const FoundStoreFile& file) {
  const std::wstring_view why =
      file.isJournal ? KeptReason(KeptBecause::kSqliteJournal) : FailureReason(file.use.failure);
  return {item.node, static_cast<int>(index), file.folder + file.name, FolderVerdict::kAllowed, std::wstring(why)};
}

// The scan of a store location: each database as a file, as the rows an erase would
// delete, or as kept.
void ScanStoreLocation(ScanRun& run, const ScanRun::Item& item, size_t index, const SafeFolder& folder, TraceSink& sink,
                       const StopToken& stop) {
  const LocationRecord& location = item.locations[index];
  const CookieKeepList& keep = run.CookiesToKeep();
  for (const FoundStoreFile& file : FindStoreFiles(item, folder, location, keep, stop)) {
    if (file.use.way == StoreUse::Way::kWholeFile) {
      ReportTrace(run, item, sink, file.folder, file.name, false, file.bytes);
      continue;
    }
    if (file.isJournal || file.use.way == StoreUse::Way::kKept) {
      sink.LocationSkipped(KeptStoreFile(item, index, file));
      continue;
    }
    const std::wstring path = file.folder + file.name;
    const DatabaseScan scan = ScanFirefoxStore(file.store, path, keep, stop);
    if (scan.failure != DatabaseFailure::kNone) {
      sink.LocationSkipped({item.node, static_cast<int>(index), path, FolderVerdict::kAllowed,
                            std::wstring(FailureReason(scan.failure))});
      continue;
    }
    // Rows named by what goes, under the database's own path: a row of the list can never
    // be taken for the file itself.
    for (const DatabaseLine& line : scan.lines) {
      ReportTrace(run, item, sink, path, DatabaseLineText(FirefoxStoreContent(file.store), line), false, line.bytes);
    }
  }
}

void EraseStoreLocation(const ScanRun::Item& item, size_t index, const SafeFolder& folder, EraseTally& tally,
                        const CookieKeepList& keep) {
  for (const FoundStoreFile& file : FindStoreFiles(item, folder, item.locations[index], keep, StopToken())) {
    const std::wstring path = file.folder + file.name;
    if (file.use.way == StoreUse::Way::kWholeFile) {
      EraseOneFile(file.folder, file.name, tally);
    } else if (file.isJournal) {
      tally.LocationSkipped(KeptStoreFile(item, index, file));
    } else if (file.use.way == StoreUse::Way::kKept) {
      tally.EraseFailed(path + L" (" + std::wstring(FailureReason(file.use.failure)) + L")");
    } else {
      uint64_t bytes = 0;
      for (const DatabaseLine& line : ScanFirefoxStore(file.store, path, keep).lines) bytes += line.bytes;
      const DatabaseErase erase = EraseFirefoxStore(file.store, path, keep);
      if (erase.rowsDeleted > 0) {
        tally.Erased(static_cast<int>(std::min<uint64_t>(erase.rowsDeleted, INT32_MAX)), bytes);
      }
      if (erase.failure != DatabaseFailure::kNone) {
        tally.EraseFailed(path + L" (" + std::wstring(FailureReason(erase.failure)) + L")");
      }
    }
  }
}

}  // namespace

void ScanItem(ScanRun& run, ScanRun::Item& item, TraceSink& sink, const StopToken& stop, const FolderGuard& guard) {
  sink.ItemStarted(*item.node);
  item.locationBytes.assign(item.locations.size(), 0);
  for (size_t index = 0; index < item.locations.size(); ++index) {
    const LocationRecord& location = item.locations[index];
    if (location.IsRegistry()) {
      ScanRegistryLocation(location.rootKey, location.path, location.selector, stop,
                           [&](std::wstring_view keyPath, std::wstring_view valueName, uint64_t dataBytes) {
                             item.locationBytes[index] += dataBytes;
                             ReportTrace(run, item, sink, location.rootPrefix + std::wstring(keyPath), valueName, true,
                                         dataBytes);
                           });
      continue;
    }
    const FileLocationPlan plan = PlanFileLocation(*item.node, static_cast<int>(index), location, guard);
    const auto report = [&](std::wstring_view folder, std::wstring_view fileName, uint64_t bytes) {
      ReportTrace(run, item, sink, std::wstring(folder), fileName, false, bytes);
    };
    if (plan.walk && IsFirefoxStoreLocation(item.node->Id(), location, run.CookiesToKeep())) {
      ScanStoreLocation(run, item, index, *plan.walk, sink, stop);
    } else if (plan.walk) {
      ScanFileLocation(*plan.walk, location.selector, location.kind, stop, report);
    } else if (!plan.oneFileFolder.empty()) {
      ScanOneFile(plan.oneFileFolder, location.selector, location.kind, report);
    } else if (plan.skipped.item != nullptr) {
      sink.LocationSkipped(plan.skipped);
    }
  }
  sink.ItemFinished(*item.node);
}

void EraseItem(const ScanRun::Item& item, EraseTally& tally, const FolderGuard& guard, const CookieKeepList& keep) {
  for (size_t index = 0; index < item.locations.size(); ++index) {
    const LocationRecord& location = item.locations[index];
    if (location.IsRegistry()) {
      const uint64_t scanned = index < item.locationBytes.size() ? item.locationBytes[index] : 0;
      WeighedByScan weighed(tally, location.selector == kWholeKey ? scanned : 0);
      EraseRegistryLocation(location.rootKey, location.path, location.selector, weighed);
      weighed.Finish();
      continue;
    }
    const FileLocationPlan plan = PlanFileLocation(*item.node, static_cast<int>(index), location, guard);
    if (plan.skipped.item != nullptr) {
      tally.LocationSkipped(plan.skipped);
      continue;
    }
    if (item.node->Id() == kItemVisitedSites) {
      ClearUrlHistoryStore();
    }
    if (plan.walk && IsFirefoxStoreLocation(item.node->Id(), location, keep)) {
      EraseStoreLocation(item, index, *plan.walk, tally, keep);
    } else if (plan.walk) {
      // The temporary folder and the shell's folders are emptied; programs expect them there.
      EraseFileLocation(*plan.walk, location.selector, tally, guard.IsWellKnownFolder(plan.walk->Path()));
    } else if (!plan.oneFileFolder.empty()) {
      EraseOneFile(plan.oneFileFolder, location.selector, tally);
    }
  }
}

std::optional<uint64_t> RemoveListedTrace(const std::wstring& name, const std::wstring& location, bool isRegistry) {
  if (!isRegistry) {
    // The row holds the folder and name as the walk listed them: deleted as they stand,
    // so "a." is never read as "a". A folder that is not such a listing is refused.
    const bool isFolder = !name.empty() && name.back() == L'\\';
    const std::wstring ownName = isFolder ? name.substr(0, name.size() - 1) : name;
    if (!IsExactFolderPath(location) || !NamesOneFile(ownName)) {
      return std::nullopt;
    }
    if (isFolder) {
      // A folder a rule removes once empty: removed only as the empty folder it is.
      if (RemoveDirectoryW(ForFileApi(location + name).c_str()) == FALSE) {
        return std::nullopt;
      }
      return uint64_t{0};
    }
    const std::wstring path = ForFileApi(location + name);
    WIN32_FILE_ATTRIBUTE_DATA data{};
    const uint64_t bytes = GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) != FALSE
                               ? (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow
                               : 0;
    if (DeleteFileW(path.c_str()) == FALSE) {
      return std::nullopt;
    }
    return bytes;
  }
  // Every row is taken to be under the current user, whatever root it names; that is how
  // the list has always removed single values.
  const size_t rootEnd = location.find(L'\\');
  const std::wstring keyPath = rootEnd == std::wstring::npos ? std::wstring() : location.substr(rootEnd + 1);
  const UniqueKey key = OpenKey(HKEY_CURRENT_USER, keyPath, KEY_SET_VALUE | KEY_QUERY_VALUE);
  DWORD bytes = 0;
  if (key && RegQueryValueExW(key.Get(), name.c_str(), nullptr, nullptr, nullptr, &bytes) != ERROR_SUCCESS) {
    bytes = 0;
  }
  if (!key || RegDeleteValueW(key.Get(), name.c_str()) != ERROR_SUCCESS) {
    return uint64_t{0};  // the row goes whether or not the value did; nothing went with it
  }
  return uint64_t{bytes};
}

}  // namespace lumenor
