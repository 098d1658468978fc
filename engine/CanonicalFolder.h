// One canonical absolute form for a folder named from outside the program, without
// windows: what the folder guard (FolderSafety.h) judges, what every walk starts from,
// and what refuses relative paths, device paths and names no folder may hold.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lumenor {

enum class FolderVerdict {
  kAllowed,
  kRelativePath,     // "temp", "C:", "C:temp", "\temp": taken from wherever the program stands
  kDevicePath,       // "\\.\...", "\\?\Volume{...}", "\\?\GLOBALROOT...", "...\NUL"
  kInvalidPath,      // wildcards, stream names, characters no folder name may hold
  kProtectedFolder,  // a drive or share root, Windows, Program Files, the profile, ...
  kLink,             // the folder itself is a junction, symbolic link or mount point
};

// The words a refusal is reported with: "protected folder", "relative path", "link", ...
std::wstring_view VerdictReason(FolderVerdict verdict);

// The folder in canonical form: "X:\" or "\\server\share\" followed by its folders, each
// ending with "\"; "/" read as "\", doubled separators folded, "." and ".." resolved
// (never above the root), trailing dots and blanks of a name dropped as the file system
// drops them, "\\?\" and "\\?\UNC\" understood, the drive letter in capitals. Anything
// that is not such a folder yields nothing, and `refusal` says why. What it gives is its
// own canonical form, holds no "." or ".." and no device name, and never lies in the
// device namespace ("\\.\", "\\?\").
std::optional<std::wstring> CanonicalFolder(std::wstring_view folder, FolderVerdict* refusal = nullptr);

// Whether `folder` is an absolute folder path written out in full, as a walk builds
// them: "X:\" or "\\server\share\" followed by names, each ending with "\", none
// empty, "." or "..", no "/" and no character a name may not hold. Unlike
// CanonicalFolder, names keep their trailing dots and blanks: they are what the disk holds.
bool IsExactFolderPath(std::wstring_view folder);

// A drive root ("C:\") or a share root ("\\server\share\"); canonical.
bool IsVolumeRoot(std::wstring_view canonicalFolder);

}  // namespace lumenor
