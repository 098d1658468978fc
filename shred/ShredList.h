// The files chosen for shredding, as the page lists them and lumenor-cli collects them:
// each file once (letter case does not count), split into folder and name at its last
// backslash, and only files that a shred could overwrite without reaching anything else.
#pragma once

#include "engine/FolderSafety.h"
#include "shred/ShredFailure.h"
#include "shred/ShredJob.h"

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

enum class AddResult { kAdded, kAlreadyListed, kRefused };

// A file that was not listed, and why.
struct Refusal {
  std::wstring path;
  ShredFailure failure = ShredFailure::kNone;
};

class ShredList {
 public:
  // Lists one file when it can be opened for writing, is no link and has no other hard
  // links; `refusal` says why not.
  AddResult AddFile(std::wstring_view fullPath, Refusal* refusal = nullptr);

  // Lists every file below `folder`. Links, to files or folders, are never entered and
  // are refused; so are files that AddFile refuses. Returns how many files were added.
  size_t AddFolder(const SafeFolder& folder, const std::function<void(const Refusal&)>& refused);

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
