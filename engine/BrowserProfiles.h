// Which profiles a browser or mail program has, read from its own files: Chromium's
// "Local State" (JSON), or the folder names under its user data root when that file gives
// nothing, and Firefox's and Thunderbird's "profiles.ini". Functions over text without
// windows; every name and path comes from a file and is treated as untrusted, since the
// engine deletes inside the folders they name.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// Real "Local State" files hold tens of kilobytes; a larger one is not read.
inline constexpr size_t kMaxLocalStateBytes = size_t{16} * 1024 * 1024;

// Whether a name from a browser's files may be taken as a profile folder right under the
// user data root: not empty, not "." or "..", no "\", "/", ":", wildcard, quote or
// control character, not ending in a dot or blank (the file system would drop them),
// at most 255 characters, and not one of the browser's own folders that are no profiles
// ("System Profile", "Guest Profile", "Crashpad", "ShaderCache", "Safe Browsing"; case
// does not count).
bool IsChromiumProfileFolderName(std::wstring_view name);

// The profile folders "Local State" lists as the members of "profile.info_cache"
// ("Default", "Profile 1", "Profile 7", ...), less those IsChromiumProfileFolderName
// refuses: "Default" first, then "Profile N" by number, then any others by code unit;
// names differing only in ASCII case count once. Nothing when the text is larger than
// kMaxLocalStateBytes, is not JSON, or has no such object; an empty list when the
// object names no usable folder.
std::optional<std::vector<std::wstring>> ChromiumProfilesFromLocalState(std::string_view localStateText);

// The fallback when "Local State" is missing or unreadable: of the folder names under the
// user data root, "Default" and every "Profile *" (case does not count, as in file names),
// in the order above.
std::vector<std::wstring> ChromiumProfilesFromFolderNames(const std::vector<std::wstring>& folderNames);

struct MozillaProfile {
  std::wstring name;
  // Relative to the folder that holds profiles.ini, with "\" separators; or absolute,
  // exactly as written.
  std::wstring path;
  bool isRelative = true;
  bool isDefault = false;
};

// Every "[ProfileN]" section of a profiles.ini, in file order ("[General]", "[Install...]"
// and other sections are ignored): UTF-8 with or without its mark, CRLF or LF line ends,
// section and key names in any case, blanks around names and values dropped. "IsRelative"
// 1 or 0 decides how "Path" is read; without it, a path starting with a drive or "\\" is
// absolute. A section without a path is left out, and so is a relative path that is empty,
// starts with a separator, holds a ":", a control or wildcard character, or a part made
// only of dots and blanks (such as ".."): it could lead out of the profiles folder.
std::vector<MozillaProfile> MozillaProfilesFromIni(std::string_view iniText);

}  // namespace lumenor
