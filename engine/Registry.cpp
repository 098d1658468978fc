#include "engine/Registry.h"

#include <algorithm>
#include <vector>

namespace lumenor {

namespace {

constexpr DWORD kMaxTextBytes = 65536 * sizeof(wchar_t);

}  // namespace

UniqueKey OpenKey(HKEY root, std::wstring_view path, REGSAM access, LONG* result, REGSAM view) {
  HKEY key = nullptr;
  const std::wstring subKey(path);
  const LONG opened = RegOpenKeyExW(root, subKey.c_str(), REG_OPTION_OPEN_LINK, access | view, &key);
  if (result != nullptr) {
    *result = opened;
  }
  if (opened != ERROR_SUCCESS) {
    return UniqueKey();
  }
  return UniqueKey(key);
}

bool IsLinkKey(HKEY key) {
  DWORD type = REG_NONE;
  return RegQueryValueExW(key, L"SymbolicLinkValue", nullptr, &type, nullptr, nullptr) == ERROR_SUCCESS &&
         type == REG_LINK;
}

std::optional<std::wstring> ReadRegistryText(HKEY root, std::wstring_view path, std::wstring_view name) {
  // Reading follows links like any other reader would; only the walks that delete refuse them.
  HKEY opened = nullptr;
  if (RegOpenKeyExW(root, std::wstring(path).c_str(), 0, KEY_READ | kRegistryView, &opened) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  const UniqueKey key(opened);
  const std::wstring valueName(name);
  DWORD type = REG_NONE;
  DWORD size = 0;
  if (RegQueryValueExW(key.Get(), valueName.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
      (type != REG_SZ && type != REG_EXPAND_SZ && type != REG_MULTI_SZ) || size == 0 || size > kMaxTextBytes) {
    return std::nullopt;
  }
  // The stored text need not end with a terminator, nor have an even size.
  std::vector<wchar_t> buffer(size / sizeof(wchar_t) + 2, L'\0');
  DWORD read = static_cast<DWORD>((buffer.size() - 1) * sizeof(wchar_t));
  if (RegQueryValueExW(key.Get(), valueName.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &read) !=
          ERROR_SUCCESS ||
      (type != REG_SZ && type != REG_EXPAND_SZ && type != REG_MULTI_SZ)) {
    return std::nullopt;
  }
  const size_t characters = std::min<size_t>(read / sizeof(wchar_t), buffer.size() - 1);
  std::wstring text(buffer.data(), characters);
  const size_t end = text.find(L'\0');
  if (end != std::wstring::npos) {
    text.resize(end);
  }
  if (text.empty()) {
    return std::nullopt;
  }
  return text;
}

}  // namespace lumenor
