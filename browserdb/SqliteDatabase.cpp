#include "browserdb/SqliteDatabase.h"

#include <sqlite3.h>
#include <windows.h>

#include <climits>

namespace lumenor {

namespace {

constexpr std::wstring_view kVerbatimPrefix = L"\\\\?\\";
// SQLite's Windows file layer that takes paths of any length (its plain one stops at MAX_PATH).
constexpr char kLongPathVfs[] = "win32-longpath";
// Room SQLite needs beyond the file's own name: "-journal", "-wal", "-shm" and a terminator.
constexpr size_t kSuffixRoom = 16;

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }
bool IsAsciiLetter(wchar_t c) { return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z'); }

// UTF-8 of `text`, or nothing when it holds a lone surrogate: replacing one would name
// another file.
bool StrictUtf8(std::wstring_view text, std::string& utf8) {
  utf8.clear();
  if (text.empty() || text.size() > INT_MAX) {
    return false;
  }
  const int sourceLength = static_cast<int>(text.size());
  const int length =
      WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), sourceLength, nullptr, 0, nullptr, nullptr);
  if (length <= 0) {
    return false;
  }
  utf8.resize(static_cast<size_t>(length));
  const int written = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), sourceLength, utf8.data(), length,
                                          nullptr, nullptr);
  return written == length;
}

int OpenFlags(SqliteOpen mode) {
  switch (mode) {
    case SqliteOpen::kReadOnly:
      return SQLITE_OPEN_READONLY;
    case SqliteOpen::kReadWrite:
      return SQLITE_OPEN_READWRITE;
    case SqliteOpen::kCreate:
      break;
  }
  return SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
}

}  // namespace

std::wstring VerbatimPath(std::wstring_view path) {
  if (path.find(L'\0') != std::wstring_view::npos) {
    return {};
  }
  if (path.starts_with(kVerbatimPrefix)) {
    return std::wstring(path);
  }
  const bool onDrive = path.size() >= 3 && IsAsciiLetter(path[0]) && path[1] == L':' && IsSeparator(path[2]);
  const bool onShare = path.size() >= 3 && IsSeparator(path[0]) && IsSeparator(path[1]) && !IsSeparator(path[2]) &&
                       path[2] != L'?' && path[2] != L'.';
  if (!onDrive && !onShare) {
    return {};
  }
  const std::wstring input(path);
  const DWORD needed = GetFullPathNameW(input.c_str(), 0, nullptr, nullptr);
  if (needed == 0) {
    return {};
  }
  std::wstring full(needed, L'\0');
  const DWORD length = GetFullPathNameW(input.c_str(), needed, full.data(), nullptr);
  if (length == 0 || length >= needed) {
    return {};
  }
  full.resize(length);
  if (onDrive) {
    return std::wstring(kVerbatimPrefix) + full;
  }
  return std::wstring(kVerbatimPrefix) + L"UNC\\" + full.substr(2);
}

SqliteDatabase::SqliteDatabase(std::wstring_view path, SqliteOpen mode) {
  openResult_ = SQLITE_CANTOPEN;
  std::string utf8;
  const sqlite3_vfs* longPaths = sqlite3_vfs_find(kLongPathVfs);
  if (longPaths == nullptr || !StrictUtf8(VerbatimPath(path), utf8) ||
      utf8.size() + kSuffixRoom > static_cast<size_t>(longPaths->mxPathname)) {
    return;
  }
  sqlite3* connection = nullptr;
  openResult_ = sqlite3_open_v2(utf8.c_str(), &connection, OpenFlags(mode) | SQLITE_OPEN_EXRESCODE, kLongPathVfs);
  if (openResult_ != SQLITE_OK) {
    // SQLite hands back a connection even when opening failed; it only needs closing.
    (void)sqlite3_close_v2(connection);
    return;
  }
  connection_ = connection;
}

SqliteDatabase::~SqliteDatabase() {
  // Closing rolls back whatever transaction is still open; nothing else can be done about
  // a close that fails, and close_v2 frees the connection once its statements are gone.
  (void)sqlite3_close_v2(connection_);
}

int SqliteDatabase::Execute(std::string_view sql) const {
  if (connection_ == nullptr) {
    return SQLITE_MISUSE;
  }
  const std::string statements(sql);
  return sqlite3_exec(connection_, statements.c_str(), nullptr, nullptr, nullptr);
}

int64_t SqliteDatabase::Changes() const { return connection_ != nullptr ? sqlite3_changes64(connection_) : 0; }

void SqliteDatabase::SetBusyTimeout(int milliseconds) const {
  if (connection_ != nullptr) {
    // Fails only for a connection that is not open.
    (void)sqlite3_busy_timeout(connection_, milliseconds);
  }
}

std::string SqliteDatabase::ErrorMessage() const {
  return connection_ != nullptr ? sqlite3_errmsg(connection_) : sqlite3_errstr(openResult_);
}

SqliteStatement::SqliteStatement(const SqliteDatabase& database, std::string_view sql) {
  if (!database.IsOpen() || sql.size() > INT_MAX) {
    prepareResult_ = SQLITE_MISUSE;
    return;
  }
  prepareResult_ =
      sqlite3_prepare_v2(database.Handle(), sql.data(), static_cast<int>(sql.size()), &statement_, nullptr);
  if (prepareResult_ == SQLITE_OK && statement_ == nullptr) {
    prepareResult_ = SQLITE_MISUSE;  // only blanks or a comment: nothing to run
  }
}

SqliteStatement::~SqliteStatement() {
  // Finalizing reports the last step's error again, which the step already returned.
  (void)sqlite3_finalize(statement_);
}

int SqliteStatement::BindText(int index, std::string_view text) const {
  return sqlite3_bind_text64(statement_, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

int SqliteStatement::BindInt64(int index, int64_t value) const { return sqlite3_bind_int64(statement_, index, value); }

int SqliteStatement::BindBlob(int index, std::string_view bytes) const {
  return sqlite3_bind_blob64(statement_, index, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
}

int SqliteStatement::Step() const { return statement_ != nullptr ? sqlite3_step(statement_) : prepareResult_; }

int SqliteStatement::Reset() const { return sqlite3_reset(statement_); }

int64_t SqliteStatement::ColumnInt64(int column) const { return sqlite3_column_int64(statement_, column); }

std::string_view SqliteStatement::ColumnText(int column) const {
  const unsigned char* text = sqlite3_column_text(statement_, column);
  if (text == nullptr) {
    return {};
  }
  return {reinterpret_cast<const char*>(text), static_cast<size_t>(sqlite3_column_bytes(statement_, column))};
}

bool SqliteStatement::ColumnIsNull(int column) const { return sqlite3_column_type(statement_, column) == SQLITE_NULL; }

}  // namespace lumenor
