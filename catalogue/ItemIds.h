// The ids of the fixed catalogue by name: its categories, applications and items, in
// catalogue order. An id is the string-table id of the node's name (res/catalogue_strings.rc),
// the number saved for a ticked item, and the key by which the engine finds an item's
// locations.
#pragma once

namespace lumenor {

enum CategoryId : unsigned {
  kCategoryWindows = 102,  // "Windows Cache and History"
  kCategoryBrowsing = 127,
  kCategoryInstantMessaging = 171,
  kCategoryOffice = 208,
  kCategoryMultimedia = 244,
  kCategoryFileSharing = 273,
  kCategoryMail = 323,
  kCategoryThirdParty = 367,
};

enum ApplicationId : unsigned {
  kAppWindowsEntries = 103,
  kAppInternetExplorer = 128,
  kAppNetscape = 142,
  kAppOpera = 156,
  kAppFirefox = 163,
  kAppIcq = 182,
  kAppYahooMessenger = 190,
  kAppMsnMessenger = 204,
  kAppSharedOffice = 209,
  kAppOffice2003 = 214,
  kAppMediaPlayer = 245,
  kAppWinamp = 249,
  kAppRealPlayer = 255,
  kAppDivXPlayer = 257,
  kAppQuickTime = 260,
  kAppAcdsee = 264,
  kAppAzureus = 277,
  kAppBitTorrent = 282,
  kAppUTorrent = 287,
  kAppLimeWire = 305,
  kAppBitComet = 319,
  kAppThunderbird = 336,
  kAppEudora = 344,
  kAppPocoMail = 353,
  kAppIncrediMail = 361,
  kAppAcrobat = 368,
  kAppFlashPlayer = 371,
  kAppGoogleDesktop = 373,
};

enum ItemId : unsigned {
  // Windows Entries
  kItemDocumentHistory = 104,
  kItemSearchHistory = 105,
  kItemTemporaryFiles = 106,  // the folder named by TEMP
  kItemRecycleBins = 107,     // two folders on every fixed drive
  kItemStartMenuClickHistory = 108,
  kItemStartMenuOrderHistory = 109,
  kItemWindowsLogFiles = 110,  // two named files in the Windows folder
  kItemPagingFile = 111,       // the file named by the paging-file setting
  kItemWindowsTempFolder = 112,
  kItemRunHistory = 113,
  kItemDiskErrorLogs = 114,
  kItemDownloadTempFolder = 115,
  kItemWindowsUpdateFiles = 116,
  kItemMemoryDump = 117,
  kItemCdBurningFolder = 118,
  kItemRecentLoggedOnUser = 119,
  kItemDebuggingHistory = 120,
  kItemCommonDialogHistory = 121,
  kItemPaintRecentFiles = 122,
  kItemNetworkConnections = 123,
  kItemPrinterConnections = 124,
  kItemLastRegistryKey = 125,
  kItemWordPadRecentFiles = 126,

  // Internet Explorer
  kItemIeTemporaryFiles = 129,
  kItemVisitedSites = 130,  // erasing it also clears the browser's own history store
  kItemIeFavorites = 131,
  kItemIeCookies = 132,
  kItemIeStartPage = 133,
  kItemIeFormData = 135,
  kItemIeDownloadDirectory = 136,
  kItemIeSaveDirectory = 137,
  kItemIeSetupLog = 138,
  kItemIePasswords = 139,
  kItemIeAddressBarHistory = 141,

  // Netscape Navigator 9.x
  kItemNetscapeCache = 143,
  kItemNetscapePageHistory = 144,
  kItemNetscapeFormHistory = 145,
  kItemNetscapeCookies = 146,
  kItemNetscapeBrowsingHistory = 147,
  kItemNetscapeBookmarks = 148,
  kItemNetscapeLinkpad = 149,
  kItemNetscapePasswords = 150,

  // Opera 9.x
  kItemOperaCache = 157,
  kItemOperaVisitedPages = 158,
  kItemOperaTypedAddresses = 159,
  kItemOperaCookies = 160,
  kItemOperaWandPasswords = 161,
  kItemOperaTransfers = 162,  // keeps a record without a folder when AppData is unknown

  // Mozilla Firefox 3.x
  kItemFirefoxBrowsingHistory = 164,
  kItemFirefoxFormHistory = 165,
  kItemFirefoxCache = 166,
  kItemFirefoxDownloads = 167,
  kItemFirefoxCookies = 168,
  kItemFirefoxPasswords = 169,

