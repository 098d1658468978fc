#include "tests/support/TraceFixtures.h"

#include "catalogue/CMyObject.h"
#include "engine/Registry.h"
#include "tests/support/TempFolder.h"

#include <sddl.h>

#include <algorithm>
#include <atomic>

namespace lumenor::testing {

namespace {

constexpr wchar_t kTestsKey[] = L"Software\\LumenorTests";

std::wstring UniqueKeyName() {
  static std::atomic<unsigned> counter{0};
  return L"run-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(counter++);
}

UniqueKey CreateKeyPath(HKEY root, const std::wstring& path) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | kRegistryView, nullptr, &key, nullptr) !=
      ERROR_SUCCESS) {
    return UniqueKey();
  }
  return UniqueKey(key);
}

std::wstring CurrentUserSid() {
  HANDLE token = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) {
    return {};
  }
  alignas(TOKEN_USER) BYTE buffer[256];
  DWORD length = 0;
  std::wstring sid;
  if (GetTokenInformation(token, TokenUser, buffer, sizeof buffer, &length)) {
    wchar_t* text = nullptr;
    if (ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(buffer)->User.Sid, &text)) {
      sid = text;
      LocalFree(text);
    }
  }
  CloseHandle(token);
  return sid;
}

// Deletes a link key itself; the usual calls would act on its target.
void DeleteLinkKey(HKEY root, const std::wstring& path) {
  using NtDeleteKeyFunction = LONG(WINAPI*)(HANDLE);
  const auto ntDeleteKey = reinterpret_cast<NtDeleteKeyFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtDeleteKey")));
  UniqueKey link = OpenKey(root, path, DELETE | KEY_QUERY_VALUE);
  if (ntDeleteKey != nullptr && link && IsLinkKey(link.Get())) {
    ntDeleteKey(link.Get());
  }
}

}  // namespace

TestKey::TestKey(HKEY root) : root_(root), path_(std::wstring(kTestsKey) + L"\\" + UniqueKeyName()) { CreateKey(L""); }

TestKey::~TestKey() {
  for (const std::wstring& link : links_) {
    DeleteLinkKey(root_, link);
  }
  UniqueKey tests = OpenKey(root_, kTestsKey, KEY_ALL_ACCESS);
  if (tests) {
    const std::wstring name = path_.substr(path_.find_last_of(L'\\') + 1);
    RegDeleteTreeW(tests.Get(), name.c_str());
    RegDeleteKeyExW(tests.Get(), name.c_str(), kRegistryView, 0);
  }
}

std::wstring TestKey::operator/(std::wstring_view subKey) const {
  return subKey.empty() ? path_ : path_ + L"\\" + std::wstring(subKey);
}

void TestKey::SetText(std::wstring_view subKey, std::wstring_view name, std::wstring_view value) const {
  SetRegistryText(root_, *this / subKey, name, value);
}

void TestKey::SetValue(std::wstring_view subKey, std::wstring_view name, DWORD type, const void* data,
                       DWORD size) const {
  UniqueKey key = CreateKeyPath(root_, *this / subKey);
  if (key) {
    RegSetValueExW(key.Get(), std::wstring(name).c_str(), 0, type, static_cast<const BYTE*>(data), size);
  }
}

void TestKey::CreateKey(std::wstring_view subKey) const { (void)CreateKeyPath(root_, *this / subKey); }

bool TestKey::KeyExists(std::wstring_view subKey) const {
  return static_cast<bool>(OpenKey(root_, *this / subKey, KEY_READ));
}

