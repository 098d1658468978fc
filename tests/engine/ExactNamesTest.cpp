// Names Windows reads as another file or a device: the file acted on is exactly the file
// listed ("a." is never taken for "a"), and such names are known for what they are.
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "engine/FilePath.h"
#include "engine/FileTraces.h"
#include "engine/FolderSafety.h"
#include "engine/TraceEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace lumenor {
namespace {

using testing::ReadFileBytes;
using testing::TempFolder;
using testing::WriteFileBytes;

TEST(ExactNames, DeviceNamesAreKnownWhateverFollowsThem) {
  for (const wchar_t* name :
       {L"NUL", L"nul", L"NUL.txt", L"NUL .txt", L"NUL ", L"con", L"PRN.log", L"AUX", L"CONIN$", L"conout$", L"COM1",
        L"com9.dat", L"LPT0", L"COM\u00B9", L"LPT\u00B3", L"LPT\u00B2.txt"}) {
    EXPECT_TRUE(IsDeviceName(name)) << ::testing::PrintToString(std::wstring(name));
    EXPECT_FALSE(IsUnambiguousFileName(name)) << ::testing::PrintToString(std::wstring(name));
  }
  for (const wchar_t* name : {L"NULL", L"CONSOLE", L"COM10", L"LPT", L"xNUL", L"CON-1.txt", L"COM\u2074"}) {
    EXPECT_FALSE(IsDeviceName(name)) << ::testing::PrintToString(std::wstring(name));
  }
}

TEST(ExactNames, TypedNamesThatThePlainFormReadsOtherwiseAreAmbiguous) {
  for (const wchar_t* name : {L"a.", L"a..", L"a ", L"a. .", L"", L".", L"..",
                              L"a\x01"
                              L"b",
                              L"a\tb", L"a:b", L"a*", L"a?b", L"a/b", L"a\\b"}) {
    EXPECT_FALSE(IsUnambiguousFileName(name)) << ::testing::PrintToString(std::wstring(name));
  }
  for (const wchar_t* name : {L"a", L".a", L"a.b", L"report 2024.docx", L"\u00E9t\u00E9.txt", L" leading"}) {
    EXPECT_TRUE(IsUnambiguousFileName(name)) << ::testing::PrintToString(std::wstring(name));
  }
}

TEST(ExactNames, EveryAbsolutePathReachesTheFileApiInItsExactForm) {
  EXPECT_EQ(ForFileApi(L"C:\\x\\a."), L"\\\\?\\C:\\x\\a.");
  EXPECT_EQ(ForFileApi(L"C:\\x\\\\NUL"), L"\\\\?\\C:\\x\\NUL");
  EXPECT_EQ(ForFileApi(L"\\\\server\\share\\a "), L"\\\\?\\UNC\\server\\share\\a ");
  EXPECT_EQ(ForFileApi(L"\\\\?\\C:\\x\\a."), L"\\\\?\\C:\\x\\a.");
  EXPECT_EQ(ForFileApi(L"relative"), L"relative");
}

TEST(ExactNames, OnlyFolderPathsWrittenOutInFullAreExact) {
  for (const wchar_t* folder : {L"C:\\", L"C:\\x\\", L"c:\\x\\b.\\", L"C:\\x\\b \\", L"\\\\server\\share\\x\\"}) {
    EXPECT_TRUE(IsExactFolderPath(folder)) << ::testing::PrintToString(std::wstring(folder));
  }
  for (const wchar_t* folder :
       {L"C:\\x", L"C:\\x\\..\\", L"C:\\x\\.\\", L"C:\\x\\\\y\\", L"C:/x/", L"C:x\\", L"x\\", L"\\\\?\\C:\\x\\",
        L"\\\\.\\C:\\", L"C:\\NUL\\", L"C:\\a*\\", L"\\\\server\\\\share\\"}) {
    EXPECT_FALSE(IsExactFolderPath(folder)) << ::testing::PrintToString(std::wstring(folder));
  }
}

// A folder that holds both "a." and "a", as another system or a "\\?\" name can make it.
class TwinNames : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(WriteFileBytes(ForFileApi(root_ / L"a."), "dotted"));
    ASSERT_TRUE(WriteFileBytes(ForFileApi(root_ / L"a"), "plain"));
    if (ReadFileBytes(ForFileApi(root_ / L"a.")) != "dotted") {
      GTEST_SKIP() << "this file system does not keep a name's trailing dot";
    }
  }
  TempFolder root_;
};

TEST_F(TwinNames, DeletingTheListedRowTakesThatFileAndNoOther) {
  EXPECT_TRUE(RemoveListedTrace(L"a.", root_.Path(), false));
  EXPECT_EQ(ReadFileBytes(ForFileApi(root_ / L"a.")), "");
  EXPECT_EQ(ReadFileBytes(ForFileApi(root_ / L"a")), "plain");
}

TEST_F(TwinNames, ARowWhoseFolderIsNotWrittenOutInFullDeletesNothing) {
  EXPECT_FALSE(RemoveListedTrace(L"a", root_ / L"sub\\..\\", false));
  EXPECT_FALSE(RemoveListedTrace(L"a", L"relative\\", false));
  EXPECT_EQ(ReadFileBytes(ForFileApi(root_ / L"a")), "plain");
}

TEST_F(TwinNames, AWalkReportsBothNamesAsTheDiskHoldsThem) {
  std::vector<std::wstring> names;
  ScanFileLocation(*testing::Admitted(root_.Path()), L"*.*", kMatchEveryFile, StopToken(),
                   [&](std::wstring_view, std::wstring_view name, uint64_t) { names.emplace_back(name); });
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::wstring>{L"a", L"a."}));
}

}  // namespace
}  // namespace lumenor
