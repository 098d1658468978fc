// A thin owner of one SQLite connection and of its prepared statements. Results are
// SQLite's own (extended) result codes; what a code means is for the caller to decide.
// Paths are taken as UTF-16 and handed to SQLite whole, in their "\\?\" form, so long
// paths and any characters work and nothing is ever shortened.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace lumenor {

enum class SqliteOpen { kReadOnly, kReadWrite, kCreate };

// `path` in the "\\?\" form SQLite is given: drive and share paths made absolute-canonical
// ("/", "." and ".." resolved) and prefixed; an existing "\\?\" path as it is. Empty for a
// path that names no file by itself: relative, drive-relative or a device ("\\.\").
std::wstring VerbatimPath(std::wstring_view path);

class SqliteDatabase {
 public:
  // Opens the file at `path` (see VerbatimPath); only kCreate makes a missing file. A
  // path refused by VerbatimPath, or too long for SQLite, fails with SQLITE_CANTOPEN.
  SqliteDatabase(std::wstring_view path, SqliteOpen mode);
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;
  ~SqliteDatabase();

  bool IsOpen() const { return connection_ != nullptr; }
  // SQLITE_OK, or why the file could not be opened.
  int OpenResult() const { return openResult_; }
  sqlite3* Handle() const { return connection_; }

  // Runs every statement in `sql`; SQLITE_OK, or the result of the first that failed.
  int Execute(std::string_view sql) const;
  // Rows changed by the last INSERT, UPDATE or DELETE.
  int64_t Changes() const;
  void SetBusyTimeout(int milliseconds) const;
  // SQLite's text for the last failure, for diagnostics.
  std::string ErrorMessage() const;

 private:
  sqlite3* connection_ = nullptr;
  int openResult_ = 0;
};

class SqliteStatement {
 public:
  SqliteStatement(const SqliteDatabase& database, std::string_view sql);
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;
  ~SqliteStatement();

  // SQLITE_OK when the statement is ready to run.
  int PrepareResult() const { return prepareResult_; }

  int BindText(int index, std::string_view text) const;
  int BindInt64(int index, int64_t value) const;
  int BindBlob(int index, std::string_view bytes) const;
  // SQLITE_ROW while rows come, SQLITE_DONE at the end, or an error.
  int Step() const;
  // Ready to run again, with the same bindings.
  int Reset() const;

  int64_t ColumnInt64(int column) const;
  // The column's text (UTF-8); valid until the next Step or Reset.
  std::string_view ColumnText(int column) const;
  bool ColumnIsNull(int column) const;

 private:
  sqlite3_stmt* statement_ = nullptr;
  int prepareResult_ = 0;
};

}  // namespace lumenor
