#include "cli/JsonText.h"

namespace lumenor {

std::wstring JsonString(std::wstring_view text) {
  static constexpr wchar_t kHex[] = L"0123456789abcdef";
  std::wstring quoted;
  quoted.reserve(text.size() + 2);
  quoted += L'"';
  for (const wchar_t c : text) {
    switch (c) {
      case L'"':
        quoted += L"\\\"";
        break;
      case L'\\':
        quoted += L"\\\\";
        break;
      case L'\n':
        quoted += L"\\n";
        break;
      case L'\r':
        quoted += L"\\r";
        break;
      case L'\t':
        quoted += L"\\t";
        break;
      default:
        if (c < 0x20) {
          quoted += L"\\u00";
          quoted += kHex[(c >> 4) & 0xF];
          quoted += kHex[c & 0xF];
        } else {
          quoted += c;
        }
    }
  }
  quoted += L'"';
  return quoted;
}

}  // namespace lumenor
