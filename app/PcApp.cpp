#include "app/PcApp.h"

#include "base/ModulePath.h"
#include "catalogue/Catalogue.h"

#include <windows.h>

namespace lumenor {

std::wstring ProcessCommandLine() {
  const wchar_t* commandLine = GetCommandLineW();
  return commandLine != nullptr ? commandLine : L"";
}

bool CPcApp::InitInstance() {
  // Without a mutex (creation failed for another reason) start-up goes on unprotected.
  mutex_.Reset(CreateMutexW(nullptr, FALSE, kSingleInstanceMutexName));
  if (GetLastError() == ERROR_ALREADY_EXISTS) {
    return false;
  }

  (void)ParseCommandLine();  // its result is kept in the switches

  const bool showSplash = !switches_.autoStarted;
  if (showSplash) {
    ShowSplash();
  }
  // The rules beside the program are read while the splash shows: the built-in ones, the
  // user's rule files and the community file, each item shown where it applies.
  LoadedRules loaded = LoadRules(ModuleFolder());
  ruleProblems_ = std::move(loaded.problems);
  community_ = loaded.community;
  InstallCatalogue(CatalogueWithRules(loaded, MachinePaths()));
  if (showSplash) {
    CloseSplash();
  }

  RunMainWindow(switches_);
  return false;
}

int CPcApp::ParseCommandLine() {
  switches_ = ReadStartupSwitches(commandLine_);
  return switches_.hasShredPath ? 1 : 0;
}

int CPcApp::ExitInstance() {
  FreeCatalogue();
  if (mutex_) {
    // Fails harmlessly when this copy never owned the mutex; the handle still closes.
    (void)ReleaseMutex(mutex_.Get());
    mutex_.Reset();
  }
  return 0;
}

}  // namespace lumenor
