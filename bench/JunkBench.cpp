// Speed of the junk walk against the plainest walk the system allows, on the same tree in
// the same run: 200,000 files in 10,000 folders, a quarter of them junk under the default
// masks. Then how fast rows reach the result page's list: the page's own walk to its
// list, and the list alone taking rows in the batches the walk hands it. Prints figures
// and ratios; scripts/bench.sh runs it in a prefix of its own.
#include "controls/GifPicture.h"
#include "controls/MyListCtrl.h"
#include "junk/DlgJunkJunk.h"
#include "junk/JunkCatalogue.h"
#include "junk/JunkWalk.h"

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int kTopFolders = 100;
constexpr int kFoldersPerTop = 99;   // 100 + 100 * 99 = 10,000 folders
constexpr int kFilesPerFolder = 20;  // 200,000 files
constexpr int kRounds = 5;
constexpr size_t kListBatch = 2000;  // rows per hand-over, as the page's walk sends them

const std::wstring kBench = L"C:\\lumenor-bench\\";
const std::wstring kTree = kBench + L"junk-tree\\";
const std::wstring kSeededMark = kBench + L"junk-tree.seeded";

// Names of one folder's files: every fourth one junk under the default masks.
std::wstring FileName(int index) {
  switch (index % 4) {
    case 0:
      return L"Draft" + std::to_wstring(index) + L".TMP";
    case 1:
      return L"report" + std::to_wstring(index) + L".docx";
    case 2:
      return L"photo" + std::to_wstring(index) + L".jpg";
    default:
      return L"notes" + std::to_wstring(index) + L".txt";
  }
}

bool Seed() {
  if (GetFileAttributesW(kSeededMark.c_str()) != INVALID_FILE_ATTRIBUTES) {
    return true;  // seeded by an earlier run
  }
  (void)CreateDirectoryW(kBench.c_str(), nullptr);
  (void)CreateDirectoryW(kTree.c_str(), nullptr);
  const auto fill = [](const std::wstring& folder) {
    (void)CreateDirectoryW(folder.c_str(), nullptr);
    for (int f = 0; f < kFilesPerFolder; ++f) {
      const HANDLE file = CreateFileW((folder + FileName(f)).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
      if (file == INVALID_HANDLE_VALUE) return false;
      (void)CloseHandle(file);
    }
    return true;
  };
  for (int t = 0; t < kTopFolders; ++t) {
    const std::wstring top = kTree + L"top" + std::to_wstring(t) + L"\\";
    if (!fill(top)) return false;
    for (int s = 0; s < kFoldersPerTop; ++s) {
      if (!fill(top + L"sub" + std::to_wstring(s) + L"\\")) return false;
    }
  }
  const HANDLE mark = CreateFileW(kSeededMark.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  if (mark == INVALID_HANDLE_VALUE) return false;
  (void)CloseHandle(mark);
  return true;
}

// The plainest walk: recursion, one search per folder, the same search the junk walk
// makes, nothing but counting.
long PlainWalk(const std::wstring& folder) {
  long files = 0;
  WIN32_FIND_DATAW entry;
  const HANDLE search = FindFirstFileExW((folder + L"*").c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch,
                                         nullptr, FIND_FIRST_EX_LARGE_FETCH);
  if (search == INVALID_HANDLE_VALUE) return 0;
  do {
    const wchar_t* name = entry.cFileName;
    if (name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0))) continue;
    if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
      files += PlainWalk(folder + name + L"\\");
    } else {
      ++files;
    }
  } while (FindNextFileW(search, &entry));
  (void)FindClose(search);
  return files;
}

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void PumpUntil(const std::function<bool()>& done) {
  MSG message{};
  while (!done()) {
    if (MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT) == WAIT_FAILED) return;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
}

}  // namespace

