#include "browserdb/FirefoxHistory.h"

#include "browserdb/BrowserDatabase.h"

#include <optional>

namespace lumenor {

namespace {

// Tables that hold history only: emptied whole where the profile has them.
constexpr const char* kHistoryTables[] = {"moz_historyvisits_extra", "moz_inputhistory", "moz_places_metadata",
                                          "moz_places_metadata_search_queries"};
// Tables whose rows belong to one place (column place_id): those of deleted places go.
constexpr const char* kPlaceRowTables[] = {"moz_places_extra", "moz_annos", "moz_newtab_shortcuts_interaction"};

// What this profile's places.sqlite holds beyond the tables every version has.
struct PlacesSchema {
  std::vector<std::string> places;
  std::vector<std::string> visits;
  std::vector<std::pair<std::string, std::vector<std::string>>> historyTables;
  std::vector<std::string> placeRowTables;
  bool hasKeywords = false;
  bool hasOrigins = false;
  std::vector<std::string> originColumns;
};

std::optional<PlacesSchema> ReadSchema(BrowserDatabase& database) {
  PlacesSchema schema;
  auto places = database.TableWith("moz_places", {"id", "visit_count"});
  auto visits = database.TableWith("moz_historyvisits", {"place_id"});
  // Without the bookmarks, which places must stay cannot be told.
  const bool hasBookmarks = database.TableWith("moz_bookmarks", {"fk"}).has_value();
  if (!places || !visits || !hasBookmarks) {
    return std::nullopt;
  }
  schema.places = std::move(*places);
  schema.visits = std::move(*visits);
  for (const char* table : kHistoryTables) {
    if (auto columns = database.Columns(table)) {
      schema.historyTables.emplace_back(table, std::move(*columns));
    }
  }
  for (const char* table : kPlaceRowTables) {
    const auto columns = database.Columns(table);
    if (columns && HasColumn(*columns, "place_id")) {
      schema.placeRowTables.emplace_back(table);
    }
  }
  const auto keywords = database.Columns("moz_keywords");
  schema.hasKeywords = keywords && HasColumn(*keywords, "place_id");
  if (auto origins = database.Columns("moz_origins"); origins && HasColumn(*origins, "id")) {
    schema.hasOrigins = HasColumn(schema.places, "origin_id");
    schema.originColumns = std::move(*origins);
  }
  // Columns() reports a table it cannot read as missing; the failure tells them apart.
  if (!database.Usable()) {
    return std::nullopt;
  }
  return schema;
}

// The places that stay: those a bookmark (or a keyword) refers to.
std::string KeptPlace(const PlacesSchema& schema) {
  std::string kept = "(id IN (SELECT fk FROM moz_bookmarks WHERE fk IS NOT NULL)";
  if (schema.hasKeywords) {
    kept += " OR id IN (SELECT place_id FROM moz_keywords WHERE place_id IS NOT NULL)";
  }
  return kept + ")";
}

// Resets what the places that stay remember of their visits. Only places that still
// remember something are written, so erasing twice changes nothing the second time.
std::string ResetKeptPlaces(const std::vector<std::string>& columns) {
  std::string assignments = "visit_count = 0";
  std::string remembers = "visit_count <> 0";
  if (HasColumn(columns, "last_visit_date")) {
    assignments += ", last_visit_date = NULL";
    remembers += " OR last_visit_date IS NOT NULL";
  }
  if (HasColumn(columns, "typed")) {
    assignments += ", typed = 0";
    remembers += " OR typed <> 0";
  }
  // Scores drawn from the visits: back to the schema's "not computed", and marked for
  // Firefox to compute again from the bookmark alone.
  if (HasColumn(columns, "frecency")) {
    assignments += ", frecency = -1";
  }
  if (HasColumn(columns, "recalc_frecency")) {
    assignments += ", recalc_frecency = 1";
  }
  if (HasColumn(columns, "alt_frecency")) {
    assignments += ", alt_frecency = NULL";
  }
  if (HasColumn(columns, "recalc_alt_frecency")) {
    assignments += ", recalc_alt_frecency = 1";
  }
  return "UPDATE moz_places SET " + assignments + " WHERE " + remembers;
}

// The origins' scores are drawn from the visits too.
std::string ResetOrigins(const std::vector<std::string>& columns) {
  std::string assignments = "frecency = 0";
  if (HasColumn(columns, "recalc_frecency")) {
    assignments += ", recalc_frecency = 1";
  }
  if (HasColumn(columns, "alt_frecency")) {
    assignments += ", alt_frecency = NULL";
  }
  if (HasColumn(columns, "recalc_alt_frecency")) {
    assignments += ", recalc_alt_frecency = 1";
  }
  return "UPDATE moz_origins SET " + assignments + " WHERE frecency <> 0";
}

}  // namespace

DatabaseScan ScanFirefoxHistory(const std::wstring& file, StopToken stop) {
  BrowserDatabase database(file, BrowserDatabase::Purpose::kScan, stop);
  const std::optional<PlacesSchema> schema = ReadSchema(database);
  if (!schema) {
    return {database.Failure(), {}};
  }
  DatabaseLine line{file};
  uint64_t otherRows = 0;
  bool read = database.QueryPair(
      "SELECT count(*), ifnull(sum(" + RowBytesExpression(schema->visits) + "), 0) FROM moz_historyvisits", line.rows,
      line.bytes);
  uint64_t placeBytes = 0;
  read = read && database.QueryPair("SELECT count(*), ifnull(sum(" + RowBytesExpression(schema->places) +
                                        "), 0) FROM moz_places WHERE NOT " + KeptPlace(*schema),
                                    line.places, placeBytes);
  line.bytes += placeBytes;
  for (const auto& [table, columns] : schema->historyTables) {
    uint64_t rows = 0;
    uint64_t bytes = 0;
    read = read && database.QueryPair(
                       "SELECT count(*), ifnull(sum(" + RowBytesExpression(columns) + "), 0) FROM " + QuotedName(table),
                       rows, bytes);
    otherRows += rows;
    line.bytes += bytes;
  }
  if (!read) {
    return {database.Failure(), {}};
  }
  DatabaseScan scan;
  if (line.rows + line.places + otherRows > 0) {
    scan.lines.push_back(std::move(line));
  }
  return scan;
}

DatabaseErase EraseFirefoxHistory(const std::wstring& file, StopToken stop) {
  BrowserDatabase database(file, BrowserDatabase::Purpose::kErase, stop);
  const std::optional<PlacesSchema> schema = ReadSchema(database);
  if (!schema || !database.BeginErase()) {
    return database.FinishErase();
  }
  // Each statement is skipped once one has failed; FinishErase then rolls back.
  bool erased = true;
  for (const auto& [table, columns] : schema->historyTables) {
    erased = erased && database.Delete("DELETE FROM " + QuotedName(table));
  }
  erased = erased && database.Delete("DELETE FROM moz_historyvisits");
  erased = erased && database.Delete("DELETE FROM moz_places WHERE NOT " + KeptPlace(*schema));
  erased = erased && database.Update(ResetKeptPlaces(schema->places));
  for (const std::string& table : schema->placeRowTables) {
    erased = erased &&
             database.Delete("DELETE FROM " + QuotedName(table) + " WHERE place_id NOT IN (SELECT id FROM moz_places)");
  }
  if (schema->hasOrigins) {
    erased = erased && database.Delete(
                           "DELETE FROM moz_origins WHERE id NOT IN "
                           "(SELECT origin_id FROM moz_places WHERE origin_id IS NOT NULL)");
    if (HasColumn(schema->originColumns, "frecency")) {
      erased = erased && database.Update(ResetOrigins(schema->originColumns));
    }
  }
  return database.FinishErase();
}

}  // namespace lumenor
