#include "rules/IniKeys.h"

#include <algorithm>

namespace lumenor::rules {

namespace {

char FoldAscii(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool SameAscii(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return FoldAscii(x) == FoldAscii(y); });
}

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r' || text.back() == '\n')) {
    text.remove_suffix(1);
  }
  return text;
}

// Calls `line` for every line with its ending, and whether it is one of the keys asked for.
template <typename Line>
void EachLine(std::string_view text, std::string_view section, const std::vector<std::string>& keys, Line&& line) {
  bool inSection = false;
  bool first = true;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    const std::string_view whole = text.substr(0, end == std::string_view::npos ? text.size() : end + 1);
    text.remove_prefix(whole.size());
    std::string_view content = Trimmed(whole);
    if (first && content.substr(0, 3) == "\xEF\xBB\xBF") content = Trimmed(content.substr(3));
    first = false;
    if (!content.empty() && content.front() == '[') {
      const size_t close = content.find(']');
      inSection = close != std::string_view::npos && SameAscii(Trimmed(content.substr(1, close - 1)), section);
      line(whole, std::string_view());
      continue;
    }
    const size_t equals = content.find('=');
    const std::string_view key =
        equals == std::string_view::npos ? std::string_view() : Trimmed(content.substr(0, equals));
    const bool wanted = inSection && !key.empty() && std::any_of(keys.begin(), keys.end(), [&](const std::string& one) {
                          return SameAscii(one, key);
                        });
    line(whole, wanted ? key : std::string_view());
  }
}

}  // namespace

std::vector<IniKeyLine> FindIniKeys(std::string_view text, std::string_view section,
                                    const std::vector<std::string>& keys) {
  std::vector<IniKeyLine> found;
  EachLine(text, section, keys, [&](std::string_view whole, std::string_view key) {
    if (!key.empty()) found.push_back({std::string(key), whole.size()});
  });
  return found;
}

std::string RemoveIniKeys(std::string_view text, std::string_view section, const std::vector<std::string>& keys) {
  std::string kept;
  kept.reserve(text.size());
  EachLine(text, section, keys, [&](std::string_view whole, std::string_view key) {
    if (key.empty()) kept.append(whole);
  });
  return kept;
}

}  // namespace lumenor::rules
