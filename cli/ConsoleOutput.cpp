#include "cli/ConsoleOutput.h"

#include "base/TextEncoding.h"

#include <algorithm>

namespace lumenor {

namespace {

constexpr size_t kMaxChunk = 16384;

}  // namespace

ConsoleOutput::ConsoleOutput(HANDLE handle) : handle_(handle) {
  DWORD mode = 0;
  isConsole_ = handle_ != nullptr && handle_ != INVALID_HANDLE_VALUE && GetConsoleMode(handle_, &mode) != FALSE;
}

bool ConsoleOutput::Write(std::wstring_view text) const {
  if (handle_ == nullptr || handle_ == INVALID_HANDLE_VALUE) {
    return false;
  }
  if (isConsole_) {
    while (!text.empty()) {
      const DWORD chunk = static_cast<DWORD>(std::min(text.size(), kMaxChunk));
      DWORD written = 0;
      if (!WriteConsoleW(handle_, text.data(), chunk, &written, nullptr) || written == 0) {
        return false;
      }
      text.remove_prefix(written);
    }
    return true;
  }
  const std::string bytes = ToUtf8(text);
  std::string_view rest = bytes;
  while (!rest.empty()) {
    const DWORD chunk = static_cast<DWORD>(std::min(rest.size(), kMaxChunk));
    DWORD written = 0;
    if (!WriteFile(handle_, rest.data(), chunk, &written, nullptr) || written == 0) {
      return false;
    }
    rest.remove_prefix(written);
  }
  return true;
}

}  // namespace lumenor

namespace lumenor {

namespace {

constexpr size_t kFlushAt = 32768;

}  // namespace

void BufferedOutput::Line(std::wstring_view text) {
  pending_ += text;
  pending_ += L'\n';
  if (pending_.size() >= kFlushAt) {
    (void)Flush();  // a failure is remembered for the final flush
  }
}

bool BufferedOutput::Flush() {
  if (!pending_.empty()) {
    failed_ |= !out_.Write(pending_);
    pending_.clear();
  }
  return !failed_;
}

}  // namespace lumenor
