// The junk cleaner's set-up page: the catalogue of junk masks with a check box each, the
// "Default", "All" and "None" selectors, where to look (every fixed disk or one folder,
// typed or picked), and the start button, which checks the choices and hands the folder
// and the chosen masks to the junk page.
#pragma once

#include "controls/Dialog.h"
#include "controls/FolderPicker.h"
#include "controls/MyCheckBox.h"
#include "controls/NButtonEx.h"
#include "controls/UserPrompt.h"
#include "junk/JunkCatalogueList.h"

#include <array>
#include <functional>
#include <string>
#include <vector>

namespace lumenor {

class CDlgJunkScan : public controls::CDialog {
 public:
  // Folder canonical and ending with "\", or empty for every fixed disk.
  using StartHandler = std::function<void(const std::wstring& folder, const std::vector<std::wstring>& masks)>;

  CDlgJunkScan();

  void SetStartHandler(StartHandler start) { start_ = std::move(start); }
  void SetMessageBox(MessageBoxFunction messageBox) { messageBox_ = std::move(messageBox); }

  // Back to every fixed disk, with the folder cleared and disabled; the ticks stay.
  void ResetScope();

  const CJunkCatalogueList& Catalogue() const { return catalogue_; }
  // The masks of the ticked rows at the last start, in catalogue order.
  const std::vector<std::wstring>& ChosenMasks() const { return chosenMasks_; }

 protected:
  bool OnInit() override;
  bool OnCommand(int id, int code, HWND control) override;
  bool OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

 private:
  void FillCatalogue();
  void TickRows(size_t firstUnticked);
  void EnableFolder(bool enable) const;
  void Browse();
  void Start();
  void LayOut();

  CJunkCatalogueList catalogue_;
  // Scope: all disks, one folder; selectors: default, all, none.
  std::array<controls::CMyCheckBox, 5> choices_;
  controls::CNButtonEx startButton_;
  controls::FolderPicker picker_;  // opens where the user last left it
  std::vector<std::wstring> chosenMasks_;
  StartHandler start_;
  MessageBoxFunction messageBox_ = SystemMessageBox;
};

}  // namespace lumenor
