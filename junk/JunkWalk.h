// The junk walk: every file below a folder, or on every fixed disk, whose lower-cased
// name one of the chosen masks accepts. Folders are told from files by their attributes
// and entered unless they are links; only files are ever reported. The stop token is
// tested between entries. The set-up page, lumenor-cli and the benchmark share it.
#pragma once

#include "base/StopToken.h"
#include "engine/FolderSafety.h"
#include "engine/SystemPaths.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace lumenor {

struct JunkFile {
  std::wstring name;     // lower case
  std::wstring folder;   // as the walk built it, ending with "\"
  size_t maskIndex = 0;  // the first chosen mask that accepts the name
  uint64_t bytes = 0;
};

using JunkFound = std::function<void(JunkFile&& file)>;

// Walks `folder` (canonical, ending with "\"); a folder that is itself a link, or that
// cannot be searched, yields nothing.
void WalkFolderForJunk(const std::wstring& folder, std::span<const std::wstring> masks, const StopToken& stop,
                       const JunkFound& found);

// Walks the root of every drive that `paths` calls fixed, in drive order.
void WalkFixedDisksForJunk(const SystemPaths& paths, std::span<const std::wstring> masks, const StopToken& stop,
                           const JunkFound& found);

// Where a walk asked for by the user starts: a typed folder made canonical (relative,
// drive-relative and device paths refused), or nothing for every fixed disk.
struct JunkScope {
  bool allFixedDisks = true;
  std::wstring folder;  // canonical, ending with "\"; empty for every fixed disk
};
// Nothing when `typed` is no absolute folder; `refusal` then says why.
std::optional<JunkScope> JunkScopeOfFolder(std::wstring_view typed, FolderVerdict* refusal = nullptr);

void WalkJunkScope(const JunkScope& scope, const SystemPaths& paths, std::span<const std::wstring> masks,
                   const StopToken& stop, const JunkFound& found);

}  // namespace lumenor
