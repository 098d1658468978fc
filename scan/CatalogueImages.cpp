#include "scan/CatalogueImages.h"

#include "catalogue/Catalogue.h"
#include "controls/Bitmap.h"
#include "controls/GdiOwners.h"
#include "res/artwork_ids.h"

#include <vector>

namespace lumenor {

namespace {

constexpr int kPicturesInOrder[kCataloguePictureCount] = {
    IDB_CATALOGUE_WINDOWS,
    IDB_CATALOGUE_INTERNET,
    IDB_CATALOGUE_MESSAGING,
    IDB_CATALOGUE_OFFICE,
    IDB_CATALOGUE_MULTIMEDIA,
    IDB_CATALOGUE_FILE_SHARING,
    IDB_CATALOGUE_MAIL,
    IDB_CATALOGUE_THIRD_PARTY,
    IDB_CATALOGUE_WINDOWS_ENTRIES,
    IDB_CATALOGUE_INTERNET_EXPLORER,
    IDB_CATALOGUE_NETSCAPE,
    IDB_CATALOGUE_OPERA,
    IDB_CATALOGUE_FIREFOX,
    IDB_CATALOGUE_ICQ,
    IDB_CATALOGUE_YAHOO_MESSENGER,
    IDB_CATALOGUE_MSN_MESSENGER,
    IDB_CATALOGUE_SHARED_OFFICE,
    IDB_CATALOGUE_OFFICE_2003,
    IDB_CATALOGUE_MEDIA_PLAYER,
    IDB_CATALOGUE_WINAMP,
    IDB_CATALOGUE_REAL_PLAYER,
    IDB_CATALOGUE_DIVX,
    IDB_CATALOGUE_QUICKTIME,
    IDB_CATALOGUE_ACDSEE,
    IDB_CATALOGUE_AZUREUS,
    IDB_CATALOGUE_BITTORRENT,
    IDB_CATALOGUE_UTORRENT,
    IDB_CATALOGUE_LIMEWIRE,
    IDB_CATALOGUE_BITCOMET,
    IDB_CATALOGUE_OUTLOOK,
    IDB_CATALOGUE_THUNDERBIRD,
    IDB_CATALOGUE_EUDORA,
    IDB_CATALOGUE_POCOMAIL,
    IDB_CATALOGUE_INCREDIMAIL,
    IDB_CATALOGUE_ACROBAT,
    IDB_CATALOGUE_FLASH_PLAYER,
    IDB_CATALOGUE_DESKTOP_SEARCH,
    IDB_CATALOGUE_BROWSERS_TODAY,
    IDB_CATALOGUE_WINDOWS_TODAY,
    IDB_CATALOGUE_APPLICATIONS_TODAY,
    IDB_CATALOGUE_COMMUNITY_RULES,
    IDB_CATALOGUE_OWN_RULES,
};
// The rules' categories name their pictures by these indexes.
static_assert(kPicturesInOrder[kPictureBrowsersToday] == IDB_CATALOGUE_BROWSERS_TODAY);
static_assert(kPicturesInOrder[kPictureWindowsToday] == IDB_CATALOGUE_WINDOWS_TODAY);
static_assert(kPicturesInOrder[kPictureApplicationsToday] == IDB_CATALOGUE_APPLICATIONS_TODAY);
static_assert(kPicturesInOrder[kPictureCommunityRules] == IDB_CATALOGUE_COMMUNITY_RULES);
static_assert(kPicturesInOrder[kPictureOwnRules] == IDB_CATALOGUE_OWN_RULES);
constexpr int kPicture = 16;
// The pictures' background: the colour value 1, as the artwork keeps it.
constexpr COLORREF kPictureBackground = RGB(1, 0, 0);

}  // namespace

HIMAGELIST MakeCatalogueImageList() {
  HIMAGELIST list = ::ImageList_Create(kPicture, kPicture, ILC_COLOR32 | ILC_MASK, kCataloguePictureCount, 0);
  if (list == nullptr) {
    return nullptr;
  }
  for (const int id : kPicturesInOrder) {
    controls::CBitmapResource picture(id);
    if (!picture || ::ImageList_AddMasked(list, picture.Handle(), kPictureBackground) < 0) {
      // Keeps the indexes of the pictures after it: an empty picture in its place.
      static const std::vector<DWORD> background(static_cast<size_t>(kPicture) * kPicture,
                                                 0x00010000);  // RGB(1,0,0) as pixels
      const controls::OwnedBitmap blank(::CreateBitmap(kPicture, kPicture, 1, 32, background.data()));
      if (blank) {
        (void)::ImageList_AddMasked(list, blank.Get(), kPictureBackground);  // the list keeps a copy
      }
    }
  }
  return list;
}

HIMAGELIST MakeCheckImageList() {
  HIMAGELIST list = ::ImageList_Create(kPicture, kPicture, ILC_COLOR32 | ILC_MASK, 4, 0);
  if (list == nullptr) {
    return nullptr;
  }
  const controls::CBitmapResource strip(IDB_TREE_CHECKS);
  const controls::CBitmapResource mask(IDB_TREE_CHECKS_MASK);
  if (!strip || ::ImageList_Add(list, strip.Handle(), mask.Handle()) < 0) {
    (void)::ImageList_Destroy(list);
    return nullptr;
  }
  return list;
}

}  // namespace lumenor
