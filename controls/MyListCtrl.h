// Owner-drawn report list: headed columns, striped rows, the selection in the skin's
// accent colour. Rows are plain texts with a 32-bit tag each.
#pragma once

#include "controls/Control.h"

#include <commctrl.h>

#include <string>
#include <vector>

namespace lumenor::controls {

class CMyListCtrl : public CControl {
 public:
  static constexpr int kRowHeight = 20;

  CMyListCtrl() = default;
  ~CMyListCtrl() override;

  // Makes the list (report view, owner-drawn fixed rows, selection always shown).
  bool CreateList(HWND parent, int id, const RECT& rect, DWORD extraStyle = 0);
  // Takes over a list view of a dialog template.
  bool Attach(HWND dialog, int id);

  bool AddColumn(const std::wstring& title, int width);
  // Appends a row; returns its index or -1.
  int AppendRow(const std::vector<std::wstring>& texts, LPARAM tag);
  bool DeleteRow(int row) const { return Send(LVM_DELETEITEM, static_cast<WPARAM>(row)) != FALSE; }
  bool DeleteAll() const { return Send(LVM_DELETEALLITEMS) != FALSE; }
  int RowCount() const { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }
  std::wstring RowText(int row, int column) const;
  LPARAM RowTag(int row) const;

  bool OnReflected(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  bool SetUp();
  void DrawRow(const DRAWITEMSTRUCT& draw) const;

  int columns_ = 0;
  HIMAGELIST rowHeight_ = nullptr;
};

}  // namespace lumenor::controls
