#include "junk/JunkRemoval.h"

#include "engine/FilePath.h"

#include <windows.h>

namespace lumenor {

bool DeleteJunkFile(const std::wstring& path) {
  const std::wstring apiPath = ForFileApi(path);
  const DWORD attributes = GetFileAttributesW(apiPath.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return false;  // gone already, or a folder put where the file was: junk removal takes files only
  }
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    const DWORD writable = attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY);
    // No attribute at all is spelled "normal"; zero would mean "leave them as they are".
    if (SetFileAttributesW(apiPath.c_str(), writable != 0 ? writable : FILE_ATTRIBUTE_NORMAL) == FALSE) {
      return false;
    }
  }
  return DeleteFileW(apiPath.c_str()) != FALSE;
}

void DeleteJunkFiles(std::span<const std::wstring> paths, EraseTally& tally, const StopToken& stop) {
  for (const std::wstring& path : paths) {
    if (stop.StopRequested()) return;
    if (DeleteJunkFile(path)) {
      tally.Erased(1);
    } else {
      tally.EraseFailed(path);
    }
  }
}

}  // namespace lumenor
