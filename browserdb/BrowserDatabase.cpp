#include "browserdb/BrowserDatabase.h"

#include "base/UniqueHandle.h"

#include <sqlite3.h>
#include <windows.h>

namespace lumenor {

namespace {

// SQLite's virtual-machine steps between two tests of the stop request.
constexpr int kStopTestInterval = 1000;

// The files SQLite writes beside a database: one that is a link would be written through.
constexpr const wchar_t* kCompanionSuffixes[] = {L"-journal", L"-wal", L"-shm"};

DatabaseFailure FailureOf(int result) {
  switch (result & 0xff) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return DatabaseFailure::kNone;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return DatabaseFailure::kLocked;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return DatabaseFailure::kCorrupt;
    case SQLITE_INTERRUPT:
      return DatabaseFailure::kStopped;
    case SQLITE_ERROR:
      // A statement the file's tables do not fit (a view, a changed column, ...).
      return DatabaseFailure::kUnknownSchema;
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
    case SQLITE_READONLY:
    case SQLITE_AUTH:
      return DatabaseFailure::kCannotOpen;
    default:
      return DatabaseFailure::kReadWriteError;
  }
}

bool SameNameIgnoringCase(std::wstring_view left, std::wstring_view right) {
  return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(), static_cast<int>(right.size()),
                              TRUE) == CSTR_EQUAL;
}

bool SameNameIgnoringCase(std::string_view left, std::string_view right) {
  if (left.size() != right.size()) {
    return false;
  }
  for (size_t i = 0; i < left.size(); ++i) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    if (lower(left[i]) != lower(right[i])) {
      return false;
    }
  }
  return true;
}

bool IsMissingError(DWORD error) { return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND; }

