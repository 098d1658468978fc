// The item tree: the catalogue with a three-state box on every row, whose states live in
// an ItemSelection; during a scan, a turning mark beside the item being scanned, a done
// mark beside those scanned, and the number of traces found beside every row. The scan
// page and the one-click dialog both show their trees with it. The rows under a row are
// made when it is first opened, so a tree of thousands of rules is ready at once; the
// tree's parent reflects its notifications (a controls::CDialog).
#pragma once

#include "catalogue/CMyObject.h"
#include "controls/Bitmap.h"
#include "controls/Control.h"
#include "engine/ScanRun.h"
#include "scan/CatalogueImages.h"
#include "scan/ItemSelection.h"

#include <commctrl.h>

#include <functional>
#include <vector>

namespace lumenor {

class CMyTreeCtrl : public controls::CControl {
 public:
  static constexpr UINT_PTR kAnimationTimer = 1000;
  static constexpr UINT kAnimationPeriodMs = 500;
  enum ScanState : int { kUntouched = 0, kInProgress = 1, kDone = 2 };

  CMyTreeCtrl() = default;
  ~CMyTreeCtrl() override;

  // Makes the tree (buttons, lines, full-row selection) with `font`, the catalogue
  // pictures and the check-box pictures.
  bool CreateTree(HWND parent, int id, const RECT& rect, HFONT font);

  // Shows the rows of `selection`, each with the picture and the found count of its node
  // (nodes[row], null for a row without a node). The selection must outlive the tree.
  void Fill(ItemSelection& selection, std::vector<const CMyObject*> nodes);
  // Brings every box shown up to date with the selection.
  void RefreshChecks();
  // Called after the user changed a box.
  std::function<void()> onChecksChanged;
  // Asked when a press ticks items (their ids); false puts every box back as it was.
  std::function<bool(const std::vector<unsigned>& ticked)> confirmTicks;

  // Scan progress, on the window's thread.
  void ResetScanStates();
  void BeginItem(unsigned id);
  void EndItem();
  int ScanStateOf(unsigned id) const;
  // The run whose counts and sizes the rows show once scanned; null: none.
  void ShowRun(const ScanRun* run) {
    run_ = run;
    (void)Invalidate();
  }
  // Repaints the counts.
  void RefreshCounts() const { (void)Invalidate(); }

  // The tree item of a row, made first (with the rows beside it and above it) when the
  // row above it was never opened; null for a row that is not in the selection.
  HTREEITEM ItemOfRow(int row);
  int RowOfItem(HTREEITEM item) const;

  bool OnReflected(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  // Makes the rows under `row` unless they are made.
  void MakeChildren(int row);
  void InsertRow(int row);
  HTREEITEM MadeItem(int row) const;
  void ClickBox(int row);
  LRESULT CustomDraw(NMTVCUSTOMDRAW& draw) const;
  void DrawRowExtras(HDC dc, int row, const RECT& line) const;
  RECT StatusCell(const RECT& line) const;
  // The whole line of `item` in the tree's client coordinates.
  bool LineOf(HTREEITEM item, RECT& line) const;
  void SetScanState(int row, int state);

  ItemSelection* selection_ = nullptr;
  const ScanRun* run_ = nullptr;
  std::vector<const CMyObject*> nodes_;
  std::vector<int> images_;
  std::vector<HTREEITEM> items_;  // null for a row not made yet
  std::vector<int> shownStates_;  // the box each made row shows
  std::vector<int> scanStates_;
  int currentRow_ = -1;
  // The mark's timer runs from an item's start until a tick finds no item being scanned:
  // a scan of thousands of empty items would otherwise start and stop it thousands of
  // times.
  bool animating_ = false;
  int frame_ = 0;
  SIZE countLabel_{};
  CImageList pictures_;
  CImageList checks_;
  controls::CBitmapResource busyStrip_;
  controls::CBitmapResource doneMark_;
};

}  // namespace lumenor
