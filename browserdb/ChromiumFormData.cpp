#include "browserdb/ChromiumFormData.h"

#include "browserdb/BrowserDatabase.h"

namespace lumenor {

DatabaseScan ScanChromiumFormData(const std::wstring& file, StopToken stop) {
  BrowserDatabase database(file, BrowserDatabase::Purpose::kScan, stop);
  // The columns that make the table the one we know: the field's name and what was typed.
  const auto columns = database.TableWith("autocomplete", {"name", "value"});
  DatabaseLine line{file};
  if (!columns ||
      !database.QueryPair("SELECT count(*), ifnull(sum(" + RowBytesExpression(*columns) + "), 0) FROM autocomplete",
                          line.rows, line.bytes)) {
    return {database.Failure(), {}};
  }
  DatabaseScan scan;
  if (line.rows > 0) {
    scan.lines.push_back(std::move(line));
  }
  return scan;
}

DatabaseErase EraseChromiumFormData(const std::wstring& file, StopToken stop) {
  BrowserDatabase database(file, BrowserDatabase::Purpose::kErase, stop);
  if (database.TableWith("autocomplete", {"name", "value"}) && database.BeginErase()) {
    (void)database.Delete("DELETE FROM autocomplete");  // a failure is kept; FinishErase rolls back
  }
  return database.FinishErase();
}

}  // namespace lumenor
