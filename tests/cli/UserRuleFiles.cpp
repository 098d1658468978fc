#include "tests/cli/UserRuleFiles.h"

#include "base/ModulePath.h"
#include "base/TextEncoding.h"
#include "engine/SystemPaths.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include <windows.h>

#include <algorithm>

namespace lumenor::testing {

namespace {

std::wstring TracesRoot() {
  if (GetDriveTypeW(L"E:\\") == DRIVE_FIXED) return L"E:\\";
  wchar_t buffer[MAX_PATH + 1] = {};
  const DWORD length = GetTempPathW(MAX_PATH + 1, buffer);
  return length == 0 || length > MAX_PATH ? std::wstring() : std::wstring(buffer, length);
}

}  // namespace

void UserRuleFiles::SetUp() {
  // The rules erase what they reach: a fault of the folder rules would cost real files.
  LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
  rulesFolder_ = ModuleFolder() + L"rules\\";
  madeRulesFolder_ = CreateDirectoryW(rulesFolder_.c_str(), nullptr) != FALSE;
  const std::wstring root = TracesRoot();
  ASSERT_FALSE(root.empty());
  traces_ = root + L"lumenor-rule-traces-" + std::to_wstring(GetCurrentProcessId()) + L"\\";
  RemoveTree(traces_);  // what an earlier run that crashed left behind
  MakeFolders(traces_);
  previousTemp_ = MachinePaths().EnvironmentVariable(L"TEMP").value_or(L"");
  ASSERT_FALSE(previousTemp_.empty());
  SetTemp(traces_);
}

void UserRuleFiles::TearDown() {
  for (const std::wstring& file : written_) (void)DeleteFileW(file.c_str());
  if (madeRulesFolder_) (void)RemoveDirectoryW(rulesFolder_.c_str());  // only when the test left it empty
  if (!previousTemp_.empty()) SetTemp(previousTemp_);
  if (!traces_.empty()) RemoveTree(traces_);
}

bool UserRuleFiles::WriteRules(std::wstring_view name, std::string_view text) {
  const std::wstring path = RulesPath(name);
  if (std::find(written_.begin(), written_.end(), path) == written_.end()) written_.push_back(path);
  return WriteFileBytes(path, text);
}

void UserRuleFiles::SetTemp(std::wstring folder) {
  if (folder.size() > 3 && folder.back() == L'\\') folder.pop_back();
  ASSERT_TRUE(SetEnvironmentVariableW(L"TEMP", folder.c_str()));
}

ProgramResult UserRuleFiles::Cli(std::wstring_view arguments) {
  ProgramResult result = RunProgram(CliProgram(), arguments);
  EXPECT_TRUE(result.finished) << ToUtf8(arguments);
  return result;
}

std::string Replaced(std::string text, std::string_view placeholder, std::wstring_view value) {
  const std::string utf8 = ToUtf8(value);
  for (size_t at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder, at + utf8.size())) {
    text.replace(at, placeholder.size(), utf8);
  }
  return text;
}

std::vector<std::string> LinesOfType(const std::string& out, std::string_view type) {
  const std::string start = "{\"type\":\"" + std::string(type) + "\"";
  std::vector<std::string> lines;
  for (const std::string& line : SplitLines(out)) {
    if (line.starts_with(start)) lines.push_back(line);
  }
  std::sort(lines.begin(), lines.end());
  return lines;
}

std::string TraceLine(unsigned id, std::string_view item, const std::wstring& location, const std::wstring& name,
                      uint64_t bytes, bool registry) {
  return "{\"type\":\"trace\",\"id\":" + std::to_string(id) + ",\"item\":\"" + std::string(item) + "\",\"name\":\"" +
         JsonEscaped(name) + "\",\"location\":\"" + JsonEscaped(location) +
         "\",\"registry\":" + (registry ? "true" : "false") + ",\"bytes\":" + std::to_string(bytes) + "}";
}

std::string SkippedLine(unsigned id, const std::wstring& location, std::string_view reason) {
  return "{\"type\":\"skipped\",\"id\":" + std::to_string(id) + ",\"location\":\"" + JsonEscaped(location) +
         "\",\"reason\":\"" + std::string(reason) + "\"}";
}

namespace {

// The id of the first node whose line holds `named` right after its id.
unsigned IdOfNode(const std::string& out, const std::string& named) {
  constexpr std::string_view kIdStart = "{\"type\":\"node\",\"id\":";
  for (const std::string& line : SplitLines(out)) {
    const size_t at = line.find(named);
    if (at == std::string::npos || !line.starts_with(kIdStart)) continue;
    return static_cast<unsigned>(std::stoul(line.substr(kIdStart.size(), at - kIdStart.size())));
  }
  return 0;
}

}  // namespace

unsigned ListedId(const std::string& out, int level, std::string_view name) {
  return IdOfNode(out, ",\"level\":" + std::to_string(level) + ",\"name\":\"" + std::string(name) + "\",");
}

unsigned ListedItem(const std::string& out, std::string_view application, std::string_view item) {
  const unsigned parent = ListedId(out, 1, application);
  if (parent == 0) return 0;
  return IdOfNode(out,
                  ",\"level\":2,\"name\":\"" + std::string(item) + "\",\"parent\":" + std::to_string(parent) + ",");
}

std::wstring ItemList(const std::vector<unsigned>& ids) {
  std::wstring list;
  for (const unsigned id : ids) list += (list.empty() ? L"" : L",") + std::to_wstring(id);
  return list;
}

}  // namespace lumenor::testing
