#include "tests/package/ManifestReader.h"

#include <algorithm>

namespace lumenor::testing {

namespace {

constexpr std::string_view kSpace = " \t\r\n";

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(kSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

// `name="value"` pairs of one tag's inside, after its name.
std::map<std::string, std::string> AttributesOf(std::string_view inside) {
  std::map<std::string, std::string> attributes;
  for (;;) {
    const size_t equals = inside.find('=');
    const size_t open = inside.find('"', equals == std::string_view::npos ? inside.size() : equals);
    const size_t close = open == std::string_view::npos ? open : inside.find('"', open + 1);
    if (close == std::string_view::npos) return attributes;
    attributes[std::string(Trimmed(inside.substr(0, equals)))] = std::string(inside.substr(open + 1, close - open - 1));
    inside.remove_prefix(close + 1);
  }
}

}  // namespace

std::string ManifestTag::Attribute(const std::string& attribute) const {
  const auto found = attributes.find(attribute);
  return found != attributes.end() ? found->second : std::string();
}

std::vector<ManifestTag> ReadManifestTags(std::string_view manifest) {
  std::vector<ManifestTag> tags;
  size_t at = 0;
  while ((at = manifest.find('<', at)) != std::string_view::npos) {
    if (manifest.substr(at, 4) == "<!--") {
      const size_t end = manifest.find("-->", at);
      if (end == std::string_view::npos) break;
      at = end + 3;
      continue;
    }
    const size_t end = manifest.find('>', at);
    if (end == std::string_view::npos) break;
    std::string_view inside = manifest.substr(at + 1, end - at - 1);
    at = end + 1;
    if (inside.empty() || inside[0] == '/' || inside[0] == '?' || inside[0] == '!') continue;
    if (inside.back() == '/') inside.remove_suffix(1);

    ManifestTag tag;
    const size_t nameEnd = std::min(inside.find_first_of(kSpace), inside.size());
    std::string_view name = inside.substr(0, nameEnd);
    const size_t colon = name.find(':');
    tag.name = std::string(colon == std::string_view::npos ? name : name.substr(colon + 1));
    tag.attributes = AttributesOf(inside.substr(nameEnd));
    tag.text = std::string(Trimmed(manifest.substr(at, manifest.find('<', at) - at)));
    tags.push_back(std::move(tag));
  }
  return tags;
}

const ManifestTag* FindTag(const std::vector<ManifestTag>& tags, std::string_view name, std::string_view attribute,
                           std::string_view value) {
  for (const ManifestTag& tag : tags) {
    if (tag.name != name) continue;
    if (attribute.empty() || tag.Attribute(std::string(attribute)) == value) return &tag;
  }
  return nullptr;
}

}  // namespace lumenor::testing
