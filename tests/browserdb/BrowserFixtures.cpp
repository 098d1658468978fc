#include "tests/browserdb/BrowserFixtures.h"

#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace lumenor::testing {

namespace {

// A WebKit/Chromium time (microseconds since 1601) in 2026.
constexpr int64_t kChromiumTime = 13410000000000000;
// A Firefox time (microseconds since 1970) in 2026.
constexpr int64_t kFirefoxTime = 1780000000000000;

void ExpectDone(const SqliteDatabase& sql, const SqliteStatement& statement, std::string_view what) {
  EXPECT_EQ(statement.Step(), SQLITE_DONE) << what << ": " << sql.ErrorMessage();
}

}  // namespace

FixtureDatabase::FixtureDatabase(const std::wstring& path, std::string_view schema) : sql_(path, SqliteOpen::kCreate) {
  EXPECT_TRUE(sql_.IsOpen()) << sql_.ErrorMessage();
  for (const std::string& statement : SplitLines(schema)) {
    // SQLite makes its own tables (sqlite_sequence, sqlite_stat1) itself.
    if (!statement.empty() && !statement.starts_with("CREATE TABLE sqlite_")) {
      Run(statement);
    }
  }
}

FixtureDatabase::FixtureDatabase(const std::wstring& path) : sql_(path, SqliteOpen::kReadWrite) {
  EXPECT_TRUE(sql_.IsOpen()) << sql_.ErrorMessage();
}

void FixtureDatabase::Run(std::string_view sql) const {
  EXPECT_EQ(sql_.Execute(sql), SQLITE_OK) << sql << ": " << sql_.ErrorMessage();
}

int64_t FixtureDatabase::Number(std::string_view sql) const {
  const SqliteStatement query(sql_, sql);
  EXPECT_EQ(query.Step(), SQLITE_ROW) << sql << ": " << sql_.ErrorMessage();
  return query.ColumnInt64(0);
}

std::vector<std::string> FixtureDatabase::Texts(std::string_view sql) const {
  const SqliteStatement query(sql_, sql);
  std::vector<std::string> texts;
  int result = SQLITE_OK;
  while ((result = query.Step()) == SQLITE_ROW) {
    texts.emplace_back(query.ColumnText(0));
  }
  EXPECT_EQ(result, SQLITE_DONE) << sql << ": " << sql_.ErrorMessage();
  return texts;
}

void FixtureDatabase::KeepWritesInWal() const {
  Run("PRAGMA journal_mode = WAL");
  Run("PRAGMA wal_autocheckpoint = 0");
  EXPECT_EQ(sqlite3_db_config(sql_.Handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr), SQLITE_OK);
}

void FixtureDatabase::AddChromiumCookie(std::string_view host, std::string_view name, std::string_view value) const {
  const SqliteStatement insert(
      sql_,
      "INSERT INTO cookies VALUES (?3, ?1, '', ?2, '', ?4, '/', ?3 + 1000000000, 1, 1, ?3, 1, 1, 1, 0, 2, 443, ?3, "
      "0, 0)");
  insert.BindText(1, host);
  insert.BindText(2, name);
  insert.BindInt64(3, kChromiumTime);
  // Chromium keeps the value encrypted, behind a version prefix.
  insert.BindBlob(4, "v10" + std::string(value));
  ExpectDone(sql_, insert, "cookie");
}

void FixtureDatabase::AddFirefoxCookie(std::string_view host, std::string_view name, std::string_view value) const {
  const SqliteStatement insert(
      sql_,
      "INSERT INTO moz_cookies (originAttributes, name, value, host, path, expiry, lastAccessed,"
      " creationTime, isSecure, isHttpOnly, updateTime) "
      "VALUES ('', ?1, ?2, ?3, '/', 1790000000, ?4, ?4, 1, 0, ?4)");
  insert.BindText(1, name);
  insert.BindText(2, value);
  insert.BindText(3, host);
  insert.BindInt64(4, kFirefoxTime);
  ExpectDone(sql_, insert, "cookie");
}

int64_t FixtureDatabase::AddPlace(std::string_view url, std::string_view host, std::string_view title) const {
  const SqliteStatement origin(
      sql_, "INSERT OR IGNORE INTO moz_origins (prefix, host, frecency) VALUES ('https://', ?1, 100)");
  origin.BindText(1, host);
  ExpectDone(sql_, origin, "origin");
  const SqliteStatement place(sql_,
                              "INSERT INTO moz_places (url, title, rev_host, frecency, guid, url_hash, origin_id) "
                              "VALUES (?1, ?2, ?4, 100, hex(randomblob(6)), 0, "
                              "(SELECT id FROM moz_origins WHERE host = ?3))");
  place.BindText(1, url);
  place.BindText(2, title);
  place.BindText(3, host);
  // Firefox keeps the host backwards, ending in a dot, for its index.
  place.BindText(4, std::string(host.rbegin(), host.rend()) + ".");
  ExpectDone(sql_, place, "place");
  return Number("SELECT last_insert_rowid()");
}

void FixtureDatabase::AddVisit(int64_t place, int64_t when) const {
  const SqliteStatement visit(sql_,
                              "INSERT INTO moz_historyvisits (from_visit, place_id, visit_date, visit_type, session) "
                              "VALUES (0, ?1, ?2, 1, 0)");
  visit.BindInt64(1, place);
  visit.BindInt64(2, kFirefoxTime + when);
  ExpectDone(sql_, visit, "visit");
  const SqliteStatement count(sql_,
                              "UPDATE moz_places SET visit_count = visit_count + 1, last_visit_date = ?2, typed = 1 "
                              "WHERE id = ?1");
  count.BindInt64(1, place);
  count.BindInt64(2, kFirefoxTime + when);
  ExpectDone(sql_, count, "visit count");
}

void FixtureDatabase::AddBookmark(int64_t place, std::string_view title) const {
  const SqliteStatement bookmark(
      sql_,
      "INSERT INTO moz_bookmarks (type, fk, parent, position, title, dateAdded, lastModified,"
      " guid) VALUES (1, ?1, 1, 0, ?2, ?3, ?3, hex(randomblob(6)))");
  bookmark.BindInt64(1, place);
  bookmark.BindText(2, title);
  bookmark.BindInt64(3, kFirefoxTime);
  ExpectDone(sql_, bookmark, "bookmark");
  Run("UPDATE moz_places SET foreign_count = foreign_count + 1 WHERE id = " + std::to_string(place));
}

void FixtureDatabase::AddFormEntry(std::string_view name, std::string_view value) const {
  const SqliteStatement entry(sql_,
                              "INSERT INTO autocomplete (name, label, label_normalized, value, value_lower, "
                              "date_created, date_last_used, count) VALUES (?1, '', '', ?2, lower(?2), 1, 2, 3)");
  entry.BindText(1, name);
  entry.BindText(2, value);
  ExpectDone(sql_, entry, "form entry");
}

void FixtureDatabase::AddSearchEngine(std::string_view keyword, std::string_view url) const {
  const SqliteStatement engine(sql_,
                               "INSERT INTO keywords (short_name, keyword, favicon_url, url) VALUES (?1, ?1, '', ?2)");
  engine.BindText(1, keyword);
  engine.BindText(2, url);
  ExpectDone(sql_, engine, "search engine");
}

bool FileOrWalHolds(const std::wstring& path, std::string_view text) {
  return ReadFileBytes(path).find(text) != std::string::npos ||
         ReadFileBytes(path + L"-wal").find(text) != std::string::npos;
}

}  // namespace lumenor::testing
