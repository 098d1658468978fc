// Rule items scanned and erased on folders and keys the test makes: what a rule's folders,
// masks, scopes and exclusions reach, and what no rule reaches whatever it says (protected
// folders and keys, links, a browser's own files, LevelDB databases, journals of
// databases that stay, a running application).
#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "catalogue/Catalogue.h"
#include "engine/FilePath.h"
#include "engine/RulePlan.h"
#include "engine/RuleTraces.h"
#include "engine/ScanRun.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumenor {
namespace {

using rules::FileScope;
using testing::EntriesBelow;
using testing::MakeFile;
using testing::TempFolder;

rules::FileAction Files(std::wstring folder, std::vector<std::wstring> masks, FileScope scope = FileScope::kDirect) {
  rules::FileAction action;
  action.folder = std::move(folder);
  action.masks = std::move(masks);
  action.scope = scope;
  return action;
}

// One application "App" of one item, shown in a catalogue of its own, scanned and erased
// with a machine whose Local AppData is a folder of the test.
class RuleItem : public ::testing::Test {
 protected:
  void SetUp() override {
    local_ = root_ / L"Local\\";
    testing::MakeFolders(local_);
    paths_.shellFolders[CSIDL_LOCAL_APPDATA] = local_.substr(0, local_.size() - 1);
    paths_.shellFolders[CSIDL_PROFILE] = root_.Path().substr(0, root_.Path().size() - 1);
    guard_.emplace(paths_);
  }

  // Runs the scan of `item` (under application `application`), keeping its run.
  void Scan(rules::Item item, rules::Application application = {}) {
    application.name = application.name.empty() ? L"App" : application.name;
    application.category = L"Tests";
    item.id = 100001;
    item.name = L"Item";
    application.items = {std::move(item)};
    rules::RuleSet set;
    set.applications.push_back(std::move(application));
    auto book = std::make_unique<rules::RuleBook>();
    book->Add(std::move(set));
    catalogue_ = CCatalogue::Build(std::move(book), [](const rules::RuleBook::Entry&) { return true; });
    const CMyObject* node = FindNodeById(catalogue_.Root(), 100001);
    ASSERT_NE(node, nullptr);
    run_ = std::make_unique<ScanRun>(std::vector<const CMyObject*>{node}, catalogue_.Rules());
    ScanRuleItem(*run_, run_->Items()[0], sink_, Context(), StopToken());
  }
  void Erase() { EraseRuleItem(run_->Items()[0], tally_, Context()); }

  RuleContext Context() { return RuleContext{paths_, *guard_, running_, keep_}; }
  std::vector<std::wstring> Found() const {
    std::vector<std::wstring> found;
    for (const auto& trace : sink_.traces) found.push_back(trace.location + trace.name);
    std::sort(found.begin(), found.end());
    return found;
  }
  std::vector<std::wstring> SkipReasons() const {
    std::vector<std::wstring> reasons;
    for (const SkippedLocation& skipped : sink_.skipped) reasons.push_back(SkipReason(skipped));
    return reasons;
  }

