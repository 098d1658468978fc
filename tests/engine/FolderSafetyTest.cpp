// The folder rules: every spelling of a drive, a share or a protected folder is refused,
// relative and device paths are refused, and the folders where traces live stay allowed.
#include "engine/FolderSafety.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <shlobj.h>

namespace lumenor {
namespace {

using testing::FakeSystemPaths;

struct Spelling {
  const wchar_t* folder;
  const wchar_t* canonical;
};

TEST(CanonicalFolder, ResolvesDotsSeparatorsPrefixesAndTrailingDots) {
  const Spelling spellings[] = {
      {L"C:\\Windows\\Temp", L"C:\\Windows\\Temp\\"},
      {L"c:/users/me//AppData/Local/Temp/", L"C:\\users\\me\\AppData\\Local\\Temp\\"},
      {L"C:\\x\\.\\y\\..\\z", L"C:\\x\\z\\"},
      {L"C:\\..\\..\\x", L"C:\\x\\"},
      {L"C:\\x\\..", L"C:\\"},
      {L"C:\\\\", L"C:\\"},
      {L"\\\\?\\C:\\x\\y", L"C:\\x\\y\\"},
      {L"\\\\?\\c:\\windows\\..", L"C:\\"},
      {L"\\\\?\\UNC\\server\\share\\x", L"\\\\server\\share\\x\\"},
      {L"//server/share/x/", L"\\\\server\\share\\x\\"},
      {L"\\\\server\\share\\x\\..\\..", L"\\\\server\\share\\"},
      {L"C:\\Windows.\\Temp. .", L"C:\\Windows\\Temp\\"},
  };
  for (const Spelling& spelling : spellings) {
    FolderVerdict verdict = FolderVerdict::kLink;
    EXPECT_EQ(CanonicalFolder(spelling.folder, &verdict), std::wstring(spelling.canonical))
        << ::testing::PrintToString(std::wstring(spelling.folder));
    EXPECT_EQ(verdict, FolderVerdict::kAllowed);
  }
}

TEST(CanonicalFolder, RefusesRelativeDeviceAndMalformedPaths) {
  const std::pair<const wchar_t*, FolderVerdict> refused[] = {
      {L"", FolderVerdict::kRelativePath},
      {L"temp", FolderVerdict::kRelativePath},
      {L".\\temp", FolderVerdict::kRelativePath},
      {L"..\\..\\Windows", FolderVerdict::kRelativePath},
      {L"C:", FolderVerdict::kRelativePath},
      {L"C:temp", FolderVerdict::kRelativePath},
      {L"\\temp", FolderVerdict::kRelativePath},
      {L"\\\\.\\C:\\", FolderVerdict::kDevicePath},
      {L"\\\\.\\PhysicalDrive0", FolderVerdict::kDevicePath},
      {L"\\\\?\\C:", FolderVerdict::kDevicePath},
      {L"\\\\?\\GLOBALROOT\\Device\\HarddiskVolume1\\", FolderVerdict::kDevicePath},
      {L"\\\\?\\Volume{12345678-1234-1234-1234-123456789abc}\\", FolderVerdict::kDevicePath},
      {L"C:\\x\\NUL", FolderVerdict::kDevicePath},
      {L"C:\\x\\com1.txt\\y", FolderVerdict::kDevicePath},
      {L"C:\\x\\*", FolderVerdict::kInvalidPath},
      {L"C:\\x\\a?b", FolderVerdict::kInvalidPath},
      {L"C:\\x\\file.txt:stream", FolderVerdict::kInvalidPath},
      {L"C:\\x\\...", FolderVerdict::kInvalidPath},
      {L"\\\\server", FolderVerdict::kProtectedFolder},
      {L"\\\\server\\", FolderVerdict::kProtectedFolder},
  };
  for (const auto& [folder, reason] : refused) {
    FolderVerdict verdict = FolderVerdict::kAllowed;
    EXPECT_EQ(CanonicalFolder(folder, &verdict), std::nullopt) << ::testing::PrintToString(std::wstring(folder));
    EXPECT_EQ(verdict, reason) << ::testing::PrintToString(std::wstring(folder));
  }
}

TEST(CanonicalFolder, NothingInTheDeviceNamespaceComesOutWhateverTheRoute) {
  // "\\?\UNC\.\x" is "\\.\x": a server named "." opens the device namespace, where
  // GLOBALROOT names whole volumes, with or without a drive letter.
  const std::pair<const wchar_t*, FolderVerdict> refused[] = {
      {L"\\\\?\\UNC\\.\\share\\", FolderVerdict::kDevicePath},
      {L"\\\\?\\UNC\\.\\sha\\.\\share\\re\\", FolderVerdict::kDevicePath},
      {L"\\\\?\\UNC\\.\\GLOBALROOT\\Device\\HarddiskVolume1", FolderVerdict::kDevicePath},
      {L"//?/unc/./GLOBALROOT/Device/HarddiskVolume1/", FolderVerdict::kDevicePath},
      {L"\\\\?\\UNC\\.", FolderVerdict::kDevicePath},
      {L"\\\\.\\GLOBALROOT\\Device\\HarddiskVolume1\\", FolderVerdict::kDevicePath},
      {L"\\\\?\\UNC\\?\\share\\", FolderVerdict::kInvalidPath},
      {L"\\\\?\\UNC\\..\\share\\", FolderVerdict::kInvalidPath},
      {L"\\\\..\\0", FolderVerdict::kInvalidPath},
      {L"/\\..\\y[S\\", FolderVerdict::kInvalidPath},
      {L"\\\\. \\share\\", FolderVerdict::kInvalidPath},
      {L"\\\\server\\..\\x", FolderVerdict::kInvalidPath},
      {L"\\\\server\\NUL\\x", FolderVerdict::kDevicePath},
      {L"\\\\CON\\share\\", FolderVerdict::kDevicePath},
  };
  for (const auto& [folder, reason] : refused) {
    FolderVerdict verdict = FolderVerdict::kAllowed;
    EXPECT_EQ(CanonicalFolder(folder, &verdict), std::nullopt) << ::testing::PrintToString(std::wstring(folder));
    EXPECT_EQ(verdict, reason) << ::testing::PrintToString(std::wstring(folder));
  }
}

TEST(CanonicalFolder, RefusesEveryNameTheSystemReadsAsADevice) {
  for (const wchar_t* folder :
       {L"C:\\\u5FFF .^\\NUL .^", L"C:\\x\\LPT\u00B3", L"C:\\x\\COM\u00B9\\y", L"C:\\x\\NUL .txt", L"C:\\x\\CONIN$",
        L"C:\\x\\conout$\\", L"C:\\x\\Nul. \\", L"C:\\x\\aux.log\\y"}) {
    FolderVerdict verdict = FolderVerdict::kAllowed;
    EXPECT_EQ(CanonicalFolder(folder, &verdict), std::nullopt) << ::testing::PrintToString(std::wstring(folder));
    EXPECT_EQ(verdict, FolderVerdict::kDevicePath) << ::testing::PrintToString(std::wstring(folder));
  }
  EXPECT_EQ(CanonicalFolder(L"C:\\x\\COM10\\NULL\\CONIN\\"), L"C:\\x\\COM10\\NULL\\CONIN\\")
      << "names that only begin like a device are folders";
}

TEST(CanonicalFolder, WhatItGivesIsItsOwnCanonicalForm) {
  for (const wchar_t* folder : {L"C:\\a\\b. \\c..\\", L"c:/x//y/./z/..", L"\\\\srv.\\share\\x",
                                L"\\\\?\\UNC\\srv\\share\\.\\x. ", L"\\\\?\\c:\\..\\..", L"C:\\\u5FFF .^\\x"}) {
    const std::optional<std::wstring> canonical = CanonicalFolder(folder);
    ASSERT_TRUE(canonical) << ::testing::PrintToString(std::wstring(folder));
    EXPECT_EQ(CanonicalFolder(*canonical), canonical) << ::testing::PrintToString(*canonical);
    EXPECT_EQ(canonical->find(L"\\.\\"), std::wstring::npos) << ::testing::PrintToString(*canonical);
    EXPECT_TRUE(IsExactFolderPath(*canonical)) << ::testing::PrintToString(*canonical);
  }
}

TEST(CanonicalFolder, ContainmentFollowsWholeNamesWithoutCase) {
  EXPECT_TRUE(FolderContains(L"C:\\", L"C:\\Windows\\"));
  EXPECT_TRUE(FolderContains(L"C:\\Users\\", L"C:\\users\\Me\\"));
  EXPECT_TRUE(FolderContains(L"C:\\Users\\me\\", L"C:\\Users\\me\\"));
  EXPECT_FALSE(FolderContains(L"C:\\Users\\me\\", L"C:\\Users\\"));
  EXPECT_FALSE(FolderContains(L"C:\\Win\\", L"C:\\Windows\\")) << "a name is compared whole";
  EXPECT_TRUE(IsVolumeRoot(L"D:\\"));
  EXPECT_TRUE(IsVolumeRoot(L"\\\\server\\share\\"));
  EXPECT_FALSE(IsVolumeRoot(L"\\\\server\\share\\x\\"));
  EXPECT_FALSE(IsVolumeRoot(L"C:\\x\\"));
}

// A machine whose folders are those of a common Windows installation; none of them need
// exist for the rules by name.
class ProtectedFolders : public ::testing::Test {
 protected:
  ProtectedFolders() {
    paths_.windows = L"C:\\Windows";
    paths_.shellFolders = {
        {CSIDL_SYSTEM, L"C:\\Windows\\system32"},
        {CSIDL_PROGRAM_FILES, L"C:\\Program Files"},
        {CSIDL_PROGRAM_FILESX86, L"C:\\Program Files (x86)"},
        {CSIDL_COMMON_APPDATA, L"C:\\ProgramData"},
        {CSIDL_PROFILE, L"C:\\Users\\Tester"},
        {CSIDL_DESKTOPDIRECTORY, L"C:\\Users\\Tester\\Desktop"},
        {CSIDL_PERSONAL, L"D:\\Data\\Documents"},
        {CSIDL_APPDATA, L"C:\\Users\\Tester\\AppData\\Roaming"},
        {CSIDL_LOCAL_APPDATA, L"C:\\Users\\Tester\\AppData\\Local"},
        {CSIDL_PRINTHOOD, L"C:\\Users\\Tester\\AppData\\Roaming\\Microsoft\\Windows\\Printer Shortcuts"},
    };
    paths_.program = L"C:\\Tools\\Lumenor";
  }

