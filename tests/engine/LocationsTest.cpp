// The locations items fill: the rows with logic (drives, paging file, profiles, PocoMail,
// IncrediMail, Messenger), stopping at the first missing folder, and bounds.
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "engine/LocationFillers.h"
#include "engine/Locations.h"
#include "engine/Registry.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <shlobj.h>

namespace lumenor {
namespace {

using testing::FakeSystemPaths;
using testing::MakeFile;
using testing::TempFolder;

struct Row {
  HKEY root;
  std::wstring path;
  std::wstring selector;
  int kind;

  bool operator==(const Row&) const = default;
};

std::vector<Row> Fill(unsigned id, const SystemPaths& paths) {
  CMyObject item;
  item.SetId(id);
  FillLocations(item, paths);
  std::vector<Row> rows;
  for (const LocationRecord& record : item.Locations()) {
    rows.push_back({record.rootKey, record.path, record.selector, record.kind});
  }
  return rows;
}

Row File(std::wstring folder, std::wstring selector, int kind) {
  return {nullptr, std::move(folder), std::move(selector), kind};
}

void PrintTo(const Row& row, std::ostream* out) {
  *out << (row.root == nullptr ? "F " : "R ") << ::testing::PrintToString(row.path) << " | "
       << ::testing::PrintToString(row.selector) << " | " << row.kind;
}

class ItemLocations : public ::testing::Test {
 protected:
  void SetUp() override {
    appData_ = appDataFolder_.Path();
    appData_.pop_back();  // shell folders come without a trailing backslash
    paths_.shellFolders[CSIDL_APPDATA] = appData_;
    paths_.shellFolders[CSIDL_PRINTHOOD] = L"C:\\Users\\me\\PrintHood";
    paths_.shellFolders[CSIDL_CDBURN_AREA] = L"C:\\Users\\me\\Local Settings\\Microsoft\\CD Burning";
  }

