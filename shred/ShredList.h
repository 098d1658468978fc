// The files chosen for shredding, as the page lists them and lumenor-cli collects them:
// each file once (letter case does not count), split into folder and name at its last
// backslash, and only files that a shred could overwrite without reaching anything else.
#pragma once

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

enum class AddResult { kAdded, kAlreadyListed, kRefused };

// A file that was not listed, and why.
struct Refusal {
  std::wstring path;
  ShredFailure failure = ShredFailure::kNone;
  bool folderLink = false;  // a link to a folder, passed over in a folder walk: no file at all
};

class ShredList {
 public:
  // Lists one file when it can be opened for writing, is no link and has no other hard
  // links; `refusal` says why not.
  AddResult AddFile(std::wstring_view fullPath, Refusal* refusal = nullptr);

  // Lists every file below `folder`. Links, to files or folders, are never entered and
  // are refused (a folder link marked as such); so are files that AddFile refuses.
  // Returns how many files were added.
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
