// JSON string literals of --json: any text, lone surrogates included, comes back whole
// from a JSON reader, and the literal itself survives UTF-8 unchanged.
#include "base/TextEncoding.h"
#include "cli/JsonText.h"
#include "fuzz/FuzzInput.h"

#include <optional>

namespace {

int HexValue(wchar_t c) {
  if (c >= L'0' && c <= L'9') return c - L'0';
  if (c >= L'a' && c <= L'f') return c - L'a' + 10;
  if (c >= L'A' && c <= L'F') return c - L'A' + 10;
  return -1;
}

// A JSON reader's view of one string literal (RFC 8259): nothing when it is none.
std::optional<std::wstring> ReadJsonString(std::wstring_view literal) {
  if (literal.size() < 2 || literal.front() != L'"' || literal.back() != L'"') return std::nullopt;
  std::wstring text;
  for (size_t index = 1; index + 1 < literal.size(); ++index) {
    const wchar_t c = literal[index];
    if (c == L'"' || c < 0x20) return std::nullopt;
    if (c != L'\\') {
      text += c;
      continue;
    }
    if (++index + 1 >= literal.size()) return std::nullopt;
    switch (literal[index]) {
      case L'"':
        text += L'"';
        break;
      case L'\\':
        text += L'\\';
        break;
      case L'/':
        text += L'/';
        break;
      case L'b':
        text += L'\b';
        break;
      case L'f':
        text += L'\f';
        break;
      case L'n':
        text += L'\n';
        break;
      case L'r':
        text += L'\r';
        break;
      case L't':
        text += L'\t';
        break;
      case L'u': {
        if (index + 5 >= literal.size()) return std::nullopt;
        int unit = 0;
        for (size_t digit = 1; digit <= 4; ++digit) {
          const int value = HexValue(literal[index + digit]);
          if (value < 0) return std::nullopt;
          unit = unit * 16 + value;
        }
        text += static_cast<wchar_t>(unit);
        index += 4;
        break;
      }
      default:
        return std::nullopt;
    }
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using lumenor::fuzz::Shown;
  const std::wstring text = lumenor::fuzz::WideFromFuzzBytes(data, size);
  const std::wstring literal = lumenor::JsonString(text);
  const std::string shown = Shown(text) + " -> " + Shown(literal);
  FUZZ_REQUIRE(lumenor::fuzz::FitsInSixteenBits(literal), shown);
  FUZZ_REQUIRE(lumenor::fuzz::SurrogatesPaired(literal), shown);
  FUZZ_REQUIRE(ReadJsonString(literal) == text, shown);
  FUZZ_REQUIRE(lumenor::FromUtf8(lumenor::ToUtf8(literal)) == literal, shown);
  return 0;
}
