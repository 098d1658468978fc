// Cookie databases of both browser families edited with a keep-list: which rows go, what
// the scan lists, and that the deleted values leave no bytes behind in the file.
#include "browserdb/BrowserSchemas.h"
#include "browserdb/CookieDatabase.h"
#include "tests/browserdb/BrowserFixtures.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::FileOrWalHolds;
using testing::FixtureDatabase;
using testing::ReadFileBytes;
using testing::TempFolder;

constexpr char kDeletedMarker[] = "deleted-cookie-8c1f2e9a";
constexpr char kKeptMarker[] = "kept-cookie-5d7b3a01";

class CookieErase : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(keep_.Add(L"example.org")); }

  // Cookies of the kept domain in every spelling, and of others.
  void FillChromium(bool keepWritesInWal = false) const {
    FixtureDatabase database(chromium_, testing::kChromiumCookiesSchema);
    if (keepWritesInWal) {
      database.KeepWritesInWal();
    }
    database.AddChromiumCookie("example.org", "session", kKeptMarker);
    database.AddChromiumCookie(".example.org", "prefs", "dark");
    database.AddChromiumCookie("www.example.org", "cart", "3");
    database.AddChromiumCookie("badexample.org", "id", kDeletedMarker);
    database.AddChromiumCookie(".tracker.net", "uid", "42");
    database.AddChromiumCookie(".tracker.net", "seen", "1");
  }

  std::vector<std::string> RemainingHosts(const std::wstring& file, const char* sql) const {
    std::vector<std::string> hosts = FixtureDatabase(file).Texts(sql);
    std::sort(hosts.begin(), hosts.end());
    return hosts;
  }

  TempFolder folder_;
  std::wstring chromium_ = folder_ / L"Cookies";
  std::wstring firefox_ = folder_ / L"cookies.sqlite";
  CookieKeepList keep_;
  const std::vector<std::string> keptHosts_ = {".example.org", "example.org", "www.example.org"};
};

TEST_F(CookieErase, ChromiumKeepsTheListedDomainInEverySpellingAndDeletesTheRest) {
  FillChromium();
  const DatabaseErase erase = EraseCookies(chromium_, CookieStore::kChromium, keep_);
  EXPECT_EQ(erase.failure, DatabaseFailure::kNone);
  EXPECT_EQ(erase.rowsDeleted, 3u);
  EXPECT_EQ(RemainingHosts(chromium_, "SELECT host_key FROM cookies"), keptHosts_);
  EXPECT_EQ(FixtureDatabase(chromium_).Texts("PRAGMA integrity_check"), std::vector<std::string>{"ok"});
}

TEST_F(CookieErase, FirefoxKeepsTheListedDomainInEverySpellingAndDeletesTheRest) {
  {
    FixtureDatabase database(firefox_, testing::kFirefoxCookiesSchema);
    database.AddFirefoxCookie("example.org", "session", kKeptMarker);
    database.AddFirefoxCookie(".example.org", "prefs", "dark");
    database.AddFirefoxCookie("www.example.org", "cart", "3");
    database.AddFirefoxCookie("badexample.org", "id", kDeletedMarker);
    database.AddFirefoxCookie(".tracker.net", "uid", "42");
  }
  const DatabaseErase erase = EraseCookies(firefox_, CookieStore::kFirefox, keep_);
  EXPECT_EQ(erase.failure, DatabaseFailure::kNone);
  EXPECT_EQ(erase.rowsDeleted, 2u);
  EXPECT_EQ(RemainingHosts(firefox_, "SELECT host FROM moz_cookies"), keptHosts_);
  EXPECT_FALSE(FileOrWalHolds(firefox_, kDeletedMarker));
}

TEST_F(CookieErase, WithoutAKeepListEveryCookieGoesAndTheFileStays) {
  FillChromium();
  const DatabaseErase erase = EraseCookies(chromium_, CookieStore::kChromium, CookieKeepList());
  EXPECT_EQ(erase.failure, DatabaseFailure::kNone);
  EXPECT_EQ(erase.rowsDeleted, 6u);
  ASSERT_TRUE(FileExists(chromium_));
  EXPECT_EQ(FixtureDatabase(chromium_).Number("SELECT count(*) FROM cookies"), 0);
  EXPECT_EQ(FixtureDatabase(chromium_).Number("SELECT count(*) FROM meta"), 0);  // the other tables are there
}

