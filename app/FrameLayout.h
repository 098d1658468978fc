// Where the main window's skin puts its bands and controls: a caption band with the
// icon, the title and four buttons; a row with the tab strip and the "AD" button; the
// room for the pages, as large as the largest page; a footer with the home-page link and
// a "Help" button. Everything follows from the sizes of the parts, none of it from a
// fixed window size (see controls/Layout.h).
#pragma once

#include <windows.h>

namespace lumenor {

struct FrameParts {
  SIZE largestPage{};
  SIZE tabStrip{};
  SIZE icon{};
  SIZE title{};  // the caption text as drawn
  // The frame's controls at their template sizes.
  SIZE update{};
  SIZE help{};
  SIZE minimise{};
  SIZE close{};
  SIZE ad{};
  SIZE homeLink{};
  SIZE footerHelp{};
  // Space around the bands and between neighbours, in pixels for the window's font.
  SIZE margin{};
  SIZE gap{};
};

struct FrameLayout {
  SIZE client{};
  RECT caption{};
  RECT icon{};
  RECT title{};
  RECT update{};
  RECT help{};
  RECT minimise{};
  RECT close{};
  POINT tabOrigin{};
  RECT ad{};
  RECT pages{};  // where every page's top left corner goes; the largest fills it
  RECT footer{};
  RECT homeLink{};
  RECT footerHelp{};
};

FrameLayout ComputeFrameLayout(const FrameParts& parts);

}  // namespace lumenor
