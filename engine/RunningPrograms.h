// Whether an application runs: a process of one of its names, or a file it holds open
// while it runs (a browser's "lockfile" or "parent.lock", which stays on the disk after
// the browser ends: only whether another program holds it open tells).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// The names of the programs running now ("chrome.exe"), taken once.
class RunningPrograms {
 public:
  // The processes running at this moment; none when they cannot be listed.
  static RunningPrograms Now();

  RunningPrograms() = default;
  explicit RunningPrograms(std::vector<std::wstring> names) : names_(std::move(names)) {}

  // Letter case aside.
  bool Runs(std::wstring_view processName) const;

 private:
  std::vector<std::wstring> names_;
};

// Whether another program holds the file open so that it cannot be opened for us alone.
// A missing file is held by nobody.
bool IsFileHeldOpen(const std::wstring& path);

}  // namespace lumenor
