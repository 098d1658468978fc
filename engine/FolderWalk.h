// The one walk of a folder tree, shared by the trace engine, the junk walk and the shred
// list. One open search per folder level on an explicit stack, so a tree of any depth
// costs heap, not stack. Each entry comes with the find data the listing gave (name,
// attributes, size). A link, to a file or a folder, is never entered; a folder is entered
// when the visitor asks. The stop token is tested between entries. Long paths reach the
// system in their "\\?\" form.
#pragma once

#include "base/StopToken.h"
#include "engine/FolderSafety.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace lumenor {

struct WalkEntry {
  const std::wstring& folder;        // ending with "\"
  const std::wstring& folderForApi;  // the same in "\\?\" form
  const WIN32_FIND_DATAW& found;

  const wchar_t* Name() const { return found.cFileName; }
  std::wstring Path() const { return folder + found.cFileName; }
  bool IsFolder() const { return (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0; }
  bool IsLink() const { return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0; }
  uint64_t Size() const { return (static_cast<uint64_t>(found.nFileSizeHigh) << 32) | found.nFileSizeLow; }
  // The entry as a path that travels on: the walk's folder was read by the folder rules,
  // and its forms grow by the names the listing gave.
  SafePath Where() const;
};

// Hears of each entry but "." and ".."; for a folder that is no link, true enters it
// (its entries come next, then the rest of this folder's).
using WalkVisitor = std::function<bool(const WalkEntry& entry)>;
// Hears of each folder whose entries have all been visited, `folder` itself last: also
// of a folder whose search found nothing or could not start.
using FolderLeft = std::function<void(const std::wstring& folder)>;

// Walks the entries of `folder` (ending with "\") that match `pattern`, and those of the
// folders entered, with the same pattern. Ends early on a stop; nothing is left then.
void WalkFolder(const SafePath& folder, std::wstring_view pattern, const StopToken& stop, const WalkVisitor& visit,
                const FolderLeft& left = nullptr);

// The entries of `folder` alone (ending with "\"; read by the folder rules first) that
// match `pattern`, nothing entered. False when the folder rules cannot read it.
bool ListFolder(std::wstring_view folder, std::wstring_view pattern,
                const std::function<void(const WalkEntry& entry)>& visit);

}  // namespace lumenor
