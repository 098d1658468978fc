// One place an item covers: a registry key (with a value name or "*.*" for the whole
// key) or a folder with a file selector. The trace engine fills and walks these.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace lumenor {

// How a file location matches files during a scan. Any value without a match here
// reports no file in a scan, while an erase still deletes by pattern.
enum FileMatchKind : int {
  kMatchNothingEraseByPattern = 1,  // the scan lists nothing here; the erase deletes by pattern
  kMatchEveryFile = 10,
  kMatchExtension = 11,
  kMatchExactName = 12,
  kMatchEveryFileToo = 13,
};

// Nothing reads the kind of a registry location; the catalogue marks four of the
// shell's history keys with 1, and they keep it.
enum RegistryKind : int {
  kRegistryUnmarked = 0,
  kRegistryMarked = 1,
};

// Longest path or selector a record holds, in characters: names and paths fit a
// 260-character buffer with its terminator.
inline constexpr size_t kMaxLocationText = 259;

struct LocationRecord {
  HKEY rootKey = nullptr;   // null for a file-system location
  std::wstring rootPrefix;  // "HKEY_CURRENT_USER\" and so on; empty for files
  std::wstring path;        // key path without leading backslash, or folder ending in "\"
  std::wstring selector;    // "*.*", a value name, a file name, a pattern or an extension
  int kind = 0;

  bool IsRegistry() const { return rootKey != nullptr; }
};

// The text shown before a key path in result lists: "HKEY_CURRENT_USER\" for the
// current-user root and so on for the five predefined roots; empty for anything else.
std::wstring_view RootPrefixOf(HKEY rootKey);

}  // namespace lumenor
