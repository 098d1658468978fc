// The erase progress dialog: an animation, the figures deleted and failed, a ten-cell bar,
// and at the end a Close button and, when anything failed, a warning. The erase itself
// runs on the dialog's worker, started once its window exists; the worker's reports
// reach the window through the dialog's task queue, so the worker never waits for the
// window. An erase whose thread could not start ends at once as one failure, so the
// warning and Close show. The junk cleaner's delete-all uses it too.
#pragma once

#include "controls/Bitmap.h"
#include "controls/Dialog.h"
#include "controls/DigitDisplay.h"
#include "controls/GifPicture.h"
#include "controls/NButtonEx.h"
#include "controls/PageWorker.h"
#include "controls/UiTasks.h"
#include "engine/TraceSink.h"
#include "scan/EraseProgress.h"

#include <atomic>
#include <functional>
#include <mutex>

namespace lumenor {

class CDlgScanResult : public controls::CDialog {
 public:
  // The erase: runs on the worker, reporting each deletion and failure to `tally`.
  using Job = std::function<void(EraseTally& tally)>;

  CDlgScanResult(int total, Job job);

  // Runs the dialog modally. IDOK once closed: by Close, or by Esc, the close box or
  // Alt+F4, which all mean Close and do nothing before the erase has ended. IDCANCEL
  // only through the hidden button 1029. -1 when the window could not be made; the job
  // has then not run.
  INT_PTR Run(HWND owner);

  // What the dialog counts and shows; safe from any thread.
  EraseProgress Progress() const;
  bool Finished() const { return finished_.load(); }
  bool CloseShown() const { return close_.Exists() && close_.IsVisible(); }
  bool WarningShown() const;

  // How the erase's thread is started; tests make it fail.
  void SetThreadStarter(controls::ThreadStarter starter) { worker_.SetThreadStarter(std::move(starter)); }

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnPaint() override;
  bool OnEraseBackground(HDC dc) override;
  bool OnClose() override;

 private:
  class WorkerTally;

  void PlaceControls();
  void ShapeWindowToPicture();
  void CentreOverOwner();
  void ShowFigures(int deleted, int failed);
  void ShowEnd(controls::RunEnd end);
  RECT BarRect() const;
  void Report(EraseProgress::Refresh refresh);

  Job job_;
  mutable std::mutex mutex_;  // guards progress_
  EraseProgress progress_;
  int litCells_ = 0;  // as painted, on the window's thread
  std::atomic<bool> finished_{false};
  controls::UiTaskQueue tasks_;

  controls::CBitmapResource background_;
  controls::CBitmapResource cells_;
  controls::CBitmapResource warningPicture_;
  controls::CMyGifPicture animation_;
  controls::CMyDigitDisplay totalDisplay_;
  controls::CMyDigitDisplay deletedDisplay_;
  controls::CMyDigitDisplay failedDisplay_;
  controls::CNButtonEx close_;
  controls::CNButtonEx cancel_;
  // Last: its thread is joined before anything it uses goes.
  controls::PageWorker worker_{tasks_};
};

}  // namespace lumenor
