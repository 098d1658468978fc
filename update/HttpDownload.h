// One file fetched over HTTP or HTTPS into memory with WinINet: only what this download
// received, never a copy that an earlier one left in the cache, with the server's status
// and the length it announced, so the caller can tell a whole file from part of one.
// Connecting and each wait for data give up after 10 seconds; where the system does not
// keep those time-outs, a watchdog closes the session after 20 seconds without data, and
// within a tenth of a second once the caller asks to stop.
#pragma once

#include "base/StopToken.h"

#include <cstdint>
#include <optional>
#include <string>

namespace lumenor {

struct HttpDownload {
  enum class Outcome {
    kComplete,     // the transfer ended without an error (whatever the status)
    kNoSession,    // WinINet could not be started
    kBadAddress,   // the address could not be read
    kUnreachable,  // no connection: no server there, a name that does not resolve, a refused certificate
    kTimedOut,     // nothing came for too long
    kBrokenOff,    // the connection failed during the transfer
    kTooLarge,     // more than the caller's limit came; `body` holds the first part
    kStopped,      // the caller asked to stop
  };
  Outcome outcome = Outcome::kUnreachable;
  unsigned long status = 0;                      // the HTTP status; 0 when none came
  std::optional<std::uint64_t> announcedLength;  // the Content-Length header, when sent
  std::wstring contentType;                      // the Content-Type header; empty when none
  std::string body;
  unsigned long systemError = 0;  // the error of the call that failed, for kUnreachable and kBrokenOff
};

// `url` with its scheme: "https://host/path". At most `maxBytes` are kept.
HttpDownload DownloadUrl(const std::wstring& url, std::size_t maxBytes, const StopToken& stop = {});

}  // namespace lumenor
