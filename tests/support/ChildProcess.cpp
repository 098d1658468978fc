#include "tests/support/ChildProcess.h"

#include "base/TextEncoding.h"

#include "base/ModulePath.h"

#include <thread>
#include <vector>

namespace lumenor::testing {

namespace {

std::wstring CommandLineFor(const std::wstring& program, std::wstring_view arguments) {
  std::wstring line = L"\"" + program + L"\"";
  if (!arguments.empty()) {
    line += L' ';
    line += arguments;
  }
  return line;
}

void DrainPipe(HANDLE pipe, std::string& into) {
  char chunk[4096];
  DWORD read = 0;
  while (ReadFile(pipe, chunk, sizeof chunk, &read, nullptr) && read > 0) {
    into.append(chunk, read);
  }
}

struct WindowSearch {
  DWORD processId;
  std::vector<HWND> windows;
};

BOOL CALLBACK CollectWindowOfProcess(HWND window, LPARAM context) {
  auto* search = reinterpret_cast<WindowSearch*>(context);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner == search->processId) {
    search->windows.push_back(window);
  }
  return TRUE;
}

std::vector<HWND> TopLevelWindowsOf(DWORD processId) {
  WindowSearch search{processId, {}};
  EnumWindows(CollectWindowOfProcess, reinterpret_cast<LPARAM>(&search));
  return search.windows;
}

BOOL WINAPI SwallowCtrlC(DWORD event) { return event == CTRL_C_EVENT ? TRUE : FALSE; }

// A console for this test alone, with its output kept where it was.
void UseConsoleOfOwn() {
  const DWORD streams[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  HANDLE kept[3] = {};
  for (int index = 0; index < 3; ++index) kept[index] = GetStdHandle(streams[index]);
  FreeConsole();
  AllocConsole();
  for (int index = 0; index < 3; ++index) SetStdHandle(streams[index], kept[index]);
  SetConsoleCtrlHandler(SwallowCtrlC, TRUE);
}

}  // namespace

std::wstring ProgramBesideTest(std::wstring_view name) { return ModuleFolder() + std::wstring(name); }

ProgramResult RunProgram(const std::wstring& program, std::wstring_view arguments, DWORD timeoutMs) {
  bool unused = false;
  return RunProgramAndPressCtrlC(program, arguments, nullptr, unused, timeoutMs);
}

ProgramResult RunProgramAndPressCtrlC(const std::wstring& program, std::wstring_view arguments,
                                      const std::function<bool()>& ready, bool& delivered, DWORD timeoutMs) {
  delivered = false;
  if (ready) {
    // Ctrl+C on a console of the test's own reaches the test, which swallows it, and the
    // program, and no one else (Wine before 9 sends no Ctrl+Break, and a program in a
    // group of its own ignores Ctrl+C). Made before the pipes, so that the console's
    // host inherits none of them.
    static const bool ownConsole = (UseConsoleOfOwn(), true);  // once: a second would close the first
    (void)ownConsole;
  }
  ProgramResult result;
  SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE outRead = nullptr, outWrite = nullptr, errRead = nullptr, errWrite = nullptr;
  if (!CreatePipe(&outRead, &outWrite, &inheritable, 0) || !CreatePipe(&errRead, &errWrite, &inheritable, 0)) {
    return result;
  }
  SetHandleInformation(outRead, HANDLE_FLAG_INHERIT, 0);
  SetHandleInformation(errRead, HANDLE_FLAG_INHERIT, 0);

  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = outWrite;
  startup.hStdError = errWrite;
  PROCESS_INFORMATION process{};
  std::wstring commandLine = CommandLineFor(program, arguments);
  const bool started = CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                      &startup, &process) != FALSE;
  CloseHandle(outWrite);
  CloseHandle(errWrite);
  if (started) {
    std::thread outReader(DrainPipe, outRead, std::ref(result.out));
    std::thread errReader(DrainPipe, errRead, std::ref(result.err));
    if (ready) {
      const ULONGLONG start = GetTickCount64();
      while (WaitForSingleObject(process.hProcess, 5) == WAIT_TIMEOUT && GetTickCount64() - start < timeoutMs) {
        if (ready()) {
          delivered = GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != FALSE;
          break;
        }
      }
    }
    result.finished = WaitForSingleObject(process.hProcess, timeoutMs) == WAIT_OBJECT_0;
    if (!result.finished) {
      TerminateProcess(process.hProcess, 1);
      WaitForSingleObject(process.hProcess, INFINITE);
    }
    outReader.join();
    errReader.join();
    GetExitCodeProcess(process.hProcess, &result.exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  CloseHandle(outRead);
  CloseHandle(errRead);
  return result;
}

RunningProgram::RunningProgram(const std::wstring& program, std::wstring_view arguments) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  std::wstring commandLine = CommandLineFor(program, arguments);
  if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process_)) {
    process_ = {};
  }
}

RunningProgram::~RunningProgram() {
  if (!Started()) {
    return;
  }
  if (!WaitForExit(0)) {
    TerminateProcess(process_.hProcess, 1);
    WaitForSingleObject(process_.hProcess, 10000);
  }
  CloseHandle(process_.hThread);
  CloseHandle(process_.hProcess);
}

bool RunningProgram::WaitForExit(DWORD timeoutMs) {
  return Started() && WaitForSingleObject(process_.hProcess, timeoutMs) == WAIT_OBJECT_0;
}

DWORD RunningProgram::ExitCode() const {
  DWORD code = STILL_ACTIVE;
  if (Started()) {
    GetExitCodeProcess(process_.hProcess, &code);
  }
  return code;
}

bool RunningProgram::CloseWindows() const {
  const std::vector<HWND> windows = TopLevelWindowsOf(process_.dwProcessId);
  for (HWND window : windows) {
    PostMessageW(window, WM_CLOSE, 0, 0);
  }
  return !windows.empty();
}

bool RunningProgram::PostToWindows(UINT message, WPARAM wParam, LPARAM lParam) const {
  const std::vector<HWND> windows = TopLevelWindowsOf(process_.dwProcessId);
  for (HWND window : windows) {
    PostMessageW(window, message, wParam, lParam);
  }
  return !windows.empty();
}

bool RunningProgram::HasVisibleWindow() const {
  for (HWND window : TopLevelWindowsOf(process_.dwProcessId)) {
    if (IsWindowVisible(window)) {
      return true;
    }
  }
  return false;
}

const std::wstring& CliProgram() {
  static const std::wstring program = ProgramBesideTest(L"lumenor-cli.exe");
  return program;
}

std::wstring QuotedArgument(const std::wstring& text) {
  return L"\"" + text + (text.ends_with(L'\\') ? L"\\\"" : L"\"");
}

std::string JsonEscaped(const std::wstring& text) {
  std::string escaped;
  for (const char c : ToUtf8(text)) {
    if (c == '\\' || c == '"') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

}  // namespace lumenor::testing
