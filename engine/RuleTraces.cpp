#include "engine/RuleTraces.h"

#include "base/TextEncoding.h"
#include "browserdb/ChromiumFormData.h"
#include "browserdb/CookieDatabase.h"
#include "browserdb/FirefoxHistory.h"
#include "engine/FilePath.h"
#include "engine/FileTraces.h"
#include "engine/FolderWalk.h"
#include "engine/NeverDelete.h"
#include "engine/Registry.h"
#include "engine/RegistryTraces.h"
#include "rules/IniKeys.h"
#include "rules/NameMask.h"

#include <algorithm>
#include <functional>
#include <set>

namespace lumenor {

namespace {

using rules::FileScope;

bool SameText(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                                      static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

bool StartsWithText(std::wstring_view text, std::wstring_view start) {
  return text.size() >= start.size() && SameText(text.substr(0, start.size()), start);
}

uint64_t SizeOf(const WIN32_FIND_DATAW& entry) {
  return (static_cast<uint64_t>(entry.nFileSizeHigh) << 32) | entry.nFileSizeLow;
}

bool AnyMaskMatches(const std::vector<std::wstring>& masks, std::wstring_view name) {
  return std::any_of(masks.begin(), masks.end(),
                     [&](const std::wstring& mask) { return rules::MaskMatches(mask, name); });
}

bool TakesEveryFile(const std::vector<std::wstring>& masks) {
  return std::any_of(masks.begin(), masks.end(),
                     [](const std::wstring& mask) { return rules::MatchesEveryName(mask); });
}

// "C:\a\" for "C:\a\b\".
std::wstring ParentOf(const std::wstring& folder) {
  const size_t end = folder.find_last_of(L'\\', folder.size() >= 2 ? folder.size() - 2 : 0);
  return end == std::wstring::npos ? std::wstring() : folder.substr(0, end + 1);
}

// Tells each refusal once, however often a walk comes upon it.
class Refusals {
 public:
  Refusals(const CMyObject& node, std::function<void(const SkippedLocation&)> tell)
      : node_(node), tell_(std::move(tell)) {}

  void Tell(const std::wstring& where, FolderVerdict verdict, std::wstring_view why) {
    if (!told_.insert(where + L"\n" + std::wstring(why)).second) return;
    SkippedLocation skipped;
    skipped.item = &node_;
    skipped.index = static_cast<int>(told_.size());
    skipped.location = where;
    skipped.reason = verdict;
    skipped.why = why;
    tell_(skipped);
  }
  void Tell(const SkippedLocation& skipped) { Tell(skipped.location, skipped.reason, skipped.why); }

 private:
  const CMyObject& node_;
  std::function<void(const SkippedLocation&)> tell_;
  std::set<std::wstring> told_;
};

// The files of one planned folder: found, judged, and reported or deleted.
class FileWalk {
 public:
  enum class Mode { kScan, kErase };
  using FileFound = std::function<void(const std::wstring& folder, const WIN32_FIND_DATAW& entry)>;
  // A folder (ending with "\") the scope removes once emptied: with kScan one the erase
  // would remove, with kErase one it removed.
  using FolderGone = std::function<void(const std::wstring& folder)>;

  FileWalk(const PlannedFiles& files, const std::vector<PlannedExclusion>& exclusions, Refusals& refusals)
      : files_(files), exclusions_(exclusions), refusals_(refusals) {}

  // Calls `found` for every file that goes; with kErase, removes the emptied folders as the
  // scope asks once their files are handled. `gone` hears of each such folder.
  void Run(Mode mode, const StopToken& stop, const FileFound& found, const FolderGone& gone) {
    if (files_.oneFileOnly) {
      OneFiles(found);
      return;
    }
    if (files_.scope != FileScope::kEmptyFolders && !MayPickFilesIn(files_.folder)) return;
    const std::optional<SafePath> top = ReadFolderPath(files_.folder);
    if (!top) return;  // planned from a folder the rules read: cannot happen, and nothing to do
    const bool recursive = files_.scope != FileScope::kDirect;
    // The folders that keep something: a file that stays, a folder not entered or one
    // that stays itself. The others are empty once the erase is through with them.
    std::set<std::wstring> keeping;
    WalkFolder(
        *top, L"*", mode == Mode::kScan ? stop : StopToken(),
        [&](const WalkEntry& entry) {
          if (!entry.IsFolder()) {
            if (files_.scope != FileScope::kEmptyFolders && Goes(entry.folder, entry.found)) {
              found(entry.folder, entry.found);
            } else {
              keeping.insert(entry.folder);
            }
            return false;
          }
          const bool entered = recursive && MayEnter(entry.folder, entry.found);
          if (!entered) keeping.insert(entry.folder);
          return entered;
        },
        [&](const std::wstring& done) {
          const bool isTop = done == top->Text();
          const bool goes = !keeping.contains(done) && RemovedWhenEmpty(isTop) &&
                            (mode == Mode::kScan || RemoveDirectoryW(ForFileApi(done).c_str()) != FALSE);
          if (goes) {
            gone(done);
          } else if (!isTop) {
            keeping.insert(ParentOf(done));
          }
          keeping.erase(done);
        });
  }

 private:
  // A protected folder: only the files the masks name, nothing else of it.
  void OneFiles(const FileFound& found) {
    for (const std::wstring& name : files_.masks) {
      WIN32_FIND_DATAW entry{};
      const HANDLE search = FindFirstFileExW(ForFileApi(files_.folder + name).c_str(), FindExInfoBasic, &entry,
                                             FindExSearchNameMatch, nullptr, 0);
      if (search == INVALID_HANDLE_VALUE) continue;
      (void)FindClose(search);  // our own search
      if (IsFolder(entry.dwFileAttributes) || IsReparsePoint(entry.dwFileAttributes) ||
          !SameText(entry.cFileName, name)) {
        continue;
      }
      if (Goes(files_.folder, entry)) found(files_.folder, entry);
    }
  }

  bool Excluded(const std::wstring& folder, std::wstring_view name) const {
    for (const PlannedExclusion& exclusion : exclusions_) {
      const bool here = SameText(folder, exclusion.folder);
      const bool inside = exclusion.below && StartsWithText(folder, exclusion.folder);
      if (!here && !inside) continue;
      if (exclusion.masks.empty() || AnyMaskMatches(exclusion.masks, name)) return true;
    }
    return false;
  }

  bool WholeFolderExcluded(const std::wstring& folder) const {
    return std::any_of(exclusions_.begin(), exclusions_.end(), [&](const PlannedExclusion& exclusion) {
      return exclusion.below && exclusion.masks.empty() && StartsWithText(folder, exclusion.folder);
    });
  }

  // Whether the action picks files of this folder: not in a LevelDB database it would not
  // take whole.
  bool MayPickFilesIn(const std::wstring& folder) {
    if (WholeFolderExcluded(folder)) return false;
    if (!IsLevelDbFolder(folder)) return true;
    if (TakesEveryFile(files_.masks) && !ExcludesAnythingIn(folder)) return true;
    refusals_.Tell(folder, FolderVerdict::kAllowed, KeptReason(KeptBecause::kLevelDb));
    return false;
  }

  bool ExcludesAnythingIn(const std::wstring& folder) const {
    return std::any_of(exclusions_.begin(), exclusions_.end(), [&](const PlannedExclusion& exclusion) {
      return StartsWithText(exclusion.folder, folder) || StartsWithText(folder, exclusion.folder);
    });
  }

  bool MayEnter(const std::wstring& parent, const WIN32_FIND_DATAW& entry) {
    const std::wstring folder = parent + entry.cFileName + L"\\";
    if (IsReparsePoint(entry.dwFileAttributes)) {
      refusals_.Tell(folder, FolderVerdict::kLink, L"");
      return false;
    }
    if (IsKeptBrowserFolder(parent, entry.cFileName)) {
      refusals_.Tell(folder, FolderVerdict::kAllowed, KeptReason(KeptBecause::kBrowserFolder));
      return false;
    }
    return files_.scope == FileScope::kEmptyFolders || MayPickFilesIn(folder);
  }

  bool Goes(const std::wstring& folder, const WIN32_FIND_DATAW& entry) {
    const std::wstring_view name = entry.cFileName;
    if (!AnyMaskMatches(files_.masks, name) || Excluded(folder, name)) return false;
    if (IsNeverDeletedName(name)) {
      refusals_.Tell(folder + std::wstring(name), FolderVerdict::kAllowed, KeptReason(KeptBecause::kBrowserFile));
      return false;
    }
    const std::wstring_view database = SqliteDatabaseOf(name);
    if (!database.empty() && DatabaseStays(folder, database)) {
      refusals_.Tell(folder + std::wstring(name), FolderVerdict::kAllowed, KeptReason(KeptBecause::kSqliteJournal));
      return false;
    }
    return true;
  }

  // A journal goes only with its database: when the database is there and this action
  // does not take it too.
  bool DatabaseStays(const std::wstring& folder, std::wstring_view database) const {
    const std::wstring path = folder + std::wstring(database);
    if (GetFileAttributesW(ForFileApi(path).c_str()) == INVALID_FILE_ATTRIBUTES) return false;
    return !AnyMaskMatches(files_.masks, database) || Excluded(folder, database) || IsNeverDeletedName(database);
  }

  bool RemovedWhenEmpty(bool isTop) const {
    if (files_.scope != FileScope::kRemoveSelf && files_.scope != FileScope::kEmptyFolders) return false;
    return !isTop || !files_.keepFolder;
  }

  const PlannedFiles& files_;
  const std::vector<PlannedExclusion>& exclusions_;
  Refusals& refusals_;
};

// Whether a value found in a key lies in a key the item leaves alone.
bool InExcludedKey(const PlannedKey& key, std::wstring_view keyPath) {
  return std::any_of(key.excluded.begin(), key.excluded.end(), [&](const std::wstring& excluded) {
    return StartsWithText(keyPath, excluded) &&
           (keyPath.size() == excluded.size() || keyPath[excluded.size()] == L'\\');
  });
}

std::wstring KeyText(const PlannedKey& key, std::wstring_view path) {
  return std::wstring(RootPrefixOf(key.root)) + std::wstring(path);
}

using ValueFound = std::function<void(std::wstring_view keyPath, std::wstring_view name, uint64_t bytes)>;

void EachValueOf(HKEY root, const std::wstring& path, REGSAM view, const ValueFound& found) {
  const UniqueKey key = OpenKey(root, path, KEY_QUERY_VALUE, nullptr, view);
  if (!key || IsLinkKey(key.Get())) return;
  std::vector<wchar_t> name(16384);
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(name.size());
    DWORD bytes = 0;
    const LONG result = RegEnumValueW(key.Get(), index, name.data(), &length, nullptr, nullptr, nullptr, &bytes);
    if (result == ERROR_MORE_DATA) continue;
    if (result != ERROR_SUCCESS) return;
    found(path, std::wstring_view(name.data(), length), bytes);
  }
}

void ScanKey(const PlannedKey& key, const StopToken& stop, const ValueFound& found) {
  if (key.value) {
    ScanRegistryLocation(key.root, key.path, *key.value, stop, found, key.view);
  } else if (key.allValues) {
    EachValueOf(key.root, key.path, key.view, found);
  } else {
    ScanRegistryLocation(
        key.root, key.path, kWholeKey, stop,
        [&](std::wstring_view keyPath, std::wstring_view name, uint64_t bytes) {
          if (!InExcludedKey(key, keyPath)) found(keyPath, name, bytes);
        },
        key.view);
  }
}

void DeleteValues(const PlannedKey& key, const std::wstring& path, EraseTally& tally) {
  std::vector<std::pair<std::wstring, uint64_t>> values;
  EachValueOf(key.root, path, key.view,
              [&](std::wstring_view, std::wstring_view name, uint64_t bytes) { values.emplace_back(name, bytes); });
  const UniqueKey open = OpenKey(key.root, path, KEY_SET_VALUE, nullptr, key.view);
  for (const auto& [name, bytes] : values) {
    if (open && RegDeleteValueW(open.Get(), name.c_str()) == ERROR_SUCCESS) {
      tally.Erased(1, bytes);
    } else {
      tally.EraseFailed(KeyText(key, path) + L"\\" + name);
    }
  }
}

// A whole key with keys inside it that stay: everything else of it goes, level by level
// along the paths to the keys that stay, the key itself staying.
void EraseAround(const PlannedKey& key, EraseTally& tally) {
  std::vector<std::wstring> pending{key.path};
  while (!pending.empty()) {
    const std::wstring path = std::move(pending.back());
    pending.pop_back();
    DeleteValues(key, path, tally);
    std::vector<std::wstring> subKeys;
    if (const UniqueKey open = OpenKey(key.root, path, KEY_ENUMERATE_SUB_KEYS, nullptr, key.view)) {
      wchar_t name[256];
      for (DWORD index = 0;; ++index) {
        DWORD length = static_cast<DWORD>(std::size(name));
        if (RegEnumKeyExW(open.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
        subKeys.push_back(path + L"\\" + name);
      }
    }
    for (const std::wstring& subKey : subKeys) {
      if (InExcludedKey(key, subKey)) continue;
      const bool holdsExcluded = std::any_of(key.excluded.begin(), key.excluded.end(),
                                             [&](const std::wstring& e) { return StartsWithText(e, subKey + L"\\"); });
      if (holdsExcluded) {
        pending.push_back(subKey);
      } else {
        EraseRegistryLocation(key.root, subKey, kWholeKey, tally, key.view);
      }
    }
  }
}

void EraseKey(const PlannedKey& key, EraseTally& tally) {
  if (key.value) {
    EraseRegistryLocation(key.root, key.path, *key.value, tally, key.view);
  } else if (key.allValues) {
    DeleteValues(key, key.path, tally);
  } else if (key.excluded.empty()) {
    WeighedByScan weighed(tally, key.bytesFound);
    EraseRegistryLocation(key.root, key.path, kWholeKey, weighed, key.view);
    weighed.Finish();
  } else {
    EraseAround(key, tally);
  }
}

std::wstring ParameterOf(const PlannedDatabase& database, std::wstring_view name) {
  for (const auto& [parameter, value] : database.parameters) {
    if (SameText(parameter, name)) return value;
  }
  return {};
}

std::vector<std::string> KeysOf(const PlannedDatabase& database) {
  std::vector<std::string> keys;
  const std::wstring parameter = ParameterOf(database, L"keys");
  std::wstring_view text = parameter;
  while (!text.empty()) {
    const size_t semicolon = text.find(L';');
    const std::wstring_view key = text.substr(0, semicolon);
    if (!key.empty()) keys.push_back(ToUtf8(key));
    if (semicolon == std::wstring_view::npos) break;
    text.remove_prefix(semicolon + 1);
  }
  return keys;
}

// The content of a file of settings, read whole; nothing when it is missing, a link or
// larger than any settings file.
std::optional<std::string> ReadSettingsFile(const std::wstring& path) {
  constexpr DWORD kLimit = 16 * 1024 * 1024;
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(ForFileApi(path).c_str(), GetFileExInfoStandard, &data) == FALSE ||
      IsFolder(data.dwFileAttributes) || IsReparsePoint(data.dwFileAttributes) || data.nFileSizeHigh != 0 ||
      data.nFileSizeLow > kLimit) {
    return std::nullopt;
  }
  const HANDLE file = CreateFileW(ForFileApi(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  std::string text(data.nFileSizeLow, '\0');
  DWORD read = 0;
  const bool ok = text.empty() || ReadFile(file, text.data(), static_cast<DWORD>(text.size()), &read, nullptr) != FALSE;
  (void)CloseHandle(file);  // our own read handle
  if (!ok || read != text.size()) return std::nullopt;
  return text;
}

// Writes the file anew beside itself, then puts it in place in one step: a reader never
// sees half of it, and a failure leaves the old file as it was.
bool ReplaceSettingsFile(const std::wstring& path, const std::string& text) {
  const std::wstring fresh = path + L".lumenor-new";
  const HANDLE file =
      CreateFileW(ForFileApi(fresh).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  DWORD written = 0;
  const bool ok = (text.empty() || WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr)) &&
                  written == text.size() && FlushFileBuffers(file) != FALSE;
  (void)CloseHandle(file);  // written and flushed above, or given up
  if (ok && MoveFileExW(ForFileApi(fresh).c_str(), ForFileApi(path).c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE) {
    return true;
  }
  (void)DeleteFileW(ForFileApi(fresh).c_str());  // the half-made copy; the old file stays
  return false;
}

DatabaseScan ScanDatabase(const PlannedDatabase& database, const RuleContext& context, const StopToken& stop) {
  if (database.action == L"firefox-history") return ScanFirefoxHistory(database.file, stop);
  if (database.action == L"firefox-cookies")
    return ScanCookies(database.file, CookieStore::kFirefox, context.keep, stop);
  if (database.action == L"chromium-cookies") {
    return ScanCookies(database.file, CookieStore::kChromium, context.keep, stop);
  }
  if (database.action == L"chromium-form-data") return ScanChromiumFormData(database.file, stop);
  DatabaseScan scan;
  if (database.action == L"ini-values") {
    if (const auto text = ReadSettingsFile(database.file)) {
      for (const rules::IniKeyLine& line :
           rules::FindIniKeys(*text, ToUtf8(ParameterOf(database, L"section")), KeysOf(database))) {
        scan.lines.push_back({FromUtf8(line.key), 1, line.bytes, 0});
      }
    }
  }
  return scan;
}

DatabaseErase EraseDatabase(const PlannedDatabase& database, const RuleContext& context) {
  if (database.action == L"firefox-history") return EraseFirefoxHistory(database.file);
  if (database.action == L"firefox-cookies") return EraseCookies(database.file, CookieStore::kFirefox, context.keep);
  if (database.action == L"chromium-cookies") return EraseCookies(database.file, CookieStore::kChromium, context.keep);
  if (database.action == L"chromium-form-data") return EraseChromiumFormData(database.file);
  DatabaseErase erase;
  if (database.action == L"ini-values") {
    const auto text = ReadSettingsFile(database.file);
    if (!text) return erase;
    const std::string section = ToUtf8(ParameterOf(database, L"section"));
    const std::vector<std::string> keys = KeysOf(database);
    const size_t lines = rules::FindIniKeys(*text, section, keys).size();
    if (lines == 0) return erase;
    if (!ReplaceSettingsFile(database.file, rules::RemoveIniKeys(*text, section, keys))) {
      erase.failure = DatabaseFailure::kReadWriteError;
      return erase;
    }
    erase.rowsDeleted = lines;
  }
  return erase;
}

// A database line as a row: the host and its cookies, or the count of what goes.
std::wstring DatabaseRowName(const PlannedDatabase& database, const DatabaseLine& line) {
  if (database.action == L"firefox-cookies" || database.action == L"chromium-cookies") {
    return DatabaseLineText(DatabaseContent::kCookies, line);
  }
  if (database.action == L"firefox-history") return DatabaseLineText(DatabaseContent::kHistory, line);
  if (database.action == L"chromium-form-data") return DatabaseLineText(DatabaseContent::kFormData, line);
  return line.label;
}

}  // namespace

void ScanRuleItem(ScanRun& run, ScanRun::Item& item, TraceSink& sink, const RuleContext& context,
                  const StopToken& stop) {
  sink.ItemStarted(*item.node);
  item.plan = std::make_shared<RulePlan>(PlanRuleItem(*item.node, *item.rule, context, stop));
  RulePlan& plan = *item.plan;
  Refusals refusals(*item.node, [&](const SkippedLocation& skipped) { sink.LocationSkipped(skipped); });
  if (!plan.runningReason.empty()) {
    refusals.Tell(plan.runningWhat, FolderVerdict::kAllowed, plan.runningReason);
    sink.ItemFinished(*item.node);
    return;
  }
  for (const SkippedLocation& skipped : plan.skipped) refusals.Tell(skipped);
  for (const PlannedFiles& files : plan.files) {
    FileWalk(files, plan.exclusions, refusals)
        .Run(
            FileWalk::Mode::kScan, stop,
            [&](const std::wstring& folder, const WIN32_FIND_DATAW& entry) {
              ReportTrace(run, item, sink, folder, entry.cFileName, false, SizeOf(entry));
            },
            [&](const std::wstring& folder) {
              // A folder row: its name with the backslash, in the folder holding it.
              const std::wstring parent = ParentOf(folder);
              ReportTrace(run, item, sink, parent, std::wstring_view(folder).substr(parent.size()), false, 0);
            });
    if (stop.StopRequested()) break;
  }
  for (PlannedKey& key : plan.keys) {
    if (stop.StopRequested()) break;
    ScanKey(key, stop, [&](std::wstring_view keyPath, std::wstring_view name, uint64_t bytes) {
      key.bytesFound += bytes;
      ReportTrace(run, item, sink, KeyText(key, keyPath), name, true, bytes);
    });
  }
  for (PlannedDatabase& database : plan.databases) {
    if (stop.StopRequested()) break;
    const DatabaseScan scan = ScanDatabase(database, context, stop);
    if (scan.failure != DatabaseFailure::kNone) {
      refusals.Tell(database.file, FolderVerdict::kAllowed, FailureReason(scan.failure));
      continue;
    }
    const bool cookies = database.action == L"firefox-cookies" || database.action == L"chromium-cookies";
    for (const DatabaseLine& line : scan.lines) {
      database.bytesFound += line.bytes;
      if (cookies) database.hostsFound.push_back(line.label);
      ReportTrace(run, item, sink, database.file, DatabaseRowName(database, line), false, line.bytes);
    }
  }
  sink.ItemFinished(*item.node);
}

void EraseRuleItem(const ScanRun::Item& item, EraseTally& tally, const RuleContext& context) {
  if (item.plan == nullptr || item.rule == nullptr) return;
  const RulePlan& plan = *item.plan;
  Refusals refusals(*item.node, [&](const SkippedLocation& skipped) { tally.LocationSkipped(skipped); });
  // The application may have started since the scan: asked again now.
  const auto running = ApplicationRunning(*item.rule->application, context);
  if (running || !plan.runningReason.empty()) {
    refusals.Tell(running ? running->second : plan.runningWhat, FolderVerdict::kAllowed,
                  running ? running->first : plan.runningReason);
    return;
  }
  for (const SkippedLocation& skipped : plan.skipped) refusals.Tell(skipped);
  for (const PlannedFiles& files : plan.files) {
    FileWalk(files, plan.exclusions, refusals)
        .Run(
            FileWalk::Mode::kErase, StopToken(),
            [&](const std::wstring& folder, const WIN32_FIND_DATAW& entry) {
              const std::wstring path = folder + entry.cFileName;
              if (DeleteFileW(ForFileApi(path).c_str()) != FALSE) {
                tally.Erased(1, SizeOf(entry));
              } else {
                tally.EraseFailed(path);  // locked or read-only: it stays, nothing is forced
              }
            },
            [&](const std::wstring&) { tally.Erased(1, 0); });
  }
  for (const PlannedKey& key : plan.keys) EraseKey(key, tally);
  for (const PlannedDatabase& database : plan.databases) {
    const DatabaseErase erase = EraseDatabase(database, context);
    if (erase.rowsDeleted > 0)
      tally.Erased(static_cast<int>(std::min<uint64_t>(erase.rowsDeleted, INT32_MAX)), database.bytesFound);
    if (erase.failure != DatabaseFailure::kNone) {
      tally.EraseFailed(database.file + L" (" + std::wstring(FailureReason(erase.failure)) + L")");
    }
  }
}

}  // namespace lumenor
