// Dialogs and pages as classes. How messages flow:
//  1. DoModal / Create hand `this` to the system as the dialog's init parameter;
//     DialogProc stores it in the window (DWLP_USER) at WM_INITDIALOG. Messages before
//     that one get the system's default handling.
//  2. Every later message goes to the virtual OnMessage. Its default first reflects
//     WM_NOTIFY, WM_DRAWITEM, WM_MEASUREITEM, WM_COMPAREITEM and WM_CTLCOLOR* to the
//     CControl object of the child that sent them (see Control.h), so owner drawing lives
//     in the control. What the control leaves goes to OnInit, OnCommand, OnNotify,
//     OnTimer, OnPaint, OnEraseBackground, OnClose.
//  3. A handler returns true when it handled the message; `result` is then the answer
//     (DialogProc puts it where the system expects it). False gives the default handling.
//  4. A dialog class handles its private messages by overriding OnMessage and calling
//     the base for the rest. Nothing thrown by a handler leaves DialogProc.
#pragma once

#include "controls/Window.h"

namespace lumenor::controls {

class CDialog : public CWindow {
 public:
  explicit CDialog(int templateId) : templateId_(templateId) {}
  CDialog(const CDialog&) = delete;
  CDialog& operator=(const CDialog&) = delete;
  // Destroys a modeless window that still exists; its handlers are no longer called.
  virtual ~CDialog();

  // Runs the dialog in its own modal loop; returns the code given to End, or -1.
  INT_PTR DoModal(HWND owner);
  // Creates the dialog modeless: a top-level window, or a page when the template has the
  // child style. False if the window could not be made.
  bool Create(HWND parent);
  bool End(INT_PTR code) const { return ::EndDialog(window_, code) != FALSE; }

  int TemplateId() const { return templateId_; }

 protected:
  virtual bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);

  // Returns true to let the system focus the first control.
  virtual bool OnInit() { return true; }
  // Default: a modal dialog ends with IDOK or IDCANCEL; modeless ones and pages never
  // close themselves on Enter or Esc.
  virtual bool OnCommand(int id, int code, HWND control);
  virtual bool OnNotify(int /*id*/, const NMHDR& /*header*/, LRESULT& /*result*/) { return false; }
  virtual bool OnTimer(UINT_PTR /*id*/) { return false; }
  virtual bool OnPaint() { return false; }
  virtual bool OnEraseBackground(HDC /*dc*/) { return false; }
  virtual bool OnClose() { return false; }

 private:
  static INT_PTR CALLBACK DialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  bool ReflectToControl(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) const;

  int templateId_;
  bool modal_ = false;
};

}  // namespace lumenor::controls
