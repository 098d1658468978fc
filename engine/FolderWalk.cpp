#include "engine/FolderWalk.h"

#include "engine/FilePath.h"

#include <vector>

namespace lumenor {

namespace {

bool IsDotEntry(const wchar_t* name) {
  return name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'));
}

// One folder being walked: its open search and the entry it stands on.
struct OpenFolder {
  HANDLE search = INVALID_HANDLE_VALUE;
  std::wstring folder;  // ends with "\"
  std::wstring forApi;  // the same in "\\?\" form
  WIN32_FIND_DATAW entry{};
};

// The folders being walked, deepest last; every search still open is closed at the end.
class FolderStack {
 public:
  FolderStack() = default;
  FolderStack(const FolderStack&) = delete;
  FolderStack& operator=(const FolderStack&) = delete;
  ~FolderStack() {
    while (!folders_.empty()) {
      (void)Pop();
    }
  }

  // False, and nothing pushed, when the search finds nothing or cannot start.
  bool Push(std::wstring folder, std::wstring forApi, std::wstring_view pattern) {
    OpenFolder opened;
    const std::wstring query = forApi + std::wstring(pattern);
    opened.search = FindFirstFileExW(query.c_str(), FindExInfoBasic, &opened.entry, FindExSearchNameMatch, nullptr,
                                     FIND_FIRST_EX_LARGE_FETCH);
    if (opened.search == INVALID_HANDLE_VALUE) {
      return false;
    }
    opened.folder = std::move(folder);
    opened.forApi = std::move(forApi);
    folders_.push_back(std::move(opened));
    return true;
  }
  bool Advance() { return FindNextFileW(folders_.back().search, &folders_.back().entry) != FALSE; }
  std::wstring Pop() {
    (void)FindClose(folders_.back().search);  // closing our own search handle cannot usefully fail
    std::wstring folder = std::move(folders_.back().folder);
    folders_.pop_back();
    return folder;
  }
  bool Empty() const { return folders_.empty(); }
  OpenFolder& Top() { return folders_.back(); }

 private:
  std::vector<OpenFolder> folders_;
};

void Walk(const std::wstring& folder, const std::wstring& forApi, std::wstring_view pattern, const StopToken& stop,
          const WalkVisitor& visit, const FolderLeft& left) {
  const auto leave = [&left](const std::wstring& done) {
    if (left) left(done);
  };
  FolderStack walk;
  if (!walk.Push(folder, forApi, pattern)) {
    leave(folder);
    return;
  }
  for (;;) {
    OpenFolder& current = walk.Top();
    if (!IsDotEntry(current.entry.cFileName)) {
      const WalkEntry entry{current.folder, current.forApi, current.entry};
      if (visit(entry) && entry.IsFolder() && !entry.IsLink()) {
        // Both forms grow by the name the listing gave: nothing is converted again.
        std::wstring subFolder = entry.Path() + L"\\";
        std::wstring subForApi = current.forApi + entry.Name() + L"\\";
        if (walk.Push(subFolder, std::move(subForApi), pattern)) {
          continue;  // its first entry is next; this folder goes on after it
        }
        leave(subFolder);  // a folder that cannot be searched (access denied) has no entries
      }
    }
    for (;;) {
      if (stop.StopRequested()) {
        return;
      }
      if (walk.Advance()) {
        break;
      }
      leave(walk.Pop());
      if (walk.Empty()) {
        return;
      }
    }
  }
}

}  // namespace

void WalkFolder(const SafePath& folder, std::wstring_view pattern, const StopToken& stop, const WalkVisitor& visit,
                const FolderLeft& left) {
  Walk(folder.Text(), folder.ForApi(), pattern, stop, visit, left);
}

SafePath WalkEntry::Where() const { return SafePath(Path(), folderForApi + found.cFileName); }

bool ListFolder(std::wstring_view folder, std::wstring_view pattern,
                const std::function<void(const WalkEntry& entry)>& visit) {
  const std::optional<SafePath> read = ReadFolderPath(folder);
  if (!read) return false;
  WalkFolder(*read, pattern, StopToken(), [&](const WalkEntry& entry) {
    visit(entry);
    return false;  // one folder only
  });
  return true;
}

}  // namespace lumenor
