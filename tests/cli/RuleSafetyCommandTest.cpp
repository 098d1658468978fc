// A user's rule file that reaches further than any rule may, run through lumenor-cli:
// protected folders, a browser's own files, a LevelDB database picked by a mask, the
// registry's Software key whole, a folder link on a wildcard's path, an application that
// runs. Each is skipped with its reason, told as JSON, and nothing it names is lost.
#include "tests/cli/UserRuleFiles.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include "base/TextEncoding.h"
#include "engine/Registry.h"
#include "engine/SystemPaths.h"
#include "rules/RuleModel.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <algorithm>

namespace lumenor {
namespace {

using testing::MakeFile;
using testing::ProgramResult;
using testing::SkippedLine;
using testing::TraceLine;

std::vector<std::string> Sorted(std::vector<std::string> lines) {
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::wstring ShellFolder(int csidl) { return MachinePaths().ShellFolder(csidl).value_or(L""); }

class RuleReachingTooFar : public testing::UserRuleFiles {
 protected:
  void TearDown() override {
    for (const std::wstring& canary : canaries_) (void)DeleteFileW(canary.c_str());
    for (const std::wstring& folder : canaryFolders_) (void)RemoveDirectoryW(folder.c_str());
    UserRuleFiles::TearDown();
  }

  // A file that must outlive every erase of the test.
  void PlaceCanary(const std::wstring& path) {
    const std::wstring folder = path.substr(0, path.find_last_of(L'\\') + 1);
    if (GetFileAttributesW(folder.c_str()) == INVALID_FILE_ATTRIBUTES) canaryFolders_.push_back(folder);
    MakeFile(path, "canary");
    canaries_.push_back(path);
  }
  std::vector<std::wstring> LostCanaries() const {
    std::vector<std::wstring> lost;
    for (const std::wstring& canary : canaries_) {
      if (!testing::FileExists(canary)) lost.push_back(canary);
    }
    return lost;
  }

 private:
  std::vector<std::wstring> canaries_;
  std::vector<std::wstring> canaryFolders_;
};

constexpr char kProtectedFolderRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Broad App">
      <item name="Whole profile"><files folder="%UserProfile%" masks="*" scope="recursive"/></item>
      <item name="Roaming"><files folder="%AppData%" masks="*" scope="remove-self"/></item>
      <item name="Windows logs"><files folder="%WinDir%" masks="*.log" scope="recursive"/></item>
      <item name="System drive"><files folder="%SystemDrive%" masks="*"/></item>
    </application>
  </category>
</rules>
)";

TEST_F(RuleReachingTooFar, AProtectedFolderIsSkippedWithItsReasonAndNothingInItIsLost) {
  const std::wstring profile = ShellFolder(CSIDL_PROFILE) + L"\\";
  const std::wstring roaming = ShellFolder(CSIDL_APPDATA) + L"\\";
  const std::wstring windows = ShellFolder(CSIDL_WINDOWS) + L"\\";
  ASSERT_GT(profile.size(), 1u);
  PlaceCanary(profile + L"lumenor-rule-canary.txt");
  PlaceCanary(profile + L"lumenor-rule-canary\\canary.txt");
  PlaceCanary(roaming + L"lumenor-rule-canary\\canary.txt");
  PlaceCanary(windows + L"lumenor-rule-canary.log");
  PlaceCanary(L"C:\\lumenor-rule-canary.txt");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kProtectedFolderRules));
  const unsigned wholeProfile = rules::DerivedItemId(L"Broad App", L"Whole profile");
  const unsigned roamingItem = rules::DerivedItemId(L"Broad App", L"Roaming");
  const unsigned windowsLogs = rules::DerivedItemId(L"Broad App", L"Windows logs");
  const unsigned systemDrive = rules::DerivedItemId(L"Broad App", L"System drive");
  const std::wstring items = testing::ItemList({wholeProfile, roamingItem, windowsLogs, systemDrive});
  const std::vector<std::string> skipped = Sorted(
      {SkippedLine(wholeProfile, profile, "protected folder"), SkippedLine(roamingItem, roaming, "protected folder"),
       SkippedLine(windowsLogs, windows, "protected folder"), SkippedLine(systemDrive, L"C:\\", "protected folder")});

  const ProgramResult scan = Cli(L"scan --json --items " + items);
  EXPECT_EQ(scan.err, "") << "the rules themselves are well written";
  EXPECT_EQ(testing::LinesOfType(scan.out, "skipped"), skipped) << scan.out;
  // Only erased once the scan has shown that the rules reach nothing: a fault here must
  // not cost the test machine its profile.
  ASSERT_EQ(testing::LinesOfType(scan.out, "trace"), std::vector<std::string>{});

