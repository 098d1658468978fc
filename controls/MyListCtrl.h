// Report list: headed columns, and when owner-drawn, striped rows with the selection in
// the skin's accent colour. Rows are plain texts with a 32-bit tag each. The last column
// always reaches the list's right edge (see Layout.h).
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

  // Appends a column `width` pixels wide at 96 dots per inch (wider at higher
  // resolutions); the last column may grow to fill the list.
  bool AddColumn(const std::wstring& title, int width);
  int ColumnCount() const { return columns_; }
  // Appends a row; returns its index or -1.
  int AppendRow(const std::vector<std::wstring>& texts, LPARAM tag);
  bool DeleteRow(int row) const { return Send(LVM_DELETEITEM, static_cast<WPARAM>(row)) != FALSE; }
  bool DeleteAll() const { return Send(LVM_DELETEALLITEMS) != FALSE; }
  int RowCount() const { return static_cast<int>(Send(LVM_GETITEMCOUNT)); }
  std::wstring RowText(int row, int column) const;
  LPARAM RowTag(int row) const;

  bool OnReflected(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool SetUp();
  void DrawRow(const DRAWITEMSTRUCT& draw) const;

  int columns_ = 0;
  int lastColumnWidth_ = 0;  // as given, before it was fitted to the list
  HIMAGELIST rowHeight_ = nullptr;
};

}  // namespace lumenor::controls
