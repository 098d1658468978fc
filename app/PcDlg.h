// The main window: owns the five pages and shows one at a time under the skin's tab
// strip, answers the skin's buttons and the notification icon's menu, fires the scheduled
// scan and runs the update checks. Start-up runs it modally; when it ends, the program
// ends.
#pragma once

#include "app/DlgHelp.h"
#include "app/DlgOptions.h"
#include "app/SkinFrame.h"
#include "app/StartupSwitches.h"
#include "app/TrayIcon.h"
#include "app/UpdateCheckRunner.h"
#include "controls/Dialog.h"
#include "controls/GifPicture.h"
#include "junk/DlgJunk.h"
#include "scan/DlgScan.h"
#include "shred/DlgShred.h"
#include "update/MakerSite.h"

#include <windows.h>

#include <functional>
#include <string>

namespace lumenor {

class CPcDlg : public controls::CDialog {
 public:
  static constexpr UINT_PTR kSchedulerTimer = 6;
  static constexpr UINT kSchedulerPeriodMs = 60000;
  enum Page : int { kScanPage = 0, kJunkPage = 1, kShredPage = 2, kOptionsPage = 3, kHelpPage = 4, kFaqPage = 5 };

  // Pages and web pages open through `opener` (the shell, unless a test watches). The
  // window owns the start-up switches from here on.
  explicit CPcDlg(PageOpener opener = OpenWithShell, StartupSwitches switches = {});

  // The workers' status in the notification area: start animates the icon (and shows the
  // balloon while the window is hidden), stop puts the main icon back.
  void StartTrayAnimation(const std::wstring& title, const std::wstring& text);
  void StopTrayAnimation(const std::wstring& title, const std::wstring& text);
  // Hides the other pages and shows page `index` (4: only the help page underneath;
  // 5: the web help page, nothing hidden).
  void ShowPage(int index);

  // Where the scheduler's tick reads the local time; the system clock unless replaced.
  void SetClock(std::function<SYSTEMTIME()> clock) { clock_ = std::move(clock); }
  // While 1, the scheduler's tick does nothing. Nothing in the program sets it.
  void SetSchedulerSuspended(int suspended) { schedulerSuspended_ = suspended; }

  // The pages, each made when it is first needed (the window must exist).
  CDlgScan& ScanPage() { return Made(scan_); }
  CDlgJunk& JunkPage() { return Made(junk_); }
  CDlgShred& ShredPage() { return Made(shred_); }
  CDlgOptions& OptionsPage() { return Made(options_); }
  CDlgHelp& HelpPage() { return Made(help_); }
  const controls::CMyTabCtrl& Tabs() const { return skin_.Tabs(); }
  // Where the skin's bands and controls lie in the client area.
  const FrameLayout& Frame() const { return skin_.Layout(); }
  const CTrayIcon& Tray() const { return tray_; }
  UpdateCheckRunner& UpdateCheck() { return updateCheck_; }
  // The option values in force, which the settings page owns; its window need not exist.
  OptionValues& OptionsInForce() { return options_.Values(); }
  // Started at log-on and not yet brought forward: every paint hides the window.
  bool StaysHidden() const { return autoStarted_; }

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnTimer(UINT_PTR id) override;
  bool OnPaint() override;
  bool OnEraseBackground(HDC dc) override;
  bool OnClose() override;

 private:
  // What start-up does once the frame can be shown: the icon, the first page, the
  // update check.
  void FinishStartUp();
  // Hands the pages what they report to; they need no window for it.
  void WirePages();
  // Makes `page` inside the frame unless it exists; false when it could not be made.
  bool MadePage(controls::CDialog& page);
  template <typename Page>
  Page& Made(Page& page) {
    (void)MadePage(page);
    return page;
  }
  void OnTrayCallback(UINT iconId, UINT mouseMessage);
  void SchedulerTick();
  void OnCopyData(const COPYDATASTRUCT& data);
  void ShowFromMenu(int tab, int page);
  void CloseButton();
  void Quit();
  // Whether any page's work runs: icon clicks are ignored meanwhile.
  bool AnyWorkRuns() const;

  // GDI+ runs for the life of the window: the pages' animations need it.
  controls::CGdiplusSession gdiplus_;
  PageOpener opener_;
  std::function<SYSTEMTIME()> clock_;
  bool autoStarted_;        // "-A", until a page is brought forward
  std::wstring shredPath_;  // "-S:", listed on the shredder at start

  CDlgScan scan_;
  CDlgOptions options_;
  CDlgShred shred_;
  CDlgJunk junk_;
  CDlgHelp help_;

  CSkinFrame skin_;
  CTrayIcon tray_;
  UpdateCheckRunner updateCheck_;
  int schedulerSuspended_ = 0;
};

}  // namespace lumenor
