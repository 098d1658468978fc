// lumenor-cli erase with folders from the machine that name a whole drive or a system
// folder in some spelling: nothing goes, the refusal is printed, and the exit status
// says the erase was not complete.
#include "tests/support/ChildProcess.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include "base/TextEncoding.h"
#include "catalogue/ItemIds.h"
#include "engine/Registry.h"

#include <gtest/gtest.h>

#include <shlobj.h>

namespace lumenor {
namespace {

using testing::CliProgram;
using testing::ProgramResult;
using testing::RunProgram;

std::wstring ShellFolder(int csidl) { return MachinePaths().ShellFolder(csidl).value_or(L""); }

// Canary files across the machine, and TEMP as the test sets it; both put back after.
class WipeAttempt : public ::testing::Test {
 protected:
  void SetUp() override {
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();  // a failing rule would wipe the drive
    previousTemp_ = MachinePaths().EnvironmentVariable(L"TEMP").value_or(L"");
    ASSERT_FALSE(previousTemp_.empty());
    for (const std::wstring& folder :
         {std::wstring(L"C:"), std::wstring(L"E:"), ShellFolder(CSIDL_PROFILE), ShellFolder(CSIDL_PROGRAM_FILES),
          ShellFolder(CSIDL_WINDOWS), ShellFolder(CSIDL_APPDATA), previousTemp_}) {
      ASSERT_FALSE(folder.empty());
      canaries_.push_back(folder + L"\\lumenor-canary\\canary.txt");
      testing::MakeFile(canaries_.back());
    }
  }
  void TearDown() override {
    if (!previousTemp_.empty()) SetEnvironmentVariableW(L"TEMP", previousTemp_.c_str());
    for (const std::wstring& canary : canaries_) {
      DeleteFileW(canary.c_str());
      RemoveDirectoryW(canary.substr(0, canary.find_last_of(L'\\')).c_str());
    }
  }

  std::vector<std::wstring> MissingCanaries() const {
    std::vector<std::wstring> missing;
    for (const std::wstring& canary : canaries_) {
      if (!testing::FileExists(canary)) missing.push_back(canary);
    }
    return missing;
  }

