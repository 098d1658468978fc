#include "settings/StartupEntry.h"

#include <windows.h>

namespace lumenor {

std::wstring StartupCommand(const std::wstring& programPath) { return L"\"" + programPath + L"\" -A"; }

bool AddStartupEntry(const std::wstring& programPath) {
  if (programPath.empty()) {
    return false;
  }
  HKEY key = nullptr;
  if (::RegCreateKeyExW(HKEY_CURRENT_USER, kRunKeyPath, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_SET_VALUE, nullptr,
                        &key, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  const std::wstring command = StartupCommand(programPath);
  // The size counts the terminating null character, as REG_SZ data should.
  const DWORD bytes = static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t));
  const LSTATUS set =
      ::RegSetValueExW(key, kRunValueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(command.c_str()), bytes);
  (void)::RegCloseKey(key);
  return set == ERROR_SUCCESS;
}

bool RemoveStartupEntry() {
  HKEY key = nullptr;
  const LSTATUS opened = ::RegOpenKeyExW(HKEY_CURRENT_USER, kRunKeyPath, 0, KEY_SET_VALUE, &key);
  if (opened == ERROR_FILE_NOT_FOUND) {
    return true;
  }
  if (opened != ERROR_SUCCESS) {
    return false;
  }
  const LSTATUS deleted = ::RegDeleteValueW(key, kRunValueName);
  (void)::RegCloseKey(key);
  return deleted == ERROR_SUCCESS || deleted == ERROR_FILE_NOT_FOUND;
}

}  // namespace lumenor
