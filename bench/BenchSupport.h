// What the benchmarks of the pages and the rules share: the message loop that notes the
// longest time the window's thread was busy at once, and the community rule file built
// into a benchmark (bench/CMakeLists.txt, when a copy lies beside the sources).
#pragma once

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <string_view>

namespace lumenor::bench {

using Clock = std::chrono::steady_clock;

inline double Seconds(Clock::duration duration) { return std::chrono::duration<double>(duration).count(); }

// Runs the thread's messages until `done`, noting the longest single dispatch (seconds).
inline double PumpUntil(const std::function<bool()>& done) {
  Clock::duration longest{};
  MSG message{};
  while (!done()) {
    if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      const auto start = Clock::now();
      TranslateMessage(&message);
      DispatchMessageW(&message);
      longest = std::max(longest, Clock::now() - start);
    } else {
      (void)MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);  // a timeout is the usual answer
    }
  }
  return Seconds(longest);
}

// The resource id of the community file in a benchmark that embeds it.
inline constexpr int kWinapp2Resource = 9100;

// The embedded community file; empty when the benchmark was built without one.
inline std::string_view EmbeddedWinapp2() {
  const HMODULE module = GetModuleHandleW(nullptr);
  const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(kWinapp2Resource), RT_RCDATA);
  if (resource == nullptr) return {};
  const HGLOBAL loaded = LoadResource(module, resource);
  const void* bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
  return bytes == nullptr ? std::string_view()
                          : std::string_view(static_cast<const char*>(bytes), SizeofResource(module, resource));
}

}  // namespace lumenor::bench
