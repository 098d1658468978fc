#include "controls/Control.h"

#include <commctrl.h>

namespace lumenor::controls {

namespace {
constexpr wchar_t kObjectProperty[] = L"Lumenor.Control";
constexpr UINT_PTR kSubclassId = 0x4C4D;
}  // namespace

CControl::~CControl() { Release(); }

bool CControl::Subclass(HWND window) {
  if (window == nullptr || window_ != nullptr) {
    return false;
  }
  if (::SetWindowSubclass(window, SubclassProc, kSubclassId, reinterpret_cast<DWORD_PTR>(this)) == FALSE) {
    return false;
  }
  if (::SetPropW(window, kObjectProperty, this) == FALSE) {
    (void)::RemoveWindowSubclass(window, SubclassProc, kSubclassId);  // undoing our own step
    return false;
  }
  window_ = window;
  return true;
}

bool CControl::Create(const wchar_t* windowClass, const wchar_t* text, DWORD style, DWORD exStyle, const RECT& rect,
                      HWND parent, int id) {
  HWND window = ::CreateWindowExW(
      exStyle, windowClass, text, style | WS_CHILD, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top,
      parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleW(nullptr), nullptr);
  if (window == nullptr) {
    return false;
  }
  if (!Subclass(window)) {
    (void)::DestroyWindow(window);  // the half-made control is of no use
    return false;
  }
  return true;
}

CControl* CControl::FromHandle(HWND window) {
  return window == nullptr ? nullptr : static_cast<CControl*>(::GetPropW(window, kObjectProperty));
}

LRESULT CControl::Default(UINT message, WPARAM wParam, LPARAM lParam) {
  return ::DefSubclassProc(window_, message, wParam, lParam);
}

void CControl::Release() {
  if (window_ == nullptr) {
    return;
  }
  if (::IsWindow(window_) != FALSE) {
    (void)::RemovePropW(window_, kObjectProperty);                     // answers the property's old value
    (void)::RemoveWindowSubclass(window_, SubclassProc, kSubclassId);  // fails only if never set
  }
  window_ = nullptr;
}

LRESULT CALLBACK CControl::SubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                        DWORD_PTR self) {
  auto* control = reinterpret_cast<CControl*>(self);
  if (message == WM_NCDESTROY) {
    control->Release();
    return ::DefSubclassProc(window, message, wParam, lParam);
  }
  try {
    return control->WindowProc(message, wParam, lParam);
  } catch (...) {
    return ::DefSubclassProc(window, message, wParam, lParam);
  }
}

}  // namespace lumenor::controls
