// File masks and wildcard names as every rule reader takes them. Rule files are untrusted,
// so what could reach further than a file name is refused here, once for all formats.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lumenor::rules {

// A name (a mask, or one name of a folder or key) with more wildcards than this is
// refused: no real rule needs them, and each one multiplies the work of matching.
inline constexpr int kMaxWildcards = 10;

// How many `*` and `?` the name holds.
int CountWildcards(std::wstring_view name);

// Text without the blanks (space, tab, carriage return, form feed, vertical tab) around it.
std::wstring_view TrimBlanks(std::wstring_view text);

// Masks separated by ';', each without the blanks around it; empty ones are dropped, so
// the list may come out empty. One bad mask refuses the whole list, and `fault` says why:
// a mask holding `\`, `/` or `:` (a folder in the mask slot once made another program
// delete a whole Desktop), a mask of dots alone, or one with more than kMaxWildcards.
struct MaskList {
  std::vector<std::wstring> masks;
  std::wstring fault;

  bool Ok() const { return fault.empty(); }
};
MaskList SplitMasks(std::wstring_view text);

}  // namespace lumenor::rules
