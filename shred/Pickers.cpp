#include "shred/Pickers.h"

#include <commdlg.h>
#include <shlobj.h>

#include <string_view>

namespace lumenor {

namespace {

// Room for thousands of names: a path-sized buffer would hold one or two.
constexpr size_t kChoiceBufferChars = 256 * 1024;

}  // namespace

std::vector<std::wstring> ChosenPaths(const wchar_t* buffer, size_t size) {
  std::vector<std::wstring> parts;
  size_t start = 0;
  while (start < size && buffer[start] != L'\0') {
    const std::wstring_view rest(buffer + start, size - start);
    const size_t end = rest.find(L'\0');
    if (end == std::wstring_view::npos) {
      return {};  // not ended: never read past the buffer
    }
    parts.emplace_back(rest.substr(0, end));
    start += end + 1;
  }
  if (parts.size() <= 1) {
    return parts;
  }
  std::wstring folder = parts.front();
  if (!folder.ends_with(L'\\')) {
    folder += L'\\';
  }
  std::vector<std::wstring> paths;
  for (size_t index = 1; index < parts.size(); ++index) {
    paths.push_back(folder + parts[index]);
  }
  return paths;
}

std::vector<std::wstring> PickFiles(HWND owner) {
  std::wstring buffer(kChoiceBufferChars, L'\0');
  static constexpr wchar_t kFilter[] = L"*.*\0*.*\0";
  OPENFILENAMEW dialog{};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = owner;
  dialog.lpstrFilter = kFilter;
  dialog.lpstrFile = buffer.data();
  dialog.nMaxFile = static_cast<DWORD>(buffer.size());
  // No change of the current folder: nothing here depends on where the program stands.
  dialog.Flags = OFN_EXPLORER | OFN_ALLOWMULTISELECT | OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_NOCHANGEDIR;
  if (GetOpenFileNameW(&dialog) == FALSE) {
    return {};
  }
  return ChosenPaths(buffer.data(), buffer.size());
}

int CALLBACK FolderPicker::Callback(HWND browser, UINT message, LPARAM lParam, LPARAM self) {
  auto* picker = reinterpret_cast<FolderPicker*>(self);
  if (message == BFFM_INITIALIZED && !picker->lastHighlighted_.empty()) {
    (void)SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, reinterpret_cast<LPARAM>(picker->lastHighlighted_.c_str()));
  } else if (message == BFFM_SELCHANGED) {
    wchar_t path[MAX_PATH] = {};
    if (SHGetPathFromIDListW(reinterpret_cast<PCIDLIST_ABSOLUTE>(lParam), path) != FALSE) {
      picker->lastHighlighted_ = path;
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
  PIDLIST_ABSOLUTE chosen = SHBrowseForFolderW(&browse);
  if (chosen == nullptr) {
    return std::nullopt;
  }
  // MAX_PATH is the most SHGetPathFromIDListW ever writes; a longer folder fails whole.
  wchar_t path[MAX_PATH] = {};
  const bool named = SHGetPathFromIDListW(chosen, path) != FALSE;
  CoTaskMemFree(chosen);
  if (!named) {
    return std::nullopt;
  }
  return std::wstring(path);
}

}  // namespace lumenor
