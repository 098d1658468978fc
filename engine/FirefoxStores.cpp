#include "engine/FirefoxStores.h"

#include "base/UniqueHandle.h"
#include "browserdb/BrowserDatabase.h"
#include "browserdb/CookieDatabase.h"
#include "browserdb/FirefoxHistory.h"
#include "catalogue/ItemIds.h"
#include "engine/FilePath.h"
#include "engine/NeverDelete.h"

#include <windows.h>

#include <array>
#include <cstring>

namespace lumenor {

namespace {

bool SameText(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() && CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                                      static_cast<int>(b.size()), TRUE) == CSTR_EQUAL;
}

// The first bytes of every SQLite database file, its terminating zero included.
constexpr char kSqliteHeader[] = "SQLite format 3";

enum class FileKind { kMissing, kEmpty, kNotADatabase, kDatabase, kLocked, kUnreadable, kLink };

// What the file is, by its first bytes: a file without SQLite's header is no database, and
// SQLite would take an empty one for an empty database.
FileKind KindOfFile(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(ForFileApi(path).c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return FileKind::kMissing;
  if (IsReparsePoint(attributes)) return FileKind::kLink;
  const UniqueHandle file(CreateFileW(ForFileApi(path).c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  if (!file) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return FileKind::kMissing;
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION ? FileKind::kLocked
                                                                             : FileKind::kUnreadable;
  }
  std::array<char, sizeof kSqliteHeader> header{};
  DWORD read = 0;
  if (ReadFile(file.Get(), header.data(), static_cast<DWORD>(header.size()), &read, nullptr) == FALSE) {
    return FileKind::kUnreadable;
  }
  if (read == 0) return FileKind::kEmpty;
  if (read < header.size() || std::memcmp(header.data(), kSqliteHeader, header.size()) != 0) {
    return FileKind::kNotADatabase;
  }
  return FileKind::kDatabase;
}

// Whether a places database holds a bookmark of an address: nothing when it cannot be
// read, with the failure in `failure`.
std::optional<bool> HoldsBookmarks(const std::wstring& path, StopToken stop, DatabaseFailure& failure) {
  BrowserDatabase database(path, BrowserDatabase::Purpose::kScan, stop);
  if (database.Missing()) return false;
  if (!database.Usable()) {
    failure = database.Failure();
    return std::nullopt;
  }
  if (!database.TableWith("moz_bookmarks", {"fk"})) {
    if (!database.Usable()) {
      failure = database.Failure();
      return std::nullopt;
    }
    return false;  // a database of another kind: no bookmarks of Firefox's in it
  }
  uint64_t bookmarks = 0;
  uint64_t unused = 0;
  if (!database.QueryPair("SELECT count(*), 0 FROM moz_bookmarks WHERE fk IS NOT NULL", bookmarks, unused)) {
    failure = database.Failure() != DatabaseFailure::kNone ? database.Failure() : DatabaseFailure::kCorrupt;
    return std::nullopt;
  }
  return bookmarks > 0;
}

}  // namespace

std::optional<FirefoxStore> FirefoxStoreOf(unsigned itemId, std::wstring_view fileName) {
  if (itemId == kItemFirefoxBrowsingHistory && SameText(fileName, L"places.sqlite")) return FirefoxStore::kPlaces;
  if (itemId == kItemFirefoxCookies && SameText(fileName, L"cookies.sqlite")) return FirefoxStore::kCookies;
  return std::nullopt;
}

std::optional<FirefoxStore> FirefoxStoreJournalOf(unsigned itemId, std::wstring_view fileName) {
  const std::wstring_view database = SqliteDatabaseOf(fileName);
  return database.empty() ? std::nullopt : FirefoxStoreOf(itemId, database);
}

StoreUse DecideFirefoxStore(FirefoxStore store, const std::wstring& path, const CookieKeepList& keep, StopToken stop) {
  if (store == FirefoxStore::kCookies) {
    // While a domain is kept the file is edited, never deleted: a file the cookie action
    // cannot read is reported by it and stays.
    return {keep.Empty() ? StoreUse::Way::kWholeFile : StoreUse::Way::kRows, DatabaseFailure::kNone};
  }
  switch (KindOfFile(path)) {
    case FileKind::kMissing:
    case FileKind::kEmpty:
    case FileKind::kNotADatabase:
      return {StoreUse::Way::kWholeFile, DatabaseFailure::kNone};
    case FileKind::kLocked:
      return {StoreUse::Way::kKept, DatabaseFailure::kLocked};
    case FileKind::kUnreadable:
      return {StoreUse::Way::kKept, DatabaseFailure::kCannotOpen};
    case FileKind::kLink:
      return {StoreUse::Way::kKept, DatabaseFailure::kLink};
    case FileKind::kDatabase:
      break;
  }
  DatabaseFailure failure = DatabaseFailure::kNone;
  const std::optional<bool> bookmarks = HoldsBookmarks(path, stop, failure);
  if (!bookmarks) return {StoreUse::Way::kKept, failure};
  return {*bookmarks ? StoreUse::Way::kRows : StoreUse::Way::kWholeFile, DatabaseFailure::kNone};
}

DatabaseScan ScanFirefoxStore(FirefoxStore store, const std::wstring& path, const CookieKeepList& keep,
                              StopToken stop) {
  return store == FirefoxStore::kPlaces ? ScanFirefoxHistory(path, stop)
                                        : ScanCookies(path, CookieStore::kFirefox, keep, stop);
}

DatabaseErase EraseFirefoxStore(FirefoxStore store, const std::wstring& path, const CookieKeepList& keep) {
  return store == FirefoxStore::kPlaces ? EraseFirefoxHistory(path) : EraseCookies(path, CookieStore::kFirefox, keep);
}

DatabaseContent FirefoxStoreContent(FirefoxStore store) {
  return store == FirefoxStore::kPlaces ? DatabaseContent::kHistory : DatabaseContent::kCookies;
}

}  // namespace lumenor
