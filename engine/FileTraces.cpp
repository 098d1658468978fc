#include "engine/FileTraces.h"

#include "catalogue/LocationRecord.h"
#include "engine/FilePath.h"
#include "engine/FolderWalk.h"

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace lumenor {

namespace {

bool LooksForOneName(std::wstring_view selector) {
  return selector == L"setupapi.log" || selector == L"DirectX.log" || selector == L"pagefile.sys";
}

// A file that could not be deleted (locked, read-only) goes at the next restart.
void LeaveToRestart(const std::wstring& path, EraseTally& tally) {
  (void)MoveFileExW(ForFileApi(path).c_str(), nullptr,
                    MOVEFILE_DELAY_UNTIL_REBOOT);  // the failure is counted either way
  tally.EraseFailed(path);
}

uint64_t SizeOf(const WIN32_FIND_DATAW& entry) {
  return (static_cast<uint64_t>(entry.nFileSizeHigh) << 32) | entry.nFileSizeLow;
}

// The size of the file at `path` when it is neither a folder nor a link.
std::optional<uint64_t> PlainFileSize(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data{};
  if (GetFileAttributesExW(ForFileApi(path).c_str(), GetFileExInfoStandard, &data) == FALSE ||
      IsFolder(data.dwFileAttributes) || IsReparsePoint(data.dwFileAttributes)) {
    return std::nullopt;
  }
  return (static_cast<uint64_t>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

}  // namespace

bool ScanReportsFile(std::wstring_view fileName, std::wstring_view selector, int kind) {
  switch (kind) {
    case kMatchEveryFile:
    case kMatchEveryFileToo:
      return true;
    case kMatchExtension: {
      const size_t dot = fileName.find_last_of(L'.');
      return dot != std::wstring_view::npos && fileName.substr(dot) == selector;
    }
    case kMatchExactName:
      return fileName == selector;
    default:
      return false;
  }
}

void ScanFileLocation(const SafeFolder& folder, std::wstring_view selector, int kind, const StopToken& stop,
                      const FileTraceFound& found) {
  const std::wstring_view pattern = LooksForOneName(selector) ? selector : std::wstring_view(L"*.*");
  WalkFolder(folder.Where(), pattern, stop, [&](const WalkEntry& entry) {
    if (!entry.IsFolder() && ScanReportsFile(entry.Name(), selector, kind)) {
      found(entry.folder, entry.Name(), entry.Size());
    }
    return true;  // every folder but a link is entered
  });
}

void EraseFileLocation(const SafeFolder& folder, std::wstring_view selector, EraseTally& tally, bool keepFolder) {
  const std::wstring& top = folder.Path();
  const auto visit = [&tally](const WalkEntry& entry) {
    if (entry.IsFolder()) {
      if (entry.IsLink()) {
        // The link alone may go; its target is never touched. Some systems refuse even that.
        (void)RemoveDirectoryW(ForFileApi(entry.Path()).c_str());
        return false;
      }
      return true;
    }
    const std::wstring path = entry.Path();
    if (DeleteFileW(ForFileApi(path).c_str())) {
      tally.Erased(1, entry.Size());
    } else {
      LeaveToRestart(path, tally);
    }
    return false;
  };
  const auto emptied = [&](const std::wstring& done) {
    if (!keepFolder || done != top) {
      (void)RemoveDirectoryW(ForFileApi(done).c_str());  // fails while anything is left in it
    }
  };
  WalkFolder(folder.Where(), selector, StopToken(), visit, emptied);
}

bool NamesOneFile(std::wstring_view selector) {
  return !selector.empty() && selector.find_first_of(L"*?\\/:") == std::wstring_view::npos && selector != L"." &&
         selector != L"..";
}

void ScanOneFile(const std::wstring& folder, std::wstring_view fileName, int kind, const FileTraceFound& found) {
  if (!NamesOneFile(fileName) || !ScanReportsFile(fileName, fileName, kind)) {
    return;
  }
  // The name is looked up as it is spelled; the row shows the name the disk holds.
  WIN32_FIND_DATAW entry{};
  const HANDLE search = FindFirstFileExW(ForFileApi(folder + std::wstring(fileName)).c_str(), FindExInfoBasic, &entry,
                                         FindExSearchNameMatch, nullptr, 0);
  if (search == INVALID_HANDLE_VALUE) {
    return;
  }
  (void)FindClose(search);  // closing our own search handle cannot usefully fail
  if (!IsFolder(entry.dwFileAttributes) && ScanReportsFile(entry.cFileName, fileName, kind)) {
    found(folder, entry.cFileName, SizeOf(entry));
  }
}

void EraseOneFile(const std::wstring& folder, std::wstring_view fileName, EraseTally& tally) {
  if (!NamesOneFile(fileName)) {
    return;
  }
  const std::wstring path = folder + std::wstring(fileName);
  const std::optional<uint64_t> size = PlainFileSize(path);
  if (!size) {
    return;
  }
  if (DeleteFileW(ForFileApi(path).c_str())) {
    tally.Erased(1, *size);
  } else {
    LeaveToRestart(path, tally);
  }
}

}  // namespace lumenor
