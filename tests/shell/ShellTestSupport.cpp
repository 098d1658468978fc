#include "tests/shell/ShellTestSupport.h"

#include "junk/JunkCatalogue.h"
#include "res/resource.h"

namespace lumenor::testing {

void MainWindowTest::SetUp() {
  // No test reaches out to the real site, whatever its settings file starts.
  ASSERT_TRUE(SetEnvironmentVariableW(kMakerSiteVariable, L"http://127.0.0.1:8080"));
}

void MainWindowTest::TearDown() {
  window_.reset();
  Pump();
}

void MainWindowTest::Open() {
  window_ = std::make_unique<CPcDlg>(
      [this](const std::wstring& target, int show) {
        opened_.push_back({target, show});
      },
      switches_);
  window_->SetClock([this] { return now_; });
  const MessageBoxFunction recorder = [this](HWND, const std::wstring& text, const std::wstring& caption, UINT type) {
    messageBoxes_.push_back({text, caption, type});
    return answer_;
  };
  window_->OptionsPage().SetMessageBox(recorder);
  window_->UpdateCheck().SetMessageBox(recorder);
  ASSERT_TRUE(window_->Create(nullptr));
  window_->Show(SW_SHOW);
  (void)UpdateWindow(Main());
  Pump();
}

void MainWindowTest::StartHeldScan(const HeldThreads& held) {
  CDlgScan& page = Window().ScanPage();
  page.Selection().UntickAll();
  page.Tree().RefreshChecks();
  page.SetThreadStarter(held.Held());
  SendMessageW(page.Handle(), WM_COMMAND, IDC_SCAN_START, 0);
  ASSERT_TRUE(page.Scanning());
}

void MainWindowTest::StartHeldJunkSearch(const HeldThreads& held) {
  CDlgJunk& page = Window().JunkPage();
  page.ResultPage().SetThreadStarter(held.Held());
  page.StartJunkScan(junkFolder_.Path(), AllJunkMasks());
  ASSERT_TRUE(page.Searching());
}

void MainWindowTest::Pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      quitPosted_ = true;
      quitCode_ = message.wParam;
      continue;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool MainWindowTest::PumpUntil(const std::function<bool()>& done, DWORD timeoutMs) {
  const ULONGLONG start = GetTickCount64();
  while (!done()) {
    if (GetTickCount64() - start > timeoutMs) {
      return false;
    }
    (void)MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
    Pump();
  }
  return true;
}

std::vector<bool> MainWindowTest::VisiblePages() {
  return {Window().ScanPage().IsVisible(), Window().JunkPage().IsVisible(), Window().ShredPage().IsVisible(),
          Window().OptionsPage().IsVisible()};
}

}  // namespace lumenor::testing
