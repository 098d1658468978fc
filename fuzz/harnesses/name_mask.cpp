// The rule files' name masks: a mask (the first line) against a name (the second). The
// answer is that of a matcher written apart (the whole name, ASCII letter case aside, `*`
// any run, `?` one unit, "*.*" every name); a mask without wildcards matches only its own
// name; "*" and "*.*" match every name; the answer depends on the two texts alone, their
// ASCII case aside; and even the longest inputs take no more than quadratic time.
#include "fuzz/FuzzInput.h"
#include "rules/NameMask.h"

#include <algorithm>
#include <chrono>

namespace {

using lumenor::fuzz::Shown;
using lumenor::rules::MaskMatches;

// Longer than any file or folder name; the quadratic worst case stays far below the bound.
constexpr size_t kMaxUnits = 1024;
constexpr auto kSlowest = std::chrono::milliseconds(500);

wchar_t UpperAscii(wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c; }
wchar_t LowerAscii(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

std::wstring Mapped(std::wstring_view text, wchar_t (*map)(wchar_t)) {
  std::wstring mapped(text);
  std::transform(mapped.begin(), mapped.end(), mapped.begin(), map);
  return mapped;
}

bool SameAsciiText(std::wstring_view a, std::wstring_view b) { return Mapped(a, UpperAscii) == Mapped(b, UpperAscii); }

// Dynamic programming over the mask's and the name's prefixes: slow and plain.
bool Reference(std::wstring_view mask, std::wstring_view name) {
  if (mask == L"*.*") return true;
  // matches[j]: the mask's first i units match the name's first j.
  std::vector<char> matches(name.size() + 1, 0);
  matches[0] = 1;
  for (const wchar_t m : mask) {
    std::vector<char> next(name.size() + 1, 0);
    if (m == L'*') {
      char any = 0;
      for (size_t j = 0; j <= name.size(); ++j) {
        any = static_cast<char>(any || matches[j]);
        next[j] = any;
      }
    } else {
      for (size_t j = 1; j <= name.size(); ++j) {
        next[j] = static_cast<char>(matches[j - 1] && (m == L'?' || UpperAscii(m) == UpperAscii(name[j - 1])));
      }
    }
    matches = std::move(next);
  }
  return matches[name.size()] != 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::vector<std::wstring> lines = lumenor::fuzz::Lines(lumenor::fuzz::WideFromFuzzBytes(data, size));
  const std::wstring& mask = lines[0];
  const std::wstring name = lines.size() > 1 ? lines[1] : std::wstring();
  if (mask.size() > kMaxUnits || name.size() > kMaxUnits) return 0;
  const std::string shown = Shown(mask) + " against " + Shown(name);

  const auto started = std::chrono::steady_clock::now();
  const bool matches = MaskMatches(mask, name);
  const auto took = std::chrono::steady_clock::now() - started;
  FUZZ_REQUIRE(
      took < kSlowest,
      shown + " took " + std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(took).count()) + " ms");

  FUZZ_REQUIRE(matches == Reference(mask, name), shown + (matches ? " matches" : " does not match"));
  if (!lumenor::rules::HasWildcard(mask)) FUZZ_REQUIRE(matches == SameAsciiText(mask, name), shown);
  FUZZ_REQUIRE(MaskMatches(L"*", name) && MaskMatches(L"*.*", name), shown);
  FUZZ_REQUIRE(MaskMatches(mask, mask) || lumenor::rules::HasWildcard(mask), shown);
  if (lumenor::rules::MatchesEveryName(mask)) FUZZ_REQUIRE(matches, shown);

  // The same answer for copies elsewhere in memory, and in either ASCII case.
  const std::wstring maskCopy = mask;
  const std::wstring nameCopy = name;
  FUZZ_REQUIRE(MaskMatches(maskCopy, nameCopy) == matches, shown);
  FUZZ_REQUIRE(MaskMatches(Mapped(mask, UpperAscii), Mapped(name, LowerAscii)) == matches, shown);
  FUZZ_REQUIRE(MaskMatches(Mapped(mask, LowerAscii), Mapped(name, UpperAscii)) == matches, shown);
  return 0;
}
