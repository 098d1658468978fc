// One node of the privacy item catalogue: a category (level 0), an application (1) or a
// privacy item (2). Besides its place in the tree, an item carries what the trace engine
// needs while it is scanned and erased: its locations, the one being worked on, and the
// number of traces found.
//
// Ownership: a node owns its first child, and every child owns its next sibling, so
// dropping a node drops its whole subtree. The double (backward/forward) link is never
// owning: it chains categories, and the items picked for a scan, through nodes the tree
// owns.
#pragma once

#include "catalogue/LocationRecord.h"

#include <atomic>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

class CMyObject {
 public:
  static constexpr int kMaxLocations = 26;
  static constexpr int kMaxListStrings = 26;
  static constexpr size_t kMaxListStringLength = 1023;

  enum Level : int { kCategory = 0, kApplication = 1, kItem = 2 };

  CMyObject() = default;
  CMyObject(const CMyObject&) = delete;
  CMyObject& operator=(const CMyObject&) = delete;
  virtual ~CMyObject();

  // Stores the id and loads the display name from the string table.
  void SetId(unsigned id);
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

  // The double link: categories of the catalogue, or the items picked for a scan.
  CMyObject* BackwardLink() const { return backwardLink_; }
  CMyObject* ForwardLink() const { return forwardLink_; }
  void SetForwardLink(CMyObject* next) { forwardLink_ = next; }
  void SetBackwardLink(CMyObject* previous) { backwardLink_ = previous; }
  // Links `node` after the last node of the chain that starts here; returns `node`.
  CMyObject* AppendToChain(CMyObject* node);
  // Unlinks `node` from the chain, joining its neighbours. Refuses (returns false) when
  // `node` is this node. The chain does not own its nodes, so nothing is destroyed.
  bool RemoveFromChain(CMyObject* node);

  // Locations of an item, rebuilt before each scan. Adding fails, changing nothing, when
  // the list is full or a text does not fit a record.
  bool AddLocation(HKEY rootKey, std::wstring_view path, std::wstring_view selector, int kind);
  void ClearLocations() { locations_.clear(); }
  const std::vector<LocationRecord>& Locations() const { return locations_; }
  int LocationCount() const { return static_cast<int>(locations_.size()); }
  int CurrentLocation() const { return currentLocation_; }
  void SetCurrentLocation(int index) { currentLocation_ = index; }

  // Two auxiliary text lists; nothing fills them today.
  bool AddToFirstList(std::wstring_view text) { return AddBounded(firstList_, text); }
  bool AddToSecondList(std::wstring_view text) { return AddBounded(secondList_, text); }
  const std::vector<std::wstring>& FirstList() const { return firstList_; }
  const std::vector<std::wstring>& SecondList() const { return secondList_; }

  // Traces found under this node in the current scan (its own for an item, those of all
  // items below for an application or category). A worker counts while the page paints.
  int FoundCount() const { return foundCount_.load(std::memory_order_relaxed); }
  void SetFoundCount(int count) { foundCount_.store(count, std::memory_order_relaxed); }
  void IncrementFoundCount() { foundCount_.fetch_add(1, std::memory_order_relaxed); }

  // The node's row in the item tree control, kept opaque here.
  void* TreeItem() const { return treeItem_; }
  void SetTreeItem(void* item) { treeItem_ = item; }

 private:
  static bool AddBounded(std::vector<std::wstring>& list, std::wstring_view text);

  std::wstring name_;
  unsigned id_ = 0;
  int level_ = 0;
  int image_ = 0;

  std::vector<std::wstring> firstList_;
  std::vector<std::wstring> secondList_;
  std::vector<LocationRecord> locations_;
  int currentLocation_ = 0;

  std::unique_ptr<CMyObject> firstChild_;
  std::unique_ptr<CMyObject> nextSibling_;
  CMyObject* parent_ = nullptr;
  CMyObject* backwardLink_ = nullptr;
  CMyObject* forwardLink_ = nullptr;

  void* treeItem_ = nullptr;
  std::atomic<int> foundCount_{0};
};

}  // namespace lumenor
