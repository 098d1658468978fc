// Folders of junk and not-junk files for the junk tests, on the scratch fixed disk E:
// (the harness maps it), removed with everything in them when the test ends.
#pragma once

#include "junk/JunkWalk.h"

#include <span>
#include <string>
#include <utility>
#include <vector>

namespace lumenor::testing {

// A fresh folder on E: ("E:\junk-test-<process>-<n>\"), or under TEMP where there is no E:.
class ScratchFolder {
 public:
  ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();

  const std::wstring& Path() const { return path_; }
  std::wstring operator/(std::wstring_view name) const { return path_ + std::wstring(name); }

 private:
  std::wstring path_;
};

using JunkRow = std::pair<std::wstring, std::wstring>;  // folder, name: as the list shows them

// Lays out a tree of junk and ordinary files below `root` (nested folders, upper-case
// names, names without a dot, a folder named like junk) and returns the rows a walk
// must find with the default masks and with every mask, sorted.
struct SeededTree {
  std::vector<JunkRow> defaultRows;
  std::vector<JunkRow> allRows;
};
SeededTree SeedJunkTree(const std::wstring& root);

// What a walk of `folder` under `masks` finds, sorted.
std::vector<JunkRow> WalkRows(const std::wstring& folder, std::span<const std::wstring> masks,
                              const StopToken& stop = StopToken());

}  // namespace lumenor::testing