  const ProgramResult erase = Cli(L"erase --json --items " + items);
  EXPECT_EQ(erase.exitCode, 1u) << "an erase that skipped says so";
  EXPECT_EQ(testing::LinesOfType(erase.out, "skipped"), skipped);
  EXPECT_EQ(testing::LinesOfType(erase.out, "summary"),
            std::vector<std::string>{
                "{\"type\":\"summary\",\"traces\":0,\"deleted\":0,\"failed\":0,\"skipped\":4,\"bytes\":0}"});
  EXPECT_EQ(LostCanaries(), std::vector<std::wstring>{});
}

constexpr char kBrowserRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Browser App">
      <item name="Settings"><files folder="%Temp%\Browser\User Data" masks="Local State;*.log"/></item>
      <item name="Storage logs">
        <files folder="%Temp%\Browser\User Data\Default\Local Storage\leveldb" masks="*.log"/>
      </item>
    </application>
  </category>
</rules>
)";

TEST_F(RuleReachingTooFar, ABrowsersLocalStateAndTheLogOfALevelDbDatabaseStayWhateverTheMaskSays) {
  const std::wstring userData = *this / L"Browser\\User Data\\";
  const std::wstring levelDb = userData + L"Default\\Local Storage\\leveldb\\";
  MakeFile(userData + L"old.log");
  PlaceCanary(userData + L"Local State");
  PlaceCanary(levelDb + L"000003.log");
  PlaceCanary(levelDb + L"CURRENT");
  PlaceCanary(levelDb + L"MANIFEST-000001");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kBrowserRules));
  const unsigned settings = rules::DerivedItemId(L"Browser App", L"Settings");
  const unsigned storage = rules::DerivedItemId(L"Browser App", L"Storage logs");
  const std::wstring items = testing::ItemList({settings, storage});
  const std::vector<std::string> skipped =
      Sorted({SkippedLine(settings, userData + L"Local State", "browser data that is never deleted"),
              SkippedLine(storage, levelDb, "part of a LevelDB database, which goes whole or not at all")});

  const ProgramResult scan = Cli(L"scan --json --items " + items);
  EXPECT_EQ(testing::LinesOfType(scan.out, "trace"),
            std::vector<std::string>{TraceLine(settings, "Settings", userData, L"old.log", 5)});
  EXPECT_EQ(testing::LinesOfType(scan.out, "skipped"), skipped) << scan.out;

  const ProgramResult erase = Cli(L"erase --json --items " + items);
  EXPECT_EQ(erase.exitCode, 1u);
  EXPECT_EQ(testing::LinesOfType(erase.out, "skipped"), skipped);
  EXPECT_EQ(testing::LinesOfType(erase.out, "summary"),
            std::vector<std::string>{
                "{\"type\":\"summary\",\"traces\":1,\"deleted\":1,\"failed\":0,\"skipped\":2,\"bytes\":5}"});
  EXPECT_FALSE(testing::FileExists(userData + L"old.log"));
  EXPECT_EQ(LostCanaries(), std::vector<std::wstring>{});
}

constexpr char kSoftwareKeyRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Registry App">
      <item name="Software"><registry key="HKCU\Software"/></item>
      <item name="Software spelt otherwise"><registry key="HKEY_CURRENT_USER\SOFTWARE"/></item>
      <item name="Run"><registry key="HKCU\Software\Microsoft\Windows\CurrentVersion\Run"/></item>
    </application>
  </category>
</rules>
)";

// Only scanned, never erased: if the rule were not refused, an erase would take every
// program's settings with it.
TEST_F(RuleReachingTooFar, TheWholeSoftwareKeyIsSkippedByTheScanAsAProtectedKey) {
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kSoftwareKeyRules));
  const unsigned software = rules::DerivedItemId(L"Registry App", L"Software");
  const unsigned otherwise = rules::DerivedItemId(L"Registry App", L"Software spelt otherwise");
  const unsigned run = rules::DerivedItemId(L"Registry App", L"Run");
  const ProgramResult scan = Cli(L"scan --json --items " + testing::ItemList({software, otherwise, run}));
  EXPECT_EQ(scan.exitCode, 0u);
  EXPECT_EQ(testing::LinesOfType(scan.out, "trace"), std::vector<std::string>{}) << "not one value of it is listed";
  EXPECT_EQ(testing::LinesOfType(scan.out, "skipped"),
            Sorted({SkippedLine(software, L"HKEY_CURRENT_USER\\Software", "protected key"),
                    SkippedLine(otherwise, L"HKEY_CURRENT_USER\\SOFTWARE", "protected key"),
                    SkippedLine(run, L"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run",
                                "protected key")}))
      << scan.out;
}

constexpr char kLinkRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Link App">
      <item name="Everything below"><files folder="%Temp%\clean\*" masks="*" scope="remove-self"/></item>
    </application>
  </category>
</rules>
)";

