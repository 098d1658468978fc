// Chromium's form entries erased inside "Web Data", whose other tables stay as they were.
#include "browserdb/BrowserSchemas.h"
#include "browserdb/ChromiumFormData.h"
#include "tests/browserdb/BrowserFixtures.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace lumenor {
namespace {

using testing::FileOrWalHolds;
using testing::FixtureDatabase;
using testing::TempFolder;

constexpr char kTypedMarker[] = "typed-into-a-form-6a2d94c0";

class FormDataErase : public ::testing::Test {
 protected:
  void SetUp() override {
    FixtureDatabase database(webData_, testing::kChromiumWebDataSchema);
    database.AddFormEntry("email", kTypedMarker);
    database.AddFormEntry("q", "weather tomorrow");
    database.AddFormEntry("city", "Lyon");
    database.AddSearchEngine("ddg", "https://duckduckgo.com/?q={searchTerms}");
    database.AddSearchEngine("w", "https://en.wikipedia.org/w/index.php?search={searchTerms}");
    database.Run("INSERT INTO addresses (guid, use_count, label) VALUES ('a1', 3, 'Home')");
    database.Run(
        "INSERT INTO credit_cards (guid, name_on_card, card_number_encrypted) VALUES ('c1', 'A N Other', "
        "x'763130aabbcc')");
  }

  TempFolder folder_;
  std::wstring webData_ = folder_ / L"Web Data";
};

TEST_F(FormDataErase, FormEntriesGoAndSearchEnginesAddressesAndCardsStay) {
  const DatabaseErase erase = EraseChromiumFormData(webData_);
  EXPECT_EQ(erase.failure, DatabaseFailure::kNone);
  EXPECT_EQ(erase.rowsDeleted, 3u);
  const FixtureDatabase database(webData_);
  EXPECT_EQ(database.Number("SELECT count(*) FROM autocomplete"), 0);
  EXPECT_EQ(database.Texts("SELECT keyword FROM keywords ORDER BY id"), (std::vector<std::string>{"ddg", "w"}));
  EXPECT_EQ(database.Texts("SELECT label FROM addresses"), std::vector<std::string>{"Home"});
  EXPECT_EQ(database.Texts("SELECT name_on_card FROM credit_cards"), std::vector<std::string>{"A N Other"});
  EXPECT_EQ(database.Texts("PRAGMA integrity_check"), std::vector<std::string>{"ok"});
  EXPECT_FALSE(FileOrWalHolds(webData_, kTypedMarker));
}

TEST_F(FormDataErase, TheScanCountsTheEntriesInOneLineForTheFile) {
  const DatabaseScan scan = ScanChromiumFormData(webData_);
  EXPECT_EQ(scan.failure, DatabaseFailure::kNone);
  ASSERT_EQ(scan.lines.size(), 1u);
  EXPECT_EQ(scan.lines[0].label, webData_);
  EXPECT_EQ(scan.lines[0].rows, 3u);
  // Each entry: name, value and its lower-case twin, empty labels, three numbers.
  const auto entryBytes = [](std::string_view name, std::string_view value) {
    return name.size() + 2 * value.size() + 3 * 8;
  };
  EXPECT_EQ(scan.lines[0].bytes,
            entryBytes("email", kTypedMarker) + entryBytes("q", "weather tomorrow") + entryBytes("city", "Lyon"));
}

}  // namespace
}  // namespace lumenor
