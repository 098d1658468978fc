// The cookies of one browser cookie database, less those the keep-list keeps: Chromium's
// "Network\Cookies" (table cookies, host in host_key) and Firefox's "cookies.sqlite"
// (table moz_cookies, host in host). The file is edited, never deleted.
#pragma once

#include "base/StopToken.h"
#include "browserdb/CookieKeepList.h"
#include "browserdb/DatabaseResult.h"

#include <string>

namespace lumenor {

enum class CookieStore { kChromium, kFirefox };

// One line per cookie host whose cookies the erase would delete: the host, its number of
// cookies and their bytes.
DatabaseScan ScanCookies(const std::wstring& file, CookieStore store, const CookieKeepList& keep,
                         StopToken stop = StopToken());
DatabaseErase EraseCookies(const std::wstring& file, CookieStore store, const CookieKeepList& keep,
                           StopToken stop = StopToken());

}  // namespace lumenor
