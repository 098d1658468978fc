#include "app/FrameLayout.h"

#include "controls/Layout.h"

#include <algorithm>

namespace lumenor {

namespace {

// A rectangle of `size` whose right edge is `right`, centred on the band.
RECT RightAligned(int right, SIZE size, const RECT& band) {
  const int top = band.top + (controls::Height(band) - size.cy) / 2;
  return RECT{right - size.cx, top, right, top + size.cy};
}

RECT LeftAligned(int left, SIZE size, const RECT& band) {
  const int top = band.top + (controls::Height(band) - size.cy) / 2;
  return RECT{left, top, left + size.cx, top + size.cy};
}

}  // namespace

FrameLayout ComputeFrameLayout(const FrameParts& parts) {
  const SIZE margin = parts.margin;
  const SIZE gap = parts.gap;
  FrameLayout frame;

  // Wide enough for the largest page, for the tab row with its "AD" button at its
  // template width, and for the caption's title beside its buttons.
  const int captionButtons =
      parts.update.cx + gap.cx + parts.help.cx + margin.cx + parts.minimise.cx + gap.cx + parts.close.cx;
  const int width = std::max({
      margin.cx + parts.largestPage.cx + margin.cx,
      margin.cx + parts.tabStrip.cx + margin.cx + parts.ad.cx + margin.cx,
      margin.cx + parts.icon.cx + gap.cx + parts.title.cx + margin.cx + captionButtons + margin.cx,
  });

  const int captionInside =
      std::max({parts.icon.cy, parts.title.cy, parts.update.cy, parts.help.cy, parts.minimise.cy, parts.close.cy});
  frame.caption = RECT{0, 0, width, margin.cy + captionInside + margin.cy};
  frame.icon = LeftAligned(margin.cx, parts.icon, frame.caption);
  frame.title = LeftAligned(frame.icon.right + gap.cx, parts.title, frame.caption);
  frame.close = RightAligned(width - margin.cx, parts.close, frame.caption);
  frame.minimise = RightAligned(frame.close.left - gap.cx, parts.minimise, frame.caption);
  frame.help = RightAligned(frame.minimise.left - margin.cx, parts.help, frame.caption);
  frame.update = RightAligned(frame.help.left - gap.cx, parts.update, frame.caption);

  // The "AD" button fills the tab row right of the tabs, as tall as a tab less a gap
  // above and below.
  frame.tabOrigin = POINT{margin.cx, frame.caption.bottom + margin.cy};
  const RECT tabRow{0, frame.tabOrigin.y, width, frame.tabOrigin.y + parts.tabStrip.cy};
  const int adLeft = frame.tabOrigin.x + parts.tabStrip.cx + margin.cx;
  frame.ad = LeftAligned(adLeft, SIZE{width - margin.cx - adLeft, parts.tabStrip.cy - 2 * gap.cy}, tabRow);

  const int pagesTop = tabRow.bottom + gap.cy;
  frame.pages = RECT{margin.cx, pagesTop, margin.cx + parts.largestPage.cx, pagesTop + parts.largestPage.cy};

  const int footerInside = std::max(parts.homeLink.cy, parts.footerHelp.cy);
  frame.footer =
      RECT{0, frame.pages.bottom + gap.cy, width, frame.pages.bottom + gap.cy + margin.cy + footerInside + margin.cy};
  frame.footerHelp = RightAligned(width - margin.cx, parts.footerHelp, frame.footer);
  const int linkLeft = margin.cx + gap.cx;
  const int linkWidth = std::min(parts.homeLink.cx, frame.footerHelp.left - margin.cx - linkLeft);
  frame.homeLink = LeftAligned(linkLeft, SIZE{linkWidth, parts.homeLink.cy}, frame.footer);

  frame.client = SIZE{width, frame.footer.bottom};
  return frame;
}

}  // namespace lumenor
