#include "engine/FolderSafety.h"

#include "base/Texts.h"
#include "engine/FilePath.h"

#include <shlobj.h>
#include <windows.h>

#include <algorithm>

namespace lumenor {

namespace {

constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kDevicePrefix = L"\\\\.\\";

bool IsDriveLetter(wchar_t c) { return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z'); }

wchar_t UpperLetter(wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c; }

bool StartsWithText(std::wstring_view text, std::wstring_view start) {
  return text.size() >= start.size() && SameText(text.substr(0, start.size()), start);
}

bool HoldsForbiddenCharacter(std::wstring_view name) {
  return std::any_of(name.begin(), name.end(), [](wchar_t c) {
    return c < 32 || c == L'<' || c == L'>' || c == L':' || c == L'"' || c == L'|' || c == L'?' || c == L'*';
  });
}

// The start of a path: its root in canonical form and where the folders below it begin.
struct PathRoot {
  std::wstring root;  // "C:\" or "\\server\share\"
  std::wstring_view rest;
};

std::optional<PathRoot> SplitShareRoot(std::wstring_view afterSlashes, FolderVerdict& refusal) {
  const size_t serverEnd = afterSlashes.find(L'\\');
  const std::wstring_view server = afterSlashes.substr(0, serverEnd);
  if (serverEnd == std::wstring_view::npos || server.empty()) {
    // A server alone holds shares: no folder of it may be walked whole.
    refusal = server.empty() ? FolderVerdict::kInvalidPath : FolderVerdict::kProtectedFolder;
    return std::nullopt;
  }
  std::wstring_view rest = afterSlashes.substr(serverEnd);
  while (!rest.empty() && rest.front() == L'\\') rest.remove_prefix(1);
  const size_t shareEnd = rest.find(L'\\');
  const std::wstring_view share = rest.substr(0, shareEnd);
  if (share.empty()) {
    refusal = FolderVerdict::kProtectedFolder;
    return std::nullopt;
  }
  if (HoldsForbiddenCharacter(server) || HoldsForbiddenCharacter(share) || share == L"." || share == L"..") {
    refusal = FolderVerdict::kInvalidPath;
    return std::nullopt;
  }
  PathRoot root;
  root.root = L"\\\\" + std::wstring(server) + L"\\" + std::wstring(share) + L"\\";
  root.rest = shareEnd == std::wstring_view::npos ? std::wstring_view() : rest.substr(shareEnd);
  return root;
}

std::optional<PathRoot> SplitRoot(std::wstring_view path, FolderVerdict& refusal) {
  if (StartsWithText(path, kDevicePrefix)) {
    refusal = FolderVerdict::kDevicePath;
    return std::nullopt;
  }
  if (StartsWithText(path, kLongPrefix)) {
    const std::wstring_view inner = path.substr(kLongPrefix.size());
    if (StartsWithText(inner, L"UNC\\")) {
      return SplitShareRoot(inner.substr(4), refusal);
    }
    // "\\?\C:\..." is a folder; "\\?\C:", "\\?\Volume{...}" and "\\?\GLOBALROOT..." are devices.
    if (inner.size() >= 3 && IsDriveLetter(inner[0]) && inner[1] == L':' && inner[2] == L'\\') {
      return PathRoot{std::wstring{UpperLetter(inner[0]), L':', L'\\'}, inner.substr(3)};
    }
    refusal = FolderVerdict::kDevicePath;
    return std::nullopt;
  }
  if (path.size() >= 2 && path[0] == L'\\' && path[1] == L'\\') {
    std::wstring_view afterSlashes = path.substr(2);
    return SplitShareRoot(afterSlashes, refusal);
  }
  if (path.size() >= 2 && IsDriveLetter(path[0]) && path[1] == L':') {
    if (path.size() == 2 || path[2] != L'\\') {
      refusal = FolderVerdict::kRelativePath;  // "C:" and "C:temp" follow the drive's current folder
      return std::nullopt;
    }
    return PathRoot{std::wstring{UpperLetter(path[0]), L':', L'\\'}, path.substr(3)};
  }
  refusal = FolderVerdict::kRelativePath;
  return std::nullopt;
}

std::wstring_view WithoutTrailingDotsAndBlanks(std::wstring_view name) {
  while (!name.empty() && (name.back() == L'.' || name.back() == L' ')) name.remove_suffix(1);
  return name;
}

std::wstring ParentFolder(const std::wstring& canonical) {
  if (canonical.size() < 2) return {};
  const size_t slash = canonical.find_last_of(L'\\', canonical.size() - 2);
  return slash == std::wstring::npos ? std::wstring() : canonical.substr(0, slash + 1);
}

}  // namespace

std::wstring_view VerdictReason(FolderVerdict verdict) {
  switch (verdict) {
    case FolderVerdict::kAllowed:
      return L"allowed";
    case FolderVerdict::kRelativePath:
      return L"relative path";
    case FolderVerdict::kDevicePath:
      return L"device path";
    case FolderVerdict::kInvalidPath:
      return L"invalid path";
    case FolderVerdict::kProtectedFolder:
      return L"protected folder";
    case FolderVerdict::kLink:
      return L"link";
  }
  return L"refused";
}

std::optional<std::wstring> CanonicalFolder(std::wstring_view folder, FolderVerdict* refusal) {
  FolderVerdict why = FolderVerdict::kInvalidPath;
  const auto refuse = [&](FolderVerdict verdict) -> std::optional<std::wstring> {
    if (refusal != nullptr) *refusal = verdict;
    return std::nullopt;
  };
  std::wstring path(folder);
  std::replace(path.begin(), path.end(), L'/', L'\\');
  if (path.empty()) return refuse(FolderVerdict::kRelativePath);

  const std::optional<PathRoot> root = SplitRoot(path, why);
  if (!root) return refuse(why);

  std::vector<std::wstring_view> names;
  std::wstring_view rest = root->rest;
  while (!rest.empty()) {
    const size_t end = rest.find(L'\\');
    const std::wstring_view name = rest.substr(0, end);
    rest = end == std::wstring_view::npos ? std::wstring_view() : rest.substr(end + 1);
    if (name.empty() || name == L".") continue;
    if (name == L"..") {
      if (!names.empty()) names.pop_back();
      continue;
    }
    const std::wstring_view trimmed = WithoutTrailingDotsAndBlanks(name);
    if (trimmed.empty() || HoldsForbiddenCharacter(trimmed)) return refuse(FolderVerdict::kInvalidPath);
    if (IsDeviceName(trimmed)) return refuse(FolderVerdict::kDevicePath);
    names.push_back(trimmed);
  }

  std::wstring canonical = root->root;
  for (const std::wstring_view name : names) {
    canonical += name;
    canonical += L'\\';
  }
  if (refusal != nullptr) *refusal = FolderVerdict::kAllowed;
  return canonical;
}

std::optional<SafePath> ReadFolderPath(std::wstring_view folder, FolderVerdict* refusal) {
  std::optional<std::wstring> canonical = CanonicalFolder(folder, refusal);
  if (!canonical) return std::nullopt;
  std::wstring forApi = ForFileApi(*canonical);
  return SafePath(std::move(*canonical), std::move(forApi));
}

std::wstring_view SafePath::Folder() const {
  const size_t slash = text_.find_last_of(L'\\');
  return std::wstring_view(text_).substr(0, slash == std::wstring::npos ? 0 : slash + 1);
}

std::wstring_view SafePath::FolderForApi() const {
  return std::wstring_view(forApi_).substr(0, forApi_.size() - Name().size());
}

std::wstring_view SafePath::Name() const { return std::wstring_view(text_).substr(Folder().size()); }

SafePath SafePath::Entry(std::wstring_view name) const {
  // Canonical folders hold no doubled backslashes, so both forms simply grow by the name.
  return SafePath(text_ + std::wstring(name), forApi_ + std::wstring(name));
}

SafePath SafePath::AsEntry() const {
  if (IsVolumeRoot(text_) || !text_.ends_with(L'\\')) return *this;
  return SafePath(text_.substr(0, text_.size() - 1), forApi_.substr(0, forApi_.size() - 1));
}

bool IsExactFolderPath(std::wstring_view folder) {
  if (folder.empty() || folder.back() != L'\\' || folder.find(L'/') != std::wstring_view::npos) return false;
  FolderVerdict why = FolderVerdict::kInvalidPath;
  const std::optional<PathRoot> root = SplitRoot(folder, why);
  if (!root || StartsWithText(folder, kLongPrefix)) return false;
  // The root as written must be its canonical form: one backslash between its parts.
  if (folder.size() < root->root.size() || !SameText(folder.substr(0, root->root.size()), root->root)) return false;
  std::wstring_view rest = folder.substr(root->root.size());
  while (!rest.empty()) {
    const size_t end = rest.find(L'\\');
    const std::wstring_view name = rest.substr(0, end);
    if (name.empty() || name == L"." || name == L".." || HoldsForbiddenCharacter(name) || IsDeviceName(name)) {
      return false;
    }
    rest.remove_prefix(end + 1);
  }
  return true;
}

bool FolderContains(std::wstring_view outer, std::wstring_view inner) {
  return outer.size() <= inner.size() && !outer.empty() && outer.back() == L'\\' && StartsWithText(inner, outer);
}

bool IsVolumeRoot(std::wstring_view canonicalFolder) {
  if (canonicalFolder.size() == 3 && canonicalFolder[1] == L':') return true;
  if (canonicalFolder.substr(0, 2) != L"\\\\") return false;
  // "\\server\share\": exactly four backslashes.
  return std::count(canonicalFolder.begin(), canonicalFolder.end(), L'\\') == 4;
}

bool IsLinkFolder(const std::wstring& folder) {
  const std::optional<SafePath> read = ReadFolderPath(folder);
  return read && IsLinkFolder(*read);
}

bool IsLinkFolder(const SafePath& folder) {
  std::wstring apiPath = folder.ForApi();
  // Asked about the folder, not its content; a drive root keeps its backslash.
  if (folder.Text().size() > 3 && apiPath.back() == L'\\') apiPath.pop_back();
  const DWORD attributes = GetFileAttributesW(apiPath.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;  // nothing there to walk
  if (IsReparsePoint(attributes)) return true;
  // The attribute is what every walk tests; the tag is asked for as well where the system
  // keeps one, in case a file system shows the one without the other.
  const HANDLE handle =
      CreateFileW(apiPath.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                  nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  FILE_ATTRIBUTE_TAG_INFO tag{};
  const bool tagged = GetFileInformationByHandleEx(handle, FileAttributeTagInfo, &tag, sizeof(tag)) != FALSE &&
                      (IsReparsePoint(tag.FileAttributes) || tag.ReparseTag != 0);
  (void)CloseHandle(handle);  // our own handle: nothing to do if closing fails
  return tagged;
}

FolderGuard::FolderGuard(const SystemPaths& paths) {
  std::vector<std::optional<std::wstring>> candidates;
  const auto shell = [&](int csidl) { candidates.push_back(paths.ShellFolder(csidl)); };
  const auto variable = [&](const wchar_t* name) { candidates.push_back(paths.EnvironmentVariable(name)); };
  const auto below = [&](const std::optional<std::wstring>& folder, std::wstring_view name) {
    if (folder) candidates.push_back(*folder + L"\\" + std::wstring(name));
  };

  const std::optional<std::wstring> windows = paths.WindowsFolder();
  candidates.push_back(windows);
  below(windows, L"System32");
  below(windows, L"SysWOW64");
  below(windows, L"Sysnative");
  for (const int csidl :
       {CSIDL_WINDOWS, CSIDL_SYSTEM, CSIDL_SYSTEMX86, CSIDL_PROGRAM_FILES, CSIDL_PROGRAM_FILESX86, CSIDL_COMMON_APPDATA,
        CSIDL_PROFILE, CSIDL_DESKTOPDIRECTORY, CSIDL_PERSONAL, CSIDL_APPDATA, CSIDL_LOCAL_APPDATA}) {
    shell(csidl);
  }
  for (const wchar_t* name :
       {L"SystemRoot", L"windir", L"ProgramFiles", L"ProgramFiles(x86)", L"ProgramW6432", L"ProgramData",
        L"ALLUSERSPROFILE", L"USERPROFILE", L"PUBLIC", L"APPDATA", L"LOCALAPPDATA"}) {
    variable(name);
  }
  candidates.push_back(paths.ProgramFolder());

  // The profile as the item locations find it: the PrintHood folder's parent.
  if (const auto printHood = paths.ShellFolder(CSIDL_PRINTHOOD)) {
    if (auto canonical = CanonicalFolder(*printHood)) candidates.push_back(ParentFolder(*canonical));
  }
  // LocalLow has no number of its own; it stands beside Local.
  if (const auto local = paths.ShellFolder(CSIDL_LOCAL_APPDATA)) {
    if (auto canonical = CanonicalFolder(*local)) {
      const std::wstring appDataRoot = ParentFolder(*canonical);
      if (!appDataRoot.empty()) candidates.push_back(appDataRoot + L"LocalLow");
    }
  }
  // The folder that holds every profile.
  if (const auto profile = paths.ShellFolder(CSIDL_PROFILE)) {
    if (auto canonical = CanonicalFolder(*profile)) candidates.push_back(ParentFolder(*canonical));
  }

  for (const auto& candidate : candidates) {
    if (!candidate) continue;
    std::optional<std::wstring> canonical = CanonicalFolder(*candidate);
    if (!canonical || IsVolumeRoot(*canonical)) continue;  // roots are protected by rule
    const bool known = std::any_of(protected_.begin(), protected_.end(),
                                   [&](const std::wstring& folder) { return SameText(folder, *canonical); });
    if (!known) protected_.push_back(std::move(*canonical));
  }

  for (const auto& known :
       {paths.EnvironmentVariable(L"TEMP"), paths.EnvironmentVariable(L"TMP"), paths.ShellFolder(CSIDL_RECENT),
        paths.ShellFolder(CSIDL_COOKIES), paths.ShellFolder(CSIDL_HISTORY), paths.ShellFolder(CSIDL_INTERNET_CACHE),
        paths.ShellFolder(CSIDL_FAVORITES), paths.ShellFolder(CSIDL_CDBURN_AREA), paths.ShellFolder(CSIDL_TEMPLATES),
        paths.ShellFolder(CSIDL_SENDTO)}) {
    if (!known) continue;
    if (std::optional<std::wstring> canonical = CanonicalFolder(*known)) wellKnown_.push_back(std::move(*canonical));
  }

  // Another spelling of a protected folder (a short name, a drive letter given to a
  // folder) is still the same folder to the file system, and so is one above it.
  for (const std::wstring& folder : protected_) {
    for (std::wstring step = folder; !step.empty(); step = ParentFolder(step)) {
      const std::optional<FileIdentity> identity = IdentityOfPath(step);
      if (identity &&
          std::find(guardedIdentities_.begin(), guardedIdentities_.end(), *identity) == guardedIdentities_.end()) {
        guardedIdentities_.push_back(*identity);
      }
    }
  }
  for (const std::wstring& root : paths.DriveRoots()) {
    const std::optional<FileIdentity> identity = IdentityOfPath(root);
    if (identity) guardedIdentities_.push_back(*identity);
  }
}

bool FolderGuard::IsProtected(const SafePath& canonical) const {
  if (IsVolumeRoot(canonical.Text())) return true;
  for (const std::wstring& folder : protected_) {
    if (FolderContains(canonical.Text(), folder)) return true;
  }
  const std::optional<FileIdentity> identity = IdentityOfPath(canonical.ForApi());
  return identity &&
         std::find(guardedIdentities_.begin(), guardedIdentities_.end(), *identity) != guardedIdentities_.end();
}

bool FolderGuard::IsWellKnownFolder(std::wstring_view canonical) const {
  return std::any_of(wellKnown_.begin(), wellKnown_.end(),
                     [&](const std::wstring& folder) { return SameText(folder, canonical); });
}

FolderGuard::Check FolderGuard::Inspect(std::wstring_view folder) const {
  Check check;
  check.path = ReadFolderPath(folder, &check.verdict);
  if (!check.path) return check;
  check.folder = check.path->Text();
  if (IsProtected(*check.path)) {
    check.verdict = FolderVerdict::kProtectedFolder;
  } else if (IsLinkFolder(*check.path)) {
    check.verdict = FolderVerdict::kLink;
  } else {
    check.admitted = SafeFolder(*check.path);
  }
  return check;
}

std::optional<SafeFolder> FolderGuard::Admit(std::wstring_view folder, Check* check) const {
  Check decided = Inspect(folder);
  std::optional<SafeFolder> admitted = decided.admitted;
  if (check != nullptr) *check = std::move(decided);
  return admitted;
}

}  // namespace lumenor
