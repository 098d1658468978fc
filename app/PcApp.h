// The application object: one running copy per user (a named mutex), the command-line
// switches, the catalogue built once for the run, and the main window run modally. The
// process ends when the main window's modal loop returns.
#pragma once

#include "app/StartupSwitches.h"
#include "base/UniqueHandle.h"
#include "engine/RuleLoading.h"

#include <optional>
#include <string>
#include <vector>

namespace lumenor {

inline constexpr wchar_t kSingleInstanceMutexName[] = L"XXXXXX_LUMENOR";

// The command line this process was started with.
std::wstring ProcessCommandLine();

class CPcApp {
 public:
  // The switches come from `commandLine`: the process's own unless a test gives one.
  explicit CPcApp(std::wstring commandLine = ProcessCommandLine()) : commandLine_(std::move(commandLine)) {}
  CPcApp(const CPcApp&) = delete;
  CPcApp& operator=(const CPcApp&) = delete;
  virtual ~CPcApp() = default;

  // Runs start-up and the main window. Returns false always: at once when another copy
  // runs (silently), otherwise after the main window has closed.
  bool InitInstance();
  // Frees the catalogue and gives up the mutex; returns the process exit code.
  int ExitInstance();
  // Reads the switches from the command line; 1 when "-S:" was given, else 0.
  int ParseCommandLine();
  const StartupSwitches& Switches() const { return switches_; }
  // What reading the rule files found wrong (the built-in and the user's), and the
  // community file as read, if there is one.
  const std::vector<rules::Problem>& RuleProblems() const { return ruleProblems_; }
  const std::optional<rules::Winapp2Counts>& CommunityFile() const { return community_; }

 protected:
  // The windowed steps of start-up, empty here; the GUI fills them in.
  virtual void ShowSplash() {}
  virtual void CloseSplash() {}
  // The main window owns the switches from here on.
  virtual void RunMainWindow(const StartupSwitches& /*switches*/) {}

 private:
  std::wstring commandLine_;
  StartupSwitches switches_;
  std::vector<rules::Problem> ruleProblems_;
  std::optional<rules::Winapp2Counts> community_;
  UniqueHandle mutex_;
};

}  // namespace lumenor
