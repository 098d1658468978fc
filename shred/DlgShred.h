// The shredder page: the list of files to shred, the three methods and the buttons.
// Other parts hand it paths to list (the "-S:" start-up path, a path another program
// sends to the main window).
#pragma once

#include "controls/Dialog.h"
#include "controls/MyCheckBox.h"
#include "controls/MyListCtrl.h"
#include "controls/NButtonEx.h"

#include <array>
#include <string>

namespace lumenor {

class CDlgShred : public controls::CDialog {
 public:
  CDlgShred();

  // Lists one file given by its full path: name after the last backslash, folder before
  // the name's first occurrence in the path. Files that cannot be opened for writing and
  // rows already listed are left out. Returns whether a row was added.
  bool AddPath(const std::wstring& fullPath);
  const controls::CMyListCtrl& List() const { return list_; }

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  bool AddFile(const std::wstring& fullPath, const std::wstring& name);

  controls::CMyListCtrl list_;
  std::array<controls::CMyCheckBox, 3> methods_;
  controls::CNButtonEx shred_;
};

}  // namespace lumenor
