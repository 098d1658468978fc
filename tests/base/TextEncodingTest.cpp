// UTF-8 and UTF-16 without the system: well-formed text converts exactly as the system's
// own conversions do, and text that is not well formed gives U+FFFD where it breaks.
#include "base/TextEncoding.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace lumenor {
namespace {

std::string SystemUtf8(const std::wstring& text) {
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(), length, nullptr, nullptr);
  return bytes;
}

std::wstring SystemWide(const std::string& bytes) {
  const int length = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
  std::wstring text(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(), length);
  return text;
}

std::wstring Units(std::initializer_list<unsigned> units) {
  std::wstring text;
  for (const unsigned unit : units) text += static_cast<wchar_t>(unit);
  return text;
}

TEST(TextEncoding, EveryCharacterConvertsAsTheSystemConvertsIt) {
  // Every character of the basic plane but the surrogates, then every 97th beyond it.
  std::wstring text;
  for (unsigned point = 1; point <= 0xFFFF; ++point) {
    if (point < 0xD800 || point > 0xDFFF) text += static_cast<wchar_t>(point);
  }
  for (unsigned point = 0x10000; point <= 0x10FFFF; point += 97) {
    text += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
    text += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
  }
  text += Units({0xDBFF, 0xDFFF});  // U+10FFFF
  const std::string bytes = ToUtf8(text);
  EXPECT_EQ(bytes, SystemUtf8(text));
  EXPECT_EQ(FromUtf8(bytes), text);
  EXPECT_EQ(FromUtf8(bytes), SystemWide(bytes));
  EXPECT_EQ(ToUtf8(L""), "");
  EXPECT_EQ(FromUtf8(""), L"");
}

TEST(TextEncoding, ASurrogateWithoutItsPartnerBecomesTheReplacementCharacter) {
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(ToUtf8(Units({'a', 0xD800, 'b'})), "a" + replacement + "b");
  EXPECT_EQ(ToUtf8(Units({'a', 0xDC00})), "a" + replacement);
  EXPECT_EQ(ToUtf8(Units({0xDC00, 0xD800})), replacement + replacement) << "a pair in the wrong order is none";
  EXPECT_EQ(ToUtf8(Units({0xD83C, 0xDFB5})), "\xF0\x9F\x8E\xB5");
}

TEST(TextEncoding, EachIllFormedPartOfUtf8BecomesOneReplacementCharacter) {
  const struct {
    std::string bytes;
    std::wstring text;
  } cases[] = {
      {"\xC0\xAF", L"\uFFFD\uFFFD"},                      // overlong "/"
      {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},            // overlong, three bytes
      {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},            // an encoded surrogate
      {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // above U+10FFFF
      {"\xE2\x82", L"\uFFFD"},                            // cut at the end
      {"\xE2\x82"
       "A",
       L"\uFFFDA"},  // cut before another character
      {"\xF0\x9F\x8E", L"\uFFFD"},
      {"a\xFF"
       "b\x80",
       L"a\uFFFDb\uFFFD"},
  };
  for (const auto& [bytes, text] : cases) {
    EXPECT_EQ(FromUtf8(bytes), text) << ::testing::PrintToString(bytes);
  }
}

}  // namespace
}  // namespace lumenor
