// Browser databases made for a test from the schemas real browsers write, the rows the
// tests put into them, and the questions the tests ask of them afterwards.
#pragma once

#include "browserdb/SqliteDatabase.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::testing {

// One connection to a test database. Every statement that fails is a test failure.
class FixtureDatabase {
 public:
  // Creates `path` with every table and index of `schema` (one statement a line).
  FixtureDatabase(const std::wstring& path, std::string_view schema);
  // Opens the existing `path`.
  explicit FixtureDatabase(const std::wstring& path);

  const SqliteDatabase& Sql() const { return sql_; }
  void Run(std::string_view sql) const;
  // The first column of the first row, as a number.
  int64_t Number(std::string_view sql) const;
  // The first column of every row, as text.
  std::vector<std::string> Texts(std::string_view sql) const;

  // Puts the database into WAL mode, and keeps what is written in the WAL file when the
  // connection closes, as a browser that ended without a checkpoint leaves it.
  void KeepWritesInWal() const;

  void AddChromiumCookie(std::string_view host, std::string_view name, std::string_view value) const;
  void AddFirefoxCookie(std::string_view host, std::string_view name, std::string_view value) const;

  // A moz_places row for `url` with its origin; returns its id.
  int64_t AddPlace(std::string_view url, std::string_view host, std::string_view title) const;
  void AddVisit(int64_t place, int64_t when) const;
  void AddBookmark(int64_t place, std::string_view title) const;

  void AddFormEntry(std::string_view name, std::string_view value) const;
  void AddSearchEngine(std::string_view keyword, std::string_view url) const;

 private:
  SqliteDatabase sql_;
};

// Whether `text` appears anywhere in the bytes of `path` or of its WAL file.
bool FileOrWalHolds(const std::wstring& path, std::string_view text);

}  // namespace lumenor::testing
