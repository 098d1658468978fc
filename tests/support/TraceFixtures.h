// Building blocks for tests of the trace engine: registry keys and files made for one
// test and removed after it, and recorders for what the engine reports.
#pragma once

#include "engine/FolderSafety.h"
#include "engine/SystemPaths.h"
#include "engine/TraceSink.h"

#include <windows.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::testing {

// A key of its own for one test, under Software\LumenorTests of `root`, seen through the
// engine's registry view; deleted with everything below it at the end.
class TestKey {
 public:
  explicit TestKey(HKEY root = HKEY_CURRENT_USER);
  TestKey(const TestKey&) = delete;
  TestKey& operator=(const TestKey&) = delete;
  ~TestKey();

  HKEY Root() const { return root_; }
  // The key's path below the root, without leading backslash.
  const std::wstring& Path() const { return path_; }
  // The path of a key below this one ("" for this key).
  std::wstring operator/(std::wstring_view subKey) const;

  // Creates the sub-key (and those above it) and sets a text value in it.
  void SetText(std::wstring_view subKey, std::wstring_view name, std::wstring_view value) const;
  void SetValue(std::wstring_view subKey, std::wstring_view name, DWORD type, const void* data, DWORD size) const;
  void CreateKey(std::wstring_view subKey) const;
  bool KeyExists(std::wstring_view subKey) const;
  bool ValueExists(std::wstring_view subKey, std::wstring_view name) const;
  // Makes `subKey` a registry link to the key `targetSubKey` of this test key.
  bool CreateLink(std::wstring_view subKey, std::wstring_view targetSubKey) const;

 private:
  HKEY root_;
  std::wstring path_;
  mutable std::vector<std::wstring> links_;  // removed before the key itself
};

// Sets a value anywhere (creating the key) through the engine's registry view.
void SetRegistryText(HKEY root, const std::wstring& keyPath, std::wstring_view name, std::wstring_view value);

// The folder rules of this machine, as the command-line tool and the pages apply them.
const FolderGuard& MachineGuard();
// `folder` as the engine's walks take it; nothing when the rules refuse it.
std::optional<SafeFolder> Admitted(const std::wstring& folder);

// Creates a file with the given content, and any folders above it.
void MakeFile(const std::wstring& path, std::string_view content = "trace");
void MakeFolders(const std::wstring& folder);
// Paths of every file and folder below `folder`, relative to it, sorted; folders end with "\".
std::vector<std::wstring> EntriesBelow(const std::wstring& folder);

struct RecordedTrace {
  unsigned itemId = 0;
  std::wstring name;
  std::wstring location;
  bool isRegistry = false;

  bool operator==(const RecordedTrace&) const = default;
};

class RecordingSink final : public TraceSink {
 public:
  void ItemStarted(const CMyObject& item) override;
  void ItemFinished(const CMyObject& item) override;
  void TraceFound(const FoundTrace& trace) override;
  void LocationSkipped(const SkippedLocation& location) override { skipped.push_back(location); }

  std::vector<RecordedTrace> traces;
  std::vector<uint64_t> bytes;  // of each trace, in the same order
  std::vector<SkippedLocation> skipped;
  std::vector<unsigned> started;
  std::vector<unsigned> finished;
  std::function<void()> afterEachTrace;
};

class RecordingTally final : public EraseTally {
 public:
  void Erased(int count, uint64_t bytes) override {
    erased += count;
    erasedBytes += bytes;
    reports.push_back(count);
  }
  void EraseFailed(const std::wstring& what) override { failures.push_back(what); }
  void LocationSkipped(const SkippedLocation& location) override { skipped.push_back(location); }

  int erased = 0;
  uint64_t erasedBytes = 0;
  std::vector<SkippedLocation> skipped;
  std::vector<int> reports;
  std::vector<std::wstring> failures;
};

// Shell folders, variables and drives as a test sets them; anything unset is missing.
class FakeSystemPaths final : public SystemPaths {
 public:
  std::optional<std::wstring> ShellFolder(int csidl) const override;
  std::optional<std::wstring> WindowsFolder() const override { return windows; }
  std::optional<std::wstring> EnvironmentVariable(const wchar_t* name) const override;
  std::vector<std::wstring> DriveRoots() const override { return drives; }
  UINT DriveType(const std::wstring& root) const override;
  std::optional<std::wstring> ProgramFolder() const override { return program; }
  std::optional<std::wstring> RegistryText(HKEY root, std::wstring_view path, std::wstring_view name) const override;
  std::vector<std::wstring> SubKeyNames(HKEY root, std::wstring_view path) const override;

  std::map<int, std::wstring> shellFolders;
  std::optional<std::wstring> windows;
  std::map<std::wstring, std::wstring> variables;
  std::vector<std::wstring> drives;
  std::map<std::wstring, UINT> driveTypes;
  std::optional<std::wstring> program;
  // Keyed by "HKCU\path\name" or "HKLM\path\name" (name empty for the default value).
  std::map<std::wstring, std::wstring> registryTexts;
  // Keyed by "HKCU\path".
  std::map<std::wstring, std::vector<std::wstring>> subKeys;
};

// The key of FakeSystemPaths' registry maps: "HKCU\" or "HKLM\", the path, and "\name".
std::wstring FakeRegistryName(HKEY root, std::wstring_view path, std::wstring_view name = {});

}  // namespace lumenor::testing