  std::wstring previousTemp_;
  std::vector<std::wstring> canaries_;
};

TEST_F(WipeAttempt, TempNamingADriveOrSystemFolderInAnySpellingErasesNothing) {
  const std::wstring windows = ShellFolder(CSIDL_WINDOWS);
  const std::pair<std::wstring, std::string> spellings[] = {
      {L"C:\\", "{\"type\":\"skipped\",\"id\":106,\"location\":\"C:\\\\\",\"reason\":\"protected folder\"}"},
      {L"C:\\\\", "\"location\":\"C:\\\\\""},
      {L"C:\\.", "\"location\":\"C:\\\\\""},
      {L"C:\\x\\..", "\"location\":\"C:\\\\\""},
      {L"c:/", "\"location\":\"C:\\\\\""},
      {L"C:", "\"location\":\"C:\\\\\""},  // the location adds the backslash that makes it the root
      {L"\\\\?\\C:\\", "\"location\":\"C:\\\\\""},
      {L"\\\\?\\c:\\windows\\..", "\"location\":\"C:\\\\\""},
      {L"E:\\.\\", "\"location\":\"E:\\\\\""},
      {windows, "\"reason\":\"protected folder\""},
      {windows + L"\\System32\\..", "\"reason\":\"protected folder\""},
      {ShellFolder(CSIDL_PROFILE) + L"\\.", "\"reason\":\"protected folder\""},
      {ShellFolder(CSIDL_APPDATA), "\"reason\":\"protected folder\""},
      {L"C:temp", "{\"type\":\"skipped\",\"id\":106,\"location\":\"C:temp\\\\\",\"reason\":\"relative path\"}"},
      {L"temp", "\"reason\":\"relative path\""},
  };
  for (const auto& [temp, skippedLine] : spellings) {
    ASSERT_TRUE(SetEnvironmentVariableW(L"TEMP", temp.c_str()));
    const ProgramResult erase = RunProgram(CliProgram(), L"erase --json --items 106");
    ASSERT_TRUE(erase.finished);
    const std::string shown = ToUtf8(temp);
    EXPECT_EQ(erase.exitCode, 1u) << shown << "\n" << erase.out;
    EXPECT_NE(erase.out.find(skippedLine), std::string::npos) << shown << "\n" << erase.out;
    EXPECT_NE(erase.out.find("\"deleted\":0,\"failed\":0,\"skipped\":1,\"bytes\":0}"), std::string::npos)
        << shown << "\n"
        << erase.out;
    EXPECT_TRUE(MissingCanaries().empty()) << shown << ": " << ::testing::PrintToString(MissingCanaries());
  }
}

TEST_F(WipeAttempt, WithoutJsonTheRefusalIsAWarningAndTheSummaryCountsIt) {
  ASSERT_TRUE(SetEnvironmentVariableW(L"TEMP", L"C:\\\\"));
  const ProgramResult erase = RunProgram(CliProgram(), L"erase --items 106");
  EXPECT_EQ(erase.exitCode, 1u);
  EXPECT_EQ(erase.out, "0 traces found, 0 deleted, 0 failed, 1 skipped, 0 KB recovered\n");
  EXPECT_NE(erase.err.find("warning: skipped C:\\ (Temporary file directory): protected folder"), std::string::npos)
      << erase.err;
  const ProgramResult scan = RunProgram(CliProgram(), L"scan --items 106");
  EXPECT_EQ(scan.exitCode, 0u) << "a scan that skips still finishes";
  EXPECT_NE(scan.err.find("protected folder"), std::string::npos) << scan.err;
  EXPECT_TRUE(MissingCanaries().empty());
}

TEST_F(WipeAttempt, AnOrdinaryTempFolderIsErasedAndTheEraseSucceeds) {
  testing::TempFolder temp;
  testing::MakeFile(temp / L"a.tmp");
  testing::MakeFile(temp / L"sub\\b.tmp");
  ASSERT_TRUE(SetEnvironmentVariableW(L"TEMP", temp.Path().c_str()));
  const ProgramResult erase = RunProgram(CliProgram(), L"erase --json --items 106");
  EXPECT_EQ(erase.exitCode, 0u) << erase.out;
  EXPECT_NE(erase.out.find("\"deleted\":2,\"failed\":0,\"skipped\":0,\"bytes\":10}"), std::string::npos) << erase.out;
  EXPECT_FALSE(testing::FileExists(temp / L"a.tmp"));
  EXPECT_TRUE(MissingCanaries().empty());
}

// Google Desktop keeps its data folder in the registry.
class RegistryFolderWipeAttempt : public WipeAttempt {
 protected:
  static constexpr wchar_t kKey[] = L"Software\\Google\\Google Desktop";
  void TearDown() override {
    (void)RegDeleteKeyExW(HKEY_CURRENT_USER, kKey, kRegistryView, 0);
    (void)RegDeleteKeyExW(HKEY_CURRENT_USER, L"Software\\Google", kRegistryView, 0);  // only if we made it
    WipeAttempt::TearDown();
  }
};

TEST_F(RegistryFolderWipeAttempt, ADriveRootInTheRegistryIsRefusedInEverySpelling) {
  for (const wchar_t* dataFolder : {L"C:\\.", L"\\\\?\\c:\\windows\\..", L"c:", L"E:\\\\"}) {
    testing::SetRegistryText(HKEY_CURRENT_USER, kKey, L"data_dir", dataFolder);
    const ProgramResult erase = RunProgram(CliProgram(), L"erase --json --items 374");
    const std::string shown = ToUtf8(dataFolder);
    EXPECT_EQ(erase.exitCode, 1u) << shown << "\n" << erase.out;
    EXPECT_NE(erase.out.find("{\"type\":\"skipped\",\"id\":374,"), std::string::npos) << shown << "\n" << erase.out;
    EXPECT_NE(erase.out.find("\"reason\":\"protected folder\"}"), std::string::npos) << shown << "\n" << erase.out;
    EXPECT_TRUE(MissingCanaries().empty()) << shown;
  }
}

TEST_F(RegistryFolderWipeAttempt, AFolderInTheDeviceNamespaceIsRefusedAndNeverWalked) {
  // A server named "." turns "\\?\UNC\" into the device namespace, where GLOBALROOT
  // names a whole volume, drive letter or not.
  for (const wchar_t* dataFolder :
       {L"\\\\?\\UNC\\.\\GLOBALROOT\\Device\\HarddiskVolume1", L"\\\\?\\UNC\\.\\sha\\.\\share\\re",
        L"\\\\.\\GLOBALROOT\\Device\\HarddiskVolume1"}) {
    testing::SetRegistryText(HKEY_CURRENT_USER, kKey, L"data_dir", dataFolder);
    const std::string shown = ToUtf8(dataFolder);
    const ProgramResult scan = RunProgram(CliProgram(), L"scan --json --items 374");
    EXPECT_EQ(scan.exitCode, 0u) << shown << "\n" << scan.out;
    EXPECT_NE(scan.out.find("{\"type\":\"skipped\",\"id\":374,"), std::string::npos) << shown << "\n" << scan.out;
    EXPECT_NE(scan.out.find("\"reason\":\"device path\"}"), std::string::npos) << shown << "\n" << scan.out;
    EXPECT_EQ(scan.out.find("\"type\":\"trace\""), std::string::npos) << shown << ": nothing in it is walked";
    const ProgramResult erase = RunProgram(CliProgram(), L"erase --json --items 374");
    EXPECT_EQ(erase.exitCode, 1u) << shown << "\n" << erase.out;
    EXPECT_NE(erase.out.find("\"deleted\":0,\"failed\":0,\"skipped\":1,\"bytes\":0}"), std::string::npos)
        << shown << "\n"
        << erase.out;
    EXPECT_TRUE(MissingCanaries().empty()) << shown;
  }
}

}  // namespace
}  // namespace lumenor
