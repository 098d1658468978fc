#include "engine/ProtectedKeys.h"

#include <windows.h>

#include <array>
#include <string_view>

namespace lumenor {

namespace {

// Below a user's hive (HKCU, or HKU\<user>) and below HKLM alike.
constexpr std::array<std::wstring_view, 22> kProtected = {
    L"Software",
    L"Software\\Classes",
    L"Software\\Policies",
    L"Software\\Wow6432Node",
    L"Software\\Microsoft",
    L"Software\\Microsoft\\Windows",
    L"Software\\Microsoft\\Windows\\CurrentVersion",
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer",
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts",
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders",
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Run",
    L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Policies",
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
    L"Software\\Microsoft\\Windows NT",
    L"Software\\Microsoft\\Windows NT\\CurrentVersion",
    L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon",
    L"Software\\Microsoft\\Cryptography",
    L"SYSTEM",
    L"Environment",
    L"Control Panel",
};

bool SameText(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                                      static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

std::wstring_view Trimmed(std::wstring_view path) {
  while (!path.empty() && path.front() == L'\\') path.remove_prefix(1);
  while (!path.empty() && path.back() == L'\\') path.remove_suffix(1);
  return path;
}

// Whether `key` is `protectedKey` or lies above it.
bool IsOrHolds(std::wstring_view key, std::wstring_view protectedKey) {
  if (key.size() > protectedKey.size()) return false;
  return SameText(key, protectedKey.substr(0, key.size())) &&
         (key.size() == protectedKey.size() || protectedKey[key.size()] == L'\\');
}

bool HoldsAProtectedKey(std::wstring_view path) {
  for (const std::wstring_view protectedKey : kProtected) {
    if (IsOrHolds(path, protectedKey)) return true;
  }
  return false;
}

}  // namespace

bool IsProtectedKey(const rules::RegistryKey& key) {
  std::wstring_view path = Trimmed(key.path);
  if (path.empty()) return true;  // a hive itself
  // Under HKEY_USERS every user's hive is a hive of its own: "HKU\<user>\Software\...".
  if (key.hive == rules::Hive::kUsers) {
    const size_t slash = path.find(L'\\');
    if (slash == std::wstring_view::npos) return true;
    path = Trimmed(path.substr(slash + 1));
    if (path.empty()) return true;
  }
  if (key.hive == rules::Hive::kClassesRoot) {
    // HKCR is Software\Classes of both hives: only keys inside it may go.
    return false;
  }
  return HoldsAProtectedKey(path);
}

}  // namespace lumenor
