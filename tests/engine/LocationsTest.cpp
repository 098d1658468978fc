// The locations items get: the rows with logic (drives, paging file, profiles, PocoMail,
// IncrediMail, Messenger), stopping at the first missing folder, and bounds.
#include "catalogue/CMyObject.h"
#include "catalogue/CatalogueTable.h"
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
  std::vector<Row> rows;
  for (const LocationRecord& record : FixedItemLocations(id, paths)) {
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
  const std::vector<Row> expected = {
      File(L"C:\\RECYCLER\\", L"*.*", kMatchEveryFile), File(L"C:\\Recycled\\", L"*.*", kMatchEveryFile),
      File(L"E:\\RECYCLER\\", L"*.*", kMatchEveryFile), File(L"E:\\Recycled\\", L"*.*", kMatchEveryFile)};
  EXPECT_EQ(Fill(kItemRecycleBins, paths_), expected);
  // The test machine has the same drives.
  EXPECT_EQ(Fill(kItemRecycleBins, MachinePaths()), expected);
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
  EXPECT_EQ(Fill(kItemPagingFile, paths_), std::vector<Row>{File(L"C:\\", L"pagefile.sys", kMatchExactName)});
  paths_.registryTexts[setting] = L"pagefile.sys";
  EXPECT_TRUE(Fill(kItemPagingFile, paths_).empty()) << "no folder, nothing to look in";
}

TEST_F(ItemLocations, BrowserProfilesComeFromTheFirstProfilesPath) {
  const std::wstring firefox = appData_ + L"\\Mozilla\\Firefox\\";
  MakeFile(firefox + L"profiles.ini",
           "[General]\r\nStartWithLastProfile=1\r\n\r\n[Profile0]\r\nName=default\r\n"
           "IsRelative=1\r\nPath=Profiles/ab12.default\r\n\r\n[Profile1]\r\nPath=Profiles/zz\r\n");
  const std::wstring profile = firefox + L"Profiles\\ab12.default\\";
  EXPECT_EQ(Fill(kItemFirefoxBrowsingHistory, paths_),
            (std::vector<Row>{File(profile, L"places.sqlite", kMatchExactName),
                              File(profile, L"sessionstore.js", kMatchExactName),
                              File(profile, L"places.sqlite-journal", kMatchExactName)}));
  EXPECT_EQ(Fill(kItemFirefoxCache, paths_),
            std::vector<Row>{File(L"C:\\Users\\me\\Local Settings\\Application Data\\Mozilla\\Firefox\\Profiles\\"
                                  L"ab12.default\\Cache\\",
                                  L"*.*", kMatchEveryFile)});
  EXPECT_TRUE(Fill(kItemNetscapeCache, paths_).empty()) << "Netscape has no profiles.ini here";
}

TEST_F(ItemLocations, ProfilePathsThatAreOddOrDangerousAddNothingOrAnEmptyName) {
  const std::wstring thunderbird = appData_ + L"\\Thunderbird\\";
  const std::wstring profiles = thunderbird + L"Profiles\\";
  const auto withPath = [&](const std::string& path) {
    MakeFile(thunderbird + L"profiles.ini", "[Profile0]\r\nPath=" + path + "\r\n");
    return Fill(kItemThunderbirdKeyDatabase, paths_);
  };
  EXPECT_EQ(withPath("C:\\Elsewhere\\abc.default"), std::vector<Row>{File(profiles, L"key3.db", kMatchExactName)})
      << "no '/': an empty profile name";
  EXPECT_TRUE(withPath("Profiles/" + std::string(60, 'p')).empty()) << "longer than a profile path may be";
  EXPECT_TRUE(withPath("Profiles/..").empty());
  EXPECT_TRUE(withPath("Profiles/../../Windows").empty());
  EXPECT_TRUE(withPath("Profiles/").empty());
  MakeFile(thunderbird + L"profiles.ini", "[Profile0]\r\nName=x\r\n");
  EXPECT_TRUE(Fill(kItemThunderbirdKeyDatabase, paths_).empty()) << "no Path key";
}

