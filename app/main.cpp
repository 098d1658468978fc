// Entry point of lumenor.exe.
#include "app/PcApp.h"
#include "res/resource.h"

#include <windows.h>

namespace {

INT_PTR CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM) {
  switch (message) {
    case WM_INITDIALOG:
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
        (void)EndDialog(window, 0);  // the dialog is ours; ending it cannot fail here
        return TRUE;
      }
      break;
    case WM_CLOSE:
      (void)EndDialog(window, 0);
      return TRUE;
    default:
      break;
  }
  return FALSE;
}

class LumenorApp final : public lumenor::CPcApp {
 protected:
  void RunMainWindow() override {
    (void)DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_MAIN), nullptr, MainWindowProc, 0);
  }
};

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  LumenorApp app;
  (void)app.InitInstance();  // always false: nothing runs after the main window
  return app.ExitInstance();
}
