// Starting the program's executables from a test: they sit beside the test executable.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

namespace lumenor::testing {

// Full path of `name` in the test executable's folder.
std::wstring ProgramBesideTest(std::wstring_view name);
// lumenor-cli.exe beside the test executable.
const std::wstring& CliProgram();
// `text` as one argument of a command line; a final backslash is doubled so that it does
// not escape the closing quote.
std::wstring QuotedArgument(const std::wstring& text);
// `text` in UTF-8 as it stands inside a JSON string.
std::string JsonEscaped(const std::wstring& text);

struct ProgramResult {
  bool finished = false;  // false: it could not be started, or did not end in time
  DWORD exitCode = 0;
  std::string out;
  std::string err;
};

// Runs `program` with `arguments` to its end, collecting its standard output and error.
ProgramResult RunProgram(const std::wstring& program, std::wstring_view arguments, DWORD timeoutMs = 60000);

// The same, on a console of this test's own that the program shares, where Ctrl+C is
// pressed once `ready` says so (asked every few milliseconds while the program runs). The
// test swallows the press from then on. `delivered` tells whether the console took it.
ProgramResult RunProgramAndPressCtrlC(const std::wstring& program, std::wstring_view arguments,
                                      const std::function<bool()>& ready, bool& delivered, DWORD timeoutMs = 60000);

// A program left running while the test does other things; ended at destruction if it
// is still running.
class RunningProgram {
 public:
  RunningProgram(const std::wstring& program, std::wstring_view arguments);
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;
  ~RunningProgram();

  bool Started() const { return process_.hProcess != nullptr; }
  DWORD ProcessId() const { return process_.dwProcessId; }
  // True once the program has ended, waiting at most `timeoutMs`.
  bool WaitForExit(DWORD timeoutMs);
  DWORD ExitCode() const;
  // Posts WM_CLOSE to the program's top-level windows; false if it has none.
  bool CloseWindows() const;
  // Posts `message` to the program's top-level windows; false if it has none.
  bool PostToWindows(UINT message, WPARAM wParam, LPARAM lParam) const;
  // Whether the program has a visible top-level window.
  bool HasVisibleWindow() const;

 private:
  PROCESS_INFORMATION process_{};
};

}  // namespace lumenor::testing
