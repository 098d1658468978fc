// Where the running executable lives. Settings, help and the command-line tool's files
// are all found beside it.
#pragma once

#include <string>

namespace lumenor {

// Full path of the running executable, never truncated; empty if the system refuses it.
std::wstring ModuleFileName();

// The executable's folder, ending with a backslash; empty if unknown.
std::wstring ModuleFolder();

}  // namespace lumenor
