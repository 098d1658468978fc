#include "rules/Variables.h"

#include <array>
#include <utility>

namespace lumenor::rules {

namespace {

wchar_t LowerAscii(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

bool SameAsciiText(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
  }
  return true;
}

constexpr std::array<std::pair<std::wstring_view, Variable>, 23> kNames = {{
    {L"AppData", Variable::kAppData},
    {L"LocalAppData", Variable::kLocalAppData},
    {L"LocalLowAppData", Variable::kLocalLowAppData},
    {L"ProgramData", Variable::kProgramData},
    {L"CommonAppData", Variable::kProgramData},
    {L"AllUsersProfile", Variable::kProgramData},
    {L"ProgramFiles", Variable::kProgramFiles},
    {L"CommonProgramFiles", Variable::kCommonProgramFiles},
    {L"UserProfile", Variable::kUserProfile},
    {L"WinDir", Variable::kWinDir},
    {L"SystemRoot", Variable::kWinDir},
    {L"SystemDrive", Variable::kSystemDrive},
    {L"Public", Variable::kPublic},
    {L"Temp", Variable::kTemp},
    {L"Tmp", Variable::kTemp},
    {L"UserName", Variable::kUserName},
    {L"Documents", Variable::kDocuments},
    {L"Pictures", Variable::kPictures},
    {L"Music", Variable::kMusic},
    {L"Video", Variable::kVideo},
    {L"Videos", Variable::kVideo},
    {L"HomeDrive", Variable::kHomeDrive},
    {L"Personal", Variable::kDocuments},
}};

}  // namespace

std::optional<Variable> VariableFromName(std::wstring_view name) {
  for (const auto& [known, variable] : kNames) {
    if (SameAsciiText(name, known)) return variable;
  }
  return std::nullopt;
}

std::optional<std::vector<TextPart>> SplitVariables(std::wstring_view text, std::wstring* unknown) {
  std::vector<TextPart> parts;
  while (!text.empty()) {
    const size_t open = text.find(L'%');
    if (open == std::wstring_view::npos) {
      parts.push_back({std::wstring(text), std::nullopt});
      break;
    }
    if (open > 0) parts.push_back({std::wstring(text.substr(0, open)), std::nullopt});
    const size_t close = text.find(L'%', open + 1);
    if (close == std::wstring_view::npos) {
      if (unknown != nullptr) *unknown = L"%";
      return std::nullopt;
    }
    const std::wstring_view name = text.substr(open + 1, close - open - 1);
    const std::optional<Variable> variable = VariableFromName(name);
    if (!variable) {
      if (unknown != nullptr) *unknown = L"%" + std::wstring(name) + L"%";
      return std::nullopt;
    }
    parts.push_back({std::wstring(), variable});
    text.remove_prefix(close + 1);
  }
  return parts;
}

}  // namespace lumenor::rules
