#include "update/HttpDownload.h"

#include <windows.h>

#include <wininet.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace lumenor {

namespace {

using Outcome = HttpDownload::Outcome;

constexpr wchar_t kAgent[] = L"Lumenor";
constexpr DWORD kTimeoutMs = 10000;
constexpr ULONGLONG kStallLimitMs = ULONGLONG{2} * kTimeoutMs;
constexpr DWORD kBlock = 64 * 1024;
// Always from the server, never into or out of the cache: what is read is what came now.
constexpr DWORD kOpenFlags = INTERNET_FLAG_RELOAD | INTERNET_FLAG_PRAGMA_NOCACHE | INTERNET_FLAG_NO_CACHE_WRITE |
                             INTERNET_FLAG_NO_COOKIES | INTERNET_FLAG_NO_UI;

class InternetHandle {
 public:
  explicit InternetHandle(HINTERNET handle) : handle_(handle) {}
  InternetHandle(const InternetHandle&) = delete;
  InternetHandle& operator=(const InternetHandle&) = delete;
  ~InternetHandle() {
    if (handle_ != nullptr) (void)::InternetCloseHandle(handle_);  // ours; nothing to do if it fails
  }
  HINTERNET Get() const { return handle_; }
  // Closed already by the watchdog (a request goes with its session): closing it again
  // could close a handle that has since been given the same value.
  void Forget() { handle_ = nullptr; }

 private:
  HINTERNET handle_;
};

// Not every system keeps the time-outs set on the session, and a blocking call cannot
// test the stop token; closing the session under it makes every call under way end.
class Watchdog {
 public:
  Watchdog(HINTERNET session, const StopToken& stop)
      : session_(session), stop_(stop), lastData_(::GetTickCount64()), thread_([this] { Watch(); }) {}
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;
  ~Watchdog() { (void)Finish(); }  // the outcome matters only to the caller that asked

  void DataCame() { lastData_.store(::GetTickCount64(), std::memory_order_relaxed); }

  // Ends the watch; what the watchdog made of the download when it closed the session.
  std::optional<Outcome> Finish() {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      done_ = true;
    }
    wake_.notify_one();
    if (thread_.joinable()) thread_.join();
    return closedFor_;
  }

 private:
  void Watch() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!done_) {
      wake_.wait_for(lock, std::chrono::milliseconds(100));
      if (done_) return;
      if (stop_.StopRequested()) {
        closedFor_ = Outcome::kStopped;
      } else if (::GetTickCount64() - lastData_.load(std::memory_order_relaxed) > kStallLimitMs) {
        closedFor_ = Outcome::kTimedOut;
      } else {
        continue;
      }
      (void)::InternetCloseHandle(session_);  // whatever it returns, the session is gone
      return;
    }
  }

  HINTERNET session_;
  StopToken stop_;
  std::atomic<ULONGLONG> lastData_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool done_ = false;
  std::optional<Outcome> closedFor_;
  std::thread thread_;  // last: it starts once everything above is in place
};

std::optional<std::wstring> HeaderText(HINTERNET file, DWORD query) {
  std::vector<wchar_t> buffer(256);
  for (int attempt = 0; attempt < 2; ++attempt) {
    DWORD bytes = static_cast<DWORD>(buffer.size() * sizeof(wchar_t));
    DWORD index = 0;
    if (::HttpQueryInfoW(file, query, buffer.data(), &bytes, &index) != FALSE) {
      return std::wstring(buffer.data(), bytes / sizeof(wchar_t));
    }
    if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER) return std::nullopt;
    buffer.resize(bytes / sizeof(wchar_t) + 1);
  }
  return std::nullopt;
}

