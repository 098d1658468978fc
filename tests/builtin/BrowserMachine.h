// Browser profiles made on the test machine's own folders, where the built-in rules look
// for them (%LocalAppData%, %AppData%), and lumenor-cli run over them. What the test
// machine held in those folders is set aside first and put back afterwards, and so is the
// settings file beside the tool (the cookie keep-list is read from it).
#pragma once

#include "tests/browserdb/BrowserFixtures.h"

#include <windows.h>
#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace lumenor::testing {

// What one run of lumenor-cli with --json printed.
struct CliJson {
  bool finished = false;
  DWORD exitCode = 0;
  std::vector<nlohmann::json> lines;
  std::string err;

  std::vector<nlohmann::json> OfType(std::string_view type) const;
  // The last line: the summary.
  nlohmann::json Summary() const;
  // Each trace as "location|name", in lower case (folders are listed in their canonical
  // spelling, whose case may differ from the test's).
  std::vector<std::wstring> Traces() const;
  bool HasTrace(const std::wstring& location, const std::wstring& name) const;
  // Whether any trace lies in `folder` or below it.
  bool HasTraceBelow(const std::wstring& folder) const;
  // The reasons of the skipped lines.
  std::vector<std::string> SkipReasons() const;
  // The paths of the failure lines.
  std::vector<std::wstring> Failures() const;
};

// Runs lumenor-cli with `arguments` and --json.
CliJson RunCliJson(const std::wstring& arguments);

// "--items 1000,1001" for the ids.
std::wstring ItemsArgument(const std::vector<unsigned>& ids);

class BrowserMachine {
 public:
  BrowserMachine();
  BrowserMachine(const BrowserMachine&) = delete;
  BrowserMachine& operator=(const BrowserMachine&) = delete;
  ~BrowserMachine();

  // The user's folders, ending with "\".
  const std::wstring& LocalAppData() const { return localAppData_; }
  const std::wstring& AppData() const { return appData_; }

  // Sets `folder` aside for the test: whatever the machine held there comes back at the
  // end, and what the test made there goes.
  void Claim(const std::wstring& folder);

  // Writes the cookie keep-list into the settings file beside lumenor-cli.
  void KeepCookiesOf(const std::vector<std::string>& domains) const;

 private:
  std::wstring localAppData_;
  std::wstring appData_;
  std::map<std::wstring, bool> claimed_;  // folder, and whether the machine held one there
  std::wstring settingsPath_;
  bool hadSettings_ = false;
  std::string settings_;
};

// Every file and folder below `folder` with the bytes of each file: equal snapshots, an
// untouched tree.
std::vector<std::string> TreeSnapshot(const std::wstring& folder);

// A Chromium user data root's "Local State" naming these profile folders.
void WriteLocalState(const std::wstring& root, const std::vector<std::string>& profiles);

// A profile's traces as a browser leaves them: a cache file, the cookie database with a
// cookie of each host, the history file with its journal, and the files that must stay
// (Preferences, Bookmarks). `profile` ends with "\".
void MakeChromiumProfile(const std::wstring& profile, const std::vector<std::string>& cookieHosts);
// The cookies left in a Chromium cookie database, by host.
std::vector<std::string> ChromiumCookieHosts(const std::wstring& database);

// The rows of a Firefox profile: places.sqlite with a bookmarked and an unbookmarked
// address, each visited; cookies.sqlite with a cookie of each host.
void MakeFirefoxPlaces(const std::wstring& profile, bool withBookmark, bool inWalMode);
void MakeFirefoxCookies(const std::wstring& profile, const std::vector<std::string>& hosts);
std::vector<std::string> FirefoxCookieHosts(const std::wstring& database);

}  // namespace lumenor::testing
