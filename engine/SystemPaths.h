// The folders and drives of this machine that item locations are built from. The engine
// asks through this interface so the look-ups can be replaced in tests.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
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
};

// The machine's own answers.
const SystemPaths& MachinePaths();

}  // namespace lumenor
