// Firefox's (and Thunderbird's) history in "places.sqlite", erased row by row: the file
// also holds the bookmarks, so it is never deleted. Every visit goes, and every address
// (place) that no bookmark or keyword needs; the places that stay lose their visit count,
// last visit and typed mark; rows that hang on deleted places go with them. Tables that
// older or newer profiles lack are passed over.
#pragma once

#include "base/StopToken.h"
#include "browserdb/DatabaseResult.h"

#include <string>

namespace lumenor {

// One line for the database (labelled with `file`): its visits, the places that go with
// them, and the bytes of every row the erase would delete. No line when there is none.
DatabaseScan ScanFirefoxHistory(const std::wstring& file, StopToken stop = StopToken());
DatabaseErase EraseFirefoxHistory(const std::wstring& file, StopToken stop = StopToken());

}  // namespace lumenor