TEST_F(CookieErase, TheScanListsEachHostTheEraseWouldDeleteWithItsCookiesAndBytesAndChangesNothing) {
  FillChromium();
  const std::string before = ReadFileBytes(chromium_);
  const DatabaseScan scan = ScanCookies(chromium_, CookieStore::kChromium, keep_);
  EXPECT_EQ(scan.failure, DatabaseFailure::kNone);
  ASSERT_EQ(scan.lines.size(), 2u);
  std::vector<DatabaseLine> lines = scan.lines;
  std::sort(lines.begin(), lines.end(), [](const auto& a, const auto& b) { return a.label < b.label; });
  // A row's bytes: its texts and blobs as stored, 8 for each of its 14 numbers.
  const auto rowBytes = [](std::string_view host, std::string_view name, std::string_view value) {
    return 14 * 8 + host.size() + name.size() + (3 + value.size()) + 1;
  };
  EXPECT_EQ(lines[0].label, L".tracker.net");
  EXPECT_EQ(lines[0].rows, 2u);
  EXPECT_EQ(lines[0].bytes, rowBytes(".tracker.net", "uid", "42") + rowBytes(".tracker.net", "seen", "1"));
  EXPECT_EQ(lines[1].label, L"badexample.org");
  EXPECT_EQ(lines[1].rows, 1u);
  EXPECT_EQ(lines[1].bytes, rowBytes("badexample.org", "id", kDeletedMarker));
  EXPECT_EQ(ReadFileBytes(chromium_), before);

  ASSERT_EQ(EraseCookies(chromium_, CookieStore::kChromium, keep_).failure, DatabaseFailure::kNone);
  const DatabaseScan after = ScanCookies(chromium_, CookieStore::kChromium, keep_);
  EXPECT_EQ(after.failure, DatabaseFailure::kNone);
  EXPECT_TRUE(after.lines.empty());
}

TEST_F(CookieErase, DeletedValuesLeaveNoBytesInTheFile) {
  FillChromium();
  ASSERT_TRUE(FileOrWalHolds(chromium_, kDeletedMarker));
  ASSERT_EQ(EraseCookies(chromium_, CookieStore::kChromium, keep_).failure, DatabaseFailure::kNone);
  EXPECT_FALSE(FileOrWalHolds(chromium_, kDeletedMarker));
  EXPECT_TRUE(FileOrWalHolds(chromium_, kKeptMarker));
}

TEST_F(CookieErase, AWalDatabaseIsCheckpointedAndNeitherItNorItsWalKeepsTheDeletedValues) {
  FillChromium(true);
  ASSERT_NE(ReadFileBytes(chromium_ + L"-wal").find(kDeletedMarker), std::string::npos)
      << "the cookies should still be in the WAL";
  ASSERT_EQ(EraseCookies(chromium_, CookieStore::kChromium, keep_).failure, DatabaseFailure::kNone);
  EXPECT_FALSE(FileOrWalHolds(chromium_, kDeletedMarker));
  EXPECT_TRUE(ReadFileBytes(chromium_ + L"-wal").empty());
  // The kept cookies were moved from the WAL into the file itself.
  EXPECT_NE(ReadFileBytes(chromium_).find(kKeptMarker), std::string::npos);
  EXPECT_EQ(RemainingHosts(chromium_, "SELECT host_key FROM cookies"), keptHosts_);
}

TEST_F(CookieErase, AWalThatCannotBeEmptiedWhileAnotherConnectionReadsIsReportedAsLocked) {
  FillChromium(true);
  // A reader in the middle of a read still needs the WAL's old pages, deleted rows and all.
  const FixtureDatabase browser(chromium_);
  browser.Run("BEGIN");
  ASSERT_EQ(browser.Number("SELECT count(*) FROM cookies"), 6);
  const DatabaseErase erase = EraseCookies(chromium_, CookieStore::kChromium, keep_);
  EXPECT_EQ(erase.failure, DatabaseFailure::kLocked);
  EXPECT_EQ(erase.rowsDeleted, 3u) << "the rows are gone from the database all the same";
  browser.Run("COMMIT");
  EXPECT_EQ(browser.Number("SELECT count(*) FROM cookies"), 3);
}

TEST_F(CookieErase, RowsTheBrowserDeletedEarlierLeaveNoBytesEither) {
  {
    FixtureDatabase database(chromium_, testing::kChromiumCookiesSchema);
    // Browsers delete without overwriting: the expired cookie's bytes stay on a free page.
    database.Run("PRAGMA secure_delete = OFF");
    database.AddChromiumCookie(".expired.net", "old", std::string(kDeletedMarker) + std::string(3000, 'x'));
    database.Run("DELETE FROM cookies");
    database.AddChromiumCookie("example.org", "session", kKeptMarker);
    database.AddChromiumCookie(".tracker.net", "uid", "42");
  }
  ASSERT_TRUE(FileOrWalHolds(chromium_, kDeletedMarker));
  const DatabaseErase erase = EraseCookies(chromium_, CookieStore::kChromium, keep_);
  EXPECT_EQ(erase.failure, DatabaseFailure::kNone);
  EXPECT_EQ(erase.rowsDeleted, 1u);
  EXPECT_FALSE(FileOrWalHolds(chromium_, kDeletedMarker));
}

}  // namespace
}  // namespace lumenor
