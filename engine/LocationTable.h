// The locations of the fixed catalogue as rows: for each item, in order, a registry key
// or value under a root, or a folder and a file selector under a named base. A base that
// has to be worked out (a profile from a settings file, a folder kept in the registry)
// is found by its filler (engine/LocationFillers.h).
#pragma once

#include "catalogue/LocationRecord.h"

#include <span>
#include <string_view>

namespace lumenor {

// Where a row's path starts. Shell folders, AppData, Documents, the Windows folder and
// folders read from the registry come without a trailing backslash, so the rows' paths
// after them begin with one; the profile bases end with one.
enum class From : unsigned char {
  // Registry roots: the row's path is a key path.
  kCurrentUser,
  kLocalMachine,

  // Folders of the machine.
  kAppData,             // the shell folder CSIDL_APPDATA
  kDocuments,           // CSIDL_PERSONAL
  kRecent,              // CSIDL_RECENT
  kInternetCache,       // CSIDL_INTERNET_CACHE
  kHistory,             // CSIDL_HISTORY
  kFavorites,           // CSIDL_FAVORITES
  kCookies,             // CSIDL_COOKIES
  kCdBurnArea,          // CSIDL_CDBURN_AREA
  kWindowsShellFolder,  // CSIDL_WINDOWS
  kWindowsDirectory,    // the Windows folder as GetWindowsDirectory gives it
  kTempVariable,        // the environment variable TEMP
  kProfile,             // the user's profile folder: PrintHood less its own name
  kAboveCdBurning,      // the folder that holds the CD burning area

  // Folders of applications, each found by a filler.
  kNetscapeProfile,       // the first Netscape profile under AppData
  kNetscapeLocalProfile,  // the same profile under the profile's local application data
  kFirefoxProfile,
  kFirefoxLocalProfile,
  kThunderbirdProfile,
  kYahooFolder,          // where Yahoo! is installed
  kBitCometFolder,       // where BitComet is installed
  kEudoraAttachments,    // Eudora's attachment folder
  kPocoMailAttachments,  // PocoMail's attachment folder, from its "poco.ini"
  kPocoMailMail,         // PocoMail's mail folder, from the same file
  kIncrediMailIdentity,  // the folder of IncrediMail's current identity
  kGoogleDesktopData,    // Google Desktop's data folder
  kAppDataElseNoFolder,  // AppData; when it is unknown, one record with an empty folder ends the list
  kRecycleBins,          // both recycle bin folders of every fixed drive, in drive order
  kMessengerLogFolders,  // the log folder of every Messenger passport that names one
  kPagingFile,           // the paging file's own folder and name: the row gives only the kind
};

struct LocationRow {
  unsigned item;
  From base;
  std::wstring_view path;        // a key path, or the rest of the folder after the base
  std::wstring_view selector;    // "*.*", a value name, a file name, a pattern or an extension
  int kind = kRegistryUnmarked;  // a FileMatchKind for a folder; unread for a key
};

// Every row, grouped by item in catalogue order; an item's rows in the order its records
// are made. Items without locations have no rows.
std::span<const LocationRow> LocationRows();

}  // namespace lumenor
