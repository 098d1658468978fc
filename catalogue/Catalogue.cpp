#include "catalogue/Catalogue.h"

#include "catalogue/CatalogueTable.h"

namespace lumenor {

namespace {

CCatalogue& ProcessCatalogue() {
  static CCatalogue catalogue;
  return catalogue;
}

}  // namespace

std::unique_ptr<CMyObject> MakeNode(unsigned id, int level, int image, CMyObject* parent) {
  auto node = std::make_unique<CMyObject>();
  node->SetId(id);
  node->SetLevel(level);
  node->SetImage(image);
  node->SetParent(parent);
  return node;
}

CCatalogue CCatalogue::Build() {
  CCatalogue catalogue;
  CMyObject* category = nullptr;
  CMyObject* application = nullptr;
  for (const CatalogueEntry& entry : CatalogueEntries()) {
    switch (entry.level) {
      case CMyObject::kCategory: {
        auto node = MakeNode(entry.id, entry.level, entry.image, nullptr);
        if (category != nullptr) {
          category->SetForwardLink(node.get());
        }
        category = node.get();
        application = nullptr;
        catalogue.categories_.push_back(std::move(node));
        break;
      }
      case CMyObject::kApplication:
        application = category->AddChild(MakeNode(entry.id, entry.level, entry.image, category));
        break;
      default:
        application->AddChild(MakeNode(entry.id, entry.level, entry.image, application));
        break;
    }
  }
  return catalogue;
}

CMyObject* FindNodeById(CMyObject* root, unsigned id) {
  CMyObject* found = nullptr;
  ForEachNode(root, [&](CMyObject& node) {
    if (found == nullptr && node.Id() == id) {
      found = &node;
    }
  });
  return found;
}

void BuildCatalogue() { ProcessCatalogue() = CCatalogue::Build(); }

void FreeCatalogue() { ProcessCatalogue().Clear(); }

CMyObject* CatalogueRoot() { return ProcessCatalogue().Root(); }

}  // namespace lumenor
