// The folders, drives and registry values of this machine that item locations are built
// from, and that the folder guard takes its protected folders from. The engine
// asks through this interface so the look-ups can be replaced in tests.
#pragma once

#include <windows.h>

#include <map>
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

// Another's answers, each asked once and kept: for one pass over many rules, which ask
// for the same few folders thousands of times. Not to be kept longer than the pass: the
// answers can change (TEMP, a folder moved by the user).
class RememberedPaths final : public SystemPaths {
 public:
  explicit RememberedPaths(const SystemPaths& source) : source_(source) {}

  std::optional<std::wstring> ShellFolder(int csidl) const override;
  std::optional<std::wstring> WindowsFolder() const override { return source_.WindowsFolder(); }
  std::optional<std::wstring> EnvironmentVariable(const wchar_t* name) const override;
  std::vector<std::wstring> DriveRoots() const override { return source_.DriveRoots(); }
  UINT DriveType(const std::wstring& root) const override { return source_.DriveType(root); }
  std::optional<std::wstring> ProgramFolder() const override { return source_.ProgramFolder(); }
  std::optional<std::wstring> RegistryText(HKEY root, std::wstring_view path, std::wstring_view name) const override {
    return source_.RegistryText(root, path, name);
  }
  std::vector<std::wstring> SubKeyNames(HKEY root, std::wstring_view path) const override {
    return source_.SubKeyNames(root, path);
  }

 private:
  const SystemPaths& source_;
  mutable std::map<int, std::optional<std::wstring>> shellFolders_;
  mutable std::map<std::wstring, std::optional<std::wstring>> variables_;
};

}  // namespace lumenor
