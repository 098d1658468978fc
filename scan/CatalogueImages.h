// The picture lists of the item trees: the 42 catalogue pictures that nodes name by
// index (the fixed catalogue's 37, then the rules' categories'), and the four check-box
// pictures (none, unticked, partly ticked, ticked).
#pragma once

#include <windows.h>

#include <commctrl.h>

namespace lumenor {

// An image list freed with the object.
class CImageList {
 public:
  CImageList() = default;
  explicit CImageList(HIMAGELIST list) : list_(list) {}
  CImageList(const CImageList&) = delete;
  CImageList& operator=(const CImageList&) = delete;
  ~CImageList() {
    if (list_ != nullptr) (void)::ImageList_Destroy(list_);  // ours; nothing to do if it fails
  }
  // Takes `list` in place of the one held.
  void Reset(HIMAGELIST list) {
    if (list_ != nullptr) (void)::ImageList_Destroy(list_);  // ours; nothing to do if it fails
    list_ = list;
  }
  HIMAGELIST Get() const { return list_; }
  explicit operator bool() const { return list_ != nullptr; }

 private:
  HIMAGELIST list_ = nullptr;
};

inline constexpr int kCataloguePictureCount = 42;

// The catalogue pictures, 16 by 16, in index order; a missing bitmap leaves its place
// empty so later indexes keep their pictures. Null when no list could be made.
HIMAGELIST MakeCatalogueImageList();
// The check-box pictures, indexed by check state.
HIMAGELIST MakeCheckImageList();

}  // namespace lumenor
