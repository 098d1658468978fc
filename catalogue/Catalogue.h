// The privacy item catalogue: the fixed tree of categories, applications and items that
// every page and the trace engine work on. Start-up builds the process-wide tree once;
// exit frees it.
#pragma once

#include "catalogue/CMyObject.h"

#include <memory>
#include <vector>

namespace lumenor {

class CCatalogue {
 public:
  // Makes every node of the catalogue, names loaded from the string table.
  static CCatalogue Build();

  CCatalogue() = default;
  CCatalogue(CCatalogue&&) = default;
  CCatalogue& operator=(CCatalogue&&) = default;

  // The first category; the others follow through the forward link.
  CMyObject* Root() const { return categories_.empty() ? nullptr : categories_.front().get(); }
  bool Empty() const { return categories_.empty(); }
  void Clear() { categories_.clear(); }

 private:
  std::vector<std::unique_ptr<CMyObject>> categories_;
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
void FreeCatalogue();
CMyObject* CatalogueRoot();

}  // namespace lumenor
