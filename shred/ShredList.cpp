#include "shred/ShredList.h"

#include "engine/FilePath.h"
#include "engine/FolderWalk.h"
#include "shred/ShredFile.h"
#include "shred/ShredPath.h"

#include <windows.h>

#include <vector>

namespace lumenor {

namespace {

// The key under which a path is listed: as the file system compares names, without
// regard to letter case.
std::wstring CaseFreeKey(const std::wstring& path) {
  std::wstring key(path.size(), L'\0');
  const int length = LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, path.c_str(), static_cast<int>(path.size()),
                                   key.data(), static_cast<int>(key.size()), nullptr, nullptr, 0);
  if (length <= 0) {
    return path;  // an empty path, or nothing to map: compared as it is
  }
  key.resize(static_cast<size_t>(length));
  return key;
}

}  // namespace

std::optional<ShredTarget> SplitFilePath(std::wstring_view fullPath, ShredFailure* failure) {
  const std::optional<FileInFolder> split = SplitFilePathText(fullPath, failure);
  if (!split) return std::nullopt;
  // The folder is canonical already: reading it again gives it its form for the file API.
  const std::optional<SafePath> folder = ReadFolderPath(split->folder);
  if (!folder) {
    if (failure != nullptr) *failure = ShredFailure::kBadPath;
    return std::nullopt;
  }
  return ShredTarget{folder->Entry(split->name), 0};
}

std::optional<ShredTarget> SplitFilePath(const SafePath& file, ShredFailure* failure) {
  if (file.Name().empty() || !IsUnambiguousFileName(file.Name())) {
    if (failure != nullptr) *failure = file.Name().empty() ? ShredFailure::kBadPath : ShredFailure::kAmbiguousName;
    return std::nullopt;
  }
  return ShredTarget{file, 0};
}

void WalkFolderToShred(const SafeFolder& folder, const StopToken& stop,
                       const std::function<void(ShredTarget&& target)>& found, const ShredRefused& refused) {
  WalkFolder(folder.Where(), L"*", stop, [&](const WalkEntry& entry) {
    if (entry.IsLink()) {
      refused(Refusal{entry.Path(), ShredFailure::kLink, entry.IsFolder()});
      return false;
    }
    if (entry.IsFolder()) {
      return true;
    }
    ShredTarget target{entry.Where(), 0};
    const OpenedForOverwrite opened = OpenForOverwrite(target.file);
    if (opened.failure != ShredFailure::kNone) {
      refused(Refusal{target.Path(), opened.failure});
      return false;
    }
    target.size = opened.size;
    found(std::move(target));
    return false;
  });
}

AddResult ShredList::AddFile(std::wstring_view fullPath, Refusal* refusal) {
  ShredFailure failure = ShredFailure::kNone;
  std::optional<ShredTarget> target = SplitFilePath(fullPath, &failure);
  if (!target) {
    if (refusal != nullptr) {
      *refusal = Refusal{std::wstring(fullPath), failure};
    }
    return AddResult::kRefused;
  }
  return Add(std::move(*target), refusal);
}

AddResult ShredList::AddFile(const SafePath& file, Refusal* refusal) {
  ShredFailure failure = ShredFailure::kNone;
  std::optional<ShredTarget> target = SplitFilePath(file, &failure);
  if (!target) {
    if (refusal != nullptr) {
      *refusal = Refusal{file.Text(), failure};
    }
    return AddResult::kRefused;
  }
  return Add(std::move(*target), refusal);
}

AddResult ShredList::Add(ShredTarget target, Refusal* refusal) {
  if (keys_.contains(CaseFreeKey(target.Path()))) {
    return AddResult::kAlreadyListed;
  }
  const OpenedForOverwrite opened = OpenForOverwrite(target.file);
  if (opened.failure != ShredFailure::kNone) {
    if (refusal != nullptr) {
      *refusal = Refusal{target.Path(), opened.failure};
    }
    return AddResult::kRefused;
  }
  target.size = opened.size;
  return AddChecked(std::move(target));
}

AddResult ShredList::AddChecked(ShredTarget target) {
  std::wstring key = CaseFreeKey(target.Path());
  if (!keys_.insert(std::move(key)).second) {
    return AddResult::kAlreadyListed;
  }
  targets_.push_back(std::move(target));
  return AddResult::kAdded;
}

size_t ShredList::AddFolder(const SafeFolder& folder, const ShredRefused& refused) {
  size_t added = 0;
  WalkFolderToShred(
      folder, StopToken(),
      [&](ShredTarget&& target) {
        if (AddChecked(std::move(target)) == AddResult::kAdded) ++added;
      },
      refused);
  return added;
}

void ShredList::Remove(size_t index) {
  if (index >= targets_.size()) {
    return;
  }
  keys_.erase(CaseFreeKey(targets_[index].Path()));
  targets_.erase(targets_.begin() + static_cast<std::ptrdiff_t>(index));
}

void ShredList::Clear() {
  targets_.clear();
  keys_.clear();
}

}  // namespace lumenor
