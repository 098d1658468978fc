// Firefox history erased inside places.sqlite: visits and the places only history needs
// go, bookmarks and their places stay with their visit traces reset, rows hanging on
// deleted places go with them, and the file stays a sound database.
#include "browserdb/BrowserSchemas.h"
#include "browserdb/FirefoxHistory.h"
#include "tests/browserdb/BrowserFixtures.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

using testing::FileOrWalHolds;
using testing::FixtureDatabase;
using testing::TempFolder;

constexpr char kVisitedMarker[] = "visited-page-3e5c7d21";

// places.sqlite as a profile of 2018 left it: no origins, no page metadata, no extra
// tables, fewer columns.
constexpr char kOlderPlacesSchema[] =
    "CREATE TABLE moz_places (id INTEGER PRIMARY KEY, url LONGVARCHAR, title LONGVARCHAR, rev_host LONGVARCHAR, "
    "visit_count INTEGER DEFAULT 0, hidden INTEGER DEFAULT 0 NOT NULL, typed INTEGER DEFAULT 0 NOT NULL, "
    "frecency INTEGER DEFAULT -1 NOT NULL, last_visit_date INTEGER, guid TEXT, foreign_count INTEGER DEFAULT 0 NOT "
    "NULL, url_hash INTEGER DEFAULT 0 NOT NULL);\n"
    "CREATE TABLE moz_historyvisits (id INTEGER PRIMARY KEY, from_visit INTEGER, place_id INTEGER, visit_date "
    "INTEGER, visit_type INTEGER, session INTEGER);\n"
    "CREATE TABLE moz_inputhistory (place_id INTEGER NOT NULL, input LONGVARCHAR NOT NULL, use_count INTEGER, "
    "PRIMARY KEY (place_id, input));\n"
    "CREATE TABLE moz_bookmarks (id INTEGER PRIMARY KEY, type INTEGER, fk INTEGER DEFAULT NULL, parent INTEGER, "
    "position INTEGER, title LONGVARCHAR, keyword_id INTEGER, folder_type TEXT, dateAdded INTEGER, lastModified "
    "INTEGER, guid TEXT);\n";

class HistoryErase : public ::testing::Test {
 protected:
  // A bookmarked page and a page with a keyword, both visited; two pages only visited; one
  // never visited (a redirect target); and everything Firefox hangs on them.
  void Fill(bool keepWritesInWal = false) {
    FixtureDatabase database(places_, testing::kFirefoxPlacesSchema);
    if (keepWritesInWal) {
      database.KeepWritesInWal();
    }
    database.Run("BEGIN");
    database.Run(
        "INSERT INTO moz_bookmarks (type, fk, parent, position, title, guid) VALUES (2, NULL, 0, 0, '', "
        "'root________')");
    bookmarked_ = database.AddPlace("https://bookmarked.example/", "bookmarked.example", "Bookmarked page");
    database.AddBookmark(bookmarked_, "My bookmark");
    keyword_ = database.AddPlace("https://search.example/?q=%s", "search.example", "Search");
    database.Run("INSERT INTO moz_keywords (keyword, place_id) VALUES ('s', " + std::to_string(keyword_) + ")");
    const int64_t visited =
        database.AddPlace(std::string("https://visited.example/") + kVisitedMarker, "visited.example", kVisitedMarker);
    const int64_t other = database.AddPlace("https://other.example/", "other.example", "Other");
    database.AddPlace("https://redirect.example/", "redirect.example", "Redirect");
    for (int64_t when = 0; when < 3; ++when) {
      database.AddVisit(bookmarked_, when);
    }
    database.AddVisit(keyword_, 4);
    database.AddVisit(visited, 5);
    database.AddVisit(visited, 6);
    database.AddVisit(other, 7);

    const std::string bookmarkedId = std::to_string(bookmarked_);
    const std::string visitedId = std::to_string(visited);
    database.Run("INSERT INTO moz_historyvisits_extra (visit_id, sync_json) VALUES (1, '{}')");
    database.Run("INSERT INTO moz_inputhistory VALUES (" + visitedId + ", 'visi', 1)");
    database.Run("INSERT INTO moz_places_metadata_search_queries (terms) VALUES ('" + std::string(kVisitedMarker) +
                 "')");
    database.Run("INSERT INTO moz_places_metadata (place_id, created_at, total_view_time, search_query_id) VALUES (" +
                 visitedId + ", 1, 5000, 1)");
    database.Run("INSERT INTO moz_places_extra VALUES (" + bookmarkedId + ", '{\"kept\":1}'), (" + visitedId +
                 ", '{}')");
    database.Run("INSERT INTO moz_anno_attributes (name) VALUES ('downloads/destinationFileURI')");
    database.Run("INSERT INTO moz_annos (place_id, anno_attribute_id, content) VALUES (" + bookmarkedId +
                 ", 1, 'file:///kept'), (" + visitedId + ", 1, 'file:///gone')");
    database.Run("COMMIT");
  }

  TempFolder folder_;
  std::wstring places_ = folder_ / L"places.sqlite";
  int64_t bookmarked_ = 0;
  int64_t keyword_ = 0;
};

