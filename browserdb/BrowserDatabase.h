// One browser database opened for a scan or an erase: the checks made before SQLite sees
// the file (missing, a link, held open by another program), the failure each SQLite
// result stands for, the tests of its schema, and the steps that begin and end an erase.
// The actions (cookies, history, form data) are written on top of it.
#pragma once

#include "base/StopToken.h"
#include "browserdb/DatabaseResult.h"
#include "browserdb/SqliteDatabase.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// How long a statement waits for another connection's lock before the file counts as
// locked: a browser that runs holds it far longer.
inline constexpr int kBusyTimeoutMilliseconds = 250;

class BrowserDatabase {
 public:
  enum class Purpose { kScan, kErase };

  // A scan opens the file read-only, an erase read-write. The stop request interrupts any
  // statement (an erase's transaction is then rolled back), but never the compaction
  // after a committed erase.
  BrowserDatabase(const std::wstring& file, Purpose purpose, StopToken stop);
  BrowserDatabase(const BrowserDatabase&) = delete;
  BrowserDatabase& operator=(const BrowserDatabase&) = delete;

  // No such file: nothing to scan or erase.
  bool Missing() const { return missing_; }
  DatabaseFailure Failure() const { return failure_; }
  bool Usable() const { return !missing_ && failure_ == DatabaseFailure::kNone; }
  const SqliteDatabase& Sql() const { return *sql_; }

  // Keeps the failure SQLite's `result` stands for (the first one wins); true when none.
  bool Succeeded(int result);

  // The columns of `table`; nothing when the file has no such table or reading failed.
  std::optional<std::vector<std::string>> Columns(std::string_view table);
  // The columns of `table` when it has every one of `required`. Nothing when the file is
  // missing, failed, or lacks the table or one of them: it is then of an unknown schema.
  std::optional<std::vector<std::string>> TableWith(std::string_view table,
                                                    std::initializer_list<std::string_view> required);

  // One row of two numbers from `sql` (a count and a sum, say); false on failure.
  bool QueryPair(const std::string& sql, uint64_t& first, uint64_t& second);

  // Takes the write lock, so that a browser holding the file is found before anything
  // changes, and checks the file's structure.
  bool BeginErase();
  // Runs one statement of the erase; the rows it deletes are counted.
  bool Delete(std::string_view sql);
  bool Update(std::string_view sql);
  // Commits, then rewrites the file without the freed pages (VACUUM) and empties the WAL
  // into it, so no deleted row stays readable in either. After a failure, rolls back.
  DatabaseErase FinishErase();

 private:
  std::optional<SqliteDatabase> sql_;
  StopToken stop_;
  DatabaseFailure failure_ = DatabaseFailure::kNone;
  bool missing_ = false;
  bool changed_ = false;
  uint64_t deleted_ = 0;
};

// An SQL expression for the bytes one row holds in `columns` (see DatabaseLine::bytes).
std::string RowBytesExpression(const std::vector<std::string>& columns);
// `name` as an SQL identifier, quoted.
std::string QuotedName(std::string_view name);
bool HasColumn(const std::vector<std::string>& columns, std::string_view name);

}  // namespace lumenor
