#include "cli/JsonText.h"

namespace lumenor {

std::wstring JsonString(std::wstring_view text) {
  static constexpr wchar_t kHex[] = L"0123456789abcdef";
  std::wstring quoted;
  quoted.reserve(text.size() + 2);
  quoted += L'"';
  const auto escape = [&quoted](unsigned unit) {
    quoted += L"\\u";
    for (int shift = 12; shift >= 0; shift -= 4) quoted += kHex[(unit >> shift) & 0xF];
  };
  for (size_t index = 0; index < text.size(); ++index) {
    const wchar_t c = text[index];
    const unsigned unit = static_cast<unsigned>(c) & 0xFFFF;
    if (unit >= 0xD800 && unit <= 0xDFFF) {
      // A file name may hold a surrogate without its partner; as UTF-8 it would become
      // U+FFFD and name another file, so it is written as its escape.
      const bool pairStart =
          unit <= 0xDBFF && index + 1 < text.size() && (static_cast<unsigned>(text[index + 1]) & 0xFC00) == 0xDC00;
      if (!pairStart) {
        escape(unit);
        continue;
      }
      quoted += c;
      quoted += text[++index];
      continue;
    }
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
          escape(unit);
        } else {
          quoted += c;
        }
    }
  }
  quoted += L'"';
  return quoted;
}

}  // namespace lumenor
