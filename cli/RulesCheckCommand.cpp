#include "cli/RulesCheckCommand.h"

#include "base/UniqueHandle.h"
#include "cli/JsonText.h"
#include "engine/FilePath.h"
#include "engine/RulePlan.h"
#include "engine/SystemPaths.h"
#include "rules/RuleBook.h"
#include "rules/Winapp2Reader.h"
#include "rules/XmlRuleReader.h"
#include "xml/XmlReader.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace lumenor {

namespace {

constexpr int kUnreadable = 2;

struct FileBytes {
  std::string bytes;
  std::wstring failure;  // why the file could not be read; empty when it was
};

// The whole file, or why not. Larger files are refused before any of them is read.
FileBytes ReadWholeFile(const std::wstring& path, size_t limit) {
  const DWORD length = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
  std::wstring full(length, L'\0');
  const DWORD written = length == 0 ? 0 : GetFullPathNameW(path.c_str(), length, full.data(), nullptr);
  if (written == 0 || written >= length) return {{}, L"not a usable path"};
  full.resize(written);
  const std::wstring apiPath = ForFileApi(full);
  const DWORD attributes = GetFileAttributesW(apiPath.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return {{}, L"a folder, not a file"};
  }
  const UniqueHandle file(CreateFileW(apiPath.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) return {{}, L"no such file"};
    return {{}, L"cannot be opened (error " + std::to_wstring(error) + L")"};
  }
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file.Get(), &size)) return {{}, L"cannot be read (no size)"};
  if (size.QuadPart < 0 || static_cast<unsigned long long>(size.QuadPart) > limit) {
    return {{}, L"larger than " + std::to_wstring(limit / (size_t{1024} * 1024)) + L" MiB"};
  }
  FileBytes read;
  read.bytes.resize(static_cast<size_t>(size.QuadPart));
  size_t done = 0;
  while (done < read.bytes.size()) {
    DWORD got = 0;
    const DWORD wanted = static_cast<DWORD>(std::min<size_t>(read.bytes.size() - done, 1 << 20));
    if (!ReadFile(file.Get(), read.bytes.data() + done, wanted, &got, nullptr)) {
      return {{}, L"cannot be read (error " + std::to_wstring(GetLastError()) + L")"};
    }
    if (got == 0) break;  // it shrank while being read: what is there is the file
    done += got;
  }
  read.bytes.resize(done);
  return read;
}

void PrintProblems(const std::vector<rules::Problem>& problems, bool json, BufferedOutput& lines) {
  for (const rules::Problem& problem : problems) {
    const std::wstring line = std::to_wstring(problem.where.line);
    const std::wstring column = std::to_wstring(problem.where.column);
    std::wstring text;
    if (json) {
      text.append(L"{\"type\":\"problem\",\"file\":").append(JsonString(problem.where.file));
      text.append(L",\"line\":").append(line).append(L",\"column\":").append(column);
      text.append(L",\"message\":").append(JsonString(problem.message)).append(L"}");
    } else {
      text.append(problem.where.file).append(L":").append(line).append(L":").append(column);
      text.append(L": ").append(problem.message);
    }
    lines.Line(text);
  }
}

// The community's winapp2.ini: its problems, what it holds, and how many of its entries
// apply on this machine.
int CheckWinapp2(const std::string& bytes, const RulesCheckOptions& options, BufferedOutput& lines) {
  rules::Winapp2File file = rules::ReadWinapp2(bytes, options.file);
  PrintProblems(file.rules.problems, options.json, lines);
  const size_t problems = file.rules.problems.size();
  rules::RuleBook book;
  book.Add(std::move(file.rules));
  const RememberedPaths paths(MachinePaths());
  const auto detected =
      std::count_if(book.Entries().begin(), book.Entries().end(),
                    [&](const rules::RuleBook::Entry& entry) { return IsRuleDetected(entry, paths); });
  const rules::Winapp2Counts& counts = file.counts;
  const auto number = [](auto value) { return std::to_wstring(value); };
  lines.Line(options.json ? L"{\"type\":\"summary\",\"entries\":" + number(counts.entriesLoaded) + L",\"fileKeys\":" +
                                number(counts.fileKeys.read) + L",\"regKeys\":" + number(counts.regKeys.read) +
                                L",\"excludeKeys\":" + number(counts.excludeKeys.read) + L",\"detected\":" +
                                number(detected) + L",\"problems\":" + number(problems) + L"}"
                          : number(counts.entriesLoaded) + L" entries (" + number(detected) +
                                L" found on this machine), " + number(counts.fileKeys.read) + L" file keys, " +
                                number(counts.regKeys.read) + L" registry keys, " + number(counts.excludeKeys.read) +
                                L" exclusions, " + number(problems) + L" problems");
  return lines.Flush() && problems == 0 ? 0 : 1;
}

}  // namespace

std::optional<RulesCheckOptions> ParseRulesCheckOptions(const std::vector<std::wstring>& arguments,
                                                        std::wstring& problem) {
  RulesCheckOptions options;
  for (const std::wstring& argument : arguments) {
    if (argument == L"--json") {
      options.json = true;
    } else if (options.file.empty() && !argument.empty() && !argument.starts_with(L"--")) {
      options.file = argument;
    } else {
      problem = L"unexpected argument: " + argument;
      return std::nullopt;
    }
  }
  if (options.file.empty()) {
    problem = L"rules check needs a rule file";
    return std::nullopt;
  }
  return options;
}

int RunRulesCheck(const RulesCheckOptions& options, const ConsoleOutput& out, const ConsoleOutput& err) {
  FileBytes file = ReadWholeFile(options.file, xml::kMaxInputBytes);
  const bool xmlFile = rules::LooksLikeXml(file.bytes);
  if (file.failure.empty() && !xmlFile && rules::ReadWinapp2(file.bytes, options.file).counts.entriesRead == 0) {
    file.failure = L"not a rule file";
  }
  if (!file.failure.empty()) {
    if (options.json) {
      (void)out.WriteLine(L"{\"type\":\"error\",\"file\":" + JsonString(options.file) + L",\"message\":" +
                          JsonString(file.failure) + L"}");  // the exit status says it too
    }
    (void)err.WriteLine(L"lumenor-cli: " + options.file + L": " + file.failure);
    return kUnreadable;
  }
  BufferedOutput lines(out);
  if (!xmlFile) return CheckWinapp2(file.bytes, options, lines);
  const rules::RuleSet rules = rules::ReadXmlRules(file.bytes, options.file, rules::RuleOrigin::kUserFile);
  PrintProblems(rules.problems, options.json, lines);
  size_t items = 0;
  for (const rules::Application& application : rules.applications) items += application.items.size();
  const std::wstring applicationCount = std::to_wstring(rules.applications.size());
  const std::wstring itemCount = std::to_wstring(items);
  const std::wstring problemCount = std::to_wstring(rules.problems.size());
  lines.Line(options.json
                 ? L"{\"type\":\"summary\",\"applications\":" + applicationCount + L",\"items\":" + itemCount +
                       L",\"problems\":" + problemCount + L"}"
                 : applicationCount + L" applications, " + itemCount + L" items, " + problemCount + L" problems");
  return lines.Flush() && rules.problems.empty() ? 0 : 1;
}

}  // namespace lumenor
