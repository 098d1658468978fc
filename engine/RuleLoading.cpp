#include "engine/RuleLoading.h"

#include "base/Texts.h"
#include "base/UniqueHandle.h"
#include "engine/FilePath.h"
#include "engine/FolderWalk.h"
#include "engine/RulePlan.h"
#include "res/resource.h"
#include "rules/XmlRuleReader.h"

#include <windows.h>

#include <algorithm>

namespace lumenor {

namespace {

std::optional<std::string> BuiltInRules() {
  const HMODULE module = GetModuleHandleW(nullptr);
  const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(IDR_BUILTIN_RULES), RT_RCDATA);
  if (resource == nullptr) return std::nullopt;
  const HGLOBAL loaded = LoadResource(module, resource);
  const DWORD size = SizeofResource(module, resource);
  const void* bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
  if (bytes == nullptr || size == 0) return std::nullopt;
  return std::string(static_cast<const char*>(bytes), size);
}

// The user's rule files, by name, so that they load in the same order on every start.
std::vector<std::wstring> RuleFileNames(const std::wstring& folder) {
  std::vector<std::wstring> names;
  (void)ListFolder(folder, L"*", [&names](const WalkEntry& entry) {  // no folder: no files of the user's
    const std::wstring_view name = entry.Name();
    if (entry.IsFolder() || entry.IsLink() || name.size() < 5) return;
    if (SameText(name.substr(name.size() - 4), L".xml")) names.emplace_back(name);
  });
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

std::optional<std::string> ReadWholeFile(const std::wstring& path, size_t limit) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(ForFileApi(path).c_str(), GetFileExInfoStandard, &data) == FALSE ||
      IsFolder(data.dwFileAttributes) || IsReparsePoint(data.dwFileAttributes)) {
    return std::nullopt;
  }
  const uint64_t size = (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
  if (size > limit) return std::nullopt;
  const UniqueHandle file(CreateFileW(ForFileApi(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) return std::nullopt;
  std::string bytes(static_cast<size_t>(size), '\0');
  DWORD read = 0;
  if (!bytes.empty() &&
      (ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) == FALSE ||
       read != bytes.size())) {
    return std::nullopt;
  }
  return bytes;
}

LoadedRules LoadRules(const std::wstring& programFolder) {
  LoadedRules loaded;
  loaded.book = std::make_unique<rules::RuleBook>();
  const auto add = [&](rules::RuleSet set) {
    loaded.problems.insert(loaded.problems.end(), set.problems.begin(), set.problems.end());
    set.problems.clear();
    loaded.book->Add(std::move(set));
  };
  if (const auto builtIn = BuiltInRules()) {
    add(rules::ReadXmlRules(*builtIn, L"built-in rules", rules::RuleOrigin::kBuiltIn));
  }
  const std::wstring rulesFolder = programFolder + L"rules\\";
  for (const std::wstring& name : RuleFileNames(rulesFolder)) {
    const std::wstring path = rulesFolder + name;
    if (const auto bytes = ReadWholeFile(path)) {
      add(rules::ReadXmlRules(*bytes, path, rules::RuleOrigin::kUserFile));
    } else {
      rules::Problem problem;
      problem.where.file = path;
      problem.message = L"the file cannot be read";
      loaded.problems.push_back(std::move(problem));
    }
  }
  if (const auto bytes = ReadWholeFile(programFolder + rules::kWinapp2FileName)) {
    rules::Winapp2File community = rules::ReadWinapp2(*bytes, programFolder + rules::kWinapp2FileName);
    loaded.community = community.counts;
    loaded.communityProblems = std::move(community.rules.problems);
    community.rules.problems.clear();
    loaded.book->Add(std::move(community.rules));
  }
  // Ids the book refused are problems of the files they came from.
  for (const rules::Problem& problem : loaded.book->Problems()) loaded.problems.push_back(problem);
  return loaded;
}

CCatalogue CatalogueWithRules(LoadedRules& loaded, const SystemPaths& paths) {
  const RememberedPaths remembered(paths);
  return CCatalogue::Build(std::move(loaded.book),
                           [&](const rules::RuleBook::Entry& entry) { return IsRuleDetected(entry, remembered); });
}

}  // namespace lumenor
