#include "engine/Locations.h"

#include "catalogue/ItemIds.h"
#include "engine/ProfileLookup.h"
#include "engine/RegistryTraces.h"

#include <shlobj.h>

#include <initializer_list>
#include <iterator>
#include <optional>
#include <string>

namespace lumenor {

namespace {

constexpr wchar_t kExplorer[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer";
constexpr wchar_t kOffice[] = L"Software\\Microsoft\\Office\\11.0";
constexpr wchar_t kOfficeCommon[] = L"Software\\Microsoft\\Office\\11.0\\Common";
constexpr wchar_t kAcdsee[] = L"Software\\ACD Systems\\ACDSee\\50";
constexpr wchar_t kFrontPageExplorer[] = L"Software\\Microsoft\\FrontPage\\Explorer\\FrontPage Explorer\\";
constexpr wchar_t kTorrentClientFiles[5][16] = {L"dht.dat", L"dht.dat.old", L"resume.dat.old", L"resume.dat",
                                                L"*.torrent"};

class LocationFiller {
 public:
  LocationFiller(std::vector<LocationRecord>& list, const SystemPaths& paths) : list_(list), paths_(paths) {}

  void Registry(HKEY root, std::wstring_view path, std::wstring_view selector, int kind = 0) {
    Add(root, path, selector, kind);
  }
  void WholeKey(std::wstring_view path, int kind = 0) { Registry(HKEY_CURRENT_USER, path, kWholeKey, kind); }

  // Folders end with a backslash; one read from elsewhere may lack it.
  void File(std::wstring folder, std::wstring_view selector, int kind) {
    if (!folder.empty() && folder.back() != L'\\') {
      folder += L'\\';
    }
    Add(nullptr, folder, selector, kind);
  }

  std::optional<std::wstring> AppData() const { return paths_.ShellFolder(CSIDL_APPDATA); }
  std::optional<std::wstring> Documents() const { return paths_.ShellFolder(CSIDL_PERSONAL); }
  std::optional<std::wstring> Folder(int csidl) const { return paths_.ShellFolder(csidl); }
  std::optional<std::wstring> WindowsFolder() const { return paths_.WindowsFolder(); }

  // The user's profile folder with a trailing backslash: the PrintHood folder without its
  // last nine characters ("PrintHood").
  std::optional<std::wstring> Profile() const { return WithoutLast(paths_.ShellFolder(CSIDL_PRINTHOOD), 9); }
  // The folder above the CD burning area ("CD Burning" is ten characters).
  std::optional<std::wstring> AboveCdBurning() const { return WithoutLast(paths_.ShellFolder(CSIDL_CDBURN_AREA), 10); }

  const SystemPaths& Paths() const { return paths_; }

 private:
  static std::optional<std::wstring> WithoutLast(std::optional<std::wstring> folder, size_t characters) {
    if (!folder || folder->size() <= characters) {
      return std::nullopt;
    }
    folder->resize(folder->size() - characters);
    return folder;
  }

  // A record whose text does not fit, or one past the bound, is left out.
  void Add(HKEY rootKey, std::wstring_view path, std::wstring_view selector, int kind) {
    if (list_.size() >= kMaxFixedItemLocations || path.size() > kMaxLocationText ||
        selector.size() > kMaxLocationText) {
      return;
    }
    LocationRecord& record = list_.emplace_back();
    record.rootKey = rootKey;
    record.rootPrefix = RootPrefixOf(rootKey);
    record.path = path;
    record.selector = selector;
    record.kind = kind;
  }

  std::vector<LocationRecord>& list_;
  const SystemPaths& paths_;
};

void FillWindowsEntries(LocationFiller& add, unsigned id) {
  const std::wstring explorer = kExplorer;
  switch (id) {
    case kItemDocumentHistory: {
      add.WholeKey(explorer + L"\\RecentDocs", 1);
      const auto recent = add.Folder(CSIDL_RECENT);
      if (!recent) return;
      add.File(*recent + L"\\", L"*.*", kMatchEveryFile);
      return;
    }
    case 105:
      add.WholeKey(L"Software\\Microsoft\\Search Assistant\\ACMru", 1);
      return;
    case kItemTemporaryFiles: {
      const auto temp = add.Paths().EnvironmentVariable(L"TEMP");
      if (!temp) return;
      add.File(*temp + L"\\", L"*.*", kMatchEveryFile);
      return;
    }
    case kItemRecycleBins:
      for (const std::wstring& root : add.Paths().DriveRoots()) {
        if (add.Paths().DriveType(root) == DRIVE_FIXED) {
          add.File(root + L"RECYCLER\\", L"*.*", kMatchEveryFile);
          add.File(root + L"Recycled\\", L"*.*", kMatchEveryFile);
        }
      }
      return;
    case 108:
      add.WholeKey(explorer + L"\\UserAssist", 1);
      return;
    case 109:
      add.WholeKey(explorer + L"\\MenuOrder\\Start Menu", 1);
      add.WholeKey(explorer + L"\\MenuOrder\\Start Menu2", 1);
      return;
    case kItemWindowsLogFiles: {
      const auto windows = add.Folder(CSIDL_WINDOWS);
      if (!windows) return;
      add.File(*windows + L"\\", L"setupapi.log", kMatchExactName);
      add.File(*windows + L"\\", L"DirectX.log", kMatchExactName);
      return;
    }
    case kItemPagingFile: {
      const auto pagingFiles = add.Paths().RegistryText(
          HKEY_LOCAL_MACHINE, L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Memory Management",
          L"PagingFiles");
      if (!pagingFiles) return;
      const PagingFile pagingFile = ParsePagingFile(*pagingFiles);
      if (pagingFile.folder.empty() || pagingFile.name.empty()) return;
      add.File(pagingFile.folder, pagingFile.name, kMatchExactName);
      return;
    }
    case 112: {
      const auto windows = add.WindowsFolder();
      if (!windows) return;
      add.File(*windows + L"\\temp\\", L"*.*", 1);
      return;
    }
    case 113:
      add.WholeKey(explorer + L"\\RunMRU");
      return;
    case 116: {
      const auto profile = add.Profile();
      if (!profile) return;
      add.File(*profile + L"UserData\\", L"*.*", 1);
      return;
    }
    case 118: {
      const auto burning = add.Folder(CSIDL_CDBURN_AREA);
      if (!burning) return;
      add.File(*burning + L"\\", L"*.*", 1);
      return;
    }
    case 119:
      add.Registry(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon",
                   L"DefaultUserName");
      add.Registry(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon",
                   L"AltDefaultUserName");
      add.Registry(HKEY_CURRENT_USER, explorer, L"Logon User Name");
      return;
    case 120: {
      const auto windows = add.WindowsFolder();
      if (!windows) return;
      add.File(*windows + L"\\Debug\\", L"*.*", 1);
      return;
    }
    case 121:
      add.WholeKey(explorer + L"\\ComDlg32");
      return;
    case 122:
      add.WholeKey(L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List");
      return;
    case 123:
      add.WholeKey(explorer + L"\\Map Network Drive MRU");
      return;
    case 125:
      add.Registry(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit", L"lastkey");
      return;
    case 126:
      add.WholeKey(L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Wordpad\\Recent File List");
      return;
    default:
      return;
  }
}

void FillInternetExplorer(LocationFiller& add, unsigned id) {
  const auto shellFolder = [&](int csidl) {
    const auto folder = add.Folder(csidl);
    if (folder) add.File(*folder + L"\\", L"*.*", kMatchEveryFile);
  };
  switch (id) {
    case 129:
      shellFolder(CSIDL_INTERNET_CACHE);
      return;
    case 130:
      shellFolder(CSIDL_HISTORY);
      return;
    case 131:
      shellFolder(CSIDL_FAVORITES);
      return;
    case 132:
      shellFolder(CSIDL_COOKIES);
      return;
    case 133:
      add.Registry(HKEY_CURRENT_USER, L"Software\\Microsoft\\Internet Explorer\\Main", L"Start Page");
      return;
    case 136:
      add.Registry(HKEY_CURRENT_USER, L"Software\\Microsoft\\Internet Explorer", L"Download Directory");
      return;
    case 137:
      add.Registry(HKEY_CURRENT_USER, L"Software\\Microsoft\\Internet Explorer\\Main", L"Save Directory");
      return;
    case 138: {
      const auto appData = add.AppData();
      if (!appData) return;
      add.File(*appData + L"\\Microsoft\\Internet Explorer\\", L".txt", kMatchExtension);
      return;
    }
    case 139:
      add.WholeKey(L"Software\\Microsoft\\Internet Explorer\\IntelliForms\\SPW");
      return;
    case 141:
      add.WholeKey(L"Software\\Microsoft\\Internet Explorer\\TypedURLs");
      return;
    default:
      return;
  }
}

// Netscape and Firefox keep their files in the first profile under AppData, and their
// caches under the local application data of the user's profile.
void FillMozillaBrowser(LocationFiller& add, unsigned id, const wchar_t* applicationFolder,
                        const wchar_t* localProfiles, unsigned cacheItem) {
  const auto profileName = LookUpProfileName(add.Paths(), applicationFolder);
  if (!profileName) return;
  if (id == cacheItem) {
    const auto profile = add.Profile();
    if (!profile) return;
    add.File(*profile + localProfiles + *profileName + L"Cache\\", L"*.*", kMatchEveryFile);
    return;
  }
  const auto appData = add.AppData();
  if (!appData) return;
  const std::wstring folder = *appData + applicationFolder + L"Profiles\\" + *profileName;
  const auto files = [&](std::initializer_list<const wchar_t*> names) {
    for (const wchar_t* name : names) add.File(folder, name, kMatchExactName);
  };
  switch (id) {
    // Netscape Navigator 9.x
    case 144:
      files({L"history.dat"});
      return;
    case 145:
      files({L"formhistory.dat"});
      return;
    case 146:
      files({L"cookies.txt", L"webappsstore.sqlite"});
      return;
    case 147:
      files({L"history.dat", L"localstore.rdf"});
      return;
    case 148:
      files({L"bookmarks.bak", L"bookmarks.html"});
      add.File(folder + L"bookmarkbackups\\", L"*.*", kMatchEveryFile);
      return;
    case 149:
      files({L"linkpad.sqlite"});
      return;
    case 150:
      files({L"key3.db"});
      return;
    // Mozilla Firefox 3.x
    case 164:
      files({L"places.sqlite", L"sessionstore.js", L"places.sqlite-journal"});
      return;
    case 165:
      files({L"formhistory.sqlite"});
      return;
    case 167:
      files({L"downloads.sqlite"});
      return;
    case 168:
      files({L"cookies.sqlite", L"webappsstore.sqlite"});
      return;
    case 169:
      files({L"key3.db", L"signons3.txt"});
      return;
    default:
      return;
  }
}

void FillOpera(LocationFiller& add, unsigned id) {
  const auto appData = add.AppData();
  if (!appData) {
    // The download list is recorded even without AppData, with an empty folder that
    // nothing will walk.
    if (id == kItemOperaTransfers) add.File(L"", L"download.dat", kMatchExactName);
    return;
  }
  const std::wstring profile = *appData + L"\\Opera\\Opera\\profile\\";
  switch (id) {
    case 158:
      add.File(profile + L"sessions\\", L"autosave.win", kMatchExactName);
      return;
    case 159:
      add.File(profile, L"global.dat", kMatchExactName);
      add.File(profile, L"vlink4.dat", kMatchExactName);
      return;
    case 160:
      add.File(profile, L"cookies4.dat", kMatchExactName);
      return;
    case kItemOperaTransfers:
      add.File(profile, L"download.dat", kMatchExactName);
      return;
    default:
      return;
  }
}

void FillInstantMessaging(LocationFiller& add, unsigned id) {
  switch (id) {
    case 183:
    case 184: {
      const auto appData = add.AppData();
      if (!appData) return;
      add.File(*appData + L"\\ICQ\\", id == 183 ? L"Messages.mdb" : L"Application.mdb", kMatchExactName);
      return;
    }
    case 191:
    case 192:
    case 193: {
      const auto yahoo = add.Paths().RegistryText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Yahoo\\Essentials", L"MainDir");
      if (!yahoo) return;
      const wchar_t* sub = id == 191   ? L"\\Messenger\\cache\\"
                           : id == 192 ? L"\\Messenger\\Profiles\\"
                                       : L"\\Messenger\\logs\\";
      add.File(*yahoo + sub, L"*.*", kMatchEveryFile);
      return;
    }
    case kItemMessengerLogs: {
      constexpr wchar_t kPassports[] = L"Software\\Microsoft\\MSNMessenger\\PerPassportSettings";
      for (const std::wstring& passport : add.Paths().SubKeyNames(HKEY_CURRENT_USER, kPassports)) {
        const auto logPath =
            add.Paths().RegistryText(HKEY_CURRENT_USER, std::wstring(kPassports) + L"\\" + passport, L"MessageLogPath");
        if (logPath) add.File(*logPath + L"\\", L"*.*", kMatchEveryFile);
      }
      return;
    }
    default:
      return;
  }
}

void FillOffice(LocationFiller& add, unsigned id) {
  const std::wstring office = kOffice;
  const std::wstring openFind = std::wstring(kOfficeCommon) + L"\\Open Find\\Microsoft Office ";
  switch (id) {
    case 210: {
      const auto appData = add.AppData();
      if (!appData) return;
      add.File(*appData + L"\\Microsoft\\office\\Recent\\", L"*.*", kMatchEveryFile);
      return;
    }
    case 211:
      add.WholeKey(std::wstring(kOfficeCommon) + L"\\Internet\\Server Cache");
      return;
    case 213: {
      const std::wstring frontPage = kFrontPageExplorer;
      for (const wchar_t* list :
           {L"Recent File List", L"Recent Page List", L"Recent Web List", L"Recently Created Servers"}) {
        add.WholeKey(frontPage + list);
      }
      add.Registry(HKEY_CURRENT_USER, frontPage + L"Settings", L"LastWebOpen");
      add.WholeKey(L"Software\\Microsoft\\FrontPage\\Editor\\Recent Templates");
      return;
    }
    case 215:
      add.WholeKey(openFind + L"Word\\Settings");
      add.Registry(HKEY_CURRENT_USER, office + L"\\Word\\Data", L"Settings");
      return;
    case 216:
      add.WholeKey(openFind + L"Access\\Settings");
      add.WholeKey(office + L"\\Access\\Settings");
      return;
    case 217:
      add.WholeKey(openFind + L"Excel\\Settings");
      add.WholeKey(office + L"\\Excel\\Recent Files");
      return;
    case 218:
      add.WholeKey(office + L"\\Visio\\Application");
      return;
    case 219:
      add.WholeKey(office + L"\\PowerPoint\\Recent File List");
      return;
    case 220:
      add.WholeKey(openFind + L"Publisher\\Settings");
      add.WholeKey(office + L"\\Publisher\\Recent File List");
      return;
    case 221:
      add.WholeKey(openFind + L"FrontPage\\Settings");
      return;
    case 222:
      add.WholeKey(office + L"\\MS Project\\Recent File List");
      return;
    case 223:
      add.WholeKey(openFind + L"InfoPath\\Settings");
      add.WholeKey(office + L"\\InfoPath\\Recent File List");
      return;
    case 224:
      add.WholeKey(office + L"\\Clip Organizer\\Search\\Last Query");
      return;
    case 225: {
      add.Registry(HKEY_CURRENT_USER, office + L"\\OIS\\Options", L"LastTreeConfig");
      add.Registry(HKEY_CURRENT_USER, office + L"\\OIS\\Options", L"LastTreeSelection");
      const auto profile = add.Profile();
      if (!profile) return;
      add.File(*profile + L"Local Settings\\Application Data\\Microsoft\\OIS\\", L"*.*", kMatchEveryFile);
      return;
    }
    case 226:
      add.WholeKey(L"Software\\Microsoft\\Snapshot Viewer\\Recent File List");
      return;
    case 227:
      add.WholeKey(L"Software\\Microsoft\\OfficeProfileWizard\\11.0\\RecentFileList");
      return;
    default:
      return;
  }
}

void FillMultimedia(LocationFiller& add, unsigned id) {
  const std::wstring acdsee = kAcdsee;
  switch (id) {
    case 246:
      add.WholeKey(L"Software\\Microsoft\\MediaPlayer\\Player\\RecentFileList");
      return;
    case 247:
      add.WholeKey(L"Software\\Microsoft\\MediaPlayer\\Player\\RecentURLList");
      return;
    case 369: {
      const auto above = add.AboveCdBurning();
      if (!above) return;
      add.File(*above + L"Media Player\\", L".wmdb", kMatchExtension);
      return;
    }
    case 251:
    case 252: {
      const auto profile = add.Profile();
      if (!profile) return;
      if (id == 251) {
        add.File(*profile + L"Application Data\\Winamp\\", L".bm", kMatchExtension);
      } else {
        add.File(*profile + L"Application Data\\Winamp\\Plugins\\ml\\", L"*.*", kMatchEveryFile);
      }
      return;
    }
    case 256: {
      const auto appData = add.AppData();
      if (!appData) return;
      const std::wstring real = *appData + L"\\Real\\RealPlayer\\";
      add.File(real, L"cookies.txt", kMatchExactName);
      add.File(real, L"realplayer.ste", kMatchExactName);
      add.File(real + L"ErrorLogs\\", L"*.*", 1);
      add.File(real + L"History\\", L"*.*", 1);
      return;
    }
    case 258:
      add.WholeKey(L"Software\\DivXNetworks\\DivX Player\\RecentFiles");
      return;
    case 261:
      add.Registry(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Apple Computer, Inc.\\QuickTime\\Recent Movies", kWholeKey);
      return;
    case 263:
    case 265: {
      const auto appData = add.AppData();
      if (!appData) return;
      if (id == 263) {
        add.File(*appData + L"\\Apple Computer\\QuickTime\\", L"*.*", kMatchEveryFile);
      } else {
        add.File(*appData + L"\\ACD Systems\\ImageDB\\", L"*.*", 1);
      }
      return;
    }
    case 267:
      add.Registry(HKEY_CURRENT_USER, acdsee, L"HistPaths");
      return;
    case 268:
      add.Registry(HKEY_CURRENT_USER, acdsee, L"HistMCFDestFolder");
      return;
    case 269:
      add.Registry(HKEY_CURRENT_USER, acdsee, L"OpenFolder");
      return;
    case 270:  // the same two values as 267 and 268
      add.Registry(HKEY_CURRENT_USER, acdsee, L"HistPaths");
      add.Registry(HKEY_CURRENT_USER, acdsee, L"HistMCFDestFolder");
      return;
    default:
      return;
  }
}

void FillFileSharing(LocationFiller& add, unsigned id) {
  if (id == 283 || id == 289) {
    const auto documents = add.Documents();
    if (!documents) return;
    add.File(*documents + L"\\Downloads\\", L"*.*", 1);
    return;
  }
  if (id >= 320 && id <= 322) {
    const auto bitComet = add.Paths().RegistryText(HKEY_CURRENT_USER, L"Software\\BitComet", L"");
    if (!bitComet) return;
    if (id == 320) {
      add.File(*bitComet + L"\\", L"BitComet.xml", kMatchExactName);
    } else if (id == 321) {
      add.File(*bitComet + L"\\torrents\\", L"*.*", kMatchEveryFile);
      add.File(*bitComet + L"\\torrents\\", L"signons.txt", kMatchExactName);
    } else {
      add.File(*bitComet + L"\\", L"Downloads.xml", kMatchExactName);
    }
    return;
  }
  const auto appData = add.AppData();
  if (!appData) return;
  const std::wstring azureus = *appData + L"\\Azureus\\";
  const std::wstring limeWire = *appData + L"\\LimeWire\\";
  switch (id) {
    case 278:
      add.File(azureus + L"torrents\\", L"*.*", 1);
      return;
    case 279:
      for (const wchar_t* name :
           {L"downloads.config", L"downloads.config.bak", L"tracker.config", L"tracker.config.bak"}) {
        add.File(azureus, name, kMatchExactName);
      }
      add.File(azureus + L"dht\\", L"*.*", 1);
      return;
    case 281:
      add.File(azureus + L"logs\\", L"*.*", 1);
      return;
    case 285:
    case 288: {
      // "*.torrent" is never matched by name in a scan, but an erase uses it as a pattern.
      const std::wstring client = *appData + (id == 285 ? L"\\BitTorrent\\" : L"\\uTorrent\\");
      for (const wchar_t* name : kTorrentClientFiles) add.File(client, name, kMatchExactName);
      return;
    }
    case 306:
      add.File(limeWire, L"limewire.props", kMatchExactName);
      add.File(limeWire, L"installation.props", kMatchExactName);
      return;
    case 308:
      add.File(limeWire, L"fileurns.cache", kMatchExactName);
      add.File(limeWire, L"fileurns.bak", kMatchExactName);
      return;
    default:
      return;
  }
}

void FillMail(LocationFiller& add, unsigned id) {
  if (id >= 337 && id <= 343) {
    const auto profileName = LookUpProfileName(add.Paths(), L"\\Thunderbird\\");
    if (!profileName) return;
    const auto appData = add.AppData();
    if (!appData) return;
    const std::wstring profile = *appData + L"\\Thunderbird\\Profiles\\" + *profileName;
    switch (id) {
      case 337:
        add.File(profile, L"signons.txt", kMatchExactName);
        return;
      case 338:
        add.File(profile, L"key3.db", kMatchExactName);
        return;
      case 339:
        add.File(profile + L"Mail\\", L"Sent.msf", kMatchExactName);
        return;
      case 340:
        add.File(profile + L"Mail\\", L"Trash.msf", kMatchExactName);
        return;
      case 341:
        add.File(profile + L"Mail\\", L"Drafts.msf", kMatchExactName);
        return;
      case 342:
        add.File(profile + L"Mail\\", L"Unsent Messages.msf", kMatchExactName);
        return;
      default:
        add.File(profile + L"Mail\\", L"Inbox.msf", kMatchExactName);
        return;
    }
  }
  if (id == 352) {
    const auto attachments =
        add.Paths().RegistryText(HKEY_CURRENT_USER, L"Software\\Qualcomm\\Eudora\\LaunchManager", L"Path#1");
    if (attachments) add.File(*attachments + L"\\", L"*.*", kMatchEveryFile);
    return;
  }
  if (id == 355) {
    const auto attachments = LookUpPocoMailFolder(add.Paths(), PocoMailFolder::kAttachments);
    if (attachments) add.File(*attachments, L"*.*", kMatchEveryFile);
    return;
  }
  if (id >= 357 && id <= 360) {
    const auto mail = LookUpPocoMailFolder(add.Paths(), PocoMailFolder::kMail);
    if (!mail) return;
    const wchar_t* box = id == 357 ? L"Trash.mbx" : id == 358 ? L"Out.mbx" : id == 359 ? L"Sent.mbx" : L"Draft.mbx";
    add.File(*mail, box, kMatchExactName);
    return;
  }
  if (id >= 362 && id <= 366) {
    const auto incrediMail = add.Paths().RegistryText(HKEY_CURRENT_USER, L"Software\\IncrediMail", L"ApplicationPath");
    if (!incrediMail) return;
    const auto identity = add.Paths().RegistryText(HKEY_CURRENT_USER, L"Software\\IncrediMail\\Identities", L"");
    if (!identity) return;
    const std::wstring folder = *incrediMail + L"\\Identities\\" + *identity;
    if (id == 362) {
      add.File(folder + L"\\AddressBook\\", L"*.*", kMatchEveryFile);
      return;
    }
    const wchar_t* box = id == 363 ? L"Deleted Items" : id == 364 ? L"Outbox" : id == 365 ? L"Sent Items" : L"Drafts";
    for (const wchar_t* extension : {L".imm", L".imh"}) {
      add.File(folder + L"\\Message Store\\", std::wstring(box) + extension, kMatchExactName);
    }
    return;
  }

  const auto appData = add.AppData();
  if (!appData) {
    // The PocoMail cache is recorded even without AppData, with an empty folder that
    // nothing will walk.
    if (id == kItemPocoMailCache) add.File(L"", L"*.*", kMatchEveryFile);
    return;
  }
  const std::wstring eudora = *appData + L"\\Qualcomm\\Eudora\\";
  const auto files = [&](std::initializer_list<const wchar_t*> names) {
    for (const wchar_t* name : names) add.File(eudora, name, kMatchExactName);
  };
  switch (id) {
    case 345:
      files({L"Trash.mbx", L"Trash.toc"});
      return;
    case 346:
      files({L"Out.mbx", L"Out.toc"});
      return;
    case 347:
      files({L"History.lst"});
      return;
    case 348:
      add.File(eudora + L"EudPriv\\Ads\\AdCache\\", L"*.*", kMatchEveryFile);
      return;
    case 350:
      files({L"NNdbase.toc", L"NNdbase.txt"});
      return;
    case 351:
      files({L"eudora.log"});
      return;
    case kItemPocoMailCache:
      add.File(*appData + L"\\PocoMail\\Cache\\", L"*.*", kMatchEveryFile);
      return;
    case 356:
      add.File(*appData + L"\\PocoMail\\", L"history.txt", kMatchExactName);
      return;
    default:
      return;
  }
}

void FillThirdParty(LocationFiller& add, unsigned id) {
  switch (id) {
    case 370:
      add.WholeKey(L"Software\\Adobe\\Acrobat Reader\\9.0\\AVGeneral\\cRecentFiles");
      return;
    case 372: {
      const auto appData = add.AppData();
      if (!appData) return;
      add.File(*appData + L"\\Macromedia\\Flash Player\\", L"*.*", kMatchEveryFile);
      return;
    }
    case 374: {
      const auto data = add.Paths().RegistryText(HKEY_CURRENT_USER, L"Software\\Google\\Google Desktop", L"data_dir");
      if (data) add.File(*data + L"\\", L"*.*", kMatchEveryFile);
      return;
    }
    default:
      return;
  }
}

}  // namespace

PagingFile ParsePagingFile(std::wstring_view value) {
  PagingFile result;
  const size_t blank = value.find(L' ');
  const std::wstring_view path = value.substr(0, blank);
  const size_t lastBackslash = path.find_last_of(L'\\');
  if (lastBackslash == std::wstring_view::npos) {
    result.name = path;
  } else {
    result.folder = path.substr(0, lastBackslash + 1);
    result.name = path.substr(lastBackslash + 1);
  }
  return result;
}

std::vector<LocationRecord> FixedItemLocations(unsigned id, const SystemPaths& paths) {
  std::vector<LocationRecord> list;
  LocationFiller add(list, paths);
  if (id >= 104 && id <= 126) {
    FillWindowsEntries(add, id);
  } else if (id >= 129 && id <= 141) {
    FillInternetExplorer(add, id);
  } else if (id >= 143 && id <= 150) {
    FillMozillaBrowser(add, id, L"\\Netscape\\Navigator\\",
                       L"Local Settings\\Application Data\\Netscape\\Navigator\\Profiles\\", 143);
  } else if (id >= 157 && id <= 162) {
    FillOpera(add, id);
  } else if (id >= 164 && id <= 169) {
    FillMozillaBrowser(add, id, L"\\Mozilla\\Firefox\\",
                       L"Local Settings\\Application Data\\Mozilla\\Firefox\\Profiles\\", 166);
  } else if (id >= 183 && id <= 205) {
    FillInstantMessaging(add, id);
  } else if (id >= 210 && id <= 227) {
    FillOffice(add, id);
  } else if ((id >= 246 && id <= 270) || id == 369) {
    FillMultimedia(add, id);
  } else if (id >= 278 && id <= 322) {
    FillFileSharing(add, id);
  } else if (id >= 337 && id <= 366) {
    FillMail(add, id);
  } else if (id >= 370 && id <= 374) {
    FillThirdParty(add, id);
  }
  return list;
}

}  // namespace lumenor
