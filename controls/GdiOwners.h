// Owners of GDI handles, each given back once, when its scope ends, on every way out:
// objects (pens, brushes, fonts, bitmaps, regions) deleted; an object selected into a
// device context taken out again (the context's own put back) before anything is
// deleted; device contexts released, deleted or ended as they were got. Every GDI handle
// the program makes goes into one of these; none is freed by hand. Freeing our own
// handle cannot usefully fail, so the owners name no result.
#pragma once

#include <windows.h>

#include <utility>

namespace lumenor::controls {

// A GDI object of ours, deleted when the owner goes. Declare it before any selection of
// it, so that the selection is undone first.
template <typename Handle>
class GdiObject {
 public:
  GdiObject() = default;
  explicit GdiObject(Handle handle) : handle_(handle) {}
  GdiObject(const GdiObject&) = delete;
  GdiObject& operator=(const GdiObject&) = delete;
  GdiObject(GdiObject&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  GdiObject& operator=(GdiObject&& other) noexcept {
    if (this != &other) Reset(std::exchange(other.handle_, nullptr));
    return *this;
  }
  ~GdiObject() { Reset(); }

  Handle Get() const { return handle_; }
  explicit operator bool() const { return handle_ != nullptr; }
  // Gives the handle up, to the system (SetWindowRgn) or to another owner.
  Handle Release() { return std::exchange(handle_, nullptr); }
  void Reset(Handle handle = nullptr) {
    if (handle_ != nullptr) (void)::DeleteObject(handle_);
    handle_ = handle;
  }

 private:
  Handle handle_ = nullptr;
};

using OwnedPen = GdiObject<HPEN>;
using OwnedBrush = GdiObject<HBRUSH>;
using OwnedFont = GdiObject<HFONT>;
using OwnedBitmap = GdiObject<HBITMAP>;
using OwnedRegion = GdiObject<HRGN>;

// An object selected into a device context for the owner's scope; the context's own
// object goes back in at its end. Select may change what is selected meanwhile.
class SelectedObject {
 public:
  SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc) {
    const HGDIOBJ previous = dc != nullptr && object != nullptr ? ::SelectObject(dc, object) : nullptr;
    previous_ = previous == HGDI_ERROR ? nullptr : previous;
  }
  SelectedObject(const SelectedObject&) = delete;
  SelectedObject& operator=(const SelectedObject&) = delete;
  ~SelectedObject() {
    if (previous_ != nullptr) (void)::SelectObject(dc_, previous_);
  }

  // Whether the object went in.
  bool Selected() const { return previous_ != nullptr; }
  void Select(HGDIOBJ object) const {
    if (previous_ != nullptr && object != nullptr) (void)::SelectObject(dc_, object);  // the old one is ours or stock
  }

 private:
  HDC dc_;
  HGDIOBJ previous_ = nullptr;
};

// The device context of a window's client area (or of the screen, for no window),
// released at the end.
class WindowDC {
 public:
  explicit WindowDC(HWND window) : window_(window), dc_(::GetDC(window)) {}
  WindowDC(const WindowDC&) = delete;
  WindowDC& operator=(const WindowDC&) = delete;
  ~WindowDC() {
    if (dc_ != nullptr) (void)::ReleaseDC(window_, dc_);
  }
  HDC Get() const { return dc_; }
  explicit operator bool() const { return dc_ != nullptr; }

 private:
  HWND window_;
  HDC dc_;
};

// A memory device context like `like` (the screen's for none), deleted at the end.
class MemoryDC {
 public:
  explicit MemoryDC(HDC like) : dc_(::CreateCompatibleDC(like)) {}
  MemoryDC(const MemoryDC&) = delete;
  MemoryDC& operator=(const MemoryDC&) = delete;
  ~MemoryDC() {
    if (dc_ != nullptr) (void)::DeleteDC(dc_);
  }
  HDC Get() const { return dc_; }
  explicit operator bool() const { return dc_ != nullptr; }

 private:
  HDC dc_;
};

// BeginPaint for WM_PAINT, EndPaint at the end.
class PaintDC {
 public:
  explicit PaintDC(HWND window) : window_(window), dc_(::BeginPaint(window, &paint_)) {}
  PaintDC(const PaintDC&) = delete;
  PaintDC& operator=(const PaintDC&) = delete;
  ~PaintDC() {
    if (dc_ != nullptr) (void)::EndPaint(window_, &paint_);  // always succeeds after BeginPaint
  }
  HDC Get() const { return dc_; }
  explicit operator bool() const { return dc_ != nullptr; }
  const RECT& Area() const { return paint_.rcPaint; }

 private:
  HWND window_;
  PAINTSTRUCT paint_{};
  HDC dc_;
};

// An icon of ours (loaded from a resource at a size, so not shared), destroyed at the end.
class OwnedIcon {
 public:
  OwnedIcon() = default;
  explicit OwnedIcon(HICON icon) : icon_(icon) {}
  OwnedIcon(const OwnedIcon&) = delete;
  OwnedIcon& operator=(const OwnedIcon&) = delete;
  OwnedIcon(OwnedIcon&& other) noexcept : icon_(std::exchange(other.icon_, nullptr)) {}
  OwnedIcon& operator=(OwnedIcon&& other) noexcept {
    if (this != &other) Reset(std::exchange(other.icon_, nullptr));
    return *this;
  }
  ~OwnedIcon() { Reset(); }
  HICON Get() const { return icon_; }
  explicit operator bool() const { return icon_ != nullptr; }
  void Reset(HICON icon = nullptr) {
    if (icon_ != nullptr) (void)::DestroyIcon(icon_);
    icon_ = icon;
  }

 private:
  HICON icon_ = nullptr;
};

}  // namespace lumenor::controls
