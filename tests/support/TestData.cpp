#include "tests/support/TestData.h"

#include <windows.h>

namespace lumenor::testing {

std::string LoadTestData(int resourceId) {
  HMODULE module = GetModuleHandleW(nullptr);
  HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(resourceId), MAKEINTRESOURCEW(10));  // RT_RCDATA
  if (found == nullptr) {
    return {};
  }
  HGLOBAL loaded = LoadResource(module, found);
  const void* bytes = loaded != nullptr ? LockResource(loaded) : nullptr;
  if (bytes == nullptr) {
    return {};
  }
  return std::string(static_cast<const char*>(bytes), SizeofResource(module, found));
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') {
      line.remove_suffix(1);
    }
    lines.emplace_back(line);
    if (end == std::string_view::npos) {
      break;
    }
    text.remove_prefix(end + 1);
  }
  return lines;
}

std::vector<std::string> SplitTabs(std::string_view line) {
  std::vector<std::string> fields;
  for (;;) {
    const size_t tab = line.find('\t');
    fields.emplace_back(line.substr(0, tab));
    if (tab == std::string_view::npos) {
      return fields;
    }
    line.remove_prefix(tab + 1);
  }
}

}  // namespace lumenor::testing
