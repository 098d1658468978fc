#include "scan/ItemSelection.h"

#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "settings/Settings.h"

namespace lumenor {

namespace {

constexpr int kNoListSaved = -1;

}  // namespace

ItemSelection ItemSelection::FromCatalogue(CMyObject* root, bool withAcdseeFavorites) {
  ItemSelection selection;
  int category = -1;
  int application = -1;
  ForEachNode(root, [&](const CMyObject& node) {
    switch (node.Level()) {
      case CMyObject::kCategory:
        category = selection.AddRow(node.Id(), node.Level(), -1);
        break;
      case CMyObject::kApplication:
        application = selection.AddRow(node.Id(), node.Level(), category);
        break;
      default:
        (void)selection.AddRow(node.Id(), node.Level(), application);
        if (withAcdseeFavorites && node.Id() == kItemAcdseeScreenCaptureFolder) {
          // A row the one-click tree has always had; no catalogue node stands behind it.
          (void)selection.AddRow(kItemAcdseeFavorites, CMyObject::kItem, application);
        }
        break;
    }
  });
  return selection;
}

int ItemSelection::AddRow(unsigned id, int level, int parent) {
  const int index = static_cast<int>(rows_.size());
  Row row;
  row.id = id;
  row.level = level;
  row.parent = parent;
  rows_.push_back(std::move(row));
  (void)firstRowOf_.try_emplace(id, index);  // a later row of the same id is never the one asked for
  if (parent < 0) {
    categories_.push_back(index);
  } else {
    rows_[static_cast<size_t>(parent)].children.push_back(index);
  }
  return index;
}

int ItemSelection::RowOf(unsigned id) const {
  const auto found = firstRowOf_.find(id);
  return found == firstRowOf_.end() ? -1 : found->second;
}

void ItemSelection::SetState(int row, int state) {
  rows_[static_cast<size_t>(row)].state = state;
  if (state < kUnticked) return;
  CarryDown(row, state);
  UpdateAncestors(row);
}

void ItemSelection::CarryDown(int row, int state) {
  // Iterative, so no tree shape can exhaust the stack.
  std::vector<int> pending(rows_[static_cast<size_t>(row)].children.rbegin(),
                           rows_[static_cast<size_t>(row)].children.rend());
  while (!pending.empty()) {
    const int child = pending.back();
    pending.pop_back();
    Row& current = rows_[static_cast<size_t>(child)];
    const std::vector<int>& siblings = rows_[static_cast<size_t>(current.parent)].children;
    const bool first = siblings.front() == child;
    if (!first && current.state == kNoBox) continue;
    current.state = state;
    pending.insert(pending.end(), current.children.rbegin(), current.children.rend());
  }
}

void ItemSelection::UpdateAncestors(int row) {
  for (int node = row;;) {
    const Row& current = rows_[static_cast<size_t>(node)];
    if (current.parent < 0) return;
    const int state = current.state;
    const std::vector<int>& siblings = rows_[static_cast<size_t>(current.parent)].children;
    bool agree = true;
    for (const int sibling : siblings) {
      const int siblingState = rows_[static_cast<size_t>(sibling)].state;
      if (sibling != node && siblingState != kNoBox && siblingState != state) agree = false;
    }
    if (!agree) {
      for (int ancestor = current.parent; ancestor >= 0; ancestor = rows_[static_cast<size_t>(ancestor)].parent) {
        Row& above = rows_[static_cast<size_t>(ancestor)];
        if (above.state != kNoBox) above.state = kPartly;
      }
      return;
    }
    Row& parent = rows_[static_cast<size_t>(current.parent)];
    if (parent.state != kNoBox) parent.state = state;
    node = current.parent;
  }
}

void ItemSelection::Click(int row) { SetState(row, State(row) == kTicked ? kUnticked : kTicked); }

std::vector<int> ItemSelection::States() const {
  std::vector<int> states;
  states.reserve(rows_.size());
  for (const Row& row : rows_) states.push_back(row.state);
  return states;
}

void ItemSelection::RestoreStates(const std::vector<int>& states) {
  for (size_t row = 0; row < rows_.size() && row < states.size(); ++row) rows_[row].state = states[row];
}

std::vector<unsigned> ItemSelection::TickedSince(const std::vector<int>& before) const {
  std::vector<unsigned> ids;
  for (size_t row = 0; row < rows_.size() && row < before.size(); ++row) {
    if (rows_[row].level == CMyObject::kItem && rows_[row].state == kTicked && before[row] != kTicked) {
      ids.push_back(rows_[row].id);
    }
  }
  return ids;
}

bool ItemSelection::TickById(unsigned id) {
  const int row = RowOf(id);
  if (row < 0) return false;
  SetState(row, kTicked);
  return true;
}

void ItemSelection::TickAll() {
  for (const int category : categories_) SetState(category, kTicked);
}

void ItemSelection::UntickAll() {
  for (const int category : categories_) SetState(category, kUnticked);
}

std::vector<unsigned> ItemSelection::TickedItems() const {
  std::vector<unsigned> ids;
  for (const Row& row : rows_) {
    if (row.level == CMyObject::kItem && row.state == kTicked) ids.push_back(row.id);
  }
  return ids;
}

void ItemSelection::SelectAll(bool busy, const std::function<bool()>& confirm) {
  if (busy || !confirm()) return;
  TickAll();
}

void ItemSelection::SelectNone(bool busy) {
  if (!busy) UntickAll();
}

void ItemSelection::SelectDefault(bool busy, const CIniFileRW& settings) {
  if (busy) return;
  UntickAll();
  for (const unsigned id : ReadSelection(settings, Selection::kDefault)) (void)TickById(id);
  for (const unsigned id : ruleDefaults_) (void)TickById(id);
}

void ItemSelection::RestoreScanSelection(const CIniFileRW& settings) {
  for (const unsigned id : ReadScanSelection(settings)) (void)TickById(id);
  if (settings.ReadInt(L"RecentItem", L"RecentItems") == kNoListSaved) {
    for (const unsigned id : ruleDefaults_) (void)TickById(id);
  }
}

void ItemSelection::LoadOneClickSelection(const CIniFileRW& settings) {
  const bool noneSaved = settings.ReadInt(L"OneClickItem", L"OneClickItems") == kNoListSaved;
  for (const unsigned id : ReadSelection(settings, noneSaved ? Selection::kDefault : Selection::kOneClick)) {
    (void)TickById(id);
  }
}

bool ItemSelection::SaveOneClickSelection(const CIniFileRW& settings) const {
  std::vector<unsigned> ids;
  for (const int category : categories_) {
    if (State(category) == kUnticked) continue;
    for (const int application : rows_[static_cast<size_t>(category)].children) {
      if (State(application) == kUnticked) continue;
      for (const int item : rows_[static_cast<size_t>(application)].children) {
        if (State(item) == kTicked) ids.push_back(rows_[static_cast<size_t>(item)].id);
      }
    }
  }
  return WriteSelection(settings, Selection::kOneClick, ids);
}

}  // namespace lumenor
