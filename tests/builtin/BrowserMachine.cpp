#include "tests/builtin/BrowserMachine.h"

#include "base/ModulePath.h"
#include "base/TextEncoding.h"
#include "browserdb/BrowserSchemas.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <algorithm>

namespace lumenor::testing {

namespace {

std::wstring Lower(std::wstring text) {
  std::transform(text.begin(), text.end(), text.begin(), [](wchar_t c) { return static_cast<wchar_t>(towlower(c)); });
  return text;
}

std::wstring ShellFolder(int csidl) {
  wchar_t path[MAX_PATH] = {};
  EXPECT_EQ(SHGetFolderPathW(nullptr, csidl | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, path), S_OK) << csidl;
  return std::wstring(path) + L"\\";
}

std::wstring SavedName(const std::wstring& folder) { return folder + L".lumenor-test-saved"; }

}  // namespace

std::vector<nlohmann::json> CliJson::OfType(std::string_view type) const {
  std::vector<nlohmann::json> found;
  for (const nlohmann::json& line : lines) {
    if (line.value("type", "") == type) found.push_back(line);
  }
  return found;
}

nlohmann::json CliJson::Summary() const { return lines.empty() ? nlohmann::json::object() : lines.back(); }

std::vector<std::wstring> CliJson::Traces() const {
  std::vector<std::wstring> traces;
  for (const nlohmann::json& trace : OfType("trace")) {
    traces.push_back(Lower(FromUtf8(trace.value("location", "")) + L"|" + FromUtf8(trace.value("name", ""))));
  }
  return traces;
}

bool CliJson::HasTrace(const std::wstring& location, const std::wstring& name) const {
  const std::vector<std::wstring> traces = Traces();
  return std::find(traces.begin(), traces.end(), Lower(location + L"|" + name)) != traces.end();
}

bool CliJson::HasTraceBelow(const std::wstring& folder) const {
  const std::wstring start = Lower(folder);
  for (const std::wstring& trace : Traces()) {
    if (trace.starts_with(start)) return true;
  }
  return false;
}

std::vector<std::string> CliJson::SkipReasons() const {
  std::vector<std::string> reasons;
  for (const nlohmann::json& skipped : OfType("skipped")) reasons.push_back(skipped.value("reason", ""));
  return reasons;
}

std::vector<std::wstring> CliJson::Failures() const {
  std::vector<std::wstring> paths;
  for (const nlohmann::json& failure : OfType("failure")) paths.push_back(FromUtf8(failure.value("path", "")));
  return paths;
}

CliJson RunCliJson(const std::wstring& arguments) {
  const ProgramResult result = RunProgram(CliProgram(), arguments + L" --json");
  CliJson json;
  json.finished = result.finished;
  json.exitCode = result.exitCode;
  json.err = result.err;
  for (const std::string& line : SplitLines(result.out)) {
    nlohmann::json parsed = nlohmann::json::parse(line, nullptr, false);
    EXPECT_FALSE(parsed.is_discarded()) << line;
    json.lines.push_back(std::move(parsed));
  }
  return json;
}

std::wstring ItemsArgument(const std::vector<unsigned>& ids) {
  std::wstring list;
  for (const unsigned id : ids) list += (list.empty() ? L"" : L",") + std::to_wstring(id);
  return L"--items " + list;
}

BrowserMachine::BrowserMachine()
    : localAppData_(ShellFolder(CSIDL_LOCAL_APPDATA)),
      appData_(ShellFolder(CSIDL_APPDATA)),
      settingsPath_(ModuleFolder() + L"setting.ini") {
  hadSettings_ = FileExists(settingsPath_);
  settings_ = ReadFileBytes(settingsPath_);
}

BrowserMachine::~BrowserMachine() {
  for (const auto& [folder, held] : claimed_) {
    RemoveTree(folder + L"\\");
    if (held) {
      EXPECT_TRUE(MoveFileW(SavedName(folder).c_str(), folder.c_str())) << ToUtf8(folder);
    }
  }
  if (hadSettings_) {
    EXPECT_TRUE(WriteFileBytes(settingsPath_, settings_));
  } else {
    (void)DeleteFileW(settingsPath_.c_str());  // there was none before the test
  }
}

void BrowserMachine::Claim(const std::wstring& folder) {
  std::wstring path = folder;
  while (!path.empty() && path.back() == L'\\') path.pop_back();
  if (claimed_.count(path) != 0) return;
  const bool held = GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
  if (held) {
    RemoveTree(SavedName(path) + L"\\");  // left by a test that ended before it could clean up
    ASSERT_TRUE(MoveFileW(path.c_str(), SavedName(path).c_str())) << ToUtf8(path);
  }
  claimed_[path] = held;
}

void BrowserMachine::KeepCookiesOf(const std::vector<std::string>& domains) const {
  std::string text = "[CookiesToKeep]\r\nCookiesToKeep=" + std::to_string(domains.size()) + "\r\n";
  for (size_t i = 0; i < domains.size(); ++i) text += "domain" + std::to_string(i) + "=" + domains[i] + "\r\n";
  ASSERT_TRUE(WriteFileBytes(settingsPath_, text));
}

std::vector<std::string> TreeSnapshot(const std::wstring& folder) {
  std::vector<std::string> snapshot;
  for (const std::wstring& entry : EntriesBelow(folder)) {
    std::string line = ToUtf8(entry);
    if (!entry.ends_with(L'\\')) line.append("=").append(ReadFileBytes(folder + entry));
    snapshot.push_back(std::move(line));
  }
  return snapshot;
}

void WriteLocalState(const std::wstring& root, const std::vector<std::string>& profiles) {
  nlohmann::json cache = nlohmann::json::object();
  for (const std::string& profile : profiles) cache[profile] = {{"name", "Person " + profile}};
  const nlohmann::json state = {{"profile", {{"info_cache", cache}, {"last_used", profiles.front()}}},
                                {"os_crypt", {{"encrypted_key", "RFBBUEk="}}}};
  MakeFile(root + L"Local State", state.dump());
}

void MakeChromiumProfile(const std::wstring& profile, const std::vector<std::string>& cookieHosts) {
  MakeFile(profile + L"Cache\\Cache_Data\\data_0", "cache block");
  MakeFile(profile + L"Code Cache\\js\\index", "code cache");
  MakeFile(profile + L"History", "history database");
  MakeFile(profile + L"History-journal", "journal");
  MakeFile(profile + L"Preferences", "{}");
  MakeFile(profile + L"Bookmarks", "{\"roots\":{}}");
  MakeFolders(profile + L"Network\\");
  const FixtureDatabase cookies(profile + L"Network\\Cookies", kChromiumCookiesSchema);
  for (const std::string& host : cookieHosts) cookies.AddChromiumCookie(host, "id", "secret");
}

std::vector<std::string> ChromiumCookieHosts(const std::wstring& database) {
  const FixtureDatabase cookies(database);
  return cookies.Texts("SELECT host_key FROM cookies ORDER BY host_key");
}

void MakeFirefoxPlaces(const std::wstring& profile, bool withBookmark, bool inWalMode) {
  MakeFolders(profile);
  const FixtureDatabase places(profile + L"places.sqlite", kFirefoxPlacesSchema);
  if (inWalMode) places.KeepWritesInWal();
  const int64_t kept = places.AddPlace("https://bookmarked.example/", "bookmarked.example", "Kept page");
  const int64_t visited = places.AddPlace("https://visited.example/", "visited.example", "Visited page");
  places.AddVisit(kept, 1);
  places.AddVisit(visited, 2);
  if (withBookmark) places.AddBookmark(kept, "A bookmark");
}

void MakeFirefoxCookies(const std::wstring& profile, const std::vector<std::string>& hosts) {
  MakeFolders(profile);
  const FixtureDatabase cookies(profile + L"cookies.sqlite", kFirefoxCookiesSchema);
  for (const std::string& host : hosts) cookies.AddFirefoxCookie(host, "id", "secret");
}

std::vector<std::string> FirefoxCookieHosts(const std::wstring& database) {
  const FixtureDatabase cookies(database);
  return cookies.Texts("SELECT host FROM moz_cookies ORDER BY host");
}

}  // namespace lumenor::testing
