#include "tests/support/DemoTraces.h"

#include "browserdb/BrowserSchemas.h"
#include "browserdb/SqliteDatabase.h"
#include "catalogue/ItemIds.h"
#include "engine/SystemPaths.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include <shlobj.h>
#include <sqlite3.h>

namespace lumenor::testing {

namespace {

constexpr wchar_t kCurrentUser[] = L"HKEY_CURRENT_USER\\";
// Google Chrome's "Cache" and "History" of the built-in rules (res/rules/builtin_rules.xml).
constexpr unsigned kBuiltInChromeCache = 1000;
constexpr unsigned kBuiltInChromeHistory = 1002;

class Seeder {
 public:
  explicit Seeder(std::vector<std::wstring>& failures) : failures_(failures) {}

  void Value(unsigned item, const std::wstring& keyPath, const std::wstring& name, const std::wstring& value) {
    SetRegistryText(HKEY_CURRENT_USER, keyPath, name, value);
    traces_.push_back({item, name, kCurrentUser + keyPath, true, (value.size() + 1) * sizeof(wchar_t)});
  }

  void File(unsigned item, const std::wstring& folder, const std::wstring& name, std::string_view content) {
    MakeFile(folder + name, content);
    if (!FileExists(folder + name)) {
      failures_.push_back(folder + name);
      return;
    }
    traces_.push_back({item, name, folder, false, content.size()});
  }

  // A browser database made afresh from `schema` (one statement a line) with `rows`; a
  // trace of `item` when it is given (0: the item cleans its rows, not the file).
  void Database(unsigned item, const std::wstring& folder, const std::wstring& name, std::string_view schema,
                std::string_view rows) {
    MakeFolders(folder);
    (void)DeleteFileW((folder + name).c_str());  // seeding again starts from an empty file
    bool built = false;
    {
      const SqliteDatabase database(folder + name, SqliteOpen::kCreate);
      built = database.IsOpen();
      for (const std::string& statement : SplitLines(schema)) {
        if (built && !statement.empty() && !statement.starts_with("CREATE TABLE sqlite_")) {
          built = database.Execute(statement) == SQLITE_OK;
        }
      }
      built = built && database.Execute(rows) == SQLITE_OK;
    }
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!built || !GetFileAttributesExW((folder + name).c_str(), GetFileExInfoStandard, &data)) {
      failures_.push_back(folder + name);
      return;
    }
    if (item != 0) traces_.push_back({item, name, folder, false, data.nFileSizeLow});
  }

  // A shell folder with a trailing backslash, or nothing (and a failure noted).
  std::optional<std::wstring> Folder(int csidl, const wchar_t* what) {
    const std::optional<std::wstring> folder = MachinePaths().ShellFolder(csidl | CSIDL_FLAG_CREATE);
    if (!folder) {
      failures_.push_back(what);
      return std::nullopt;
    }
    return *folder + L"\\";
  }

  std::vector<SeededTrace> Take() { return std::move(traces_); }

