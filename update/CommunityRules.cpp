#include "update/CommunityRules.h"

#include "base/ModulePath.h"
#include "base/UniqueHandle.h"
#include "engine/FilePath.h"
#include "rules/Winapp2Reader.h"
#include "update/HttpDownload.h"

#include <windows.h>

#include <wininet.h>

#include <string_view>

namespace lumenor {

namespace {

using Outcome = HttpDownload::Outcome;

// The file is about 2 MB; nothing many times that size is a rule file.
constexpr std::size_t kMaxRulesBytes = std::size_t{64} * 1024 * 1024;
constexpr wchar_t kDownloadSuffix[] = L".download";

bool StartsWithAsciiNoCase(std::wstring_view text, std::wstring_view start) {
  if (text.size() < start.size()) return false;
  for (size_t i = 0; i < start.size(); ++i) {
    const wchar_t a = text[i] >= L'A' && text[i] <= L'Z' ? static_cast<wchar_t>(text[i] - L'A' + L'a') : text[i];
    if (a != start[i]) return false;
  }
  return true;
}

std::wstring ConnectionFailure(unsigned long error) {
  switch (error) {
    case ERROR_INTERNET_NAME_NOT_RESOLVED:
      return L"connection failed: the server's name could not be found";
    case ERROR_INTERNET_CANNOT_CONNECT:
      return L"connection failed: the server could not be reached";
    case ERROR_INTERNET_TIMEOUT:
      return L"connection failed: the server did not answer in time";
    case ERROR_INTERNET_INVALID_CA:
    case ERROR_INTERNET_SEC_CERT_CN_INVALID:
    case ERROR_INTERNET_SEC_CERT_DATE_INVALID:
    case ERROR_INTERNET_SEC_CERT_ERRORS:
    case ERROR_INTERNET_SEC_CERT_REV_FAILED:
    case ERROR_INTERNET_SECURITY_CHANNEL_ERROR:
      return L"connection failed: the server's certificate was refused";
    default:
      return L"connection failed (WinINet error " + std::to_wstring(error) + L")";
  }
}

// Why a download cannot stand in for the rules; empty when it can.
std::wstring DownloadFault(const HttpDownload& download) {
  switch (download.outcome) {
    case Outcome::kComplete:
      break;
    case Outcome::kNoSession:
      return L"the Internet functions of Windows could not be started (error " + std::to_wstring(download.systemError) +
             L")";
    case Outcome::kBadAddress:
      return L"the address cannot be used";
    case Outcome::kUnreachable:
      return ConnectionFailure(download.systemError);
    case Outcome::kTimedOut:
      return L"the server stopped sending: cut off after " + std::to_wstring(download.body.size()) + L" bytes";
    case Outcome::kBrokenOff:
      return L"the connection broke off: cut off after " + std::to_wstring(download.body.size()) + L" bytes";
    case Outcome::kTooLarge:
      return L"the file is too large to be a rule file (over " +
             std::to_wstring(kMaxRulesBytes / (std::size_t{1024} * 1024)) + L" MB)";
    case Outcome::kStopped:
      return L"stopped before the download was complete";
  }
  if (download.status != HTTP_STATUS_OK) {
    return L"the server answered with HTTP status " + std::to_wstring(download.status);
  }
  if (download.announcedLength && *download.announcedLength != download.body.size()) {
    return L"cut off: " + std::to_wstring(download.body.size()) + L" of " + std::to_wstring(*download.announcedLength) +
           L" bytes arrived";
  }
  if (download.body.empty()) return L"the downloaded file is empty";
  std::string_view text = download.body;
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  const size_t first = text.find_first_not_of(" \t\r\n");
  if (StartsWithAsciiNoCase(download.contentType, L"text/html") ||
      (first != std::string_view::npos && text[first] == '<')) {
    return L"the server sent a web page (HTML), not rules";
  }
  // Without an announced length, a last line without its end is all that shows a cut.
  if (!download.announcedLength && download.body.back() != '\n') {
    return L"cut off: the file ends in the middle of a line";
  }
  return {};
}

std::wstring WindowsFailure(const std::wstring& what, DWORD error) {
  return what + L" (Windows error " + std::to_wstring(error) + L")";
}

// The whole text into a new file at `path`, on the disk before it is closed.
std::wstring WriteWhole(const std::wstring& path, const std::string& text) {
  const UniqueHandle file(::CreateFileW(ForFileApi(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return WindowsFailure(L"could not create " + path, ::GetLastError());
  DWORD written = 0;
  if (::WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) == FALSE ||
      written != text.size()) {
    return WindowsFailure(L"could not write " + path, ::GetLastError());
  }
  if (::FlushFileBuffers(file.Get()) == FALSE) return WindowsFailure(L"could not write " + path, ::GetLastError());
  return {};
}

}  // namespace

std::wstring CommunityRulesAddress(const CIniFileRW& settings) {
  std::wstring address;
  if (settings.ReadString(kCommunityRulesSection, kCommunityRulesAddressKey, address)) {
    const size_t first = address.find_first_not_of(L" \t");
    if (first != std::wstring::npos) return address.substr(first, address.find_last_not_of(L" \t") - first + 1);
  }
  return kCommunityRulesDefaultAddress;
}

std::wstring CommunityRulesFile() {
  const std::wstring folder = ModuleFolder();
  return folder.empty() ? std::wstring() : folder + rules::kWinapp2FileName;
}

CommunityRulesUpdate UpdateCommunityRules(const std::wstring& address, const std::wstring& target,
                                          const StopToken& stop) {
  CommunityRulesUpdate update;
  if (!StartsWithAsciiNoCase(address, L"http://") && !StartsWithAsciiNoCase(address, L"https://")) {
    update.reason = L"the address \"" + address + L"\" does not start with http:// or https://";
    return update;
  }
  if (target.empty()) {
    update.reason = L"the program's folder is unknown";
    return update;
  }
  const HttpDownload download = DownloadUrl(address, kMaxRulesBytes, stop);
  update.reason = DownloadFault(download);
  if (!update.reason.empty()) return update;

  const rules::Winapp2File file = rules::ReadWinapp2(download.body, rules::kWinapp2FileName);
  if (file.counts.entriesLoaded == 0) {
    update.reason = L"the file holds no usable winapp2.ini entries";
    return update;
  }
  if (stop.StopRequested()) {
    update.reason = L"stopped before the old file was replaced";
    return update;
  }
  const std::wstring downloaded = target + kDownloadSuffix;
  update.reason = WriteWhole(downloaded, download.body);
  if (update.reason.empty() && ::MoveFileExW(ForFileApi(downloaded).c_str(), ForFileApi(target).c_str(),
                                             MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == FALSE) {
    update.reason = WindowsFailure(L"could not replace " + target, ::GetLastError());
  }
  if (!update.reason.empty()) {
    (void)::DeleteFileW(ForFileApi(downloaded).c_str());  // may never have been made; the old file stands either way
    return update;
  }
  update.replaced = true;
  update.entries = file.counts.entriesLoaded;
  update.problems = static_cast<int>(file.rules.problems.size());
  update.version = file.counts.version;
  return update;
}

}  // namespace lumenor
