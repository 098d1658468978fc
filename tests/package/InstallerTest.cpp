// The per-user setup as users meet it, run silently in the test prefix: what it puts in
// place, an upgrade over edited settings, the uninstall, and the refusal while Lumenor
// runs. scripts/package.sh builds the setup, and the test run copies it to
// C:\lumenor-setup\ first (tests/package/stage-setup.sh).
#include "app/PcApp.h"
#include "base/TextEncoding.h"
#include "base/UniqueHandle.h"
#include "res/version.h"
#include "tests/package/InstallSupport.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"

#include <windows.h>

#include <knownfolders.h>
#include <shlobj.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumenor {
namespace {

using testing::JobResult;
using testing::ReadDword;
using testing::ReadString;

constexpr wchar_t kSetupProgram[] = L"C:\\lumenor-setup\\Lumenor-" LUMENOR_VERSION_TEXT L"-setup-x64.exe";
constexpr wchar_t kVersion[] = L"" LUMENOR_VERSION_TEXT;
constexpr wchar_t kUninstallKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Lumenor";
constexpr wchar_t kRunKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const wchar_t* kInstalledFiles[] = {L"lumenor.exe", L"lumenor-cli.exe", L"README.txt", L"LICENSE",
                                              L"uninstall.exe"};
constexpr char kCommunityRules[] = "[Downloaded *]\r\nLangSecRef=3021\r\nRegKey1=HKCU\\Software\\Downloaded\r\n";
constexpr char kOwnRules[] = "<rules/>\r\n";
constexpr char kEditedSettings[] = "[General Settings]\r\nRun at windows startup=0\r\nAutomaticly update=0\r\n";

bool Exists(const std::wstring& path) { return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

std::wstring Lowered(std::wstring text) {
  for (wchar_t& letter : text) letter = static_cast<wchar_t>(towlower(letter));
  return text;
}

// What `lumenor-cli list` prints first: every fixed catalogue node as id, level and name.
// The built-in rules' applications follow for whatever the shared prefix happens to hold.
std::string ExpectedListing() {
  std::string listing;
  for (const std::string& line : testing::SplitLines(testing::LoadTestData(IDR_EXPECTED_CATALOGUE))) {
    const std::vector<std::string> fields = testing::SplitTabs(line);
    if (fields.size() == 4) listing += fields[0] + "\t" + fields[1] + "\t" + fields[3] + "\n";
  }
  return listing;
}

class Setup : public ::testing::Test {
 protected:
  void SetUp() override {
    // It installs into, and uninstalls from, the profile of whoever runs it.
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
    programs_ = testing::KnownFolder(FOLDERID_LocalAppData) + L"\\Programs";
    installDir_ = programs_ + L"\\Lumenor";
    startMenuShortcut_ = testing::KnownFolder(FOLDERID_Programs) + L"\\Lumenor.lnk";
    desktopShortcut_ = testing::KnownFolder(FOLDERID_Desktop) + L"\\Lumenor.lnk";
    ASSERT_TRUE(Exists(kSetupProgram)) << "no setup program: scripts/package.sh builds it";
    RemoveAnyInstall();
  }

  void TearDown() override {
    if (testing::DestructiveTestsAllowed()) RemoveAnyInstall();
  }

  // Back to a profile without Lumenor, by hand: the uninstaller is what is under test.
  void RemoveAnyInstall() const {
    for (const wchar_t* name : kInstalledFiles) (void)DeleteFileW(Installed(name).c_str());  // most are absent
    (void)DeleteFileW(Installed(L"setting.ini").c_str());
    (void)DeleteFileW(Installed(L"winapp2.ini").c_str());
    (void)DeleteFileW(Installed(L"rules\\mine.xml").c_str());
    (void)RemoveDirectoryW(Installed(L"rules").c_str());
    (void)RemoveDirectoryW(installDir_.c_str());
    (void)DeleteFileW(startMenuShortcut_.c_str());
    (void)DeleteFileW(desktopShortcut_.c_str());
    (void)RegDeleteKeyW(HKEY_CURRENT_USER, kUninstallKey);
    ASSERT_FALSE(Exists(installDir_)) << "could not clear the previous install";
  }

  std::wstring Installed(const wchar_t* name) const { return installDir_ + L"\\" + name; }

  static JobResult RunSetup(const wchar_t* switches) {
    return testing::RunWholeJob(L"\"" + std::wstring(kSetupProgram) + L"\" " + switches);
  }

  // The uninstall as Windows and package managers start it, from the entry.
  static JobResult RunQuietUninstall() {
    const std::optional<std::wstring> command = ReadString(HKEY_CURRENT_USER, kUninstallKey, L"QuietUninstallString");
    return command ? testing::RunWholeJob(*command) : JobResult{};
  }

  std::wstring programs_;
  std::wstring installDir_;
  std::wstring startMenuShortcut_;
  std::wstring desktopShortcut_;
};

TEST_F(Setup, SilentInstallPutsProgramsShortcutAndUninstallEntryInPlace) {
  const JobResult setup = RunSetup(L"/S");
  ASSERT_TRUE(setup.finished) << "still running: " << ToUtf8(setup.stillRunning);
  ASSERT_EQ(setup.exitCode, 0u);

  ULONGLONG installedBytes = 0;
  for (const wchar_t* name : kInstalledFiles) {
    EXPECT_TRUE(Exists(Installed(name))) << ToUtf8(name);
    installedBytes += testing::ReadFileBytes(Installed(name)).size();
  }
  // The program writes its settings on first start; setup has no business with them.
  EXPECT_FALSE(Exists(Installed(L"setting.ini")));
  EXPECT_FALSE(Exists(Installed(L"winapp2.ini"))) << "the community rules are downloaded, never shipped";

  const HKEY user = HKEY_CURRENT_USER;
  const std::wstring uninstaller = L"\"" + Installed(L"uninstall.exe") + L"\"";
  EXPECT_EQ(ReadString(user, kUninstallKey, L"DisplayName"), L"Lumenor");
  EXPECT_EQ(ReadString(user, kUninstallKey, L"DisplayVersion"), kVersion);
  EXPECT_EQ(ReadString(user, kUninstallKey, L"Publisher"), L"The Lumenor authors");
  EXPECT_EQ(ReadString(user, kUninstallKey, L"DisplayIcon"), Installed(L"lumenor.exe") + L",0");
  EXPECT_EQ(ReadString(user, kUninstallKey, L"UninstallString"), uninstaller);
  EXPECT_EQ(ReadString(user, kUninstallKey, L"QuietUninstallString"), uninstaller + L" /S");
  EXPECT_EQ(ReadDword(user, kUninstallKey, L"NoModify"), 1u);
  EXPECT_EQ(ReadDword(user, kUninstallKey, L"NoRepair"), 1u);
  const std::optional<DWORD> kilobytes = ReadDword(user, kUninstallKey, L"EstimatedSize");
  ASSERT_TRUE(kilobytes.has_value());
  EXPECT_NEAR(static_cast<double>(*kilobytes), static_cast<double>(installedBytes) / 1024, 5.0);

  EXPECT_EQ(Lowered(testing::ShortcutTarget(startMenuShortcut_)), Lowered(Installed(L"lumenor.exe")));
  EXPECT_FALSE(Exists(desktopShortcut_)) << "the desktop shortcut is only made when asked for";

  const testing::ProgramResult listing = testing::RunProgram(Installed(L"lumenor-cli.exe"), L"list");
  ASSERT_TRUE(listing.finished);
  EXPECT_EQ(listing.exitCode, 0u) << listing.err;
  EXPECT_TRUE(listing.out.starts_with(ExpectedListing())) << listing.out;
}

TEST_F(Setup, SilentInstallOverAnInstalledCopyKeepsSettingsAndDesktopShortcut) {
  ASSERT_EQ(RunSetup(L"/S /DESKTOPSHORTCUT").exitCode, 0u);
  ASSERT_TRUE(Exists(desktopShortcut_));
  ASSERT_TRUE(testing::WriteFileBytes(Installed(L"setting.ini"), kEditedSettings));
  // Stands for an older program that the upgrade must replace.
  ASSERT_TRUE(testing::WriteFileBytes(Installed(L"lumenor-cli.exe"), "older"));

  const JobResult upgrade = RunSetup(L"/S");
  ASSERT_TRUE(upgrade.finished);
  ASSERT_EQ(upgrade.exitCode, 0u);

  EXPECT_EQ(testing::ReadFileBytes(Installed(L"setting.ini")), kEditedSettings);
  EXPECT_TRUE(Exists(desktopShortcut_));
  const testing::ProgramResult listing = testing::RunProgram(Installed(L"lumenor-cli.exe"), L"list");
  ASSERT_TRUE(listing.finished);
  EXPECT_EQ(listing.exitCode, 0u);
  EXPECT_TRUE(listing.out.starts_with(ExpectedListing())) << listing.out;
}

TEST_F(Setup, SilentUninstallRemovesWhatSetupAndTheProgramAddedButKeepsSettingsAndOwnRules) {
  // A neighbour in each key that the uninstall works in.
  constexpr wchar_t kNeighbourKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\LumenorTestNeighbour";
  constexpr wchar_t kNeighbourData[] = L"C:\\neighbour\\neighbour.exe";
  const DWORD neighbourBytes = sizeof kNeighbourData;
  ASSERT_EQ(
      RegSetKeyValueW(HKEY_CURRENT_USER, kRunKey, L"LumenorTestNeighbour", REG_SZ, kNeighbourData, neighbourBytes),
      ERROR_SUCCESS);
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kNeighbourKey, L"DisplayName", REG_SZ, kNeighbourData, neighbourBytes),
            ERROR_SUCCESS);

