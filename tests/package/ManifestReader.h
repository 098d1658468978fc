// Reads the tags of an application manifest, enough to check its settings: manifests
// are small, flat-attributed XML without entities or CDATA.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::testing {

struct ManifestTag {
  std::string name;  // without its namespace prefix
  std::map<std::string, std::string> attributes;
  std::string text;  // the text up to the next tag, trimmed

  std::string Attribute(const std::string& attribute) const;
};

// Every opening or empty tag in document order; comments and declarations are left out.
std::vector<ManifestTag> ReadManifestTags(std::string_view manifest);

// The first tag called `name`, with `attribute` equal to `value` when one is given.
const ManifestTag* FindTag(const std::vector<ManifestTag>& tags, std::string_view name, std::string_view attribute = {},
                           std::string_view value = {});

}  // namespace lumenor::testing
