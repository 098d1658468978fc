#include "junk/JunkRemoval.h"

#include "engine/FilePath.h"

#include <windows.h>

namespace lumenor {

bool DeleteJunkFile(const std::wstring& path, uint64_t* bytes) {
  const std::wstring apiPath = ForFileApi(path);
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(apiPath.c_str(), GetFileExInfoStandard, &data) == FALSE ||
      (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return false;  // gone already, or a folder put where the file was: junk removal takes files only
  }
  const DWORD attributes = data.dwFileAttributes;
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    const DWORD writable = attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    // No attribute at all is spelled "normal"; zero would mean "leave them as they are".
    if (SetFileAttributesW(apiPath.c_str(), writable != 0 ? writable : FILE_ATTRIBUTE_NORMAL) == FALSE) {
      return false;
    }
  }
  if (DeleteFileW(apiPath.c_str()) == FALSE) {
    return false;
  }
  if (bytes != nullptr) *bytes = (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
  return true;
}

void DeleteJunkFiles(std::span<const std::wstring> paths, EraseTally& tally, const StopToken& stop) {
  for (const std::wstring& path : paths) {
    if (stop.StopRequested()) return;
    uint64_t bytes = 0;
    if (DeleteJunkFile(path, &bytes)) {
      tally.Erased(1, bytes);
    } else {
      tally.EraseFailed(path);
    }
  }
}

}  // namespace lumenor
