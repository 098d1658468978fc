#include "catalogue/Catalogue.h"

#include "catalogue/CatalogueTable.h"

namespace lumenor {

namespace {

CCatalogue& TheCatalogue() {
  static CCatalogue catalogue;
  return catalogue;
}

bool SameName(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    const wchar_t x = a[i] >= L'A' && a[i] <= L'Z' ? static_cast<wchar_t>(a[i] - L'A' + L'a') : a[i];
    const wchar_t y = b[i] >= L'A' && b[i] <= L'Z' ? static_cast<wchar_t>(b[i] - L'A' + L'a') : b[i];
    if (x != y) return false;
  }
  return true;
}

// The picture of a rule category: its own for the built-in ones and the community's, one
// for every category of the user's own files.
int PictureOf(std::wstring_view category, rules::RuleOrigin origin) {
  if (origin == rules::RuleOrigin::kCommunity) return kPictureCommunityRules;
  if (origin == rules::RuleOrigin::kBuiltIn) {
    if (SameName(category, L"Web Browsers Today")) return kPictureBrowsersToday;
    if (SameName(category, L"Windows 10 and 11")) return kPictureWindowsToday;
    return kPictureApplicationsToday;
  }
  return kPictureOwnRules;
}

std::unique_ptr<CMyObject> MakeRuleNode(unsigned id, std::wstring name, int level, int image, CMyObject* parent) {
  auto node = std::make_unique<CMyObject>();
  node->SetIdAndName(id, std::move(name));
  node->SetLevel(level);
  node->SetImage(image);
  node->SetParent(parent);
  return node;
}

CMyObject* ChildNamed(CMyObject& parent, std::wstring_view name) {
  for (CMyObject* child = parent.FirstChild(); child != nullptr; child = child->NextSibling()) {
    if (SameName(child->Name(), name)) return child;
  }
  return nullptr;
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

CCatalogue CCatalogue::Build(std::unique_ptr<rules::RuleBook> rules, const RuleShown& shown) {
  CCatalogue catalogue = Build();
  catalogue.rules_ = std::move(rules);
  if (catalogue.rules_) catalogue.AddRuleCategories(shown);
  return catalogue;
}

void CCatalogue::AddRuleCategories(const RuleShown& shown) {
  // Categories in the order of the origins, each in the order its first item came.
  std::vector<std::unique_ptr<CMyObject>> added;
  for (const rules::RuleOrigin origin :
       {rules::RuleOrigin::kBuiltIn, rules::RuleOrigin::kUserFile, rules::RuleOrigin::kCommunity}) {
    for (const rules::RuleBook::Entry& entry : rules_->Entries()) {
      if (entry.origin != origin) continue;
      const bool community = origin == rules::RuleOrigin::kCommunity;
      communityEntries_ += community ? 1 : 0;
      if (!shown(entry)) continue;
      communityShown_ += community ? 1 : 0;
      const std::wstring& categoryName = entry.application->category;
      const int picture = PictureOf(categoryName, origin);
      CMyObject* category = nullptr;
      for (const auto& node : added) {
        if (SameName(node->Name(), categoryName) && node->Image() == picture) category = node.get();
      }
      if (category == nullptr) {
        added.push_back(MakeRuleNode(rules::DerivedItemId(L"category", categoryName), categoryName,
                                     CMyObject::kCategory, picture, nullptr));
        category = added.back().get();
      }
      CMyObject* application = ChildNamed(*category, entry.application->name);
      if (application == nullptr) {
        application =
            category->AddChild(MakeRuleNode(rules::DerivedItemId(categoryName, entry.application->name),
                                            entry.application->name, CMyObject::kApplication, picture, category));
      }
      application->AddChild(MakeRuleNode(entry.item->id, entry.item->name, CMyObject::kItem, picture, application));
    }
  }
  CMyObject* last = categories_.empty() ? nullptr : categories_.back().get();
  for (auto& category : added) {
    if (last != nullptr) last->SetForwardLink(category.get());
    last = category.get();
    categories_.push_back(std::move(category));
  }
}

void BuildCatalogue() { TheCatalogue() = CCatalogue::Build(); }

void InstallCatalogue(CCatalogue catalogue) { TheCatalogue() = std::move(catalogue); }

void FreeCatalogue() { TheCatalogue().Clear(); }

CMyObject* CatalogueRoot() { return TheCatalogue().Root(); }

const CCatalogue& ProcessCatalogue() { return TheCatalogue(); }

}  // namespace lumenor
