// The main window made for one test: modeless, with every opened page recorded instead
// of started, and a fixed local time for the scheduler.
#pragma once

#include "app/PcDlg.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ThreadStarters.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lumenor::testing {

struct OpenedPage {
  std::wstring target;
  int showCommand;
};

struct MessageBoxCall {
  std::wstring text;
  std::wstring caption;
  UINT type;
};

class MainWindowTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // Makes and shows the main window, started with `switches_`.
  void Open();
  // Runs the messages waiting for this thread; a quit message is noted, not acted on.
  void Pump();
  // Pumps until `done` holds or `timeoutMs` passed; whether it held.
  bool PumpUntil(const std::function<bool()>& done, DWORD timeoutMs = 15000);
  void Command(int id) {
    SendMessageW(Main(), WM_COMMAND, static_cast<WPARAM>(id), 0);
    Pump();
  }
  // Starts a scan of nothing, or a junk walk of an empty folder, on a thread held until
  // `held` is released: the page's run is under way meanwhile.
  void StartHeldScan(const HeldThreads& held);
  void StartHeldJunkSearch(const HeldThreads& held);
  HWND Main() const { return window_->Handle(); }
  CPcDlg& Window() { return *window_; }
  // Which of the four hideable pages are visible: scan, junk, shredder, settings.
  std::vector<bool> VisiblePages();

  StartupSwitches switches_;
  TempFolder junkFolder_;
  std::unique_ptr<CPcDlg> window_;
  std::vector<OpenedPage> opened_;
  // Every message box of the settings page and the update check, answered with `answer_`.
  std::vector<MessageBoxCall> messageBoxes_;
  int answer_ = IDCANCEL;
  SYSTEMTIME now_{};
  bool quitPosted_ = false;
  WPARAM quitCode_ = 0;
};

}  // namespace lumenor::testing
