// A window handle that does not own its window: the small operations every dialog and
// control uses, each reporting the system's answer.
#pragma once

#include <windows.h>

#include <string>

namespace lumenor::controls {

class CWindow {
 public:
  CWindow() = default;
  explicit CWindow(HWND window) : window_(window) {}

  HWND Handle() const { return window_; }
  void Attach(HWND window) { window_ = window; }
  bool Exists() const { return window_ != nullptr && ::IsWindow(window_) != FALSE; }

  HWND Item(int id) const { return ::GetDlgItem(window_, id); }
  LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessageW(window_, message, wParam, lParam);
  }
  bool Post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::PostMessageW(window_, message, wParam, lParam) != FALSE;
  }

  // ShowWindow answers whether the window was visible before, not success; callers that
  // care ask IsVisible afterwards.
  void Show(int command) const { (void)::ShowWindow(window_, command); }
  bool IsVisible() const { return ::IsWindowVisible(window_) != FALSE; }
  // EnableWindow answers the previous state, not success.
  void Enable(bool enable) const { (void)::EnableWindow(window_, enable ? TRUE : FALSE); }
  bool IsEnabled() const { return ::IsWindowEnabled(window_) != FALSE; }

  std::wstring Text() const {
    std::wstring text(static_cast<size_t>(::GetWindowTextLengthW(window_)) + 1, L'\0');
    text.resize(static_cast<size_t>(::GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
    return text;
  }
  bool SetText(const std::wstring& text) const { return ::SetWindowTextW(window_, text.c_str()) != FALSE; }

  RECT ClientRect() const {
    RECT rect{};
    if (::GetClientRect(window_, &rect) == FALSE) {
      rect = RECT{};
    }
    return rect;
  }
  // The window's rectangle in its parent's client coordinates (screen for top level).
  RECT RectInParent() const {
    RECT rect{};
    if (::GetWindowRect(window_, &rect) == FALSE) {
      return RECT{};
    }
    HWND parent = ::GetParent(window_);
    if (parent != nullptr && (::GetWindowLongW(window_, GWL_STYLE) & WS_CHILD) != 0) {
      (void)::MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&rect), 2);  // 0 is a valid offset
    }
    return rect;
  }
  bool Move(int left, int top, int width, int height, bool repaint = true) const {
    return ::MoveWindow(window_, left, top, width, height, repaint ? TRUE : FALSE) != FALSE;
  }
  bool Move(const RECT& rect, bool repaint = true) const {
    return Move(rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, repaint);
  }
  // Changes the window's style bits and lets the frame follow.
  bool ChangeStyle(DWORD remove, DWORD add) const {
    const LONG old = ::GetWindowLongW(window_, GWL_STYLE);
    ::SetLastError(0);
    if (::SetWindowLongW(window_, GWL_STYLE, static_cast<LONG>((static_cast<DWORD>(old) & ~remove) | add)) == 0 &&
        ::GetLastError() != 0) {
      return false;
    }
    return ::SetWindowPos(window_, nullptr, 0, 0, 0, 0,
                          SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE) != FALSE;
  }
  bool Invalidate(bool erase = false) const {
    return ::InvalidateRect(window_, nullptr, erase ? TRUE : FALSE) != FALSE;
  }

  bool StartTimer(UINT_PTR id, UINT periodMs) const { return ::SetTimer(window_, id, periodMs, nullptr) != 0; }
  bool StopTimer(UINT_PTR id) const { return ::KillTimer(window_, id) != FALSE; }

 protected:
  HWND window_ = nullptr;
};

}  // namespace lumenor::controls
