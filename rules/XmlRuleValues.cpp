#include "rules/XmlRuleValues.h"

#include "rules/MaskRules.h"
#include "rules/Variables.h"

#include <vector>

namespace lumenor::rules::xmlrules {

namespace {

std::wstring Quoted(std::wstring_view text) { return L"\"" + std::wstring(text) + L"\""; }

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

bool OnlyDots(std::wstring_view name) {
  return !name.empty() && name.find_first_not_of(L'.') == std::wstring_view::npos;
}

bool HasWildcard(std::wstring_view name) { return name.find_first_of(L"*?") != std::wstring_view::npos; }

// The names between separators; a final separator ends the path and makes no empty name.
std::vector<std::wstring_view> NamesOf(std::wstring_view path, std::wstring_view separators) {
  std::vector<std::wstring_view> names;
  while (!path.empty()) {
    const size_t end = path.find_first_of(separators);
    names.push_back(path.substr(0, end));
    if (end == std::wstring_view::npos) break;
    path.remove_prefix(end + 1);
  }
  return names;
}

std::wstring_view WithoutFinalSeparators(std::wstring_view text, std::wstring_view separators) {
  while (!text.empty() && separators.find(text.back()) != std::wstring_view::npos) text.remove_suffix(1);
  return text;
}

// The fault of one name of a path or key, if it has one.
std::wstring NameFault(std::wstring_view whole, std::wstring_view name, bool wildcardsAllowed) {
  if (name.empty()) return Quoted(whole) + L" holds an empty name";
  if (OnlyDots(name)) return Quoted(whole) + L" holds a \".\" or \"..\" name";
  if (HasWildcard(name) && !wildcardsAllowed) {
    return Quoted(whole) + L" holds a wildcard in " + Quoted(name) + L", where none is allowed";
  }
  if (CountWildcards(name) > kMaxWildcards) {
    return L"name " + Quoted(name) + L" has more than " + std::to_wstring(kMaxWildcards) + L" wildcards";
  }
  return {};
}

std::wstring VariableFault(const std::wstring& unknown) {
  return unknown == L"%" ? L"a '%' without its partner" : L"unknown variable " + unknown;
}

// Outside a profile a path starts with a variable that stands for a folder, followed by
// nothing or a separator: anything else would be read relative to wherever the program
// happens to run.
std::wstring MachinePathFault(std::wstring_view text) {
  std::wstring unknown;
  const std::optional<std::vector<TextPart>> parts = SplitVariables(text, &unknown);
  if (!parts) return VariableFault(unknown);
  const bool startsWithFolder =
      !parts->empty() && parts->front().variable && *parts->front().variable != Variable::kUserName;
  if (!startsWithFolder) {
    return Quoted(text) + L" is relative: it must start with a folder variable such as %LocalAppData%";
  }
  if (parts->size() > 1 && (parts->at(1).variable || !IsSeparator(parts->at(1).text.front()))) {
    return Quoted(text) + L": the variable it starts with must be followed by \"\\\"";
  }
  return {};
}

std::wstring ProfilePathFault(std::wstring_view text) {
  if (text.find(L'%') != std::wstring_view::npos) {
    return Quoted(text) + L" holds a variable: inside <profiles> paths are relative to the profile folder";
  }
  if (IsSeparator(text.front())) {
    return Quoted(text) + L" starts with \"\\\": inside <profiles> paths are relative to the profile folder";
  }
  return {};
}

std::optional<int> SmallNumber(std::wstring_view digits) {
  if (digits.empty() || digits.size() > 4) return std::nullopt;
  int number = 0;
  for (const wchar_t c : digits) {
    if (c < L'0' || c > L'9') return std::nullopt;
    number = number * 10 + static_cast<int>(c - L'0');
  }
  return number;
}

}  // namespace

Parsed<std::wstring> ParsePath(std::wstring_view text, PathRules rules) {
  text = TrimBlanks(text);
  const std::wstring_view path = WithoutFinalSeparators(text, L"\\/");
  if (path.empty()) {
    if (rules.mayBeEmpty && text.empty()) return {std::wstring(), {}};
    return {std::nullopt, text.empty() ? L"is empty" : Quoted(text) + L" names no folder"};
  }
  std::wstring fault = rules.place == PathPlace::kMachine ? MachinePathFault(path) : ProfilePathFault(path);
  if (!fault.empty()) return {std::nullopt, std::move(fault)};
  if (path.find(L':') != std::wstring_view::npos) return {std::nullopt, Quoted(path) + L" holds \":\""};
  const std::vector<std::wstring_view> names = NamesOf(path, L"\\/");
  for (size_t index = 0; index < names.size(); ++index) {
    const bool last = index + 1 == names.size();
    const bool wildcardsAllowed = rules.wildcards == PathWildcards::kAnyName ||
                                  (rules.wildcards == PathWildcards::kLastName && last) ||
                                  (rules.wildcards == PathWildcards::kFolderNames && !last);
    fault = NameFault(path, names[index], wildcardsAllowed);
    if (!fault.empty()) return {std::nullopt, std::move(fault)};
  }
  return {std::wstring(path), {}};
}

Parsed<RegistryKey> ParseKey(std::wstring_view text, bool wildcards) {
  text = TrimBlanks(text);
  const size_t slash = text.find(L'\\');
  const std::wstring_view hiveName = text.substr(0, slash);
  const std::optional<Hive> hive = HiveFromName(hiveName);
  if (!hive) return {std::nullopt, L"unknown hive " + Quoted(hiveName)};
  const std::wstring_view path =
      slash == std::wstring_view::npos ? std::wstring_view() : WithoutFinalSeparators(text.substr(slash + 1), L"\\");
  if (path.empty()) return {std::nullopt, Quoted(text) + L" names a whole hive"};
  for (const std::wstring_view name : NamesOf(path, L"\\")) {
    std::wstring fault = NameFault(text, name, wildcards);
    if (!fault.empty()) return {std::nullopt, std::move(fault)};
  }
  return {RegistryKey{*hive, std::wstring(path)}, {}};
}

Parsed<WindowsVersion> ParseWindowsVersion(std::wstring_view text) {
  text = TrimBlanks(text);
  const size_t dot = text.find(L'.');
  const std::optional<int> major = SmallNumber(text.substr(0, dot));
  const std::optional<int> minor = dot == std::wstring_view::npos ? std::nullopt : SmallNumber(text.substr(dot + 1));
  if (!major || !minor) return {std::nullopt, Quoted(text) + L" is not a Windows version such as 6.1 or 10.0"};
  return {WindowsVersion{*major, *minor}, {}};
}

Parsed<bool> ParseTrueFalse(std::wstring_view text) {
  text = TrimBlanks(text);
  if (text == L"true") return {true, {}};
  if (text == L"false") return {false, {}};
  return {std::nullopt, Quoted(text) + L" is neither true nor false"};
}

Parsed<unsigned> ParseBuiltInId(std::wstring_view text) {
  text = TrimBlanks(text);
  const bool digits = !text.empty() && text.find_first_not_of(L"0123456789") == std::wstring_view::npos;
  if (!digits) return {std::nullopt, Quoted(text) + L" is not a number"};
  unsigned id = 0;
  for (const wchar_t c : text) {
    id = id * 10 + static_cast<unsigned>(c - L'0');
    if (id > kLastBuiltInId) break;
  }
  if (id < kFirstBuiltInId || id > kLastBuiltInId) {
    return {std::nullopt, Quoted(text) + L" is outside " + std::to_wstring(kFirstBuiltInId) + L" to " +
                              std::to_wstring(kLastBuiltInId)};
  }
  return {id, {}};
}

Parsed<std::wstring> ParseProcessName(std::wstring_view text) {
  text = TrimBlanks(text);
  if (text.empty() || OnlyDots(text) || text.find_first_of(L"\\/:*?%") != std::wstring_view::npos) {
    return {std::nullopt, Quoted(text) + L" is not a process name such as chrome.exe"};
  }
  return {std::wstring(text), {}};
}

}  // namespace lumenor::rules::xmlrules
