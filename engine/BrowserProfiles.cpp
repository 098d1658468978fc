#include "engine/BrowserProfiles.h"

#include "base/TextEncoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <tuple>

namespace lumenor {

namespace {

constexpr size_t kMaxFolderName = 255;
constexpr std::wstring_view kDefaultProfile = L"Default";
constexpr std::wstring_view kNumberedProfile = L"Profile ";
constexpr std::wstring_view kNotProfiles[] = {L"System Profile", L"Guest Profile", L"Crashpad", L"ShaderCache",
                                              L"Safe Browsing"};

wchar_t AsciiLower(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

bool SameAsciiText(std::wstring_view left, std::wstring_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](wchar_t one, wchar_t other) { return AsciiLower(one) == AsciiLower(other); });
}

bool StartsWithAsciiText(std::wstring_view text, std::wstring_view start) {
  return text.size() >= start.size() && SameAsciiText(text.substr(0, start.size()), start);
}

bool IsControl(wchar_t c) { return c < 0x20 || c == 0x7F; }

// Characters no file or folder name may hold, beyond the separators.
bool IsForbiddenInName(wchar_t c) {
  return IsControl(c) || std::wstring_view(L"\\/:*?\"<>|").find(c) != std::wstring_view::npos;
}

// The digits after "Profile ", when that is all the name holds.
std::optional<std::wstring_view> ProfileNumber(std::wstring_view name) {
  if (!StartsWithAsciiText(name, kNumberedProfile) || name.size() == kNumberedProfile.size()) {
    return std::nullopt;
  }
  const std::wstring_view digits = name.substr(kNumberedProfile.size());
  if (!std::all_of(digits.begin(), digits.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; })) {
    return std::nullopt;
  }
  return digits;
}

// "Default", then "Profile N" by N (compared as digit strings, so no number overflows),
// then the rest by code unit; names differing only in ASCII case once, as the file system
// takes them for one folder.
std::vector<std::wstring> InProfileOrder(std::vector<std::wstring> names) {
  struct Entry {
    int rank;
    std::wstring number;  // without leading zeros
    std::wstring folded;
    std::wstring name;

    auto Key() const {
      return std::tuple(rank, number.size(), std::wstring_view(number), std::wstring_view(folded),
                        std::wstring_view(name));
    }
  };
  std::vector<Entry> entries;
  entries.reserve(names.size());
  for (std::wstring& name : names) {
    Entry entry{2, {}, name, std::move(name)};
    std::transform(entry.folded.begin(), entry.folded.end(), entry.folded.begin(), AsciiLower);
    if (entry.folded == L"default") {
      entry.rank = 0;
    } else if (const std::optional<std::wstring_view> digits = ProfileNumber(entry.name)) {
      entry.rank = 1;
      entry.number = digits->substr(std::min(digits->find_first_not_of(L'0'), digits->size()));
    }
    entries.push_back(std::move(entry));
  }
  std::sort(entries.begin(), entries.end(),
            [](const Entry& left, const Entry& right) { return left.Key() < right.Key(); });
  std::vector<std::wstring> ordered;
  for (Entry& entry : entries) {
    if (ordered.empty() || !SameAsciiText(ordered.back(), entry.name)) {
      ordered.push_back(std::move(entry.name));
    }
  }
  return ordered;
}

bool IsIniBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view TrimmedIni(std::string_view text) {
  while (!text.empty() && IsIniBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsIniBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

bool SameAsciiText(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char one, char other) {
    return AsciiLower(static_cast<wchar_t>(static_cast<unsigned char>(one))) ==
           AsciiLower(static_cast<wchar_t>(static_cast<unsigned char>(other)));
  });
}

// "Profile" and a number, in any case: the sections that describe profiles.
bool IsProfileSection(std::string_view section) {
  constexpr std::string_view kProfile = "Profile";
  if (section.size() <= kProfile.size() || !SameAsciiText(section.substr(0, kProfile.size()), kProfile)) {
    return false;
  }
  const std::string_view number = section.substr(kProfile.size());
  return std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool StartsWithDriveOrShare(std::wstring_view path) {
  const bool drive = path.size() >= 2 && path[1] == L':' &&
                     ((path[0] >= L'A' && path[0] <= L'Z') || (path[0] >= L'a' && path[0] <= L'z'));
  const bool share = path.size() >= 2 && (path[0] == L'\\' || path[0] == L'/') && (path[1] == L'\\' || path[1] == L'/');
  return drive || share;
}

// A part made only of dots and blanks is "." or ".." to the file system, which drops
// trailing dots and blanks.
bool IsDotsAndBlanks(std::wstring_view part) {
  return std::all_of(part.begin(), part.end(), [](wchar_t c) { return c == L'.' || c == L' '; });
}

// The relative path with "\" separators, when it stays below the folder it is relative to.
std::optional<std::wstring> SafeRelativePath(std::wstring path) {
  std::replace(path.begin(), path.end(), L'/', L'\\');
  if (path.empty() || path.front() == L'\\') {
    return std::nullopt;
  }
  if (std::any_of(path.begin(), path.end(), [](wchar_t c) { return c != L'\\' && IsForbiddenInName(c); })) {
    return std::nullopt;
  }
  size_t partStart = 0;
  while (partStart <= path.size()) {
    const size_t partEnd = std::min(path.find(L'\\', partStart), path.size());
    const std::wstring_view part = std::wstring_view(path).substr(partStart, partEnd - partStart);
    if (!part.empty() && IsDotsAndBlanks(part)) {
      return std::nullopt;
    }
    partStart = partEnd + 1;
  }
  return path;
}

// One "[ProfileN]" section as it is read.
struct ProfileSection {
  std::string name;
  std::string path;
  std::string isRelative;
  std::string isDefault;
};

std::optional<MozillaProfile> ProfileFrom(const ProfileSection& section) {
  std::wstring path = FromUtf8(section.path);
  if (path.empty()) {
    return std::nullopt;
  }
  MozillaProfile profile;
  profile.name = FromUtf8(section.name);
  profile.isDefault = section.isDefault == "1";
  if (section.isRelative == "1" || section.isRelative == "0") {
    profile.isRelative = section.isRelative == "1";
  } else {
    profile.isRelative = !StartsWithDriveOrShare(path);
  }
  if (!profile.isRelative) {
    profile.path = std::move(path);
    return profile;
  }
  std::optional<std::wstring> relative = SafeRelativePath(std::move(path));
  if (!relative) {
    return std::nullopt;
  }
  profile.path = std::move(*relative);
  return profile;
}

}  // namespace

