// Animated picture from a "GIF" resource of the executable, decoded by GDI+ and drawn
// centred in the control; Start and Stop run and halt the animation, the still picture
// shows the current frame. CGdiplusSession keeps GDI+ running for the program's windows.
#pragma once

#include "controls/Control.h"

#include <objidl.h>

#include <memory>

namespace Gdiplus {
class Image;
}

namespace lumenor::controls {

class CGdiplusSession {
 public:
  CGdiplusSession();
  CGdiplusSession(const CGdiplusSession&) = delete;
  CGdiplusSession& operator=(const CGdiplusSession&) = delete;
  ~CGdiplusSession();
  bool Running() const { return token_ != 0; }

 private:
  ULONG_PTR token_ = 0;
};

class CMyGifPicture : public CControl {
 public:
  CMyGifPicture();
  ~CMyGifPicture() override;

  // Takes over a static of a dialog template.
  bool Attach(HWND dialog, int id) { return SubclassItem(dialog, id); }
  // Loads resource `id` of type "GIF"; false (and nothing drawn) when missing or unreadable.
  bool Load(int id);
  bool Loaded() const { return image_ != nullptr; }
  UINT FrameCount() const { return frameCount_; }
  UINT CurrentFrame() const { return frame_; }

  void Start();
  void Stop();
  bool Running() const { return running_; }
  // Shows the next frame; the animation's timer calls it.
  void NextFrame();

 protected:
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

 private:
  void Paint(HDC dc) const;
  UINT DelayOf(UINT frame) const;

  std::unique_ptr<Gdiplus::Image> image_;
  IStream* stream_ = nullptr;
  UINT frameCount_ = 0;
  UINT frame_ = 0;
  std::unique_ptr<UINT[]> delays_;  // per frame, in milliseconds
  bool running_ = false;
};

}  // namespace lumenor::controls
