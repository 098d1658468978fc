#include "controls/FolderPicker.h"

#include <objbase.h>
#include <shlobj.h>

namespace lumenor::controls {

int CALLBACK FolderPicker::Callback(HWND browser, UINT message, LPARAM lParam, LPARAM self) {
  auto* picker = reinterpret_cast<FolderPicker*>(self);
  if (message == BFFM_INITIALIZED && !picker->lastHighlighted_.empty()) {
    // The browser finds "C:\Temp" but not "C:\Temp\"; a drive root keeps its backslash.
    std::wstring start = picker->lastHighlighted_;
    if (start.size() != 3 && start.back() == L'\\') {
      start.pop_back();
    }
    (void)SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(start.c_str()));
  } else if (message == BFFM_SELCHANGED) {
    wchar_t path[MAX_PATH] = {};
    if (SHGetPathFromIDListW(reinterpret_cast<PCIDLIST_ABSOLUTE>(lParam), path) != FALSE) {
      picker->lastHighlighted_ = path;
      (void)SendMessageW(browser, BFFM_SETSTATUSTEXTW, 0, reinterpret_cast<LPARAM>(path));
    }
  }
  return 0;
}

std::optional<std::wstring> FolderPicker::Pick(HWND owner, const std::wstring& title) {
  BROWSEINFOW browse{};
  browse.hwndOwner = owner;
  browse.lpszTitle = title.c_str();
  browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_STATUSTEXT;
  browse.lpfn = Callback;
  browse.lParam = reinterpret_cast<LPARAM>(this);
  // The browser is a shell object; it needs the component runtime on this thread.
  const HRESULT runtime = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  std::optional<std::wstring> chosen;
  if (PIDLIST_ABSOLUTE list = SHBrowseForFolderW(&browse); list != nullptr) {
    // MAX_PATH is the most SHGetPathFromIDListW ever writes; a longer folder fails whole.
    wchar_t path[MAX_PATH] = {};
    if (SHGetPathFromIDListW(list, path) != FALSE) {
      chosen = std::wstring(path);
    }
    CoTaskMemFree(list);
  }
  if (SUCCEEDED(runtime)) {
    CoUninitialize();
  }
  return chosen;
}

}  // namespace lumenor::controls
