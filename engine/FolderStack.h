// A folder walk without recursion: one open search per folder level on an explicit
// stack, so a tree of any depth costs heap, not stack. Long paths reach the system in
// their "\\?\" form; nothing here decides what to enter, the caller does.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// One folder being walked: its open search and the entry it stands on.
struct OpenFolder {
  HANDLE search = INVALID_HANDLE_VALUE;
  std::wstring folder;  // ends with "\"
  WIN32_FIND_DATAW entry{};
};

class FolderStack {
 public:
  FolderStack() = default;
  FolderStack(const FolderStack&) = delete;
  FolderStack& operator=(const FolderStack&) = delete;
  ~FolderStack();

  // Starts a search of `folder` (ending with "\") for `pattern`; false, and nothing
  // pushed, when the search finds nothing or cannot start.
  bool Push(std::wstring folder, std::wstring_view pattern);
  // Moves the top search to its next entry; false when it has none left.
  bool Advance() { return FindNextFileW(folders_.back().search, &folders_.back().entry) != FALSE; }
  // Closes the top search; returns its folder.
  std::wstring Pop();

  bool Empty() const { return folders_.empty(); }
  OpenFolder& Top() { return folders_.back(); }

 private:
  std::vector<OpenFolder> folders_;
};

inline bool IsDotEntry(const wchar_t* name) {
  return name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'));
}

inline bool IsFolder(DWORD attributes) { return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }

}  // namespace lumenor
