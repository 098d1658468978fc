// What every harness shares: the fuzzer's bytes made into the program's text, and a
// check that stops the run with the input shown when a property fails.
//
// wchar_t is 32 bits wide here and 16 bits on Windows. The harnesses hand the code
// only 16-bit units, as Windows would, and check that whatever text it makes stays
// within them, so what is fuzzed is what ships.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::fuzz {

// The native build keeps the platform's wchar_t (the C++ library's std::wstring is built
// for it); what ships is held to 16 bits by the inputs and the checks below instead.
static_assert(sizeof(wchar_t) == 4, "the harnesses narrow text to 16-bit units themselves");

// The bytes read as UTF-8 where they are (surrogates encoded in three bytes included),
// and each byte that starts no such sequence as the unit of the same value. So a seed
// file is readable text, and every sequence of 16-bit units, lone surrogates too, can
// be reached.
inline std::wstring WideFromFuzzBytes(const uint8_t* data, size_t size) {
  std::wstring text;
  const auto follows = [&](size_t at) { return at < size && (data[at] & 0xC0) == 0x80; };
  size_t index = 0;
  while (index < size) {
    const uint8_t lead = data[index];
    if (lead >= 0xC2 && lead <= 0xDF && follows(index + 1)) {
      text += static_cast<wchar_t>(((lead & 0x1F) << 6) | (data[index + 1] & 0x3F));
      index += 2;
      continue;
    }
    if (lead >= 0xE0 && lead <= 0xEF && follows(index + 1) && follows(index + 2)) {
      const unsigned point = ((lead & 0x0F) << 12) | ((data[index + 1] & 0x3F) << 6) | (data[index + 2] & 0x3F);
      if (point >= 0x800) {
        text += static_cast<wchar_t>(point);
        index += 3;
        continue;
      }
    }
    if (lead >= 0xF0 && lead <= 0xF4 && follows(index + 1) && follows(index + 2) && follows(index + 3)) {
      const unsigned point = ((lead & 0x07) << 18) | ((data[index + 1] & 0x3F) << 12) |
                             ((data[index + 2] & 0x3F) << 6) | (data[index + 3] & 0x3F);
      if (point >= 0x10000 && point <= 0x10FFFF) {
        text += static_cast<wchar_t>(0xD800 + ((point - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        index += 4;
        continue;
      }
    }
    text += static_cast<wchar_t>(lead);
    ++index;
  }
  return text;
}

// The text split at its line ends ("\n"); the last line may be empty.
inline std::vector<std::wstring> Lines(std::wstring_view text) {
  std::vector<std::wstring> lines;
  size_t start = 0;
  for (;;) {
    const size_t end = text.find(L'\n', start);
    lines.emplace_back(text.substr(start, end == std::wstring_view::npos ? end : end - start));
    if (end == std::wstring_view::npos) return lines;
    start = end + 1;
  }
}

// Whether every unit would fit in a Windows wchar_t.
inline bool FitsInSixteenBits(std::wstring_view text) {
  for (const wchar_t c : text) {
    if (c < 0 || c > 0xFFFF) return false;
  }
  return true;
}

// Whether every surrogate stands in a pair.
inline bool SurrogatesPaired(std::wstring_view text) {
  for (size_t index = 0; index < text.size(); ++index) {
    const wchar_t c = text[index];
    if (c >= 0xD800 && c <= 0xDBFF && index + 1 < text.size() && text[index + 1] >= 0xDC00 &&
        text[index + 1] <= 0xDFFF) {
      ++index;
    } else if (c >= 0xD800 && c <= 0xDFFF) {
      return false;
    }
  }
  return true;
}

// Text as a readable line: printable ASCII as it is, anything else as \uXXXX.
inline std::string Shown(std::wstring_view text) {
  std::string shown = "\"";
  for (const wchar_t c : text) {
    if (c >= 0x20 && c < 0x7F && c != L'\\' && c != L'"') {
      shown += static_cast<char>(c);
    } else if (c == L'\\' || c == L'"') {
      shown += '\\';
      shown += static_cast<char>(c);
    } else {
      char escape[16];
      (void)std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
      shown += escape;
    }
  }
  return shown + "\"";
}

[[noreturn]] inline void Fail(const char* property, const std::string& detail) {
  (void)std::fprintf(stderr, "property broken: %s\n  %s\n", property, detail.c_str());
  std::abort();
}

}  // namespace lumenor::fuzz

// Stops the run, input saved by the fuzzer, when `condition` does not hold.
#define FUZZ_REQUIRE(condition, detail)                            \
  do {                                                             \
    if (!(condition)) ::lumenor::fuzz::Fail(#condition, (detail)); \
  } while (false)
