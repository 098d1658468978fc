#include "tests/package/InstallSupport.h"

#include "base/UniqueHandle.h"

#include <objbase.h>
#include <shlobj.h>
#include <shobjidl.h>

#include <vector>

namespace lumenor::testing {

namespace {

struct RegistryKey {
  HKEY handle = nullptr;
  ~RegistryKey() {
    if (handle != nullptr) (void)RegCloseKey(handle);  // read-only; nothing to flush
  }
};

std::optional<std::vector<BYTE>> ReadValue(HKEY root, const wchar_t* key, const wchar_t* name, DWORD wantedType) {
  DWORD type = 0;
  DWORD size = 0;
  if (RegGetValueW(root, key, name, RRF_RT_ANY | RRF_NOEXPAND, &type, nullptr, &size) != ERROR_SUCCESS ||
      type != wantedType) {
    return std::nullopt;
  }
  std::vector<BYTE> data(size);
  if (RegGetValueW(root, key, name, RRF_RT_ANY | RRF_NOEXPAND, &type, data.data(), &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  data.resize(size);
  return data;
}

std::wstring FileTimeText(const FILETIME& time) {
  return std::to_wstring((static_cast<ULONGLONG>(time.dwHighDateTime) << 32) | time.dwLowDateTime);
}

void PictureFolder(const std::wstring& folder, const std::wstring& skipped,
                   std::map<std::wstring, std::wstring>& into) {
  WIN32_FIND_DATAW found{};
  const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::wstring name = found.cFileName;
    if (name == L"." || name == L"..") continue;
    const std::wstring path = folder + L"\\" + name;
    if (_wcsicmp(path.c_str(), skipped.c_str()) == 0) continue;
    const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    const bool isLink = (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    into[path] = isFolder ? L"folder"
                          : std::to_wstring((static_cast<ULONGLONG>(found.nFileSizeHigh) << 32) | found.nFileSizeLow) +
                                L" bytes, " + FileTimeText(found.ftLastWriteTime);
    if (isFolder && !isLink) PictureFolder(path, skipped, into);
  } while (FindNextFileW(search, &found));
  (void)FindClose(search);  // a search handle; nothing to do if closing fails
}

void PictureKey(HKEY root, const std::wstring& key, std::map<std::wstring, std::wstring>& into) {
  RegistryKey opened;
  if (RegOpenKeyExW(root, key.c_str(), 0, KEY_READ, &opened.handle) != ERROR_SUCCESS) return;
  into[key + L"\\"] = L"key";
  wchar_t name[16384];
  std::vector<BYTE> data(1 << 16);
  for (DWORD index = 0;; ++index) {
    DWORD nameLength = static_cast<DWORD>(std::size(name));
    DWORD size = static_cast<DWORD>(data.size());
    DWORD type = 0;
    const LONG result = RegEnumValueW(opened.handle, index, name, &nameLength, nullptr, &type, data.data(), &size);
    if (result == ERROR_NO_MORE_ITEMS) break;
    if (result != ERROR_SUCCESS) {
      into[key + L"\\:" + std::to_wstring(index)] = L"unreadable value";
      continue;
    }
    std::wstring text = std::to_wstring(type) + L":";
    for (DWORD at = 0; at < size; ++at) {
      text += L"0123456789abcdef"[data[at] >> 4];
      text += L"0123456789abcdef"[data[at] & 15];
    }
    into[key + L"\\:" + name] = text;
  }
  std::vector<std::wstring> subkeys;
  for (DWORD index = 0;; ++index) {
    DWORD nameLength = static_cast<DWORD>(std::size(name));
    const LONG result = RegEnumKeyExW(opened.handle, index, name, &nameLength, nullptr, nullptr, nullptr, nullptr);
    if (result != ERROR_SUCCESS) break;
    subkeys.push_back(key.empty() ? name : key + L"\\" + name);
  }
  for (const std::wstring& subkey : subkeys) PictureKey(root, subkey, into);
}

// The programs still running in `job`, by file name, for a failure message.
std::wstring ProgramsIn(HANDLE job) {
  struct {
    JOBOBJECT_BASIC_PROCESS_ID_LIST list;
    ULONG_PTR more[63];
  } ids{};
  ids.list.NumberOfAssignedProcesses = 64;
  std::wstring names;
  if (!QueryInformationJobObject(job, JobObjectBasicProcessIdList, &ids, sizeof ids, nullptr)) return L"?";
  for (DWORD index = 0; index < ids.list.NumberOfProcessIdsInList; ++index) {
    const UniqueHandle process(
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(ids.list.ProcessIdList[index])));
    wchar_t path[MAX_PATH] = L"?";
    DWORD length = MAX_PATH;
    if (process) (void)QueryFullProcessImageNameW(process.Get(), 0, path, &length);  // "?" stays
    names += names.empty() ? L"" : L", ";
    names += path;
  }
  return names;
}

}  // namespace

JobResult RunWholeJob(const std::wstring& commandLine, DWORD timeoutMs) {
  JobResult result;
  // Under Wine, the first program to need the desktop starts the desktop's process,
  // which then lives as long as the session: started from here, it stays out of the job.
  (void)GetDesktopWindow();  // there is always one to return; only its start matters
  const UniqueHandle job(CreateJobObjectW(nullptr, nullptr));
  if (!job) return result;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  std::wstring line = commandLine;
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED, nullptr, nullptr, &startup,
                      &process)) {
    return result;
  }
  const UniqueHandle processHandle(process.hProcess);
  const UniqueHandle thread(process.hThread);
  // Suspended until it is in the job, so that nothing it starts escapes the wait.
  if (!AssignProcessToJobObject(job.Get(), process.hProcess) ||
      ResumeThread(process.hThread) == static_cast<DWORD>(-1)) {
    (void)TerminateProcess(process.hProcess, 1);  // the test fails on `finished` anyway
    return result;
  }
  for (DWORD waited = 0; waited <= timeoutMs; waited += 100) {
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION accounting{};
    if (!QueryInformationJobObject(job.Get(), JobObjectBasicAccountingInformation, &accounting, sizeof accounting,
                                   nullptr)) {
      break;
    }
    if (accounting.ActiveProcesses == 0) {
      result.finished = GetExitCodeProcess(process.hProcess, &result.exitCode) != FALSE;
      return result;
    }
    Sleep(100);
  }
  result.stillRunning = ProgramsIn(job.Get());
  (void)TerminateJobObject(job.Get(), 1);  // a run past its time fails the test
  return result;
}

