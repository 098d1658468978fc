#include "engine/RuleFolders.h"

#include "engine/FilePath.h"
#include "engine/FolderWalk.h"
#include "rules/NameMask.h"

#include <shlobj.h>
#include <windows.h>

#include <algorithm>

namespace lumenor {

namespace {

void AddValue(std::vector<std::wstring>& values, std::optional<std::wstring> value) {
  if (!value || value->empty()) return;
  while (value->size() > 3 && (value->back() == L'\\' || value->back() == L'/')) value->pop_back();
  const auto same = [&](const std::wstring& known) {
    return CompareStringOrdinal(known.c_str(), static_cast<int>(known.size()), value->c_str(),
                                static_cast<int>(value->size()), TRUE) == CSTR_EQUAL;
  };
  if (std::none_of(values.begin(), values.end(), same)) values.push_back(std::move(*value));
}

std::optional<std::wstring> Below(std::optional<std::wstring> folder, std::wstring_view name) {
  if (!folder) return std::nullopt;
  return *folder + L"\\" + std::wstring(name);
}

// The drive of a folder such as "C:\Windows": "C:".
std::optional<std::wstring> DriveOf(const std::optional<std::wstring>& folder) {
  if (!folder || folder->size() < 2 || (*folder)[1] != L':') return std::nullopt;
  return folder->substr(0, 2);
}

std::vector<std::wstring> SplitNames(std::wstring_view relative) {
  std::vector<std::wstring> names;
  while (!relative.empty()) {
    const size_t slash = relative.find(L'\\');
    const std::wstring_view name = relative.substr(0, slash);
    if (!name.empty()) names.emplace_back(name);
    if (slash == std::wstring_view::npos) break;
    relative.remove_prefix(slash + 1);
  }
  return names;
}

DWORD AttributesOf(const std::wstring& path) { return GetFileAttributesW(ForFileApi(path).c_str()); }

}  // namespace

std::vector<std::wstring> VariableValues(rules::Variable variable, const SystemPaths& paths) {
  using rules::Variable;
  std::vector<std::wstring> values;
  const auto shell = [&](int csidl) { AddValue(values, paths.ShellFolder(csidl)); };
  const auto environment = [&](const wchar_t* name) { AddValue(values, paths.EnvironmentVariable(name)); };
  switch (variable) {
    case Variable::kAppData:
      shell(CSIDL_APPDATA);
      break;
    case Variable::kLocalAppData:
      shell(CSIDL_LOCAL_APPDATA);
      break;
    case Variable::kLocalLowAppData:
      AddValue(values, Below(paths.ShellFolder(CSIDL_PROFILE), L"AppData\\LocalLow"));
      break;
    case Variable::kProgramData:
      shell(CSIDL_COMMON_APPDATA);
      break;
    case Variable::kProgramFiles:
      // The 64-bit folder first; a 32-bit program learns it from ProgramW6432.
      environment(L"ProgramW6432");
      shell(CSIDL_PROGRAM_FILES);
      shell(CSIDL_PROGRAM_FILESX86);
      break;
    case Variable::kCommonProgramFiles:
      environment(L"CommonProgramW6432");
      shell(CSIDL_PROGRAM_FILES_COMMON);
      shell(CSIDL_PROGRAM_FILES_COMMONX86);
      break;
    case Variable::kUserProfile:
      shell(CSIDL_PROFILE);
      break;
    case Variable::kWinDir:
      AddValue(values, paths.WindowsFolder());
      break;
    case Variable::kSystemDrive:
      environment(L"SystemDrive");
      if (values.empty()) AddValue(values, DriveOf(paths.WindowsFolder()));
      break;
    case Variable::kPublic:
      environment(L"PUBLIC");
      break;
    case Variable::kTemp:
      environment(L"TEMP");
      break;
    case Variable::kUserName:
      environment(L"USERNAME");
      break;
    case Variable::kDocuments:
      shell(CSIDL_PERSONAL);
      break;
    case Variable::kPictures:
      shell(CSIDL_MYPICTURES);
      break;
    case Variable::kMusic:
      shell(CSIDL_MYMUSIC);
      break;
    case Variable::kVideo:
      shell(CSIDL_MYVIDEO);
      break;
    case Variable::kHomeDrive:
      environment(L"HOMEDRIVE");
      break;
  }
  return values;
}

std::vector<ExpandedText> ExpandVariables(std::wstring_view text, const SystemPaths& paths) {
  const std::optional<std::vector<rules::TextPart>> parts = rules::SplitVariables(text);
  if (!parts) return {};
  std::vector<ExpandedText> expanded{ExpandedText{}};
  bool ruleText = false;  // from the first plain text after the variables on, the rule's own
  for (const rules::TextPart& part : *parts) {
    if (!part.variable) {
      for (ExpandedText& one : expanded) {
        if (!ruleText) one.base = one.text.size();
        one.text += part.text;
      }
      ruleText = true;
      continue;
    }
    const std::vector<std::wstring> values = VariableValues(*part.variable, paths);
    if (values.empty()) return {};
    std::vector<ExpandedText> next;
    for (const ExpandedText& one : expanded) {
      for (const std::wstring& value : values) {
        next.push_back({one.text + value, one.base});
      }
    }
    expanded = std::move(next);
  }
  if (!ruleText) {
    for (ExpandedText& one : expanded) one.base = one.text.size();
  }
  return expanded;
}

RuleFolders FindFoldersBelow(const std::wstring& base, std::wstring_view relative, const StopToken& stop,
                             size_t limit) {
  RuleFolders found;
  std::vector<std::wstring> current{base};
  for (const std::wstring& name : SplitNames(relative)) {
    std::vector<std::wstring> next;
    for (const std::wstring& folder : current) {
      if (stop.StopRequested()) return found;
      if (!rules::HasWildcard(name)) {
        const std::wstring path = folder + name;
        const DWORD attributes = AttributesOf(path);
        if (attributes == INVALID_FILE_ATTRIBUTES || !IsFolder(attributes)) continue;
        if (IsReparsePoint(attributes)) {
          found.links.push_back(path + L"\\");
          continue;
        }
        next.push_back(path + L"\\");
        continue;
      }
      (void)ListFolder(folder, L"*", [&](const WalkEntry& entry) {  // a folder the rules cannot read holds nothing
        if (!entry.IsFolder() || !rules::MaskMatches(name, entry.Name())) return;
        if (entry.IsLink()) {
          found.links.push_back(folder + entry.Name() + L"\\");
          return;
        }
        if (next.size() >= limit) {
          found.overLimit = true;
          return;
        }
        next.push_back(folder + entry.Name() + L"\\");
      });
    }
    current = std::move(next);
  }
  found.folders = std::move(current);
  return found;
}

RuleFolders FindRuleFolders(std::wstring_view text, const SystemPaths& paths, const StopToken& stop, size_t limit) {
  RuleFolders all;
  for (const ExpandedText& expanded : ExpandVariables(text, paths)) {
    // The part the variables gave is the machine's own folder, taken as it is; from there
    // on every name is the rule's and is looked at.
    if (expanded.base == 0) continue;  // no variable: no folder of this machine to start from
    std::wstring base = expanded.text.substr(0, expanded.base);
    if (base.back() != L'\\') base += L'\\';
    const DWORD attributes = AttributesOf(base);
    if (attributes == INVALID_FILE_ATTRIBUTES || !IsFolder(attributes)) continue;
    if (IsReparsePoint(attributes) && base.size() > 3) {
      all.links.push_back(base);
      continue;
    }
    RuleFolders found = FindFoldersBelow(base, std::wstring_view(expanded.text).substr(expanded.base), stop,
                                         limit - std::min(limit, all.folders.size()));
    all.folders.insert(all.folders.end(), found.folders.begin(), found.folders.end());
    all.links.insert(all.links.end(), found.links.begin(), found.links.end());
    all.overLimit = all.overLimit || found.overLimit;
  }
  return all;
}

bool RulePathExists(std::wstring_view text, const SystemPaths& paths) {
  for (const ExpandedText& expanded : ExpandVariables(text, paths)) {
    // Without a wildcard one look settles it; nothing is entered, so links do not matter.
    if (!rules::HasWildcard(expanded.text)) {
      if (AttributesOf(expanded.text) != INVALID_FILE_ATTRIBUTES) return true;
      continue;
    }
    std::wstring_view whole = expanded.text;
    while (whole.size() > 3 && whole.back() == L'\\') whole.remove_suffix(1);
    const size_t slash = whole.find_last_of(L'\\');
    if (slash == std::wstring_view::npos) continue;
    const std::wstring last(whole.substr(slash + 1));
    const std::wstring parentText(whole.substr(0, slash + 1));
    std::vector<std::wstring> parents;
    if (parentText.size() <= expanded.base) {
      parents.push_back(parentText);
    } else {
      std::wstring base = expanded.text.substr(0, expanded.base);
      if (base.empty() || base.back() != L'\\') base += L'\\';
      parents = FindFoldersBelow(base, std::wstring_view(parentText).substr(std::min(base.size(), parentText.size())),
                                 StopToken(), 1000)
                    .folders;
    }
    for (const std::wstring& parent : parents) {
      if (!rules::HasWildcard(last)) {
        if (AttributesOf(parent + last) != INVALID_FILE_ATTRIBUTES) return true;
        continue;
      }
      bool any = false;
      (void)ListFolder(parent, L"*",
                       [&](const WalkEntry& entry) { any = any || rules::MaskMatches(last, entry.Name()); });
      if (any) return true;
    }
  }
  return false;
}

}  // namespace lumenor
