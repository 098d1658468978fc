// The program's pictures as its pages load them from lumenor.exe: every number is there,
// with the size, cell layout and transparent colour that the page drawing it relies on.
#include "controls/GdiOwners.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <windows.h>

#include <cstring>
#include <iterator>
#include <vector>

namespace lumenor {
namespace {

constexpr COLORREF kMagenta = RGB(255, 0, 255);
constexpr COLORREF kCatalogueMask = 1;  // the mask colour the item trees' image list uses

struct Size {
  int width;
  int height;
};

// A bitmap resource loaded as a DIB section, with its pixels at hand.
class Bitmap {
 public:
  Bitmap(HMODULE module, int id)
      : handle_(
            static_cast<HBITMAP>(LoadImageW(module, MAKEINTRESOURCEW(id), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION))) {
    if (handle_ && GetObjectW(handle_.Get(), sizeof(section_), &section_) != sizeof(section_)) {
      section_ = {};
    }
  }
  Bitmap(const Bitmap&) = delete;
  Bitmap& operator=(const Bitmap&) = delete;

  bool Loaded() const { return handle_ && section_.dsBm.bmBits != nullptr; }
  Size Dimensions() const { return {section_.dsBm.bmWidth, section_.dsBm.bmHeight}; }
  int BitsPerPixel() const { return section_.dsBm.bmBitsPixel; }

  // Colour at (x, y) from the top left, for 24-bit and 1-bit pictures.
  COLORREF Pixel(int x, int y) const {
    const auto* bits = static_cast<const BYTE*>(section_.dsBm.bmBits);
    const int height = section_.dsBm.bmHeight;
    const BYTE* row = bits + static_cast<ptrdiff_t>(section_.dsBm.bmWidthBytes) * (height > 0 ? height - 1 - y : y);
    if (BitsPerPixel() == 1) {
      return (row[x / 8] & (0x80 >> (x % 8))) != 0 ? RGB(255, 255, 255) : RGB(0, 0, 0);
    }
    const BYTE* pixel = row + 3 * x;
    return RGB(pixel[2], pixel[1], pixel[0]);
  }

 private:
  controls::OwnedBitmap handle_;
  DIBSECTION section_{};
};

// The image sizes held by an icon group resource, with their colour depths.
struct IconImage {
  int size;
  int bits;
};

#pragma pack(push, 2)
struct IconGroupHeader {
  WORD reserved;
  WORD type;
  WORD count;
};
struct IconGroupEntry {
  BYTE width;
  BYTE height;
  BYTE colours;
  BYTE reserved;
  WORD planes;
  WORD bits;
  DWORD bytes;
  WORD id;
};
#pragma pack(pop)

// Where the animation's frames lie and whether it loops, as read from the GIF stream.
struct GifLayout {
  bool wellFormed = false;
  int width = 0;
  int height = 0;
  int frames = 0;
  bool loops = false;
  bool framesInside = true;
};

GifLayout ReadGif(const BYTE* data, size_t size) {
  GifLayout gif;
  if (size < 13 || std::memcmp(data, "GIF89a", 6) != 0) {
    return gif;
  }
  gif.width = data[6] | (data[7] << 8);
  gif.height = data[8] | (data[9] << 8);
  size_t pos = 13;
  if ((data[10] & 0x80) != 0) {
    pos += 3u << ((data[10] & 7) + 1);
  }
  auto skipSubBlocks = [&] {
    while (pos < size) {
      const BYTE length = data[pos++];
      if (length == 0) {
        return true;
      }
      pos += length;
    }
    return false;
  };
  while (pos < size) {
    const BYTE introducer = data[pos++];
    if (introducer == 0x3B) {
      gif.wellFormed = true;
      return gif;
    }
    if (introducer == 0x21 && pos < size) {
      const BYTE label = data[pos++];
      if (label == 0xFF && pos + 12 <= size && data[pos] == 11 && std::memcmp(data + pos + 1, "NETSCAPE2.0", 11) == 0) {
        gif.loops = true;
      }
      if (!skipSubBlocks()) {
        return gif;
      }
    } else if (introducer == 0x2C && pos + 9 <= size) {
      const int left = data[pos] | (data[pos + 1] << 8);
      const int top = data[pos + 2] | (data[pos + 3] << 8);
      const int width = data[pos + 4] | (data[pos + 5] << 8);
      const int height = data[pos + 6] | (data[pos + 7] << 8);
      const BYTE flags = data[pos + 8];
      pos += 9;
      if ((flags & 0x80) != 0) {
        pos += 3u << ((flags & 7) + 1);
      }
      ++pos;  // LZW code size
      if (left + width > gif.width || top + height > gif.height) {
        gif.framesInside = false;
      }
      ++gif.frames;
      if (!skipSubBlocks()) {
        return gif;
      }
    } else {
      return gif;
    }
  }
  return gif;
}

class Artwork : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    program_ = LoadLibraryExW(testing::ProgramBesideTest(L"lumenor.exe").c_str(), nullptr,
                              LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE);
  }
  static void TearDownTestSuite() {
    if (program_ != nullptr) {
      FreeLibrary(program_);
      program_ = nullptr;
    }
  }
  void SetUp() override { ASSERT_NE(program_, nullptr) << "lumenor.exe could not be opened for its resources"; }

