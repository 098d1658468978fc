// The settings page, and the option values in force for the whole program, which it owns:
// the main window has them loaded from "setting.ini" at start and reads them for its
// close button, the scheduler and the update check; making the page loads them again.
// Leaving or showing the page with unsaved changes asks whether to save them.
#pragma once

#include "controls/Bitmap.h"
#include "controls/Dialog.h"
#include "controls/NButtonEx.h"
#include "controls/UserPrompt.h"
#include "settings/Settings.h"

#include <array>
#include <functional>

namespace lumenor {

class CDlgOptions : public controls::CDialog {
 public:
  CDlgOptions();

  // Loads the values in force from "setting.ini"; the page need not exist.
  void LoadValues();
  const OptionValues& Values() const { return values_; }
  // For tests that set the values in force directly.
  OptionValues& Values() { return values_; }

  // Asks about unsaved changes, then shows or hides the page (SW_SHOW / SW_HIDE).
  void ShowPage(int showCommand);
  // Whether the controls differ from the option values as the question counts it: the
  // time lists only while "Scan every" is ticked, AM/PM never.
  bool Changed() const;
  // Writes every option from the controls; each value in force changes only when its
  // write succeeded.
  void Save();

  // Where the question is asked (the system's message box unless a test answers).
  void SetMessageBox(MessageBoxFunction messageBox) { messageBox_ = std::move(messageBox); }
  // What "Check Update" runs.
  void SetUpdateCheck(std::function<void()> check) { updateCheck_ = std::move(check); }
  // The program written into the start-up entry; the running one unless replaced.
  void SetProgramPath(std::wstring path) { programPath_ = std::move(path); }

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnEraseBackground(HDC dc) override;

 private:
  void FillTimeLists() const;
  // Puts every control back to its option value.
  void ShowOptions();
  void EnableTimeLists(bool enable) const;
  int Checked(int id) const;
  int Selected(int id) const;
  void PaintBackground(HDC dc, const RECT& client) const;
  // What the page paints behind its controls, as a brush for the labels, check boxes and
  // frames that lie on it: filled with it, aligned to where each stands, they let the
  // panel show through as if they had no background. Made again when the page's size
  // changes.
  HBRUSH BackgroundBrush();

  class PaintedBackground {
   public:
    PaintedBackground() = default;
    PaintedBackground(const PaintedBackground&) = delete;
    PaintedBackground& operator=(const PaintedBackground&) = delete;
    ~PaintedBackground() { Reset(); }
    void Reset();

    SIZE size{};
    HBITMAP bitmap = nullptr;
    HBRUSH brush = nullptr;
  };

  controls::CBitmapResource panel_;
  PaintedBackground background_;
  controls::CNButtonEx save_;
  OptionValues values_;
  MessageBoxFunction messageBox_ = SystemMessageBox;
  std::function<void()> updateCheck_;
  std::wstring programPath_;
  // "Exit" and "Minimize to Tray" as the page showed them for the values in force.
  std::array<int, 2> closeChoicesShown_{};
};

}  // namespace lumenor
