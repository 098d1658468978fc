// The built-in rules of the Chromium browsers end to end, through lumenor-cli, on profiles
// made where the browsers keep them: every profile of every channel, the profiles found
// when "Local State" does not tell them, the files no item ever deletes, and databases
// that cannot be read.
#include "tests/builtin/BrowserMachine.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "base/TextEncoding.h"
#include "browserdb/BrowserSchemas.h"
#include "engine/RuleLoading.h"
#include "engine/SystemPaths.h"
#include "scan/PrivacyRun.h"

#include <gtest/gtest.h>

#include <optional>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::MakeChromiumProfile;
using testing::WriteLocalState;

// Ids of the built-in rules (res/rules/builtin_rules.xml): ten for each browser, the item
// at its place in the block.
constexpr unsigned kChrome = 1000;
constexpr unsigned kEdge = 1010;
constexpr unsigned kOperaGx = 1050;
constexpr unsigned kCache = 0;
constexpr unsigned kCookies = 1;
constexpr unsigned kHistory = 2;
constexpr unsigned kSessions = 3;
constexpr unsigned kFormData = 4;
constexpr unsigned kSavedPasswords = 5;
constexpr unsigned kSiteStorage = 6;

class ChromiumRules : public ::testing::Test {
 protected:
  void SetUp() override {
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
    machine_.emplace();
    for (const std::wstring& folder : {Local() + L"Google", Local() + L"Microsoft\\Edge", Local() + L"Opera Software",
                                       Roaming() + L"Opera Software"}) {
      machine_->Claim(folder);
    }
    chrome_ = Local() + L"Google\\Chrome\\User Data\\";
  }
  void TearDown() override { machine_.reset(); }

  const std::wstring& Local() const { return machine_->LocalAppData(); }
  const std::wstring& Roaming() const { return machine_->AppData(); }

  std::optional<testing::BrowserMachine> machine_;
  std::wstring chrome_;
};

