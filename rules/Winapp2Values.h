// The values of winapp2.ini's keys, one at a time: a FileKey's folder, masks and flags, a
// registry key, an exclusion, a range of Windows versions. Each parser gives the value, or
// says in plain words why it refuses it; the reader turns a refusal into a problem. The
// file is untrusted, so what could reach further than its author meant is refused here.
#pragma once

#include "rules/RuleModel.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::rules::winapp2 {

// A name (a mask, or one name of a folder) with more wildcards than this is refused: no
// real rule needs them, and each one multiplies the work of matching.
inline constexpr int kMaxWildcards = 10;

template <typename Value>
struct Parsed {
  std::optional<Value> value;
  std::wstring fault;  // why it was refused, when there is no value
};

// A folder as FileKeys, exclusions and DetectFile write it: it starts with a known
// variable or a drive's root ("C:\", never "C:" alone), holds no "." or ".." name, and
// loses its final backslash.
Parsed<std::wstring> ParseFolder(std::wstring_view text);

// File masks separated by ';': each a whole file name, never a path.
Parsed<std::vector<std::wstring>> ParseMasks(std::wstring_view text);

// "<folder>|<mask>[;<mask>...][|RECURSE|REMOVESELF|RemoveEmptyFoldersOnly]".
Parsed<FileAction> ParseFileKey(std::wstring_view value);

// "HKCU\Software\..." (any hive HiveFromName knows); the hive alone is accepted here.
Parsed<RegistryKey> ParseRegistryKey(std::wstring_view text);

// "<key>[|<value name>]"; never the whole hive.
Parsed<RegistryAction> ParseRegKey(std::wstring_view value);

// "FILE|<folder>\|<name>[;...]", "PATH|<folder>\[|<mask>[;...]]" or "REG|<key>".
Parsed<Exclusion> ParseExcludeKey(std::wstring_view value);

// "min|max", either side empty: "6.2|", "|6.1", "6.1|10.0".
struct WindowsRange {
  std::optional<WindowsVersion> minimum;
  std::optional<WindowsVersion> maximum;
};
Parsed<WindowsRange> ParseDetectOS(std::wstring_view value);

// One of the old built-in tests ("DET_CHROME", ...), in capitals.
Parsed<std::wstring> ParseSpecialDetect(std::wstring_view value);

// Text without the blanks and tabs around it.
std::wstring_view Trimmed(std::wstring_view text);
// Whether two ASCII names are the same, letter case aside.
bool SameName(std::wstring_view a, std::wstring_view b);

}  // namespace lumenor::rules::winapp2