TEST_F(ItemLocations, PocoMailFoldersAreAbsoluteOrUnderItsAppDataFolder) {
  const std::wstring poco = appData_ + L"\\PocoMail\\";
  const auto withIni = [&](const std::string& text, unsigned id) {
    MakeFile(poco + L"poco.ini", text);
    return Fill(id, paths_);
  };
  EXPECT_EQ(withIni("[Program]\r\nMailPath=D:\\Mail\\\r\n", kItemPocoMailTrash),
            std::vector<Row>{File(L"D:\\Mail\\", L"Trash.mbx", kMatchExactName)});
  EXPECT_EQ(withIni("[Program]\r\nMailPath=Mail\\\r\n", kItemPocoMailDrafts),
            std::vector<Row>{File(poco + L"Mail\\", L"Draft.mbx", kMatchExactName)});
  EXPECT_EQ(withIni("[Mail]\r\nAttachPath=D:\\Attach\r\n", kItemPocoMailAttachments),
            std::vector<Row>{File(L"D:\\Attach\\", L"*.*", kMatchEveryFile)})
      << "a folder always ends with a backslash";
  EXPECT_TRUE(withIni("[Program]\r\nMailPath=" + std::string(1000, 'm') + "\r\n", kItemPocoMailOut).empty());
  EXPECT_TRUE(withIni("[Program]\r\nMailPath=..\\..\\Windows\\\r\n", kItemPocoMailSent).empty());
  EXPECT_TRUE(withIni("[Program]\r\nAddressPath=D:\\x\\\r\n", kItemPocoMailTrash).empty()) << "MailPath is missing";
}

// Without AppData the Opera transfers, the PocoMail folders and the browsers' caches still
// make a record: with an empty folder, or with an empty profile name.
TEST_F(ItemLocations, WithoutAppDataSomeItemsKeepARecordWithAnEmptyFolderOrProfile) {
  paths_.shellFolders.erase(CSIDL_APPDATA);
  EXPECT_EQ(Fill(kItemOperaTransfers, paths_), std::vector<Row>{File(L"", L"download.dat", kMatchExactName)});
  EXPECT_EQ(Fill(kItemPocoMailCache, paths_), std::vector<Row>{File(L"", L"*.*", kMatchEveryFile)});
  EXPECT_EQ(Fill(kItemPocoMailAttachments, paths_), std::vector<Row>{File(L"", L"*.*", kMatchEveryFile)});
  EXPECT_EQ(Fill(kItemPocoMailSent, paths_), std::vector<Row>{File(L"", L"Sent.mbx", kMatchExactName)});
  EXPECT_EQ(
      Fill(kItemFirefoxCache, paths_),
      std::vector<Row>{File(L"C:\\Users\\me\\Local Settings\\Application Data\\Mozilla\\Firefox\\Profiles\\Cache\\",
                            L"*.*", kMatchEveryFile)});
  EXPECT_TRUE(Fill(kItemFirefoxCookies, paths_).empty());
  EXPECT_TRUE(Fill(kItemOperaVisitedPages, paths_).empty());
  EXPECT_TRUE(Fill(kItemPocoMailAddressHistory, paths_).empty());
  EXPECT_TRUE(Fill(kItemIeSetupLog, paths_).empty());
}

