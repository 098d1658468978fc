// The items whose handling differs from the rest of the catalogue, by id. An item's id
// is the string-table id of its name.
#pragma once

namespace lumenor {

enum ItemId : unsigned {
  kItemDocumentHistory = 104,
  kItemTemporaryFiles = 106,             // the folder named by TEMP
  kItemRecycleBins = 107,                // two folders on every fixed drive
  kItemWindowsLogFiles = 110,            // two named files in the Windows folder
  kItemPagingFile = 111,                 // the file named by the paging-file setting
  kItemVisitedSites = 130,               // erasing it also clears the browser's own history store
  kItemOperaTransfers = 162,             // keeps a record without a folder when AppData is unknown
  kItemMessengerLogs = 205,              // one folder for every Messenger passport
  kItemAcdseeScreenCaptureFolder = 271,  // the last item of ACDSee 5.0
  kItemAcdseeFavorites = 272,            // a row of the one-click tree only: no catalogue node
  kItemPocoMailCache = 354,              // keeps a record without a folder when AppData is unknown
};

}  // namespace lumenor
