// What the trace engine reports, and to whom. The scan page, the command-line tool and
// the tests implement these; the engine knows nothing of windows.
#pragma once

#include "engine/FolderSafety.h"

#include <cstdint>
#include <string>

namespace lumenor {

class CMyObject;

// One trace found by a scan: a row of the results list.
struct FoundTrace {
  const CMyObject* item = nullptr;
  std::wstring name;      // value name or file name
  std::wstring location;  // root prefix and key path, or folder path ending with "\"
  bool isRegistry = false;
  uint64_t bytes = 0;  // the file's size, or the size of the value's data
};

// A location of an item that was neither scanned nor erased: its folder failed the folder
// rules, or (for rules) it is a protected key, a file no rule may delete, or its
// application runs.
struct SkippedLocation {
  const CMyObject* item = nullptr;
  int index = 0;          // the location's place in the item's list
  std::wstring location;  // the folder in canonical form, or as it came when it has none
  FolderVerdict reason = FolderVerdict::kAllowed;
  std::wstring why;  // the words of a refusal other than the folder rules', when set
};

// The words a skip is reported with: its own, or the folder rule's.
std::wstring SkipReason(const SkippedLocation& skipped);

class TraceSink {
 public:
  virtual ~TraceSink() = default;
  virtual void ItemStarted(const CMyObject& item) { (void)item; }
  virtual void ItemFinished(const CMyObject& item) { (void)item; }
  virtual void TraceFound(const FoundTrace& trace) = 0;
  virtual void LocationSkipped(const SkippedLocation& skipped) = 0;
};

// Deletions during an erase. A whole registry key reports the number of values it held
// (an empty key counts as one); a value or a file reports one. `bytes` is what went with
// them: the files' sizes, the values' data.
class EraseTally {
 public:
  virtual ~EraseTally() = default;
  virtual void Erased(int count, uint64_t bytes) = 0;
  virtual void EraseFailed(const std::wstring& what) = 0;
  virtual void LocationSkipped(const SkippedLocation& skipped) = 0;
};

}  // namespace lumenor
