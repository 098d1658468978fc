// What a scan or an erase of one browser database found or did. A database that fails is
// never changed: every erase runs in one transaction, and nothing is written before the
// file has shown it is a database of the kind expected, not held by another program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

enum class DatabaseFailure {
  kNone,
  kLocked,          // another program (the browser) holds the file or its lock
  kCorrupt,         // not a database, or a damaged one
  kUnknownSchema,   // the table or a column the action needs is missing
  kCannotOpen,      // no access, not a file, or a path SQLite cannot take
  kLink,            // the file (or its journal) is a link: never followed
  kReadWriteError,  // the disk failed or filled while reading or writing
  kStopped,         // the stop request came first
};

// The word shown for a failure ("locked", "corrupt", "unknown schema", ...); empty for kNone.
std::wstring_view FailureReason(DatabaseFailure failure);

// One line of a scan: what one erase would delete.
struct DatabaseLine {
  std::wstring label;  // cookies: the host; history and form data: the database file
  uint64_t rows = 0;   // cookies, visits or form entries
  // What the rows hold: the bytes of their text and blob values, 8 for each number (a
  // little more than SQLite stores for most numbers, far less than the pages they fill).
  uint64_t bytes = 0;
  uint64_t places = 0;  // Firefox history: the addresses (places) deleted with the visits
};

struct DatabaseScan {
  DatabaseFailure failure = DatabaseFailure::kNone;
  std::vector<DatabaseLine> lines;  // none when the file is missing or holds nothing to delete
};

// What a database's scan lines count, for the words a row of the results shows.
enum class DatabaseContent { kCookies, kHistory, kFormData };

// A scan line as a row of the results: "example.org (3 cookies)", "12 visits, 4 addresses",
// "7 form entries".
std::wstring DatabaseLineText(DatabaseContent content, const DatabaseLine& line);

struct DatabaseErase {
  DatabaseFailure failure = DatabaseFailure::kNone;
  // Every row deleted, in every table. Rows can be deleted and the erase still fail: when
  // the file could not be compacted afterwards (VACUUM, or the WAL checkpoint, met a lock).
  uint64_t rowsDeleted = 0;
};

}  // namespace lumenor
