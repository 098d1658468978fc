// Databases an action must not change: held by another program, damaged, of a schema we
// do not know, a link. Each is reported with its reason and left byte for byte as it was;
// a missing file is simply nothing to do.
#include "base/UniqueHandle.h"
#include "browserdb/BrowserSchemas.h"
#include "browserdb/ChromiumFormData.h"
#include "browserdb/CookieDatabase.h"
#include "browserdb/FirefoxHistory.h"
#include "tests/browserdb/BrowserFixtures.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::FixtureDatabase;
using testing::ReadFileBytes;
using testing::TempFolder;
using testing::WriteFileBytes;

// Longer than the busy timeout, far shorter than SQLite's own retries on a shared file.
constexpr ULONGLONG kPromptAnswerMilliseconds = 2000;

class UntouchedDatabase : public ::testing::Test {
 protected:
  void MakeCookies(int count = 6, bool wal = false) const {
    FixtureDatabase database(cookies_, testing::kChromiumCookiesSchema);
    if (wal) {
      database.Run("PRAGMA journal_mode = WAL");
    }
    database.Run("BEGIN");
    for (int i = 0; i < count; ++i) {
      database.AddChromiumCookie(".site" + std::to_string(i) + ".net", "id", std::string(100, 'v'));
    }
    database.Run("COMMIT");
  }

  void Remember() {
    before_ = ReadFileBytes(cookies_);
    walBefore_ = ReadFileBytes(cookies_ + L"-wal");
    ASSERT_FALSE(before_.empty());
  }

  // The scan and the erase both report `failure`, promptly, and the file is as it was.
  void ExpectRefused(DatabaseFailure failure, std::wstring_view reason) const {
    const ULONGLONG start = GetTickCount64();
    const DatabaseScan scan = ScanCookies(cookies_, CookieStore::kChromium, CookieKeepList());
    const DatabaseErase erase = EraseCookies(cookies_, CookieStore::kChromium, CookieKeepList());
    EXPECT_LT(GetTickCount64() - start, 2 * kPromptAnswerMilliseconds);
    EXPECT_EQ(scan.failure, failure);
    EXPECT_TRUE(scan.lines.empty());
    EXPECT_EQ(erase.failure, failure);
    EXPECT_EQ(erase.rowsDeleted, 0u);
    EXPECT_EQ(FailureReason(erase.failure), reason);
  }

  void ExpectUnchanged() const {
    EXPECT_EQ(ReadFileBytes(cookies_), before_);
    EXPECT_EQ(ReadFileBytes(cookies_ + L"-wal"), walBefore_);
    EXPECT_FALSE(FileExists(cookies_ + L"-journal"));
  }

  TempFolder folder_;
  std::wstring cookies_ = folder_ / L"Cookies";
  std::string before_;
  std::string walBefore_;
};

