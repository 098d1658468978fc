// The entry that makes Windows start the program at log-on: the value "Lumenor" under
// HKCU\Software\Microsoft\Windows\CurrentVersion\Run.
#pragma once

#include <string>

namespace lumenor {

inline constexpr wchar_t kRunKeyPath[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
inline constexpr wchar_t kRunValueName[] = L"Lumenor";

// The command Windows runs: the program quoted, so that a path with blanks cannot start
// another program ("C:\Program.exe"), then "-A".
std::wstring StartupCommand(const std::wstring& programPath);

// Writes the value for `programPath`; false when the key or the value could not be written.
bool AddStartupEntry(const std::wstring& programPath);
// Deletes the value; true when it is gone (or was never there).
bool RemoveStartupEntry();

}  // namespace lumenor
