// The Wine prefix the tests run in: no way to the Linux root by drive letter, scratch
// drives of known types, and the programs installed on C:.
#include "base/ModulePath.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

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

TEST_F(TestPrefix, ProgramsRunFromTheirOwnFolderOnC) { EXPECT_EQ(ModuleFolder(), L"C:\\lumenor\\"); }

}  // namespace
}  // namespace lumenor