TEST_F(RuleReachingTooFar, AFolderLinkOnAWildcardsPathIsSkippedAndNothingBehindItIsReached) {
  const std::wstring fixtures = L"E:\\link-fixtures\\";
  if (GetFileAttributesW((fixtures + L"clean\\top-link").c_str()) == INVALID_FILE_ATTRIBUTES) {
    GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness, LUMENOR_LINK_FIXTURES=1)";
  }
  SetTemp(fixtures);  // %Temp%\clean\* meets top-link, and sub, which holds nested-link
  MakeFile(fixtures + L"clean\\sub\\trace.tmp");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kLinkRules));
  const unsigned id = rules::DerivedItemId(L"Link App", L"Everything below");
  const std::vector<std::string> skipped = Sorted({SkippedLine(id, fixtures + L"clean\\top-link\\", "link"),
                                                   SkippedLine(id, fixtures + L"clean\\sub\\nested-link\\", "link")});

  const ProgramResult scan = Cli(L"scan --json --items " + std::to_wstring(id));
  EXPECT_EQ(testing::LinesOfType(scan.out, "trace"),
            std::vector<std::string>{TraceLine(id, "Everything below", fixtures + L"clean\\sub\\", L"trace.tmp", 5)})
      << "nothing behind a link";
  EXPECT_EQ(testing::LinesOfType(scan.out, "skipped"), skipped);

  const ProgramResult erase = Cli(L"erase --json --items " + std::to_wstring(id));
  EXPECT_EQ(erase.exitCode, 1u) << erase.out;
  EXPECT_EQ(testing::LinesOfType(erase.out, "skipped"), skipped);
  EXPECT_FALSE(testing::FileExists(fixtures + L"clean\\sub\\trace.tmp"));
  for (const wchar_t* target : {L"top", L"nested"}) {
    EXPECT_TRUE(testing::FileExists(fixtures + L"targets\\" + target + L"\\canary.txt")) << ToUtf8(target);
  }
  EXPECT_NE(GetFileAttributesW((fixtures + L"clean\\sub\\nested-link").c_str()), INVALID_FILE_ATTRIBUTES)
      << "the folder holding the link is not empty, so it stays, and the link with it";
}

constexpr char kRunningRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <running process="lumenor-rule-app.exe"/>
      <running lockfile="%Temp%\Rule App\Profiles\*\parent.lock"/>
      <item name="Cache"><files folder="%Temp%\Rule App\Cache" masks="*" scope="remove-self"/></item>
    </application>
  </category>
</rules>
)";

class RunningApplication : public RuleReachingTooFar {
 protected:
  void SetUp() override {
    RuleReachingTooFar::SetUp();
    if (IsSkipped() || HasFatalFailure()) return;
    MakeFile(*this / L"Rule App\\Cache\\page.bin");
    MakeFile(*this / L"Rule App\\Profiles\\x1.default\\parent.lock");
    ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kRunningRules));
  }

  // The scan and the erase while the application runs: the skip and nothing else.
  void ExpectHeldBack(const std::wstring& what) {
    const std::string skipped = SkippedLine(id_, what, "Rule App is running");
    const ProgramResult scan = Cli(L"scan --json --items " + std::to_wstring(id_));
    EXPECT_EQ(testing::LinesOfType(scan.out, "trace"), std::vector<std::string>{});
    EXPECT_EQ(testing::LinesOfType(scan.out, "skipped"), std::vector<std::string>{skipped}) << scan.out;
    const ProgramResult erase = Cli(L"erase --json --items " + std::to_wstring(id_));
    EXPECT_EQ(erase.exitCode, 1u);
    EXPECT_EQ(testing::LinesOfType(erase.out, "skipped"), std::vector<std::string>{skipped}) << erase.out;
    EXPECT_TRUE(testing::FileExists(*this / L"Rule App\\Cache\\page.bin"));
  }
  void ExpectErasedOnceItEnded() {
    const ProgramResult erase = Cli(L"erase --json --items " + std::to_wstring(id_));
    EXPECT_EQ(erase.exitCode, 0u) << erase.out;
    EXPECT_FALSE(testing::FileExists(*this / L"Rule App\\Cache\\")) << "the lock file left behind holds nothing back";
  }

  const unsigned id_ = rules::DerivedItemId(L"Rule App", L"Cache");
};

TEST_F(RunningApplication, AProcessOfTheApplicationHoldsEveryItemOfItBack) {
  const std::wstring program = *this / L"lumenor-rule-app.exe";
  ASSERT_TRUE(CopyFileW(testing::ProgramBesideTest(L"lumenor-test-idle.exe").c_str(), program.c_str(), TRUE));
  {
    const testing::RunningProgram application(program, L"");
    ASSERT_TRUE(application.Started());
    ExpectHeldBack(L"lumenor-rule-app.exe");
  }
  ExpectErasedOnceItEnded();
}

TEST_F(RunningApplication, ALockFileHeldOpenInAnyProfileHoldsTheApplicationBack) {
  const std::wstring lockFile = *this / L"Rule App\\Profiles\\x1.default\\parent.lock";
  {
    const HANDLE held = CreateFileW(lockFile.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    ExpectHeldBack(lockFile);
    CloseHandle(held);
  }
  ExpectErasedOnceItEnded();
}

}  // namespace
}  // namespace lumenor