TEST_F(ItemLocations, AMissingFolderEndsTheListWhereItIsNeeded) {
  const Row recentDocs{HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\RecentDocs", L"*.*",
                       kRegistryMarked};
  EXPECT_EQ(Fill(kItemDocumentHistory, paths_), std::vector<Row>{recentDocs});
  paths_.shellFolders.erase(CSIDL_PRINTHOOD);
  const std::vector<Row> pictureManager = Fill(kItemPictureManager, paths_);
  ASSERT_EQ(pictureManager.size(), 2u);
  EXPECT_EQ(pictureManager[1].selector, L"LastTreeSelection");
  paths_.shellFolders[CSIDL_PRINTHOOD] = L"C:\\Hood";  // too short to drop nine characters from
  EXPECT_TRUE(Fill(kItemWindowsUpdateFiles, paths_).empty());
  paths_.shellFolders[CSIDL_PRINTHOOD] = L"C:\\Users\\me\\PrintHood";
  EXPECT_EQ(Fill(kItemWindowsUpdateFiles, paths_),
            std::vector<Row>{File(L"C:\\Users\\me\\UserData\\", L"*.*", kMatchNothingEraseByPattern)});
  EXPECT_EQ(
      Fill(kItemMediaPlayerDatabase, paths_),
      std::vector<Row>{File(L"C:\\Users\\me\\Local Settings\\Microsoft\\Media Player\\", L".wmdb", kMatchExtension)});
  EXPECT_TRUE(Fill(kItemTemporaryFiles, paths_).empty()) << "no TEMP variable";
  paths_.variables[L"TEMP"] = L"C:\\Temp";
  EXPECT_EQ(Fill(kItemTemporaryFiles, paths_), std::vector<Row>{File(L"C:\\Temp\\", L"*.*", kMatchEveryFile)});
}

TEST_F(ItemLocations, RegistryRowsKeepTheirOrderAndRoots) {
  const std::wstring winlogon = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon";
  EXPECT_EQ(Fill(kItemRecentLoggedOnUser, paths_),
            (std::vector<Row>{{HKEY_LOCAL_MACHINE, winlogon, L"DefaultUserName", kRegistryUnmarked},
                              {HKEY_LOCAL_MACHINE, winlogon, L"AltDefaultUserName", kRegistryUnmarked},
                              {HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer",
                               L"Logon User Name", kRegistryUnmarked}}));
  const std::vector<Row> frontPage = Fill(kItemFrontPage, paths_);
  ASSERT_EQ(frontPage.size(), 6u);
  EXPECT_EQ(frontPage[4].path, L"Software\\Microsoft\\FrontPage\\Explorer\\FrontPage Explorer\\Settings");
  EXPECT_EQ(frontPage[4].selector, L"LastWebOpen");
  EXPECT_EQ(frontPage[5].path, L"Software\\Microsoft\\FrontPage\\Editor\\Recent Templates");
  const std::vector<Row> acdsee = Fill(kItemAcdseeSearchHistory, paths_);
  ASSERT_EQ(acdsee.size(), 2u);
  EXPECT_EQ(acdsee[0].selector, L"HistPaths");
  EXPECT_EQ(acdsee[1].selector, L"HistMCFDestFolder");
}

TEST_F(ItemLocations, IncrediMailUsesTheCurrentIdentityFolder) {
  paths_.registryTexts[testing::FakeRegistryName(HKEY_CURRENT_USER, L"Software\\IncrediMail", L"ApplicationPath")] =
      L"C:\\IM";
  EXPECT_TRUE(Fill(kItemIncrediMailDeleted, paths_).empty()) << "no current identity";
  paths_.registryTexts[testing::FakeRegistryName(HKEY_CURRENT_USER, L"Software\\IncrediMail\\Identities")] = L"{4B2}";
  const std::wstring store = L"C:\\IM\\Identities\\{4B2}\\Message Store\\";
  EXPECT_EQ(Fill(kItemIncrediMailDeleted, paths_),
            (std::vector<Row>{File(store, L"Deleted Items.imm", kMatchExactName),
                              File(store, L"Deleted Items.imh", kMatchExactName)}));
  EXPECT_EQ(Fill(kItemIncrediMailAddresses, paths_),
            std::vector<Row>{File(L"C:\\IM\\Identities\\{4B2}\\AddressBook\\", L"*.*", kMatchEveryFile)});
}

TEST_F(ItemLocations, MessengerAddsTheLogFolderOfEveryPassport) {
  const std::wstring passports = L"Software\\Microsoft\\MSNMessenger\\PerPassportSettings";
  paths_.subKeys[testing::FakeRegistryName(HKEY_CURRENT_USER, passports)] = {L"111", L"222", L"333"};
  paths_.registryTexts[testing::FakeRegistryName(HKEY_CURRENT_USER, passports + L"\\111", L"MessageLogPath")] =
      L"C:\\Logs\\one";
  paths_.registryTexts[testing::FakeRegistryName(HKEY_CURRENT_USER, passports + L"\\333", L"MessageLogPath")] =
      L"D:\\three";
  EXPECT_EQ(Fill(kItemMessengerLogs, paths_), (std::vector<Row>{File(L"C:\\Logs\\one\\", L"*.*", kMatchEveryFile),
                                                                File(L"D:\\three\\", L"*.*", kMatchEveryFile)}));
}

