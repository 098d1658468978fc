#include "tests/junk/JunkFixtures.h"

#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <windows.h>

#include <algorithm>
#include <atomic>

namespace lumenor::testing {

ScratchFolder::ScratchFolder() {
  static std::atomic<unsigned> counter{0};
  const bool haveE = GetDriveTypeW(L"E:\\") == DRIVE_FIXED;
  wchar_t temp[MAX_PATH + 1] = {};
  const std::wstring root = haveE ? L"E:\\" : std::wstring(temp, GetTempPathW(MAX_PATH + 1, temp));
  path_ = root + L"junk-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(counter++) + L"\\";
  MakeFolders(path_);
}

ScratchFolder::~ScratchFolder() { RemoveTree(L"\\\\?\\" + path_); }

SeededTree SeedJunkTree(const std::wstring& root) {
  const std::wstring sub = root + L"sub\\";
  const std::wstring deep = sub + L"deep\\";
  // Junk under the default masks.
  for (const std::wstring& path : {root + L"Draft.TMP", root + L"report.~doc", root + L".tmp",
                                   root + L"old.tmp\\inner.swp", sub + L"~lock.dat", deep + L"x.ab~"}) {
    MakeFile(path);
  }
  // Junk only under the whole catalogue.
  for (const std::wstring& path :
       {deep + L"FILE1234._DD", sub + L"twain001.mtx", sub + L"Thumbs.db", sub + L"app.log", root + L"chklist.ms"}) {
    MakeFile(path);
  }
  // Never junk: no dot, other extensions, near misses of the special masks.
  for (const std::wstring& path : {root + L"Readme", root + L"notes.txt", deep + L"x.abc~", deep + L"file123._dd",
                                   sub + L"twain01.mtx", sub + L"log"}) {
    MakeFile(path);
  }
  SeededTree tree;
  tree.defaultRows = {{root, L".tmp"},        {root, L"draft.tmp"},
                      {root, L"report.~doc"}, {root + L"old.tmp\\", L"inner.swp"},
                      {sub, L"~lock.dat"},    {deep, L"x.ab~"}};
  tree.allRows = tree.defaultRows;
  tree.allRows.insert(
      tree.allRows.end(),
      {{deep, L"file1234._dd"}, {sub, L"twain001.mtx"}, {sub, L"thumbs.db"}, {sub, L"app.log"}, {root, L"chklist.ms"}});
  std::sort(tree.defaultRows.begin(), tree.defaultRows.end());
  std::sort(tree.allRows.begin(), tree.allRows.end());
  return tree;
}

std::vector<JunkRow> WalkRows(const std::wstring& folder, std::span<const std::wstring> masks, const StopToken& stop) {
  std::vector<JunkRow> rows;
  WalkFolderForJunk(folder, masks, stop, [&](JunkFile&& file) { rows.emplace_back(file.folder, file.name); });
  std::sort(rows.begin(), rows.end());
  return rows;
}

}  // namespace lumenor::testing
