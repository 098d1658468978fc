#include "update/UpdateDescription.h"

#include "base/AsciiText.h"
#include "base/TextEncoding.h"

#include <array>

namespace lumenor {

namespace {

constexpr int kMalformed = -21;

// Up to four parts into `places`; false when a part is empty or holds anything but digits.
bool ReadVersion(std::wstring_view text, std::array<unsigned long long, 4>& places) {
  places.fill(0);
  size_t place = 0;
  size_t start = 0;
  for (;;) {
    const size_t dot = text.find(L'.', start);
    const std::wstring_view part = text.substr(start, dot == std::wstring_view::npos ? dot : dot - start);
    if (part.empty()) return false;
    unsigned long long value = 0;
    for (const wchar_t digit : part) {
      if (digit < L'0' || digit > L'9') return false;
      // A part too large for any version is as good as malformed.
      if (value > 1000000000ULL) return false;
      value = value * 10 + static_cast<unsigned>(digit - L'0');
    }
    if (place < places.size()) places[place++] = value;
    if (dot == std::wstring_view::npos) return true;
    start = dot + 1;
  }
}

// The blanks of a text file, the line ends among them; the same on every system.
bool IsBlank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }

std::wstring_view Trimmed(std::wstring_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

int CompareVersions(std::wstring_view a, std::wstring_view b) {
  std::array<unsigned long long, 4> first{};
  std::array<unsigned long long, 4> second{};
  if (!ReadVersion(a, first) || !ReadVersion(b, second)) return kMalformed;
  for (size_t place = 0; place < first.size(); ++place) {
    if (first[place] > second[place]) return 1;
    if (first[place] < second[place]) return -1;
  }
  return 0;
}

std::wstring IniValue(std::string_view text, std::wstring_view section, std::wstring_view key,
                      std::wstring_view fallback) {
  if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
  const std::wstring wide = FromUtf8(text);
  bool inSection = false;
  size_t start = 0;
  while (start <= wide.size()) {
    const size_t end = wide.find(L'\n', start);
    const std::wstring_view line =
        Trimmed(std::wstring_view(wide).substr(start, end == std::wstring::npos ? end : end - start));
    start = end == std::wstring::npos ? wide.size() + 1 : end + 1;
    if (line.size() >= 2 && line.front() == L'[' && line.back() == L']') {
      inSection = SameAsciiTextIgnoringCase(Trimmed(line.substr(1, line.size() - 2)), section);
      continue;
    }
    const size_t equals = line.find(L'=');
    if (!inSection || equals == std::wstring_view::npos ||
        !SameAsciiTextIgnoringCase(Trimmed(line.substr(0, equals)), key)) {
      continue;
    }
    // Kept whole however long: a value cut down could read as another version.
    return std::wstring(Trimmed(line.substr(equals + 1)));
  }
  return std::wstring(fallback);
}

}  // namespace lumenor