bool IsChromiumProfileFolderName(std::wstring_view name) {
  if (name.empty() || name.size() > kMaxFolderName || name.back() == L'.' || name.back() == L' ') {
    return false;
  }
  if (std::any_of(name.begin(), name.end(), IsForbiddenInName)) {
    return false;
  }
  return std::none_of(std::begin(kNotProfiles), std::end(kNotProfiles),
                      [name](std::wstring_view notProfile) { return SameAsciiText(name, notProfile); });
}

std::optional<std::vector<std::wstring>> ChromiumProfilesFromLocalState(std::string_view localStateText) {
  if (localStateText.size() > kMaxLocalStateBytes) {
    return std::nullopt;
  }
  const nlohmann::json state = nlohmann::json::parse(localStateText.begin(), localStateText.end(), nullptr, false);
  if (state.is_discarded() || !state.is_object()) {
    return std::nullopt;
  }
  const auto profile = state.find("profile");
  if (profile == state.end() || !profile->is_object()) {
    return std::nullopt;
  }
  const auto infoCache = profile->find("info_cache");
  if (infoCache == profile->end() || !infoCache->is_object()) {
    return std::nullopt;
  }
  std::vector<std::wstring> names;
  for (const auto& member : infoCache->items()) {
    std::wstring name = FromUtf8(member.key());
    if (IsChromiumProfileFolderName(name)) {
      names.push_back(std::move(name));
    }
  }
  return InProfileOrder(std::move(names));
}

std::vector<std::wstring> ChromiumProfilesFromFolderNames(const std::vector<std::wstring>& folderNames) {
  std::vector<std::wstring> names;
  for (const std::wstring& name : folderNames) {
    const bool looksLikeProfile =
        SameAsciiText(name, kDefaultProfile) ||
        (StartsWithAsciiText(name, kNumberedProfile) && name.size() > kNumberedProfile.size());
    if (looksLikeProfile && IsChromiumProfileFolderName(name)) {
      names.push_back(name);
    }
  }
  return InProfileOrder(std::move(names));
}

std::vector<MozillaProfile> MozillaProfilesFromIni(std::string_view iniText) {
  if (iniText.starts_with("\xEF\xBB\xBF")) {
    iniText.remove_prefix(3);
  }
  std::vector<MozillaProfile> profiles;
  std::optional<ProfileSection> section;
  const auto finishSection = [&profiles, &section] {
    if (section) {
      if (std::optional<MozillaProfile> profile = ProfileFrom(*section)) {
        profiles.push_back(std::move(*profile));
      }
    }
    section.reset();
  };
  while (!iniText.empty()) {
    const size_t lineEnd = std::min(iniText.find('\n'), iniText.size());
    std::string_view line = iniText.substr(0, lineEnd);
    iniText.remove_prefix(std::min(lineEnd + 1, iniText.size()));
    if (line.ends_with('\r')) {
      line.remove_suffix(1);
    }
    line = TrimmedIni(line);
    if (line.starts_with('[')) {
      finishSection();
      const size_t close = line.find(']');
      if (close != std::string_view::npos && IsProfileSection(TrimmedIni(line.substr(1, close - 1)))) {
        section.emplace();
      }
      continue;
    }
    const size_t equals = line.find('=');
    if (!section || equals == std::string_view::npos) {
      continue;
    }
    const std::string_view key = TrimmedIni(line.substr(0, equals));
    const std::string_view value = TrimmedIni(line.substr(equals + 1));
    if (SameAsciiText(key, "Name")) {
      section->name = value;
    } else if (SameAsciiText(key, "Path")) {
      section->path = value;
    } else if (SameAsciiText(key, "IsRelative")) {
      section->isRelative = value;
    } else if (SameAsciiText(key, "Default")) {
      section->isDefault = value;
    }
  }
  finishSection();
  return profiles;
}

}  // namespace lumenor
