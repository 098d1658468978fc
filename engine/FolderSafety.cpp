#include "engine/FolderSafety.h"

#include "base/Texts.h"
#include "engine/FilePath.h"
#include "engine/TraceSink.h"

#include <shlobj.h>
#include <windows.h>

#include <algorithm>

namespace lumenor {

namespace {

bool StartsWithText(std::wstring_view text, std::wstring_view start) {
  return text.size() >= start.size() && SameText(text.substr(0, start.size()), start);
}

std::wstring ParentFolder(const std::wstring& canonical) {
  if (canonical.size() < 2) return {};
  const size_t slash = canonical.find_last_of(L'\\', canonical.size() - 2);
  return slash == std::wstring::npos ? std::wstring() : canonical.substr(0, slash + 1);
}

}  // namespace

std::wstring SkipReason(const SkippedLocation& skipped) {
  return skipped.why.empty() ? std::wstring(VerdictReason(skipped.reason)) : skipped.why;
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

bool FolderContains(std::wstring_view outer, std::wstring_view inner) {
  return outer.size() <= inner.size() && !outer.empty() && outer.back() == L'\\' && StartsWithText(inner, outer);
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

  // Every personal folder of the profile beside Desktop and Documents, and those of the
  // Public profile: what a user keeps there is no trace, whatever a rule says.
  for (const int csidl : {CSIDL_MYPICTURES, CSIDL_MYMUSIC, CSIDL_MYVIDEO, CSIDL_COMMON_DOCUMENTS, CSIDL_COMMON_PICTURES,
                          CSIDL_COMMON_MUSIC, CSIDL_COMMON_VIDEO, CSIDL_COMMON_DESKTOPDIRECTORY}) {
    shell(csidl);
  }
  const std::optional<std::wstring> userProfile = paths.ShellFolder(CSIDL_PROFILE);
  for (const wchar_t* name : {L"Desktop", L"Documents", L"Downloads", L"Pictures", L"Music", L"Videos", L"Contacts",
                              L"Saved Games", L"Links", L"Searches", L"OneDrive"}) {
    below(userProfile, name);
  }
  const std::optional<std::wstring> publicProfile = paths.EnvironmentVariable(L"PUBLIC");
  for (const wchar_t* name : {L"Desktop", L"Documents", L"Downloads", L"Pictures", L"Music", L"Videos"}) {
    below(publicProfile, name);
  }
  for (const wchar_t* name : {L"OneDrive", L"OneDriveConsumer", L"OneDriveCommercial"}) variable(name);

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
