// Speed of the browser database erases against the plainest SQL statements doing the same
// work on a copy of the same file, in the same run: a Chromium cookie database of 100,000
// cookies of which 1,000 are kept, and a Firefox history (in WAL mode, as Firefox keeps it)
// of 100,000 visits to 20,000 places, 500 of them bookmarked. Prints times and ratios.
#include "browserdb/BrowserSchemas.h"
#include "browserdb/CookieDatabase.h"
#include "browserdb/FirefoxHistory.h"

#include <sqlite3.h>
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int kCookies = 100000;
constexpr int kKeptDomains = 50;
constexpr int kKeptPerDomain = 20;  // 1,000 kept cookies, in the three spellings of a host
constexpr int kCookiesPerHost = 10;
constexpr int kVisits = 100000;
constexpr int kPlaces = 20000;
constexpr int kBookmarked = 500;
constexpr int kRounds = 5;

const std::wstring kFolder = L"C:\\lumenor-bench\\browserdb\\";

std::string Utf8(const std::wstring& text) {
  std::string result;
  for (const wchar_t c : text) result += static_cast<char>(c);  // the bench's paths are ASCII
  return result;
}

sqlite3* Open(const std::wstring& path) {
  sqlite3* connection = nullptr;
  sqlite3_open_v2(Utf8(path).c_str(), &connection, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  return connection;
}

void Run(sqlite3* connection, const std::string& sql) {
  char* error = nullptr;
  if (sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
    std::printf("SQL failed: %s\n  %.200s\n", error != nullptr ? error : "?", sql.c_str());
    sqlite3_free(error);
  }
}

void CreateSchema(sqlite3* connection, std::string_view schema) {
  while (!schema.empty()) {
    const size_t end = schema.find('\n');
    const std::string statement(schema.substr(0, end));
    if (!statement.empty() && statement.rfind("CREATE TABLE sqlite_", 0) != 0) Run(connection, statement);
    if (end == std::string_view::npos) break;
    schema.remove_prefix(end + 1);
  }
}

std::string KeptDomain(int index) { return "keep" + std::to_string(index) + ".example"; }

void SeedCookies(const std::wstring& path) {
  DeleteFileW(path.c_str());
  sqlite3* connection = Open(path);
  CreateSchema(connection, lumenor::testing::kChromiumCookiesSchema);
  Run(connection, "BEGIN");
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(connection,
                     "INSERT INTO cookies VALUES (13410000000000000, ?1, '', ?2, '', ?3, '/', 13420000000000000, 1, 1, "
                     "13410000000000000, 1, 1, 1, 0, 2, 443, 13410000000000000, 0, 0)",
                     -1, &insert, nullptr);
  const std::string value = "v10" + std::string(60, 'e');
  const auto add = [&](const std::string& host, int number) {
    const std::string name = "cookie" + std::to_string(number);
    sqlite3_bind_text(insert, 1, host.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(insert, 2, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_blob(insert, 3, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
    sqlite3_step(insert);
    sqlite3_reset(insert);
  };
  const char* spellings[] = {"", ".", "www."};
  for (int d = 0; d < kKeptDomains; ++d) {
    for (int c = 0; c < kKeptPerDomain; ++c) add(spellings[c % 3] + KeptDomain(d), c);
  }
  for (int c = 0; c < kCookies - kKeptDomains * kKeptPerDomain; ++c) {
    // Every tenth host is a look-alike of a kept domain, which must go.
    const int host = c / kCookiesPerHost;
    add(host % 10 == 0 ? "bad" + KeptDomain(host % kKeptDomains) + std::to_string(host)
                       : ".site" + std::to_string(host) + ".net",
        c);
  }
  sqlite3_finalize(insert);
  Run(connection, "COMMIT");
  sqlite3_close(connection);
}

void SeedHistory(const std::wstring& path) {
  DeleteFileW(path.c_str());
  DeleteFileW((path + L"-wal").c_str());
  sqlite3* connection = Open(path);
  CreateSchema(connection, lumenor::testing::kFirefoxPlacesSchema);
  Run(connection, "PRAGMA journal_mode = WAL");
  Run(connection, "BEGIN");
  Run(connection,
      "INSERT INTO moz_bookmarks (type, fk, parent, position, title, guid) VALUES (2, NULL, 0, 0, '', 'root________')");
  sqlite3_stmt* origin = nullptr;
  sqlite3_stmt* place = nullptr;
  sqlite3_stmt* visit = nullptr;
  sqlite3_prepare_v2(connection,
                     "INSERT OR IGNORE INTO moz_origins (prefix, host, frecency) VALUES ('https://', ?1, 100)", -1,
                     &origin, nullptr);
  sqlite3_prepare_v2(connection,
                     "INSERT INTO moz_places (url, title, rev_host, visit_count, frecency, last_visit_date, guid, "
                     "url_hash, origin_id) VALUES (?1, ?2, ?3, 5, 100, 1780000000000000, hex(randomblob(6)), 0, "
                     "(SELECT id FROM moz_origins WHERE host = ?4))",
                     -1, &place, nullptr);
  sqlite3_prepare_v2(connection,
                     "INSERT INTO moz_historyvisits (from_visit, place_id, visit_date, visit_type, session) "
                     "VALUES (0, ?1, ?2, 1, 0)",
                     -1, &visit, nullptr);
  for (int p = 1; p <= kPlaces; ++p) {
    const std::string host = "site" + std::to_string(p % 2000) + ".example";
    const std::string url = "https://" + host + "/articles/" + std::to_string(p) + "/a-page-with-a-title";
    const std::string title = "A page someone read, number " + std::to_string(p);
    sqlite3_bind_text(origin, 1, host.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(origin);
    sqlite3_reset(origin);
    sqlite3_bind_text(place, 1, url.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(place, 2, title.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(place, 3, std::string(host.rbegin(), host.rend()).c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(place, 4, host.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(place);
    sqlite3_reset(place);
  }
  for (int v = 0; v < kVisits; ++v) {
    sqlite3_bind_int64(visit, 1, 1 + v % kPlaces);
    sqlite3_bind_int64(visit, 2, 1780000000000000 + v);
    sqlite3_step(visit);
    sqlite3_reset(visit);
  }
  sqlite3_finalize(origin);
  sqlite3_finalize(place);
  sqlite3_finalize(visit);
  for (int b = 0; b < kBookmarked; ++b) {
    Run(connection, "INSERT INTO moz_bookmarks (type, fk, parent, position, title, guid) VALUES (1, " +
                        std::to_string(1 + b * (kPlaces / kBookmarked)) + ", 1, " + std::to_string(b) +
                        ", 'Bookmark', hex(randomblob(6)))");
  }
  Run(connection, "INSERT INTO moz_inputhistory SELECT id, 'site', 1 FROM moz_places WHERE id % 100 = 0");
  Run(connection, "COMMIT");
  sqlite3_close(connection);
}

bool Copy(const std::wstring& from, const std::wstring& to) {
  DeleteFileW((to + L"-wal").c_str());
  DeleteFileW((to + L"-shm").c_str());
  return CopyFileW(from.c_str(), to.c_str(), FALSE) != FALSE;
}

// The plainest SQL that does the cookie erase's work: the kept domains in a table, every
// other cookie deleted, the file rewritten.
void PlainCookieErase(const std::wstring& path) {
  sqlite3* connection = Open(path);
  Run(connection, "CREATE TEMP TABLE keep (domain TEXT PRIMARY KEY)");
  for (int d = 0; d < kKeptDomains; ++d) Run(connection, "INSERT INTO keep VALUES ('" + KeptDomain(d) + "')");
  Run(connection,
      "DELETE FROM cookies WHERE NOT EXISTS (SELECT 1 FROM keep WHERE lower(host_key) = domain OR "
      "substr(lower(host_key), -length(domain) - 1) = '.' || domain)");
  Run(connection, "VACUUM");
  sqlite3_close(connection);
}

// The plainest SQL that does the history erase's work on this schema, without a test of
// which tables are there.
void PlainHistoryErase(const std::wstring& path) {
  sqlite3* connection = Open(path);
  Run(connection,
      "BEGIN;"
      "DELETE FROM moz_historyvisits_extra; DELETE FROM moz_inputhistory; DELETE FROM moz_places_metadata;"
      "DELETE FROM moz_places_metadata_search_queries; DELETE FROM moz_historyvisits;"
      "DELETE FROM moz_places WHERE id NOT IN (SELECT fk FROM moz_bookmarks WHERE fk IS NOT NULL)"
      " AND id NOT IN (SELECT place_id FROM moz_keywords WHERE place_id IS NOT NULL);"
      "UPDATE moz_places SET visit_count = 0, last_visit_date = NULL, typed = 0, frecency = -1, recalc_frecency = 1,"
      " alt_frecency = NULL, recalc_alt_frecency = 1 WHERE visit_count <> 0 OR last_visit_date IS NOT NULL;"
      "DELETE FROM moz_places_extra WHERE place_id NOT IN (SELECT id FROM moz_places);"
      "DELETE FROM moz_annos WHERE place_id NOT IN (SELECT id FROM moz_places);"
      "DELETE FROM moz_newtab_shortcuts_interaction WHERE place_id NOT IN (SELECT id FROM moz_places);"
      "DELETE FROM moz_origins WHERE id NOT IN (SELECT origin_id FROM moz_places WHERE origin_id IS NOT NULL);"
      "UPDATE moz_origins SET frecency = 0, recalc_frecency = 1, alt_frecency = NULL, recalc_alt_frecency = 1"
      " WHERE frecency <> 0;"
      "COMMIT; VACUUM; PRAGMA wal_checkpoint(TRUNCATE)");
  sqlite3_close(connection);
}

long long Count(const std::wstring& path, const char* sql) {
  sqlite3* connection = Open(path);
  sqlite3_stmt* query = nullptr;
  long long count = -1;
  if (sqlite3_prepare_v2(connection, sql, -1, &query, nullptr) == SQLITE_OK && sqlite3_step(query) == SQLITE_ROW) {
    count = sqlite3_column_int64(query, 0);
  }
  sqlite3_finalize(query);
  sqlite3_close(connection);
  return count;
}

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void Report(const char* what, double ours, double plain, long long oursLeft, long long plainLeft) {
  std::printf("%-16s ours %7.3f s  plain SQL %7.3f s  ratio %5.2f  (target <= 1.3)  rows left %lld / %lld\n", what,
              ours, plain, ours / plain, oursLeft, plainLeft);
  std::fflush(stdout);
}

}  // namespace

int wmain() {
  CreateDirectoryW(L"C:\\lumenor-bench", nullptr);
  CreateDirectoryW(kFolder.c_str(), nullptr);
  const std::wstring cookies = kFolder + L"Cookies";
  const std::wstring history = kFolder + L"places.sqlite";
  const std::wstring ours = kFolder + L"ours";
  const std::wstring plain = kFolder + L"plain";

  std::printf("seeding %d cookies (%d kept) and %d visits to %d places (%d bookmarked)...\n", kCookies,
              kKeptDomains * kKeptPerDomain, kVisits, kPlaces, kBookmarked);
  std::fflush(stdout);
  SeedCookies(cookies);
  SeedHistory(history);

  lumenor::CookieKeepList keep;
  for (int d = 0; d < kKeptDomains; ++d) {
    const std::string domain = KeptDomain(d);
    keep.Add(std::wstring(domain.begin(), domain.end()));
  }

  // Alternate the two and keep each one's best round, each on a fresh copy.
  double oursCookies = 1e9, plainCookies = 1e9, oursHistory = 1e9, plainHistory = 1e9;
  long long oursCookiesLeft = 0, plainCookiesLeft = 0, oursPlacesLeft = 0, plainPlacesLeft = 0;
  for (int round = 0; round < kRounds; ++round) {
    Copy(cookies, ours);
    Copy(cookies, plain);
    oursCookies = std::min(oursCookies, Seconds([&] {
                             const auto erase = lumenor::EraseCookies(ours, lumenor::CookieStore::kChromium, keep);
                             if (erase.failure != lumenor::DatabaseFailure::kNone) std::printf("cookie erase failed\n");
                           }));
    plainCookies = std::min(plainCookies, Seconds([&] { PlainCookieErase(plain); }));
    oursCookiesLeft = Count(ours, "SELECT count(*) FROM cookies");
    plainCookiesLeft = Count(plain, "SELECT count(*) FROM cookies");
  }
  Report("cookie erase", oursCookies, plainCookies, oursCookiesLeft, plainCookiesLeft);

  for (int round = 0; round < kRounds; ++round) {
    Copy(history, ours);
    Copy(history, plain);
    oursHistory = std::min(oursHistory, Seconds([&] {
                             const auto erase = lumenor::EraseFirefoxHistory(ours);
                             if (erase.failure != lumenor::DatabaseFailure::kNone)
                               std::printf("history erase failed\n");
                           }));
    plainHistory = std::min(plainHistory, Seconds([&] { PlainHistoryErase(plain); }));
    oursPlacesLeft = Count(ours, "SELECT count(*) FROM moz_places");
    plainPlacesLeft = Count(plain, "SELECT count(*) FROM moz_places");
  }
  Report("history erase", oursHistory, plainHistory, oursPlacesLeft, plainPlacesLeft);

  const double scan = Seconds([&] { lumenor::ScanCookies(cookies, lumenor::CookieStore::kChromium, keep); });
  const double historyScan = Seconds([&] { lumenor::ScanFirefoxHistory(history); });
  std::printf("scans            cookies %7.3f s  history %7.3f s\n", scan, historyScan);

  for (const std::wstring& file : {cookies, history, ours, plain}) {
    for (const wchar_t* suffix : {L"", L"-wal", L"-shm", L"-journal"}) DeleteFileW((file + suffix).c_str());
  }
  RemoveDirectoryW(kFolder.c_str());
  return 0;
}
