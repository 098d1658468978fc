// Our XML rule files, read as the built-in rules and as a user's file. Every problem has
// its place; what loads is only what the format allows: ids in the range of the file's
// origin, folders that start with a folder variable (relative, without one, inside
// profiles), masks that are file names with at most ten wildcards, keys below a hive.
#include "base/TextEncoding.h"
#include "fuzz/FuzzInput.h"
#include "rules/Variables.h"
#include "rules/XmlRuleReader.h"
#include "xml/XmlReader.h"

#include <algorithm>
#include <set>

namespace {

using namespace lumenor::rules;
using lumenor::fuzz::Shown;

constexpr wchar_t kFileName[] = L"fuzz.xml";

std::string ShownBytes(std::string_view bytes) { return Shown(lumenor::FromUtf8(bytes)); }

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

int Wildcards(std::wstring_view name) {
  return static_cast<int>(std::count_if(name.begin(), name.end(), [](wchar_t c) { return c == L'*' || c == L'?'; }));
}

// The names of a path between its separators, empty ones included.
std::vector<std::wstring_view> Names(std::wstring_view path, std::wstring_view separators) {
  std::vector<std::wstring_view> names;
  for (;;) {
    const size_t end = path.find_first_of(separators);
    names.push_back(path.substr(0, end));
    if (end == std::wstring_view::npos) return names;
    path.remove_prefix(end + 1);
  }
}

bool OnlyDots(std::wstring_view name) { return name.find_first_not_of(L'.') == std::wstring_view::npos; }

// Every name of the path: not empty, not made of dots, within the wildcards allowed.
void CheckNames(std::wstring_view path, int wildcardsAllowed, const std::string& detail) {
  for (const std::wstring_view name : Names(path, L"\\/")) {
    FUZZ_REQUIRE(!name.empty() && !OnlyDots(name), detail);
    FUZZ_REQUIRE(Wildcards(name) <= wildcardsAllowed, detail);
  }
  FUZZ_REQUIRE(path.find(L':') == std::wstring_view::npos, detail);
}

// A folder of the machine: "%Variable%" naming a folder, then nothing or a separator.
void CheckMachinePath(std::wstring_view path, int wildcardsAllowed, const std::string& shown) {
  const std::string detail = shown + " loads the path " + Shown(path);
  FUZZ_REQUIRE(path.starts_with(L'%'), detail);
  const size_t close = path.find(L'%', 1);
  FUZZ_REQUIRE(close != std::wstring_view::npos, detail);
  const std::optional<Variable> first = VariableFromName(path.substr(1, close - 1));
  FUZZ_REQUIRE(first && *first != Variable::kUserName, detail);
  FUZZ_REQUIRE(close + 1 == path.size() || IsSeparator(path[close + 1]), detail);
  FUZZ_REQUIRE(SplitVariables(path).has_value(), detail);
  CheckNames(path, wildcardsAllowed, detail);
}

// A path inside a profile: relative, without variables; empty only where allowed.
void CheckProfilePath(std::wstring_view path, bool mayBeEmpty, int wildcardsAllowed, const std::string& shown) {
  const std::string detail = shown + " loads the profile path " + Shown(path);
  if (path.empty()) {
    FUZZ_REQUIRE(mayBeEmpty, detail);
    return;
  }
  FUZZ_REQUIRE(path.find(L'%') == std::wstring_view::npos && !IsSeparator(path.front()), detail);
  CheckNames(path, wildcardsAllowed, detail);
}

void CheckMasks(const std::vector<std::wstring>& masks, const std::string& shown) {
  for (const std::wstring& mask : masks) {
    const std::string detail = shown + " loads the mask " + Shown(mask);
    FUZZ_REQUIRE(!mask.empty() && !OnlyDots(mask), detail);
    FUZZ_REQUIRE(mask.find_first_of(L"\\/:") == std::wstring::npos, detail);
    FUZZ_REQUIRE(Wildcards(mask) <= 10, detail);
  }
}

void CheckKey(const RegistryKey& key, bool wildcards, const std::string& shown) {
  const std::string detail = shown + " loads the key " + Shown(key.path);
  FUZZ_REQUIRE(!key.path.empty(), detail);
  for (const std::wstring_view name : Names(key.path, L"\\")) {
    FUZZ_REQUIRE(!name.empty() && !OnlyDots(name), detail);
    FUZZ_REQUIRE(Wildcards(name) <= (wildcards ? 10 : 0), detail);
  }
}

void CheckDetection(const Detection& detection, const std::string& shown) {
  for (const RegistryKey& key : detection.keys) CheckKey(key, false, shown);
  for (const std::wstring& path : detection.paths) {
    CheckMachinePath(path, 10, shown);
    // Wildcards in the last name only.
    FUZZ_REQUIRE(Wildcards(path.substr(0, path.find_last_of(L"\\/") + 1)) == 0, shown + " detects " + Shown(path));
  }
  if (detection.minimumWindows && detection.maximumWindows) {
    FUZZ_REQUIRE(*detection.minimumWindows <= *detection.maximumWindows, shown);
  }
}

void CheckNamed(const NamedAction& named, bool inProfile, const std::string& shown) {
  const NamedActionKind* kind = FindNamedAction(named.name);
  FUZZ_REQUIRE(kind != nullptr && kind->name == named.name, shown + " loads the action " + Shown(named.name));
  FUZZ_REQUIRE(named.parameters.size() == kind->parameters.size(), shown);
  for (size_t index = 0; index < named.parameters.size(); ++index) {
    FUZZ_REQUIRE(named.parameters[index].first == kind->parameters[index], shown);
    FUZZ_REQUIRE(!named.parameters[index].second.empty(), shown);
  }
  if (inProfile) {
    CheckProfilePath(named.file, false, 0, shown);
  } else {
    CheckMachinePath(named.file, 0, shown);
  }
}

void CheckFiles(const FileAction& files, const ProfileAction* profile, const std::string& shown) {
  if (profile != nullptr) {
    CheckProfilePath(files.folder, true, 10, shown);
  } else {
    CheckMachinePath(files.folder, 10, shown);
  }
  CheckMasks(files.masks, shown);
  FUZZ_REQUIRE(!files.masks.empty() || files.scope == FileScope::kEmptyFolders, shown);
  FUZZ_REQUIRE(!files.inLocalTwin ||
                   (profile != nullptr && profile->kind == ProfileKind::kMozilla && !profile->localRoot.empty()),
               shown);
  FUZZ_REQUIRE(files.where.line >= 1, shown);
}

void CheckItem(const Item& item, const Application& application, RuleOrigin origin, const std::string& shown) {
  const std::string detail = shown + " item " + Shown(item.name);
  FUZZ_REQUIRE(!item.name.empty() && item.where.line >= 1, detail);
  if (origin == RuleOrigin::kBuiltIn) {
    FUZZ_REQUIRE(item.id >= kFirstBuiltInId && item.id <= kLastBuiltInId, detail);
  } else {
    FUZZ_REQUIRE(item.id >= kFirstDerivedId && item.id <= 0x7FFFFFFFu, detail);
    FUZZ_REQUIRE(item.id == DerivedItemId(application.name, item.name), detail);
  }
  FUZZ_REQUIRE(!item.files.empty() || !item.registry.empty() || !item.profiles.empty() || !item.named.empty(), detail);
  CheckDetection(item.detection, detail);
  for (const FileAction& files : item.files) CheckFiles(files, nullptr, detail);
  for (const RegistryAction& registry : item.registry) {
    CheckKey(registry.key, true, detail);
    FUZZ_REQUIRE(!(registry.allValues && registry.value), detail);
  }
  for (const NamedAction& named : item.named) CheckNamed(named, false, detail);
  for (const ProfileAction& profile : item.profiles) {
    CheckMachinePath(profile.root, 0, detail);
    if (!profile.localRoot.empty()) {
      FUZZ_REQUIRE(profile.kind == ProfileKind::kMozilla, detail);
      CheckMachinePath(profile.localRoot, 0, detail);
    }
    FUZZ_REQUIRE(!profile.files.empty() || !profile.named.empty(), detail);
    for (const FileAction& files : profile.files) CheckFiles(files, &profile, detail);
    for (const NamedAction& named : profile.named) CheckNamed(named, true, detail);
  }
  for (const Exclusion& exclusion : item.exclusions) {
    if (exclusion.kind == Exclusion::Kind::kRegistryKey) {
      CheckKey(exclusion.key, true, detail);
      FUZZ_REQUIRE(exclusion.masks.empty(), detail);
      continue;
    }
    CheckMachinePath(exclusion.folder, 10, detail);
    CheckMasks(exclusion.masks, detail);
    FUZZ_REQUIRE(exclusion.kind != Exclusion::Kind::kFiles || !exclusion.masks.empty(), detail);
  }
}

void Check(std::string_view input, RuleOrigin origin) {
  const std::string shown = ShownBytes(input) + (origin == RuleOrigin::kBuiltIn ? " (built-in)" : " (a user's file)");
  const RuleSet rules = ReadXmlRules(input, kFileName, origin);
  FUZZ_REQUIRE(rules.origin == origin, shown);

  for (size_t index = 0; index < rules.problems.size(); ++index) {
    const Problem& problem = rules.problems[index];
    const std::string detail = shown + " problem " + Shown(problem.message);
    FUZZ_REQUIRE(problem.where.file == kFileName, detail);
    FUZZ_REQUIRE(problem.where.line >= 1 && problem.where.column >= 1, detail);
    FUZZ_REQUIRE(!problem.message.empty(), detail);
    if (index > 0) {
      const SourcePosition& before = rules.problems[index - 1].where;
      FUZZ_REQUIRE(before.line < problem.where.line ||
                       (before.line == problem.where.line && before.column <= problem.where.column),
                   detail);
    }
  }

  const lumenor::xml::ReadResult document = lumenor::xml::ReadXml(input);
  if (!document.Ok()) {
    FUZZ_REQUIRE(rules.applications.empty() && rules.problems.size() == 1, shown);
    FUZZ_REQUIRE(rules.problems.front().message.ends_with(L"nothing loaded"), shown);
    return;
  }
  FUZZ_REQUIRE(LooksLikeXml(input), shown);

  std::set<unsigned> ids;
  for (const Application& application : rules.applications) {
    const std::string detail = shown + " application " + Shown(application.name);
    FUZZ_REQUIRE(!application.name.empty() && !application.category.empty(), detail);
    FUZZ_REQUIRE(!application.items.empty() && application.where.line >= 1, detail);
    CheckDetection(application.detection, detail);
    for (const std::wstring& process : application.processes) {
      FUZZ_REQUIRE(!process.empty() && !OnlyDots(process), detail);
      FUZZ_REQUIRE(process.find_first_of(L"\\/:*?%") == std::wstring::npos, detail);
    }
    for (const std::wstring& lockFile : application.lockFiles) CheckMachinePath(lockFile, 10, detail);
    for (const Item& item : application.items) {
      CheckItem(item, application, origin, detail);
      FUZZ_REQUIRE(ids.insert(item.id).second, detail + " id " + std::to_string(item.id) + " twice");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  Check(input, RuleOrigin::kBuiltIn);
  Check(input, RuleOrigin::kUserFile);
  return 0;
}