  // Every picture of `ids` loads with `size`.
  static void ExpectBitmaps(std::initializer_list<int> ids, Size size) {
    for (int id : ids) {
      Bitmap bitmap(program_, id);
      ASSERT_TRUE(bitmap.Loaded()) << "bitmap " << id;
      EXPECT_EQ(bitmap.Dimensions().width, size.width) << "bitmap " << id;
      EXPECT_EQ(bitmap.Dimensions().height, size.height) << "bitmap " << id;
      EXPECT_EQ(bitmap.BitsPerPixel(), 24) << "bitmap " << id;
    }
  }

  static std::vector<IconImage> IconImages(int id) {
    std::vector<IconImage> images;
    HRSRC found = FindResourceW(program_, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(14));  // RT_GROUP_ICON
    HGLOBAL loaded = found != nullptr ? LoadResource(program_, found) : nullptr;
    const auto* bytes = static_cast<const BYTE*>(loaded != nullptr ? LockResource(loaded) : nullptr);
    if (bytes == nullptr || SizeofResource(program_, found) < sizeof(IconGroupHeader)) {
      return images;
    }
    IconGroupHeader header;
    std::memcpy(&header, bytes, sizeof(header));
    if (SizeofResource(program_, found) < sizeof(header) + header.count * sizeof(IconGroupEntry)) {
      return images;
    }
    for (WORD i = 0; i < header.count; ++i) {
      IconGroupEntry entry;
      std::memcpy(&entry, bytes + sizeof(header) + i * sizeof(entry), sizeof(entry));
      images.push_back({entry.width == 0 ? 256 : entry.width, entry.bits});
    }
    return images;
  }

  // The icon holds crisp 16- and 32-pixel images with alpha, and loads at 16 pixels.
  static void ExpectSmallAndLargeIcon(int id) {
    const std::vector<IconImage> images = IconImages(id);
    for (int wanted : {16, 32}) {
      bool found = false;
      for (const IconImage& image : images) {
        if (image.size == wanted) {
          found = true;
          EXPECT_EQ(image.bits, 32) << "icon " << id << " at " << wanted;
        }
      }
      EXPECT_TRUE(found) << "icon " << id << " has no " << wanted << "-pixel image";
    }
    const controls::OwnedIcon icon(
        static_cast<HICON>(LoadImageW(program_, MAKEINTRESOURCEW(id), IMAGE_ICON, 16, 16, 0)));
    ASSERT_TRUE(icon) << "icon " << id;
    ICONINFO info{};
    ASSERT_TRUE(GetIconInfo(icon.Get(), &info));
    const controls::OwnedBitmap colourBitmap(info.hbmColor);  // the caller's copies
    const controls::OwnedBitmap maskBitmap(info.hbmMask);
    BITMAP colour{};
    GetObjectW(colourBitmap.Get(), sizeof(colour), &colour);
    EXPECT_EQ(colour.bmWidth, 16) << "icon " << id;
    EXPECT_EQ(colour.bmHeight, 16) << "icon " << id;
  }

