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

void CMyObject::SetIdAndName(unsigned id, std::wstring name) {
  id_ = id;
  name_ = std::move(name);
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

}  // namespace lumenor
