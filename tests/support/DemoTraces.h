// A realistic set of traces on this machine, as a user's Windows and applications leave
// them: MRU lists in the registry, a Firefox and an Opera profile, temporary files, the
// browser's folders, a recycle bin. Used to seed the demo prefix and by end-to-end tests.
// Seeding again writes the same traces again.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumenor::testing {

struct SeededTrace {
  unsigned itemId;
  std::wstring name;      // value or file name
  std::wstring location;  // root prefix and key path, or folder ending with "\"
  bool isRegistry;
  uint64_t bytes;  // the file's size, or the value's text with its terminator
};

// Seeds every trace; returns them, or the ones it could not place as `failures`.
std::vector<SeededTrace> SeedDemoTraces(std::vector<std::wstring>& failures);

}  // namespace lumenor::testing
