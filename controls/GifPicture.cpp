#include "controls/GifPicture.h"

#include "controls/MemDC.h"

#include <objidl.h>
// GDI+ needs IStream (above) before its own header.
#include <gdiplus.h>

#include <cstring>

namespace lumenor::controls {

namespace {
constexpr UINT_PTR kFrameTimer = 1;
constexpr UINT kFallbackDelayMs = 100;
}  // namespace

CGdiplusSession::CGdiplusSession() {
  Gdiplus::GdiplusStartupInput input;
  if (Gdiplus::GdiplusStartup(&token_, &input, nullptr) != Gdiplus::Ok) {
    token_ = 0;  // pictures then simply do not load
  }
}

CGdiplusSession::~CGdiplusSession() {
  if (token_ != 0) {
    Gdiplus::GdiplusShutdown(token_);
  }
}

CMyGifPicture::CMyGifPicture() = default;

CMyGifPicture::~CMyGifPicture() {
  Stop();
  image_.reset();
  if (stream_ != nullptr) {
    stream_->Release();
  }
}

bool CMyGifPicture::Load(int id) {
  HMODULE module = ::GetModuleHandleW(nullptr);
  HRSRC resource = ::FindResourceW(module, MAKEINTRESOURCEW(id), L"GIF");
  HGLOBAL loaded = resource != nullptr ? ::LoadResource(module, resource) : nullptr;
  const void* bytes = loaded != nullptr ? ::LockResource(loaded) : nullptr;
  const DWORD size = resource != nullptr ? ::SizeofResource(module, resource) : 0;
  if (bytes == nullptr || size == 0) {
    return false;
  }
  // GDI+ reads the picture lazily, so the stream must own a copy for the image's life.
  HGLOBAL copy = ::GlobalAlloc(GMEM_MOVEABLE, size);
  if (copy == nullptr) {
    return false;
  }
  void* target = ::GlobalLock(copy);
  if (target == nullptr) {
    (void)::GlobalFree(copy);
    return false;
  }
  std::memcpy(target, bytes, size);
  (void)::GlobalUnlock(copy);  // answers whether still locked
  IStream* stream = nullptr;
  if (FAILED(::CreateStreamOnHGlobal(copy, TRUE, &stream))) {
    (void)::GlobalFree(copy);
    return false;
  }
  auto image = std::make_unique<Gdiplus::Image>(stream);
  if (image->GetLastStatus() != Gdiplus::Ok) {
    stream->Release();
    return false;
  }

  Stop();
  image_ = std::move(image);
  if (stream_ != nullptr) {
    stream_->Release();
  }
  stream_ = stream;
  frame_ = 0;
  frameCount_ = image_->GetFrameCount(&Gdiplus::FrameDimensionTime);
  if (frameCount_ == 0) {
    frameCount_ = 1;
  }
  delays_ = std::make_unique<UINT[]>(frameCount_);
  for (UINT frame = 0; frame < frameCount_; ++frame) {
    delays_[frame] = kFallbackDelayMs;
  }
  const UINT propertySize = image_->GetPropertyItemSize(PropertyTagFrameDelay);
  if (propertySize > sizeof(Gdiplus::PropertyItem)) {
    auto buffer = std::make_unique<unsigned char[]>(propertySize);
    auto* item = reinterpret_cast<Gdiplus::PropertyItem*>(buffer.get());
    if (image_->GetPropertyItem(PropertyTagFrameDelay, propertySize, item) == Gdiplus::Ok) {
      const auto* hundredths = static_cast<const UINT*>(item->value);
      const UINT count = item->length / sizeof(UINT);
      for (UINT frame = 0; frame < frameCount_ && frame < count; ++frame) {
        delays_[frame] = hundredths[frame] > 1 ? hundredths[frame] * 10 : kFallbackDelayMs;
      }
    }
  }
  if (window_ != nullptr) {
    (void)Invalidate();
  }
  return true;
}

UINT CMyGifPicture::DelayOf(UINT frame) const {
  return delays_ != nullptr && frame < frameCount_ ? delays_[frame] : kFallbackDelayMs;
}

void CMyGifPicture::Start() {
  if (image_ == nullptr || frameCount_ < 2 || window_ == nullptr) {
    return;
  }
  running_ = StartTimer(kFrameTimer, DelayOf(frame_));
}

void CMyGifPicture::Stop() {
  if (running_ && window_ != nullptr) {
    (void)StopTimer(kFrameTimer);  // fails only when no timer runs
  }
  running_ = false;
}

void CMyGifPicture::NextFrame() {
  if (image_ == nullptr || frameCount_ < 2) {
    return;
  }
  frame_ = (frame_ + 1) % frameCount_;
  if (image_->SelectActiveFrame(&Gdiplus::FrameDimensionTime, frame_) != Gdiplus::Ok) {
    return;
  }
  (void)Invalidate();
  if (running_) {
    running_ = StartTimer(kFrameTimer, DelayOf(frame_));  // restarting replaces the period
  }
}

void CMyGifPicture::Paint(HDC target) const {
  const RECT client = ClientRect();
  CMemDC memory(target, client);
  HDC dc = memory.Get();
  HWND parent = ::GetParent(window_);
  auto background = reinterpret_cast<HBRUSH>(
      ::SendMessageW(parent, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(window_)));
  if (background == nullptr || background == ::GetStockObject(NULL_BRUSH)) {
    background = static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH));
  }
  (void)::FillRect(dc, &client, background);
  if (image_ == nullptr) {
    return;
  }
  const int width = static_cast<int>(image_->GetWidth());
  const int height = static_cast<int>(image_->GetHeight());
  Gdiplus::Graphics graphics(dc);
  (void)graphics.DrawImage(image_.get(), (client.right - width) / 2, (client.bottom - height) / 2, width, height);
}

LRESULT CMyGifPicture::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  LRESULT painted = 0;
  if (HandlePaintMessage(
          message, [this](HDC dc) { Paint(dc); }, painted)) {
    return painted;
  }
  switch (message) {
    case WM_TIMER:
      if (wParam == kFrameTimer) {
        NextFrame();
        return 0;
      }
      break;
    default:
      break;
  }
  return Default(message, wParam, lParam);
}

}  // namespace lumenor::controls
