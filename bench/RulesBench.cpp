// Reading the community's winapp2.ini and finding which of its entries apply on this
// machine, against the plainest code that reads the same bytes and makes the same
// existence checks (each Detect key opened, each DetectFile path looked up, a wildcard in
// its last name listed), in the same run. Prints times and the ratio (target: 1.5).
#include "bench/BenchSupport.h"
#include "engine/RulePlan.h"
#include "rules/RuleBook.h"
#include "rules/Winapp2Reader.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace {

constexpr int kRounds = 5;

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The plain reader: lines split by hand, variables replaced from a table made once.
class PlainDetection {
 public:
  PlainDetection() {
    const auto shell = [this](const wchar_t* name, int csidl) {
      wchar_t folder[MAX_PATH] = {};
      if (SUCCEEDED(SHGetFolderPathW(nullptr, csidl, nullptr, SHGFP_TYPE_CURRENT, folder))) values_[name] = folder;
    };
    shell(L"%appdata%", CSIDL_APPDATA);
    shell(L"%localappdata%", CSIDL_LOCAL_APPDATA);
    shell(L"%programdata%", CSIDL_COMMON_APPDATA);
    shell(L"%commonappdata%", CSIDL_COMMON_APPDATA);
    shell(L"%programfiles%", CSIDL_PROGRAM_FILES);
    shell(L"%commonprogramfiles%", CSIDL_PROGRAM_FILES_COMMON);
    shell(L"%userprofile%", CSIDL_PROFILE);
    shell(L"%windir%", CSIDL_WINDOWS);
    shell(L"%documents%", CSIDL_PERSONAL);
    values_[L"%localLowappdata%"] = values_[L"%userprofile%"] + L"\\AppData\\LocalLow";
    values_[L"%systemdrive%"] = values_[L"%windir%"].substr(0, 2);
  }

  int CountDetected(std::string_view text) const {
    int detected = 0;
    bool inEntry = false;
    bool hasTest = false;
    bool found = false;
    const auto endEntry = [&] {
      if (inEntry && (!hasTest || found)) ++detected;
    };
    while (!text.empty()) {
      const size_t end = text.find('\n');
      std::string_view line = text.substr(0, end);
      text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
      if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
      if (!line.empty() && line.front() == '[') {
        endEntry();
        inEntry = true;
        hasTest = found = false;
        continue;
      }
      const size_t equals = line.find('=');
      if (equals == std::string_view::npos || found) continue;
      const std::string_view key = line.substr(0, equals);
      const std::wstring value = Wide(line.substr(equals + 1));
      if (key.rfind("DetectFile", 0) == 0) {
        hasTest = true;
        found = PathExists(Expand(value));
      } else if (key.rfind("Detect", 0) == 0 && key.rfind("DetectOS", 0) != 0) {
        hasTest = true;
        found = KeyExists(value);
      }
    }
    endEntry();
    return detected;
  }

 private:
  static std::wstring Wide(std::string_view text) {
    std::wstring wide(text.size(), L'\0');
    const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                           static_cast<int>(wide.size()));
    wide.resize(length > 0 ? static_cast<size_t>(length) : 0);
    return wide;
  }

  std::wstring Expand(const std::wstring& text) const {
    const size_t close = text.find(L'%', 1);
    if (text.empty() || text[0] != L'%' || close == std::wstring::npos) return text;
    std::wstring name = text.substr(0, close + 1);
    std::transform(name.begin(), name.end(), name.begin(), [](wchar_t c) { return towlower(c); });
    const auto value = values_.find(name);
    return value == values_.end() ? std::wstring() : value->second + text.substr(close + 1);
  }

  static bool PathExists(const std::wstring& path) {
    if (path.empty()) return false;
    if (path.find_first_of(L"*?") == std::wstring::npos)
      return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW(path.c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) return false;
    FindClose(search);
    return true;
  }

  static bool KeyExists(const std::wstring& key) {
    const size_t slash = key.find(L'\\');
    const std::wstring hive = key.substr(0, slash);
    const HKEY root = hive == L"HKCU" ? HKEY_CURRENT_USER : hive == L"HKLM" ? HKEY_LOCAL_MACHINE : HKEY_USERS;
    const std::wstring path = slash == std::wstring::npos ? L"" : key.substr(slash + 1);
    for (const REGSAM view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
      HKEY opened = nullptr;
      if (RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE | view, &opened) == ERROR_SUCCESS) {
        RegCloseKey(opened);
        return true;
      }
    }
    return false;
  }

  std::map<std::wstring, std::wstring> values_;
};

}  // namespace

int wmain() {
  const std::string_view file = lumenor::bench::EmbeddedWinapp2();
  if (file.empty()) {
    std::printf("no winapp2.ini was built in (it is looked for at ../shared/winapp2/Winapp2.ini)\n");
    return 0;
  }
  double ours = 1e9, plain = 1e9;
  int ourEntries = 0, ourDetected = 0, plainDetected = 0;
  for (int round = 0; round < kRounds; ++round) {
    ours = std::min(ours, Seconds([&] {
                      lumenor::rules::Winapp2File read = lumenor::rules::ReadWinapp2(file, L"winapp2.ini");
                      lumenor::rules::RuleBook book;
                      book.Add(std::move(read.rules));
                      ourEntries = static_cast<int>(book.Entries().size());
                      const lumenor::RememberedPaths paths(lumenor::MachinePaths());
                      ourDetected = static_cast<int>(
                          std::count_if(book.Entries().begin(), book.Entries().end(),
                                        [&](const auto& entry) { return lumenor::IsRuleDetected(entry, paths); }));
                    }));
    plain = std::min(plain, Seconds([&] {
                       const PlainDetection detection;
                       plainDetected = detection.CountDetected(file);
                     }));
  }
  std::printf(
      "winapp2.ini read and detected: ours %.3f s, plain %.3f s, ratio %.2f (target <= 1.5); "
      "entries %d, detected %d (plain %d)\n",
      ours, plain, ours / plain, ourEntries, ourDetected, plainDetected);
  return 0;
}
