// Chromium's profiles, from "Local State" (the input as JSON) and from the folder names
// under the user data root (the input's lines). Every name given is a usable folder name
// right under the root (never a browser folder that is no profile, never a path or a
// step), comes from the input, and comes once, in the documented order; and every usable
// name of the input is given.
#include "base/TextEncoding.h"
#include "engine/BrowserProfiles.h"
#include "fuzz/FuzzInput.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

using lumenor::fuzz::Shown;

wchar_t LowerAscii(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

std::wstring Folded(std::wstring_view text) {
  std::wstring folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), LowerAscii);
  return folded;
}

std::string ShownNames(const std::vector<std::wstring>& names) {
  std::string shown;
  for (const std::wstring& name : names) shown += Shown(name) + " ";
  return shown;
}

// Where a name belongs in the order: "Default", then "Profile N" by N, then the rest.
struct Rank {
  int group = 2;
  std::wstring number;  // without leading zeros
};

Rank RankOf(std::wstring_view name) {
  const std::wstring folded = Folded(name);
  if (folded == L"default") return {0, {}};
  constexpr std::wstring_view kProfile = L"profile ";
  if (folded.size() > kProfile.size() && folded.starts_with(kProfile) &&
      std::all_of(folded.begin() + kProfile.size(), folded.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; })) {
    std::wstring number = folded.substr(kProfile.size());
    number.erase(0, std::min(number.find_first_not_of(L'0'), number.size()));
    return {1, number};
  }
  return {2, {}};
}

bool InOrder(const Rank& before, const Rank& after) {
  if (before.group != after.group) return before.group < after.group;
  if (before.number.size() != after.number.size()) return before.number.size() < after.number.size();
  return before.number <= after.number;
}

// What every list of profiles holds, from whichever source.
void CheckProfiles(const std::vector<std::wstring>& names, const std::string& shown) {
  const std::string detail = shown + " -> " + ShownNames(names);
  for (size_t index = 0; index < names.size(); ++index) {
    const std::wstring& name = names[index];
    FUZZ_REQUIRE(lumenor::fuzz::FitsInSixteenBits(name), detail);
    FUZZ_REQUIRE(lumenor::IsChromiumProfileFolderName(name), detail);
    const std::wstring folded = Folded(name);
    FUZZ_REQUIRE(folded != L"system profile" && folded != L"guest profile", detail);
    FUZZ_REQUIRE(name.find_first_of(L"\\/") == std::wstring::npos, detail);
    // Nothing the file system would read as "." or "..", which drops trailing dots and blanks.
    FUZZ_REQUIRE(name.find_first_not_of(L". ") != std::wstring::npos, detail);
    FUZZ_REQUIRE(name.back() != L'.' && name.back() != L' ', detail);
    for (size_t other = 0; other < index; ++other) FUZZ_REQUIRE(Folded(names[other]) != folded, detail);
    if (index > 0) FUZZ_REQUIRE(InOrder(RankOf(names[index - 1]), RankOf(name)), detail);
  }
}

// Each usable name of `source` is given, once in whatever ASCII case; nothing else is.
void CheckSameNames(const std::vector<std::wstring>& names, const std::vector<std::wstring>& usable,
                    const std::string& shown) {
  const std::string detail = shown + " -> " + ShownNames(names);
  for (const std::wstring& name : names) {
    FUZZ_REQUIRE(std::find(usable.begin(), usable.end(), name) != usable.end(), detail + " gives " + Shown(name));
  }
  for (const std::wstring& name : usable) {
    const std::wstring folded = Folded(name);
    FUZZ_REQUIRE(
        std::any_of(names.begin(), names.end(), [&](const std::wstring& given) { return Folded(given) == folded; }),
        detail + " misses " + Shown(name));
  }
}

void CheckLocalState(std::string_view text) {
  const std::string shown = Shown(lumenor::FromUtf8(text));
  const std::optional<std::vector<std::wstring>> profiles = lumenor::ChromiumProfilesFromLocalState(text);
  const nlohmann::json state = nlohmann::json::parse(text.begin(), text.end(), nullptr, false);
  const nlohmann::json* infoCache = nullptr;
  if (!state.is_discarded() && state.is_object() && state.contains("profile") && state["profile"].is_object() &&
      state["profile"].contains("info_cache") && state["profile"]["info_cache"].is_object()) {
    infoCache = &state["profile"]["info_cache"];
  }
  FUZZ_REQUIRE(profiles.has_value() == (infoCache != nullptr), shown);
  if (!profiles) return;
  CheckProfiles(*profiles, shown);
  std::vector<std::wstring> usable;
  for (const auto& member : infoCache->items()) {
    std::wstring name = lumenor::FromUtf8(member.key());
    if (lumenor::IsChromiumProfileFolderName(name)) usable.push_back(std::move(name));
  }
  CheckSameNames(*profiles, usable, shown);
}

void CheckFolderNames(const std::vector<std::wstring>& folderNames) {
  const std::string shown = ShownNames(folderNames);
  const std::vector<std::wstring> profiles = lumenor::ChromiumProfilesFromFolderNames(folderNames);
  CheckProfiles(profiles, shown);
  std::vector<std::wstring> usable;
  for (const std::wstring& name : folderNames) {
    const std::wstring folded = Folded(name);
    const bool looksLikeProfile = folded == L"default" || (folded.starts_with(L"profile ") && folded.size() > 8);
    if (looksLikeProfile && lumenor::IsChromiumProfileFolderName(name)) usable.push_back(name);
  }
  CheckSameNames(profiles, usable, shown);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  CheckLocalState(std::string_view(reinterpret_cast<const char*>(data), size));
  CheckFolderNames(lumenor::fuzz::Lines(lumenor::fuzz::WideFromFuzzBytes(data, size)));
  return 0;
}
