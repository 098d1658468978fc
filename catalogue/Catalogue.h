// The privacy item catalogue: the fixed tree of categories, applications and items that
// every page and the trace engine work on, followed by the categories of the rules
// (built-in, the user's own, the community's) with the applications and items found on
// this machine. Start-up builds the process-wide tree once; exit frees it.
#pragma once

#include "catalogue/CMyObject.h"
#include "rules/RuleBook.h"

#include <functional>
#include <memory>
#include <vector>

namespace lumenor {

// Pictures of the rules' categories, after the fixed catalogue's 37; the applications
// and items of a rule category show its picture.
enum RulePicture : int {
  kPictureBrowsersToday = 37,
  kPictureWindowsToday = 38,
  kPictureApplicationsToday = 39,
  kPictureCommunityRules = 40,
  kPictureOwnRules = 41,
};

class CCatalogue {
 public:
  // Which rule items the catalogue shows: those that apply on this machine.
  using RuleShown = std::function<bool(const rules::RuleBook::Entry& entry)>;

  // Makes every node of the fixed catalogue, names loaded from the string table.
  static CCatalogue Build();
  // The fixed catalogue, then the rules' categories with every item `shown` accepts
  // (built-in categories first, then the user's, then "Community Rules"). The catalogue
  // keeps the book.
  static CCatalogue Build(std::unique_ptr<rules::RuleBook> rules, const RuleShown& shown);

  // The rules behind the rule items; null when there are none.
  const rules::RuleBook* Rules() const { return rules_.get(); }
  // The community file's entries, and how many of them show.
  int CommunityEntries() const { return communityEntries_; }
  int CommunityShown() const { return communityShown_; }

  CCatalogue() = default;
  CCatalogue(CCatalogue&&) = default;
  CCatalogue& operator=(CCatalogue&&) = default;

  // The first category; the others follow through the forward link.
  CMyObject* Root() const { return categories_.empty() ? nullptr : categories_.front().get(); }
  bool Empty() const { return categories_.empty(); }
  void Clear() {
    categories_.clear();
    rules_.reset();
  }

 private:
  void AddRuleCategories(const RuleShown& shown);

  std::vector<std::unique_ptr<CMyObject>> categories_;
  std::unique_ptr<rules::RuleBook> rules_;
  int communityEntries_ = 0;
  int communityShown_ = 0;
};

// A node made for the catalogue: id (and name), level, image and parent set, not linked.
std::unique_ptr<CMyObject> MakeNode(unsigned id, int level, int image, CMyObject* parent);

// Visits every node from `root` on in catalogue order: a category, then each of its
// applications followed by the application's items, then the next category.
template <typename Visit>
void ForEachNode(CMyObject* root, Visit&& visit) {
  for (CMyObject* category = root; category != nullptr; category = category->ForwardLink()) {
    visit(*category);
    for (CMyObject* application = category->FirstChild(); application != nullptr;
         application = application->NextSibling()) {
      visit(*application);
      for (CMyObject* item = application->FirstChild(); item != nullptr; item = item->NextSibling()) {
        visit(*item);
      }
    }
  }
}

// The node with `id` under `root`, or null; ids left out of the catalogue find nothing.
CMyObject* FindNodeById(CMyObject* root, unsigned id);

// The process-wide catalogue.
void BuildCatalogue();
// Makes `catalogue` (with its rules) the process-wide one.
void InstallCatalogue(CCatalogue catalogue);
void FreeCatalogue();
CMyObject* CatalogueRoot();
const CCatalogue& ProcessCatalogue();

}  // namespace lumenor
