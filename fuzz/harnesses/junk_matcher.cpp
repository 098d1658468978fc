// The junk matcher: the first line is a lower-cased file name, the others masks (every
// catalogue mask when there are none). The list's answer is the first mask that accepts
// the name alone, and a name without a dot is never junk.
#include "fuzz/FuzzInput.h"
#include "junk/JunkCatalogue.h"
#include "junk/JunkMatcher.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumenor::fuzz::Shown;
  std::vector<std::wstring> lines = lumenor::fuzz::Lines(lumenor::fuzz::WideFromFuzzBytes(data, size));
  const std::wstring name = lines.front();
  std::vector<std::wstring> masks(lines.begin() + 1, lines.end());
  if (masks.empty()) masks = lumenor::AllJunkMasks();

  const std::optional<size_t> first = lumenor::FirstAcceptingMask(name, masks);
  std::optional<size_t> alone;
  for (size_t index = 0; index < masks.size() && !alone; ++index) {
    if (lumenor::MaskAccepts(masks[index], name)) alone = index;
  }
  FUZZ_REQUIRE(first == alone, Shown(name));
  FUZZ_REQUIRE(name.find(L'.') != std::wstring::npos || !first, Shown(name));
  if (first && masks[*first].starts_with(L"*.") && masks[*first].find_first_of(L"*?~", 2) == std::wstring::npos) {
    // A plain "*.ext" mask accepts exactly the names whose last extension is "ext".
    FUZZ_REQUIRE(name.substr(name.rfind(L'.') + 1) == masks[*first].substr(2),
                 Shown(name) + " " + Shown(masks[*first]));
  }
  return 0;
}
