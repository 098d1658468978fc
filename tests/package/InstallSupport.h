// What the setup tests need around the setup program: running a program with every
// process it starts to their end, the user's folders, the uninstall entry's values,
// shortcut targets, and a picture of the user's profile and registry to compare.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumenor::testing {

struct JobResult {
  bool finished = false;      // false: not started, or something still ran at the time limit
  DWORD exitCode = 0;         // of the first process
  std::wstring stillRunning;  // the programs left in the job at the time limit
};

// Runs `commandLine` in a job and waits until the last process in it has ended: an
// uninstaller starts a copy of itself elsewhere and leaves at once.
JobResult RunWholeJob(const std::wstring& commandLine, DWORD timeoutMs = 120000);

// A known folder such as FOLDERID_LocalAppData, without a trailing backslash.
std::wstring KnownFolder(const GUID& id);

std::optional<std::wstring> ReadString(HKEY root, const wchar_t* key, const wchar_t* name);
std::optional<DWORD> ReadDword(HKEY root, const wchar_t* key, const wchar_t* name);
bool KeyExists(HKEY root, const wchar_t* key);

// Where the shortcut file leads; empty when it cannot be read.
std::wstring ShortcutTarget(const std::wstring& shortcut);

// Every file and folder below `folder` with its size and time of last change, except
// the subtree `skipped` (a full path), keyed by path.
std::map<std::wstring, std::wstring> FolderPicture(const std::wstring& folder, const std::wstring& skipped);

// Every key and value below `key` of `root` with its type and data, keyed by path.
std::map<std::wstring, std::wstring> RegistryPicture(HKEY root, const std::wstring& key);

// One line per entry that `after` adds ("+ path"), changes ("~ path") or lost ("- path"),
// in path order.
std::vector<std::wstring> Differences(const std::map<std::wstring, std::wstring>& before,
                                      const std::map<std::wstring, std::wstring>& after);

}  // namespace lumenor::testing
