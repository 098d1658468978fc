// One node of the privacy item catalogue: a category (level 0), an application (1) or a
// privacy item (2), with its id, name, picture and place in the tree. The catalogue is
// built at start-up and read only after that: what a scan finds lives in its run
// (engine/ScanRun.h), never in the nodes.
//
// Ownership: a node owns its first child, and every child owns its next sibling, so
// dropping a node drops its whole subtree. The forward link is never owning: it chains
// the categories, which the catalogue owns.
#pragma once

#include <memory>
#include <string>

namespace lumenor {

class CMyObject {
 public:
  enum Level : int { kCategory = 0, kApplication = 1, kItem = 2 };

  CMyObject() = default;
  CMyObject(const CMyObject&) = delete;
  CMyObject& operator=(const CMyObject&) = delete;
  virtual ~CMyObject();

  // Stores the id and loads the display name from the string table.
  void SetId(unsigned id);
  // Stores the id and a name of the node's own (rule nodes: their names come from rules).
  void SetIdAndName(unsigned id, std::wstring name);
  unsigned Id() const { return id_; }
  const std::wstring& Name() const { return name_; }

  int Level() const { return level_; }
  void SetLevel(int level) { level_ = level; }
  int Image() const { return image_; }
  void SetImage(int image) { image_ = image; }

  // Tree links.
  CMyObject* FirstChild() const { return firstChild_.get(); }
  CMyObject* NextSibling() const { return nextSibling_.get(); }
  CMyObject* Parent() const { return parent_; }
  void SetParent(CMyObject* parent) { parent_ = parent; }

  // Appends `child` at the end of the child chain and makes this node its parent.
  CMyObject* AddChild(std::unique_ptr<CMyObject> child);
  // Unlinks `child` from the child chain and hands it back; null if it is not a child.
  std::unique_ptr<CMyObject> RemoveChild(const CMyObject* child);
  // Drops every descendant.
  void FreeSubtree();

  // The next category of the catalogue.
  CMyObject* ForwardLink() const { return forwardLink_; }
  void SetForwardLink(CMyObject* next) { forwardLink_ = next; }

 private:
  std::wstring name_;
  unsigned id_ = 0;
  int level_ = 0;
  int image_ = 0;

  std::unique_ptr<CMyObject> firstChild_;
  std::unique_ptr<CMyObject> nextSibling_;
  CMyObject* parent_ = nullptr;
  CMyObject* forwardLink_ = nullptr;
};

}  // namespace lumenor