// Whether the open `file` is the entry named `entryName` rather than what a link of that
// name leads to. Windows marks a link with the reparse attribute; where a file system
// shows a link as a plain file (Wine), the final path names the target instead.
bool IsTheEntryItself(HANDLE file, std::wstring_view entryName) {
  BY_HANDLE_FILE_INFORMATION information{};
  if (GetFileInformationByHandle(file, &information) == FALSE ||
      (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    return false;
  }
  std::wstring finalPath(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetFinalPathNameByHandleW(file, finalPath.data(), static_cast<DWORD>(finalPath.size()), FILE_NAME_NORMALIZED);
    if (length == 0) {
      return true;  // not told on this file system; the attribute has been checked
    }
    if (length < finalPath.size()) {
      finalPath.resize(length);
      break;
    }
    finalPath.resize(length);
  }
  const size_t slash = finalPath.find_last_of(L'\\');
  return slash != std::wstring::npos && SameNameIgnoringCase(std::wstring_view(finalPath).substr(slash + 1), entryName);
}

// The file as SQLite would find it: missing, or why it must not be opened (a link, a
// folder, a file another program holds without sharing it), or fine.
DatabaseFailure CheckFile(const std::wstring& verbatim, BrowserDatabase::Purpose purpose, bool& missing) {
  missing = false;
  const size_t slash = verbatim.find_last_of(L'\\');
  if (verbatim.empty() || slash == std::wstring::npos || verbatim.find_first_of(L"*?", slash) != std::wstring::npos) {
    return DatabaseFailure::kCannotOpen;
  }
  WIN32_FIND_DATAW entry{};
  const HANDLE search = FindFirstFileExW(verbatim.c_str(), FindExInfoBasic, &entry, FindExSearchNameMatch, nullptr, 0);
  if (search == INVALID_HANDLE_VALUE) {
    const DWORD error = GetLastError();
    missing = IsMissingError(error);
    return missing ? DatabaseFailure::kNone : DatabaseFailure::kCannotOpen;
  }
  (void)FindClose(search);  // closing our own search cannot usefully fail
  if ((entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    return DatabaseFailure::kLink;
  }
  if ((entry.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)) != 0) {
    return DatabaseFailure::kCannotOpen;
  }
  for (const wchar_t* suffix : kCompanionSuffixes) {
    const DWORD attributes = GetFileAttributesW((verbatim + suffix).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
      return DatabaseFailure::kLink;
    }
  }

  // SQLite would wait and retry on a file shared with nobody, then call it unopenable:
  // asking first tells a locked file from one we may not read.
  const DWORD access = GENERIC_READ | (purpose == BrowserDatabase::Purpose::kErase ? GENERIC_WRITE : 0);
  const UniqueHandle file(CreateFileW(verbatim.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
  if (!file) {
    const DWORD error = GetLastError();
    if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION) {
      return DatabaseFailure::kLocked;
    }
    missing = IsMissingError(error);
    return missing ? DatabaseFailure::kNone : DatabaseFailure::kCannotOpen;
  }
  return IsTheEntryItself(file.Get(), entry.cFileName) ? DatabaseFailure::kNone : DatabaseFailure::kLink;
}

int StopRequested(void* token) { return static_cast<const StopToken*>(token)->StopRequested() ? 1 : 0; }

// Files come from other programs: their schema may hold anything. Triggers and views are
// not ours to run, and a schema must not call functions with side effects.
void DistrustSchema(sqlite3* connection) {
  // Each setting only fails for an unknown option, and the file stays usable without it.
  (void)sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  (void)sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  (void)sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
  (void)sqlite3_db_config(connection, SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
}

}  // namespace

BrowserDatabase::BrowserDatabase(const std::wstring& file, Purpose purpose, StopToken stop) : stop_(stop) {
  if (stop_.StopRequested()) {
    failure_ = DatabaseFailure::kStopped;
    return;
  }
  const std::wstring verbatim = VerbatimPath(file);
  failure_ = CheckFile(verbatim, purpose, missing_);
  if (missing_ || failure_ != DatabaseFailure::kNone) {
    return;
  }
  sql_.emplace(verbatim, purpose == Purpose::kErase ? SqliteOpen::kReadWrite : SqliteOpen::kReadOnly);
  if (!Succeeded(sql_->OpenResult())) {
    return;
  }
  sql_->SetBusyTimeout(kBusyTimeoutMilliseconds);
  DistrustSchema(sql_->Handle());
  sqlite3_progress_handler(sql_->Handle(), kStopTestInterval, &StopRequested, &stop_);
}

bool BrowserDatabase::Succeeded(int result) {
  const DatabaseFailure failure = FailureOf(result);
  if (failure_ == DatabaseFailure::kNone) {
    failure_ = failure;
  }
  return failure == DatabaseFailure::kNone;
}

std::optional<std::vector<std::string>> BrowserDatabase::Columns(std::string_view table) {
  if (!Usable()) {
    return std::nullopt;
  }
  const SqliteStatement query(*sql_,
                              "SELECT column.name FROM sqlite_schema AS entry, pragma_table_info(entry.name) AS column "
                              "WHERE entry.type = 'table' AND entry.name = ?1 COLLATE NOCASE");
  if (!Succeeded(query.PrepareResult()) || !Succeeded(query.BindText(1, table))) {
    return std::nullopt;
  }
  std::vector<std::string> columns;
  int result = SQLITE_OK;
  while ((result = query.Step()) == SQLITE_ROW) {
    columns.emplace_back(query.ColumnText(0));
  }
  if (!Succeeded(result) || columns.empty()) {
    return std::nullopt;
  }
  return columns;
}

std::optional<std::vector<std::string>> BrowserDatabase::TableWith(std::string_view table,
                                                                   std::initializer_list<std::string_view> required) {
  if (!Usable()) {
    return std::nullopt;
  }
  std::optional<std::vector<std::string>> columns = Columns(table);
  bool complete = columns.has_value();
  for (const std::string_view column : required) {
    complete = complete && HasColumn(*columns, column);
  }
  if (!complete) {
    if (failure_ == DatabaseFailure::kNone) {
      failure_ = DatabaseFailure::kUnknownSchema;
    }
    return std::nullopt;
  }
  return columns;
}

bool BrowserDatabase::QueryPair(const std::string& sql, uint64_t& first, uint64_t& second) {
  first = second = 0;
  if (!Usable()) {
    return false;
  }
  const SqliteStatement query(*sql_, sql);
  if (!Succeeded(query.PrepareResult())) {
    return false;
  }
  const int result = query.Step();
  if (result == SQLITE_ROW) {
    first = static_cast<uint64_t>(query.ColumnInt64(0));
    second = static_cast<uint64_t>(query.ColumnInt64(1));
    return true;
  }
  return Succeeded(result == SQLITE_DONE ? SQLITE_OK : result);
}

bool BrowserDatabase::BeginErase() {
  // The check below reads every page; with room to keep them (32 MiB holds most browser
  // databases), the deletes and the VACUUM after them find the pages in memory.
  if (!Usable() || !Succeeded(sql_->Execute("PRAGMA cache_size = -32768; BEGIN IMMEDIATE"))) {
    return false;
  }
  // A damaged file is left as it is: deleting from it could lose more than the rows.
  const SqliteStatement check(*sql_, "PRAGMA quick_check(1)");
  if (!Succeeded(check.PrepareResult())) {
    return false;
  }
  const int result = check.Step();
  if (result == SQLITE_ROW && check.ColumnText(0) == "ok") {
    return true;
  }
  if (Succeeded(result)) {
    failure_ = DatabaseFailure::kCorrupt;
  }
  return false;
}

bool BrowserDatabase::Delete(std::string_view sql) {
  if (!Usable() || !Succeeded(sql_->Execute(sql))) {
    return false;
  }
  const int64_t changes = sql_->Changes();
  deleted_ += static_cast<uint64_t>(changes);
  changed_ = changed_ || changes > 0;
  return true;
}

bool BrowserDatabase::Update(std::string_view sql) {
  if (!Usable() || !Succeeded(sql_->Execute(sql))) {
    return false;
  }
  changed_ = changed_ || sql_->Changes() > 0;
  return true;
}

DatabaseErase BrowserDatabase::FinishErase() {
  if (missing_) {
    return {};
  }
  if (failure_ != DatabaseFailure::kNone || !Succeeded(sql_->Execute("COMMIT"))) {
    if (sql_.has_value() && sql_->IsOpen() && sqlite3_get_autocommit(sql_->Handle()) == 0) {
      // Closing the connection rolls back as well, should this fail.
      (void)sql_->Execute("ROLLBACK");
    }
    return {failure_, 0};
  }
  // The rows are gone; stopping now would leave their bytes in the file.
  sqlite3_progress_handler(sql_->Handle(), 0, nullptr, nullptr);
  if (changed_) {
    if (!Succeeded(sql_->Execute("VACUUM")) ||
        !Succeeded(sqlite3_wal_checkpoint_v2(sql_->Handle(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr))) {
      return {failure_, deleted_};
    }
  }
  return {DatabaseFailure::kNone, deleted_};
}

std::string RowBytesExpression(const std::vector<std::string>& columns) {
  std::string expression = "(0";
  for (const std::string& column : columns) {
    const std::string name = QuotedName(column);
    expression.append(" + CASE typeof(").append(name);
    expression.append(") WHEN 'null' THEN 0 WHEN 'integer' THEN 8 WHEN 'real' THEN 8 ELSE octet_length(");
    expression.append(name).append(") END");
  }
  return expression + ")";
}

std::string QuotedName(std::string_view name) {
  std::string quoted = "\"";
  for (const char c : name) {
    quoted += c;
    if (c == '"') {
      quoted += '"';
    }
  }
  return quoted + "\"";
}

bool HasColumn(const std::vector<std::string>& columns, std::string_view name) {
  for (const std::string& column : columns) {
    if (SameNameIgnoringCase(column, name)) {
      return true;
    }
  }
  return false;
}

}  // namespace lumenor
