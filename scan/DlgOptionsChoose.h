// "Set items for one-click erase ": the catalogue as a tree with tick boxes (and, as it
// has always had, "Favorites" under ACDSee, which no catalogue item stands behind). It
// starts from the saved one-click list, or from the default list while none has been
// saved, and writes the ticked items back on "Save"; "Cancel" writes nothing.
#pragma once

#include "controls/Dialog.h"
#include "scan/ItemSelection.h"
#include "scan/MyTreeCtrl.h"
#include "settings/IniFileRW.h"

namespace lumenor {

class CDlgOptionsChoose : public controls::CDialog {
 public:
  explicit CDlgOptionsChoose(const CIniFileRW& settings);

  ItemSelection& Selection() { return selection_; }
  CMyTreeCtrl& Tree() { return tree_; }

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;

 private:
  CIniFileRW settings_;
  ItemSelection selection_;
  CMyTreeCtrl tree_;
};

// Opens the dialog over `owner`; true when the choice was saved.
bool ChooseOneClickItems(HWND owner, const CIniFileRW& settings);

}  // namespace lumenor
