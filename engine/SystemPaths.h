// The folders, drives and registry values of this machine that item locations are built
// from, and that the folder guard takes its protected folders from. The engine
// asks through this interface so the look-ups can be replaced in tests.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

class SystemPaths {
 public:
  virtual ~SystemPaths() = default;
  // A shell folder by its CSIDL number, without trailing backslash.
  virtual std::optional<std::wstring> ShellFolder(int csidl) const = 0;
  virtual std::optional<std::wstring> WindowsFolder() const = 0;
  virtual std::optional<std::wstring> EnvironmentVariable(const wchar_t* name) const = 0;
  // Root folders of the drives, such as "C:\", in drive order.
  virtual std::vector<std::wstring> DriveRoots() const = 0;
  virtual UINT DriveType(const std::wstring& root) const = 0;
  // The folder of the running program, without trailing backslash.
  virtual std::optional<std::wstring> ProgramFolder() const = 0;
  // A registry value as text (empty name: the default value), and the names of a key's
  // sub-keys: some applications keep their folders there.
  virtual std::optional<std::wstring> RegistryText(HKEY root, std::wstring_view path, std::wstring_view name) const = 0;
  virtual std::vector<std::wstring> SubKeyNames(HKEY root, std::wstring_view path) const = 0;
};

// The machine's own answers.
const SystemPaths& MachinePaths();

}  // namespace lumenor
