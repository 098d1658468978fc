// Keys taken out of one section of an ini file, the rest of the file left byte for byte
// as it was: VLC keeps its recent files in keys of its settings file, which must stay.
// Text in, text out; lines keep their own endings, whatever the file's encoding is
// (UTF-8 or a code page: only ASCII section and key names are compared).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::rules {

struct IniKeyLine {
  std::string key;
  uint64_t bytes = 0;  // the whole line's, its ending included
};

// The lines of `section` (letter case aside) whose key is one of `keys` (letter case and
// blanks around it aside), in file order.
std::vector<IniKeyLine> FindIniKeys(std::string_view text, std::string_view section,
                                    const std::vector<std::string>& keys);

// `text` without those lines.
std::string RemoveIniKeys(std::string_view text, std::string_view section, const std::vector<std::string>& keys);

}  // namespace lumenor::rules
