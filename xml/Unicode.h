// The character rules the XML reader and writer share: UTF-8 decoding with validation,
// UTF-8 encoding, UTF-16 to UTF-8, and which characters XML allows in names and text.
// Works on code points in char32_t, so the size of wchar_t never matters here.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lumenor::xml {

// One character decoded from UTF-8. `length` is 0 when the bytes at that place are not
// valid UTF-8: a stray continuation byte, a truncated or overlong sequence, a surrogate
// or a value above U+10FFFF.
struct DecodedCharacter {
  char32_t codePoint = 0;
  size_t length = 0;
};
DecodedCharacter DecodeUtf8(std::string_view text, size_t position);

void AppendUtf8(std::string& out, char32_t codePoint);

// UTF-16 without its byte order mark to UTF-8. On failure (an odd byte count, an
// unpaired surrogate), `failedAt` is the byte offset in `bytes` where the bad unit
// starts and `text` holds what was converted before it.
struct Utf16Conversion {
  std::string text;
  bool ok = true;
  size_t failedAt = 0;
};
Utf16Conversion Utf16ToUtf8(std::string_view bytes, bool bigEndian);

// A character XML 1.0 allows to stand in a document as itself: tab, line feed, carriage
// return and everything from U+0020 on, less the surrogates, U+FFFE and U+FFFF.
bool IsDocumentCharacter(char32_t codePoint);

// A character a numeric reference may name: anything but U+0000, the surrogates and what
// lies beyond U+10FFFF. Wider than the above, so a control character a program put in a
// text can be written as a reference and read back.
bool IsReferenceableCharacter(char32_t codePoint);

bool IsNameStartCharacter(char32_t codePoint);
bool IsNameCharacter(char32_t codePoint);

// Whether `name` is an XML name (valid UTF-8, a name start character, name characters).
bool IsXmlName(std::string_view name);

// XML's blanks: space, tab, line feed, carriage return.
inline bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

}  // namespace lumenor::xml
