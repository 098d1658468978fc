#include "engine/RulePlan.h"

#include "engine/BrowserProfiles.h"
#include "engine/FilePath.h"
#include "engine/FileTraces.h"
#include "engine/FolderWalk.h"
#include "engine/NeverDelete.h"
#include "engine/ProtectedKeys.h"
#include "engine/Registry.h"
#include "engine/RuleFolders.h"
#include "rules/NameMask.h"

#include <algorithm>
#include <string_view>

namespace lumenor {

namespace {

// Wildcards that expand to more folders than this stop there: a rule reaching further is
// broader than any application's traces.
constexpr size_t kMaxFoldersPerAction = 10000;
constexpr size_t kMaxKeysPerAction = 10000;

using rules::FileScope;

std::wstring WithBackslash(std::wstring folder) {
  if (folder.empty() || folder.back() != L'\\') folder += L'\\';
  return folder;
}

bool SameText(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                                      static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

// The whole content of a small file; nothing when it is missing, a link, or larger.
std::optional<std::string> ReadSmallFile(const std::wstring& path, size_t limit) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(ForFileApi(path).c_str(), GetFileExInfoStandard, &data) == FALSE ||
      IsFolder(data.dwFileAttributes) || IsReparsePoint(data.dwFileAttributes) || data.nFileSizeHigh != 0 ||
      data.nFileSizeLow > limit) {
    return std::nullopt;
  }
  const HANDLE file = CreateFileW(ForFileApi(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  std::string text(data.nFileSizeLow, '\0');
  DWORD read = 0;
  const bool ok = text.empty() || ReadFile(file, text.data(), static_cast<DWORD>(text.size()), &read, nullptr) != FALSE;
  (void)CloseHandle(file);  // our own read handle
  if (!ok) return std::nullopt;
  text.resize(read);
  return text;
}

std::vector<std::wstring> SubFolderNames(const std::wstring& folder) {
  std::vector<std::wstring> names;
  (void)ListFolder(folder, L"*", [&names](const WalkEntry& entry) {  // unreadable: no profiles
    if (entry.IsFolder() && !entry.IsLink()) names.emplace_back(entry.Name());
  });
  return names;
}

// A profile folder and, for Mozilla's relative profiles, its local twin.
struct ProfileFolders {
  std::wstring folder;
  std::wstring localTwin;  // empty: none
};

std::vector<ProfileFolders> ChromiumProfiles(const std::wstring& root) {
  std::optional<std::vector<std::wstring>> names;
  if (const auto text = ReadSmallFile(root + L"Local State", kMaxLocalStateBytes)) {
    names = ChromiumProfilesFromLocalState(*text);
  }
  if (!names || names->empty()) names = ChromiumProfilesFromFolderNames(SubFolderNames(root));
  std::vector<ProfileFolders> profiles;
  for (const std::wstring& name : *names) profiles.push_back({root + name + L"\\", L""});
  return profiles;
}

std::vector<ProfileFolders> MozillaProfiles(const std::wstring& root, const std::vector<std::wstring>& localRoots) {
  std::vector<ProfileFolders> profiles;
  const auto text = ReadSmallFile(root + L"profiles.ini", size_t{1024} * 1024);
  if (!text) return profiles;
  for (const MozillaProfile& profile : MozillaProfilesFromIni(*text)) {
    if (!profile.isRelative) {
      profiles.push_back({WithBackslash(profile.path), L""});
      continue;
    }
    ProfileFolders folders{root + WithBackslash(profile.path), L""};
    for (const std::wstring& localRoot : localRoots) {
      folders.localTwin = localRoot + WithBackslash(profile.path);
      break;
    }
    profiles.push_back(std::move(folders));
  }
  return profiles;
}

// The folders the old built-in tests of the community file look for.
const wchar_t* SpecialDetectionPath(std::wstring_view name) {
  static constexpr std::pair<std::wstring_view, const wchar_t*> kTests[] = {
      {L"DET_CHROME", L"%LocalAppData%\\Google\\Chrome\\User Data"},
      {L"DET_MOZILLA", L"%AppData%\\Mozilla\\Firefox"},
      {L"DET_THUNDERBIRD", L"%AppData%\\Thunderbird"},
      {L"DET_OPERA", L"%AppData%\\Opera Software"},
  };
  for (const auto& [test, path] : kTests) {
    if (SameText(test, name)) return path;
  }
  return nullptr;
}

class Planner {
 public:
  Planner(const CMyObject& node, const RuleContext& context, const StopToken& stop, RulePlan& plan)
      : node_(node), context_(context), stop_(stop), plan_(plan) {}

  void Files(const rules::FileAction& action, const std::wstring& base) {
    const RuleFolders found = base.empty() ? FindRuleFolders(action.folder, context_.paths, stop_, kMaxFoldersPerAction)
                                           : FindFoldersBelow(base, action.folder, stop_, kMaxFoldersPerAction);
    for (const std::wstring& link : found.links) Skip(link, FolderVerdict::kLink, L"");
    if (found.overLimit) Skip(action.folder, FolderVerdict::kAllowed, L"more folders than a rule may reach");
    for (const std::wstring& folder : found.folders) AddFiles(folder, action);
  }

  void Registry(const rules::RegistryAction& action) {
    const HKEY root = HiveRoot(action.key.hive);
    for (const REGSAM view : ViewsOf(action.key.hive)) {
      for (const std::wstring& path : KeysFor(root, action.key.path, action.wildcards, view)) {
        const rules::RegistryKey concrete{action.key.hive, path};
        const bool wholeOrAll = !action.value || action.allValues;
        if (wholeOrAll && IsProtectedKey(concrete)) {
          Skip(std::wstring(RootPrefixOf(root)) + path, FolderVerdict::kAllowed, L"protected key");
          continue;
        }
        PlannedKey key{root, path, action.allValues ? std::nullopt : action.value, action.allValues, view, {}, 0};
        plan_.keys.push_back(std::move(key));
      }
    }
  }

  void Named(const rules::NamedAction& action, const std::wstring& base) {
    // The file's folder is found like any rule folder; the action edits the file in place.
    const size_t slash = action.file.find_last_of(L'\\');
    const std::wstring folderText = slash == std::wstring::npos ? std::wstring() : action.file.substr(0, slash);
    const std::wstring name = slash == std::wstring::npos ? action.file : action.file.substr(slash + 1);
    if (!IsUnambiguousFileName(name)) return;
    RuleFolders found;
    if (base.empty()) {
      found = FindRuleFolders(folderText, context_.paths, stop_, kMaxFoldersPerAction);
    } else {
      found = FindFoldersBelow(base, folderText, stop_, kMaxFoldersPerAction);
    }
    for (const std::wstring& link : found.links) Skip(link, FolderVerdict::kLink, L"");
    for (const std::wstring& folder : found.folders) {
      FolderGuard::Check check = context_.guard.Inspect(folder);
      if (check.verdict != FolderVerdict::kAllowed) {
        Skip(check.folder.empty() ? folder : check.folder, check.verdict, L"");
        continue;
      }
      plan_.databases.push_back({action.name, check.folder + name, action.parameters, 0, {}});
    }
  }

  void Profiles(const rules::ProfileAction& action) {
    const RuleFolders roots = FindRuleFolders(action.root, context_.paths, stop_, kMaxFoldersPerAction);
    for (const std::wstring& link : roots.links) Skip(link, FolderVerdict::kLink, L"");
    std::vector<std::wstring> localRoots;
    if (!action.localRoot.empty()) {
      localRoots = FindRuleFolders(action.localRoot, context_.paths, stop_, kMaxFoldersPerAction).folders;
    }
    for (const std::wstring& root : roots.folders) {
      const std::vector<ProfileFolders> profiles =
          action.kind == rules::ProfileKind::kChromium ? ChromiumProfiles(root) : MozillaProfiles(root, localRoots);
      for (const ProfileFolders& profile : profiles) {
        const DWORD attributes = GetFileAttributesW(ForFileApi(profile.folder).c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES || !IsFolder(attributes)) continue;
        if (IsReparsePoint(attributes)) {
          Skip(profile.folder, FolderVerdict::kLink, L"");
          continue;
        }
        for (const rules::FileAction& files : action.files) {
          if (files.inLocalTwin && profile.localTwin.empty()) continue;
          const std::wstring& base = files.inLocalTwin ? profile.localTwin : profile.folder;
          if (files.inLocalTwin && GetFileAttributesW(ForFileApi(base).c_str()) == INVALID_FILE_ATTRIBUTES) continue;
          Files(files, base);
        }
        for (const rules::NamedAction& named : action.named) Named(named, profile.folder);
      }
    }
  }

  void Exclusion(const rules::Exclusion& exclusion) {
    if (exclusion.kind == rules::Exclusion::Kind::kRegistryKey) {
      registryExclusions_.push_back(exclusion.key);
      return;
    }
    const RuleFolders found = FindRuleFolders(exclusion.folder, context_.paths, stop_, kMaxFoldersPerAction);
    for (const std::wstring& folder : found.folders) {
      plan_.exclusions.push_back({folder, exclusion.masks, exclusion.kind == rules::Exclusion::Kind::kFolder});
    }
  }

  // Keys that stay go to the whole-key actions that hold them.
  void ApplyRegistryExclusions() {
    for (PlannedKey& key : plan_.keys) {
      if (key.value || key.allValues) continue;
      for (const rules::RegistryKey& excluded : registryExclusions_) {
        if (HiveRoot(excluded.hive) != key.root) continue;
        const std::wstring& path = excluded.path;
        if (path.size() > key.path.size() && path[key.path.size()] == L'\\' &&
            SameText(std::wstring_view(path).substr(0, key.path.size()), key.path)) {
          key.excluded.push_back(path);
        } else if (SameText(path, key.path)) {
          key.path.clear();  // the whole key stays
        }
      }
    }
    std::erase_if(plan_.keys, [](const PlannedKey& key) { return key.path.empty(); });
  }

 private:
  void Skip(const std::wstring& where, FolderVerdict verdict, std::wstring why) {
    SkippedLocation skipped;
    skipped.item = &node_;
    skipped.index = static_cast<int>(plan_.skipped.size());
    skipped.location = where;
    skipped.reason = verdict;
    skipped.why = std::move(why);
    plan_.skipped.push_back(std::move(skipped));
  }

  void AddFiles(const std::wstring& folder, const rules::FileAction& action) {
    FolderGuard::Check check;
    const std::optional<SafeFolder> admitted = context_.guard.Admit(folder, &check);
    if (!admitted) {
      const bool namesFiles = action.scope == FileScope::kDirect && !action.masks.empty() &&
                              std::all_of(action.masks.begin(), action.masks.end(),
                                          [](const std::wstring& mask) { return NamesOneFile(mask); });
      if (check.verdict == FolderVerdict::kProtectedFolder && namesFiles) {
        plan_.files.push_back({check.folder, action.masks, action.scope, true, true});
        return;
      }
      Skip(check.folder.empty() ? folder : check.folder, check.verdict, L"");
      return;
    }
    if (LiesInKeptBrowserFolder(admitted->Path())) {
      Skip(admitted->Path(), FolderVerdict::kAllowed, std::wstring(KeptReason(KeptBecause::kBrowserFolder)));
      return;
    }
    plan_.files.push_back(
        {admitted->Path(), action.masks, action.scope, false, context_.guard.IsWellKnownFolder(admitted->Path())});
  }

  static std::vector<REGSAM> ViewsOf(rules::Hive hive) {
    // The machine's settings differ between the 64-bit and the 32-bit view; the user's
    // are one, seen alike through both.
    if (hive == rules::Hive::kLocalMachine || hive == rules::Hive::kClassesRoot) {
      return {KEY_WOW64_64KEY, KEY_WOW64_32KEY};
    }
    return {KEY_WOW64_64KEY};
  }

  // The keys a key path stands for: itself, or with its wildcard names matched against
  // the sub-keys there (registry links neither matched nor entered).
  std::vector<std::wstring> KeysFor(HKEY root, const std::wstring& path, bool wildcards, REGSAM view) const {
    if (!wildcards || !rules::HasWildcard(path)) return {path};
    std::vector<std::wstring> current{L""};
    std::wstring_view rest = path;
    while (!rest.empty()) {
      const size_t slash = rest.find(L'\\');
      const std::wstring name(rest.substr(0, slash));
      rest = slash == std::wstring_view::npos ? std::wstring_view() : rest.substr(slash + 1);
      std::vector<std::wstring> next;
      for (const std::wstring& parent : current) {
        const std::wstring prefix = parent.empty() ? L"" : parent + L"\\";
        if (!rules::HasWildcard(name)) {
          next.push_back(prefix + name);
          continue;
        }
        const UniqueKey key = OpenKey(root, parent, KEY_ENUMERATE_SUB_KEYS, nullptr, view);
        if (!key) continue;
        wchar_t subKey[256];
        for (DWORD index = 0; next.size() < kMaxKeysPerAction; ++index) {
          DWORD length = static_cast<DWORD>(std::size(subKey));
          if (RegEnumKeyExW(key.Get(), index, subKey, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            break;
          }
          if (!rules::MaskMatches(name, subKey)) continue;
          const UniqueKey child = OpenKey(key.Get(), subKey, KEY_QUERY_VALUE, nullptr, view);
          if (child && !IsLinkKey(child.Get())) next.push_back(prefix + subKey);
        }
      }
      current = std::move(next);
    }
    return current;
  }

  const CMyObject& node_;
  const RuleContext& context_;
  const StopToken& stop_;
  RulePlan& plan_;
  std::vector<rules::RegistryKey> registryExclusions_;
};

}  // namespace

HKEY HiveRoot(rules::Hive hive) {
  switch (hive) {
    case rules::Hive::kCurrentUser:
      return HKEY_CURRENT_USER;
    case rules::Hive::kLocalMachine:
      return HKEY_LOCAL_MACHINE;
    case rules::Hive::kUsers:
      return HKEY_USERS;
    case rules::Hive::kClassesRoot:
      return HKEY_CLASSES_ROOT;
    case rules::Hive::kCurrentConfig:
      return HKEY_CURRENT_CONFIG;
  }
  return HKEY_CURRENT_USER;
}

std::optional<std::pair<std::wstring, std::wstring>> ApplicationRunning(const rules::Application& application,
                                                                        const RuleContext& context) {
  const std::wstring reason = application.name + L" is running";
  for (const std::wstring& process : application.processes) {
    if (context.running.Runs(process)) return std::pair{reason, process};
  }
  for (const std::wstring& lockFile : application.lockFiles) {
    // "...\Profiles\*\parent.lock": one lock file in each profile the wildcard finds.
    const size_t slash = lockFile.find_last_of(L'\\');
    if (slash == std::wstring::npos) continue;
    const std::wstring name = lockFile.substr(slash + 1);
    const RuleFolders folders =
        FindRuleFolders(std::wstring_view(lockFile).substr(0, slash), context.paths, StopToken(), kMaxFoldersPerAction);
    for (const std::wstring& folder : folders.folders) {
      if (!rules::HasWildcard(name)) {
        if (IsFileHeldOpen(folder + name)) return std::pair{reason, folder + name};
        continue;
      }
      std::optional<std::wstring> held;
      (void)ListFolder(folder, L"*", [&](const WalkEntry& entry) {  // unreadable: nothing held there
        if (held || entry.IsFolder() || !rules::MaskMatches(name, entry.Name())) return;
        if (IsFileHeldOpen(entry.Path())) held = entry.Path();
      });
      if (held) return std::pair{reason, *held};
    }
  }
  return std::nullopt;
}

RulePlan PlanRuleItem(const CMyObject& node, const rules::RuleBook::Entry& entry, const RuleContext& context,
                      const StopToken& stop) {
  RulePlan plan;
  if (const auto running = ApplicationRunning(*entry.application, context)) {
    plan.runningReason = running->first;
    plan.runningWhat = running->second;
    return plan;
  }
  Planner planner(node, context, stop, plan);
  const rules::Item& item = *entry.item;
  for (const rules::Exclusion& exclusion : item.exclusions) planner.Exclusion(exclusion);
  for (const rules::FileAction& files : item.files) planner.Files(files, L"");
  for (const rules::RegistryAction& registry : item.registry) planner.Registry(registry);
  for (const rules::ProfileAction& profiles : item.profiles) planner.Profiles(profiles);
  for (const rules::NamedAction& named : item.named) planner.Named(named, L"");
  planner.ApplyRegistryExclusions();
  return plan;
}

rules::WindowsVersion RunningWindowsVersion() {
  // GetVersionEx answers what the program's manifest admits to; the kernel tells the truth.
  using RtlGetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOW*);
  static const auto rtlGetVersion = reinterpret_cast<RtlGetVersionFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  if (rtlGetVersion == nullptr || rtlGetVersion(&version) != 0) return {};
  return {static_cast<int>(version.dwMajorVersion), static_cast<int>(version.dwMinorVersion)};
}

bool IsDetected(const rules::Detection& detection, const SystemPaths& paths) {
  if (detection.minimumWindows || detection.maximumWindows) {
    const rules::WindowsVersion running = RunningWindowsVersion();
    if (detection.minimumWindows && running < *detection.minimumWindows) return false;
    if (detection.maximumWindows && running > *detection.maximumWindows) return false;
  }
  if (detection.Empty()) return true;
  for (const rules::RegistryKey& key : detection.keys) {
    for (const REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
      if (OpenKey(HiveRoot(key.hive), key.path, KEY_QUERY_VALUE, nullptr, view)) return true;
    }
  }
  for (const std::wstring& path : detection.paths) {
    if (RulePathExists(path, paths)) return true;
  }
  for (const std::wstring& special : detection.special) {
    if (const wchar_t* path = SpecialDetectionPath(special); path != nullptr && RulePathExists(path, paths)) {
      return true;
    }
  }
  return false;
}

bool IsRuleDetected(const rules::RuleBook::Entry& entry, const SystemPaths& paths) {
  return IsDetected(entry.application->detection, paths) && IsDetected(entry.item->detection, paths);
}

}  // namespace lumenor
