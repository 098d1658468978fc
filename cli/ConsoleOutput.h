// Text output of the command-line tool: UTF-16 to a console window, UTF-8 bytes with
// "\n" line ends to a pipe or file.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace lumenor {

class ConsoleOutput {
 public:
  static ConsoleOutput StandardOutput() { return ConsoleOutput(GetStdHandle(STD_OUTPUT_HANDLE)); }
  static ConsoleOutput StandardError() { return ConsoleOutput(GetStdHandle(STD_ERROR_HANDLE)); }

  bool IsConsole() const { return isConsole_; }
  // False when the text could not be written whole (a closed pipe, a full disk).
  bool Write(std::wstring_view text) const;
  bool WriteLine(std::wstring_view text) const { return Write(text) && Write(L"\n"); }

 private:
  explicit ConsoleOutput(HANDLE handle);

  HANDLE handle_;
  bool isConsole_;
};

}  // namespace lumenor

namespace lumenor {

// Collects lines and writes them in large pieces; a failed write is remembered.
class BufferedOutput {
 public:
  explicit BufferedOutput(const ConsoleOutput& out) : out_(out) {}
  BufferedOutput(const BufferedOutput&) = delete;
  BufferedOutput& operator=(const BufferedOutput&) = delete;
  ~BufferedOutput() { (void)Flush(); }  // callers that care flush themselves

  void Line(std::wstring_view text);
  bool Flush();

 private:
  const ConsoleOutput& out_;
  std::wstring pending_;
  bool failed_ = false;
};

}  // namespace lumenor
