#include "controls/Dialog.h"

#include "controls/Control.h"

namespace lumenor::controls {

namespace {

// Messages whose answer is the dialog procedure's return value rather than DWLP_MSGRESULT.
bool AnswersDirectly(UINT message) {
  switch (message) {
    case WM_INITDIALOG:
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC:
    case WM_COMPAREITEM:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
    case WM_QUERYDRAGICON:
      return true;
    default:
      return false;
  }
}

}  // namespace

CDialog::~CDialog() {
  if (window_ != nullptr && ::IsWindow(window_) != FALSE) {
    // Detach first: the derived parts of this object are gone, so no handler may run.
    (void)::SetWindowLongPtrW(window_, DWLP_USER, 0);  // our own window's slot; cannot fail
    if (!modal_) {
      (void)::DestroyWindow(window_);  // nothing to do if the system refuses at this point
    }
  }
}

INT_PTR CDialog::DoModal(HWND owner) {
  modal_ = true;
  return ::DialogBoxParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(templateId_), owner, DialogProc,
                           reinterpret_cast<LPARAM>(this));
}

bool CDialog::Create(HWND parent) {
  modal_ = false;
  HWND window = ::CreateDialogParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(templateId_), parent, DialogProc,
                                     reinterpret_cast<LPARAM>(this));
  return window != nullptr;
}

bool CDialog::OnCommand(int id, int /*code*/, HWND /*control*/) {
  if (id != IDOK && id != IDCANCEL) {
    return false;
  }
  if (modal_) {
    (void)End(id);  // ending our own running dialog does not fail
  }
  return true;
}

bool CDialog::ReflectToControl(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) const {
  HWND child = nullptr;
  switch (message) {
    case WM_NOTIFY:
      child = reinterpret_cast<const NMHDR*>(lParam)->hwndFrom;
      break;
    case WM_DRAWITEM: {
      const auto* draw = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
      if (draw->CtlType != ODT_MENU) {
        child = draw->hwndItem;
      }
      break;
    }
    case WM_MEASUREITEM: {
      const auto* measure = reinterpret_cast<const MEASUREITEMSTRUCT*>(lParam);
      if (measure->CtlType != ODT_MENU) {
        child = Item(static_cast<int>(measure->CtlID));
      }
      break;
    }
    case WM_COMPAREITEM:
      child = reinterpret_cast<const COMPAREITEMSTRUCT*>(lParam)->hwndItem;
      break;
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC:
      child = reinterpret_cast<HWND>(lParam);
      break;
    default:
      return false;
  }
  CControl* control = CControl::FromHandle(child);
  return control != nullptr && control->OnReflected(message, wParam, lParam, result);
}

bool CDialog::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (ReflectToControl(message, wParam, lParam, result)) {
    return true;
  }
  switch (message) {
    case WM_INITDIALOG:
      result = OnInit() ? TRUE : FALSE;
      return true;
    case WM_COMMAND:
      return OnCommand(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
    case WM_NOTIFY:
      return OnNotify(static_cast<int>(wParam), *reinterpret_cast<const NMHDR*>(lParam), result);
    case WM_TIMER:
      return OnTimer(wParam);
    case WM_PAINT:
      return OnPaint();
    case WM_ERASEBKGND:
      if (OnEraseBackground(reinterpret_cast<HDC>(wParam))) {
        result = TRUE;
        return true;
      }
      return false;
    case WM_CLOSE:
      return OnClose();
    default:
      return false;
  }
}

INT_PTR CALLBACK CDialog::DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  CDialog* dialog = nullptr;
  if (message == WM_INITDIALOG) {
    dialog = reinterpret_cast<CDialog*>(lParam);
    dialog->window_ = window;
    (void)::SetWindowLongPtrW(window, DWLP_USER, lParam);  // our own window's slot; cannot fail
  } else {
    dialog = reinterpret_cast<CDialog*>(::GetWindowLongPtrW(window, DWLP_USER));
  }
  if (dialog == nullptr) {
    return FALSE;
  }

  LRESULT result = 0;
  bool handled = false;
  try {
    handled = dialog->OnMessage(message, wParam, lParam, result);
  } catch (...) {
    handled = false;  // a failed handler leaves the message to the default handling
  }
  if (message == WM_NCDESTROY) {
    (void)::SetWindowLongPtrW(window, DWLP_USER, 0);
    dialog->window_ = nullptr;
  }
  if (!handled) {
    return FALSE;
  }
  if (AnswersDirectly(message)) {
    return static_cast<INT_PTR>(result);
  }
  (void)::SetWindowLongPtrW(window, DWLP_MSGRESULT, result);
  return TRUE;
}

}  // namespace lumenor::controls
