// Every rule the program knows, from every source, with its items found by id. The book
// is filled once at start-up (the built-in rules, the user's files, the community file)
// and only read after that; what it holds stays where it is, so pointers into it last as
// long as the book.
#pragma once

#include "rules/RuleModel.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace lumenor::rules {

class RuleBook {
 public:
  // An item with the application it belongs to and where it came from.
  struct Entry {
    const Application* application = nullptr;
    const Item* item = nullptr;
    RuleOrigin origin = RuleOrigin::kUserFile;
  };

  RuleBook() = default;
  RuleBook(const RuleBook&) = delete;
  RuleBook& operator=(const RuleBook&) = delete;
  RuleBook(RuleBook&&) = default;
  RuleBook& operator=(RuleBook&&) = default;

  // Keeps the set. An item whose id is already in the book, or is the id of an item of
  // the fixed catalogue (below kFirstBuiltInId), is left out and becomes a problem.
  void Add(RuleSet set);

  const Entry* Find(unsigned id) const;
  const std::vector<std::unique_ptr<RuleSet>>& Sets() const { return sets_; }
  // Every item in the order the sets were added, each set in its own order.
  const std::vector<Entry>& Entries() const { return entries_; }
  // Problems of every set, and those the book found.
  std::vector<Problem> Problems() const;
  // Whether "Select Default" ticks the item: the built-in rules and the user's own files
  // say so item by item; the community's file is another's, so its items are never ticked
  // unless the user ticks them.
  static bool TickedByDefault(const Entry& entry);
  // The items ticked by default, in book order.
  std::vector<unsigned> Defaults() const;

 private:
  std::vector<std::unique_ptr<RuleSet>> sets_;
  std::vector<Entry> entries_;
  std::unordered_map<unsigned, size_t> byId_;
  std::vector<Problem> problems_;
};

}  // namespace lumenor::rules
