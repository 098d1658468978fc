// The fixed catalogue's Firefox "Browsing history" and "Cookies" on today's profiles. Their
// locations name "places.sqlite" and "cookies.sqlite" as files to delete; since Firefox 3
// "places.sqlite" holds the bookmarks too, and "cookies.sqlite" holds the cookies of the
// sites the user keeps. Where the file holds bookmarks, or while the keep-list names a
// domain, the item cleans the rows with the database actions instead and the file stays.
#pragma once

#include "base/StopToken.h"
#include "browserdb/CookieKeepList.h"
#include "browserdb/DatabaseResult.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumenor {

enum class FirefoxStore {
  kPlaces,   // "places.sqlite" of "Browsing history"
  kCookies,  // "cookies.sqlite" of "Cookies"
};

// The store a file of an item's location is, or the store whose journal it is
// ("places.sqlite-journal"); nothing for every other item and file.
std::optional<FirefoxStore> FirefoxStoreOf(unsigned itemId, std::wstring_view fileName);
std::optional<FirefoxStore> FirefoxStoreJournalOf(unsigned itemId, std::wstring_view fileName);

// How the item treats one such file now.
struct StoreUse {
  enum class Way {
    kWholeFile,  // deleted as a file, as the item always did
    kRows,       // its visits or cookies cleaned row by row; the file stays
    kKept,       // a database that cannot be read now (locked, damaged): left as it is
  };
  Way way = Way::kWholeFile;
  DatabaseFailure failure = DatabaseFailure::kNone;  // why it is kept
};

// "places.sqlite": its rows when it is a database holding a bookmark; the whole file when
// it holds none or is no database at all (empty, or without SQLite's header); kept when it
// is a database that cannot be read. "cookies.sqlite": the whole file while `keep` is
// empty, its rows otherwise (a file the cookie action cannot read then stays).
StoreUse DecideFirefoxStore(FirefoxStore store, const std::wstring& path, const CookieKeepList& keep,
                            StopToken stop = StopToken());

// What the rows of the store hold that an erase would delete.
DatabaseScan ScanFirefoxStore(FirefoxStore store, const std::wstring& path, const CookieKeepList& keep,
                              StopToken stop = StopToken());
DatabaseErase EraseFirefoxStore(FirefoxStore store, const std::wstring& path, const CookieKeepList& keep);
DatabaseContent FirefoxStoreContent(FirefoxStore store);

}  // namespace lumenor
