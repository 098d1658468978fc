// Whether the maker's site offers a newer version: "update.ini" fetched from the site's
// download folder, its "Version" compared with the running program's version resource.
// Nothing here shows a window; the callers ask the question and show the messages.
#pragma once

#include "update/UpdateDescription.h"

#include <windows.h>

#include <wininet.h>

#include <functional>
#include <string>
#include <string_view>

namespace lumenor {

// The result codes of a check.
enum UpdateResult : int {
  kUpdateAccepted = 0,      // newer, and the user chose OK
  kUpdateNoConnection = 1,  // no Internet connection, or no session
  kUpdateUnreachable = 2,   // the description file could not be opened
  kUpdateNoLocalVersion = 5,
  kUpdateCurrent = 6,   // not newer (equal, older or malformed), or nothing usable came
  kUpdateDeclined = 7,  // newer, and the user chose Cancel
};

// The running program's version from its version resource: "a.b.c.d", or "a.b" when the
// last two parts are zero; empty when there is none.
std::wstring LocalVersionText();

class CAutoUpdater {
 public:
  // What a check found, before anybody was asked.
  struct Findings {
    int result = kUpdateCurrent;  // kUpdateAccepted here means "newer: ask"
    std::wstring local;
    std::wstring remote;
  };

  CAutoUpdater();
  CAutoUpdater(const CAutoUpdater&) = delete;
  CAutoUpdater& operator=(const CAutoUpdater&) = delete;
  virtual ~CAutoUpdater();

  // Fetches `folderUrl` + "update.ini", keeps a copy beside the program, and compares.
  // Connecting and each wait for data give up after 10 seconds.
  Findings Look(const std::wstring& folderUrl);
  // The whole check: Look, then, when the site's version is newer, `askToProceed` (true
  // for OK).
  int CheckForUpdate(const std::wstring& folderUrl, const std::function<bool()>& askToProceed);

 private:
  HINTERNET session_ = nullptr;
};

}  // namespace lumenor
