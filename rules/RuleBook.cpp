#include "rules/RuleBook.h"

namespace lumenor::rules {

void RuleBook::Add(RuleSet set) {
  auto kept = std::make_unique<RuleSet>(std::move(set));
  for (Application& application : kept->applications) {
    std::vector<Item> items;
    items.reserve(application.items.size());
    for (Item& item : application.items) {
      if (item.id < kFirstBuiltInId || byId_.count(item.id) != 0) {
        problems_.push_back(
            {item.where, item.name, L"item id " + std::to_wstring(item.id) + L" is taken: the item is left out"});
        continue;
      }
      byId_.emplace(item.id, 0);
      items.push_back(std::move(item));
    }
    application.items = std::move(items);
  }
  // Entries point into the set only now that its items stay where they are.
  for (const Application& application : kept->applications) {
    for (const Item& item : application.items) {
      byId_[item.id] = entries_.size();
      entries_.push_back({&application, &item, kept->origin});
    }
  }
  sets_.push_back(std::move(kept));
}

const RuleBook::Entry* RuleBook::Find(unsigned id) const {
  const auto found = byId_.find(id);
  return found == byId_.end() ? nullptr : &entries_[found->second];
}

bool RuleBook::TickedByDefault(const Entry& entry) {
  return entry.origin != RuleOrigin::kCommunity && entry.item->tickedByDefault;
}

std::vector<unsigned> RuleBook::Defaults() const {
  std::vector<unsigned> ids;
  for (const Entry& entry : entries_) {
    if (TickedByDefault(entry)) ids.push_back(entry.item->id);
  }
  return ids;
}

std::vector<Problem> RuleBook::Problems() const {
  std::vector<Problem> all;
  for (const auto& set : sets_) all.insert(all.end(), set->problems.begin(), set->problems.end());
  all.insert(all.end(), problems_.begin(), problems_.end());
  return all;
}

}  // namespace lumenor::rules