int wmain() {
  std::printf("seeding %d files in %d folders (once)...\n", kTopFolders * (kFoldersPerTop + 1) * kFilesPerFolder,
              kTopFolders * (kFoldersPerTop + 1));
  std::fflush(stdout);
  if (!Seed()) {
    std::printf("cannot seed %ls\n", kTree.c_str());
    return 1;
  }
  const std::vector<std::wstring> defaults = lumenor::DefaultJunkMasks();
  const std::vector<std::wstring> everyMask = lumenor::AllJunkMasks();

  // Alternate the walkers and keep each one's best round; the first round warms the cache.
  double plain = 1e9, junkDefault = 1e9, junkAll = 1e9;
  long plainFiles = 0;
  size_t defaultRows = 0, allRows = 0;
  for (int round = 0; round < kRounds; ++round) {
    plain = std::min(plain, Seconds([&] { plainFiles = PlainWalk(kTree); }));
    for (auto [masks, best, rows] :
         {std::tuple{&defaults, &junkDefault, &defaultRows}, std::tuple{&everyMask, &junkAll, &allRows}}) {
      std::vector<lumenor::JunkFile> found;
      *best = std::min(*best, Seconds([&] {
        lumenor::WalkFolderForJunk(kTree, *masks, lumenor::StopToken(),
                                   [&](lumenor::JunkFile&& file) { found.push_back(std::move(file)); });
      }));
      *rows = found.size();
    }
  }
  std::printf("plain FindFirstFileExW walk: %ld files in %.3f s\n", plainFiles, plain);
  std::printf("junk walk, default masks (12): %zu rows in %.3f s, %.2fx the plain walk (target at most 1.3x)\n",
              defaultRows, junkDefault, junkDefault / plain);
  std::printf("junk walk, every mask (45):    %zu rows in %.3f s, %.2fx the plain walk\n", allRows, junkAll,
              junkAll / plain);

  // Into the result page's list: the page walks on its worker and hands rows over.
  lumenor::controls::CGdiplusSession gdiplus;
  const HWND host = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1000, 700, nullptr, nullptr,
                                    GetModuleHandleW(nullptr), nullptr);
  lumenor::CDlgJunkJunk page;
  if (host == nullptr || !page.Create(host)) {
    std::printf("cannot make the result page\n");
    return 1;
  }
  page.Show(SW_SHOW);
  double pageSeconds = 0;
  if (page.StartScan(kTree, defaults)) {
    pageSeconds = Seconds([&] { PumpUntil([&] { return !page.Scanning(); }); });
  }
  const int listed = page.Results().RowCount();
  std::printf("result page, walk to list:     %d rows in %.3f s, %.0f rows/s, %.2fx the plain walk\n", listed,
              pageSeconds, listed / std::max(pageSeconds, 1e-9), pageSeconds / plain);

  // The list alone, taking the rows in the walk's batches.
  lumenor::controls::CMyListCtrl list;
  if (!list.CreateList(host, 1, RECT{0, 0, 800, 600}) || !list.AddColumn(L"File", 100) ||
      !list.AddColumn(L"Path", 350)) {
    std::printf("cannot make a list\n");
    return 1;
  }
  const size_t rows = 200000;
  const double listSeconds = Seconds([&] {
    for (size_t sent = 0; sent < rows; sent += kListBatch) {
      std::vector<lumenor::controls::ListRow> batch;
      batch.reserve(kListBatch);
      for (size_t row = sent; row < sent + kListBatch; ++row) {
        batch.push_back(
            {{L"draft" + std::to_wstring(row) + L".tmp", L"C:\\lumenor-bench\\junk-tree\\top1\\sub2\\"}, 0});
      }
      (void)list.AppendRows(std::move(batch));
      (void)UpdateWindow(list.Handle());
    }
  });
  std::printf("list alone, %zu rows in batches of %zu: %.3f s, %.0f rows/s\n", rows, kListBatch, listSeconds,
              rows / std::max(listSeconds, 1e-9));
  DestroyWindow(host);
  return 0;
}
