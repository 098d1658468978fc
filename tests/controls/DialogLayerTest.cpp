// The dialog layer: notifications reach the control that sent them, and nothing a
// handler throws leaves the window procedure.
#include "controls/Control.h"
#include "controls/Dialog.h"
#include "res/resource.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace lumenor::controls {
namespace {

class RecordingButton : public CControl {
 public:
  int drawn = 0;
  bool OnReflected(UINT message, WPARAM, LPARAM, LRESULT& result) override {
    if (message != WM_DRAWITEM) {
      return false;
    }
    ++drawn;
    result = TRUE;
    return true;
  }
};

class HostPage : public CDialog {
 public:
  HostPage() : CDialog(IDD_HELP) {}
  int commands = 0;

 protected:
  bool OnCommand(int id, int code, HWND control) override {
    ++commands;
    if (id == 1) {
      throw std::runtime_error("handler failed");
    }
    return CDialog::OnCommand(id, code, control);
  }
};

// A page needs a parent window.
class DialogLayer : public ::testing::Test {
 protected:
  void SetUp() override {
    owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 300, 200, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(owner_, nullptr);
  }
  void TearDown() override { DestroyWindow(owner_); }
  HWND owner_ = nullptr;
};

TEST_F(DialogLayer, OwnerDrawingIsReflectedToTheControlItself) {
  HostPage page;
  ASSERT_TRUE(page.Create(owner_));
  ShowWindow(owner_, SW_SHOW);
  RecordingButton button;
  ASSERT_TRUE(button.Create(L"BUTTON", L"", WS_VISIBLE | BS_OWNERDRAW, 0, RECT{0, 0, 40, 20}, page.Handle(), 77));
  page.Show(SW_SHOW);
  ASSERT_TRUE(button.Invalidate());
  UpdateWindow(button.Handle());
  EXPECT_GE(button.drawn, 1);
  EXPECT_EQ(CControl::FromHandle(button.Handle()), &button);
}

TEST_F(DialogLayer, AThrowingHandlerFallsBackToDefaultHandling) {
  HostPage page;
  ASSERT_TRUE(page.Create(owner_));
  SendMessageW(page.Handle(), WM_COMMAND, 1, 0);
  SendMessageW(page.Handle(), WM_COMMAND, IDCANCEL, 0);
  EXPECT_EQ(page.commands, 2);
  EXPECT_TRUE(page.Exists()) << "Esc does not close a page";
}

TEST_F(DialogLayer, AControlLetGoBeforeItsWindowLeavesTheWindowWorking) {
  HostPage page;
  ASSERT_TRUE(page.Create(owner_));
  ShowWindow(owner_, SW_SHOW);
  HWND window = nullptr;
  {
    RecordingButton button;
    ASSERT_TRUE(button.Create(L"BUTTON", L"", WS_VISIBLE | BS_OWNERDRAW, 0, RECT{0, 0, 40, 20}, page.Handle(), 78));
    window = button.Handle();
  }
  EXPECT_EQ(CControl::FromHandle(window), nullptr);
  page.Show(SW_SHOW);
  InvalidateRect(window, nullptr, TRUE);
  UpdateWindow(window);  // would reach a destroyed object if the subclass were left behind
  SUCCEED();
}

}  // namespace
}  // namespace lumenor::controls
