#include "engine/LocationTable.h"

#include "catalogue/ItemIds.h"
#include "catalogue/LocationRecord.h"
#include "engine/RegistryTraces.h"

namespace lumenor {

namespace {

constexpr std::wstring_view kEveryFile = L"*.*";

// A row reads: item, base, path after the base, selector, kind (left out on a registry row
// whose kind is unmarked).
constexpr LocationRow kRows[] = {
    // Windows Entries
    {kItemDocumentHistory, From::kCurrentUser, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\RecentDocs",
     kWholeKey, kRegistryMarked},
    {kItemDocumentHistory, From::kRecent, L"\\", kEveryFile, kMatchEveryFile},
    {kItemSearchHistory, From::kCurrentUser, L"Software\\Microsoft\\Search Assistant\\ACMru", kWholeKey,
     kRegistryMarked},
    {kItemTemporaryFiles, From::kTempVariable, L"\\", kEveryFile, kMatchEveryFile},
    {kItemRecycleBins, From::kRecycleBins, L"", kEveryFile, kMatchEveryFile},
    {kItemStartMenuClickHistory, From::kCurrentUser,
     L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\UserAssist", kWholeKey, kRegistryMarked},
    {kItemStartMenuOrderHistory, From::kCurrentUser,
     L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Start Menu", kWholeKey, kRegistryMarked},
    {kItemStartMenuOrderHistory, From::kCurrentUser,
     L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Start Menu2", kWholeKey, kRegistryMarked},
    {kItemWindowsLogFiles, From::kWindowsShellFolder, L"\\", L"setupapi.log", kMatchExactName},
    {kItemWindowsLogFiles, From::kWindowsShellFolder, L"\\", L"DirectX.log", kMatchExactName},
    {kItemPagingFile, From::kPagingFile, L"", L"", kMatchExactName},
    {kItemWindowsTempFolder, From::kWindowsDirectory, L"\\temp\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemRunHistory, From::kCurrentUser, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\RunMRU", kWholeKey},
    {kItemWindowsUpdateFiles, From::kProfile, L"UserData\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemCdBurningFolder, From::kCdBurnArea, L"\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemRecentLoggedOnUser, From::kLocalMachine, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon",
     L"DefaultUserName"},
    {kItemRecentLoggedOnUser, From::kLocalMachine, L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon",
     L"AltDefaultUserName"},
    {kItemRecentLoggedOnUser, From::kCurrentUser, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer",
     L"Logon User Name"},
    {kItemDebuggingHistory, From::kWindowsDirectory, L"\\Debug\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemCommonDialogHistory, From::kCurrentUser, L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\ComDlg32",
     kWholeKey},
    {kItemPaintRecentFiles, From::kCurrentUser,
     L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Paint\\Recent File List", kWholeKey},
    {kItemNetworkConnections, From::kCurrentUser,
     L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Map Network Drive MRU", kWholeKey},
    {kItemLastRegistryKey, From::kCurrentUser, L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit",
     L"lastkey"},
    {kItemWordPadRecentFiles, From::kCurrentUser,
     L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Wordpad\\Recent File List", kWholeKey},

    // Internet Explorer
    {kItemIeTemporaryFiles, From::kInternetCache, L"\\", kEveryFile, kMatchEveryFile},
    {kItemVisitedSites, From::kHistory, L"\\", kEveryFile, kMatchEveryFile},
    {kItemIeFavorites, From::kFavorites, L"\\", kEveryFile, kMatchEveryFile},
    {kItemIeCookies, From::kCookies, L"\\", kEveryFile, kMatchEveryFile},
    {kItemIeStartPage, From::kCurrentUser, L"Software\\Microsoft\\Internet Explorer\\Main", L"Start Page"},
    {kItemIeDownloadDirectory, From::kCurrentUser, L"Software\\Microsoft\\Internet Explorer", L"Download Directory"},
    {kItemIeSaveDirectory, From::kCurrentUser, L"Software\\Microsoft\\Internet Explorer\\Main", L"Save Directory"},
    {kItemIeSetupLog, From::kAppData, L"\\Microsoft\\Internet Explorer\\", L".txt", kMatchExtension},
    {kItemIePasswords, From::kCurrentUser, L"Software\\Microsoft\\Internet Explorer\\IntelliForms\\SPW", kWholeKey},
    {kItemIeAddressBarHistory, From::kCurrentUser, L"Software\\Microsoft\\Internet Explorer\\TypedURLs", kWholeKey},

    // Netscape Navigator 9.x
    {kItemNetscapeCache, From::kNetscapeLocalProfile, L"Cache\\", kEveryFile, kMatchEveryFile},
    {kItemNetscapePageHistory, From::kNetscapeProfile, L"", L"history.dat", kMatchExactName},
    {kItemNetscapeFormHistory, From::kNetscapeProfile, L"", L"formhistory.dat", kMatchExactName},
    {kItemNetscapeCookies, From::kNetscapeProfile, L"", L"cookies.txt", kMatchExactName},
    {kItemNetscapeCookies, From::kNetscapeProfile, L"", L"webappsstore.sqlite", kMatchExactName},
    {kItemNetscapeBrowsingHistory, From::kNetscapeProfile, L"", L"history.dat", kMatchExactName},
    {kItemNetscapeBrowsingHistory, From::kNetscapeProfile, L"", L"localstore.rdf", kMatchExactName},
    {kItemNetscapeBookmarks, From::kNetscapeProfile, L"", L"bookmarks.bak", kMatchExactName},
    {kItemNetscapeBookmarks, From::kNetscapeProfile, L"", L"bookmarks.html", kMatchExactName},
    {kItemNetscapeBookmarks, From::kNetscapeProfile, L"bookmarkbackups\\", kEveryFile, kMatchEveryFile},
    {kItemNetscapeLinkpad, From::kNetscapeProfile, L"", L"linkpad.sqlite", kMatchExactName},
    {kItemNetscapePasswords, From::kNetscapeProfile, L"", L"key3.db", kMatchExactName},

    // Opera 9.x
    {kItemOperaVisitedPages, From::kAppData, L"\\Opera\\Opera\\profile\\sessions\\", L"autosave.win", kMatchExactName},
    {kItemOperaTypedAddresses, From::kAppData, L"\\Opera\\Opera\\profile\\", L"global.dat", kMatchExactName},
    {kItemOperaTypedAddresses, From::kAppData, L"\\Opera\\Opera\\profile\\", L"vlink4.dat", kMatchExactName},
    {kItemOperaCookies, From::kAppData, L"\\Opera\\Opera\\profile\\", L"cookies4.dat", kMatchExactName},
    {kItemOperaTransfers, From::kAppDataElseNoFolder, L"\\Opera\\Opera\\profile\\", L"download.dat", kMatchExactName},

    // Mozilla Firefox 3.x
    {kItemFirefoxBrowsingHistory, From::kFirefoxProfile, L"", L"places.sqlite", kMatchExactName},
    {kItemFirefoxBrowsingHistory, From::kFirefoxProfile, L"", L"sessionstore.js", kMatchExactName},
    {kItemFirefoxBrowsingHistory, From::kFirefoxProfile, L"", L"places.sqlite-journal", kMatchExactName},
    {kItemFirefoxFormHistory, From::kFirefoxProfile, L"", L"formhistory.sqlite", kMatchExactName},
    {kItemFirefoxCache, From::kFirefoxLocalProfile, L"Cache\\", kEveryFile, kMatchEveryFile},
    {kItemFirefoxDownloads, From::kFirefoxProfile, L"", L"downloads.sqlite", kMatchExactName},
    {kItemFirefoxCookies, From::kFirefoxProfile, L"", L"cookies.sqlite", kMatchExactName},
    {kItemFirefoxCookies, From::kFirefoxProfile, L"", L"webappsstore.sqlite", kMatchExactName},
    {kItemFirefoxPasswords, From::kFirefoxProfile, L"", L"key3.db", kMatchExactName},
    {kItemFirefoxPasswords, From::kFirefoxProfile, L"", L"signons3.txt", kMatchExactName},

    // ICQ 6.5, Yahoo and MSN messengers
    {kItemIcqChatHistory, From::kAppData, L"\\ICQ\\", L"Messages.mdb", kMatchExactName},
    {kItemIcqLogonInformation, From::kAppData, L"\\ICQ\\", L"Application.mdb", kMatchExactName},
    {kItemYahooCache, From::kYahooFolder, L"\\Messenger\\cache\\", kEveryFile, kMatchEveryFile},
    {kItemYahooChatHistory, From::kYahooFolder, L"\\Messenger\\Profiles\\", kEveryFile, kMatchEveryFile},
    {kItemYahooLogs, From::kYahooFolder, L"\\Messenger\\logs\\", kEveryFile, kMatchEveryFile},
    {kItemMessengerLogs, From::kMessengerLogFolders, L"\\", kEveryFile, kMatchEveryFile},

    // Shared Office resources
    {kItemOfficeRecentFolder, From::kAppData, L"\\Microsoft\\office\\Recent\\", kEveryFile, kMatchEveryFile},
    {kItemOfficeServerCache, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\Common\\Internet\\Server Cache",
     kWholeKey},
    {kItemFrontPage, From::kCurrentUser,
     L"Software\\Microsoft\\FrontPage\\Explorer\\FrontPage Explorer\\Recent File List", kWholeKey},
    {kItemFrontPage, From::kCurrentUser,
     L"Software\\Microsoft\\FrontPage\\Explorer\\FrontPage Explorer\\Recent Page List", kWholeKey},
    {kItemFrontPage, From::kCurrentUser,
     L"Software\\Microsoft\\FrontPage\\Explorer\\FrontPage Explorer\\Recent Web List", kWholeKey},
    {kItemFrontPage, From::kCurrentUser,
     L"Software\\Microsoft\\FrontPage\\Explorer\\FrontPage Explorer\\Recently Created Servers", kWholeKey},
    {kItemFrontPage, From::kCurrentUser, L"Software\\Microsoft\\FrontPage\\Explorer\\FrontPage Explorer\\Settings",
     L"LastWebOpen"},
    {kItemFrontPage, From::kCurrentUser, L"Software\\Microsoft\\FrontPage\\Editor\\Recent Templates", kWholeKey},

    // MS Office 2003
    {kItemWord2003, From::kCurrentUser,
     L"Software\\Microsoft\\Office\\11.0\\Common\\Open Find\\Microsoft Office Word\\Settings", kWholeKey},
    {kItemWord2003, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\Word\\Data", L"Settings"},
    {kItemAccess2003, From::kCurrentUser,
     L"Software\\Microsoft\\Office\\11.0\\Common\\Open Find\\Microsoft Office Access\\Settings", kWholeKey},
    {kItemAccess2003, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\Access\\Settings", kWholeKey},
    {kItemExcel2003, From::kCurrentUser,
     L"Software\\Microsoft\\Office\\11.0\\Common\\Open Find\\Microsoft Office Excel\\Settings", kWholeKey},
    {kItemExcel2003, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\Excel\\Recent Files", kWholeKey},
    {kItemVisio2003, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\Visio\\Application", kWholeKey},
    {kItemPowerPoint2003, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\PowerPoint\\Recent File List",
     kWholeKey},
    {kItemPublisher2003, From::kCurrentUser,
     L"Software\\Microsoft\\Office\\11.0\\Common\\Open Find\\Microsoft Office Publisher\\Settings", kWholeKey},
    {kItemPublisher2003, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\Publisher\\Recent File List",
     kWholeKey},
    {kItemFrontPage2003, From::kCurrentUser,
     L"Software\\Microsoft\\Office\\11.0\\Common\\Open Find\\Microsoft Office FrontPage\\Settings", kWholeKey},
    {kItemProject2003, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\MS Project\\Recent File List",
     kWholeKey},
    {kItemInfoPath2003, From::kCurrentUser,
     L"Software\\Microsoft\\Office\\11.0\\Common\\Open Find\\Microsoft Office InfoPath\\Settings", kWholeKey},
    {kItemInfoPath2003, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\InfoPath\\Recent File List",
     kWholeKey},
    {kItemClipOrganizer, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\Clip Organizer\\Search\\Last Query",
     kWholeKey},
    {kItemPictureManager, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\OIS\\Options", L"LastTreeConfig"},
    {kItemPictureManager, From::kCurrentUser, L"Software\\Microsoft\\Office\\11.0\\OIS\\Options", L"LastTreeSelection"},
    {kItemPictureManager, From::kProfile, L"Local Settings\\Application Data\\Microsoft\\OIS\\", kEveryFile,
     kMatchEveryFile},
    {kItemSnapshotViewer, From::kCurrentUser, L"Software\\Microsoft\\Snapshot Viewer\\Recent File List", kWholeKey},
    {kItemSaveMySettings, From::kCurrentUser, L"Software\\Microsoft\\OfficeProfileWizard\\11.0\\RecentFileList",
     kWholeKey},

    // Windows Media Player, Winamp, Real Player, DivX Player, QuickTime
    {kItemMediaPlayerRecentFiles, From::kCurrentUser, L"Software\\Microsoft\\MediaPlayer\\Player\\RecentFileList",
     kWholeKey},
    {kItemMediaPlayerRecentUrls, From::kCurrentUser, L"Software\\Microsoft\\MediaPlayer\\Player\\RecentURLList",
     kWholeKey},
    {kItemMediaPlayerDatabase, From::kAboveCdBurning, L"Media Player\\", L".wmdb", kMatchExtension},
    {kItemWinampBookmarks, From::kProfile, L"Application Data\\Winamp\\", L".bm", kMatchExtension},
    {kItemWinampMediaLibrary, From::kProfile, L"Application Data\\Winamp\\Plugins\\ml\\", kEveryFile, kMatchEveryFile},
    {kItemRealPlayerHistory, From::kAppData, L"\\Real\\RealPlayer\\", L"cookies.txt", kMatchExactName},
    {kItemRealPlayerHistory, From::kAppData, L"\\Real\\RealPlayer\\", L"realplayer.ste", kMatchExactName},
    {kItemRealPlayerHistory, From::kAppData, L"\\Real\\RealPlayer\\ErrorLogs\\", kEveryFile,
     kMatchNothingEraseByPattern},
    {kItemRealPlayerHistory, From::kAppData, L"\\Real\\RealPlayer\\History\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemDivXRecentFiles, From::kCurrentUser, L"Software\\DivXNetworks\\DivX Player\\RecentFiles", kWholeKey},
    {kItemQuickTimeRecentFiles, From::kLocalMachine, L"SOFTWARE\\Apple Computer, Inc.\\QuickTime\\Recent Movies",
     kWholeKey},
    {kItemQuickTimeFavorites, From::kAppData, L"\\Apple Computer\\QuickTime\\", kEveryFile, kMatchEveryFile},

    // ACDSee 5.0: its search history is the same two values as the path history and the
    // copy and move destination.
    {kItemAcdseeImageDatabase, From::kAppData, L"\\ACD Systems\\ImageDB\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemAcdseePathHistory, From::kCurrentUser, L"Software\\ACD Systems\\ACDSee\\50", L"HistPaths"},
    {kItemAcdseeCopyMoveDestination, From::kCurrentUser, L"Software\\ACD Systems\\ACDSee\\50", L"HistMCFDestFolder"},
    {kItemAcdseeLastOpenFolder, From::kCurrentUser, L"Software\\ACD Systems\\ACDSee\\50", L"OpenFolder"},
    {kItemAcdseeSearchHistory, From::kCurrentUser, L"Software\\ACD Systems\\ACDSee\\50", L"HistPaths"},
    {kItemAcdseeSearchHistory, From::kCurrentUser, L"Software\\ACD Systems\\ACDSee\\50", L"HistMCFDestFolder"},

    // Azureus, BitTorrent, uTorrent. "*.torrent" is never matched by name in a scan, but an
    // erase uses it as a pattern.
    {kItemAzureusTorrents, From::kAppData, L"\\Azureus\\torrents\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemAzureusDownloadHistory, From::kAppData, L"\\Azureus\\", L"downloads.config", kMatchExactName},
    {kItemAzureusDownloadHistory, From::kAppData, L"\\Azureus\\", L"downloads.config.bak", kMatchExactName},
    {kItemAzureusDownloadHistory, From::kAppData, L"\\Azureus\\", L"tracker.config", kMatchExactName},
    {kItemAzureusDownloadHistory, From::kAppData, L"\\Azureus\\", L"tracker.config.bak", kMatchExactName},
    {kItemAzureusDownloadHistory, From::kAppData, L"\\Azureus\\dht\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemAzureusLogs, From::kAppData, L"\\Azureus\\logs\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemBitTorrentDownloads, From::kDocuments, L"\\Downloads\\", kEveryFile, kMatchNothingEraseByPattern},
    {kItemBitTorrentTorrents, From::kAppData, L"\\BitTorrent\\", L"dht.dat", kMatchExactName},
    {kItemBitTorrentTorrents, From::kAppData, L"\\BitTorrent\\", L"dht.dat.old", kMatchExactName},
    {kItemBitTorrentTorrents, From::kAppData, L"\\BitTorrent\\", L"resume.dat.old", kMatchExactName},
    {kItemBitTorrentTorrents, From::kAppData, L"\\BitTorrent\\", L"resume.dat", kMatchExactName},
    {kItemBitTorrentTorrents, From::kAppData, L"\\BitTorrent\\", L"*.torrent", kMatchExactName},
    {kItemUTorrentTorrents, From::kAppData, L"\\uTorrent\\", L"dht.dat", kMatchExactName},
    {kItemUTorrentTorrents, From::kAppData, L"\\uTorrent\\", L"dht.dat.old", kMatchExactName},
    {kItemUTorrentTorrents, From::kAppData, L"\\uTorrent\\", L"resume.dat.old", kMatchExactName},
    {kItemUTorrentTorrents, From::kAppData, L"\\uTorrent\\", L"resume.dat", kMatchExactName},
    {kItemUTorrentTorrents, From::kAppData, L"\\uTorrent\\", L"*.torrent", kMatchExactName},
    {kItemUTorrentDownloads, From::kDocuments, L"\\Downloads\\", kEveryFile, kMatchNothingEraseByPattern},

    // LimeWire, BitComet
    {kItemLimeWireSharedFolder, From::kAppData, L"\\LimeWire\\", L"limewire.props", kMatchExactName},
    {kItemLimeWireSharedFolder, From::kAppData, L"\\LimeWire\\", L"installation.props", kMatchExactName},
    {kItemLimeWireSharedFileInfo, From::kAppData, L"\\LimeWire\\", L"fileurns.cache", kMatchExactName},
    {kItemLimeWireSharedFileInfo, From::kAppData, L"\\LimeWire\\", L"fileurns.bak", kMatchExactName},
    {kItemBitCometDownloads, From::kBitCometFolder, L"\\", L"BitComet.xml", kMatchExactName},
    {kItemBitCometTorrents, From::kBitCometFolder, L"\\torrents\\", kEveryFile, kMatchEveryFile},
    {kItemBitCometTorrents, From::kBitCometFolder, L"\\torrents\\", L"signons.txt", kMatchExactName},
    {kItemBitCometDownloadHistory, From::kBitCometFolder, L"\\", L"Downloads.xml", kMatchExactName},

    // Thunderbird
    {kItemThunderbirdPasswords, From::kThunderbirdProfile, L"", L"signons.txt", kMatchExactName},
    {kItemThunderbirdKeyDatabase, From::kThunderbirdProfile, L"", L"key3.db", kMatchExactName},
    {kItemThunderbirdSent, From::kThunderbirdProfile, L"Mail\\", L"Sent.msf", kMatchExactName},
    {kItemThunderbirdTrash, From::kThunderbirdProfile, L"Mail\\", L"Trash.msf", kMatchExactName},
    {kItemThunderbirdDrafts, From::kThunderbirdProfile, L"Mail\\", L"Drafts.msf", kMatchExactName},
    {kItemThunderbirdUnsent, From::kThunderbirdProfile, L"Mail\\", L"Unsent Messages.msf", kMatchExactName},
    {kItemThunderbirdNews, From::kThunderbirdProfile, L"Mail\\", L"Inbox.msf", kMatchExactName},

    // Eudora
    {kItemEudoraTrash, From::kAppData, L"\\Qualcomm\\Eudora\\", L"Trash.mbx", kMatchExactName},
    {kItemEudoraTrash, From::kAppData, L"\\Qualcomm\\Eudora\\", L"Trash.toc", kMatchExactName},
    {kItemEudoraOut, From::kAppData, L"\\Qualcomm\\Eudora\\", L"Out.mbx", kMatchExactName},
    {kItemEudoraOut, From::kAppData, L"\\Qualcomm\\Eudora\\", L"Out.toc", kMatchExactName},
    {kItemEudoraAddressHistory, From::kAppData, L"\\Qualcomm\\Eudora\\", L"History.lst", kMatchExactName},
    {kItemEudoraCache, From::kAppData, L"\\Qualcomm\\Eudora\\EudPriv\\Ads\\AdCache\\", kEveryFile, kMatchEveryFile},
    {kItemEudoraNicknames, From::kAppData, L"\\Qualcomm\\Eudora\\", L"NNdbase.toc", kMatchExactName},
    {kItemEudoraNicknames, From::kAppData, L"\\Qualcomm\\Eudora\\", L"NNdbase.txt", kMatchExactName},
    {kItemEudoraLogs, From::kAppData, L"\\Qualcomm\\Eudora\\", L"eudora.log", kMatchExactName},
    {kItemEudoraAttachments, From::kEudoraAttachments, L"\\", kEveryFile, kMatchEveryFile},

    // PocoMail
    {kItemPocoMailCache, From::kAppDataElseNoFolder, L"\\PocoMail\\Cache\\", kEveryFile, kMatchEveryFile},
    {kItemPocoMailAttachments, From::kPocoMailAttachments, L"", kEveryFile, kMatchEveryFile},
    {kItemPocoMailAddressHistory, From::kAppData, L"\\PocoMail\\", L"history.txt", kMatchExactName},
    {kItemPocoMailTrash, From::kPocoMailMail, L"", L"Trash.mbx", kMatchExactName},
    {kItemPocoMailOut, From::kPocoMailMail, L"", L"Out.mbx", kMatchExactName},
    {kItemPocoMailSent, From::kPocoMailMail, L"", L"Sent.mbx", kMatchExactName},
    {kItemPocoMailDrafts, From::kPocoMailMail, L"", L"Draft.mbx", kMatchExactName},

    // IncrediMail
    {kItemIncrediMailAddresses, From::kIncrediMailIdentity, L"\\AddressBook\\", kEveryFile, kMatchEveryFile},
    {kItemIncrediMailDeleted, From::kIncrediMailIdentity, L"\\Message Store\\", L"Deleted Items.imm", kMatchExactName},
    {kItemIncrediMailDeleted, From::kIncrediMailIdentity, L"\\Message Store\\", L"Deleted Items.imh", kMatchExactName},
    {kItemIncrediMailOut, From::kIncrediMailIdentity, L"\\Message Store\\", L"Outbox.imm", kMatchExactName},
    {kItemIncrediMailOut, From::kIncrediMailIdentity, L"\\Message Store\\", L"Outbox.imh", kMatchExactName},
    {kItemIncrediMailSent, From::kIncrediMailIdentity, L"\\Message Store\\", L"Sent Items.imm", kMatchExactName},
    {kItemIncrediMailSent, From::kIncrediMailIdentity, L"\\Message Store\\", L"Sent Items.imh", kMatchExactName},
    {kItemIncrediMailDrafts, From::kIncrediMailIdentity, L"\\Message Store\\", L"Drafts.imm", kMatchExactName},
    {kItemIncrediMailDrafts, From::kIncrediMailIdentity, L"\\Message Store\\", L"Drafts.imh", kMatchExactName},

    // Third-party applications
    {kItemAcrobatRecentFiles, From::kCurrentUser, L"Software\\Adobe\\Acrobat Reader\\9.0\\AVGeneral\\cRecentFiles",
     kWholeKey},
    {kItemFlashPlayerHistory, From::kAppData, L"\\Macromedia\\Flash Player\\", kEveryFile, kMatchEveryFile},
    {kItemGoogleDesktopData, From::kGoogleDesktopData, L"\\", kEveryFile, kMatchEveryFile},
};

}  // namespace

std::span<const LocationRow> LocationRows() { return kRows; }

}  // namespace lumenor
