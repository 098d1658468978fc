#include "xml/MessageText.h"

namespace lumenor::xml {

namespace {

constexpr size_t kQuotedBytes = 40;

}  // namespace

std::string Quoted(std::string_view text) {
  if (text.size() <= kQuotedBytes) {
    return std::string(text);
  }
  size_t cut = kQuotedBytes;
  while (cut > 0 && (static_cast<unsigned char>(text[cut]) & 0xC0) == 0x80) {
    --cut;
  }
  return Joined({text.substr(0, cut), "..."});
}

std::string Joined(std::initializer_list<std::string_view> parts) {
  std::string joined;
  for (const std::string_view part : parts) {
    joined += part;
  }
  return joined;
}

}  // namespace lumenor::xml