  const std::wstring profile = testing::KnownFolder(FOLDERID_Profile);
  wchar_t temp[MAX_PATH + 1] = {};
  const DWORD tempLength = GetTempPathW(MAX_PATH + 1, temp);
  ASSERT_GT(tempLength, 1u);
  // Setup and uninstaller unpack their helpers there and clear them away.
  const std::wstring skipped(temp, tempLength - 1);
  const auto filesBefore = testing::FolderPicture(profile, skipped);
  const auto registryBefore = testing::RegistryPicture(HKEY_CURRENT_USER, L"");

  ASSERT_EQ(RunSetup(L"/S /DESKTOPSHORTCUT").exitCode, 0u);
  ASSERT_TRUE(Exists(desktopShortcut_));
  ASSERT_TRUE(testing::WriteFileBytes(Installed(L"setting.ini"), kEditedSettings));
  // What the program adds beside itself: downloaded community rules, and the user's own.
  ASSERT_TRUE(testing::WriteFileBytes(Installed(L"winapp2.ini"), kCommunityRules));
  ASSERT_TRUE(CreateDirectoryW(Installed(L"rules").c_str(), nullptr));
  ASSERT_TRUE(testing::WriteFileBytes(Installed(L"rules\\mine.xml"), kOwnRules));
  const std::wstring logOn = Installed(L"lumenor.exe") + L" -A";
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kRunKey, L"Lumenor", REG_SZ, logOn.c_str(),
                            static_cast<DWORD>((logOn.size() + 1) * sizeof(wchar_t))),
            ERROR_SUCCESS);

  const JobResult uninstall = RunQuietUninstall();
  ASSERT_TRUE(uninstall.finished);
  EXPECT_EQ(uninstall.exitCode, 0u);

  for (const wchar_t* name : kInstalledFiles) {
    EXPECT_FALSE(Exists(Installed(name))) << ToUtf8(name);
  }
  EXPECT_EQ(testing::ReadFileBytes(Installed(L"setting.ini")), kEditedSettings);
  EXPECT_FALSE(Exists(Installed(L"winapp2.ini")));
  EXPECT_EQ(testing::ReadFileBytes(Installed(L"rules\\mine.xml")), kOwnRules);
  EXPECT_FALSE(Exists(startMenuShortcut_));
  EXPECT_FALSE(Exists(desktopShortcut_));
  EXPECT_FALSE(testing::KeyExists(HKEY_CURRENT_USER, kUninstallKey));
  EXPECT_FALSE(ReadString(HKEY_CURRENT_USER, kRunKey, L"Lumenor").has_value());

  std::vector<std::wstring> keptFiles;
  if (!filesBefore.contains(programs_)) keptFiles.push_back(L"+ " + programs_);
  keptFiles.push_back(L"+ " + installDir_);
  keptFiles.push_back(L"+ " + Installed(L"rules"));
  keptFiles.push_back(L"+ " + Installed(L"rules\\mine.xml"));
  keptFiles.push_back(L"+ " + Installed(L"setting.ini"));
  EXPECT_EQ(testing::Differences(filesBefore, testing::FolderPicture(profile, skipped)), keptFiles);
  EXPECT_EQ(testing::Differences(registryBefore, testing::RegistryPicture(HKEY_CURRENT_USER, L"")),
            std::vector<std::wstring>{});

  (void)RegDeleteKeyValueW(HKEY_CURRENT_USER, kRunKey, L"LumenorTestNeighbour");  // the test's own; checked above
  (void)RegDeleteKeyW(HKEY_CURRENT_USER, kNeighbourKey);
}