TEST_F(ChromiumRules, EveryProfileOfEveryChannelAndEveryBrowserIsScannedAndErased) {
  struct Profile {
    std::wstring folder;
    std::string cookieHost;
  };
  std::vector<Profile> profiles;
  WriteLocalState(chrome_, {"Default", "Profile 1", "Profile 4"});
  for (const wchar_t* name : {L"Default", L"Profile 1", L"Profile 4"}) {
    profiles.push_back({chrome_ + name + L"\\", "example.com"});
  }
  testing::MakeFile(chrome_ + L"ShaderCache\\data_1", "shaders");
  // A profile folder that Local State does not name is no profile of the browser.
  MakeChromiumProfile(chrome_ + L"Profile 2\\", {"unlisted.example"});
  const std::wstring beta = Local() + L"Google\\Chrome Beta\\User Data\\";
  WriteLocalState(beta, {"Default"});
  profiles.push_back({beta + L"Default\\", "beta.example"});
  const std::wstring edge = Local() + L"Microsoft\\Edge\\User Data\\";
  WriteLocalState(edge, {"Default"});
  profiles.push_back({edge + L"Default\\", "edge.example"});
  // Opera GX: the profile is the folder itself, its caches under Local AppData; a side
  // profile of each below.
  const std::wstring gx = Roaming() + L"Opera Software\\Opera GX Stable\\";
  const std::wstring gxLocal = Local() + L"Opera Software\\Opera GX Stable\\";
  const std::wstring side = L"_side_profiles\\5f2a9c\\";
  profiles.push_back({gx, "gx.example"});
  profiles.push_back({gx + side, "side.example"});
  for (const Profile& profile : profiles) MakeChromiumProfile(profile.folder, {profile.cookieHost});
  for (const std::wstring& local : {gxLocal, gxLocal + side}) testing::MakeFile(local + L"Cache\\Cache_Data\\data_0");

  std::vector<unsigned> ids;
  for (const unsigned browser : {kChrome, kEdge, kOperaGx}) {
    for (const unsigned item : {kCache, kCookies, kHistory}) ids.push_back(browser + item);
  }
  const testing::CliJson scan = testing::RunCliJson(L"scan " + testing::ItemsArgument(ids));
  ASSERT_TRUE(scan.finished);
  EXPECT_EQ(scan.exitCode, 0u) << scan.err;
  for (const Profile& profile : profiles) {
    SCOPED_TRACE(ToUtf8(profile.folder));
    EXPECT_TRUE(scan.HasTrace(profile.folder + L"Cache\\Cache_Data\\", L"data_0"));
    EXPECT_TRUE(scan.HasTrace(profile.folder, L"History"));
    EXPECT_TRUE(scan.HasTrace(profile.folder, L"History-journal"));
    EXPECT_TRUE(scan.HasTrace(profile.folder + L"Network\\Cookies", FromUtf8(profile.cookieHost) + L" (1 cookie)"));
  }
  EXPECT_TRUE(scan.HasTrace(gxLocal + L"Cache\\Cache_Data\\", L"data_0"));
  EXPECT_TRUE(scan.HasTrace(gxLocal + side + L"Cache\\Cache_Data\\", L"data_0"));
  EXPECT_TRUE(scan.HasTrace(chrome_ + L"ShaderCache\\", L"data_1"));
  EXPECT_FALSE(scan.HasTraceBelow(chrome_ + L"Profile 2\\"));

  const testing::CliJson erase = testing::RunCliJson(L"erase " + testing::ItemsArgument(ids));
  EXPECT_EQ(erase.exitCode, 0u) << erase.err;
  EXPECT_EQ(erase.Summary().value("failed", -1), 0);
  EXPECT_EQ(erase.Summary().value("skipped", -1), 0);
  for (const Profile& profile : profiles) {
    SCOPED_TRACE(ToUtf8(profile.folder));
    EXPECT_FALSE(FileExists(profile.folder + L"Cache\\Cache_Data\\data_0"));
    EXPECT_FALSE(FileExists(profile.folder + L"Code Cache\\js\\index"));
    EXPECT_FALSE(FileExists(profile.folder + L"History"));
    EXPECT_FALSE(FileExists(profile.folder + L"History-journal"));
    ASSERT_TRUE(FileExists(profile.folder + L"Network\\Cookies")) << "the cookie store is edited, never deleted";
    EXPECT_TRUE(testing::ChromiumCookieHosts(profile.folder + L"Network\\Cookies").empty());
    EXPECT_TRUE(FileExists(profile.folder + L"Preferences"));
    EXPECT_TRUE(FileExists(profile.folder + L"Bookmarks"));
  }
  for (const std::wstring& local : {gxLocal, gxLocal + side}) {
    EXPECT_FALSE(FileExists(local + L"Cache\\Cache_Data\\data_0")) << ToUtf8(local);
  }
  EXPECT_FALSE(FileExists(chrome_ + L"ShaderCache\\data_1"));
  EXPECT_TRUE(FileExists(chrome_ + L"Local State"));
  EXPECT_EQ(testing::ChromiumCookieHosts(chrome_ + L"Profile 2\\Network\\Cookies"),
            (std::vector<std::string>{"unlisted.example"}));
  EXPECT_TRUE(FileExists(chrome_ + L"Profile 2\\History"));
}

TEST_F(ChromiumRules, WithoutAReadableLocalStateTheProfileFoldersAreFoundAndNoOtherFolderIsTouched) {
  for (const char* localState : {"", "{ this is not JSON"}) {
    SCOPED_TRACE(localState);
    if (*localState != '\0') testing::MakeFile(chrome_ + L"Local State", localState);
    for (const wchar_t* name : {L"Default", L"Profile 3", L"System Profile", L"Guest Profile"}) {
      MakeChromiumProfile(chrome_ + name + L"\\", {"example.com"});
    }
    const testing::CliJson erase = testing::RunCliJson(
        L"erase " + testing::ItemsArgument({kChrome + kCache, kChrome + kCookies, kChrome + kHistory}));
    EXPECT_EQ(erase.exitCode, 0u) << erase.err;
    for (const wchar_t* name : {L"Default", L"Profile 3"}) {
      EXPECT_FALSE(FileExists(chrome_ + name + L"\\History")) << ToUtf8(name);
      EXPECT_FALSE(FileExists(chrome_ + name + L"\\Cache\\Cache_Data\\data_0")) << ToUtf8(name);
      EXPECT_TRUE(testing::ChromiumCookieHosts(chrome_ + name + L"\\Network\\Cookies").empty()) << ToUtf8(name);
    }
    for (const wchar_t* name : {L"System Profile", L"Guest Profile"}) {
      EXPECT_TRUE(FileExists(chrome_ + name + L"\\History")) << ToUtf8(name);
      EXPECT_TRUE(FileExists(chrome_ + name + L"\\Cache\\Cache_Data\\data_0")) << ToUtf8(name);
      EXPECT_EQ(testing::ChromiumCookieHosts(chrome_ + name + L"\\Network\\Cookies").size(), 1u) << ToUtf8(name);
    }
    testing::RemoveTree(chrome_);
  }
}