std::optional<std::uint64_t> DecimalNumber(std::wstring_view text) {
  while (!text.empty() && text.front() == L' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == L' ') text.remove_suffix(1);
  if (text.empty() || text.size() > 18) return std::nullopt;
  std::uint64_t number = 0;
  for (const wchar_t digit : text) {
    if (digit < L'0' || digit > L'9') return std::nullopt;
    number = number * 10 + static_cast<std::uint64_t>(digit - L'0');
  }
  return number;
}

void ReadHeaders(HINTERNET file, HttpDownload& download) {
  DWORD status = 0;
  DWORD bytes = sizeof status;
  if (::HttpQueryInfoW(file, HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &bytes, nullptr) != FALSE) {
    download.status = status;
  }
  if (const std::optional<std::wstring> length = HeaderText(file, HTTP_QUERY_CONTENT_LENGTH)) {
    download.announcedLength = DecimalNumber(*length);
  }
  download.contentType = HeaderText(file, HTTP_QUERY_CONTENT_TYPE).value_or(std::wstring());
}

void ReadBody(HINTERNET file, std::size_t maxBytes, const StopToken& stop, Watchdog& watchdog, HttpDownload& download) {
  std::vector<char> block(kBlock);
  for (;;) {
    if (stop.StopRequested()) {
      download.outcome = Outcome::kStopped;
      return;
    }
    DWORD read = 0;
    if (::InternetReadFile(file, block.data(), kBlock, &read) == FALSE) {
      download.systemError = ::GetLastError();
      download.outcome = Outcome::kBrokenOff;
      return;
    }
    if (read == 0) {
      download.outcome = Outcome::kComplete;
      return;
    }
    watchdog.DataCame();
    if (download.body.size() + read > maxBytes) {
      download.body.append(block.data(), maxBytes - download.body.size());
      download.outcome = Outcome::kTooLarge;
      return;
    }
    download.body.append(block.data(), read);
  }
}

std::optional<std::wstring> CanonicalUrl(const std::wstring& url) {
  std::vector<wchar_t> canonical(url.size() * 3 + 16);
  for (int attempt = 0; attempt < 2; ++attempt) {
    DWORD length = static_cast<DWORD>(canonical.size());
    if (::InternetCanonicalizeUrlW(url.c_str(), canonical.data(), &length, ICU_BROWSER_MODE) != FALSE) {
      return std::wstring(canonical.data(), length);
    }
    if (::GetLastError() != ERROR_INSUFFICIENT_BUFFER) return std::nullopt;
    canonical.resize(length + 1);  // never cut down: a shorter address is another address
  }
  return std::nullopt;
}

}  // namespace

HttpDownload DownloadUrl(const std::wstring& url, std::size_t maxBytes, const StopToken& stop) {
  HttpDownload download;
  const std::optional<std::wstring> canonical = CanonicalUrl(url);
  if (!canonical) {
    download.outcome = Outcome::kBadAddress;
    return download;
  }
  InternetHandle session(::InternetOpenW(kAgent, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
  if (session.Get() == nullptr) {
    download.systemError = ::GetLastError();
    download.outcome = Outcome::kNoSession;
    return download;
  }
  DWORD timeout = kTimeoutMs;
  for (const DWORD option : {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_RECEIVE_TIMEOUT,
                             INTERNET_OPTION_SEND_TIMEOUT, INTERNET_OPTION_DATA_RECEIVE_TIMEOUT}) {
    (void)::InternetSetOptionW(session.Get(), option, &timeout, sizeof timeout);  // the watchdog stands in if refused
  }
  Watchdog watchdog(session.Get(), stop);
  // Declared after the session, so closed before it.
  InternetHandle file(::InternetOpenUrlW(session.Get(), canonical->c_str(), nullptr, 0, kOpenFlags, 0));
  if (file.Get() == nullptr) {
    download.systemError = ::GetLastError();
    download.outcome = Outcome::kUnreachable;
  } else {
    ReadHeaders(file.Get(), download);
    ReadBody(file.Get(), maxBytes, stop, watchdog, download);
  }
  if (const std::optional<Outcome> closedFor = watchdog.Finish()) {
    file.Forget();
    session.Forget();
    download.outcome = *closedFor;
  }
  return download;
}

}  // namespace lumenor
