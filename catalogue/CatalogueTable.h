// The fixed catalogue of privacy items, in catalogue order: each category, then each of
// its applications followed by that application's items.
#pragma once

#include <span>

namespace lumenor {

struct CatalogueEntry {
  unsigned id;  // string-table id, which is also the item identifier
  int level;    // 0 category, 1 application, 2 item
  int image;    // index in the tree's image list
};

std::span<const CatalogueEntry> CatalogueEntries();

}  // namespace lumenor
