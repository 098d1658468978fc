#include "base/TextEncoding.h"

#include <type_traits>

namespace lumenor {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

// A unit read as such whatever the width of wchar_t: where it is wider than 16 bits, a
// value beyond 0xFFFF is no unit Windows could hold.
char32_t UnitOf(wchar_t c) { return static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(c)); }

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendUtf8(std::string& out, char32_t point) {
  if (point < 0x80) {
    out += static_cast<char>(point);
  } else if (point < 0x800) {
    out += static_cast<char>(0xC0 | (point >> 6));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    out += static_cast<char>(0xE0 | (point >> 12));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (point >> 18));
    out += static_cast<char>(0x80 | ((point >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((point >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (point & 0x3F));
  }
}

void AppendUtf16(std::wstring& out, char32_t point) {
  if (point < 0x10000) {
    out += static_cast<wchar_t>(point);
    return;
  }
  point -= 0x10000;
  out += static_cast<wchar_t>(0xD800 + (point >> 10));
  out += static_cast<wchar_t>(0xDC00 + (point & 0x3FF));
}

// How many bytes follow a lead byte, and the range the first of them must lie in (the
// later ones lie in 80..BF): what keeps out overlong forms, surrogates and points above
// U+10FFFF. Zero for a byte that starts nothing.
struct LeadByte {
  int following = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
};

LeadByte ReadLead(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, 0x80, 0xBF};
  if (byte == 0xE0) return {2, 0xA0, 0xBF};
  if (byte == 0xED) return {2, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {2, 0x80, 0xBF};
  if (byte == 0xF0) return {3, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {3, 0x80, 0xBF};
  if (byte == 0xF4) return {3, 0x80, 0x8F};
  return {};
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
  std::string result;
  result.reserve(text.size());
  for (size_t index = 0; index < text.size(); ++index) {
    const char32_t unit = UnitOf(text[index]);
    if (unit > 0xFFFF || IsLowSurrogate(unit)) {
      AppendUtf8(result, kReplacement);
    } else if (IsHighSurrogate(unit)) {
      const char32_t next = index + 1 < text.size() ? UnitOf(text[index + 1]) : 0;
      if (IsLowSurrogate(next)) {
        AppendUtf8(result, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
        ++index;
      } else {
        AppendUtf8(result, kReplacement);
      }
    } else {
      AppendUtf8(result, unit);
    }
  }
  return result;
}

std::wstring FromUtf8(std::string_view text) {
  std::wstring result;
  result.reserve(text.size());
  size_t index = 0;
  while (index < text.size()) {
    const auto lead = static_cast<unsigned char>(text[index++]);
    if (lead < 0x80) {
      result += static_cast<wchar_t>(lead);
      continue;
    }
    const LeadByte form = ReadLead(lead);
    if (form.following == 0) {
      result += static_cast<wchar_t>(kReplacement);
      continue;
    }
    char32_t point = lead & (0x3F >> form.following);
    int read = 0;
    while (read < form.following && index < text.size()) {
      const auto byte = static_cast<unsigned char>(text[index]);
      const unsigned char low = read == 0 ? form.low : 0x80;
      const unsigned char high = read == 0 ? form.high : 0xBF;
      if (byte < low || byte > high) break;  // this byte starts what comes next
      point = (point << 6) | (byte & 0x3F);
      ++index;
      ++read;
    }
    AppendUtf16(result, read == form.following ? point : kReplacement);
  }
  return result;
}

}  // namespace lumenor
