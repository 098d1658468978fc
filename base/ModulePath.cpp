#include "base/ModulePath.h"

#include <windows.h>

namespace lumenor {

std::wstring ModuleFileName() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) {
      return {};
    }
    // A full buffer means the name may have been cut: try again with more room.
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    if (path.size() >= 32768) {
      return {};
    }
    path.resize(path.size() * 2);
  }
}

std::wstring ModuleFolder() {
  const std::wstring path = ModuleFileName();
  const size_t lastBackslash = path.find_last_of(L'\\');
  if (lastBackslash == std::wstring::npos) {
    return {};
  }
  return path.substr(0, lastBackslash + 1);
}

}  // namespace lumenor
