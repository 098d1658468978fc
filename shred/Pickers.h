// The two pickers of the shred page: the system's file-open dialog with many files
// chosen at once, and the folder browser that opens on the folder last highlighted.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace lumenor {

// The files the user chose, each as a whole path; empty when the dialog was cancelled
// (or the choice did not fit even the large buffer, which the dialog reports itself).
std::vector<std::wstring> PickFiles(HWND owner);

// Remembers the folder last highlighted in the browser and opens the next browse there.
class FolderPicker {
 public:
  // The chosen file-system folder; nothing when cancelled.
  std::optional<std::wstring> Pick(HWND owner, const std::wstring& title);

 private:
  static int CALLBACK Callback(HWND browser, UINT message, LPARAM lParam, LPARAM self);
  std::wstring lastHighlighted_;
};

// Splits the buffer of a multiple-choice file dialog into whole paths: either one path,
// or the folder followed by the chosen names, each ended by a null, the list by two.
std::vector<std::wstring> ChosenPaths(const wchar_t* buffer, size_t size);

}  // namespace lumenor
