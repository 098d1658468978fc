// What no rule may delete, built-in, the user's or imported, whatever it says: the files
// a browser cannot do without (the key that decrypts its cookies and passwords, its
// settings, bookmarks and extensions), the files of a LevelDB database picked by a
// pattern (such a database goes whole or not at all), and a SQLite journal or write-ahead
// log whose database stays. Rules of the fixed catalogue are not rules of this kind.
#pragma once

#include <string>
#include <string_view>

namespace lumenor {

// Why a file or folder stays; kNone: nothing keeps it.
enum class KeptBecause {
  kNone,
  kBrowserFile,    // Local State, Preferences, Bookmarks, key4.db, places.sqlite, ...
  kBrowserFolder,  // a profile's Extensions, extension settings, Edge's Collections
  kLevelDb,        // a file of a LevelDB database, picked by a pattern
  kSqliteJournal,  // a -journal or -wal whose database stays
};

// The words a kept file is reported with: "browser data that is never deleted", ...
std::wstring_view KeptReason(KeptBecause because);

// Whether a file of this name stays wherever it is (letter case aside).
bool IsNeverDeletedName(std::wstring_view fileName);

// Whether a sub-folder `name` of `parent` (ending with "\") holds browser data that stays:
// "Local Extension Settings" and "Sync Extension Settings" anywhere, "Extensions" and
// "Collections" in a browser profile (a folder holding "Preferences").
bool IsKeptBrowserFolder(const std::wstring& parent, std::wstring_view name);

// The same for every folder of a path (ending with "\") from its root on.
bool LiesInKeptBrowserFolder(const std::wstring& folder);

// Whether the folder (ending with "\") is a LevelDB database: it holds "CURRENT" and a
// file whose name starts with "MANIFEST-".
bool IsLevelDbFolder(const std::wstring& folder);

// The database a journal belongs to: "History" for "History-journal" or "History-wal";
// empty for any other name.
std::wstring_view SqliteDatabaseOf(std::wstring_view fileName);

}  // namespace lumenor
