// Speed of the engine's walks against the plainest walk the system allows, measured in
// the same run on the same trees: a folder tree of 100,000 files in 5,000 folders and a
// registry key of 50,000 values in 2,000 sub-keys. The scans go through a run, each trace
// counted with its size on its item, application and category, as a scan of the page
// does; the plain walks add up the same sizes. Prints times and ratios.
#include "catalogue/CMyObject.h"
#include "engine/FileTraces.h"
#include "engine/Registry.h"
#include "engine/RegistryTraces.h"
#include "engine/ScanRun.h"
#include "engine/TraceEngine.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace {

using lumenor::EraseTally;

constexpr int kTopFolders = 50;
constexpr int kFoldersPerTop = 99;   // 50 + 50 * 99 = 5,000 folders
constexpr int kFilesPerFolder = 20;  // 100,000 files
constexpr int kSubKeys = 2000;
constexpr int kValuesPerKey = 25;  // 50,000 values
constexpr int kRounds = 3;

const std::wstring kTree = L"C:\\lumenor-bench\\tree\\";
const std::wstring kKey = L"Software\\LumenorBench";

void SeedTree() {
  CreateDirectoryW(L"C:\\lumenor-bench", nullptr);
  CreateDirectoryW(kTree.c_str(), nullptr);
  const auto fill = [](const std::wstring& folder) {
    CreateDirectoryW(folder.c_str(), nullptr);
    for (int f = 0; f < kFilesPerFolder; ++f) {
      const std::wstring path = folder + L"file" + std::to_wstring(f) + L".dat";
      HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
      if (file == INVALID_HANDLE_VALUE) continue;
      // A few bytes each, so that the sizes added up mean something.
      const char bytes[kFilesPerFolder] = {};
      DWORD written = 0;
      WriteFile(file, bytes, static_cast<DWORD>(f), &written, nullptr);
      CloseHandle(file);
    }
  };
  for (int t = 0; t < kTopFolders; ++t) {
    const std::wstring top = kTree + L"top" + std::to_wstring(t) + L"\\";
    fill(top);
    for (int s = 0; s < kFoldersPerTop; ++s) fill(top + L"sub" + std::to_wstring(s) + L"\\");
  }
}

void SeedKey() {
  for (int k = 0; k < kSubKeys; ++k) {
    HKEY key = nullptr;
    const std::wstring path = kKey + L"\\group" + std::to_wstring(k / 100) + L"\\key" + std::to_wstring(k);
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS | lumenor::kRegistryView,
                        nullptr, &key, nullptr) != ERROR_SUCCESS) {
      continue;
    }
    for (int v = 0; v < kValuesPerKey; ++v) {
      const DWORD data = static_cast<DWORD>(v);
      RegSetValueExW(key, (L"value" + std::to_wstring(v)).c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&data),
                     sizeof data);
    }
    RegCloseKey(key);
  }
}

// The plainest walks: recursion, one search per folder, nothing but counting files and
// adding up their sizes.
long PlainFileWalk(const std::wstring& folder, uint64_t& bytes) {
  long files = 0;
  WIN32_FIND_DATAW entry;
  HANDLE search = FindFirstFileExW((folder + L"*").c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr,
                                   FIND_FIRST_EX_LARGE_FETCH);
  if (search == INVALID_HANDLE_VALUE) return 0;
  do {
    if (entry.cFileName[0] == L'.' && (entry.cFileName[1] == 0 || (entry.cFileName[1] == L'.' && !entry.cFileName[2])))
      continue;
    if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
      files += PlainFileWalk(folder + entry.cFileName + L"\\", bytes);
    } else {
      ++files;
      bytes += (static_cast<uint64_t>(entry.nFileSizeHigh) << 32) | entry.nFileSizeLow;
    }
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  return files;
}

long PlainFileDelete(const std::wstring& folder) {
  long files = 0;
  WIN32_FIND_DATAW entry;
  HANDLE search = FindFirstFileExW((folder + L"*").c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr,
                                   FIND_FIRST_EX_LARGE_FETCH);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      if (entry.cFileName[0] == L'.' &&
          (entry.cFileName[1] == 0 || (entry.cFileName[1] == L'.' && !entry.cFileName[2])))
        continue;
      const std::wstring path = folder + entry.cFileName;
      if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        files += PlainFileDelete(path + L"\\");
      } else if (DeleteFileW(path.c_str())) {
        ++files;
      }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
  }
  RemoveDirectoryW(folder.c_str());
  return files;
}

