#include "tests/shell/ShellTestSupport.h"

#include "app/StartupState.h"
#include "junk/JunkState.h"
#include "scan/ScanState.h"

namespace lumenor::testing {

void MainWindowTest::SetUp() {
  AutoStarted = 0;
  ShredPathArgument.clear();
  ScanBusy = 0;
  EraseDialogOpen = 0;
  JunkSearchRunning = 0;
}

void MainWindowTest::TearDown() {
  window_.reset();
  Pump();
  AutoStarted = 0;
  ShredPathArgument.clear();
  ScanBusy = 0;
  EraseDialogOpen = 0;
  JunkSearchRunning = 0;
}

void MainWindowTest::Open() {
  window_ = std::make_unique<CPcDlg>([this](const std::wstring& target, int show) {
    opened_.push_back({target, show});
  });
  window_->SetClock([this] { return now_; });
  ASSERT_TRUE(window_->Create(nullptr));
  window_->Show(SW_SHOW);
  (void)UpdateWindow(Main());
  Pump();
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

std::vector<bool> MainWindowTest::VisiblePages() {
  return {Window().ScanPage().IsVisible(), Window().JunkPage().IsVisible(), Window().ShredPage().IsVisible(),
          Window().OptionsPage().IsVisible()};
}

}  // namespace lumenor::testing
