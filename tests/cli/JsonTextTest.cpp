// JSON text for scripts: a file name printed must name exactly that file again.
#include "cli/JsonText.h"

#include "base/TextEncoding.h"

#include <gtest/gtest.h>

#include <string>

namespace lumenor {
namespace {

TEST(JsonText, ALoneSurrogateIsWrittenAsItsEscapeSoTheNameSurvives) {
  const std::wstring lowAlone{L'a', static_cast<wchar_t>(0xDC00), L'b'};
  const std::wstring highAlone{static_cast<wchar_t>(0xD83D), L'.', L't'};
  const std::wstring highAtEnd{L'x', static_cast<wchar_t>(0xDBFF)};
  EXPECT_EQ(JsonString(lowAlone), L"\"a\\udc00b\"");
  EXPECT_EQ(JsonString(highAlone), L"\"\\ud83d.t\"");
  EXPECT_EQ(JsonString(highAtEnd), L"\"x\\udbff\"");
  EXPECT_EQ(ToUtf8(JsonString(lowAlone)), "\"a\\udc00b\"") << "nothing left for UTF-8 to replace";
}

TEST(JsonText, PairsAndOrdinaryTextStayAsTheyAreAndControlsAreEscaped) {
  const std::wstring smiley{static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
  EXPECT_EQ(JsonString(smiley), L"\"" + smiley + L"\"");
  EXPECT_EQ(JsonString(L"C:\\x\\\"q\"\n\t\x01"), L"\"C:\\\\x\\\\\\\"q\\\"\\n\\t\\u0001\"");
  EXPECT_EQ(JsonString(L"\u00E9t\u00E9"), L"\"\u00E9t\u00E9\"");
}

}  // namespace
}  // namespace lumenor
