// Report list: headed columns, and when owner-drawn, striped rows with the selection in
// the skin's accent colour. Rows are plain texts with a tag and a number each, kept by the
// control itself: the list view only asks for the rows it shows (a virtual list), so
// a hundred thousand rows fill in one step. The last column always reaches the list's
// right edge (see Layout.h).
#pragma once

#include "controls/Control.h"

#include <commctrl.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lumenor::controls {

struct ListRow {
  std::vector<std::wstring> texts;  // one a column; missing ones show empty
  LPARAM tag = 0;
  uint64_t value = 0;  // the owner's number for the row (a file's size); never shown
};

class CMyListCtrl : public CControl {
 public:
  static constexpr int kRowHeight = 20;

  CMyListCtrl() = default;
  ~CMyListCtrl() override;

  // Makes the list (report view, owner-drawn fixed rows, selection always shown).
  bool CreateList(HWND parent, int id, const RECT& rect, DWORD extraStyle = 0);
  // Takes over a list view of a dialog template; the template must give it
  // LVS_OWNERDATA, which cannot be added later.
  bool Attach(HWND dialog, int id);

  // Appends a column `width` pixels wide at 96 dots per inch (wider at higher
  // resolutions); the last column may grow to fill the list.
  bool AddColumn(const std::wstring& title, int width);
  int ColumnCount() const { return columns_; }
  // Appends a row; returns its index or -1.
  int AppendRow(std::vector<std::wstring> texts, LPARAM tag);
  // Appends many rows with one update of the list.
  bool AppendRows(std::vector<ListRow> rows);
  bool DeleteRow(int row);
  bool DeleteAll();
  int RowCount() const { return static_cast<int>(rows_.size()); }
  // Empty for a row or column that is not there.
  std::wstring RowText(int row, int column) const;
  LPARAM RowTag(int row) const;
  uint64_t RowValue(int row) const;
  // Every row, in order; valid until the rows change.
  std::span<const ListRow> Rows() const { return rows_; }
  // The first selected row, or -1.
  int SelectedRow() const;
  bool SelectRow(int row) const;

  bool OnReflected(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  bool SetUp();
  bool UpdateCount() const;
  void DrawRow(const DRAWITEMSTRUCT& draw) const;
  void GiveText(NMLVDISPINFOW& request) const;

  std::vector<ListRow> rows_;

  int columns_ = 0;
  int lastColumnWidth_ = 0;  // as given, before it was fitted to the list
  HIMAGELIST rowHeight_ = nullptr;
};

}  // namespace lumenor::controls
