// The application object: one running copy per user (a named mutex), the command-line
// switches, the catalogue built once for the run, and the main window run modally. The
// process ends when the main window's modal loop returns.
#pragma once

#include "base/UniqueHandle.h"

namespace lumenor {

inline constexpr wchar_t kSingleInstanceMutexName[] = L"XXXXXX_LUMENOR";

class CPcApp {
 public:
  CPcApp() = default;
  CPcApp(const CPcApp&) = delete;
  CPcApp& operator=(const CPcApp&) = delete;
  virtual ~CPcApp() = default;

  // Runs start-up and the main window. Returns false always: at once when another copy
  // runs (silently), otherwise after the main window has closed.
  bool InitInstance();
  // Frees the catalogue and gives up the mutex; returns the process exit code.
  int ExitInstance();

 protected:
  // The windowed steps of start-up, empty here; the GUI fills them in.
  virtual void ShowSplash() {}
  virtual void CloseSplash() {}
  virtual void RunMainWindow() {}

 private:
  UniqueHandle mutex_;
};

}  // namespace lumenor