  TempFolder root_;
  std::wstring local_;
  testing::FakeSystemPaths paths_;
  std::optional<FolderGuard> guard_;  // made once the machine's folders are set
  RunningPrograms running_;
  CookieKeepList keep_;
  CCatalogue catalogue_;
  std::unique_ptr<ScanRun> run_;
  testing::RecordingSink sink_;
  testing::RecordingTally tally_;
};

TEST_F(RuleItem, MasksMatchWholeNamesInAnyCaseAndStarDotStarTakesNamesWithoutExtension) {
  for (const wchar_t* name : {L"log", L"other.log", L"LOG.txt", L"README", L"a.tmp", L"b.TMP"}) {
    MakeFile(local_ + L"App\\" + name);
  }
  rules::Item item;
  item.files = {Files(L"%LocalAppData%\\App", {L"LOG", L"*.tmp"})};
  Scan(std::move(item));
  EXPECT_EQ(Found(), (std::vector<std::wstring>{local_ + L"App\\a.tmp", local_ + L"App\\b.TMP", local_ + L"App\\log"}))
      << "never other.log nor LOG.txt: a mask is the whole name";

  rules::Item every;
  every.files = {Files(L"%LocalAppData%\\App", {L"*.*"})};
  sink_ = {};
  Scan(std::move(every));
  EXPECT_EQ(Found().size(), 6u) << "README and log have no extension and are taken all the same";
}

TEST_F(RuleItem, ScopesReachTheFolderAloneOrEverythingBelowAndRemoveSelfTakesOnlyEmptyFolders) {
  MakeFile(local_ + L"Direct\\top.tmp");
  MakeFile(local_ + L"Direct\\sub\\below.tmp");
  MakeFile(local_ + L"Self\\top.tmp");
  MakeFile(local_ + L"Self\\emptied\\a.tmp");
  MakeFile(local_ + L"Self\\kept\\b.tmp");
  MakeFile(local_ + L"Self\\kept\\notes.txt");
  rules::Item item;
  item.files = {Files(L"%LocalAppData%\\Direct", {L"*.tmp"}),
                Files(L"%LocalAppData%\\Self", {L"*.tmp"}, FileScope::kRemoveSelf)};
  Scan(std::move(item));
  EXPECT_EQ(Found(), (std::vector<std::wstring>{local_ + L"Direct\\top.tmp", local_ + L"Self\\emptied\\",
                                                local_ + L"Self\\emptied\\a.tmp", local_ + L"Self\\kept\\b.tmp",
                                                local_ + L"Self\\top.tmp"}))
      << "the folder that the erase empties is listed as a trace of its own; kept\\ and Self\\ are not";
  Erase();
  EXPECT_EQ(tally_.erased, 5);
  EXPECT_EQ(EntriesBelow(local_ + L"Direct\\"), (std::vector<std::wstring>{L"sub\\", L"sub\\below.tmp"}));
  EXPECT_EQ(EntriesBelow(local_ + L"Self\\"), (std::vector<std::wstring>{L"kept\\", L"kept\\notes.txt"}))
      << "a folder that still holds a file stays, and so does the folder above it";
}

TEST_F(RuleItem, WildcardsInMiddleFoldersReachEachMatchingFolderButNoLink) {
  MakeFile(local_ + L"Vendor\\App 1\\Cache\\a.bin");
  MakeFile(local_ + L"Vendor\\App 2\\Cache\\b.bin");
  MakeFile(local_ + L"Vendor\\Other\\Cache\\c.bin");
  rules::Item item;
  item.files = {Files(L"%LocalAppData%\\Vendor\\App ?\\Cache", {L"*"}, FileScope::kRecursive)};
  Scan(std::move(item));
  EXPECT_EQ(Found(), (std::vector<std::wstring>{local_ + L"Vendor\\App 1\\Cache\\a.bin",
                                                local_ + L"Vendor\\App 2\\Cache\\b.bin"}));
}

TEST_F(RuleItem, AWildcardNeverExpandsThroughAFolderLink) {
  if (GetFileAttributesW(L"E:\\link-fixtures\\clean\\top-link") == INVALID_FILE_ATTRIBUTES) {
    GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
  }
  paths_.shellFolders[CSIDL_LOCAL_APPDATA] = L"E:\\link-fixtures";
  guard_.emplace(paths_);
  rules::Item item;
  item.files = {Files(L"%LocalAppData%\\clean\\*", {L"*"}, FileScope::kRemoveSelf)};
  Scan(std::move(item));
  for (const std::wstring& found : Found()) EXPECT_EQ(found.find(L"canary"), std::wstring::npos) << found;
  EXPECT_NE(std::find(SkipReasons().begin(), SkipReasons().end(), L"link"), SkipReasons().end());
  Erase();
  EXPECT_TRUE(testing::FileExists(L"E:\\link-fixtures\\targets\\top\\canary.txt"));
  EXPECT_TRUE(testing::FileExists(L"E:\\link-fixtures\\targets\\nested\\canary.txt"));
}

TEST_F(RuleItem, ExcludedFilesAndFoldersStay) {
  for (const wchar_t* file :
       {L"App\\a.log", L"App\\keep.log", L"App\\pinned\\b.log", L"App\\sub\\c.log", L"App\\sub\\c.db"}) {
    MakeFile(local_ + file);
  }
  rules::Item item;
  item.files = {Files(L"%LocalAppData%\\App", {L"*"}, FileScope::kRecursive)};
  rules::Exclusion names;
  names.kind = rules::Exclusion::Kind::kFiles;
  names.folder = L"%LocalAppData%\\App";
  names.masks = {L"keep.log"};
  rules::Exclusion folder;
  folder.kind = rules::Exclusion::Kind::kFolder;
  folder.folder = L"%LocalAppData%\\App\\pinned";
  rules::Exclusion databases;
  databases.kind = rules::Exclusion::Kind::kFolder;
  databases.folder = L"%LocalAppData%\\App";
  databases.masks = {L"*.db"};
  item.exclusions = {names, folder, databases};
  Scan(std::move(item));
  EXPECT_EQ(Found(), (std::vector<std::wstring>{local_ + L"App\\a.log", local_ + L"App\\sub\\c.log"}));
}

TEST_F(RuleItem, ARuleNamingAProtectedFolderTouchesNothingButTheFilesItNamesThere) {
  MakeFile(root_ / L"ntuser.log");
  MakeFile(root_ / L"Documents\\letter.doc");
  rules::Item broad;
  broad.files = {Files(L"%UserProfile%", {L"*"}, FileScope::kRemoveSelf)};
  Scan(std::move(broad));
  EXPECT_TRUE(Found().empty());
  EXPECT_EQ(SkipReasons(), (std::vector<std::wstring>{L"protected folder"}));
  Erase();
  EXPECT_TRUE(testing::FileExists(root_ / L"Documents\\letter.doc"));

  rules::Item named;
  named.files = {Files(L"%UserProfile%", {L"ntuser.log"})};
  sink_ = {};
  Scan(std::move(named));
  EXPECT_EQ(Found(), (std::vector<std::wstring>{root_ / L"ntuser.log"}));
}

TEST_F(RuleItem, ABrowsersOwnFilesLevelDbFilesAndJournalsOfKeptDatabasesStay) {
  const std::wstring profile = local_ + L"Browser\\User Data\\Default\\";
  for (const wchar_t* file :
       {L"..\\Local State", L"Preferences", L"Bookmarks", L"History", L"History-journal", L"Web Data",
        L"Web Data-journal", L"old.log", L"Local Storage\\leveldb\\000003.log", L"Local Storage\\leveldb\\CURRENT",
        L"Local Storage\\leveldb\\MANIFEST-000001", L"Extensions\\abc\\1.0\\manifest.json"}) {
    MakeFile(profile + file);
  }
  rules::Item item;
  item.files = {
      Files(L"%LocalAppData%\\Browser\\User Data",
            {L"*.log", L"Local State", L"*-journal", L"History", L"Preferences", L"Bookmarks", L"manifest.json"},
            FileScope::kRecursive)};
  Scan(std::move(item));
  EXPECT_EQ(Found(),
            (std::vector<std::wstring>{profile + L"History", profile + L"History-journal", profile + L"old.log"}))
      << "a journal goes with its database, never without it";
  const std::vector<std::wstring> reasons = SkipReasons();
  for (const wchar_t* reason : {L"browser data that is never deleted", L"the journal of a database that stays",
                                L"part of a LevelDB database, which goes whole or not at all",
                                L"browser extensions and their data are never deleted"}) {
    EXPECT_NE(std::find(reasons.begin(), reasons.end(), reason), reasons.end()) << ::testing::PrintToString(reason);
  }
  Erase();
  for (const wchar_t* kept : {L"..\\Local State", L"Preferences", L"Bookmarks", L"Web Data", L"Web Data-journal",
                              L"Local Storage\\leveldb\\000003.log", L"Extensions\\abc\\1.0\\manifest.json"}) {
    EXPECT_TRUE(testing::FileExists(profile + kept)) << ::testing::PrintToString(std::wstring(kept));
  }
}

TEST_F(RuleItem, ALevelDbFolderTakenWholeGoesWhole) {
  const std::wstring database = local_ + L"App\\Session Storage\\";
  for (const wchar_t* file : {L"000003.log", L"CURRENT", L"LOCK", L"MANIFEST-000001"}) MakeFile(database + file);
  rules::Item item;
  item.files = {Files(L"%LocalAppData%\\App\\Session Storage", {L"*"}, FileScope::kRemoveSelf)};
  Scan(std::move(item));
  EXPECT_EQ(Found().size(), 5u) << "four files and the folder";
  Erase();
  EXPECT_EQ(tally_.erased, 5);
  EXPECT_FALSE(testing::FileExists(database));
}

TEST_F(RuleItem, RegistryKeysValuesAndExclusions) {
  testing::TestKey key;
  key.SetText(L"App\\MRU", L"a", L"one");
  key.SetText(L"App\\MRU\\Sub", L"b", L"two");
  key.SetText(L"App\\MRU\\Pinned", L"c", L"three");
  key.SetText(L"App\\Settings", L"LastFile", L"x");
  key.SetText(L"App\\Settings", L"Window", L"y");
  rules::Item item;
  rules::RegistryAction whole;
  whole.key = {rules::Hive::kCurrentUser, key / L"App\\MRU"};
  rules::RegistryAction value;
  value.key = {rules::Hive::kCurrentUser, key / L"App\\Settings"};
  value.value = L"LastFile";
  item.registry = {whole, value};
  rules::Exclusion pinned;
  pinned.kind = rules::Exclusion::Kind::kRegistryKey;
  pinned.key = {rules::Hive::kCurrentUser, key / L"App\\MRU\\Pinned"};
  item.exclusions = {pinned};
  Scan(std::move(item));
  EXPECT_EQ(sink_.traces.size(), 3u) << "a, b and LastFile; c is in a key that stays";
  Erase();
  EXPECT_FALSE(key.ValueExists(L"App\\MRU", L"a"));
  EXPECT_FALSE(key.KeyExists(L"App\\MRU\\Sub"));
  EXPECT_TRUE(key.ValueExists(L"App\\MRU\\Pinned", L"c"));
  EXPECT_FALSE(key.ValueExists(L"App\\Settings", L"LastFile"));
  EXPECT_TRUE(key.ValueExists(L"App\\Settings", L"Window"));
}

TEST_F(RuleItem, KeysThatHoldEveryProgramsSettingsAreNeverDeletedWhole) {
  // Only planned: a failure here must not cost the test machine its settings.
  for (const wchar_t* path : {L"Software", L"", L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts",
                              L"Software\\Microsoft\\Windows\\CurrentVersion\\Run", L"software\\classes"}) {
    rules::Item item;
    rules::RegistryAction whole;
    whole.key = {rules::Hive::kCurrentUser, path};
    item.registry = {whole};
    sink_ = {};
    rules::Application application;
    Scan(std::move(item), application);
    ASSERT_TRUE(run_->Items()[0].plan->keys.empty()) << ::testing::PrintToString(std::wstring(path));
    EXPECT_EQ(SkipReasons(), (std::vector<std::wstring>{L"protected key"}));
  }
  rules::Item named;
  rules::RegistryAction run;
  run.key = {rules::Hive::kCurrentUser, L"Software\\Microsoft\\Windows\\CurrentVersion\\Run"};
  run.value = L"SomeProgram";
  named.registry = {run};
  Scan(std::move(named));
  EXPECT_EQ(run_->Items()[0].plan->keys.size(), 1u) << "a named value of a protected key may go";
}

TEST_F(RuleItem, NothingOfARunningApplicationIsTouched) {
  MakeFile(local_ + L"App\\Cache\\a.bin");
  const std::wstring lockFile = local_ + L"App\\lockfile";
  MakeFile(lockFile);
  rules::Application application;
  application.name = L"Some Browser";
  application.lockFiles = {L"%LocalAppData%\\App\\lockfile"};
  rules::Item item;
  item.files = {Files(L"%LocalAppData%\\App\\Cache", {L"*"})};
  {
    const HANDLE held = CreateFileW(lockFile.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(held, INVALID_HANDLE_VALUE);
    Scan(item, application);
    Erase();
    CloseHandle(held);
  }
  EXPECT_TRUE(Found().empty());
  EXPECT_EQ(SkipReasons(), (std::vector<std::wstring>{L"Some Browser is running"}));
  EXPECT_EQ(tally_.skipped.size(), 1u);
  EXPECT_TRUE(testing::FileExists(local_ + L"App\\Cache\\a.bin"));

  sink_ = {};
  Scan(item, application);
  EXPECT_EQ(Found().size(), 1u) << "the lock file left behind after the browser ended holds nothing back";
}

TEST_F(RuleItem, ARunningProcessOfTheApplicationHoldsItBack) {
  const std::wstring idle = root_ / L"somebrowser.exe";
  ASSERT_TRUE(CopyFileW(testing::ProgramBesideTest(L"lumenor-test-idle.exe").c_str(), idle.c_str(), TRUE));
  testing::RunningProgram browser(idle, L"");
  ASSERT_TRUE(browser.Started());
  running_ = RunningPrograms::Now();
  MakeFile(local_ + L"App\\Cache\\a.bin");
  rules::Application application;
  application.name = L"Some Browser";
  application.processes = {L"SomeBrowser.exe"};
  rules::Item item;
  item.files = {Files(L"%LocalAppData%\\App\\Cache", {L"*"})};
  Scan(item, application);
  EXPECT_TRUE(Found().empty());
  EXPECT_EQ(SkipReasons(), (std::vector<std::wstring>{L"Some Browser is running"}));
  Erase();
  EXPECT_TRUE(testing::FileExists(local_ + L"App\\Cache\\a.bin"));
}

}  // namespace
}  // namespace lumenor
