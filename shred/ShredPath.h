// A path handed to the shredder as folder and name, without windows: cut at its last
// backslash, so that adding "E:\\s\\b.txt_dir\\b.txt" never names "E:\\s\\b.txt".
#pragma once

#include "shred/ShredFailure.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumenor {

struct FileInFolder {
  std::wstring folder;  // canonical, ending with "\"
  std::wstring name;
  std::wstring Path() const { return folder + name; }
};

// "C:\x\a.txt" as folder "C:\x\" and name "a.txt", cut at the last backslash; the
// folder in canonical form. Nothing for a relative or device path, a path without a
// name, or one the folder rules cannot read (`failure`: kBadPath), nor for a name that
// Windows would read as another file or a device (kAmbiguousName).
std::optional<FileInFolder> SplitFilePathText(std::wstring_view fullPath, ShredFailure* failure = nullptr);

}  // namespace lumenor
