#include "engine/RunningPrograms.h"

#include "base/UniqueHandle.h"
#include "engine/FilePath.h"

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>

namespace lumenor {

RunningPrograms RunningPrograms::Now() {
  std::vector<std::wstring> names;
  const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot) {
    return RunningPrograms();
  }
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(snapshot.Get(), &entry); more != FALSE;
       more = Process32NextW(snapshot.Get(), &entry)) {
    names.emplace_back(entry.szExeFile);
  }
  return RunningPrograms(std::move(names));
}

bool RunningPrograms::Runs(std::wstring_view processName) const {
  return std::any_of(names_.begin(), names_.end(), [&](const std::wstring& name) {
    return CompareStringOrdinal(name.c_str(), static_cast<int>(name.size()), processName.data(),
                                static_cast<int>(processName.size()), TRUE) == CSTR_EQUAL;
  });
}

bool IsFileHeldOpen(const std::wstring& path) {
  // Asking for the file with no sharing at all fails while anyone else has it open.
  const UniqueHandle file(CreateFileW(ForFileApi(path).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  if (file) {
    return false;
  }
  const DWORD error = GetLastError();
  return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

}  // namespace lumenor