  static GifLayout Animation(int id) {
    HRSRC found = FindResourceW(program_, MAKEINTRESOURCEW(id), L"GIF");
    HGLOBAL loaded = found != nullptr ? LoadResource(program_, found) : nullptr;
    const auto* bytes = static_cast<const BYTE*>(loaded != nullptr ? LockResource(loaded) : nullptr);
    if (bytes == nullptr) {
      return {};
    }
    return ReadGif(bytes, SizeofResource(program_, found));
  }

  static HMODULE program_;
};

HMODULE Artwork::program_ = nullptr;

TEST_F(Artwork, SplashPicturesFillTheSplashWindow) { ExpectBitmaps({227, 228}, {456, 300}); }

TEST_F(Artwork, MainWindowTabsHaveThreeLooksOfOneSize) {
  // Tab order: privacy scan, junk, shredder, settings; each normal, hot, selected.
  ExpectBitmaps({366, 365, 364, 357, 356, 355, 351, 361, 362, 202, 200, 199}, {124, 36});
}

TEST_F(Artwork, ProgramTrayAndMenuIconsHoldSmallAndLargeImages) {
  ExpectSmallAndLargeIcon(128);
  for (int frame : {312, 313, 314, 311}) {
    ExpectSmallAndLargeIcon(frame);
  }
  for (int menuIcon : {299, 386, 297, 300, 231, 229, 161}) {
    ExpectSmallAndLargeIcon(menuIcon);
  }
  // Explorer shows the lowest-numbered icon as the program's own.
  EXPECT_EQ(FindResourceW(program_, MAKEINTRESOURCEW(127), MAKEINTRESOURCEW(14)), nullptr);
}

TEST_F(Artwork, CatalogueImageListTakesFortyTwoPicturesWithTransparentCorners) {
  // The fixed catalogue's 37 pictures, then the rules' categories' five (indexes 37 to 41).
  const int catalogue[] = {182, 183, 237, 247, 321, 260, 259, 258, 310, 246, 309, 308, 238, 316,
                           315, 317, 318, 319, 323, 333, 320, 336, 334, 345, 347, 349, 348, 373,
                           374, 338, 339, 342, 343, 344, 390, 391, 392, 393, 394, 395, 396, 397};
  constexpr int kPictures = static_cast<int>(std::size(catalogue));
  static_assert(kPictures == 42);
  HIMAGELIST list = ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, kPictures, 0);
  ASSERT_NE(list, nullptr);
  int index = 0;
  for (int id : catalogue) {
    Bitmap pixels(program_, id);
    ASSERT_TRUE(pixels.Loaded()) << "bitmap " << id;
    EXPECT_EQ(pixels.Dimensions().width, 16) << "bitmap " << id;
    EXPECT_EQ(pixels.Dimensions().height, 16) << "bitmap " << id;
    EXPECT_EQ(pixels.Pixel(0, 0), kCatalogueMask) << "bitmap " << id << " has no masked corner";
    int drawn = 0;
    for (int y = 0; y < 16; ++y) {
      for (int x = 0; x < 16; ++x) {
        drawn += pixels.Pixel(x, y) != kCatalogueMask ? 1 : 0;
      }
    }
    EXPECT_GE(drawn, 256 / 5) << "bitmap " << id << " is almost empty";

    const controls::OwnedBitmap device(LoadBitmapW(program_, MAKEINTRESOURCEW(id)));
    ASSERT_TRUE(device) << "bitmap " << id;
    EXPECT_EQ(ImageList_AddMasked(list, device.Get(), kCatalogueMask), index++) << "bitmap " << id;
  }
  EXPECT_EQ(ImageList_GetImageCount(list), kPictures);

  // Drawn over a coloured row, the masked background lets the row show through.
  const controls::WindowDC screen(nullptr);
  const controls::MemoryDC memory(screen.Get());
  const controls::OwnedBitmap surface(CreateCompatibleBitmap(screen.Get(), 16, 16));
  const controls::SelectedObject drawing(memory.Get(), surface.Get());
  const HDC dc = memory.Get();
  const COLORREF row = RGB(0, 200, 0);
  const controls::OwnedBrush brush(CreateSolidBrush(row));
  for (int i = 0; i < kPictures; ++i) {
    RECT all{0, 0, 16, 16};
    FillRect(dc, &all, brush.Get());
    ASSERT_TRUE(ImageList_Draw(list, i, dc, 0, 0, ILD_TRANSPARENT));
    EXPECT_EQ(GetPixel(dc, 0, 0), row) << "picture " << i << " hides the row at its corner";
    int drawn = 0;
    for (int y = 0; y < 16; ++y) {
      for (int x = 0; x < 16; ++x) {
        drawn += GetPixel(dc, x, y) != row ? 1 : 0;
      }
    }
    EXPECT_GE(drawn, 256 / 5) << "picture " << i << " draws almost nothing";
  }
  ImageList_Destroy(list);
}

