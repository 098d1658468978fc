// Firefox end to end, through lumenor-cli, on profiles made where Firefox keeps them: the
// built-in items on every profile of profiles.ini, and the fixed catalogue's "Browsing
// history" and "Cookies", which must not delete the bookmarks or the cookies kept.
#include "tests/builtin/BrowserMachine.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "base/TextEncoding.h"
#include "catalogue/ItemIds.h"

#include <gtest/gtest.h>

#include <optional>

namespace lumenor {
namespace {

using testing::FileExists;

// The built-in Firefox items (res/rules/builtin_rules.xml).
constexpr unsigned kFirefoxCache = 1070;
constexpr unsigned kFirefoxCookies = 1071;
constexpr unsigned kFirefoxHistory = 1072;

const std::vector<std::string> kCookieHosts = {"example.org", ".example.org", "www.example.org", "badexample.org",
                                               "tracker.example.net"};
const std::vector<std::string> kKeptHosts = {".example.org", "example.org", "www.example.org"};

class FirefoxProfiles : public ::testing::Test {
 protected:
  void SetUp() override {
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
    machine_.emplace();
    machine_->Claim(machine_->AppData() + L"Mozilla\\Firefox");
    machine_->Claim(machine_->LocalAppData() + L"Mozilla\\Firefox");
    firefox_ = machine_->AppData() + L"Mozilla\\Firefox\\";
    relative_ = firefox_ + L"Profiles\\abcd1234.default-release\\";
    localTwin_ = machine_->LocalAppData() + L"Mozilla\\Firefox\\Profiles\\abcd1234.default-release\\";
    absolute_ = elsewhere_ / L"Work Profile\\";
  }
  void TearDown() override { machine_.reset(); }

  // Two profiles: the relative one first, as Firefox writes it, and one of an absolute path.
  void WriteProfilesIni(bool withAbsolute) const {
    std::string text =
        "[Install308046B0AF4A39CB]\r\nDefault=Profiles/abcd1234.default-release\r\nLocked=1\r\n\r\n"
        "[Profile0]\r\nName=default-release\r\nIsRelative=1\r\nPath=Profiles/abcd1234.default-release\r\n"
        "Default=1\r\n\r\n";
    if (withAbsolute) {
      std::wstring path = absolute_;
      path.pop_back();
      text += "[Profile1]\r\nName=work\r\nIsRelative=0\r\nPath=" + ToUtf8(path) + "\r\n\r\n";
    }
    text += "[General]\r\nStartWithLastProfile=1\r\nVersion=2\r\n";
    testing::MakeFile(firefox_ + L"profiles.ini", text);
  }

