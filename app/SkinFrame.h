// The main window's skin: the window's own caption band with icon, title, minimise and
// close; the tab strip; the "Update", "Help" and "AD" buttons; the footer with the
// home-page link. It lays these out around the largest page and paints the bands.
#pragma once

#include "app/FrameLayout.h"
#include "controls/Dialog.h"
#include "controls/GdiOwners.h"
#include "controls/HyperLink.h"
#include "controls/MyTabCtrl.h"
#include "controls/NButtonEx.h"
#include "update/MakerSite.h"

#include <windows.h>

#include <array>
#include <span>

namespace lumenor {

class CSkinFrame {
 public:
  CSkinFrame() = default;
  CSkinFrame(const CSkinFrame&) = delete;
  CSkinFrame& operator=(const CSkinFrame&) = delete;

  // Takes over `window`'s frame: drops the system caption and sets up the tab strip,
  // the buttons and the home-page link (opened through `opener`).
  void SetUp(HWND window, HICON icon, const PageOpener& opener);
  // Sizes the window around the largest of `pages` (made or not: they share the window's
  // dialog font), places every band and control, and centres the window on the work area.
  void LayOut(std::span<const controls::CDialog* const> pages);
  // Puts a made page into the room for the pages, at its template's size.
  void PlacePage(const controls::CDialog& page) const;
  void Paint(HDC target) const;
  // Whether a point of the client area lies on the caption band, which moves the window.
  bool OnCaption(POINT client) const { return client.y >= 0 && client.y < layout_.caption.bottom; }

  controls::CMyTabCtrl& Tabs() { return tabs_; }
  const controls::CMyTabCtrl& Tabs() const { return tabs_; }
  const FrameLayout& Layout() const { return layout_; }

 private:
  SIZE TitleSize() const;
  HFONT TitleFont() const;

  HWND window_ = nullptr;
  HICON icon_ = nullptr;
  FrameLayout layout_;
  // Declared before the controls that use them, so the controls go first.
  controls::OwnedFont glyphFont_;
  controls::OwnedFont titleFont_;
  controls::CMyTabCtrl tabs_;
  std::array<controls::CNButtonEx, 6> buttons_;
  controls::CMyHyperLink homeLink_;
};

}  // namespace lumenor
