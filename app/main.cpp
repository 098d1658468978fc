// Entry point of lumenor.exe: the application object with its windows.
#include "app/DlgWelcome.h"
#include "app/PcApp.h"
#include "app/PcDlg.h"
#include "base/ResourceString.h"
#include "res/resource.h"

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

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
    if (!switches.autoStarted) TellRuleProblems();
    lumenor::CPcDlg mainWindow(lumenor::OpenWithShell, switches);
    (void)mainWindow.DoModal(nullptr);  // ends with the quit message; nothing to do with its code
  }

 private:
  // A rule file of the user's that does not load is told once at start, file, line and
  // column first; its other rules and every other file load all the same.
  void TellRuleProblems() const {
    constexpr size_t kShown = 12;
    const std::vector<lumenor::rules::Problem>& problems = RuleProblems();
    if (problems.empty()) return;
    std::wstring text = lumenor::LoadResourceString(IDS_RULE_PROBLEMS);
    for (size_t index = 0; index < problems.size() && index < kShown; ++index) {
      const lumenor::rules::Problem& problem = problems[index];
      text += L"\n" + problem.where.file + L":" + std::to_wstring(problem.where.line) + L":" +
              std::to_wstring(problem.where.column) + L": " + problem.message;
    }
    if (problems.size() > kShown) text += L"\n... (" + std::to_wstring(problems.size() - kShown) + L")";
    (void)::MessageBoxW(nullptr, text.c_str(), L"Lumenor", MB_OK | MB_ICONWARNING);  // only OK to answer
  }

  std::unique_ptr<lumenor::CDlgWelcome> splash_;
};

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  LumenorApp app;
  (void)app.InitInstance();  // always false: nothing runs after the main window
  return app.ExitInstance();
}