  FolderVerdict Verdict(std::wstring_view folder) const { return FolderGuard(paths_).Inspect(folder).verdict; }

  FakeSystemPaths paths_;
};

TEST_F(ProtectedFolders, EverySpellingOfADriveShareOrSystemFolderIsRefused) {
  for (const wchar_t* folder : {L"C:\\",
                                L"C:\\\\",
                                L"C:\\.",
                                L"C:\\.\\",
                                L"C:\\x\\..",
                                L"c:/",
                                L"\\\\?\\C:\\",
                                L"\\\\?\\c:\\windows\\..",
                                L"Z:\\",
                                L"\\\\server\\share",
                                L"\\\\server\\share\\",
                                L"\\\\?\\UNC\\server\\share\\",
                                L"//server/share/x/..",
                                L"C:\\Windows",
                                L"C:\\WINDOWS\\.",
                                L"C:\\Windows.",
                                L"c:/windows/System32/",
                                L"C:\\Windows\\SysWOW64",
                                L"C:\\Program Files",
                                L"C:\\Program Files (x86)\\",
                                L"C:\\ProgramData",
                                L"C:\\Users",
                                L"C:\\Users\\Tester",
                                L"C:\\Users\\Tester\\Desktop",
                                L"D:\\Data\\Documents",
                                L"D:\\Data",
                                L"C:\\Users\\Tester\\AppData",
                                L"C:\\Users\\Tester\\AppData\\Roaming",
                                L"C:\\Users\\Tester\\AppData\\Local\\",
                                L"C:\\Users\\Tester\\AppData\\LocalLow",
                                L"C:\\Tools\\Lumenor",
                                L"C:\\Tools"}) {
    EXPECT_EQ(Verdict(folder), FolderVerdict::kProtectedFolder) << ::testing::PrintToString(std::wstring(folder));
  }
}

TEST_F(ProtectedFolders, EveryPersonalFolderAndThoseOfThePublicProfileAreProtected) {
  paths_.shellFolders[CSIDL_MYPICTURES] = L"E:\\Photos";
  paths_.variables[L"PUBLIC"] = L"C:\\Users\\Public";
  paths_.variables[L"OneDrive"] = L"E:\\Sync\\OneDrive - Work";
  for (const wchar_t* folder :
       {L"C:\\Users\\Tester\\Downloads", L"C:\\Users\\Tester\\Music\\", L"C:\\Users\\Tester\\Videos",
        L"C:\\Users\\Tester\\Contacts", L"C:\\Users\\Tester\\Saved Games", L"C:\\Users\\Tester\\Links",
        L"C:\\Users\\Tester\\Searches", L"C:\\Users\\Tester\\OneDrive", L"E:\\Photos", L"E:\\Sync\\OneDrive - Work",
        L"E:\\Sync", L"C:\\Users\\Public\\Documents", L"C:\\Users\\Public\\Downloads", L"C:\\Users\\Public\\Desktop"}) {
    EXPECT_EQ(Verdict(folder), FolderVerdict::kProtectedFolder) << ::testing::PrintToString(std::wstring(folder));
  }
  for (const wchar_t* folder : {L"C:\\Users\\Tester\\Downloads\\setup-cache", L"E:\\Photos\\thumbnails",
                                L"C:\\Users\\Tester\\Saved Games\\Some Game\\logs"}) {
    EXPECT_EQ(Verdict(folder), FolderVerdict::kAllowed) << ::testing::PrintToString(std::wstring(folder));
  }
}

TEST_F(ProtectedFolders, FoldersInsideThemStayAllowed) {
  for (const wchar_t* folder :
       {L"C:\\Windows\\Temp", L"C:\\Windows\\System32\\..\\Temp\\", L"C:\\Users\\Tester\\AppData\\Local\\Temp",
        L"C:\\Users\\Tester\\AppData\\Local\\Mozilla\\Firefox\\Profiles\\ab12.default\\Cache\\",
        L"C:\\Users\\Tester\\AppData\\Roaming\\Microsoft\\Windows\\Recent", L"C:\\Users\\Tester\\Desktop\\old",
        L"\\\\server\\share\\cache", L"E:\\RECYCLER"}) {
    EXPECT_EQ(Verdict(folder), FolderVerdict::kAllowed) << ::testing::PrintToString(std::wstring(folder));
  }
}

TEST_F(ProtectedFolders, RelativeAndDrivePathsAreRefusedAsSuch) {
  EXPECT_EQ(Verdict(L"C:"), FolderVerdict::kRelativePath);
  EXPECT_EQ(Verdict(L"C:temp"), FolderVerdict::kRelativePath);
  EXPECT_EQ(Verdict(L"temp"), FolderVerdict::kRelativePath);
  EXPECT_EQ(Verdict(L"\\\\.\\C:\\Windows\\Temp"), FolderVerdict::kDevicePath);
  FolderGuard::Check check = FolderGuard(paths_).Inspect(L"c:/windows/./");
  EXPECT_EQ(check.folder, L"C:\\windows\\") << "a refusal still names the folder it refused";
}

TEST_F(ProtectedFolders, EverySpellingOfOneFolderGetsOneVerdict) {
  const std::vector<std::vector<const wchar_t*>> sameFolders = {
      {L"C:\\Windows", L"c:/Windows/", L"\\\\?\\C:\\Windows\\.", L"C:\\Windows. \\", L"C:\\x\\..\\Windows",
       L"C:\\\\Windows\\\\"},
      {L"C:\\Users\\Tester\\AppData\\Local\\Temp", L"c:/Users/Tester/AppData/Local/Temp/.",
       L"\\\\?\\c:\\Users\\Tester\\AppData\\Local\\Temp\\x\\..", L"C:\\Users\\Tester\\AppData\\Local\\Temp.."},
      {L"\\\\server\\share", L"//server/share/", L"\\\\?\\UNC\\server\\share\\x\\..", L"\\\\server\\\\share\\."},
      {L"\\\\server\\share\\cache", L"\\\\?\\UNC\\server\\share\\cache\\", L"//server/share/cache/x/..",
       L"\\\\server\\share\\cache. ."},
  };
  const FolderGuard guard(paths_);
  for (const std::vector<const wchar_t*>& spellings : sameFolders) {
    const FolderGuard::Check first = guard.Inspect(spellings.front());
    for (const wchar_t* spelling : spellings) {
      const FolderGuard::Check check = guard.Inspect(spelling);
      EXPECT_EQ(check.folder, first.folder) << ::testing::PrintToString(std::wstring(spelling));
      EXPECT_EQ(check.verdict, first.verdict) << ::testing::PrintToString(std::wstring(spelling));
    }
  }
  EXPECT_EQ(guard.Inspect(sameFolders[0].front()).verdict, FolderVerdict::kProtectedFolder);
  EXPECT_EQ(guard.Inspect(sameFolders[1].front()).verdict, FolderVerdict::kAllowed);
  EXPECT_EQ(guard.Inspect(sameFolders[2].front()).verdict, FolderVerdict::kProtectedFolder);
  EXPECT_EQ(guard.Inspect(sameFolders[3].front()).verdict, FolderVerdict::kAllowed);
}

TEST(MachineFolders, AreProtectedByTheirShortNamesToo) {
  const FolderGuard& guard = testing::MachineGuard();
  for (const int csidl : {CSIDL_PROGRAM_FILES, CSIDL_WINDOWS, CSIDL_PROFILE, CSIDL_APPDATA}) {
    const auto folder = MachinePaths().ShellFolder(csidl);
    ASSERT_TRUE(folder) << csidl;
    EXPECT_EQ(guard.Inspect(*folder).verdict, FolderVerdict::kProtectedFolder) << ::testing::PrintToString(*folder);
    wchar_t shortName[MAX_PATH] = {};
    const DWORD length = GetShortPathNameW(folder->c_str(), shortName, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) continue;
    EXPECT_EQ(guard.Inspect(shortName).verdict, FolderVerdict::kProtectedFolder)
        << ::testing::PrintToString(std::wstring(shortName));
  }
  EXPECT_EQ(guard.Inspect(MachinePaths().ProgramFolder().value_or(L"")).verdict, FolderVerdict::kProtectedFolder);
}

TEST(MachineFolders, TemporaryFoldersAndAShortNameBelowThemAreAllowed) {
  testing::TempFolder temp;
  const std::wstring longName = temp / L"a folder with a long name";
  ASSERT_TRUE(CreateDirectoryW(longName.c_str(), nullptr));
  EXPECT_EQ(testing::MachineGuard().Inspect(temp.Path()).verdict, FolderVerdict::kAllowed);
  wchar_t shortName[MAX_PATH] = {};
  const DWORD length = GetShortPathNameW(longName.c_str(), shortName, MAX_PATH);
  ASSERT_GT(length, 0u);
  ASSERT_LT(length, static_cast<DWORD>(MAX_PATH));
  EXPECT_EQ(testing::MachineGuard().Inspect(shortName).verdict, FolderVerdict::kAllowed);
  const auto temporary = MachinePaths().EnvironmentVariable(L"TEMP");
  ASSERT_TRUE(temporary);
  EXPECT_EQ(testing::MachineGuard().Inspect(*temporary).verdict, FolderVerdict::kAllowed);
}

TEST(MachineFolders, AFolderThatIsItselfALinkIsRefused) {
  const std::wstring link = L"E:\\link-fixtures\\clean\\top-link";
  if (GetFileAttributesW(link.c_str()) == INVALID_FILE_ATTRIBUTES) {
    GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
  }
  EXPECT_TRUE(IsLinkFolder(link + L"\\"));
  EXPECT_FALSE(IsLinkFolder(L"E:\\link-fixtures\\clean\\"));
  FolderGuard::Check check;
  EXPECT_FALSE(testing::MachineGuard().Admit(link, &check));
  EXPECT_EQ(check.verdict, FolderVerdict::kLink);
  EXPECT_EQ(check.folder, link + L"\\");
  EXPECT_TRUE(testing::MachineGuard().Admit(L"E:\\link-fixtures\\clean"));
}

}  // namespace
}  // namespace lumenor
