#include "junk/JunkWalk.h"

#include "engine/FolderWalk.h"
#include "junk/JunkMatcher.h"

namespace lumenor {

void WalkFolderForJunk(const std::wstring& folder, std::span<const std::wstring> masks, const StopToken& stop,
                       const JunkFound& found) {
  if (masks.empty() || folder.empty() || folder.back() != L'\\') {
    return;
  }
  const std::optional<SafePath> top = ReadFolderPath(folder);
  if (!top || IsLinkFolder(*top)) {
    return;
  }
  const JunkMasks rules(masks);
  // A folder that cannot be searched (access denied) yields nothing and is not listed.
  WalkFolder(*top, L"*", stop, [&](const WalkEntry& entry) {
    if (entry.IsFolder()) {
      return true;  // entered unless it is a link
    }
    std::wstring name = LowerCaseName(entry.Name());
    if (const std::optional<size_t> mask = rules.FirstAccepting(name)) {
      found(JunkFile{std::move(name), entry.folder, *mask, entry.Size()});
    }
    return false;
  });
}

void WalkFixedDisksForJunk(const SystemPaths& paths, std::span<const std::wstring> masks, const StopToken& stop,
                           const JunkFound& found) {
  for (const std::wstring& root : paths.DriveRoots()) {
    if (stop.StopRequested()) {
      return;
    }
    if (paths.DriveType(root) == DRIVE_FIXED) {
      WalkFolderForJunk(root, masks, stop, found);
    }
  }
}

std::optional<JunkScope> JunkScopeOfFolder(std::wstring_view typed, FolderVerdict* refusal) {
  // A drive root is allowed here, unlike for the privacy erase: removal deletes only
  // files whose names match, never a folder.
  std::optional<std::wstring> canonical = CanonicalFolder(typed, refusal);
  if (!canonical) {
    return std::nullopt;
  }
  return JunkScope{false, std::move(*canonical)};
}

void WalkJunkScope(const JunkScope& scope, const SystemPaths& paths, std::span<const std::wstring> masks,
                   const StopToken& stop, const JunkFound& found) {
  if (scope.allFixedDisks) {
    WalkFixedDisksForJunk(paths, masks, stop, found);
  } else {
    WalkFolderForJunk(scope.folder, masks, stop, found);
  }
}

}  // namespace lumenor
