// Start-up: the two command-line switches, the single running copy, and the user's rule
// files beside the program read into the catalogue.
#include "app/PcApp.h"
#include "app/StartupSwitches.h"
#include "base/ModulePath.h"
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "rules/RuleModel.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace lumenor {
namespace {

TEST(CommandLineSwitches, AutoStartIsAnyMatchAfterTheFirstCharacter) {
  EXPECT_TRUE(ReadStartupSwitches(L"C:\\Lumenor\\lumenor.exe -A").autoStarted);
  EXPECT_TRUE(ReadStartupSwitches(L"\"C:\\My-Apps\\lumenor.exe\"").autoStarted) << "a path with -A counts too";
  EXPECT_FALSE(ReadStartupSwitches(L"-A").autoStarted) << "a match at the very start is ignored";
  EXPECT_FALSE(ReadStartupSwitches(L"C:\\Lumenor\\lumenor.exe -a").autoStarted) << "switches are case-sensitive";
  EXPECT_FALSE(ReadStartupSwitches(L"C:\\Lumenor\\lumenor.exe").autoStarted);
}

TEST(CommandLineSwitches, ShredPathIsEverythingAfterTheSwitchVerbatim) {
  StartupSwitches plain = ReadStartupSwitches(L"C:\\Lumenor\\lumenor.exe -S:C:\\data\\a.txt");
  EXPECT_TRUE(plain.hasShredPath);
  EXPECT_EQ(plain.shredPath, L"C:\\data\\a.txt");

  StartupSwitches quoted = ReadStartupSwitches(L"lumenor.exe -S:\"C:\\my data\\a b.txt\" ");
  EXPECT_EQ(quoted.shredPath, L"\"C:\\my data\\a b.txt\" ") << "quotes and blanks are kept";

  StartupSwitches empty = ReadStartupSwitches(L"lumenor.exe -S:");
  EXPECT_TRUE(empty.hasShredPath);
  EXPECT_EQ(empty.shredPath, L"");

  EXPECT_FALSE(ReadStartupSwitches(L"lumenor.exe -s:C:\\a.txt").hasShredPath);
  EXPECT_FALSE(ReadStartupSwitches(L"lumenor.exe").hasShredPath);
}

TEST(CommandLineSwitches, BothSwitchesAreFoundIndependently) {
  StartupSwitches both = ReadStartupSwitches(L"lumenor.exe -A -S:C:\\x.txt");
  EXPECT_TRUE(both.autoStarted);
  EXPECT_EQ(both.shredPath, L"C:\\x.txt");

  // "-A" inside the shred path still counts as the switch.
  StartupSwitches inPath = ReadStartupSwitches(L"lumenor.exe -S:C:\\Old-Archive\\x.txt");
  EXPECT_TRUE(inPath.autoStarted);
  EXPECT_EQ(inPath.shredPath, L"C:\\Old-Archive\\x.txt");
}

TEST(CommandLineSwitches, TheApplicationReadsThisProcessesLineWhichHoldsNoSwitches) {
  CPcApp app;
  EXPECT_EQ(app.ParseCommandLine(), 0);
  EXPECT_FALSE(app.Switches().autoStarted);
  EXPECT_FALSE(app.Switches().hasShredPath);
}

// The application object with its windowed steps recorded instead of shown.
class RecordingApp : public CPcApp {
 public:
  explicit RecordingApp(std::wstring commandLine = L"C:\\lumenor\\lumenor.exe") : CPcApp(std::move(commandLine)) {}
  int splashShown = 0;
  int splashClosed = 0;
  int mainWindowRuns = 0;
  bool catalogueBuiltForMainWindow = false;
  StartupSwitches handedOver;

 protected:
  void ShowSplash() override { ++splashShown; }
  void CloseSplash() override { ++splashClosed; }
  void RunMainWindow(const StartupSwitches& switches) override {
    ++mainWindowRuns;
    catalogueBuiltForMainWindow = CatalogueRoot() != nullptr && CatalogueRoot()->Id() == kCategoryWindows;
    handedOver = switches;
  }
};

bool MutexExists() {
  HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, kSingleInstanceMutexName);
  if (mutex == nullptr) {
    return false;
  }
  CloseHandle(mutex);
  return true;
}

class ApplicationStartup : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_FALSE(MutexExists()) << "another copy of the program is running"; }
};

TEST_F(ApplicationStartup, RunsTheMainWindowOverABuiltCatalogueAndCleansUpAtExit) {
  RecordingApp app;
  EXPECT_FALSE(app.InitInstance());
  EXPECT_EQ(app.mainWindowRuns, 1);
  EXPECT_TRUE(app.catalogueBuiltForMainWindow);
  EXPECT_EQ(app.splashShown, 1);
  EXPECT_EQ(app.splashClosed, 1);
  EXPECT_FALSE(app.handedOver.autoStarted);
  EXPECT_TRUE(MutexExists()) << "held until exit";

  EXPECT_EQ(app.ExitInstance(), 0);
  EXPECT_EQ(CatalogueRoot(), nullptr);
  EXPECT_FALSE(MutexExists());
}

