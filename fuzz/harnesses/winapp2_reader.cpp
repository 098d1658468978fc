// The community's winapp2.ini. Every problem names a line of the file; the counts agree
// with what loads; and what loads reaches no further than a rule may: folders that start
// with a folder variable or a drive's root and hold no "." or ".." name, masks that are
// file names with at most ten wildcards, registry keys below their hive.
#include "base/TextEncoding.h"
#include "fuzz/FuzzInput.h"
#include "rules/Variables.h"
#include "rules/Winapp2Reader.h"

#include <algorithm>
#include <set>

namespace {

using namespace lumenor::rules;
using lumenor::fuzz::Shown;

constexpr wchar_t kFileName[] = L"winapp2.ini";
constexpr int kMaxWildcards = 10;

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

int Wildcards(std::wstring_view name) {
  return static_cast<int>(std::count_if(name.begin(), name.end(), [](wchar_t c) { return c == L'*' || c == L'?'; }));
}

bool OnlyDots(std::wstring_view name) {
  return !name.empty() && name.find_first_not_of(L'.') == std::wstring_view::npos;
}

wchar_t LowerAscii(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

std::wstring Folded(std::wstring_view text) {
  std::wstring folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), LowerAscii);
  return folded;
}

// How many lines the reader numbers: each line end ends one, and text after the last.
int LineCount(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  const auto ends = std::count(bytes.begin(), bytes.end(), '\n');
  return static_cast<int>(ends) + (!bytes.empty() && bytes.back() != '\n' ? 1 : 0);
}

// A folder variable ("%LocalAppData%", never %UserName%), or a drive with its root ("C:\").
bool StartsWithFolderOrDriveRoot(std::wstring_view folder) {
  if (folder.size() >= 3 && ((folder[0] >= L'A' && folder[0] <= L'Z') || (folder[0] >= L'a' && folder[0] <= L'z')) &&
      folder[1] == L':' && IsSeparator(folder[2])) {
    return true;
  }
  if (!folder.starts_with(L'%')) return false;
  const size_t close = folder.find(L'%', 1);
  if (close == std::wstring_view::npos) return false;
  const std::optional<Variable> variable = VariableFromName(folder.substr(1, close - 1));
  return variable && *variable != Variable::kUserName;
}

void CheckFolder(std::wstring_view folder, const std::string& shown) {
  const std::string detail = shown + " loads the folder " + Shown(folder);
  FUZZ_REQUIRE(StartsWithFolderOrDriveRoot(folder), detail);
  FUZZ_REQUIRE(SplitVariables(folder).has_value(), detail);
  std::wstring_view rest = folder;
  for (;;) {
    const size_t end = std::find_if(rest.begin(), rest.end(), IsSeparator) - rest.begin();
    const std::wstring_view name = rest.substr(0, end);
    FUZZ_REQUIRE(!OnlyDots(name), detail);
    FUZZ_REQUIRE(Wildcards(name) <= kMaxWildcards, detail);
    if (end == rest.size()) break;
    rest.remove_prefix(end + 1);
  }
}

void CheckMasks(const std::vector<std::wstring>& masks, const std::string& shown) {
  for (const std::wstring& mask : masks) {
    const std::string detail = shown + " loads the mask " + Shown(mask);
    FUZZ_REQUIRE(!mask.empty() && !OnlyDots(mask), detail);
    FUZZ_REQUIRE(mask.find_first_of(L"\\/:") == std::wstring::npos, detail);
    FUZZ_REQUIRE(Wildcards(mask) <= kMaxWildcards, detail);
  }
}

