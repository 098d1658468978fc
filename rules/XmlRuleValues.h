// The values of our XML rule files' attributes, one at a time: paths with their variables,
// registry keys, Windows versions, true or false, item ids and process names. Each parser
// gives the value or says in plain words why it refuses it; the reader turns a refusal
// into a problem. Rule files can come from anyone, so what could reach further than its
// author meant (a relative folder, "..", a whole hive) is refused here.
#pragma once

#include "rules/RuleModel.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumenor::rules::xmlrules {

template <typename Value>
struct Parsed {
  std::optional<Value> value;
  std::wstring fault;  // why it was refused, when there is no value
};

// How a path must be written where it stands.
enum class PathPlace {
  kMachine,    // from a folder variable: "%LocalAppData%\Google\Chrome\User Data"
  kInProfile,  // relative to a browser profile, without variables: "Network\Cookies"
};
// Which names of a path may hold `*` and `?`, each matched against one name.
enum class PathWildcards {
  kNone,
  kLastName,     // a detected file or folder: "%AppData%\Mozilla\*.ini"
  kAnyName,      // a folder of files
  kFolderNames,  // a file that an action edits: its folders, never its own name
};

struct PathRules {
  PathPlace place = PathPlace::kMachine;
  PathWildcards wildcards = PathWildcards::kNone;
  bool mayBeEmpty = false;  // in a profile: the profile folder itself
};

// A folder or file: no "." or ".." name, no empty name, no ':', no more than kMaxWildcards
// wildcards in a name; a final backslash dropped. `\` and `/` both separate names.
Parsed<std::wstring> ParsePath(std::wstring_view text, PathRules rules);

// "HKCU\Software\..." with any hive HiveFromName knows, below the hive: a whole hive is
// refused. With `wildcards`, a name of the path may hold `*` and `?`.
Parsed<RegistryKey> ParseKey(std::wstring_view text, bool wildcards);

// "6.1", "10.0": major.minor.
Parsed<WindowsVersion> ParseWindowsVersion(std::wstring_view text);

// "true" or "false".
Parsed<bool> ParseTrueFalse(std::wstring_view text);

// The id of a built-in item: kFirstBuiltInId to kLastBuiltInId, in decimal digits.
Parsed<unsigned> ParseBuiltInId(std::wstring_view text);

// A process's file name, "chrome.exe": no path, no wildcard.
Parsed<std::wstring> ParseProcessName(std::wstring_view text);

}  // namespace lumenor::rules::xmlrules
