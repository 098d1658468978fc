#include "update/AutoUpdater.h"

#include "base/ModulePath.h"
#include "base/TextEncoding.h"
#include "base/Texts.h"
#include "base/UniqueHandle.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace lumenor {

namespace {

constexpr wchar_t kAgent[] = L"AutoUpdateAgent";
constexpr wchar_t kDescriptionFile[] = L"update.ini";
constexpr wchar_t kRemoteDefault[] = L"3.0.0.0";
constexpr DWORD kOpenFlags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_RESYNCHRONIZE | INTERNET_FLAG_HYPERLINK |
                             INTERNET_FLAG_NEED_FILE;  // 0x80000C10
constexpr DWORD kTimeoutMs = 10000;
constexpr DWORD kUrlBuffer = 1024;
constexpr DWORD kBlock = 4096;
// A description file is a few lines; anything much larger is not one.
constexpr size_t kMaxDescription = size_t{64} * 1024;

class InternetHandle {
 public:
  explicit InternetHandle(HINTERNET handle) : handle_(handle) {}
  InternetHandle(const InternetHandle&) = delete;
  InternetHandle& operator=(const InternetHandle&) = delete;
  ~InternetHandle() {
    if (handle_ != nullptr) (void)::InternetCloseHandle(handle_);  // ours; nothing to do if it fails
  }
  HINTERNET Get() const { return handle_; }

 private:
  HINTERNET handle_;
};

}  // namespace

std::wstring LocalVersionText() {
  const std::wstring program = ModuleFileName();
  if (program.empty()) return {};
  DWORD ignored = 0;
  const DWORD size = ::GetFileVersionInfoSizeW(program.c_str(), &ignored);
  if (size == 0) return {};
  std::vector<BYTE> block(size);
  if (::GetFileVersionInfoW(program.c_str(), 0, size, block.data()) == FALSE) return {};
  VS_FIXEDFILEINFO* info = nullptr;
  UINT length = 0;
  if (::VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &length) == FALSE || info == nullptr ||
      length < sizeof(VS_FIXEDFILEINFO)) {
    return {};
  }
  const unsigned parts[4] = {HIWORD(info->dwFileVersionMS), LOWORD(info->dwFileVersionMS),
                             HIWORD(info->dwFileVersionLS), LOWORD(info->dwFileVersionLS)};
  if (parts[2] != 0 || parts[3] != 0) {
    return std::to_wstring(parts[0]) + L"." + std::to_wstring(parts[1]) + L"." + std::to_wstring(parts[2]) + L"." +
           std::to_wstring(parts[3]);
  }
  if (parts[0] != 0 || parts[1] != 0) return std::to_wstring(parts[0]) + L"." + std::to_wstring(parts[1]);
  return {};
}

CAutoUpdater::CAutoUpdater() : session_(::InternetOpenW(kAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0)) {
  if (session_ == nullptr) return;
  // A server that never answers must not hold the check for longer than this.
  DWORD timeout = kTimeoutMs;
  for (const DWORD option : {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_RECEIVE_TIMEOUT,
                             INTERNET_OPTION_SEND_TIMEOUT, INTERNET_OPTION_DATA_RECEIVE_TIMEOUT}) {
    (void)::InternetSetOptionW(session_, option, &timeout, sizeof timeout);  // the system's own time-out then
  }
}

CAutoUpdater::~CAutoUpdater() {
  if (session_ != nullptr) (void)::InternetCloseHandle(session_);  // ours; nothing to do if it fails
}

CAutoUpdater::Findings CAutoUpdater::Look(const std::wstring& folderUrl) {
  Findings findings;
  findings.local = LocalVersionText();
  DWORD state = 0;
  if (session_ == nullptr || ::InternetGetConnectedState(&state, 0) == FALSE) {
    findings.result = kUpdateNoConnection;
    return findings;
  }
  const std::wstring url = folderUrl + kDescriptionFile;
  std::vector<wchar_t> canonical(kUrlBuffer);
  DWORD length = kUrlBuffer;
  if (::InternetCanonicalizeUrlW(url.c_str(), canonical.data(), &length, ICU_BROWSER_MODE) == FALSE) {
    findings.result = kUpdateUnreachable;  // too long for the buffer is never cut down
    return findings;
  }
  // Not every system keeps the time-outs set on the session; past the same limit the
  // session is closed under the waiting call, which makes it give up.
  std::mutex mutex;
  std::condition_variable finished;
  bool done = false;
  bool abandoned = false;
  std::thread watchdog([&] {
    std::unique_lock<std::mutex> lock(mutex);
    if (!finished.wait_for(lock, std::chrono::milliseconds(2 * kTimeoutMs), [&] { return done; })) {
      abandoned = true;
      (void)::InternetCloseHandle(session_);  // every call under way on it ends now
    }
  });
  std::string description;
  bool opened = false;
  {
    const InternetHandle file(::InternetOpenUrlW(session_, canonical.data(), nullptr, 0, kOpenFlags, 0));
    opened = file.Get() != nullptr;
    // What this check downloaded is what it reads: never a file an earlier check left.
    std::vector<char> block(kBlock);
    while (opened) {
      DWORD read = 0;
      if (::InternetReadFile(file.Get(), block.data(), kBlock, &read) == FALSE || read == 0) break;
      description.append(block.data(), read);
      if (description.size() > kMaxDescription) break;
    }
  }
  {
    const std::lock_guard<std::mutex> lock(mutex);
    done = true;
  }
  finished.notify_one();
  watchdog.join();
  if (abandoned) {
    session_ = nullptr;  // closed by the watchdog
  }
  if (!opened || abandoned) {
    findings.result = kUpdateUnreachable;  // no listener, no answer in time, a certificate refused
    return findings;
  }
  // A copy beside the program, as it has always been kept; a folder that refuses it
  // changes nothing about this check.
  const UniqueHandle copy(::CreateFileW((ModuleFolder() + kDescriptionFile).c_str(), GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
  if (copy) {
    DWORD written = 0;
    (void)::WriteFile(copy.Get(), description.data(), static_cast<DWORD>(description.size()), &written, nullptr);
  }

  if (findings.local.empty()) {
    findings.result = kUpdateNoLocalVersion;
    return findings;
  }
  findings.remote = IniValue(description, L"Program", L"Version", kRemoteDefault);
  findings.result = CompareVersions(findings.remote, findings.local) == 1 ? kUpdateAccepted : kUpdateCurrent;
  return findings;
}

int CAutoUpdater::CheckForUpdate(const std::wstring& folderUrl, const std::function<bool()>& askToProceed) {
  const Findings findings = Look(folderUrl);
  if (findings.result != kUpdateAccepted) return findings.result;
  return askToProceed && askToProceed() ? kUpdateAccepted : kUpdateDeclined;
}

}  // namespace lumenor