  TempFolder appDataFolder_;
  std::wstring appData_;
  FakeSystemPaths paths_;
};

TEST_F(ItemLocations, RecycleBinsOfFixedDrivesOnlyInDriveOrder) {
  paths_.drives = {L"C:\\", L"D:\\", L"E:\\"};
  paths_.driveTypes = {{L"C:\\", DRIVE_FIXED}, {L"D:\\", DRIVE_CDROM}, {L"E:\\", DRIVE_FIXED}};
  const std::vector<Row> expected = {File(L"C:\\RECYCLER\\", L"*.*", 10), File(L"C:\\Recycled\\", L"*.*", 10),
                                     File(L"E:\\RECYCLER\\", L"*.*", 10), File(L"E:\\Recycled\\", L"*.*", 10)};
  EXPECT_EQ(Fill(107, paths_), expected);
  // The test machine has the same drives.
  EXPECT_EQ(Fill(107, MachinePaths()), expected);
}

TEST(PagingFileSetting, GivesFolderAndNameUpToTheFirstBlank) {
  const PagingFile usual = ParsePagingFile(L"C:\\pagefile.sys 1536 3072");
  EXPECT_EQ(usual.folder, L"C:\\");
  EXPECT_EQ(usual.name, L"pagefile.sys");
  const PagingFile nested = ParsePagingFile(L"D:\\swap\\pagefile.sys");
  EXPECT_EQ(nested.folder, L"D:\\swap\\");
  EXPECT_EQ(nested.name, L"pagefile.sys");
  const PagingFile bare = ParsePagingFile(L"pagefile.sys 10 20");
  EXPECT_EQ(bare.folder, L"");
  const PagingFile empty = ParsePagingFile(L"");
  EXPECT_EQ(empty.name, L"");
}

// Folders kept in the registry are read as text of any string type, and nothing else.
TEST(RegistryFolderText, ReadsEveryStringTypeAndNothingElse) {
  testing::TestKey key;
  key.CreateKey(L"");
  const auto set = [&](DWORD type, const void* data, DWORD size) {
    key.SetValue(L"", L"PagingFiles", type, data, size);
    return MachinePaths().RegistryText(key.Root(), key.Path(), L"PagingFiles");
  };
  const wchar_t multi[] = L"C:\\pagefile.sys 1536 3072\0E:\\second.sys 1 2\0";
  EXPECT_EQ(set(REG_MULTI_SZ, multi, sizeof multi), L"C:\\pagefile.sys 1536 3072") << "the first string counts";
  const wchar_t text[] = L"E:\\pagefile.sys";
  EXPECT_EQ(set(REG_SZ, text, sizeof text - sizeof(wchar_t)), L"E:\\pagefile.sys") << "stored without terminator";
  EXPECT_EQ(set(REG_EXPAND_SZ, text, sizeof text), L"E:\\pagefile.sys");
  const DWORD number = 1536;
  EXPECT_EQ(set(REG_DWORD, &number, sizeof number), std::nullopt);
  EXPECT_EQ(set(REG_SZ, L"", sizeof(wchar_t)), std::nullopt);
  EXPECT_EQ(MachinePaths().RegistryText(key.Root(), key.Path(), L"missing"), std::nullopt);
  EXPECT_EQ(MachinePaths().RegistryText(key.Root(), key / L"missing", L""), std::nullopt);
}

TEST_F(ItemLocations, PagingFileComesFromItsSettingUpToTheFirstBlank) {
  const std::wstring setting = testing::FakeRegistryName(
      HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management", L"PagingFiles");
  EXPECT_TRUE(Fill(kItemPagingFile, paths_).empty()) << "no setting";
  paths_.registryTexts[setting] = L"C:\\pagefile.sys 1536 3072";
  EXPECT_EQ(Fill(kItemPagingFile, paths_), std::vector<Row>{File(L"C:\\", L"pagefile.sys", 12)});
  paths_.registryTexts[setting] = L"pagefile.sys";
  EXPECT_TRUE(Fill(kItemPagingFile, paths_).empty()) << "no folder, nothing to look in";
}

TEST_F(ItemLocations, BrowserProfilesComeFromTheFirstProfilesPath) {
  const std::wstring firefox = appData_ + L"\\Mozilla\\Firefox\\";
  MakeFile(firefox + L"profiles.ini",
           "[General]\r\nStartWithLastProfile=1\r\n\r\n[Profile0]\r\nName=default\r\n"
           "IsRelative=1\r\nPath=Profiles/ab12.default\r\n\r\n[Profile1]\r\nPath=Profiles/zz\r\n");
  const std::wstring profile = firefox + L"Profiles\\ab12.default\\";
  EXPECT_EQ(Fill(164, paths_),
            (std::vector<Row>{File(profile, L"places.sqlite", 12), File(profile, L"sessionstore.js", 12),
                              File(profile, L"places.sqlite-journal", 12)}));
  EXPECT_EQ(Fill(166, paths_),
            std::vector<Row>{File(L"C:\\Users\\me\\Local Settings\\Application Data\\Mozilla\\Firefox\\Profiles\\"
                                  L"ab12.default\\Cache\\",
                                  L"*.*", 10)});
  EXPECT_TRUE(Fill(143, paths_).empty()) << "Netscape has no profiles.ini here";
}

TEST_F(ItemLocations, ProfilePathsThatAreOddOrDangerousAddNothingOrAnEmptyName) {
  const std::wstring thunderbird = appData_ + L"\\Thunderbird\\";
  const std::wstring profiles = thunderbird + L"Profiles\\";
  const auto withPath = [&](const std::string& path) {
    MakeFile(thunderbird + L"profiles.ini", "[Profile0]\r\nPath=" + path + "\r\n");
    return Fill(338, paths_);
  };
  EXPECT_EQ(withPath("C:\\Elsewhere\\abc.default"), std::vector<Row>{File(profiles, L"key3.db", 12)})
      << "no '/': an empty profile name";
  EXPECT_TRUE(withPath("Profiles/" + std::string(60, 'p')).empty()) << "longer than a profile path may be";
  EXPECT_TRUE(withPath("Profiles/..").empty());
  EXPECT_TRUE(withPath("Profiles/../../Windows").empty());
  EXPECT_TRUE(withPath("Profiles/").empty());
  MakeFile(thunderbird + L"profiles.ini", "[Profile0]\r\nName=x\r\n");
  EXPECT_TRUE(Fill(338, paths_).empty()) << "no Path key";
}

TEST_F(ItemLocations, PocoMailFoldersAreAbsoluteOrUnderItsAppDataFolder) {
  const std::wstring poco = appData_ + L"\\PocoMail\\";
  const auto withIni = [&](const std::string& text, unsigned id) {
    MakeFile(poco + L"poco.ini", text);
    return Fill(id, paths_);
  };
  EXPECT_EQ(withIni("[Program]\r\nMailPath=D:\\Mail\\\r\n", 357),
            std::vector<Row>{File(L"D:\\Mail\\", L"Trash.mbx", 12)});
  EXPECT_EQ(withIni("[Program]\r\nMailPath=Mail\\\r\n", 360),
            std::vector<Row>{File(poco + L"Mail\\", L"Draft.mbx", 12)});
  EXPECT_EQ(withIni("[Mail]\r\nAttachPath=D:\\Attach\r\n", 355), std::vector<Row>{File(L"D:\\Attach\\", L"*.*", 10)})
      << "a folder always ends with a backslash";
  EXPECT_TRUE(withIni("[Program]\r\nMailPath=" + std::string(1000, 'm') + "\r\n", 358).empty());
  EXPECT_TRUE(withIni("[Program]\r\nMailPath=..\\..\\Windows\\\r\n", 359).empty());
  EXPECT_TRUE(withIni("[Program]\r\nAddressPath=D:\\x\\\r\n", 357).empty()) << "MailPath is missing";
}

TEST_F(ItemLocations, WithoutAppDataTwoItemsKeepARecordWithAnEmptyFolder) {
  paths_.shellFolders.erase(CSIDL_APPDATA);
  EXPECT_EQ(Fill(162, paths_), std::vector<Row>{File(L"", L"download.dat", 12)});
  EXPECT_EQ(Fill(354, paths_), std::vector<Row>{File(L"", L"*.*", 10)});
  EXPECT_TRUE(Fill(158, paths_).empty());
  EXPECT_TRUE(Fill(356, paths_).empty());
  EXPECT_TRUE(Fill(138, paths_).empty());
}

TEST_F(ItemLocations, AMissingFolderEndsTheListWhereItIsNeeded) {
  const Row recentDocs{HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\RecentDocs", L"*.*",
                       1};
  EXPECT_EQ(Fill(104, paths_), std::vector<Row>{recentDocs});
  paths_.shellFolders.erase(CSIDL_PRINTHOOD);
  const std::vector<Row> pictureManager = Fill(225, paths_);
  ASSERT_EQ(pictureManager.size(), 2u);
  EXPECT_EQ(pictureManager[1].selector, L"LastTreeSelection");
  paths_.shellFolders[CSIDL_PRINTHOOD] = L"C:\\Hood";  // too short to drop nine characters from
  EXPECT_TRUE(Fill(116, paths_).empty());
  paths_.shellFolders[CSIDL_PRINTHOOD] = L"C:\\Users\\me\\PrintHood";
  EXPECT_EQ(Fill(116, paths_), std::vector<Row>{File(L"C:\\Users\\me\\UserData\\", L"*.*", 1)});
  EXPECT_EQ(Fill(369, paths_),
            std::vector<Row>{File(L"C:\\Users\\me\\Local Settings\\Microsoft\\Media Player\\", L".wmdb", 11)});
  EXPECT_TRUE(Fill(106, paths_).empty()) << "no TEMP variable";
  paths_.variables[L"TEMP"] = L"C:\\Temp";
  EXPECT_EQ(Fill(106, paths_), std::vector<Row>{File(L"C:\\Temp\\", L"*.*", 10)});
}

TEST_F(ItemLocations, RegistryRowsKeepTheirOrderAndRoots) {
  const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
  EXPECT_EQ(Fill(119, paths_),
            (std::vector<Row>{{HKEY_LOCAL_MACHINE, winlogon, L"DefaultUserName", 0},
                              {HKEY_LOCAL_MACHINE, winlogon, L"AltDefaultUserName", 0},
                              {HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer",
                               L"Logon User Name", 0}}));
  const std::vector<Row> frontPage = Fill(213, paths_);
  ASSERT_EQ(frontPage.size(), 6u);
  EXPECT_EQ(frontPage[4].path, L"Software\\Microsoft\\FrontPage\\Explorer\\FrontPage Explorer\\Settings");
  EXPECT_EQ(frontPage[4].selector, L"LastWebOpen");
  EXPECT_EQ(frontPage[5].path, L"Software\\Microsoft\\FrontPage\\Editor\\Recent Templates");
  const std::vector<Row> acdsee = Fill(270, paths_);
  ASSERT_EQ(acdsee.size(), 2u);
  EXPECT_EQ(acdsee[0].selector, L"HistPaths");
  EXPECT_EQ(acdsee[1].selector, L"HistMCFDestFolder");
}

TEST_F(ItemLocations, IncrediMailUsesTheCurrentIdentityFolder) {
  paths_.registryTexts[testing::FakeRegistryName(HKEY_CURRENT_USER, L"Software\\IncrediMail", L"ApplicationPath")] =
      L"C:\\IM";
  EXPECT_TRUE(Fill(363, paths_).empty()) << "no current identity";
  paths_.registryTexts[testing::FakeRegistryName(HKEY_CURRENT_USER, L"Software\\IncrediMail\\Identities")] = L"{4B2}";
  const std::wstring store = L"C:\\IM\\Identities\\{4B2}\\Message Store\\";
  EXPECT_EQ(Fill(363, paths_),
            (std::vector<Row>{File(store, L"Deleted Items.imm", 12), File(store, L"Deleted Items.imh", 12)}));
  EXPECT_EQ(Fill(362, paths_), std::vector<Row>{File(L"C:\\IM\\Identities\\{4B2}\\AddressBook\\", L"*.*", 10)});
}

TEST_F(ItemLocations, MessengerAddsTheLogFolderOfEveryPassport) {
  const std::wstring passports = L"Software\\Microsoft\\MSNMessenger\\PerPassportSettings";
  paths_.subKeys[testing::FakeRegistryName(HKEY_CURRENT_USER, passports)] = {L"111", L"222", L"333"};
  paths_.registryTexts[testing::FakeRegistryName(HKEY_CURRENT_USER, passports + L"\\111", L"MessageLogPath")] =
      L"C:\\Logs\\one";
  paths_.registryTexts[testing::FakeRegistryName(HKEY_CURRENT_USER, passports + L"\\333", L"MessageLogPath")] =
      L"D:\\three";
  EXPECT_EQ(Fill(kItemMessengerLogs, paths_),
            (std::vector<Row>{File(L"C:\\Logs\\one\\", L"*.*", 10), File(L"D:\\three\\", L"*.*", 10)}));
}

TEST(MachineRegistry, SubKeysAreListedInIndexOrder) {
  testing::TestKey key;
  for (const wchar_t* name : {L"111", L"222", L"333"}) key.CreateKey(name);
  EXPECT_EQ(MachinePaths().SubKeyNames(key.Root(), key.Path()), (std::vector<std::wstring>{L"111", L"222", L"333"}));
  EXPECT_TRUE(MachinePaths().SubKeyNames(key.Root(), key / L"missing").empty());
}

TEST(EveryItem, FillsAtMostTwentySixWellFormedRecordsAndRefillsAfresh) {
  const CCatalogue catalogue = CCatalogue::Build();
  int itemsWithLocations = 0;
  ForEachNode(catalogue.Root(), [&](CMyObject& node) {
    if (node.Level() != CMyObject::kItem) return;
    FillLocations(node);
    const int first = node.LocationCount();
    FillLocations(node);
    EXPECT_EQ(node.LocationCount(), first) << "item " << node.Id() << " kept records of the first fill";
    EXPECT_LE(first, 26);
    itemsWithLocations += first > 0 ? 1 : 0;
    for (const LocationRecord& record : node.Locations()) {
      if (!record.IsRegistry() && !record.path.empty()) {
        EXPECT_EQ(record.path.back(), L'\\') << "item " << node.Id();
      }
    }
  });
  EXPECT_GT(itemsWithLocations, 60);
  for (const unsigned id : {114u, 115u, 117u, 124u, 135u, 157u, 161u, 212u, 248u, 250u, 259u, 266u, 271u, 280u, 307u}) {
    CMyObject item;
    item.SetId(id);
    FillLocations(item);
    EXPECT_EQ(item.LocationCount(), 0) << "item " << id;
  }
}

}  // namespace
}  // namespace lumenor