TEST_F(ApplicationStartup, StartedAtLogOnShowsNoSplashAndHandsBothSwitchesToTheMainWindow) {
  RecordingApp app(L"C:\\lumenor\\lumenor.exe -A -S:C:\\data\\a.txt");
  EXPECT_FALSE(app.InitInstance());
  EXPECT_EQ(app.splashShown, 0);
  EXPECT_EQ(app.splashClosed, 0);
  EXPECT_EQ(app.mainWindowRuns, 1);
  EXPECT_TRUE(app.handedOver.autoStarted);
  EXPECT_EQ(app.handedOver.shredPath, L"C:\\data\\a.txt");
  app.ExitInstance();
}

TEST_F(ApplicationStartup, ASecondCopyStopsBeforeDoingAnything) {
  HANDLE firstCopy = CreateMutexW(nullptr, FALSE, kSingleInstanceMutexName);
  ASSERT_NE(firstCopy, nullptr);

  RecordingApp second;
  EXPECT_FALSE(second.InitInstance());
  EXPECT_EQ(second.splashShown, 0);
  EXPECT_EQ(second.mainWindowRuns, 0);
  EXPECT_EQ(CatalogueRoot(), nullptr);
  second.ExitInstance();

  EXPECT_TRUE(MutexExists()) << "the first copy's mutex is untouched";
  CloseHandle(firstCopy);
}

// Rule files of the user's in the "rules" folder beside the program, removed after the
// test (with the folder, when the test made it) so that no other test sees them.
class RuleFilesAtStart : public ApplicationStartup {
 protected:
  void SetUp() override {
    ApplicationStartup::SetUp();
    madeFolder_ = CreateDirectoryW(folder_.c_str(), nullptr) != FALSE;
  }
  void TearDown() override {
    for (const std::wstring& file : written_) DeleteFileW(file.c_str());
    if (madeFolder_) RemoveDirectoryW(folder_.c_str());
  }
  std::wstring Write(std::wstring_view name, std::string_view text) {
    written_.push_back(folder_ + std::wstring(name));
    EXPECT_TRUE(testing::WriteFileBytes(written_.back(), text));
    return written_.back();
  }

  const std::wstring folder_ = ModuleFolder() + L"rules\\";
  bool madeFolder_ = false;
  std::vector<std::wstring> written_;
};

TEST_F(RuleFilesAtStart, ARuleFileBesideTheProgramShowsInTheTreeAndABrokenOneIsToldWithItsLine) {
  Write(L"lumenor-start-good.xml", R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Start App">
      <item name="Logs"><files folder="%Temp%\Start App" masks="*.log"/></item>
    </application>
  </category>
</rules>
)");
  const std::wstring broken = Write(L"lumenor-start-broken.xml", "<rules version=\"1\">\n  <category>\n");
  RecordingApp app;
  EXPECT_FALSE(app.InitInstance());
  const CMyObject* item = FindNodeById(CatalogueRoot(), rules::DerivedItemId(L"Start App", L"Logs"));
  EXPECT_NE(item, nullptr) << "the main window's tree holds the item";
  if (item != nullptr) {
    EXPECT_EQ(item->Name(), L"Logs");
    EXPECT_EQ(item->Parent()->Name(), L"Start App");
  }
  EXPECT_EQ(app.RuleProblems().size(), 1u);
  if (!app.RuleProblems().empty()) {
    EXPECT_EQ(app.RuleProblems()[0].where.file, broken);
    EXPECT_EQ(app.RuleProblems()[0].where.line, 2) << "the <category> never closed";
    EXPECT_EQ(app.RuleProblems()[0].where.column, 3);
  }
  app.ExitInstance();
}

// The real program: a second copy started while the first runs ends at once, silently,
// and leaves the first running.
TEST_F(ApplicationStartup, SecondProgramCopyExitsSilentlyWhileTheFirstRuns) {
  const std::wstring program = testing::ProgramBesideTest(L"lumenor.exe");
  testing::RunningProgram first(program, L"");
  ASSERT_TRUE(first.Started());
  for (int waited = 0; !MutexExists() && waited < 20000; waited += 50) {
    ASSERT_FALSE(first.WaitForExit(50)) << "the first copy ended early (exit code " << first.ExitCode() << ")";
  }
  ASSERT_TRUE(MutexExists());

  testing::RunningProgram second(program, L"");
  ASSERT_TRUE(second.Started());
  ASSERT_TRUE(second.WaitForExit(10000)) << "the second copy kept running";
  EXPECT_EQ(second.ExitCode(), 0u);
  EXPECT_FALSE(second.HasVisibleWindow());

  EXPECT_FALSE(first.WaitForExit(0)) << "the first copy was disturbed";
  // Closing the window only hides it to the notification area; the menu's "Exit" quits.
  // Until the splash has gone the main window is not there to hear it, so ask again.
  constexpr WPARAM kExitCommand = 20007;
  for (int waited = 0; waited < 20000 && !first.WaitForExit(0); waited += 250) {
    (void)first.PostToWindows(WM_COMMAND, kExitCommand, 0);
    Sleep(250);
  }
  EXPECT_TRUE(first.WaitForExit(10000));
  EXPECT_FALSE(MutexExists()) << "the mutex goes with the first copy";
}

}  // namespace
}  // namespace lumenor