  // ICQ 6.5, Yahoo and MSN messengers
  kItemIcqChatHistory = 183,
  kItemIcqLogonInformation = 184,
  kItemYahooCache = 191,
  kItemYahooChatHistory = 192,
  kItemYahooLogs = 193,
  kItemMessengerLogs = 205,  // one folder for every Messenger passport

  // Shared Office resources and Office 2003
  kItemOfficeRecentFolder = 210,
  kItemOfficeServerCache = 211,
  kItemOfficeSearchHistory = 212,
  kItemFrontPage = 213,
  kItemWord2003 = 215,
  kItemAccess2003 = 216,
  kItemExcel2003 = 217,
  kItemVisio2003 = 218,
  kItemPowerPoint2003 = 219,
  kItemPublisher2003 = 220,
  kItemFrontPage2003 = 221,
  kItemProject2003 = 222,
  kItemInfoPath2003 = 223,
  kItemClipOrganizer = 224,
  kItemPictureManager = 225,
  kItemSnapshotViewer = 226,
  kItemSaveMySettings = 227,

  // Windows Media Player (the database, 369, was added after the rest), Winamp, Real
  // Player, DivX Player, QuickTime, ACDSee 5.0
  kItemMediaPlayerRecentFiles = 246,
  kItemMediaPlayerRecentUrls = 247,
  kItemMediaPlayerDatabase = 369,
  kItemMediaPlayerCache = 248,
  kItemWinampRecentFiles = 250,
  kItemWinampBookmarks = 251,
  kItemWinampMediaLibrary = 252,
  kItemRealPlayerHistory = 256,
  kItemDivXRecentFiles = 258,
  kItemDivXMoviesFolder = 259,
  kItemQuickTimeRecentFiles = 261,
  kItemQuickTimeFavorites = 263,
  kItemAcdseeImageDatabase = 265,
  kItemAcdseeSimpleSearch = 266,
  kItemAcdseePathHistory = 267,
  kItemAcdseeCopyMoveDestination = 268,
  kItemAcdseeLastOpenFolder = 269,
  kItemAcdseeSearchHistory = 270,
  kItemAcdseeScreenCaptureFolder = 271,  // the last item of ACDSee 5.0
  kItemAcdseeFavorites = 272,            // a row of the one-click tree only: no catalogue node

  // Azureus, BitTorrent, uTorrent, LimeWire, BitComet
  kItemAzureusTorrents = 278,
  kItemAzureusDownloadHistory = 279,
  kItemAzureusSeeding = 280,
  kItemAzureusLogs = 281,
  kItemBitTorrentDownloads = 283,
  kItemBitTorrentTorrents = 285,
  kItemUTorrentTorrents = 288,
  kItemUTorrentDownloads = 289,
  kItemLimeWireSharedFolder = 306,
  kItemLimeWireIncompleteFolder = 307,
  kItemLimeWireSharedFileInfo = 308,
  kItemBitCometDownloads = 320,
  kItemBitCometTorrents = 321,
  kItemBitCometDownloadHistory = 322,

  // Thunderbird, Eudora, PocoMail, IncrediMail
  kItemThunderbirdPasswords = 337,
  kItemThunderbirdKeyDatabase = 338,
  kItemThunderbirdSent = 339,
  kItemThunderbirdTrash = 340,
  kItemThunderbirdDrafts = 341,
  kItemThunderbirdUnsent = 342,
  kItemThunderbirdNews = 343,
  kItemEudoraTrash = 345,
  kItemEudoraOut = 346,
  kItemEudoraAddressHistory = 347,
  kItemEudoraCache = 348,
  kItemEudoraNicknames = 350,
  kItemEudoraLogs = 351,
  kItemEudoraAttachments = 352,
  kItemPocoMailCache = 354,  // keeps a record without a folder when AppData is unknown
  kItemPocoMailAttachments = 355,
  kItemPocoMailAddressHistory = 356,
  kItemPocoMailTrash = 357,
  kItemPocoMailOut = 358,
  kItemPocoMailSent = 359,
  kItemPocoMailDrafts = 360,
  kItemIncrediMailAddresses = 362,
  kItemIncrediMailDeleted = 363,
  kItemIncrediMailOut = 364,
  kItemIncrediMailSent = 365,
  kItemIncrediMailDrafts = 366,

  // Third-party applications
  kItemAcrobatRecentFiles = 370,
  kItemFlashPlayerHistory = 372,
  kItemGoogleDesktopData = 374,
};

}  // namespace lumenor
