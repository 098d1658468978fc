#include "tests/support/TempFolder.h"

#include "engine/FilePath.h"

#include <windows.h>

#include <atomic>
#include <vector>

namespace lumenor::testing {

namespace {

std::wstring TempRoot() {
  wchar_t buffer[MAX_PATH + 1] = {};
  const DWORD length = GetTempPathW(MAX_PATH + 1, buffer);
  if (length == 0 || length > MAX_PATH) {
    return L"C:\\";
  }
  return std::wstring(buffer, length);
}

}  // namespace

TempFolder::TempFolder() {
  static std::atomic<unsigned> counter{0};
  const std::wstring root = TempRoot();
  for (;;) {
    path_ =
        root + L"lumenor-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(counter++) + L"\\";
    if (CreateDirectoryW(path_.c_str(), nullptr)) {
      return;
    }
    if (GetLastError() != ERROR_ALREADY_EXISTS) {
      path_.clear();
      return;
    }
  }
}

TempFolder::~TempFolder() {
  if (!path_.empty()) {
    RemoveTree(path_);
  }
}

void RemoveTree(const std::wstring& folder) {
  // Depth-first with an explicit list of folders still to empty.
  std::vector<std::wstring> pending{folder};
  std::vector<std::wstring> emptied;
  while (!pending.empty()) {
    std::wstring current = std::move(pending.back());
    pending.pop_back();
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW(ForFileApi(current + L"*").c_str(), &entry);
    if (search != INVALID_HANDLE_VALUE) {
      do {
        const std::wstring name = entry.cFileName;
        if (name == L"." || name == L"..") {
          continue;
        }
        const std::wstring full = current + name;
        // Removed by their "\\?\" names, so that a name such as "a." is itself removed.
        const std::wstring exact = ForFileApi(full);
        const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        const bool isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_READONLY) {
          (void)SetFileAttributesW(exact.c_str(), FILE_ATTRIBUTE_NORMAL);  // best effort
        }
        if (isFolder && !isLink) {
          pending.push_back(full + L"\\");
        } else if (isFolder) {
          (void)RemoveDirectoryW(exact.c_str());  // the link only; may fail under Wine
        } else {
          (void)DeleteFileW(exact.c_str());  // best effort: test clean-up
        }
      } while (FindNextFileW(search, &entry));
      FindClose(search);
    }
    emptied.push_back(std::move(current));
  }
  for (auto it = emptied.rbegin(); it != emptied.rend(); ++it) {
    (void)RemoveDirectoryW(ForFileApi(*it).c_str());  // best effort: test clean-up
  }
}

std::string ReadFileBytes(const std::wstring& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return {};
  }
  std::string bytes;
  char chunk[4096];
  DWORD read = 0;
  while (ReadFile(file, chunk, sizeof chunk, &read, nullptr) && read > 0) {
    bytes.append(chunk, read);
  }
  CloseHandle(file);
  return bytes;
}

bool WriteFileBytes(const std::wstring& path, std::string_view bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return false;
  }
  DWORD written = 0;
  const bool ok =
      bytes.empty() ||
      (WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) && written == bytes.size());
  CloseHandle(file);
  return ok;
}

bool FileExists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

}  // namespace lumenor::testing
