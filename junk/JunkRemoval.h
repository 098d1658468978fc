// Removing junk files the walk found: a plain delete of one file, with its read-only bit
// cleared first (its other attributes are left as they are). Never a folder, never
// overwriting (that is the shredder's job).
#pragma once

#include "base/StopToken.h"
#include "engine/TraceSink.h"

#include <cstdint>
#include <span>
#include <string>

namespace lumenor {

// The full path of a listed file: its folder (ending with "\") and its name.
inline std::wstring JunkPath(const std::wstring& folder, const std::wstring& name) { return folder + name; }

// Deletes the file at `path`; false when it is still there, or is a folder. `bytes`, when
// given, receives the size of the file deleted.
bool DeleteJunkFile(const std::wstring& path, uint64_t* bytes = nullptr);

// Deletes each file in turn, reporting one deletion (with its size) or one failure per
// file, until a stop request (the result page's delete-all has no stop, and passes none).
void DeleteJunkFiles(std::span<const std::wstring> paths, EraseTally& tally, const StopToken& stop = StopToken());

}  // namespace lumenor