TEST_F(Setup, SilentSetupAndUninstallStopWhileLumenorRuns) {
  {
    // What the running program holds.
    const UniqueHandle running(CreateMutexW(nullptr, FALSE, kSingleInstanceMutexName));
    ASSERT_TRUE(running);
    const JobResult refused = RunSetup(L"/S");
    ASSERT_TRUE(refused.finished);
    EXPECT_EQ(refused.exitCode, 3u) << "the exit code that tells a running program";
    EXPECT_FALSE(Exists(Installed(L"lumenor.exe")));
    EXPECT_FALSE(testing::KeyExists(HKEY_CURRENT_USER, kUninstallKey));
  }

  ASSERT_EQ(RunSetup(L"/S").exitCode, 0u);
  const UniqueHandle running(CreateMutexW(nullptr, FALSE, kSingleInstanceMutexName));
  ASSERT_TRUE(running);
  const JobResult uninstall = RunQuietUninstall();
  // Its exit code is the launcher's, which hands over to a copy of itself in the temp
  // folder and always ends with 0: what counts is that everything stayed.
  ASSERT_TRUE(uninstall.finished);
  for (const wchar_t* name : kInstalledFiles) {
    EXPECT_TRUE(Exists(Installed(name))) << ToUtf8(name);
  }
  EXPECT_TRUE(Exists(startMenuShortcut_));
  EXPECT_TRUE(testing::KeyExists(HKEY_CURRENT_USER, kUninstallKey));
}

}  // namespace
}  // namespace lumenor
