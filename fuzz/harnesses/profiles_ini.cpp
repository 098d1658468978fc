// Firefox's and Thunderbird's profiles.ini. A relative profile path stays below the folder
// it is relative to: no separator first, no drive, no "." or ".." part (blanks and dots
// the file system drops included), "\" as its separators. An absolute one is returned as
// the file wrote it. Every path is one the file wrote, and no section gives two profiles.
#include "base/TextEncoding.h"
#include "engine/BrowserProfiles.h"
#include "fuzz/FuzzInput.h"

#include <algorithm>

namespace {

using lumenor::fuzz::Shown;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool IsPathKey(std::string_view key) {
  return key.size() == 4 && std::equal(key.begin(), key.end(), "path", [](char c, char lower) {
           return (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c) == lower;
         });
}

struct Written {
  std::vector<std::wstring> paths;  // every "Path=" value of the file
  size_t sections = 0;              // lines that start a section
};

// Read apart from the product's reader: lines, their keys and values, blanks dropped.
Written WrittenIn(std::string_view text) {
  Written written;
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  for (;;) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    line = Trimmed(line);
    if (line.starts_with('[')) ++written.sections;
    const size_t equals = line.find('=');
    if (equals != std::string_view::npos && IsPathKey(Trimmed(line.substr(0, equals)))) {
      written.paths.push_back(lumenor::FromUtf8(Trimmed(line.substr(equals + 1))));
    }
    if (end == std::string_view::npos) return written;
    text.remove_prefix(end + 1);
  }
}

void CheckRelative(const std::wstring& path, const std::string& detail) {
  FUZZ_REQUIRE(!path.empty() && path.front() != L'\\', detail);
  FUZZ_REQUIRE(path.find_first_of(L"/:") == std::wstring::npos, detail);
  FUZZ_REQUIRE(std::none_of(path.begin(), path.end(),
                            [](wchar_t c) {
                              return c < 0x20 || c == 0x7F ||
                                     std::wstring_view(L"*?\"<>|").find(c) != std::wstring_view::npos;
                            }),
               detail);
  std::wstring_view rest = path;
  for (;;) {
    const size_t end = rest.find(L'\\');
    const std::wstring_view part = rest.substr(0, end);
    FUZZ_REQUIRE(part.empty() || part.find_first_not_of(L". ") != std::wstring_view::npos, detail);
    if (end == std::wstring_view::npos) return;
    rest.remove_prefix(end + 1);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string shown = Shown(lumenor::FromUtf8(text));
  const std::vector<lumenor::MozillaProfile> profiles = lumenor::MozillaProfilesFromIni(text);
  const Written written = WrittenIn(text);
  FUZZ_REQUIRE(profiles.size() <= written.sections, shown);
  for (const lumenor::MozillaProfile& profile : profiles) {
    const std::string detail = shown + " -> " + Shown(profile.path) + (profile.isRelative ? " relative" : " absolute");
    FUZZ_REQUIRE(lumenor::fuzz::FitsInSixteenBits(profile.path) && lumenor::fuzz::FitsInSixteenBits(profile.name),
                 detail);
    FUZZ_REQUIRE(!profile.path.empty(), detail);
    if (profile.isRelative) {
      CheckRelative(profile.path, detail);
      // As written, but for its separators.
      FUZZ_REQUIRE(std::any_of(written.paths.begin(), written.paths.end(),
                               [&](std::wstring path) {
                                 std::replace(path.begin(), path.end(), L'/', L'\\');
                                 return path == profile.path;
                               }),
                   detail);
    } else {
      FUZZ_REQUIRE(std::find(written.paths.begin(), written.paths.end(), profile.path) != written.paths.end(), detail);
    }
  }
  return 0;
}
