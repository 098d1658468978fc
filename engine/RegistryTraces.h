// Scanning and erasing one registry location: a whole key ("*.*", with every sub-key)
// or one named value.
#pragma once

#include "base/StopToken.h"
#include "engine/Registry.h"
#include "engine/TraceSink.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string_view>

namespace lumenor {

inline constexpr std::wstring_view kWholeKey = L"*.*";

// Called for each value found: the key path it was found in, its name and the size of its
// data in bytes.
using RegistryTraceFound =
    std::function<void(std::wstring_view keyPath, std::wstring_view valueName, uint64_t dataBytes)>;

// Reports every value of the key and of all its sub-keys (sub-keys first, each before the
// values of its parent), or just the named value if it exists. Sub-keys themselves are
// never reported. Registry links are not followed. Ends early on a stop request. `view`
// is the registry view every key is opened in (the engine's own unless told).
void ScanRegistryLocation(HKEY root, std::wstring_view keyPath, std::wstring_view selector, const StopToken& stop,
                          const RegistryTraceFound& found, REGSAM view = kRegistryView);

// Deletes the named value, or the whole key with everything below it. A whole key
// reports the number of values deleted with it, and one when it held none, with the size
// of their data. A registry
// link, the key itself or one below it, is deleted as a link; what it points to is never
// touched. A missing key is nothing to erase; a key that is there but cannot be opened
// for erasing, and a value (missing ones too) or key that cannot be deleted, each count
// as a failure.
void EraseRegistryLocation(HKEY root, std::wstring_view keyPath, std::wstring_view selector, EraseTally& tally,
                           REGSAM view = kRegistryView);

}  // namespace lumenor