void CheckItem(const Item& item, const Application& application, const std::string& shown) {
  const std::string detail = shown + " entry " + Shown(item.name);
  FUZZ_REQUIRE(!item.name.empty() && item.where.line >= 1, detail);
  FUZZ_REQUIRE(item.id >= kFirstDerivedId && item.id <= 0x7FFFFFFFu, detail);
  FUZZ_REQUIRE(item.id == DerivedItemId(application.name, item.name), detail);
  FUZZ_REQUIRE(!item.files.empty() || !item.registry.empty(), detail);
  for (const FileAction& files : item.files) {
    CheckFolder(files.folder, detail);
    FUZZ_REQUIRE(!files.masks.empty(), detail);
    CheckMasks(files.masks, detail);
    FUZZ_REQUIRE(files.where.line >= item.where.line, detail);
  }
  for (const RegistryAction& registry : item.registry) {
    FUZZ_REQUIRE(!registry.key.path.empty() && !registry.wildcards, detail);
    FUZZ_REQUIRE(registry.where.line >= item.where.line, detail);
  }
  for (const Exclusion& exclusion : item.exclusions) {
    if (exclusion.kind == Exclusion::Kind::kRegistryKey) continue;
    CheckFolder(exclusion.folder, detail);
    CheckMasks(exclusion.masks, detail);
    FUZZ_REQUIRE(exclusion.kind != Exclusion::Kind::kFiles || !exclusion.masks.empty(), detail);
  }
  for (const std::wstring& path : item.detection.paths) CheckFolder(path, detail);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string shown = Shown(lumenor::FromUtf8(input));
  const Winapp2File file = ReadWinapp2(input, kFileName);
  const RuleSet& rules = file.rules;
  const Winapp2Counts& counts = file.counts;
  FUZZ_REQUIRE(rules.origin == RuleOrigin::kCommunity, shown);

  const int lines = std::max(1, LineCount(input));
  for (size_t index = 0; index < rules.problems.size(); ++index) {
    const Problem& problem = rules.problems[index];
    const std::string detail =
        shown + " problem " + Shown(problem.message) + " at line " + std::to_string(problem.where.line);
    FUZZ_REQUIRE(problem.where.file == kFileName && !problem.message.empty(), detail);
    FUZZ_REQUIRE(problem.where.line >= 1 && problem.where.line <= lines, detail);
    FUZZ_REQUIRE(index == 0 || rules.problems[index - 1].where.line <= problem.where.line, detail);
  }

  int items = 0;
  int fileKeys = 0;
  int regKeys = 0;
  int excludeKeys = 0;
  std::set<unsigned> ids;
  std::set<std::wstring> applicationNames;
  for (const Application& application : rules.applications) {
    const std::string detail = shown + " application " + Shown(application.name);
    FUZZ_REQUIRE(!application.name.empty() && application.category == kCommunityCategory, detail);
    FUZZ_REQUIRE(!application.items.empty(), detail);
    FUZZ_REQUIRE(applicationNames.insert(Folded(application.name)).second, detail);
    for (const Item& item : application.items) {
      CheckItem(item, application, detail);
      FUZZ_REQUIRE(item.where.line <= lines, detail);
      FUZZ_REQUIRE(ids.insert(item.id).second, detail + " id twice");
      ++items;
      fileKeys += static_cast<int>(item.files.size());
      regKeys += static_cast<int>(item.registry.size());
      excludeKeys += static_cast<int>(item.exclusions.size());
    }
  }

  const std::string countsShown = shown + " read " + std::to_string(counts.entriesRead) + ", loaded " +
                                  std::to_string(counts.entriesLoaded) + ", items " + std::to_string(items);
  FUZZ_REQUIRE(counts.entriesLoaded == items, countsShown);
  FUZZ_REQUIRE(counts.entriesLoaded >= 0 && counts.entriesLoaded <= counts.entriesRead, countsShown);
  FUZZ_REQUIRE(counts.entriesRead <= lines, countsShown);
  for (const Winapp2Counts::Keys& keys :
       {counts.fileKeys, counts.regKeys, counts.excludeKeys, counts.detects, counts.detectFiles}) {
    FUZZ_REQUIRE(keys.refused >= 0 && keys.refused <= keys.read && keys.read <= lines, countsShown);
  }
  // A key that loads was read and not refused.
  FUZZ_REQUIRE(fileKeys <= counts.fileKeys.read - counts.fileKeys.refused, countsShown);
  FUZZ_REQUIRE(regKeys <= counts.regKeys.read - counts.regKeys.refused, countsShown);
  FUZZ_REQUIRE(excludeKeys <= counts.excludeKeys.read - counts.excludeKeys.refused, countsShown);
  FUZZ_REQUIRE(counts.warnings >= 0 && counts.warnings <= lines, countsShown);
  return 0;
}
