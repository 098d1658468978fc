// What Chromium-family browsers remember typed into forms: the rows of table autocomplete
// in "Web Data". The file also holds the search engines (keywords), addresses and payment
// cards, so it is never deleted and no other table is touched.
#pragma once

#include "base/StopToken.h"
#include "browserdb/DatabaseResult.h"

#include <string>

namespace lumenor {

// One line for the database (labelled with `file`): its form entries and their bytes.
// No line when there is none.
DatabaseScan ScanChromiumFormData(const std::wstring& file, StopToken stop = StopToken());
DatabaseErase EraseChromiumFormData(const std::wstring& file, StopToken stop = StopToken());

}  // namespace lumenor