std::wstring KnownFolder(const GUID& id) {
  PWSTR path = nullptr;
  std::wstring folder;
  if (SUCCEEDED(SHGetKnownFolderPath(id, KF_FLAG_DEFAULT, nullptr, &path))) folder = path;
  CoTaskMemFree(path);
  return folder;
}

std::optional<std::wstring> ReadString(HKEY root, const wchar_t* key, const wchar_t* name) {
  const std::optional<std::vector<BYTE>> data = ReadValue(root, key, name, REG_SZ);
  if (!data) return std::nullopt;
  std::wstring text(reinterpret_cast<const wchar_t*>(data->data()), data->size() / sizeof(wchar_t));
  while (!text.empty() && text.back() == L'\0') text.pop_back();
  return text;
}

std::optional<DWORD> ReadDword(HKEY root, const wchar_t* key, const wchar_t* name) {
  const std::optional<std::vector<BYTE>> data = ReadValue(root, key, name, REG_DWORD);
  if (!data || data->size() != sizeof(DWORD)) return std::nullopt;
  DWORD value = 0;
  memcpy(&value, data->data(), sizeof value);
  return value;
}

bool KeyExists(HKEY root, const wchar_t* key) {
  RegistryKey opened;
  return RegOpenKeyExW(root, key, 0, KEY_READ, &opened.handle) == ERROR_SUCCESS;
}

std::wstring ShortcutTarget(const std::wstring& shortcut) {
  const bool comStarted = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
  std::wstring target;
  IShellLinkW* link = nullptr;
  if (SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                 reinterpret_cast<void**>(&link)))) {
    IPersistFile* file = nullptr;
    if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)))) {
      wchar_t path[MAX_PATH] = {};
      if (SUCCEEDED(file->Load(shortcut.c_str(), STGM_READ)) &&
          SUCCEEDED(link->GetPath(path, MAX_PATH, nullptr, SLGP_RAWPATH))) {
        target = path;
      }
      file->Release();
    }
    link->Release();
  }
  if (comStarted) CoUninitialize();
  return target;
}

std::map<std::wstring, std::wstring> FolderPicture(const std::wstring& folder, const std::wstring& skipped) {
  std::map<std::wstring, std::wstring> picture;
  PictureFolder(folder, skipped, picture);
  return picture;
}

std::map<std::wstring, std::wstring> RegistryPicture(HKEY root, const std::wstring& key) {
  std::map<std::wstring, std::wstring> picture;
  PictureKey(root, key, picture);
  return picture;
}

std::vector<std::wstring> Differences(const std::map<std::wstring, std::wstring>& before,
                                      const std::map<std::wstring, std::wstring>& after) {
  std::map<std::wstring, wchar_t> changes;
  for (const auto& [path, state] : after) {
    const auto old = before.find(path);
    if (old == before.end()) {
      changes[path] = L'+';
    } else if (old->second != state) {
      changes[path] = L'~';
    }
  }
  for (const auto& [path, state] : before) {
    if (!after.contains(path)) changes[path] = L'-';
  }
  std::vector<std::wstring> lines;
  for (const auto& [path, change] : changes) lines.push_back(std::wstring(1, change) + L" " + path);
  return lines;
}

}  // namespace lumenor::testing
