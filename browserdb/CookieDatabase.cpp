#include "browserdb/CookieDatabase.h"

#include "base/TextEncoding.h"
#include "browserdb/BrowserDatabase.h"

#include <sqlite3.h>

namespace lumenor {

namespace {

struct CookieTable {
  const char* table;
  const char* hostColumn;
};

CookieTable TableOf(CookieStore store) {
  if (store == CookieStore::kFirefox) {
    return {"moz_cookies", "host"};
  }
  return {"cookies", "host_key"};
}

// The keep-list as an SQL function of the erase's connection, so that the erase chooses
// its rows by the very test the scan applies.
constexpr char kKeepsHostFunction[] = "lumenor_keeps_host";

void KeepsHost(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto* keep = static_cast<const CookieKeepList*>(sqlite3_user_data(context));
  const unsigned char* host = sqlite3_value_text(arguments[0]);
  const auto length = static_cast<size_t>(sqlite3_value_bytes(arguments[0]));
  const bool kept = host != nullptr && keep->KeepsUtf8({reinterpret_cast<const char*>(host), length});
  sqlite3_result_int(context, kept ? 1 : 0);
}

}  // namespace

DatabaseScan ScanCookies(const std::wstring& file, CookieStore store, const CookieKeepList& keep, StopToken stop) {
  BrowserDatabase database(file, BrowserDatabase::Purpose::kScan, stop);
  const CookieTable cookies = TableOf(store);
  const std::optional<std::vector<std::string>> columns = database.TableWith(cookies.table, {cookies.hostColumn});
  if (!columns) {
    return {database.Failure(), {}};
  }
  const std::string host = QuotedName(cookies.hostColumn);
  const SqliteStatement query(database.Sql(), "SELECT " + host + ", count(*), sum(" + RowBytesExpression(*columns) +
                                                  ") FROM " + QuotedName(cookies.table) + " GROUP BY " + host);
  if (!database.Succeeded(query.PrepareResult())) {
    return {database.Failure(), {}};
  }
  DatabaseScan scan;
  int result = SQLITE_OK;
  while ((result = query.Step()) == SQLITE_ROW) {
    const std::string_view hostName = query.ColumnText(0);
    if (!keep.KeepsUtf8(hostName)) {
      scan.lines.push_back({FromUtf8(hostName), static_cast<uint64_t>(query.ColumnInt64(1)),
                            static_cast<uint64_t>(query.ColumnInt64(2))});
    }
  }
  if (!database.Succeeded(result)) {
    return {database.Failure(), {}};
  }
  return scan;
}

DatabaseErase EraseCookies(const std::wstring& file, CookieStore store, const CookieKeepList& keep, StopToken stop) {
  BrowserDatabase database(file, BrowserDatabase::Purpose::kErase, stop);
  const CookieTable cookies = TableOf(store);
  if (database.TableWith(cookies.table, {cookies.hostColumn}) && database.BeginErase()) {
    const std::string deleteAll = "DELETE FROM " + QuotedName(cookies.table);
    // A failing statement is kept by the database, and FinishErase then rolls back.
    if (keep.Empty()) {
      (void)database.Delete(deleteAll);
    } else if (database.Succeeded(sqlite3_create_function_v2(database.Sql().Handle(), kKeepsHostFunction, 1,
                                                             SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY,
                                                             const_cast<CookieKeepList*>(&keep), &KeepsHost, nullptr,
                                                             nullptr, nullptr))) {
      (void)database.Delete(deleteAll + " WHERE NOT " + kKeepsHostFunction + "(" + QuotedName(cookies.hostColumn) +
                            ")");
    }
  }
  return database.FinishErase();
}

}  // namespace lumenor
