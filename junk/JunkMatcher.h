// Whether a file name is junk under a list of masks. Names are compared lower-cased and
// split at their last dot; a name without a dot is never junk. Most masks are "*." and
// one extension; a few of the catalogue's masks have rules of their own (leading "~",
// "?" positions, whole names), tried first and falling back to the extension test.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lumenor {

// `lowerName` (already lower-cased) under one mask.
bool MaskAccepts(std::wstring_view mask, std::wstring_view lowerName);

// The place in `masks` of the first mask that accepts `lowerName`, or nothing.
std::optional<size_t> FirstAcceptingMask(std::wstring_view lowerName, std::span<const std::wstring> masks);

// `name` in lower case, as the masks are written.
std::wstring LowerCaseName(std::wstring_view name);

}  // namespace lumenor