long PlainRegistryWalk(HKEY key, uint64_t& bytes) {
  long values = 0;
  wchar_t name[16384];
  for (DWORD i = 0;; ++i) {
    DWORD length = 16384;
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    HKEY child = nullptr;
    if (RegOpenKeyExW(key, name, 0, KEY_READ | lumenor::kRegistryView, &child) == ERROR_SUCCESS) {
      values += PlainRegistryWalk(child, bytes);
      RegCloseKey(child);
    }
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = 16384;
    DWORD dataBytes = 0;
    if (RegEnumValueW(key, i, name, &length, nullptr, nullptr, nullptr, &dataBytes) != ERROR_SUCCESS) break;
    ++values;
    bytes += dataBytes;
  }
  return values;
}

long PlainRegistryDelete(HKEY parent, const wchar_t* name) {
  long values = 0;
  HKEY key = nullptr;
  if (RegOpenKeyExW(parent, name, 0, KEY_ALL_ACCESS | lumenor::kRegistryView, &key) != ERROR_SUCCESS) return 0;
  DWORD count = 0;
  RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr,
                   nullptr);
  values += count;
  wchar_t child[256];
  for (;;) {
    DWORD length = 256;
    if (RegEnumKeyExW(key, 0, child, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) break;
    const long deleted = PlainRegistryDelete(key, child);
    if (deleted < 0) break;
    values += deleted;
  }
  RegCloseKey(key);
  return RegDeleteKeyW(parent, name) == ERROR_SUCCESS ? values : -1;
}

class CountingTally final : public EraseTally {
 public:
  void Erased(int count, uint64_t /*bytes*/) override { erased += count; }
  void EraseFailed(const std::wstring&) override { ++failed; }
  void LocationSkipped(const lumenor::SkippedLocation&) override { ++skipped; }
  long erased = 0;
  long failed = 0;
  long skipped = 0;
};

// Hears every trace a run reports, as a page or the command line does, and keeps nothing.
class CountingSink final : public lumenor::TraceSink {
 public:
  void TraceFound(const lumenor::FoundTrace&) override { ++traces; }
  void LocationSkipped(const lumenor::SkippedLocation&) override {}
  long traces = 0;
};

// A run of one made-up item (under an application and a category) over one location.
struct BenchItem {
  lumenor::CMyObject category, application, item;
  BenchItem() {
    application.SetParent(&category);
    item.SetParent(&application);
    item.SetLevel(lumenor::CMyObject::kItem);
  }
  long Scan(const lumenor::LocationRecord& location, const lumenor::FolderGuard& guard, uint64_t& bytes) {
    lumenor::ScanRun run({&item});
    run.Items()[0].locations = {location};
    CountingSink sink;
    lumenor::ScanItem(run, run.Items()[0], sink, lumenor::StopToken(), guard);
    bytes = run.FoundBytes(category);
    return run.FoundCount(category);
  }
};

lumenor::LocationRecord FileLocation(const std::wstring& folder) {
  lumenor::LocationRecord location;
  location.path = folder;
  location.selector = L"*.*";
  location.kind = lumenor::kMatchEveryFile;
  return location;
}

