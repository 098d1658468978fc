#include "shred/ShredFile.h"

#include "base/Texts.h"
#include "engine/FilePath.h"
#include "shred/PatternBuffers.h"

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <optional>
#include <utility>

namespace lumenor {

namespace {

ShredFailure OpenFailure(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? ShredFailure::kMissing
                                                                        : ShredFailure::kCannotOpen;
}

// Renames that may meet an existing name are tried again with another one.
constexpr int kRenameAttempts = 8;

std::wstring_view WithoutTrailingDotsAndBlanks(std::wstring_view name) {
  while (!name.empty() && (name.back() == L'.' || name.back() == L' ')) name.remove_suffix(1);
  return name;
}

// Whether the open `handle` is the entry `file` itself rather than what a link of that
// name leads to: its final path must end in the entry's own long name, in the same
// folder (by identity, so that short names and folder links above do not count).
bool IsFileOfThatName(HANDLE handle, const SafePath& file) {
  std::wstring finalPath(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetFinalPathNameByHandleW(handle, finalPath.data(), static_cast<DWORD>(finalPath.size()),
                                                   FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
    if (length == 0) {
      return true;  // not told on this file system; the reparse attribute has been checked
    }
    if (length < finalPath.size()) {
      finalPath.resize(length);
      break;
    }
    finalPath.resize(length);
  }
  const size_t slash = finalPath.find_last_of(L'\\');
  if (slash == std::wstring::npos) {
    return false;
  }
  WIN32_FIND_DATAW entry{};
  const HANDLE search =
      FindFirstFileExW(file.ForApi().c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr, 0);
  if (search == INVALID_HANDLE_VALUE) {
    return false;
  }
  (void)FindClose(search);  // closing our own search cannot usefully fail
  const std::wstring_view finalName = std::wstring_view(finalPath).substr(slash + 1);
  const std::wstring_view folderForApi = file.FolderForApi();
  if (!SameText(finalName, entry.cFileName)) {
    // Some systems (Wine) drop a trailing dot or blank from the final path, so "a." shows
    // as "a". That is the file itself unless it is the very file "a" is.
    const std::wstring_view trimmed = WithoutTrailingDotsAndBlanks(entry.cFileName);
    if (trimmed.size() == std::wcslen(entry.cFileName) || !SameText(finalName, trimmed)) {
      return false;
    }
    const auto handleIdentity = IdentityOfHandle(handle);
    const auto twinIdentity = IdentityOfPath(std::wstring(folderForApi) + std::wstring(trimmed));
    if (!handleIdentity || (twinIdentity && twinIdentity == handleIdentity)) {
      return false;
    }
  }
  std::wstring finalFolder = finalPath.substr(0, slash + 1);
  if (finalFolder.starts_with(L"\\\\?\\UNC\\")) {
    finalFolder = L"\\\\" + finalFolder.substr(8);
  } else if (finalFolder.starts_with(L"\\\\?\\")) {
    finalFolder = finalFolder.substr(4);
  }
  if (SameText(finalFolder, file.Folder())) {
    return true;
  }
  const auto finalIdentity = IdentityOfPath(finalFolder);
  return finalIdentity && finalIdentity == IdentityOfPath(folderForApi);
}

}  // namespace

OpenedForOverwrite OpenForOverwrite(const SafePath& file) {
  OpenedForOverwrite opened;
  const std::wstring& apiPath = file.ForApi();
  // The name's own attributes first: a link is refused before anything opens it.
  const DWORD attributes = GetFileAttributesW(apiPath.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) {
    opened.failure = OpenFailure(GetLastError());
    return opened;
  }
  if (IsReparsePoint(attributes)) {
    opened.failure = ShredFailure::kLink;
    return opened;
  }
  if (IsFolder(attributes)) {
    opened.failure = ShredFailure::kNotAFile;
    return opened;
  }
  // Asked before the open: some systems let a privileged user write to it all the same.
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) {
    opened.failure = ShredFailure::kCannotOpen;
    return opened;
  }
  // Opening the reparse point itself, should the name have become one meanwhile, so the
  // handle is never the target's; the handle's attributes below tell.
  opened.file = UniqueHandle(CreateFileW(apiPath.c_str(), GENERIC_WRITE | FILE_READ_ATTRIBUTES,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  if (!opened.file) {
    opened.failure = OpenFailure(GetLastError());
    return opened;
  }
  // The two small queries rather than GetFileInformationByHandle, which also asks the
  // volume for its serial number: a cost paid for every file of a long list.
  FILE_BASIC_INFO basic{};
  FILE_STANDARD_INFO standard{};
  if (GetFileInformationByHandleEx(opened.file.Get(), FileBasicInfo, &basic, sizeof basic) == FALSE ||
      GetFileInformationByHandleEx(opened.file.Get(), FileStandardInfo, &standard, sizeof standard) == FALSE) {
    opened.failure = ShredFailure::kCannotOpen;
  } else if (IsReparsePoint(basic.FileAttributes) || !IsFileOfThatName(opened.file.Get(), file)) {
    opened.failure = ShredFailure::kLink;
  } else if (IsFolder(basic.FileAttributes) || standard.Directory != FALSE) {
    opened.failure = ShredFailure::kNotAFile;
  } else if (standard.NumberOfLinks > 1) {
    opened.failure = ShredFailure::kHardLinks;
  }
  if (opened.failure != ShredFailure::kNone) {
    opened.file.Reset();
    return opened;
  }
  opened.size = static_cast<uint64_t>(standard.EndOfFile.QuadPart);
  return opened;
}

ShredFailure OverwritePass(HANDLE file, uint64_t size, const unsigned char* pattern, const StopToken& stop,
                           const std::function<void(uint32_t bytes)>& chunkWritten) {
  LARGE_INTEGER start{};
  if (SetFilePointerEx(file, start, nullptr, FILE_BEGIN) == FALSE) {
    return ShredFailure::kWriteFailed;
  }
  uint64_t position = 0;
  while (position < size) {
    if (stop.StopRequested()) {
      return ShredFailure::kStopped;
    }
    const auto chunk = static_cast<DWORD>(std::min<uint64_t>(size - position, PatternBuffers::kSize));
    DWORD written = 0;
    if (WriteFile(file, pattern, chunk, &written, nullptr) == FALSE || written != chunk) {
      return ShredFailure::kWriteFailed;
    }
    position += chunk;
    chunkWritten(chunk);
    Sleep(0);  // lets the page's thread in between chunks on a busy processor
  }
  // Without it the next pass could overwrite this one in the cache before it reached
  // the disk.
  return FlushFileBuffers(file) != FALSE ? ShredFailure::kNone : ShredFailure::kWriteFailed;
}

std::wstring RandomNameLike(std::wstring_view name) {
  static constexpr wchar_t kLetters[] = L"abcdefghijklmnopqrstuvwxyz0123456789";
  std::wstring random(name.size(), L'a');
  for (wchar_t& letter : random) {
    letter = kLetters[static_cast<unsigned>(std::rand()) % (std::size(kLetters) - 1)];
  }
  return random;
}

Deletion DeleteUnderRandomName(const SafePath& file) {
  Deletion deletion;
  deletion.path = file.Text();
  std::wstring apiPath = file.ForApi();
  for (int attempt = 0; attempt < kRenameAttempts; ++attempt) {
    const std::wstring randomName = RandomNameLike(file.Name());
    std::wstring renamedForApi = std::wstring(file.FolderForApi()) + randomName;
    if (MoveFileExW(apiPath.c_str(), renamedForApi.c_str(), 0) != FALSE) {
      deletion.path = std::wstring(file.Folder()) + randomName;
      apiPath = std::move(renamedForApi);
      break;
    }
    const DWORD error = GetLastError();
    if (error != ERROR_ALREADY_EXISTS && error != ERROR_FILE_EXISTS) {
      break;  // the name stays; the data is overwritten all the same
    }
  }
  deletion.deleted = DeleteFileW(apiPath.c_str()) != FALSE;
  return deletion;
}

}  // namespace lumenor
