// The system's folder browser as the junk and shred pages open it: file-system folders
// only, the highlighted folder's path shown as its status line, and each browse opening
// on the folder last highlighted in this picker.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace lumenor::controls {

class FolderPicker {
 public:
  // The chosen folder; nothing when cancelled, or when its path does not fit MAX_PATH
  // (the browser fails such a folder whole, so nothing is ever cut short).
  std::optional<std::wstring> Pick(HWND owner, const std::wstring& title);

 private:
  static int CALLBACK Callback(HWND browser, UINT message, LPARAM lParam, LPARAM self);
  std::wstring lastHighlighted_;
};

}  // namespace lumenor::controls
