// A control as an object: the child window is subclassed, so the object sees the
// control's own messages (WindowProc), and the dialog layer reflects the notifications
// the control sends its parent back to it (OnReflected; see Dialog.h). The object is
// found from the window through a window property.
#pragma once

#include "controls/GdiOwners.h"
#include "controls/Window.h"

namespace lumenor::controls {

class CControl : public CWindow {
 public:
  CControl() = default;
  CControl(const CControl&) = delete;
  CControl& operator=(const CControl&) = delete;
  // Gives the window back to its own procedure if it still exists.
  virtual ~CControl();

  // Takes over an existing child window, such as a control of a dialog template.
  bool Subclass(HWND window);
  bool SubclassItem(HWND dialog, int id) { return Subclass(::GetDlgItem(dialog, id)); }
  // Makes a child window of a system class and takes it over.
  bool Create(const wchar_t* windowClass, const wchar_t* text, DWORD style, DWORD exStyle, const RECT& rect,
              HWND parent, int id);

  // The object attached to a window, or null.
  static CControl* FromHandle(HWND window);

  // A notification the control sent to its parent (WM_NOTIFY, WM_DRAWITEM, WM_MEASUREITEM,
  // WM_COMPAREITEM, WM_CTLCOLOR*). Returns true when handled, with the parent's answer.
  virtual bool OnReflected(UINT /*message*/, WPARAM /*wParam*/, LPARAM /*lParam*/, LRESULT& /*result*/) {
    return false;
  }

 protected:
  // The control's own messages; the default passes them on to the original procedure.
  virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) { return Default(message, wParam, lParam); }
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam);

  // For controls that paint themselves whole: answers WM_PAINT through `paint(dc)` and
  // WM_ERASEBKGND with "erased". True when `message` was one of the two.
  template <typename PaintFunction>
  bool HandlePaintMessage(UINT message, PaintFunction&& paint, LRESULT& result) {
    if (message == WM_ERASEBKGND) {
      result = TRUE;
      return true;
    }
    if (message != WM_PAINT) {
      return false;
    }
    const PaintDC dc(window_);
    if (dc) {
      paint(dc.Get());
    }
    result = 0;
    return true;
  }

 private:
  static LRESULT CALLBACK SubclassProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                       DWORD_PTR self);
  void Release();
};

}  // namespace lumenor::controls
