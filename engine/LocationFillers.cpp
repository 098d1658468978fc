#include "engine/LocationFillers.h"

#include "engine/ProfileLookup.h"

#include <shlobj.h>

namespace lumenor {

namespace {

constexpr wchar_t kNetscape[] = L"\\Netscape\\Navigator\\";
constexpr wchar_t kFirefox[] = L"\\Mozilla\\Firefox\\";
constexpr wchar_t kThunderbird[] = L"\\Thunderbird\\";

std::optional<std::wstring> WithoutLast(std::optional<std::wstring> folder, size_t characters) {
  if (!folder || folder->size() <= characters) {
    return std::nullopt;
  }
  folder->resize(folder->size() - characters);
  return folder;
}

// The user's profile folder with a trailing backslash: the PrintHood folder without its
// last nine characters ("PrintHood").
std::optional<std::wstring> ProfileFolder(const SystemPaths& paths) {
  return WithoutLast(paths.ShellFolder(CSIDL_PRINTHOOD), 9);
}

// The folder above the CD burning area ("CD Burning" is ten characters), with a trailing
// backslash.
std::optional<std::wstring> AboveCdBurning(const SystemPaths& paths) {
  return WithoutLast(paths.ShellFolder(CSIDL_CDBURN_AREA), 10);
}

// The first profile of a Mozilla application (`application` being its folder under
// AppData, such as "\Mozilla\Firefox\"), where it keeps its files.
std::optional<std::wstring> MozillaProfile(const SystemPaths& paths, const wchar_t* application) {
  const auto name = LookUpProfileName(paths, application);
  if (!name) return std::nullopt;
  const auto appData = paths.ShellFolder(CSIDL_APPDATA);
  if (!appData) return std::nullopt;
  return *appData + application + L"Profiles\\" + *name;
}

// The same profile under the local application data of the user's profile, where the
// browsers keep their caches.
std::optional<std::wstring> MozillaLocalProfile(const SystemPaths& paths, const wchar_t* application) {
  const auto name = LookUpProfileName(paths, application);
  if (!name) return std::nullopt;
  const auto profile = ProfileFolder(paths);
  if (!profile) return std::nullopt;
  return *profile + L"Local Settings\\Application Data" + application + L"Profiles\\" + *name;
}

// IncrediMail's folder, then the folder of its current identity below it.
std::optional<std::wstring> IncrediMailIdentity(const SystemPaths& paths) {
  const auto application = paths.RegistryText(HKEY_CURRENT_USER, L"Software\\IncrediMail", L"ApplicationPath");
  if (!application) return std::nullopt;
  const auto identity = paths.RegistryText(HKEY_CURRENT_USER, L"Software\\IncrediMail\\Identities", L"");
  if (!identity) return std::nullopt;
  return *application + L"\\Identities\\" + *identity;
}

}  // namespace

std::optional<std::wstring> FindBaseFolder(From base, const SystemPaths& paths) {
  switch (base) {
    case From::kAppData:
      return paths.ShellFolder(CSIDL_APPDATA);
    case From::kDocuments:
      return paths.ShellFolder(CSIDL_PERSONAL);
    case From::kRecent:
      return paths.ShellFolder(CSIDL_RECENT);
    case From::kInternetCache:
      return paths.ShellFolder(CSIDL_INTERNET_CACHE);
    case From::kHistory:
      return paths.ShellFolder(CSIDL_HISTORY);
    case From::kFavorites:
      return paths.ShellFolder(CSIDL_FAVORITES);
    case From::kCookies:
      return paths.ShellFolder(CSIDL_COOKIES);
    case From::kCdBurnArea:
      return paths.ShellFolder(CSIDL_CDBURN_AREA);
    case From::kWindowsShellFolder:
      return paths.ShellFolder(CSIDL_WINDOWS);
    case From::kWindowsDirectory:
      return paths.WindowsFolder();
    case From::kTempVariable:
      return paths.EnvironmentVariable(L"TEMP");
    case From::kProfile:
      return ProfileFolder(paths);
    case From::kAboveCdBurning:
      return AboveCdBurning(paths);
    case From::kNetscapeProfile:
      return MozillaProfile(paths, kNetscape);
    case From::kNetscapeLocalProfile:
      return MozillaLocalProfile(paths, kNetscape);
    case From::kFirefoxProfile:
      return MozillaProfile(paths, kFirefox);
    case From::kFirefoxLocalProfile:
      return MozillaLocalProfile(paths, kFirefox);
    case From::kThunderbirdProfile:
      return MozillaProfile(paths, kThunderbird);
    case From::kYahooFolder:
      return paths.RegistryText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Yahoo\\Essentials", L"MainDir");
    case From::kBitCometFolder:
      return paths.RegistryText(HKEY_CURRENT_USER, L"Software\\BitComet", L"");
    case From::kEudoraAttachments:
      return paths.RegistryText(HKEY_CURRENT_USER, L"Software\\Qualcomm\\Eudora\\LaunchManager", L"Path#1");
    case From::kPocoMailAttachments:
      return LookUpPocoMailFolder(paths, PocoMailFolder::kAttachments);
    case From::kPocoMailMail:
      return LookUpPocoMailFolder(paths, PocoMailFolder::kMail);
    case From::kIncrediMailIdentity:
      return IncrediMailIdentity(paths);
    case From::kGoogleDesktopData:
      return paths.RegistryText(HKEY_CURRENT_USER, L"Software\\Google\\Google Desktop", L"data_dir");
    case From::kCurrentUser:
    case From::kLocalMachine:
    case From::kAppDataElseNoFolder:
    case From::kRecycleBins:
    case From::kMessengerLogFolders:
    case From::kPagingFile:
      return std::nullopt;
  }
  return std::nullopt;
}

std::vector<std::wstring> RecycleBinFolders(const SystemPaths& paths) {
  std::vector<std::wstring> folders;
  for (const std::wstring& root : paths.DriveRoots()) {
    if (paths.DriveType(root) == DRIVE_FIXED) {
      folders.push_back(root + L"RECYCLER\\");
      folders.push_back(root + L"Recycled\\");
    }
  }
  return folders;
}

std::vector<std::wstring> MessengerLogFolders(const SystemPaths& paths) {
  constexpr wchar_t kPassports[] = L"Software\\Microsoft\\MSNMessenger\\PerPassportSettings";
  std::vector<std::wstring> folders;
  for (const std::wstring& passport : paths.SubKeyNames(HKEY_CURRENT_USER, kPassports)) {
    auto logPath =
        paths.RegistryText(HKEY_CURRENT_USER, std::wstring(kPassports) + L"\\" + passport, L"MessageLogPath");
    if (logPath) folders.push_back(std::move(*logPath));
  }
  return folders;
}

PagingFile ParsePagingFile(std::wstring_view value) {
  PagingFile result;
  const size_t blank = value.find(L' ');
  const std::wstring_view path = value.substr(0, blank);
  const size_t lastBackslash = path.find_last_of(L'\\');
  if (lastBackslash == std::wstring_view::npos) {
    result.name = path;
  } else {
    result.folder = path.substr(0, lastBackslash + 1);
    result.name = path.substr(lastBackslash + 1);
  }
  return result;
}

std::optional<PagingFile> FindPagingFile(const SystemPaths& paths) {
  const auto setting = paths.RegistryText(
      HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management", L"PagingFiles");
  if (!setting) return std::nullopt;
  PagingFile pagingFile = ParsePagingFile(*setting);
  if (pagingFile.folder.empty() || pagingFile.name.empty()) return std::nullopt;
  return pagingFile;
}

}  // namespace lumenor
