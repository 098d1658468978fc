// The junk cleaner page: the catalogue of junk file masks, where to look, and the
// start button. The main window resets it to its set-up state each time it shows it.
#pragma once

#include "controls/Dialog.h"
#include "controls/MyCheckBox.h"
#include "controls/MyListCtrl.h"
#include "controls/NButtonEx.h"

#include <array>

namespace lumenor {

class CDlgJunk : public controls::CDialog {
 public:
  CDlgJunk();

  // Back to the set-up state: all disks chosen, folder cleared and disabled.
  void ResetToSetUp();
  int Resets() const { return resets_; }
  const controls::CMyListCtrl& Catalogue() const { return catalogue_; }

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void EnableFolder(bool enable) const;

  controls::CMyListCtrl catalogue_;
  std::array<controls::CMyCheckBox, 5> choices_;
  controls::CNButtonEx start_;
  int resets_ = 0;
};

}  // namespace lumenor
