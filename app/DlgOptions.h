// The settings page, and the option values in force for the whole program, which it owns:
// the main window has them loaded from "setting.ini" at start and reads them for its
// close button, the scheduler and the update check; making the page loads them again.
// Leaving or showing the page with unsaved changes asks whether to save them. The page
// also tells which community rules are in use and fetches new ones on its worker.
#pragma once

#include "controls/Bitmap.h"
#include "controls/Dialog.h"
#include "controls/NButtonEx.h"
#include "controls/PageWorker.h"
#include "controls/UiTasks.h"
#include "controls/UserPrompt.h"
#include "rules/Winapp2Reader.h"
#include "settings/Settings.h"
#include "update/CommunityRules.h"

#include <array>
#include <functional>
#include <optional>
#include <string>

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

  // The community file in use, as start-up read it (none: there is no file); the page
  // need not exist.
  void SetCommunityRules(const std::optional<rules::Winapp2Counts>& file);
  // Where "Update community rules" puts the file: winapp2.ini beside the program unless
  // a test chooses another place.
  void SetCommunityRulesFile(std::wstring path) { communityRulesFile_ = std::move(path); }
  // Downloads the community rules on the page's worker from the address in "setting.ini";
  // what "Update community rules" does. False when an update runs already or none could
  // start (the page then says so). Unlike the update check, this download ends when asked
  // to stop and never replaces the file after a stop, so the page's end stops it and waits
  // for it: no thread outlives the page, and no file is swapped while the program closes.
  bool StartRulesUpdate();
  bool UpdatingRules() const { return worker_.Running(); }
  // How the worker's thread is started; tests make it fail or wait.
  void SetThreadStarter(controls::ThreadStarter starter) { worker_.SetThreadStarter(std::move(starter)); }

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
  void ShowCommunityRules() const;
  void RulesUpdateEnded(controls::RunEnd end, const CommunityRulesUpdate& update);
  void Tell(const std::wstring& text, UINT icon) const;

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

  struct RulesInUse {
    std::wstring version;  // "260730", the day the file was published; may be empty
    int entries = 0;
  };
  std::optional<RulesInUse> communityRules_;
  std::wstring communityRulesFile_;
  controls::UiTaskQueue tasks_;
  // Last: its end stops the download and waits for it (see StartRulesUpdate).
  controls::PageWorker worker_{tasks_};
};

}  // namespace lumenor