TEST_F(UntouchedDatabase, AFileAnotherProgramHoldsWithoutSharingIsLocked) {
  MakeCookies();
  Remember();
  {
    const UniqueHandle held(
        CreateFileW(cookies_.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(held);
    ExpectRefused(DatabaseFailure::kLocked, L"locked");
  }
  ExpectUnchanged();
}

TEST_F(UntouchedDatabase, ADatabaseInAnotherConnectionsExclusiveTransactionIsLocked) {
  MakeCookies();
  Remember();
  {
    const FixtureDatabase browser(cookies_);
    browser.Run("BEGIN EXCLUSIVE");
    ExpectRefused(DatabaseFailure::kLocked, L"locked");
    browser.Run("ROLLBACK");
  }
  ExpectUnchanged();
}

TEST_F(UntouchedDatabase, AWalDatabaseAnotherConnectionWritesIsLockedForTheErase) {
  MakeCookies(6, true);
  const FixtureDatabase browser(cookies_);
  browser.Run("BEGIN EXCLUSIVE");
  Remember();
  const DatabaseErase erase = EraseCookies(cookies_, CookieStore::kChromium, CookieKeepList());
  EXPECT_EQ(erase.failure, DatabaseFailure::kLocked);
  EXPECT_EQ(erase.rowsDeleted, 0u);
  ExpectUnchanged();
  browser.Run("ROLLBACK");
  EXPECT_EQ(browser.Number("SELECT count(*) FROM cookies"), 6);
}

TEST_F(UntouchedDatabase, AFileOfGarbageIsCorrupt) {
  std::string garbage;
  while (garbage.size() < 16384) {
    garbage += "These bytes are no database at all. ";
  }
  ASSERT_TRUE(WriteFileBytes(cookies_, garbage));
  Remember();
  ExpectRefused(DatabaseFailure::kCorrupt, L"corrupt");
  ExpectUnchanged();
}

TEST_F(UntouchedDatabase, ATruncatedDatabaseIsCorrupt) {
  MakeCookies(400);
  const std::string whole = ReadFileBytes(cookies_);
  ASSERT_GT(whole.size(), 16u * 4096);
  ASSERT_TRUE(WriteFileBytes(cookies_, std::string_view(whole).substr(0, whole.size() / 2)));
  Remember();
  ExpectRefused(DatabaseFailure::kCorrupt, L"corrupt");
  ExpectUnchanged();
}

TEST_F(UntouchedDatabase, ADatabaseWithoutTheTableIsOfAnUnknownSchema) {
  { FixtureDatabase database(cookies_, testing::kFirefoxCookiesSchema); }
  Remember();
  ExpectRefused(DatabaseFailure::kUnknownSchema, L"unknown schema");
  ExpectUnchanged();
}

TEST_F(UntouchedDatabase, ATableWithoutTheHostColumnIsOfAnUnknownSchema) {
  {
    FixtureDatabase database(cookies_, "CREATE TABLE cookies (host TEXT, name TEXT, value TEXT);");
    database.Run("INSERT INTO cookies VALUES ('.tracker.net', 'id', '1')");
  }
  Remember();
  ExpectRefused(DatabaseFailure::kUnknownSchema, L"unknown schema");
  ExpectUnchanged();
}

TEST_F(UntouchedDatabase, HistoryWithoutBookmarksIsOfAnUnknownSchemaRatherThanLosingThem) {
  const std::wstring places = folder_ / L"places.sqlite";
  {
    FixtureDatabase database(places, testing::kFirefoxPlacesSchema);
    database.AddVisit(database.AddPlace("https://a.example/", "a.example", "A"), 1);
    database.Run("DROP TABLE moz_bookmarks");
  }
  const std::string before = ReadFileBytes(places);
  EXPECT_EQ(ScanFirefoxHistory(places).failure, DatabaseFailure::kUnknownSchema);
  EXPECT_EQ(EraseFirefoxHistory(places).failure, DatabaseFailure::kUnknownSchema);
  EXPECT_EQ(ReadFileBytes(places), before);
}

TEST_F(UntouchedDatabase, AStopRequestedBeforehandChangesNothing) {
  MakeCookies();
  Remember();
  StopSignal signal;
  signal.Request();
  const DatabaseErase erase = EraseCookies(cookies_, CookieStore::kChromium, CookieKeepList(), StopToken(&signal));
  EXPECT_EQ(erase.failure, DatabaseFailure::kStopped);
  EXPECT_EQ(FailureReason(erase.failure), L"stopped");
  ExpectUnchanged();
}

TEST(MissingDatabase, IsNothingToDoAndIsNeverCreated) {
  const TempFolder folder;
  for (const std::wstring& missing : {folder / L"Cookies", folder / L"no such folder\\Cookies"}) {
    const DatabaseScan scan = ScanCookies(missing, CookieStore::kChromium, CookieKeepList());
    EXPECT_EQ(scan.failure, DatabaseFailure::kNone);
    EXPECT_TRUE(scan.lines.empty());
    const DatabaseErase erase = EraseCookies(missing, CookieStore::kChromium, CookieKeepList());
    EXPECT_EQ(erase.failure, DatabaseFailure::kNone);
    EXPECT_EQ(erase.rowsDeleted, 0u);
    EXPECT_EQ(EraseFirefoxHistory(missing).failure, DatabaseFailure::kNone);
    EXPECT_EQ(EraseChromiumFormData(missing).failure, DatabaseFailure::kNone);
    EXPECT_FALSE(FileExists(missing));
  }
}

// The harness lays out E:\link-fixtures\files\file-link.txt, a link to a canary file.
TEST(LinkedDatabase, IsNeverFollowed) {
  const std::wstring link = L"E:\\link-fixtures\\files\\file-link.txt";
  const std::wstring canary = L"E:\\link-fixtures\\targets\\file\\canary.txt";
  if (!FileExists(link)) {
    GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
  }
  const std::string before = ReadFileBytes(canary);
  EXPECT_EQ(ScanCookies(link, CookieStore::kChromium, CookieKeepList()).failure, DatabaseFailure::kLink);
  const DatabaseErase erase = EraseCookies(link, CookieStore::kChromium, CookieKeepList());
  EXPECT_EQ(erase.failure, DatabaseFailure::kLink);
  EXPECT_EQ(FailureReason(erase.failure), L"link");
  EXPECT_EQ(ReadFileBytes(canary), before);
  EXPECT_FALSE(FileExists(link + L"-journal"));
}

}  // namespace
}  // namespace lumenor
