// The one folder walk and the path value it hands on: a path is read once into its
// canonical and "\\?\" forms, and both grow by the names a listing gives; each entry comes
// with its find data; folders are entered only when asked and left deepest first.
#include "engine/FilePath.h"
#include "engine/FolderWalk.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace lumenor {
namespace {

using testing::MakeFile;
using testing::TempFolder;

TEST(SafePath, AFolderIsReadOnceAndItsEntriesGrowFromBothForms) {
  const std::optional<SafePath> folder = ReadFolderPath(L"c:/data//reports/./");
  ASSERT_TRUE(folder);
  EXPECT_EQ(folder->Text(), L"C:\\data\\reports\\");
  EXPECT_EQ(folder->ForApi(), L"\\\\?\\C:\\data\\reports\\");

  const SafePath file = folder->Entry(L"a.");
  EXPECT_EQ(file.Text(), L"C:\\data\\reports\\a.") << "a listed name keeps its dot";
  EXPECT_EQ(file.ForApi(), L"\\\\?\\C:\\data\\reports\\a.");
  EXPECT_EQ(file.Folder(), L"C:\\data\\reports\\");
  EXPECT_EQ(file.FolderForApi(), L"\\\\?\\C:\\data\\reports\\");
  EXPECT_EQ(file.Name(), L"a.");

  EXPECT_EQ(folder->AsEntry().Text(), L"C:\\data\\reports");
  EXPECT_EQ(folder->AsEntry().ForApi(), L"\\\\?\\C:\\data\\reports");
  EXPECT_EQ(ReadFolderPath(L"C:\\")->AsEntry().Text(), L"C:\\") << "a root keeps its backslash";

  FolderVerdict refusal = FolderVerdict::kAllowed;
  EXPECT_FALSE(ReadFolderPath(L"C:temp", &refusal));
  EXPECT_EQ(refusal, FolderVerdict::kRelativePath);
}

TEST(FolderWalk, EachEntryComesWithItsFindDataAndFoldersAreLeftDeepestFirst) {
  TempFolder root;
  MakeFile(root / L"top.bin", std::string(1234, 'x'));
  MakeFile(root / L"a\\inner.bin", std::string(56, 'y'));
  MakeFile(root / L"a\\b\\deep.bin", "");
  MakeFile(root / L"skipped\\hidden.bin", "z");
  const std::optional<SafePath> top = ReadFolderPath(root.Path());
  ASSERT_TRUE(top);

  std::map<std::wstring, uint64_t> sizes;
  std::vector<std::wstring> left;
  WalkFolder(
      *top, L"*", StopToken(),
      [&](const WalkEntry& entry) {
        EXPECT_EQ(entry.Where().ForApi(), ForFileApi(entry.Path())) << "the API form grew with the walk";
        if (entry.IsFolder()) return std::wstring(entry.Name()) != L"skipped";
        sizes[entry.Path()] = entry.Size();
        return false;
      },
      [&](const std::wstring& folder) { left.push_back(folder); });

  EXPECT_EQ(sizes, (std::map<std::wstring, uint64_t>{
                       {root / L"top.bin", 1234}, {root / L"a\\inner.bin", 56}, {root / L"a\\b\\deep.bin", 0}}))
      << "a folder the visitor declines is not entered";
  ASSERT_EQ(left.size(), 3u);
  EXPECT_EQ(left[0], root / L"a\\b\\");
  EXPECT_EQ(left[1], root / L"a\\");
  EXPECT_EQ(left[2], root.Path()) << "the top folder is left last";
}

}  // namespace
}  // namespace lumenor
