// "Cookies to Keep": the domains whose cookies an erase leaves in place, edited as a list.
// The hosts the last scan found cookies of are offered to pick from; a domain can also be
// typed (an address pasted there counts for its host). "OK" writes the list into the
// settings file; "Cancel" writes nothing.
#pragma once

#include "controls/Dialog.h"
#include "scan/CookieKeepChoice.h"
#include "settings/IniFileRW.h"

#include <optional>
#include <string>
#include <vector>

namespace lumenor {

class CDlgCookiesToKeep : public controls::CDialog {
 public:
  // `foundHosts`: those of the last scan (ScanRun::CookieHostsFound), or none.
  CDlgCookiesToKeep(const CIniFileRW& settings, std::vector<std::wstring> foundHosts);

  // What the lists show; set once the window exists.
  const CookieKeepChoice& Choice() const { return *choice_; }

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;

 private:
  void ShowLists() const;
  std::vector<std::wstring> Selected(int list) const;
  void KeepTyped();

  CIniFileRW settings_;
  std::vector<std::wstring> foundHosts_;
  std::optional<CookieKeepChoice> choice_;
};

// Opens the dialog over `owner`; true when the list was written.
bool ChooseCookiesToKeep(HWND owner, const CIniFileRW& settings, std::vector<std::wstring> foundHosts);

}  // namespace lumenor