TEST_F(ChromiumRules, AnEraseOfEveryItemLeavesWhatNoItemDeletesAndPasswordsGoOnlyWhenAsked) {
  const std::wstring profile = chrome_ + L"Default\\";
  WriteLocalState(chrome_, {"Default"});
  MakeChromiumProfile(profile, {"example.com"});
  testing::MakeFile(profile + L"Secure Preferences", "{}");
  testing::MakeFile(profile + L"Login Data", "passwords");
  testing::MakeFile(profile + L"Sessions\\Session_13400000000000000", "tabs");
  testing::MakeFile(profile + L"Local Storage\\leveldb\\000003.log", "site data");
  {
    const testing::FixtureDatabase webData(profile + L"Web Data", testing::kChromiumWebDataSchema);
    webData.AddFormEntry("email", "someone@example.com");
    webData.AddSearchEngine("ddg", "https://duckduckgo.com/?q={searchTerms}");
  }
  // LevelDB databases that no item names: their files are never picked out by a pattern.
  const std::vector<std::wstring> levelDb = {L"Extension State\\", L"Local Extension Settings\\abcdef\\"};
  for (const std::wstring& folder : levelDb) {
    for (const wchar_t* file : {L"000003.log", L"CURRENT", L"LOCK", L"MANIFEST-000001", L"000005.ldb"}) {
      testing::MakeFile(profile + folder + file);
    }
  }
  testing::MakeFile(profile + L"Extensions\\abcdef\\1.0\\manifest.json", "{}");

  const testing::CliJson erase = testing::RunCliJson(
      L"erase " + testing::ItemsArgument({kChrome + kCache, kChrome + kCookies, kChrome + kHistory, kChrome + kSessions,
                                          kChrome + kFormData, kChrome + kSiteStorage}));
  EXPECT_EQ(erase.exitCode, 0u) << erase.err;
  EXPECT_FALSE(FileExists(profile + L"Sessions\\Session_13400000000000000"));
  EXPECT_FALSE(FileExists(profile + L"Local Storage\\leveldb\\000003.log"))
      << "a LevelDB folder named whole goes whole";
  for (const std::wstring& kept :
       {chrome_ + L"Local State", profile + L"Preferences", profile + L"Secure Preferences", profile + L"Bookmarks",
        profile + L"Login Data", profile + L"Web Data", profile + L"Extensions\\abcdef\\1.0\\manifest.json"}) {
    EXPECT_TRUE(FileExists(kept)) << ToUtf8(kept);
  }
  for (const std::wstring& folder : levelDb) {
    EXPECT_EQ(testing::EntriesBelow(profile + folder).size(), 5u) << ToUtf8(folder);
  }
  {
    const testing::FixtureDatabase webData(profile + L"Web Data");
    EXPECT_EQ(webData.Number("SELECT count(*) FROM autocomplete"), 0);
    EXPECT_EQ(webData.Number("SELECT count(*) FROM keywords"), 1) << "the search engines stay";
  }

  const testing::CliJson passwords =
      testing::RunCliJson(L"erase " + testing::ItemsArgument({kChrome + kSavedPasswords}));
  EXPECT_EQ(passwords.exitCode, 0u) << passwords.err;
  EXPECT_FALSE(FileExists(profile + L"Login Data"));
  EXPECT_TRUE(FileExists(profile + L"Bookmarks"));
}

