#include "junk/JunkWalk.h"

#include "engine/FilePath.h"
#include "engine/FolderStack.h"
#include "junk/JunkMatcher.h"

namespace lumenor {

namespace {

void ConsiderFile(const OpenFolder& at, const JunkMasks& masks, const JunkFound& found) {
  const WIN32_FIND_DATAW& entry = at.entry;
  std::wstring name = LowerCaseName(entry.cFileName);
  const std::optional<size_t> mask = masks.FirstAccepting(name);
  if (!mask) {
    return;
  }
  const uint64_t bytes = (static_cast<uint64_t>(entry.nFileSizeHigh) << 32) | entry.nFileSizeLow;
  found(JunkFile{std::move(name), at.folder, *mask, bytes});
}

}  // namespace

void WalkFolderForJunk(const std::wstring& folder, std::span<const std::wstring> masks, const StopToken& stop,
                       const JunkFound& found) {
  if (masks.empty() || folder.empty() || folder.back() != L'\\' || IsLinkFolder(folder)) {
    return;
  }
  const JunkMasks rules(masks);
  FolderStack walk;
  if (!walk.Push(folder, L"*")) {
    return;
  }
  for (;;) {
    OpenFolder& current = walk.Top();
    const WIN32_FIND_DATAW& entry = current.entry;
    if (!IsDotEntry(entry.cFileName)) {
      if (!IsFolder(entry.dwFileAttributes)) {
        ConsiderFile(current, rules, found);
      } else if (!IsReparsePoint(entry.dwFileAttributes)) {
        // A folder that cannot be searched (access denied) yields nothing and is not listed.
        if (walk.Push(current.folder + entry.cFileName + L"\\", L"*")) {
          continue;  // its first entry is next; this folder goes on after it
        }
      }
    }
    for (;;) {
      if (stop.StopRequested()) {
        return;
      }
      if (walk.Advance()) {
        break;
      }
      (void)walk.Pop();
      if (walk.Empty()) {
        return;
      }
    }
  }
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