lumenor::LocationRecord KeyLocation(const std::wstring& key) {
  lumenor::LocationRecord location;
  location.rootKey = HKEY_CURRENT_USER;
  location.rootPrefix = L"HKEY_CURRENT_USER\\";
  location.path = key;
  location.selector = L"*.*";
  return location;
}

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Report(const char* what, double engine, double plain, long engineCount, long plainCount, double target) {
  std::printf("%-26s engine %8.3f s  plain %8.3f s  ratio %5.2f  (target <= %.1f)  counted %ld / %ld\n", what, engine,
              plain, engine / plain, target, engineCount, plainCount);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  // "files" or "registry" runs one half only.
  const std::wstring only = argc > 1 ? argv[1] : L"";
  const bool files = only != L"registry";
  const bool registry = only != L"files";
  std::printf("seeding %d files in %d folders and %d values in %d keys...\n",
              kTopFolders * (kFoldersPerTop + 1) * kFilesPerFolder, kTopFolders * (kFoldersPerTop + 1),
              kSubKeys * kValuesPerKey, kSubKeys);
  std::fflush(stdout);
  if (files) SeedTree();
  if (registry) SeedKey();

  // The engine's walks go through the folder rules, as every caller's do.
  const lumenor::FolderGuard guard(lumenor::MachinePaths());

  // Scans: alternate the two walkers and keep each one's best round.
  double engineFiles = 1e9, plainFiles = 1e9, engineKeys = 1e9, plainKeys = 1e9;
  long engineFileCount = 0, plainFileCount = 0, engineValueCount = 0, plainValueCount = 0;
  uint64_t engineFileBytes = 0, plainFileBytes = 0, engineValueBytes = 0, plainValueBytes = 0;
  BenchItem benchItem;
  for (int round = 0; round < kRounds; ++round) {
    if (files) {
      engineFiles = std::min(
          engineFiles, Seconds([&] { engineFileCount = benchItem.Scan(FileLocation(kTree), guard, engineFileBytes); }));
      plainFiles = std::min(plainFiles, Seconds([&] {
                              plainFileBytes = 0;
                              plainFileCount = PlainFileWalk(kTree, plainFileBytes);
                            }));
    }
    if (!registry) continue;
    engineKeys = std::min(
        engineKeys, Seconds([&] { engineValueCount = benchItem.Scan(KeyLocation(kKey), guard, engineValueBytes); }));
    plainKeys = std::min(plainKeys, Seconds([&] {
                           HKEY key = nullptr;
                           plainValueBytes = 0;
                           if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey.c_str(), 0, KEY_READ | lumenor::kRegistryView,
                                             &key) == ERROR_SUCCESS) {
                             plainValueCount = PlainRegistryWalk(key, plainValueBytes);
                             RegCloseKey(key);
                           }
                         }));
  }
  if (engineFileBytes != plainFileBytes || engineValueBytes != plainValueBytes) {
    std::printf("sizes differ: files %llu / %llu bytes, values %llu / %llu bytes\n",
                static_cast<unsigned long long>(engineFileBytes), static_cast<unsigned long long>(plainFileBytes),
                static_cast<unsigned long long>(engineValueBytes), static_cast<unsigned long long>(plainValueBytes));
  }
  if (files) Report("file scan", engineFiles, plainFiles, engineFileCount, plainFileCount, 1.2);
  if (registry) Report("registry scan", engineKeys, plainKeys, engineValueCount, plainValueCount, 1.2);
  std::fflush(stdout);

  // Erases: each deletes a freshly seeded tree once.
  if (files) {
    CountingTally tally;
    const double engineFileErase = Seconds([&] {
      const auto tree = guard.Admit(kTree);
      if (tree) lumenor::EraseFileLocation(*tree, L"*.*", tally);
    });
    SeedTree();
    long plainDeleted = 0;
    const double plainFileErase = Seconds([&] { plainDeleted = PlainFileDelete(kTree); });
    Report("file erase", engineFileErase, plainFileErase, tally.erased, plainDeleted, 1.3);
    std::fflush(stdout);
  }
  if (!registry) return 0;

  CountingTally keyTally;
  const double engineKeyErase =
      Seconds([&] { lumenor::EraseRegistryLocation(HKEY_CURRENT_USER, kKey, L"*.*", keyTally); });
  SeedKey();
  long plainValuesDeleted = 0;
  const double plainKeyErase = Seconds([&] {
    HKEY software = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_ALL_ACCESS | lumenor::kRegistryView, &software) ==
        ERROR_SUCCESS) {
      plainValuesDeleted = PlainRegistryDelete(software, L"LumenorBench");
      RegCloseKey(software);
    }
  });
  Report("registry erase", engineKeyErase, plainKeyErase, keyTally.erased, plainValuesDeleted, 1.3);
  RemoveDirectoryW(L"C:\\lumenor-bench");
  return 0;
}
