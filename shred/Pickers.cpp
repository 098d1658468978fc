#include "shred/Pickers.h"

#include <commdlg.h>

#include <string_view>

namespace lumenor {

namespace {

// Room for thousands of names: a path-sized buffer would hold one or two.
constexpr size_t kChoiceBufferChars = size_t{256} * 1024;

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

}  // namespace lumenor
