// Registry access shared by the engine: the view it works in, an owning key handle, and
// reading a value as text.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace lumenor {

// The program is a 32-bit one and the applications it cleans wrote through the 32-bit
// view of the registry; a 64-bit build looks through the same view.
inline constexpr REGSAM kRegistryView = KEY_WOW64_32KEY;

class UniqueKey {
 public:
  UniqueKey() = default;
  explicit UniqueKey(HKEY key) : key_(key) {}
  UniqueKey(const UniqueKey&) = delete;
  UniqueKey& operator=(const UniqueKey&) = delete;
  UniqueKey(UniqueKey&& other) noexcept : key_(std::exchange(other.key_, nullptr)) {}
  UniqueKey& operator=(UniqueKey&& other) noexcept {
    if (this != &other) {
      Reset(std::exchange(other.key_, nullptr));
    }
    return *this;
  }
  ~UniqueKey() { Reset(); }

  HKEY Get() const { return key_; }
  explicit operator bool() const { return key_ != nullptr; }
  void Reset(HKEY key = nullptr) {
    if (key_ != nullptr) {
      (void)RegCloseKey(key_);  // nothing to do if closing our own handle fails
    }
    key_ = key;
  }

 private:
  HKEY key_ = nullptr;
};

// Opens `path` under `root` with `access` in `view` (the engine's own unless told). A key
// that is a registry link is opened as the link itself, never as its target. `result`,
// when given, receives the system's answer (ERROR_FILE_NOT_FOUND for a missing key).
UniqueKey OpenKey(HKEY root, std::wstring_view path, REGSAM access, LONG* result = nullptr,
                  REGSAM view = kRegistryView);

// Whether an open key is a registry link.
bool IsLinkKey(HKEY key);

// The value `name` (empty: the default value) of `path` under `root`, as text. Only
// string values are text; the first string of a multi-string counts. Nothing for a
// missing key or value, another type, or an empty string.
std::optional<std::wstring> ReadRegistryText(HKEY root, std::wstring_view path, std::wstring_view name);

}  // namespace lumenor
