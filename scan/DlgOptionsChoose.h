// "Set items for one-click erase ": the catalogue as a tree with tick boxes (and, as it
// has always had, "Favorites" under ACDSee, which no catalogue item stands behind). It
// starts from the saved one-click list, or from the default list while none has been
// saved, and writes the ticked items back on "Save"; "Cancel" writes nothing. Ticking a
// rule item with a warning asks first, as on the scan page: the one-click erase takes
// the item later without a scan to look at.
#pragma once

#include "controls/Dialog.h"
#include "controls/UserPrompt.h"
#include "scan/ItemSelection.h"
#include "scan/MyTreeCtrl.h"
#include "settings/IniFileRW.h"

#include <utility>

namespace lumenor {

class CDlgOptionsChoose : public controls::CDialog {
 public:
  explicit CDlgOptionsChoose(const CIniFileRW& settings);

  ItemSelection& Selection() { return selection_; }
  CMyTreeCtrl& Tree() { return tree_; }
  // How the dialog asks about the warnings of the items the user ticks.
  void SetMessageBox(MessageBoxFunction ask) { ask_ = std::move(ask); }

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;

 private:
  CIniFileRW settings_;
  ItemSelection selection_;
  CMyTreeCtrl tree_;
  MessageBoxFunction ask_ = SystemMessageBox;
};

// Opens the dialog over `owner`; true when the choice was saved.
bool ChooseOneClickItems(HWND owner, const CIniFileRW& settings);

}  // namespace lumenor
