// The Wine prefix the tests run in: no way to the Linux root by drive letter or by a link
// to the host's home, scratch drives of known types, and the programs installed on C:.
#include "base/ModulePath.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <shlobj.h>
#include <windows.h>

#include <string>
#include <vector>

namespace lumenor {
namespace {

class TestPrefix : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!testing::RunningUnderWine()) {
      GTEST_SKIP() << "checks the Wine test prefix";
    }
  }
};

TEST_F(TestPrefix, HasNoDriveForTheLinuxRoot) {
  EXPECT_EQ(GetDriveTypeW(L"Z:\\"), static_cast<UINT>(DRIVE_NO_ROOT_DIR));
  EXPECT_EQ(GetLogicalDrives() & (1u << ('Z' - 'A')), 0u);
  EXPECT_EQ(GetFileAttributesW(L"Z:\\etc\\passwd"), INVALID_FILE_ATTRIBUTES);
  // Every drive there is must be one the harness made.
  const DWORD drives = GetLogicalDrives();
  for (wchar_t letter = L'A'; letter <= L'Z'; ++letter) {
    if (drives & (1u << (letter - L'A'))) {
      EXPECT_TRUE(letter == L'C' || letter == L'D' || letter == L'E') << "unexpected drive " << char(letter);
    }
  }
}

TEST_F(TestPrefix, ScratchDrivesAreACdromAndAWritableFixedDisk) {
  EXPECT_EQ(GetDriveTypeW(L"C:\\"), static_cast<UINT>(DRIVE_FIXED));
  EXPECT_EQ(GetDriveTypeW(L"D:\\"), static_cast<UINT>(DRIVE_CDROM));
  EXPECT_EQ(GetDriveTypeW(L"E:\\"), static_cast<UINT>(DRIVE_FIXED));

  const std::wstring probe = L"E:\\harness-probe.txt";
  ASSERT_TRUE(testing::WriteFileBytes(probe, "probe"));
  EXPECT_EQ(testing::ReadFileBytes(probe), "probe");
  EXPECT_TRUE(DeleteFileW(probe.c_str()));
}

// Wine shows a link to a folder as a reparse point; the harness leaves none on C: (it
// replaces those that led to the host's home with empty folders).
TEST_F(TestPrefix, HoldsNoFolderLinkOnC) {
  std::vector<std::wstring> folders = {L"C:\\"};
  std::vector<std::wstring> links;
  while (!folders.empty()) {
    const std::wstring folder = folders.back();
    folders.pop_back();
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) continue;
    do {
      const std::wstring name = entry.cFileName;
      if (name == L"." || name == L".." || (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) continue;
      if (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) {
        links.push_back(folder + name);
      } else {
        folders.push_back(folder + name + L"\\");
      }
    } while (FindNextFileW(search, &entry));
    FindClose(search);
  }
  EXPECT_TRUE(links.empty()) << ::testing::PrintToString(links);
  for (const int csidl :
       {CSIDL_DESKTOPDIRECTORY, CSIDL_PERSONAL, CSIDL_MYMUSIC, CSIDL_MYPICTURES, CSIDL_MYVIDEO, CSIDL_TEMPLATES}) {
    wchar_t folder[MAX_PATH] = {};
    ASSERT_TRUE(SUCCEEDED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, folder))) << csidl;
    const DWORD attributes = GetFileAttributesW(folder);
    EXPECT_NE(attributes, INVALID_FILE_ATTRIBUTES) << csidl;
    EXPECT_EQ(attributes & FILE_ATTRIBUTE_REPARSE_POINT, 0u) << ::testing::PrintToString(std::wstring(folder));
  }
}

TEST_F(TestPrefix, ProgramsRunFromTheirOwnFolderOnC) { EXPECT_EQ(ModuleFolder(), L"C:\\lumenor\\"); }

}  // namespace
}  // namespace lumenor
