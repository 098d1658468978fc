#include "cli/CliOptions.h"

#include <cwctype>

namespace lumenor {

namespace {

// "104,132,..." into ids; false for anything that is not a list of whole numbers.
bool ParseIdList(const std::wstring& text, std::vector<unsigned>& ids) {
  size_t start = 0;
  while (start <= text.size()) {
    const size_t comma = text.find(L',', start);
    const std::wstring part = text.substr(start, comma == std::wstring::npos ? std::wstring::npos : comma - start);
    if (part.empty() || part.size() > 9) {
      return false;
    }
    unsigned id = 0;
    for (const wchar_t c : part) {
      if (!std::iswdigit(c)) {
        return false;
      }
      id = id * 10 + static_cast<unsigned>(c - L'0');
    }
    ids.push_back(id);
    if (comma == std::wstring::npos) {
      return true;
    }
    start = comma + 1;
  }
  return false;
}

}  // namespace

std::optional<TraceCommandOptions> ParseTraceCommandOptions(const std::vector<std::wstring>& arguments,
                                                            std::wstring& problem) {
  TraceCommandOptions options;
  bool selectionGiven = false;
  const auto select = [&](SelectionSource source, const std::wstring& argument) {
    if (selectionGiven) {
      problem = L"more than one selection: " + argument;
      return false;
    }
    selectionGiven = true;
    options.source = source;
    return true;
  };
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::wstring& argument = arguments[i];
    if (argument == L"--json") {
      options.json = true;
    } else if (argument == L"--recent") {
      if (!select(SelectionSource::kRecent, argument)) return std::nullopt;
    } else if (argument == L"--default") {
      if (!select(SelectionSource::kDefault, argument)) return std::nullopt;
    } else if (argument == L"--one-click") {
      if (!select(SelectionSource::kOneClick, argument)) return std::nullopt;
    } else if (argument == L"--all") {
      if (!select(SelectionSource::kAll, argument)) return std::nullopt;
    } else if (argument == L"--community") {
      if (!select(SelectionSource::kCommunity, argument)) return std::nullopt;
    } else if (argument == L"--items") {
      if (!select(SelectionSource::kItems, argument)) return std::nullopt;
      if (i + 1 >= arguments.size()) {
        problem = L"--items needs a list of item ids, such as --items 104,132";
        return std::nullopt;
      }
      if (!ParseIdList(arguments[++i], options.items)) {
        problem = L"bad item list: " + arguments[i];
        return std::nullopt;
      }
    } else {
      problem = L"unexpected argument: " + argument;
      return std::nullopt;
    }
  }
  return options;
}

}  // namespace lumenor
