#include "shred/ShredPath.h"

#include "engine/CanonicalFolder.h"
#include "engine/FileNames.h"

#include <string>

namespace lumenor {

std::optional<FileInFolder> SplitFilePathText(std::wstring_view fullPath, ShredFailure* failure) {
  const auto refuse = [&](ShredFailure why) -> std::optional<FileInFolder> {
    if (failure != nullptr) *failure = why;
    return std::nullopt;
  };
  const size_t slash = fullPath.find_last_of(L'\\');
  if (slash == std::wstring_view::npos || slash + 1 == fullPath.size()) {
    return refuse(ShredFailure::kBadPath);
  }
  const std::wstring_view name = fullPath.substr(slash + 1);
  if (name == L"." || name == L".." || name.find_first_of(L"/:*?\"<>|") != std::wstring_view::npos) {
    return refuse(ShredFailure::kBadPath);
  }
  std::optional<std::wstring> folder = CanonicalFolder(fullPath.substr(0, slash + 1));
  if (!folder) {
    return refuse(ShredFailure::kBadPath);
  }
  // Every file is opened by its "\\?\" name; a typed name that the plain form reads
  // otherwise ("a." as "a", "NUL" as the device) would shred a file nobody chose.
  if (!IsUnambiguousFileName(name)) {
    return refuse(ShredFailure::kAmbiguousName);
  }
  return FileInFolder{std::move(*folder), std::wstring(name)};
}

}  // namespace lumenor
