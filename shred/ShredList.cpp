#include "shred/ShredList.h"

#include "engine/FilePath.h"
#include "shred/ShredFile.h"

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

bool IsDotEntry(const wchar_t* name) {
  return name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'));
}

// The folders still being searched, deepest last.
class Walk {
 public:
  Walk() = default;
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;
  ~Walk() {
    while (!folders_.empty()) {
      Pop();
    }
  }

  bool Push(std::wstring folder) {
    OpenSearch opened{INVALID_HANDLE_VALUE, std::move(folder), {}};
    opened.search = FindFirstFileExW(ForFileApi(opened.path + L"*").c_str(), FindExInfoBasic, &opened.entry,
                                     FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (opened.search == INVALID_HANDLE_VALUE) {
      return false;
    }
    folders_.push_back(std::move(opened));
    return true;
  }
  bool Empty() const { return folders_.empty(); }
  const std::wstring& FolderPath() const { return folders_.back().path; }
  const WIN32_FIND_DATAW& Entry() const { return folders_.back().entry; }
  // To the next entry, leaving the folders that have none.
  void Next() {
    while (!folders_.empty() && FindNextFileW(folders_.back().search, &folders_.back().entry) == FALSE) {
      Pop();
    }
  }

 private:
  struct OpenSearch {
    HANDLE search;
    std::wstring path;
    WIN32_FIND_DATAW entry;
  };
  void Pop() {
    (void)FindClose(folders_.back().search);  // closing our own search cannot usefully fail
    folders_.pop_back();
  }
  std::vector<OpenSearch> folders_;
};

}  // namespace

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

AddResult ShredList::Add(ShredTarget target, Refusal* refusal) {
  const std::wstring path = target.Path();
  std::wstring key = CaseFreeKey(path);
  if (keys_.contains(key)) {
    return AddResult::kAlreadyListed;
  }
  const OpenedForOverwrite opened = OpenForOverwrite(target.folder, target.name);
  if (opened.failure != ShredFailure::kNone) {
    if (refusal != nullptr) {
      *refusal = Refusal{path, opened.failure};
    }
    return AddResult::kRefused;
  }
  target.size = opened.size;
  keys_.insert(std::move(key));
  targets_.push_back(std::move(target));
  return AddResult::kAdded;
}

size_t ShredList::AddFolder(const SafeFolder& folder, const std::function<void(const Refusal&)>& refused) {
  size_t added = 0;
  Walk walk;
  if (!walk.Push(folder.Path())) {
    return 0;
  }
  while (!walk.Empty()) {
    const WIN32_FIND_DATAW& entry = walk.Entry();
    const std::wstring path = walk.FolderPath() + entry.cFileName;
    const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (IsDotEntry(entry.cFileName)) {
      // neither a file nor a folder of its own
    } else if (IsReparsePoint(entry.dwFileAttributes)) {
      refused(Refusal{path, ShredFailure::kLink, isFolder});
    } else if (isFolder) {
      if (walk.Push(path + L"\\")) {
        continue;  // its first entry is next; this folder goes on after it
      }
    } else {
      Refusal refusal;
      const AddResult result = Add(ShredTarget{walk.FolderPath(), entry.cFileName, 0}, &refusal);
      if (result == AddResult::kAdded) {
        ++added;
      } else if (result == AddResult::kRefused) {
        refused(refusal);
      }
    }
    walk.Next();
  }
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
