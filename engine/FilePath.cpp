#include "engine/FilePath.h"

#include "base/UniqueHandle.h"

namespace lumenor {

std::optional<FileIdentity> IdentityOfHandle(HANDLE handle) {
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileInformationByHandle(handle, &information) == FALSE) {
    return std::nullopt;
  }
  const FileIdentity identity{information.dwVolumeSerialNumber,
                              (static_cast<uint64_t>(information.nFileIndexHigh) << 32) | information.nFileIndexLow};
  if (identity.file == 0) {
    return std::nullopt;  // a file system without numbers would make everything the same
  }
  return identity;
}

std::optional<FileIdentity> IdentityOfPath(std::wstring_view path) {
  // Links on the way are followed: the identity is of what the path leads to.
  const UniqueHandle handle(CreateFileW(ForFileApi(path).c_str(), FILE_READ_ATTRIBUTES,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                        FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  if (!handle) {
    return std::nullopt;
  }
  return IdentityOfHandle(handle.Get());
}

}  // namespace lumenor