TEST(MachineRegistry, SubKeysAreListedInIndexOrder) {
  testing::TestKey key;
  for (const wchar_t* name : {L"111", L"222", L"333"}) key.CreateKey(name);
  EXPECT_EQ(MachinePaths().SubKeyNames(key.Root(), key.Path()), (std::vector<std::wstring>{L"111", L"222", L"333"}));
  EXPECT_TRUE(MachinePaths().SubKeyNames(key.Root(), key / L"missing").empty());
}

TEST_F(ItemLocations, ARecordThatDoesNotFitIsLeftOutAndTheListGoesOn) {
  // 233 characters: the error-log folder comes to 260, one more than a record holds; the
  // history folder, two shorter, fits.
  const std::wstring appData = L"C:\\" + std::wstring(230, L'a');
  paths_.shellFolders[CSIDL_APPDATA] = appData;
  const std::wstring real = appData + L"\\Real\\RealPlayer\\";
  EXPECT_EQ(
      Fill(kItemRealPlayerHistory, paths_),
      (std::vector<Row>{File(real, L"cookies.txt", kMatchExactName), File(real, L"realplayer.ste", kMatchExactName),
                        File(real + L"History\\", L"*.*", kMatchNothingEraseByPattern)}));
}

TEST_F(ItemLocations, RecordsPastTheBoundAreLeftOut) {
  for (wchar_t letter = L'C'; letter <= L'Z'; ++letter) {
    const std::wstring root = std::wstring(1, letter) + L":\\";
    paths_.drives.push_back(root);
    paths_.driveTypes[root] = DRIVE_FIXED;
  }
  const std::vector<Row> recycleBins = Fill(kItemRecycleBins, paths_);
  ASSERT_EQ(recycleBins.size(), kMaxFixedItemLocations) << "24 fixed drives would give 48";
  EXPECT_EQ(recycleBins.front(), File(L"C:\\RECYCLER\\", L"*.*", kMatchEveryFile));
  EXPECT_EQ(recycleBins.back(), File(L"O:\\Recycled\\", L"*.*", kMatchEveryFile)) << "the first 26, in drive order";
}

TEST(EveryItem, GivesFoldersEndingInABackslashOnThisMachine) {
  int itemsWithLocations = 0;
  for (const CatalogueEntry& entry : CatalogueEntries()) {
    if (entry.level != CMyObject::kItem) continue;
    const std::vector<LocationRecord> records = FixedItemLocations(entry.id);
    itemsWithLocations += records.empty() ? 0 : 1;
    for (const LocationRecord& record : records) {
      if (!record.IsRegistry() && !record.path.empty()) {
        EXPECT_EQ(record.path.back(), L'\\') << "item " << entry.id;
      }
    }
  }
  EXPECT_GT(itemsWithLocations, 60);
}

TEST(EveryItem, ItemsShownWithoutLocationsNeverFindAnything) {
  for (const unsigned id :
       {kItemDiskErrorLogs, kItemDownloadTempFolder, kItemMemoryDump, kItemPrinterConnections, kItemIeFormData,
        kItemOperaCache, kItemOperaWandPasswords, kItemOfficeSearchHistory, kItemMediaPlayerCache,
        kItemWinampRecentFiles, kItemDivXMoviesFolder, kItemAcdseeSimpleSearch, kItemAcdseeScreenCaptureFolder,
        kItemAzureusSeeding, kItemLimeWireIncompleteFolder}) {
    EXPECT_TRUE(FixedItemLocations(id).empty()) << "item " << id;
  }
}

}  // namespace
}  // namespace lumenor