  std::optional<testing::BrowserMachine> machine_;
  testing::TempFolder elsewhere_;
  std::wstring firefox_;
  std::wstring relative_;
  std::wstring localTwin_;
  std::wstring absolute_;
};

TEST_F(FirefoxProfiles, EveryProfileLosesItsCacheVisitsAndCookiesButKeepsBookmarksAndKeptCookies) {
  WriteProfilesIni(true);
  for (const std::wstring& profile : {relative_, absolute_}) {
    testing::MakeFirefoxPlaces(profile, true, true);
    testing::MakeFirefoxCookies(profile, kCookieHosts);
  }
  ASSERT_TRUE(FileExists(relative_ + L"places.sqlite-wal")) << "the visits wait in the WAL, as Firefox leaves them";
  testing::MakeFile(localTwin_ + L"cache2\\entries\\4F3A", "cached page");
  testing::MakeFile(absolute_ + L"cache2\\entries\\9B1C", "cached page");
  testing::MakeFile(relative_ + L"key4.db", "keys");
  machine_->KeepCookiesOf({"example.org"});

  const std::wstring items = testing::ItemsArgument({kFirefoxCache, kFirefoxCookies, kFirefoxHistory});
  const testing::CliJson scan = testing::RunCliJson(L"scan " + items);
  EXPECT_EQ(scan.exitCode, 0u) << scan.err;
  for (const std::wstring& profile : {relative_, absolute_}) {
    SCOPED_TRACE(ToUtf8(profile));
    EXPECT_TRUE(scan.HasTrace(profile + L"places.sqlite", L"2 visits, 1 address"));
    EXPECT_TRUE(scan.HasTrace(profile + L"cookies.sqlite", L"badexample.org (1 cookie)"));
    EXPECT_FALSE(scan.HasTrace(profile + L"cookies.sqlite", L"www.example.org (1 cookie)"));
  }
  EXPECT_TRUE(scan.HasTrace(localTwin_ + L"cache2\\entries\\", L"4F3A"));
  EXPECT_TRUE(scan.HasTrace(absolute_ + L"cache2\\entries\\", L"9B1C"));

  const testing::CliJson erase = testing::RunCliJson(L"erase " + items);
  EXPECT_EQ(erase.exitCode, 0u) << erase.err;
  for (const std::wstring& profile : {relative_, absolute_}) {
    SCOPED_TRACE(ToUtf8(profile));
    const testing::FixtureDatabase places(profile + L"places.sqlite");
    EXPECT_EQ(places.Texts("PRAGMA integrity_check"), (std::vector<std::string>{"ok"}));
    EXPECT_EQ(places.Number("SELECT count(*) FROM moz_historyvisits"), 0);
    EXPECT_EQ(places.Texts("SELECT url FROM moz_places"), (std::vector<std::string>{"https://bookmarked.example/"}));
    EXPECT_EQ(places.Texts("SELECT b.title FROM moz_bookmarks b JOIN moz_places p ON p.id = b.fk"),
              (std::vector<std::string>{"A bookmark"}));
    EXPECT_EQ(testing::FirefoxCookieHosts(profile + L"cookies.sqlite"), kKeptHosts);
  }
  EXPECT_FALSE(FileExists(localTwin_ + L"cache2\\entries\\4F3A"));
  EXPECT_FALSE(FileExists(absolute_ + L"cache2\\entries\\9B1C"));
  EXPECT_TRUE(FileExists(relative_ + L"key4.db"));
  EXPECT_TRUE(FileExists(firefox_ + L"profiles.ini"));
}

TEST_F(FirefoxProfiles, FixedBrowsingHistoryCleansTheVisitsOfAPlacesFileHoldingBookmarks) {
  WriteProfilesIni(false);
  testing::MakeFirefoxPlaces(relative_, true, true);
  const std::wstring items = testing::ItemsArgument({kItemFirefoxBrowsingHistory});
  const testing::CliJson scan = testing::RunCliJson(L"scan " + items);
  EXPECT_TRUE(scan.HasTrace(relative_ + L"places.sqlite", L"2 visits, 1 address")) << "what goes, not the file";
  EXPECT_FALSE(scan.HasTrace(relative_, L"places.sqlite"));

  const testing::CliJson erase = testing::RunCliJson(L"erase " + items);
  EXPECT_EQ(erase.exitCode, 0u) << erase.err;
  ASSERT_TRUE(FileExists(relative_ + L"places.sqlite"));
  const testing::FixtureDatabase places(relative_ + L"places.sqlite");
  EXPECT_EQ(places.Number("SELECT count(*) FROM moz_historyvisits"), 0);
  EXPECT_EQ(places.Number("SELECT count(*) FROM moz_bookmarks WHERE fk IS NOT NULL"), 1);
}

TEST_F(FirefoxProfiles, FixedBrowsingHistoryStillDeletesAPlacesFileWithoutBookmarks) {
  WriteProfilesIni(false);
  testing::MakeFirefoxPlaces(relative_, false, false);
  const std::wstring items = testing::ItemsArgument({kItemFirefoxBrowsingHistory});
  EXPECT_TRUE(testing::RunCliJson(L"scan " + items).HasTrace(relative_, L"places.sqlite"));
  EXPECT_EQ(testing::RunCliJson(L"erase " + items).exitCode, 0u);
  EXPECT_FALSE(FileExists(relative_ + L"places.sqlite"));
}

TEST_F(FirefoxProfiles, FixedCookiesEditTheFileWhileDomainsAreKeptAndDeleteItOtherwise) {
  WriteProfilesIni(false);
  testing::MakeFirefoxCookies(relative_, kCookieHosts);
  const std::wstring items = testing::ItemsArgument({kItemFirefoxCookies});
  machine_->KeepCookiesOf({"example.org"});
  const testing::CliJson scan = testing::RunCliJson(L"scan " + items);
  EXPECT_TRUE(scan.HasTrace(relative_ + L"cookies.sqlite", L"tracker.example.net (1 cookie)"));
  EXPECT_FALSE(scan.HasTrace(relative_, L"cookies.sqlite"));
  EXPECT_EQ(testing::RunCliJson(L"erase " + items).exitCode, 0u);
  ASSERT_TRUE(FileExists(relative_ + L"cookies.sqlite"));
  EXPECT_EQ(testing::FirefoxCookieHosts(relative_ + L"cookies.sqlite"), kKeptHosts);

  machine_->KeepCookiesOf({});
  EXPECT_TRUE(testing::RunCliJson(L"scan " + items).HasTrace(relative_, L"cookies.sqlite"));
  EXPECT_EQ(testing::RunCliJson(L"erase " + items).exitCode, 0u);
  EXPECT_FALSE(FileExists(relative_ + L"cookies.sqlite"));
}

}  // namespace
}  // namespace lumenor
