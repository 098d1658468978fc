// Scanning and erasing one registry location: a whole key ("*.*", with every sub-key)
// or one named value.
#pragma once

#include "base/StopToken.h"
#include "engine/TraceSink.h"

#include <windows.h>

#include <functional>
#include <string_view>

namespace lumenor {

inline constexpr std::wstring_view kWholeKey = L"*.*";

// Called for each value found: the key path it was found in, and its name.
using RegistryTraceFound = std::function<void(std::wstring_view keyPath, std::wstring_view valueName)>;

// Reports every value of the key and of all its sub-keys (sub-keys first, each before the
// values of its parent), or just the named value if it exists. Sub-keys themselves are
// never reported. Registry links are not followed. Ends early on a stop request.
void ScanRegistryLocation(HKEY root, std::wstring_view keyPath, std::wstring_view selector, const StopToken& stop,
                          const RegistryTraceFound& found);

// Deletes the named value, or the whole key with everything below it. A whole key
// reports the number of values deleted with it, and one when it held none. A registry
// link, the key itself or one below it, is deleted as a link; what it points to is never
// touched. A missing key is nothing to erase; a key that is there but cannot be opened
// for erasing, and a value (missing ones too) or key that cannot be deleted, each count
// as a failure.
void EraseRegistryLocation(HKEY root, std::wstring_view keyPath, std::wstring_view selector, EraseTally& tally);

}  // namespace lumenor