TEST_F(HistoryErase, VisitsGoBookmarksAndTheirPlacesStayWithTheirVisitTracesReset) {
  Fill();
  const DatabaseErase erase = EraseFirefoxHistory(places_);
  ASSERT_EQ(erase.failure, DatabaseFailure::kNone);
  // 7 visits, 1 visit extra, 1 input, 1 metadata, 1 search, 3 places, 1 place extra,
  // 1 annotation and the 3 origins of the deleted places.
  EXPECT_EQ(erase.rowsDeleted, 19u);

  const FixtureDatabase database(places_);
  EXPECT_EQ(database.Texts("PRAGMA integrity_check"), std::vector<std::string>{"ok"});
  EXPECT_EQ(database.Number("SELECT count(*) FROM pragma_foreign_key_check"), 0);
  for (const char* emptied : {"moz_historyvisits", "moz_historyvisits_extra", "moz_inputhistory", "moz_places_metadata",
                              "moz_places_metadata_search_queries"}) {
    EXPECT_EQ(database.Number(std::string("SELECT count(*) FROM ") + emptied), 0) << emptied;
  }
  EXPECT_EQ(database.Texts("SELECT url FROM moz_places ORDER BY id"),
            (std::vector<std::string>{"https://bookmarked.example/", "https://search.example/?q=%s"}));
  EXPECT_EQ(database.Texts("SELECT title FROM moz_bookmarks ORDER BY id"),
            (std::vector<std::string>{"", "My bookmark"}));
  EXPECT_EQ(database.Number("SELECT count(*) FROM moz_keywords"), 1);
  EXPECT_EQ(database.Number("SELECT count(*) FROM moz_places WHERE visit_count <> 0 OR last_visit_date IS NOT NULL "
                            "OR typed <> 0 OR frecency <> -1 OR recalc_frecency <> 1"),
            0);
  EXPECT_EQ(database.Texts("SELECT sync_json FROM moz_places_extra"), std::vector<std::string>{"{\"kept\":1}"});
  EXPECT_EQ(database.Texts("SELECT content FROM moz_annos"), std::vector<std::string>{"file:///kept"});
  EXPECT_EQ(database.Texts("SELECT host FROM moz_origins ORDER BY host"),
            (std::vector<std::string>{"bookmarked.example", "search.example"}));
  EXPECT_EQ(database.Number("SELECT count(*) FROM moz_origins WHERE frecency <> 0"), 0);
  EXPECT_FALSE(FileOrWalHolds(places_, kVisitedMarker));
}

TEST_F(HistoryErase, TheScanCountsTheVisitsAndPlacesTheEraseDeletesAndASecondEraseFindsNothing) {
  Fill();
  const DatabaseScan scan = ScanFirefoxHistory(places_);
  ASSERT_EQ(scan.failure, DatabaseFailure::kNone);
  ASSERT_EQ(scan.lines.size(), 1u);
  EXPECT_EQ(scan.lines[0].label, places_);
  EXPECT_EQ(scan.lines[0].rows, 7u);
  EXPECT_EQ(scan.lines[0].places, 3u);
  // At least the deleted places' addresses and titles.
  EXPECT_GT(scan.lines[0].bytes, 2 * std::size(kVisitedMarker) + 70);

  ASSERT_EQ(EraseFirefoxHistory(places_).failure, DatabaseFailure::kNone);
  const DatabaseScan after = ScanFirefoxHistory(places_);
  EXPECT_EQ(after.failure, DatabaseFailure::kNone);
  EXPECT_TRUE(after.lines.empty());
  const DatabaseErase again = EraseFirefoxHistory(places_);
  EXPECT_EQ(again.failure, DatabaseFailure::kNone);
  EXPECT_EQ(again.rowsDeleted, 0u);
}

TEST_F(HistoryErase, AWalDatabaseIsScannedWithItsWalAndKeepsNoVisitedAddressInTheFileOrItsWal) {
  Fill(true);
  ASSERT_TRUE(FileOrWalHolds(places_, kVisitedMarker));
  const DatabaseScan scan = ScanFirefoxHistory(places_);
  ASSERT_EQ(scan.lines.size(), 1u);
  EXPECT_EQ(scan.lines[0].rows, 7u) << "the visits are in the WAL only";
  ASSERT_EQ(EraseFirefoxHistory(places_).failure, DatabaseFailure::kNone);
  EXPECT_FALSE(FileOrWalHolds(places_, kVisitedMarker));
  const FixtureDatabase database(places_);
  EXPECT_EQ(database.Texts("PRAGMA journal_mode"), std::vector<std::string>{"wal"});
  EXPECT_EQ(database.Texts("SELECT title FROM moz_bookmarks WHERE fk IS NOT NULL"),
            std::vector<std::string>{"My bookmark"});
}

TEST_F(HistoryErase, AnOlderProfileWithoutTheNewerTablesAndColumnsIsErasedAllTheSame) {
  {
    FixtureDatabase database(places_, kOlderPlacesSchema);
    database.Run(
        "INSERT INTO moz_places (id, url, visit_count, last_visit_date, typed) VALUES "
        "(1, 'https://bookmarked.example/', 2, 5, 1), (2, 'https://visited.example/', 1, 6, 0)");
    database.Run("INSERT INTO moz_historyvisits (place_id, visit_date) VALUES (1, 4), (1, 5), (2, 6)");
    database.Run("INSERT INTO moz_inputhistory VALUES (2, 'vis', 1)");
    database.Run("INSERT INTO moz_bookmarks (type, fk, parent, title) VALUES (2, NULL, 0, ''), (1, 1, 1, 'Mine')");
  }
  const DatabaseErase erase = EraseFirefoxHistory(places_);
  EXPECT_EQ(erase.failure, DatabaseFailure::kNone);
  EXPECT_EQ(erase.rowsDeleted, 5u);
  const FixtureDatabase database(places_);
  EXPECT_EQ(database.Texts("SELECT url FROM moz_places"), std::vector<std::string>{"https://bookmarked.example/"});
  EXPECT_EQ(database.Number("SELECT visit_count + ifnull(last_visit_date, 0) + typed FROM moz_places"), 0);
  EXPECT_EQ(database.Number("SELECT count(*) FROM moz_bookmarks"), 2);
}

}  // namespace
}  // namespace lumenor
