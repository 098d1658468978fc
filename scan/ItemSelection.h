// The tick boxes of an item tree, without any window: the scan page's tree and the
// one-click selection dialog's tree both keep their check states here and only draw
// them. A row's state is 0 (no box), 1 (unticked), 2 (partly ticked) or 3 (ticked).
// A new state is carried down to the row's descendants and up to its ancestors, and the
// ticked items are gathered in catalogue order.
#pragma once

#include "catalogue/CMyObject.h"
#include "settings/IniFileRW.h"

#include <functional>
#include <unordered_map>
#include <vector>

namespace lumenor {

class ItemSelection {
 public:
  enum CheckState : int { kNoBox = 0, kUnticked = 1, kPartly = 2, kTicked = 3 };

  struct Row {
    unsigned id = 0;
    int level = 0;
    int parent = -1;            // index of the parent row, -1 for a category
    std::vector<int> children;  // indices, in order
    int state = kUnticked;
  };

  // Every node of the catalogue from `root` on, in catalogue order. The one-click
  // dialog's tree holds one row more: "Favorites" (kItemAcdseeFavorites) under ACDSee, after its last item.
  static ItemSelection FromCatalogue(CMyObject* root, bool withAcdseeFavorites = false);

  // Appends a row as the last child of `parent` (-1: a category); returns its index.
  int AddRow(unsigned id, int level, int parent);

  const std::vector<Row>& Rows() const { return rows_; }
  int State(int row) const { return rows_[static_cast<size_t>(row)].state; }
  // The first row with `id` in catalogue order, or -1.
  int RowOf(unsigned id) const;

  // Sets the state, carries it to every descendant (the first child always, further
  // siblings only when they have a box) and brings the ancestors up to date.
  void SetState(int row, int state);
  // A press on a row's box: ticked becomes unticked, anything else ticked.
  void Click(int row);
  // Every row's state, to be put back as it was.
  std::vector<int> States() const;
  void RestoreStates(const std::vector<int>& states);
  // The ids of the items ticked now that were not ticked in `before`.
  std::vector<unsigned> TickedSince(const std::vector<int>& before) const;
  // Ticks the first row with `id`; false when there is none.
  bool TickById(unsigned id);
  void TickAll();
  void UntickAll();

  // The ids of the ticked items (level 2) in catalogue order.
  std::vector<unsigned> TickedItems() const;

  // The page's selection buttons, which do nothing while a scan is busy. Select all asks
  // first (`confirm` shows the warning) and goes ahead unless the answer is no.
  void SelectAll(bool busy, const std::function<bool()>& confirm);
  void SelectNone(bool busy);
  // The rule items ticked by default (built-in and the user's own): a list of their own
  // beside the default list of the settings file, ticked with it.
  void SetRuleDefaults(std::vector<unsigned> ids) { ruleDefaults_ = std::move(ids); }

  // Unticks everything, then ticks the default list of the settings file and the rule
  // defaults.
  void SelectDefault(bool busy, const CIniFileRW& settings);

  // The scan page's selection at start: the recent list, or the default ones while the
  // file holds no recent list yet ("RecentItems" -1).
  void RestoreScanSelection(const CIniFileRW& settings);
  // The one-click dialog's selection at start: the one-click list, or the default one
  // while no one-click list has been saved ("OneClickItems" -1).
  void LoadOneClickSelection(const CIniFileRW& settings);
  // The one-click dialog's "Save": the ticked items in catalogue order, leaving out
  // whatever sits under an unticked category or application.
  bool SaveOneClickSelection(const CIniFileRW& settings) const;

 private:
  void CarryDown(int row, int state);
  void UpdateAncestors(int row);

  std::vector<Row> rows_;
  std::vector<int> categories_;
  // The first row of each id: a scan asks for the row of every item it reaches.
  std::unordered_map<unsigned, int> firstRowOf_;
  std::vector<unsigned> ruleDefaults_;
};

}  // namespace lumenor
