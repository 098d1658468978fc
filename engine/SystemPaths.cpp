#include "engine/SystemPaths.h"

#include "base/ModulePath.h"
#include "engine/Registry.h"

#include <shlobj.h>

#include <cwchar>
#include <iterator>

namespace lumenor {

namespace {

class MachineSystemPaths final : public SystemPaths {
 public:
  std::optional<std::wstring> ShellFolder(int csidl) const override {
    wchar_t folder[MAX_PATH] = {};
    if (FAILED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, folder)) || folder[0] == L'\0') {
      return std::nullopt;
    }
    return std::wstring(folder);
  }

  std::optional<std::wstring> WindowsFolder() const override {
    wchar_t folder[MAX_PATH + 1] = {};
    const UINT length = GetWindowsDirectoryW(folder, MAX_PATH + 1);
    if (length == 0 || length > MAX_PATH) {
      return std::nullopt;
    }
    return std::wstring(folder, length);
  }

  std::optional<std::wstring> EnvironmentVariable(const wchar_t* name) const override {
    std::wstring value(256, L'\0');
    for (;;) {
      const DWORD length = GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size()));
      if (length == 0) {
        return std::nullopt;
      }
      if (length < value.size()) {
        value.resize(length);
        return value;
      }
      value.resize(length);  // too small: `length` is the size needed, terminator included
    }
  }

  std::vector<std::wstring> DriveRoots() const override {
    std::vector<std::wstring> roots;
    wchar_t buffer[1024] = {};
    const DWORD length = GetLogicalDriveStringsW(static_cast<DWORD>(std::size(buffer)), buffer);
    if (length == 0 || length >= std::size(buffer)) {
      return roots;
    }
    for (const wchar_t* root = buffer; *root != L'\0'; root += wcslen(root) + 1) {
      roots.emplace_back(root);
    }
    return roots;
  }

  UINT DriveType(const std::wstring& root) const override { return GetDriveTypeW(root.c_str()); }

  std::optional<std::wstring> ProgramFolder() const override {
    std::wstring folder = ModuleFolder();
    if (folder.empty()) {
      return std::nullopt;
    }
    folder.pop_back();
    return folder;
  }

  std::optional<std::wstring> RegistryText(HKEY root, std::wstring_view path, std::wstring_view name) const override {
    return ReadRegistryText(root, path, name);
  }

  std::vector<std::wstring> SubKeyNames(HKEY root, std::wstring_view path) const override {
    std::vector<std::wstring> names;
    const UniqueKey key = OpenKey(root, path, KEY_READ);
    if (!key) {
      return names;
    }
    wchar_t name[256];  // the longest key name the registry allows, and its terminator
    for (DWORD index = 0;; ++index) {
      DWORD length = static_cast<DWORD>(std::size(name));
      const LONG result = RegEnumKeyExW(key.Get(), index, name, &length, nullptr, nullptr, nullptr, nullptr);
      if (result == ERROR_MORE_DATA) {
        continue;
      }
      if (result != ERROR_SUCCESS) {
        return names;
      }
      names.emplace_back(name, length);
    }
  }
};

}  // namespace

const SystemPaths& MachinePaths() {
  static const MachineSystemPaths paths;
  return paths;
}

std::optional<std::wstring> RememberedPaths::ShellFolder(int csidl) const {
  const auto known = shellFolders_.find(csidl);
  if (known != shellFolders_.end()) return known->second;
  return shellFolders_.emplace(csidl, source_.ShellFolder(csidl)).first->second;
}

std::optional<std::wstring> RememberedPaths::EnvironmentVariable(const wchar_t* name) const {
  const auto known = variables_.find(name);
  if (known != variables_.end()) return known->second;
  return variables_.emplace(name, source_.EnvironmentVariable(name)).first->second;
}

}  // namespace lumenor