bool TestKey::ValueExists(std::wstring_view subKey, std::wstring_view name) const {
  UniqueKey key = OpenKey(root_, *this / subKey, KEY_READ);
  return key &&
         RegQueryValueExW(key.Get(), std::wstring(name).c_str(), nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

bool TestKey::CreateLink(std::wstring_view subKey, std::wstring_view targetSubKey) const {
  if (root_ != HKEY_CURRENT_USER) {
    return false;
  }
  const std::wstring linkPath = *this / subKey;
  HKEY link = nullptr;
  if (RegCreateKeyExW(root_, linkPath.c_str(), 0, nullptr, REG_OPTION_CREATE_LINK,
                      KEY_ALL_ACCESS | KEY_CREATE_LINK | kRegistryView, nullptr, &link, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  links_.push_back(linkPath);
  const std::wstring target = L"\\Registry\\User\\" + CurrentUserSid() + L"\\" + (*this / targetSubKey);
  const bool set =
      RegSetValueExW(link, L"SymbolicLinkValue", 0, REG_LINK, reinterpret_cast<const BYTE*>(target.c_str()),
                     static_cast<DWORD>(target.size() * sizeof(wchar_t))) == ERROR_SUCCESS;
  RegCloseKey(link);
  return set;
}

void SetRegistryText(HKEY root, const std::wstring& keyPath, std::wstring_view name, std::wstring_view value) {
  UniqueKey key = CreateKeyPath(root, keyPath);
  if (key) {
    const std::wstring text(value);
    RegSetValueExW(key.Get(), std::wstring(name).c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }
}

void MakeFolders(const std::wstring& folder) {
  for (size_t slash = folder.find(L'\\', 3); slash != std::wstring::npos; slash = folder.find(L'\\', slash + 1)) {
    CreateDirectoryW(folder.substr(0, slash).c_str(), nullptr);
  }
  CreateDirectoryW(folder.c_str(), nullptr);
}

void MakeFile(const std::wstring& path, std::string_view content) {
  MakeFolders(path.substr(0, path.find_last_of(L'\\')));
  WriteFileBytes(path, content);
}

std::vector<std::wstring> EntriesBelow(const std::wstring& folder) {
  std::vector<std::wstring> entries;
  std::vector<std::wstring> pending{L""};
  while (!pending.empty()) {
    const std::wstring relative = pending.back();
    pending.pop_back();
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW((folder + relative + L"*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
      continue;
    }
    do {
      const std::wstring name = entry.cFileName;
      if (name == L"." || name == L"..") continue;
      if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        entries.push_back(relative + name + L"\\");
        if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT)) pending.push_back(relative + name + L"\\");
      } else {
        entries.push_back(relative + name);
      }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

void RecordingSink::ItemStarted(const CMyObject& item) { started.push_back(item.Id()); }
void RecordingSink::ItemFinished(const CMyObject& item) { finished.push_back(item.Id()); }

void RecordingSink::TraceFound(const FoundTrace& trace) {
  traces.push_back({trace.item->Id(), trace.name, trace.location, trace.isRegistry});
  bytes.push_back(trace.bytes);
  if (afterEachTrace) {
    afterEachTrace();
  }
}

std::optional<std::wstring> FakeSystemPaths::ShellFolder(int csidl) const {
  const auto found = shellFolders.find(csidl);
  if (found == shellFolders.end()) return std::nullopt;
  return found->second;
}

std::optional<std::wstring> FakeSystemPaths::EnvironmentVariable(const wchar_t* name) const {
  const auto found = variables.find(name);
  if (found == variables.end()) return std::nullopt;
  return found->second;
}

UINT FakeSystemPaths::DriveType(const std::wstring& root) const {
  const auto found = driveTypes.find(root);
  return found == driveTypes.end() ? static_cast<UINT>(DRIVE_NO_ROOT_DIR) : found->second;
}

std::wstring FakeRegistryName(HKEY root, std::wstring_view path, std::wstring_view name) {
  return std::wstring(root == HKEY_LOCAL_MACHINE ? L"HKLM\\" : L"HKCU\\") + std::wstring(path) + L"\\" +
         std::wstring(name);
}

std::optional<std::wstring> FakeSystemPaths::RegistryText(HKEY root, std::wstring_view path,
                                                          std::wstring_view name) const {
  const auto found = registryTexts.find(FakeRegistryName(root, path, name));
  if (found == registryTexts.end()) return std::nullopt;
  return found->second;
}

std::vector<std::wstring> FakeSystemPaths::SubKeyNames(HKEY root, std::wstring_view path) const {
  const auto found = subKeys.find(FakeRegistryName(root, path));
  return found == subKeys.end() ? std::vector<std::wstring>() : found->second;
}

const FolderGuard& MachineGuard() {
  static const FolderGuard guard(MachinePaths());
  return guard;
}

std::optional<SafeFolder> Admitted(const std::wstring& folder) { return MachineGuard().Admit(folder); }

}  // namespace lumenor::testing
