// Keys taken out of one section of an ini file. The input: the section's name (first
// line), the keys separated by ';' (second line), then the file. Every line that is not a
// removed key line stays, byte for byte and in order; the lines removed are exactly the
// key lines of that section (decided by a reader written apart) and exactly what
// FindIniKeys finds; removing again changes nothing; removing no keys changes nothing.
#include "fuzz/FuzzInput.h"
#include "rules/IniKeys.h"

#include <algorithm>

namespace {

using lumenor::rules::FindIniKeys;
using lumenor::rules::IniKeyLine;
using lumenor::rules::RemoveIniKeys;

std::string Shown(std::string_view bytes) {
  std::string shown = "\"";
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if (value >= 0x20 && value < 0x7F && value != '\\' && value != '"') {
      shown += byte;
    } else {
      char escape[8];
      (void)std::snprintf(escape, sizeof escape, "\\x%02x", value);
      shown += escape;
    }
  }
  return shown + "\"";
}

char UpperAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool SameAscii(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return UpperAscii(x) == UpperAscii(y); });
}

// Blanks before, blanks and the line's end after.
std::string_view Content(std::string_view line) {
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  const size_t last = line.find_last_not_of(" \t\r\n");
  return last == std::string_view::npos ? std::string_view() : line.substr(0, last + 1);
}

// The lines with their ends.
std::vector<std::string_view> LinesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    lines.push_back(text.substr(0, end == std::string_view::npos ? text.size() : end + 1));
    text.remove_prefix(lines.back().size());
  }
  return lines;
}

struct KeyLine {
  size_t line;
  std::string_view key;
};

// The key lines of the section, read apart from the product.
std::vector<KeyLine> Expected(const std::vector<std::string_view>& lines, std::string_view section,
                              const std::vector<std::string>& keys) {
  std::vector<KeyLine> expected;
  bool inSection = false;
  for (size_t index = 0; index < lines.size(); ++index) {
    std::string_view content = Content(lines[index]);
    if (index == 0 && content.starts_with("\xEF\xBB\xBF")) content = Content(content.substr(3));
    if (content.starts_with('[')) {
      const size_t close = content.find(']');
      inSection = close != std::string_view::npos && SameAscii(Content(content.substr(1, close - 1)), section);
      continue;
    }
    const size_t equals = content.find('=');
    if (!inSection || equals == std::string_view::npos) continue;
    const std::string_view key = Content(content.substr(0, equals));
    if (!key.empty() &&
        std::any_of(keys.begin(), keys.end(), [&](const std::string& one) { return SameAscii(one, key); })) {
      expected.push_back({index, key});
    }
  }
  return expected;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const size_t sectionEnd = input.find('\n');
  if (sectionEnd == std::string_view::npos) return 0;
  const std::string_view section = input.substr(0, sectionEnd);
  input.remove_prefix(sectionEnd + 1);
  const size_t keysEnd = input.find('\n');
  if (keysEnd == std::string_view::npos) return 0;
  std::vector<std::string> keys;
  for (std::string_view list = input.substr(0, keysEnd);;) {
    const size_t semicolon = list.find(';');
    keys.emplace_back(list.substr(0, semicolon));
    if (semicolon == std::string_view::npos) break;
    list.remove_prefix(semicolon + 1);
  }
  const std::string_view text = input.substr(keysEnd + 1);
  const std::string shown = Shown(section) + " " + Shown(input.substr(0, keysEnd)) + " in " + Shown(text);

  const std::vector<std::string_view> lines = LinesOf(text);
  const std::vector<KeyLine> expected = Expected(lines, section, keys);
  const std::vector<IniKeyLine> found = FindIniKeys(text, section, keys);
  const std::string kept = RemoveIniKeys(text, section, keys);

  FUZZ_REQUIRE(found.size() == expected.size(),
               shown + " finds " + std::to_string(found.size()) + " lines, not " + std::to_string(expected.size()));
  std::string expectedKept;
  size_t next = 0;
  for (size_t index = 0; index < lines.size(); ++index) {
    if (next < expected.size() && expected[next].line == index) {
      FUZZ_REQUIRE(found[next].key == expected[next].key && found[next].bytes == lines[index].size(),
                   shown + " line " + std::to_string(index + 1) + " found as " + Shown(found[next].key));
      ++next;
      continue;
    }
    expectedKept += lines[index];
  }
  FUZZ_REQUIRE(kept == expectedKept, shown + " kept " + Shown(kept));

  FUZZ_REQUIRE(RemoveIniKeys(kept, section, keys) == kept, shown + " again from " + Shown(kept));
  FUZZ_REQUIRE(FindIniKeys(kept, section, keys).empty(), shown + " again from " + Shown(kept));
  FUZZ_REQUIRE(RemoveIniKeys(text, section, {}) == text, shown);
  return 0;
}
