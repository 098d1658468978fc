#include "catalogue/CMyObject.h"

#include "base/ResourceString.h"

namespace lumenor {

CMyObject::~CMyObject() {
  // Siblings own each other in a chain; unlink them one at a time so a long chain is
  // not torn down by recursion.
  while (firstChild_) {
    firstChild_ = std::move(firstChild_->nextSibling_);
  }
  while (nextSibling_) {
    nextSibling_ = std::move(nextSibling_->nextSibling_);
  }
}

void CMyObject::SetId(unsigned id) {
  id_ = id;
  name_ = LoadResourceString(id);
}

CMyObject* CMyObject::AddChild(std::unique_ptr<CMyObject> child) {
  if (!child) {
    return nullptr;
  }
  CMyObject* added = child.get();
  added->parent_ = this;
  std::unique_ptr<CMyObject>* slot = &firstChild_;
  while (*slot) {
    slot = &(*slot)->nextSibling_;
  }
  *slot = std::move(child);
  return added;
}

std::unique_ptr<CMyObject> CMyObject::RemoveChild(const CMyObject* child) {
  for (std::unique_ptr<CMyObject>* slot = &firstChild_; *slot; slot = &(*slot)->nextSibling_) {
    if (slot->get() == child) {
      std::unique_ptr<CMyObject> removed = std::move(*slot);
      *slot = std::move(removed->nextSibling_);
      removed->parent_ = nullptr;
      return removed;
    }
  }
  return nullptr;
}

void CMyObject::FreeSubtree() {
  while (firstChild_) {
    firstChild_ = std::move(firstChild_->nextSibling_);
  }
}

CMyObject* CMyObject::AppendToChain(CMyObject* node) {
  CMyObject* last = this;
  while (last->forwardLink_ != nullptr) {
    last = last->forwardLink_;
  }
  last->forwardLink_ = node;
  if (node != nullptr) {
    node->backwardLink_ = last;
  }
  return node;
}

bool CMyObject::RemoveFromChain(CMyObject* node) {
  if (node == nullptr || node == this) {
    return false;
  }
  if (node->backwardLink_ != nullptr) {
    node->backwardLink_->forwardLink_ = node->forwardLink_;
  }
  if (node->forwardLink_ != nullptr) {
    node->forwardLink_->backwardLink_ = node->backwardLink_;
  }
  node->backwardLink_ = nullptr;
  node->forwardLink_ = nullptr;
  return true;
}

bool CMyObject::AddLocation(HKEY rootKey, std::wstring_view path, std::wstring_view selector, int kind) {
  if (locations_.size() >= kMaxLocations || path.size() > kMaxLocationText || selector.size() > kMaxLocationText) {
    return false;
  }
  LocationRecord& record = locations_.emplace_back();
  record.rootKey = rootKey;
  record.rootPrefix = RootPrefixOf(rootKey);
  record.path = path;
  record.selector = selector;
  record.kind = kind;
  return true;
}

bool CMyObject::AddBounded(std::vector<std::wstring>& list, std::wstring_view text) {
  if (list.size() >= kMaxListStrings || text.size() > kMaxListStringLength) {
    return false;
  }
  list.emplace_back(text);
  return true;
}

}  // namespace lumenor
