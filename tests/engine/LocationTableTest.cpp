// Every location record of every item, on a made-up machine with every folder, registry
// value and application settings file the items look for, against the table checked by
// eye once and kept in tests/expected/locations.tsv. A typo in any path fails here.
#include "base/ModulePath.h"
#include "base/TextEncoding.h"
#include "catalogue/CMyObject.h"
#include "catalogue/CatalogueTable.h"
#include "engine/LocationTable.h"
#include "engine/Locations.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <map>
#include <set>

namespace lumenor {
namespace {

using testing::FakeRegistryName;

// A Windows XP profile below a test folder, whose path shows as "%ROOT%\" in the table.
class MadeUpMachine {
 public:
  MadeUpMachine() {
    const std::wstring profile = Root() + L"Documents and Settings\\Tester\\";
    const std::wstring appData = profile + L"Application Data";
    paths_.windows = L"C:\\WINDOWS";
    paths_.shellFolders = {
        {CSIDL_WINDOWS, L"C:\\WINDOWS"},
        {CSIDL_APPDATA, appData},
        {CSIDL_PRINTHOOD, profile + L"PrintHood"},
        {CSIDL_RECENT, profile + L"Recent"},
        {CSIDL_INTERNET_CACHE, profile + L"Local Settings\\Temporary Internet Files"},
        {CSIDL_HISTORY, profile + L"Local Settings\\History"},
        {CSIDL_FAVORITES, profile + L"Favorites"},
        {CSIDL_COOKIES, profile + L"Cookies"},
        {CSIDL_CDBURN_AREA, profile + L"Local Settings\\Application Data\\Microsoft\\CD Burning"},
        {CSIDL_PERSONAL, profile + L"My Documents"},
    };
    paths_.variables[L"TEMP"] = profile + L"Local Settings\\Temp";
    paths_.drives = {L"C:\\", L"D:\\", L"E:\\"};
    paths_.driveTypes = {{L"C:\\", DRIVE_FIXED}, {L"D:\\", DRIVE_CDROM}, {L"E:\\", DRIVE_FIXED}};

    const auto text = [&](HKEY root, const std::wstring& key, const std::wstring& name, std::wstring value) {
      paths_.registryTexts[FakeRegistryName(root, key, name)] = std::move(value);
    };
    text(HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management", L"PagingFiles",
         L"C:\\pagefile.sys 1536 3072");
    text(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Yahoo\\Essentials", L"MainDir", L"C:\\Program Files\\Yahoo!");
    const std::wstring passports = L"Software\\Microsoft\\MSNMessenger\\PerPassportSettings";
    paths_.subKeys[FakeRegistryName(HKEY_CURRENT_USER, passports)] = {L"1834", L"2201"};
    text(HKEY_CURRENT_USER, passports + L"\\1834", L"MessageLogPath", profile + L"My Documents\\My Received Files");
    text(HKEY_CURRENT_USER, passports + L"\\2201", L"MessageLogPath", L"E:\\Chat Logs");
    text(HKEY_CURRENT_USER, L"Software\\BitComet", L"", L"C:\\Program Files\\BitComet");
    text(HKEY_CURRENT_USER, L"Software\\Qualcomm\\Eudora\\LaunchManager", L"Path#1",
         appData + L"\\Qualcomm\\Eudora\\Attach");
    text(HKEY_CURRENT_USER, L"Software\\IncrediMail", L"ApplicationPath", L"C:\\Program Files\\IncrediMail");
    text(HKEY_CURRENT_USER, L"Software\\IncrediMail\\Identities", L"", L"{A1B2C3}");
    text(HKEY_CURRENT_USER, L"Software\\Google\\Google Desktop", L"data_dir",
         profile + L"Local Settings\\Application Data\\Google\\Google Desktop");

    testing::MakeFile(appData + L"\\Netscape\\Navigator\\profiles.ini", "[Profile0]\r\nPath=Profiles/ns01.default\r\n");
    testing::MakeFile(appData + L"\\Mozilla\\Firefox\\profiles.ini", "[Profile0]\r\nPath=Profiles/ab12.default\r\n");
    testing::MakeFile(appData + L"\\Thunderbird\\profiles.ini", "[Profile0]\r\nPath=Profiles/tb34.default\r\n");
    testing::MakeFile(appData + L"\\PocoMail\\poco.ini",
                      "[Mail]\r\nAttachPath=D:\\Poco\\Attach\r\n[Program]\r\nMailPath=Mail\\\r\n");
  }

  const std::wstring& Root() const { return root_.Path(); }
  const SystemPaths& Paths() const { return paths_; }

 private:
  testing::TempFolder root_;
  testing::FakeSystemPaths paths_;
};

std::string RootName(HKEY root) {
  if (root == nullptr) return "file";
  if (root == HKEY_CURRENT_USER) return "HKCU";
  if (root == HKEY_LOCAL_MACHINE) return "HKLM";
  return "other";
}

std::string Shown(const std::wstring& text, const std::wstring& root) {
  std::wstring shown = text;
  if (shown.compare(0, root.size(), root) == 0) shown = L"%ROOT%\\" + shown.substr(root.size());
  return ToUtf8(shown);
}

TEST(LocationTable, EveryRecordOfEveryItemMatchesTheCheckedTable) {
  const MadeUpMachine machine;
  std::vector<std::string> rows;
  int items = 0;
  for (const CatalogueEntry& entry : CatalogueEntries()) {
    if (entry.level != CMyObject::kItem) continue;
    ++items;
    int order = 0;
    for (const LocationRecord& record : FixedItemLocations(entry.id, machine.Paths())) {
      rows.push_back(std::to_string(entry.id) + "\t" + std::to_string(order++) + "\t" + std::to_string(record.kind) +
                     "\t" + RootName(record.rootKey) + "\t" + Shown(record.path, machine.Root()) + "\t" +
                     ToUtf8(record.selector));
    }
  }
  ASSERT_EQ(items, 139);

  const std::vector<std::string> expected = testing::SplitLines(testing::LoadTestData(IDR_EXPECTED_LOCATIONS));
  if (rows != expected) {
    // The table as it is now, beside the test program, for a reviewer to compare.
    std::string table;
    for (const std::string& row : rows) table += row + "\n";
    const std::wstring written = ModuleFolder() + L"locations.actual.tsv";
    (void)testing::WriteFileBytes(written, table);
    size_t first = 0;
    while (first < rows.size() && first < expected.size() && rows[first] == expected[first]) ++first;
    ADD_FAILURE() << "first difference at row " << first + 1
                  << ":\n  now:      " << (first < rows.size() ? rows[first] : "(none)")
                  << "\n  expected: " << (first < expected.size() ? expected[first] : "(none)")
                  << "\nthe whole table now is in " << ToUtf8(written);
  }
}

// Even the item with most records stays far below the bound on a full machine, so the
// bound never cuts a list the table means to make.
TEST(LocationTable, NoItemComesNearTheBoundOnTheMadeUpMachine) {
  const MadeUpMachine machine;
  for (const CatalogueEntry& entry : CatalogueEntries()) {
    if (entry.level != CMyObject::kItem) continue;
    EXPECT_LE(FixedItemLocations(entry.id, machine.Paths()).size(), kMaxFixedItemLocations / 2) << "item " << entry.id;
  }
}

// A row under an id that is no item of the catalogue would never be used; and an item's
// own rows stay far below the bound, which only many drives or passports can reach.
TEST(LocationTable, EveryRowBelongsToAnItemWithFarFewerRowsThanTheBound) {
  std::set<unsigned> items;
  for (const CatalogueEntry& entry : CatalogueEntries()) {
    if (entry.level == CMyObject::kItem) items.insert(entry.id);
  }
  std::map<unsigned, size_t> rowsOfItem;
  for (const LocationRow& row : LocationRows()) {
    EXPECT_TRUE(items.contains(row.item)) << "a row for " << row.item << ", which is no item of the catalogue";
    ++rowsOfItem[row.item];
  }
  for (const auto& [item, rows] : rowsOfItem) EXPECT_LE(rows, kMaxFixedItemLocations / 2) << "item " << item;
}

}  // namespace
}  // namespace lumenor
