#include "cli/CliOptions.h"

#include "base/AsciiText.h"
#include "engine/CanonicalFolder.h"
#include "junk/JunkCatalogue.h"

#include <cstdint>

namespace lumenor {

namespace {

bool IsAsciiDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// "104,132,..." into ids; false for anything that is not a list of whole numbers written
// in ASCII digits (the C runtime's wide digit test would also take "²" and "¹"), or a
// number no id reaches. The ids of rule items run up to ten digits.
bool ParseIdList(const std::wstring& text, std::vector<unsigned>& ids) {
  constexpr uint64_t kLargestId = 0xFFFFFFFFu;
  size_t start = 0;
  while (start <= text.size()) {
    const size_t comma = text.find(L',', start);
    const std::wstring part = text.substr(start, comma == std::wstring::npos ? std::wstring::npos : comma - start);
    if (part.empty() || part.size() > 10) {
      return false;
    }
    uint64_t id = 0;
    for (const wchar_t c : part) {
      if (!IsAsciiDigit(c)) {
        return false;
      }
      id = id * 10 + static_cast<uint64_t>(c - L'0');
    }
    if (id > kLargestId) {
      return false;
    }
    ids.push_back(static_cast<unsigned>(id));
    if (comma == std::wstring::npos) {
      return true;
    }
    start = comma + 1;
  }
  return false;
}

std::optional<ShredMethod> MethodNamed(std::wstring_view name) {
  if (name == L"quick") return ShredMethod::kQuick;
  if (name == L"safe") return ShredMethod::kSafe;
  if (name == L"thorough") return ShredMethod::kThorough;
  return std::nullopt;
}

// "default", "all", or catalogue masks separated by commas, in any letter case. The
// catalogue's masks are ASCII and lower case; a letter outside ASCII names none of them.
bool ParseMasks(const std::wstring& text, std::vector<std::wstring>& masks, std::wstring& problem) {
  if (text == L"default") {
    masks = DefaultJunkMasks();
    return true;
  }
  if (text == L"all") {
    masks = AllJunkMasks();
    return true;
  }
  size_t start = 0;
  for (;;) {
    const size_t comma = text.find(L',', start);
    std::wstring mask = text.substr(start, comma == std::wstring::npos ? std::wstring::npos : comma - start);
    for (wchar_t& c : mask) c = AsciiLower(c);
    if (!IsCatalogueMask(mask)) {
      problem = L"unknown junk mask: \"" + mask + L"\" (masks are those of the junk catalogue, such as *.tmp)";
      return false;
    }
    masks.push_back(std::move(mask));
    if (comma == std::wstring::npos) {
      return true;
    }
    start = comma + 1;
  }
}

// "a relative path", "an invalid path".
std::wstring WithArticle(std::wstring_view reason) {
  const bool vowel = !reason.empty() && std::wstring_view(L"aeiou").find(reason.front()) != std::wstring_view::npos;
  return (vowel ? L"an " : L"a ") + std::wstring(reason);
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

std::optional<ShredCommandOptions> ParseShredCommandOptions(const std::vector<std::wstring>& arguments,
                                                            std::wstring& problem) {
  ShredCommandOptions options;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::wstring& argument = arguments[i];
    if (argument == L"--json") {
      options.json = true;
    } else if (argument == L"--method") {
      const std::optional<ShredMethod> method = i + 1 < arguments.size() ? MethodNamed(arguments[i + 1]) : std::nullopt;
      if (!method) {
        problem = i + 1 < arguments.size() ? L"unknown method: " + arguments[i + 1]
                                           : L"--method needs quick, safe or thorough";
        return std::nullopt;
      }
      options.method = *method;
      ++i;
    } else if (argument.starts_with(L"--")) {
      problem = L"unexpected argument: " + argument;
      return std::nullopt;
    } else {
      options.paths.push_back(argument);
    }
  }
  if (options.paths.empty()) {
    problem = L"shred needs at least one file or folder";
    return std::nullopt;
  }
  return options;
}

std::optional<JunkCommandOptions> ParseJunkCommandOptions(const std::vector<std::wstring>& arguments,
                                                          std::wstring& problem) {
  JunkCommandOptions options;
  bool masksGiven = false;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::wstring& argument = arguments[i];
    const bool hasValue = i + 1 < arguments.size();
    if (argument == L"--json") {
      options.json = true;
    } else if (argument == L"--delete") {
      options.remove = true;
    } else if (argument == L"--folder") {
      if (!hasValue || options.folder) {
        problem = hasValue ? L"more than one --folder" : L"--folder needs a folder, such as --folder C:\\Temp";
        return std::nullopt;
      }
      options.folder = arguments[++i];
      FolderVerdict refusal = FolderVerdict::kAllowed;
      if (!CanonicalFolder(*options.folder, &refusal)) {
        problem = L"Please choose a path for cleaning junk files: \"" + *options.folder + L"\" is " +
                  WithArticle(VerdictReason(refusal)) + L"; give an absolute folder such as C:\\Temp";
        return std::nullopt;
      }
    } else if (argument == L"--masks") {
      if (!hasValue || masksGiven) {
        problem = hasValue ? L"more than one --masks" : L"--masks needs default, all or a list such as *.tmp,*.old";
        return std::nullopt;
      }
      masksGiven = true;
      if (!ParseMasks(arguments[++i], options.masks, problem)) {
        return std::nullopt;
      }
    } else {
      problem = L"unexpected argument: " + argument;
      return std::nullopt;
    }
  }
  if (!masksGiven) {
    options.masks = DefaultJunkMasks();
  }
  return options;
}

std::optional<UpdateCheckOptions> ParseUpdateCheckOptions(const std::vector<std::wstring>& arguments,
                                                          std::wstring& problem) {
  UpdateCheckOptions options;
  for (const std::wstring& argument : arguments) {
    if (argument != L"--json" || options.json) {
      problem = L"unexpected argument: " + argument;
      return std::nullopt;
    }
    options.json = true;
  }
  return options;
}

}  // namespace lumenor
