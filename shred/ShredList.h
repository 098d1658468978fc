// The files chosen for shredding, as the page lists them and lumenor-cli collects them:
// each file once (letter case does not count), split into folder and name at its last
// backslash, and only files that a shred could overwrite without reaching anything else.
#pragma once

#include "base/StopToken.h"
#include "engine/FolderSafety.h"
#include "shred/ShredFailure.h"
#include "shred/ShredJob.h"
#include "shred/ShredPath.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// "C:\x\a.txt" as folder "C:\x\" and name "a.txt", cut at the last backslash; the
// folder in canonical form. Nothing for a relative or device path, a path without a
// name, or one the folder rules cannot read (`failure`: kBadPath), nor for a name that
// Windows would read as another file or a device (kAmbiguousName).
std::optional<ShredTarget> SplitFilePath(std::wstring_view fullPath, ShredFailure* failure = nullptr);
// The same for a path the folder rules have read already (as an entry, without a final
// backslash): only its name is checked.
std::optional<ShredTarget> SplitFilePath(const SafePath& file, ShredFailure* failure = nullptr);

enum class AddResult { kAdded, kAlreadyListed, kRefused };

// A file that was not listed, and why.
struct Refusal {
  std::wstring path;
  ShredFailure failure = ShredFailure::kNone;
  bool folderLink = false;  // a link to a folder, passed over in a folder walk: no file at all
};

using ShredRefused = std::function<void(const Refusal& refusal)>;

// Every file below `folder` that a shred could overwrite, checked as ShredList::AddFile
// checks one, handed to `found` with its size. Links, to files or folders, are never
// entered and are refused; so are files that cannot be overwritten safely. Folders are
// told from files by their attributes. Ends early on a stop.
void WalkFolderToShred(const SafeFolder& folder, const StopToken& stop,
                       const std::function<void(ShredTarget&& target)>& found, const ShredRefused& refused);

class ShredList {
 public:
  // Lists one file when it can be opened for writing, is no link and has no other hard
  // links; `refusal` says why not.
  AddResult AddFile(std::wstring_view fullPath, Refusal* refusal = nullptr);
  AddResult AddFile(const SafePath& file, Refusal* refusal = nullptr);
  // Lists a file that has been checked already (by a walk); kAlreadyListed when it is.
  AddResult AddChecked(ShredTarget target);

  // Lists every file below `folder`, as WalkFolderToShred finds them (a folder link
  // refused and marked as such). Returns how many files were added.
  size_t AddFolder(const SafeFolder& folder, const ShredRefused& refused);

  const std::vector<ShredTarget>& Targets() const { return targets_; }
  bool Empty() const { return targets_.empty(); }
  void Remove(size_t index);
  void Clear();

 private:
  AddResult Add(ShredTarget target, Refusal* refusal);

  std::vector<ShredTarget> targets_;
  std::set<std::wstring> keys_;  // each listed path in capitals
};

}  // namespace lumenor
