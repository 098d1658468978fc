// UTF-8 and UTF-16 both ways. The input is read twice: as UTF-8 bytes, and as 16-bit
// units (two bytes each, low byte first). Well-formed text goes there and back
// unchanged; anything else gives well-formed text with U+FFFD where it was ill-formed.
#include "base/TextEncoding.h"
#include "fuzz/FuzzInput.h"

namespace {

using lumenor::fuzz::Shown;

// Written apart from the product's decoder on purpose: Table 3-7 of the Unicode
// standard, the well-formed byte sequences.
bool IsWellFormedUtf8(std::string_view bytes) {
  size_t index = 0;
  const auto at = [&](size_t offset) { return static_cast<unsigned char>(bytes[index + offset]); };
  while (index < bytes.size()) {
    const unsigned char lead = at(0);
    size_t length = 1;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead <= 0x7F) {
      length = 1;
    } else if (lead >= 0xC2 && lead <= 0xDF) {
      length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3;
      if (lead == 0xE0) low = 0xA0;
      if (lead == 0xED) high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4;
      if (lead == 0xF0) low = 0x90;
      if (lead == 0xF4) high = 0x8F;
    } else {
      return false;
    }
    if (index + length > bytes.size()) return false;
    for (size_t offset = 1; offset < length; ++offset) {
      const unsigned char first = offset == 1 ? low : 0x80;
      const unsigned char last = offset == 1 ? high : 0xBF;
      if (at(offset) < first || at(offset) > last) return false;
    }
    index += length;
  }
  return true;
}

std::string ShownBytes(std::string_view bytes) {
  std::string shown;
  for (const char byte : bytes) {
    char hex[4];
    (void)std::snprintf(hex, sizeof hex, "%02x", static_cast<unsigned char>(byte));
    shown += hex;
  }
  return shown;
}

void CheckBytes(std::string_view bytes) {
  const std::wstring wide = lumenor::FromUtf8(bytes);
  const std::string again = lumenor::ToUtf8(wide);
  const std::string shown = ShownBytes(bytes) + " -> " + Shown(wide);
  FUZZ_REQUIRE(lumenor::fuzz::FitsInSixteenBits(wide), shown);
  FUZZ_REQUIRE(lumenor::fuzz::SurrogatesPaired(wide), shown);
  FUZZ_REQUIRE(IsWellFormedUtf8(again), shown);
  FUZZ_REQUIRE(lumenor::FromUtf8(again) == wide, shown);
  if (IsWellFormedUtf8(bytes)) {
    FUZZ_REQUIRE(again == bytes, shown);
  } else {
    FUZZ_REQUIRE(wide.find(L'\uFFFD') != std::wstring::npos, shown);
  }
}

void CheckUnits(std::wstring_view units) {
  const std::string bytes = lumenor::ToUtf8(units);
  const std::wstring back = lumenor::FromUtf8(bytes);
  const std::string shown = Shown(units) + " -> " + ShownBytes(bytes);
  FUZZ_REQUIRE(IsWellFormedUtf8(bytes), shown);
  // Each unit comes back, but a surrogate without its partner as U+FFFD.
  std::wstring expected(units);
  for (size_t index = 0; index < expected.size(); ++index) {
    const wchar_t c = expected[index];
    const bool high = c >= 0xD800 && c <= 0xDBFF;
    const bool low = c >= 0xDC00 && c <= 0xDFFF;
    if (high && index + 1 < expected.size() && expected[index + 1] >= 0xDC00 && expected[index + 1] <= 0xDFFF) {
      ++index;
    } else if (high || low) {
      expected[index] = L'\uFFFD';
    }
  }
  FUZZ_REQUIRE(back == expected, shown + " -> " + Shown(back));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  CheckBytes(std::string_view(reinterpret_cast<const char*>(data), size));
  std::wstring units;
  for (size_t index = 0; index + 1 < size; index += 2) {
    units += static_cast<wchar_t>(data[index] | (data[index + 1] << 8));
  }
  CheckUnits(units);
  return 0;
}
