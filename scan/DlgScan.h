// The privacy scan page: the catalogue as a tree, the selection and action buttons, the
// list of traces found and the busy animation. The main window starts its one-click
// erase and reads how many items it has done.
#pragma once

#include "controls/Dialog.h"
#include "controls/GifPicture.h"
#include "controls/MyListCtrl.h"
#include "controls/NButtonEx.h"

#include <array>

namespace lumenor {

class CDlgScan : public controls::CDialog {
 public:
  CDlgScan();

  // Scans and erases the one-click selection without the progress dialog. The main
  // window calls it from its menu (not during a scan) and from the scheduler.
  void StartOneClickErase();
  // How many one-click erases were asked for since the page was made.
  int OneClickRequests() const { return oneClickRequests_; }
  // Items done so far in the running scan or erase (shown in the tray balloon).
  int ItemsDone() const { return itemsDone_; }

 protected:
  bool OnInit() override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;
  bool OnEraseBackground(HDC dc) override;

 private:
  void MakeButtons();
  void FillTree();
  void LayOut();

  controls::CMyGifPicture animation_;
  controls::CMyListCtrl results_;
  HWND tree_ = nullptr;
  // Seven slots as the page has always had; the fourth is never made.
  std::array<controls::CNButtonEx, 7> buttons_;
  int oneClickRequests_ = 0;
  int itemsDone_ = 0;
};

}  // namespace lumenor
