#include "engine/FolderStack.h"

#include "engine/FilePath.h"

namespace lumenor {

FolderStack::~FolderStack() {
  while (!folders_.empty()) {
    (void)Pop();
  }
}

bool FolderStack::Push(std::wstring folder, std::wstring_view pattern) {
  OpenFolder opened;
  const std::wstring query = ForFileApi(folder + std::wstring(pattern));
  opened.search = FindFirstFileExW(query.c_str(), FindExInfoBasic, &opened.entry, FindExSearchNameMatch, nullptr,
                                   FIND_FIRST_EX_LARGE_FETCH);
  if (opened.search == INVALID_HANDLE_VALUE) {
    return false;
  }
  opened.folder = std::move(folder);
  folders_.push_back(std::move(opened));
  return true;
}

std::wstring FolderStack::Pop() {
  (void)FindClose(folders_.back().search);  // closing our own search handle cannot usefully fail
  std::wstring folder = std::move(folders_.back().folder);
  folders_.pop_back();
  return folder;
}

}  // namespace lumenor