TEST_F(ChromiumRules, ACorruptAndALockedDatabaseAreReportedAsFailedAndLeftAsTheyAre) {
  WriteLocalState(chrome_, {"Default", "Profile 1", "Profile 2"});
  for (const wchar_t* name : {L"Default", L"Profile 1", L"Profile 2"}) {
    MakeChromiumProfile(chrome_ + name + L"\\", {"example.com"});
  }
  const std::wstring corrupt = chrome_ + L"Default\\Network\\Cookies";
  ASSERT_TRUE(testing::WriteFileBytes(corrupt, std::string("SQLite format 3\0", 16) + std::string(4080, 'x')));
  const std::wstring locked = chrome_ + L"Profile 1\\Network\\Cookies";
  const std::string corruptBytes = testing::ReadFileBytes(corrupt);
  const std::string lockedBytes = testing::ReadFileBytes(locked);
  {
    // Another program's write transaction, as a running browser holds one.
    const testing::FixtureDatabase holder(locked);
    holder.Run("BEGIN EXCLUSIVE");
    const std::wstring items = testing::ItemsArgument({kChrome + kCookies});
    const testing::CliJson scan = testing::RunCliJson(L"scan " + items);
    EXPECT_TRUE(scan.HasTrace(chrome_ + L"Profile 2\\Network\\Cookies", L"example.com (1 cookie)"));
    const std::vector<std::string> reasons = scan.SkipReasons();
    EXPECT_NE(std::find(reasons.begin(), reasons.end(), "corrupt"), reasons.end());
    EXPECT_NE(std::find(reasons.begin(), reasons.end(), "locked"), reasons.end());

    const testing::CliJson erase = testing::RunCliJson(L"erase " + items);
    EXPECT_EQ(erase.exitCode, 1u);
    const std::vector<std::wstring> failures = erase.Failures();
    EXPECT_NE(std::find(failures.begin(), failures.end(), corrupt + L" (corrupt)"), failures.end());
    EXPECT_NE(std::find(failures.begin(), failures.end(), locked + L" (locked)"), failures.end());
    holder.Run("ROLLBACK");
  }
  EXPECT_EQ(testing::ReadFileBytes(corrupt), corruptBytes);
  EXPECT_EQ(testing::ReadFileBytes(locked), lockedBytes);
  EXPECT_TRUE(testing::ChromiumCookieHosts(chrome_ + L"Profile 2\\Network\\Cookies").empty());
}

// What the "Cookies to Keep" dialog offers after a scan: every host whose cookies would
// go, without its leading dot, once, and none that the keep-list already keeps.
TEST_F(ChromiumRules, AScanTellsTheHostsWhoseCookiesWouldGo) {
  WriteLocalState(chrome_, {"Default", "Profile 1"});
  MakeChromiumProfile(chrome_ + L"Default\\", {".example.com", "shop.kept.example"});
  MakeChromiumProfile(chrome_ + L"Profile 1\\", {"example.com", "Tracker.example"});
  class QuietReports final : public RunReports {
    void StageReached(RunStage) override {}
    void TraceFound(const FoundTrace&) override {}
    void LocationSkipped(const SkippedLocation&) override {}
    void Erased(int, uint64_t) override {}
    void EraseFailed(const std::wstring&) override {}
  } reports;

  testing::TempFolder programFolder;  // no rule files nor community file beside it
  LoadedRules loaded = LoadRules(programFolder.Path());
  const CCatalogue catalogue = CatalogueWithRules(loaded, MachinePaths());
  const std::unique_ptr<ScanRun> run = MakeScanRun(catalogue.Root(), {kChrome + kCookies}, catalogue.Rules());
  ASSERT_EQ(run->Items().size(), 1u) << "Google Chrome is shown on this machine";
  ASSERT_TRUE(run->CookiesToKeep().Add(L"kept.example"));
  ScanItems(*run, nullptr, reports, StopToken(), FolderGuard(MachinePaths()));
  EXPECT_EQ(run->CookieHostsFound(), (std::vector<std::wstring>{L"example.com", L"tracker.example"}));
}

}  // namespace
}  // namespace lumenor
