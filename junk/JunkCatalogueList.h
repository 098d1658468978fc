// The set-up page's list of junk masks: a report list with a check box per row. It holds
// 45 rows, so the list view keeps rows and check states itself (no virtual list, whose
// check boxes the owner would have to draw and toggle). The last column reaches the
// list's right edge, as in every list of the program.
#pragma once

#include "controls/Control.h"

#include <commctrl.h>

#include <string>

namespace lumenor {

class CJunkCatalogueList : public controls::CControl {
 public:
  // Takes over a report list of a dialog template and gives it check boxes.
  bool Attach(HWND dialog, int id);

  // A column `width` pixels wide at 96 dots per inch.
  bool AddColumn(const std::wstring& title, int width);
  bool AppendRow(const std::wstring& mask, const std::wstring& description);
  int RowCount() const { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }
  std::wstring RowText(int row, int column) const;

  bool Checked(int row) const;
  bool SetChecked(int row, bool checked) const;

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  int columns_ = 0;
  int lastColumnWidth_ = 0;
};

}  // namespace lumenor