 private:
  std::vector<std::wstring>& failures_;
  std::vector<SeededTrace> traces_;
};

void SeedRegistryLists(Seeder& seed) {
  const std::wstring explorer = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer";
  seed.Value(kItemRunHistory, explorer + L"\\RunMRU", L"a", L"notepad\\1");
  seed.Value(kItemRunHistory, explorer + L"\\RunMRU", L"b", L"regedit\\1");
  seed.Value(kItemRunHistory, explorer + L"\\RunMRU", L"MRUList", L"ba");
  seed.Value(kItemDocumentHistory, explorer + L"\\RecentDocs\\.txt", L"0", L"budget.txt");
  seed.Value(kItemDocumentHistory, explorer + L"\\RecentDocs", L"MRUListEx", L"0");
  seed.Value(kItemIeAddressBarHistory, L"Software\\Microsoft\\Internet Explorer\\TypedURLs", L"url1",
             L"http://news.example.com/");
  seed.Value(kItemIeAddressBarHistory, L"Software\\Microsoft\\Internet Explorer\\TypedURLs", L"url2",
             L"http://mail.example.com/");
  seed.Value(kItemLastRegistryKey, L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit", L"lastkey",
             L"My Computer\\HKEY_CURRENT_USER\\Software");
  seed.Value(kItemPaintRecentFiles, L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List",
             L"File1", L"C:\\Pictures\\holiday.bmp");
  seed.Value(kItemWordPadRecentFiles,
             L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Wordpad\\Recent File List", L"File1",
             L"C:\\Documents\\letter.rtf");
  seed.Value(kItemMediaPlayerRecentFiles, L"Software\\Microsoft\\MediaPlayer\\Player\\RecentFileList", L"File0",
             L"C:\\Music\\song.mp3");
  seed.Value(kItemAcrobatRecentFiles, L"Software\\Adobe\\Acrobat Reader\\9.0\\AVGeneral\\cRecentFiles\\c1", L"tDIText",
             L"/C/Documents/contract.pdf");
}

void SeedBrowserProfiles(Seeder& seed) {
  const auto appData = seed.Folder(CSIDL_APPDATA, L"AppData");
  if (!appData) return;
  const std::wstring firefox = *appData + L"Mozilla\\Firefox\\";
  MakeFile(firefox + L"profiles.ini",
           "[General]\r\nStartWithLastProfile=1\r\n\r\n[Profile0]\r\nName=default\r\nIsRelative=1\r\n"
           "Path=Profiles/x8k2demo.default\r\n");
  const std::wstring profile = firefox + L"Profiles\\x8k2demo.default\\";
  // Firefox's own databases: visited addresses without a bookmark, so the fixed item still
  // deletes the file, and cookies while no domain is kept.
  seed.Database(kItemFirefoxBrowsingHistory, profile, L"places.sqlite", kFirefoxPlacesSchema,
                "INSERT INTO moz_origins (id, prefix, host, frecency) VALUES (1, 'https://', 'news.example.com', 100);"
                "INSERT INTO moz_places (id, url, title, rev_host, visit_count, guid, origin_id) VALUES "
                "(1, 'https://news.example.com/today', 'Today', 'moc.elpmaxe.swen.', 2, 'demoplace001', 1);"
                "INSERT INTO moz_historyvisits (place_id, visit_date, visit_type) VALUES "
                "(1, 1780000000000000, 1), (1, 1780000100000000, 1);");
  seed.File(kItemFirefoxBrowsingHistory, profile, L"sessionstore.js", "({windows:[]})");
  seed.File(kItemFirefoxFormHistory, profile, L"formhistory.sqlite", "SQLite format 3");
  seed.File(kItemFirefoxDownloads, profile, L"downloads.sqlite", "SQLite format 3");
  seed.Database(kItemFirefoxCookies, profile, L"cookies.sqlite", kFirefoxCookiesSchema,
                "INSERT INTO moz_cookies (name, value, host, path, expiry, lastAccessed, creationTime, isSecure,"
                " isHttpOnly) VALUES ('sid', 'a1', '.news.example.com', '/', 1790000000, 1, 1, 1, 1),"
                " ('ads', 'b2', '.tracker.example.net', '/', 1790000000, 1, 1, 1, 0);");
  seed.File(kItemFirefoxPasswords, profile, L"key3.db", "key database");
  seed.File(kItemFirefoxPasswords, profile, L"signons3.txt", "#2d\r\n");

  const std::wstring opera = *appData + L"Opera\\Opera\\profile\\";
  seed.File(kItemOperaCookies, opera, L"cookies4.dat", "opera cookies");
  seed.File(kItemOperaTypedAddresses, opera, L"global.dat", "typed history");
  seed.File(kItemOfficeRecentFolder, *appData + L"Microsoft\\office\\Recent\\", L"Quarterly report.doc.LNK", "link");
  seed.File(kItemFlashPlayerHistory, *appData + L"Macromedia\\Flash Player\\#SharedObjects\\", L"settings.sol",
            "flash");
}

// A Chrome profile as today's Chrome leaves it: the built-in rules' traces, not the fixed
// catalogue's.
void SeedChromeProfile(Seeder& seed) {
  const auto localAppData = seed.Folder(CSIDL_LOCAL_APPDATA, L"Local AppData");
  if (!localAppData) return;
  const std::wstring root = *localAppData + L"Google\\Chrome\\User Data\\";
  MakeFile(root + L"Local State", R"({"profile":{"info_cache":{"Default":{"name":"Person 1"}}}})");
  const std::wstring profile = root + L"Default\\";
  MakeFile(profile + L"Preferences", "{}");
  MakeFile(profile + L"Bookmarks", R"({"roots":{}})");
  seed.File(kBuiltInChromeCache, profile + L"Cache\\Cache_Data\\", L"data_1", "cached page");
  seed.File(kBuiltInChromeCache, profile + L"Cache\\Cache_Data\\", L"f_00001a", "cached picture");
  seed.File(kBuiltInChromeHistory, profile, L"History", "history of visits");
  seed.Database(0, profile + L"Network\\", L"Cookies", kChromiumCookiesSchema,
                "INSERT INTO cookies VALUES (13410000000000000, '.video.example.com', '', 'pref', '', x'763130', '/',"
                " 13420000000000000, 1, 1, 13410000000000000, 1, 1, 1, 0, 2, 443, 13410000000000000, 0, 0);"
                "INSERT INTO cookies VALUES (13410000000000001, 'mail.example.org', '', 'session', '', x'763130', '/',"
                " 13420000000000000, 1, 1, 13410000000000000, 1, 1, 1, 0, 2, 443, 13410000000000000, 0, 0);"
                "INSERT INTO cookies VALUES (13410000000000002, '.ads.example.net', '', 'id', '', x'763130', '/',"
                " 13420000000000000, 1, 1, 13410000000000000, 1, 1, 1, 0, 2, 443, 13410000000000000, 0, 0);");
}

void SeedFolders(Seeder& seed) {
  const std::optional<std::wstring> temp = MachinePaths().EnvironmentVariable(L"TEMP");
  if (temp) {
    seed.File(kItemTemporaryFiles, *temp + L"\\", L"~DF3A1.tmp", "temporary");
    seed.File(kItemTemporaryFiles, *temp + L"\\installer\\", L"setup.log", "installer log");
  }
  if (const auto recent = seed.Folder(CSIDL_RECENT, L"Recent")) {
    seed.File(kItemDocumentHistory, *recent, L"budget.txt.lnk", "link");
  }
  if (const auto cookies = seed.Folder(CSIDL_COOKIES, L"Cookies")) {
    seed.File(kItemIeCookies, *cookies, L"user@example[1].txt", "cookie");
  }
  if (const auto cache = seed.Folder(CSIDL_INTERNET_CACHE, L"Internet cache")) {
    seed.File(kItemIeTemporaryFiles, *cache + L"Content.IE5\\ABCD1234\\", L"logo[1].png", "png");
  }
  seed.File(kItemRecycleBins, L"C:\\RECYCLER\\S-1-5-21-0-0-0-1000\\", L"Dc1.txt", "deleted file");
}

}  // namespace

std::vector<SeededTrace> SeedDemoTraces(std::vector<std::wstring>& failures) {
  Seeder seed(failures);
  SeedRegistryLists(seed);
  SeedBrowserProfiles(seed);
  SeedChromeProfile(seed);
  SeedFolders(seed);
  return seed.Take();
}

}  // namespace lumenor::testing
