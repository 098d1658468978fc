// What a cleaning rule says, as data: applications with their items, and what each item
// cleans. Our own XML rule files, the built-in rules and the community's winapp2.ini are
// all read into this one model; the engine expands its variables and wildcards on the
// machine and runs it through the same primitives and folder rules as the fixed items.
// Nothing here touches the system: readers fill it, the engine interprets it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumenor::rules {

// Where a rule was written, for reports: the file, its line (1-based) and column (1-based,
// 0 when the format has no columns).
struct SourcePosition {
  std::wstring file;
  int line = 0;
  int column = 0;
};

// A fault in a rule file. Readers never stop at one: the rule or entry at fault is left
// out (or the part of it that is at fault), and the rest is read.
struct Problem {
  SourcePosition where;
  std::wstring entry;    // the application, item or entry it concerns, when there is one
  std::wstring message;  // plain words: "unknown variable %Package%", ...
};

enum class Hive { kCurrentUser, kLocalMachine, kUsers, kClassesRoot, kCurrentConfig };

// "HKCU", "HKEY_CURRENT_USER", ... (any letter case); nothing for anything else.
std::optional<Hive> HiveFromName(std::wstring_view name);

// A key written as "HKCU\Software\..." split into its hive and its path below the hive
// (no leading or trailing backslash). The path may be empty: the hive itself. In a
// registry action of our own rule files, a name of the path may hold `*` and `?`, each
// matched against one sub-key name ("...\User MRU\*\File MRU").
struct RegistryKey {
  Hive hive = Hive::kCurrentUser;
  std::wstring path;
};

// How far below its folder a file action reaches.
enum class FileScope {
  kDirect,        // files directly in the folder
  kRecursive,     // also in every folder below
  kRemoveSelf,    // as kRecursive, then the emptied folders below and the folder itself,
                  // each only when it is empty
  kEmptyFolders,  // only the empty folders below the folder, and the folder when empty
};

// Files to clean. `folder` is written with variables ("%LocalAppData%\Google\...") and
// may hold `*` and `?` in any of its names, each matched against one folder name; inside
// a profile action it is relative to the profile folder (empty: the profile itself).
// Each mask is matched against a whole file name, letter case aside; `*` and `*.*` match
// every file, with or without an extension.
struct FileAction {
  std::wstring folder;
  std::vector<std::wstring> masks;
  FileScope scope = FileScope::kDirect;
  // Inside a Mozilla profile action: the folder is in the profile's local twin (under
  // Local AppData, where the caches are) rather than in the profile itself.
  bool inLocalTwin = false;
  SourcePosition where;
};

// A key with everything below it (no value name), one value of it, or every value of it
// (`allValues`: the key and its sub-keys stay).
struct RegistryAction {
  RegistryKey key;
  std::optional<std::wstring> value;
  bool allValues = false;
  // Whether `*` and `?` in the key's names are wildcards (our rule files) or part of the
  // name (winapp2.ini, where "HKCR\*" is the key named "*").
  bool wildcards = false;
  SourcePosition where;
};

// An action that code implements, named in the rule: "firefox-history",
// "chromium-cookies", ... `file` is the file it works on, written like a FileAction's
// folder (relative inside a profile action); `parameters` are what the action takes
// besides ("section" and "keys" of "ini-values"). An unknown name, or a parameter the
// action does not take, is a problem of the rule file, found when it is loaded.
struct NamedAction {
  std::wstring name;
  std::wstring file;
  std::vector<std::pair<std::wstring, std::wstring>> parameters;
  SourcePosition where;
};

// The named actions the program implements, and the parameters each takes.
struct NamedActionKind {
  std::wstring_view name;
  std::vector<std::wstring_view> parameters;
};
const std::vector<NamedActionKind>& KnownNamedActions();
const NamedActionKind* FindNamedAction(std::wstring_view name);

enum class ProfileKind {
  kChromium,  // the profiles of a Chromium user data root ("Local State", or the folders)
  kMozilla,   // the [ProfileN] sections of a profiles.ini
};

// The same actions for every profile of a browser or mail client. `root` is the user data
// root (Chromium) or the folder holding profiles.ini (Mozilla), with variables;
// `localRoot` is the Mozilla folder under Local AppData that holds the local twins.
struct ProfileAction {
  ProfileKind kind = ProfileKind::kChromium;
  std::wstring root;
  std::wstring localRoot;
  std::vector<FileAction> files;
  std::vector<NamedAction> named;
  SourcePosition where;
};

// What an item leaves alone although its actions would reach it.
struct Exclusion {
  enum class Kind {
    kFiles,        // files of `folder` named by `masks` (the names themselves)
    kFolder,       // files of `folder` and below that match `masks` (every file when empty)
    kRegistryKey,  // `key` and everything below it
  };
  Kind kind = Kind::kFiles;
  std::wstring folder;  // with variables and wildcards, as FileAction::folder
  std::vector<std::wstring> masks;
  RegistryKey key;
  SourcePosition where;
};

// Windows versions as major.minor: 6.1 is Windows 7, 10.0 Windows 10 and 11.
struct WindowsVersion {
  int major = 0;
  int minor = 0;
  // NOLINTNEXTLINE(modernize-use-nullptr): the defaulted comparison is not a pointer
  auto operator<=>(const WindowsVersion&) const = default;
};

// When something applies: any key exists, or any file or folder exists (`*` may stand in
// a name), within the Windows versions given. Nothing to test: it always applies.
struct Detection {
  std::vector<RegistryKey> keys;
  std::vector<std::wstring> paths;
  std::optional<WindowsVersion> minimumWindows;
  std::optional<WindowsVersion> maximumWindows;
  std::vector<std::wstring> special;  // old built-in tests: "DET_CHROME", ...

  bool Empty() const { return keys.empty() && paths.empty() && special.empty(); }
};

struct Item {
  // The item's number: fixed in the built-in rules (1000 to 99999), derived from the
  // application's and item's names for rules from elsewhere (100000 and above).
  unsigned id = 0;
  std::wstring name;
  bool tickedByDefault = false;
  std::wstring warning;  // shown when the user ticks the item; empty: none
  Detection detection;   // besides the application's own
  std::vector<FileAction> files;
  std::vector<RegistryAction> registry;
  std::vector<ProfileAction> profiles;
  std::vector<NamedAction> named;
  std::vector<Exclusion> exclusions;
  SourcePosition where;
};

struct Application {
  std::wstring name;
  std::wstring category;  // the category it shows under, by name
  Detection detection;
  // While one of these runs, nothing of the application is touched: process names
  // ("chrome.exe"), and files the application holds open while it runs (with variables).
  std::vector<std::wstring> processes;
  std::vector<std::wstring> lockFiles;
  std::vector<Item> items;
  SourcePosition where;
};

// Where a rule set came from; it decides the trust and the range of ids.
enum class RuleOrigin { kBuiltIn, kUserFile, kCommunity };

struct RuleSet {
  RuleOrigin origin = RuleOrigin::kUserFile;
  std::vector<Application> applications;
  std::vector<Problem> problems;
};

// The id of an item of a rule file other than the built-in one: the same for the same
// application and item names (letter case aside) on every start and in every version of
// the file, at least kFirstDerivedId.
inline constexpr unsigned kFirstBuiltInId = 1000;
inline constexpr unsigned kLastBuiltInId = 99999;
inline constexpr unsigned kFirstDerivedId = 100000;
unsigned DerivedItemId(std::wstring_view application, std::wstring_view item);

}  // namespace lumenor::rules
