#include "tests/support/DemoTraces.h"

#include "catalogue/ItemIds.h"
#include "engine/SystemPaths.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <shlobj.h>

namespace lumenor::testing {

namespace {

constexpr wchar_t kCurrentUser[] = L"HKEY_CURRENT_USER\\";

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
  seed.File(kItemFirefoxBrowsingHistory, profile, L"places.sqlite", "SQLite format 3");
  seed.File(kItemFirefoxBrowsingHistory, profile, L"sessionstore.js", "({windows:[]})");
  seed.File(kItemFirefoxFormHistory, profile, L"formhistory.sqlite", "SQLite format 3");
  seed.File(kItemFirefoxDownloads, profile, L"downloads.sqlite", "SQLite format 3");
  seed.File(kItemFirefoxCookies, profile, L"cookies.sqlite", "SQLite format 3");
  seed.File(kItemFirefoxPasswords, profile, L"key3.db", "key database");
  seed.File(kItemFirefoxPasswords, profile, L"signons3.txt", "#2d\r\n");

  const std::wstring opera = *appData + L"Opera\\Opera\\profile\\";
  seed.File(kItemOperaCookies, opera, L"cookies4.dat", "opera cookies");
  seed.File(kItemOperaTypedAddresses, opera, L"global.dat", "typed history");
  seed.File(kItemOfficeRecentFolder, *appData + L"Microsoft\\office\\Recent\\", L"Quarterly report.doc.LNK", "link");
  seed.File(kItemFlashPlayerHistory, *appData + L"Macromedia\\Flash Player\\#SharedObjects\\", L"settings.sol",
            "flash");
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
  SeedFolders(seed);
  return seed.Take();
}

}  // namespace lumenor::testing