TEST_F(Artwork, ScanPageButtonPicturesMatchTheirButtons) {
  ExpectBitmaps({207, 210, 209, 180}, {104, 27});                           // scan
  ExpectBitmaps({273, 274}, {128, 29});                                     // stop
  ExpectBitmaps({214, 213, 212, 211}, {104, 27});                           // delete the selected row
  ExpectBitmaps({215, 218, 217, 216}, {104, 27});                           // erase
  ExpectBitmaps({327, 326, 325, 324, 332, 331, 330, 329, 328}, {149, 21});  // select all, none, default
}

TEST_F(Artwork, ItemTreeCheckBoxesBusyStripAndDoneMark) {
  // Check boxes: cells of 16 for states 0 (none) to 3 (ticked), and their mask.
  Bitmap checks(program_, 184);
  Bitmap mask(program_, 185);
  ASSERT_TRUE(checks.Loaded());
  ASSERT_TRUE(mask.Loaded());
  EXPECT_EQ(checks.Dimensions().width, 4 * 16);
  EXPECT_EQ(checks.Dimensions().height, 16);
  EXPECT_EQ(mask.Dimensions().width, 4 * 16);
  EXPECT_EQ(mask.Dimensions().height, 16);
  EXPECT_EQ(mask.BitsPerPixel(), 1);
  for (int y = 0; y < 16; ++y) {
    for (int x = 0; x < 64; ++x) {
      const bool transparent = mask.Pixel(x, y) == RGB(255, 255, 255);
      ASSERT_EQ(checks.Pixel(x, y) == kMagenta, transparent) << "mask and picture disagree at " << x << "," << y;
      if (x < 16) {
        ASSERT_TRUE(transparent) << "state 0 shows no box";
      }
    }
  }
  for (int state = 1; state <= 3; ++state) {
    EXPECT_NE(checks.Pixel(16 * state + 8, 8), kMagenta) << "state " << state;
  }
  // Unticked, partly ticked and ticked look different in the middle of the box.
  EXPECT_NE(checks.Pixel(16 + 8, 8), checks.Pixel(32 + 8, 8)) << "unticked and partly ticked";
  EXPECT_NE(checks.Pixel(32 + 3, 3), checks.Pixel(48 + 3, 3)) << "partly ticked and ticked";

  // Busy strip: eight frames of 16, drawn with magenta as the transparent colour.
  Bitmap strip(program_, 187);
  ASSERT_TRUE(strip.Loaded());
  EXPECT_EQ(strip.Dimensions().width, 8 * 16);
  EXPECT_EQ(strip.Dimensions().height, 16);
  for (int frame = 0; frame < 8; ++frame) {
    EXPECT_EQ(strip.Pixel(16 * frame, 0), kMagenta) << "frame " << frame;
  }
  Bitmap done(program_, 188);
  ASSERT_TRUE(done.Loaded());
  EXPECT_EQ(done.Dimensions().width, 16);
  EXPECT_EQ(done.Dimensions().height, 16);
  EXPECT_EQ(done.Pixel(0, 0), kMagenta);
  EXPECT_NE(done.Pixel(8, 8), kMagenta);
}

