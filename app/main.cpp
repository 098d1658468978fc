// Entry point of lumenor.exe: the application object with its windows.
#include "app/DlgWelcome.h"
#include "app/PcApp.h"
#include "app/PcDlg.h"

#include <windows.h>

#include <memory>

namespace {

class LumenorApp final : public lumenor::CPcApp {
 protected:
  void ShowSplash() override {
    splash_ = std::make_unique<lumenor::CDlgWelcome>();
    if (splash_->Create(nullptr)) {
      splash_->Show(SW_SHOW);
      // Paint it now: the catalogue is built before any message loop runs.
      (void)::UpdateWindow(splash_->Handle());
      PumpSplash();
    }
  }
  void CloseSplash() override {
    PumpSplash();
    ::Sleep(1000);
    if (splash_ && splash_->Handle() != nullptr) {
      (void)splash_->End(0);  // hides the modeless splash; it is destroyed at exit
    }
  }
  // Handles what the splash has been sent so far (its first paint and exposure), as no
  // message loop runs until the main window.
  void PumpSplash() const {
    MSG message{};
    while (splash_ && ::PeekMessageW(&message, splash_->Handle(), 0, 0, PM_REMOVE) != FALSE) {
      (void)::DispatchMessageW(&message);
    }
  }
  void RunMainWindow(const lumenor::StartupSwitches& switches) override {
    lumenor::CPcDlg mainWindow(lumenor::OpenWithShell, switches);
    (void)mainWindow.DoModal(nullptr);  // ends with the quit message; nothing to do with its code
  }

 private:
  std::unique_ptr<lumenor::CDlgWelcome> splash_;
};

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  LumenorApp app;
  (void)app.InitInstance();  // always false: nothing runs after the main window
  return app.ExitInstance();
}
