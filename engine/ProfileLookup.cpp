#include "engine/ProfileLookup.h"

#include "settings/IniFileRW.h"

#include <shlobj.h>

namespace lumenor {

namespace {

constexpr size_t kMaxProfilePath = 64;
constexpr size_t kMaxPocoMailPath = 260;

// A profile name taken from a settings file must name one folder right there: anything
// that could climb out of the profiles folder is refused.
bool IsPlainFolderName(std::wstring_view name) {
  return !name.empty() && name != L"." && name != L".." && name.find_first_of(L"\\/:") == std::wstring_view::npos;
}

bool ClimbsUp(std::wstring_view path) {
  for (size_t dots = path.find(L".."); dots != std::wstring_view::npos; dots = path.find(L"..", dots + 1)) {
    const bool startsSegment = dots == 0 || path[dots - 1] == L'\\' || path[dots - 1] == L'/';
    const size_t after = dots + 2;
    const bool endsSegment = after == path.size() || path[after] == L'\\' || path[after] == L'/';
    if (startsSegment && endsSegment) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::optional<std::wstring> LookUpProfileName(const SystemPaths& paths, std::wstring_view applicationFolder) {
  const std::optional<std::wstring> appData = paths.ShellFolder(CSIDL_APPDATA);
  if (!appData) {
    return std::wstring();
  }
  const CIniFileRW profiles = CIniFileRW::AtPath(*appData + std::wstring(applicationFolder) + L"profiles.ini");
  std::wstring path;
  if (!profiles.ReadString(L"Profile0", L"Path", path) || path.size() > kMaxProfilePath) {
    return std::nullopt;
  }
  const size_t slash = path.find(L'/');
  if (slash == std::wstring::npos) {
    return std::wstring();
  }
  const std::wstring name = path.substr(slash + 1);
  if (!IsPlainFolderName(name)) {
    return std::nullopt;
  }
  return name + L"\\";
}

std::optional<std::wstring> LookUpPocoMailFolder(const SystemPaths& paths, PocoMailFolder which) {
  const std::optional<std::wstring> appData = paths.ShellFolder(CSIDL_APPDATA);
  if (!appData) {
    return std::wstring();
  }
  const std::wstring pocoMail = *appData + L"\\PocoMail\\";
  const CIniFileRW settings = CIniFileRW::AtPath(pocoMail + L"poco.ini");
  std::wstring value;
  bool read = false;
  switch (which) {
    case PocoMailFolder::kAttachments:
      read = settings.ReadString(L"Mail", L"AttachPath", value);
      break;
    case PocoMailFolder::kAddresses:
      read = settings.ReadString(L"Program", L"AddressPath", value);
      break;
    case PocoMailFolder::kMail:
      read = settings.ReadString(L"Program", L"MailPath", value);
      break;
  }
  if (!read || value.size() > kMaxPocoMailPath || ClimbsUp(value)) {
    return std::nullopt;
  }
  if (value.size() >= 2 && value[1] == L':') {
    return value;
  }
  return pocoMail + value;
}

}  // namespace lumenor
