// The fixed catalogue of junk file masks: which name patterns the junk cleaner knows, in
// the order the set-up page lists them, with the string-table entry that describes each.
// The masks are lower case because names are lowered before they are matched.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

struct JunkMaskRow {
  std::wstring_view mask;
  unsigned descriptionId;  // string-table entry
};

// Every row, in order. "chklist.*" stands twice, under two descriptions.
std::span<const JunkMaskRow> JunkMaskCatalogue();

// The "Default" choice: the first rows of the catalogue, by position.
inline constexpr size_t kDefaultJunkRows = 12;

std::vector<std::wstring> DefaultJunkMasks();
std::vector<std::wstring> AllJunkMasks();
bool IsCatalogueMask(std::wstring_view mask);

}  // namespace lumenor
