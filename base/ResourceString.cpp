#include "base/ResourceString.h"

#include <windows.h>

namespace lumenor {

std::wstring LoadResourceString(unsigned id) {
  // With a zero buffer size LoadStringW hands back a pointer into the resource itself,
  // so the text comes out whole whatever its length.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(GetModuleHandleW(nullptr), id, reinterpret_cast<LPWSTR>(&text), 0);
  if (length <= 0 || text == nullptr) {
    return {};
  }
  return std::wstring(text, static_cast<size_t>(length));
}

}  // namespace lumenor