TEST_F(Artwork, EraseDialogBackgroundCellsWarningAndButtons) {
  Bitmap background(program_, 236);
  ASSERT_TRUE(background.Loaded());
  ASSERT_EQ(background.Dimensions().width, 429);
  ASSERT_EQ(background.Dimensions().height, 302);
  // The window's region drops magenta near the corners: there must be some, and none
  // along the edges between the corners.
  for (POINT corner : {POINT{0, 0}, POINT{428, 0}, POINT{0, 301}, POINT{428, 301}}) {
    EXPECT_EQ(background.Pixel(corner.x, corner.y), kMagenta) << corner.x << "," << corner.y;
  }
  for (int x = 10; x < 419; ++x) {
    ASSERT_NE(background.Pixel(x, 0), kMagenta) << "top edge at " << x;
    ASSERT_NE(background.Pixel(x, 301), kMagenta) << "bottom edge at " << x;
  }
  for (int y = 10; y < 292; ++y) {
    ASSERT_NE(background.Pixel(0, y), kMagenta) << "left edge at " << y;
    ASSERT_NE(background.Pixel(428, y), kMagenta) << "right edge at " << y;
  }

  // Progress cells: lit at x 0, unlit at x 24, 24 by 11 each.
  Bitmap cells(program_, 254);
  ASSERT_TRUE(cells.Loaded());
  EXPECT_EQ(cells.Dimensions().width, 48);
  EXPECT_EQ(cells.Dimensions().height, 11);
  EXPECT_NE(cells.Pixel(12, 5), cells.Pixel(24 + 12, 5)) << "lit and unlit cells look the same";

  ExpectBitmaps({341}, {275, 42});
  ExpectBitmaps({239, 241, 240, 242, 244, 243}, {64, 20});
}

TEST_F(Artwork, HelpPageButtonsFillTheirRectangles) {
  ExpectBitmaps({250, 384, 249, 252, 385, 251, 248, 383, 253}, {171 - 20, 346 - 180});
  Bitmap page(program_, 232);
  ASSERT_TRUE(page.Loaded());
  EXPECT_LE(page.Dimensions().height, 180) << "the page picture reaches under the buttons";
}

TEST_F(Artwork, SettingsPanelAndPageButtons) {
  Bitmap panel(program_, 219);
  ASSERT_TRUE(panel.Loaded());
  EXPECT_GT(panel.Dimensions().width, 0);
  ExpectBitmaps({501, 502, 503, 504}, {104, 27});  // settings: save
  ExpectBitmaps({511, 512, 513, 514, 515, 516, 517, 518, 519, 520, 521, 522, 523, 524, 525, 526},
                {104, 27});                                            // junk: start, stop, delete, delete all
  ExpectBitmaps({531, 532, 533, 534, 535, 536}, {124, 36});            // junk: set-up and result tabs
  ExpectBitmaps({541, 542, 543, 544, 545, 546, 547, 548}, {104, 27});  // shred and its stop look
}

TEST_F(Artwork, AnimationsAreLoopingGifsWithSeveralFrames) {
  const GifLayout busy = Animation(206);
  EXPECT_TRUE(busy.wellFormed);
  EXPECT_TRUE(busy.loops);
  EXPECT_GE(busy.frames, 8);
  EXPECT_TRUE(busy.framesInside);

  const GifLayout erase = Animation(245);
  EXPECT_TRUE(erase.wellFormed);
  EXPECT_TRUE(erase.loops);
  EXPECT_GE(erase.frames, 8);
  EXPECT_TRUE(erase.framesInside);
  EXPECT_EQ(erase.width, 272);  // the animation control's size in the erase dialog
  EXPECT_EQ(erase.height, 147);
}

}  // namespace
}  // namespace lumenor
