// lumenor-cli scan and erase end to end, on traces seeded into the test machine.
#include "tests/support/ChildProcess.h"
#include "tests/support/DemoTraces.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include "base/ModulePath.h"
#include "base/TextEncoding.h"
#include "catalogue/CMyObject.h"
#include "catalogue/ItemIds.h"
#include "cli/CliOptions.h"
#include "engine/Registry.h"

#include <gtest/gtest.h>

#include <set>

namespace lumenor {
namespace {

using testing::CliProgram;
using testing::ProgramResult;
using testing::RunProgram;

std::string TraceLine(const testing::SeededTrace& trace, const std::wstring& itemName) {
  return "{\"type\":\"trace\",\"id\":" + std::to_string(trace.itemId) + ",\"item\":\"" +
         testing::JsonEscaped(itemName) + "\",\"name\":\"" + testing::JsonEscaped(trace.name) + "\",\"location\":\"" +
         testing::JsonEscaped(trace.location) + "\",\"registry\":" + (trace.isRegistry ? "true" : "false") +
         ",\"bytes\":" + std::to_string(trace.bytes) + "}";
}

// The test's traces go into a TEMP folder of its own, which the program inherits, so the
// erase of temporary files cannot reach the test's other files.
class SeededMachine : public ::testing::Test {
 protected:
  void SetUp() override {
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
    wchar_t previous[MAX_PATH] = {};
    const DWORD length = GetEnvironmentVariableW(L"TEMP", previous, MAX_PATH);
    previousTemp_.assign(previous, length < MAX_PATH ? length : 0);
    std::wstring temp = temp_.Path();
    temp.pop_back();
    ASSERT_TRUE(SetEnvironmentVariableW(L"TEMP", temp.c_str()));
    std::vector<std::wstring> failures;
    seeded_ = testing::SeedDemoTraces(failures);
    ASSERT_TRUE(failures.empty()) << ::testing::PrintToString(failures);
  }
  void TearDown() override {
    if (!previousTemp_.empty()) SetEnvironmentVariableW(L"TEMP", previousTemp_.c_str());
  }

  // Items of the seeded traces whose locations hold nothing else on the test machine.
  static constexpr unsigned kItems[] = {kItemDocumentHistory,        kItemTemporaryFiles,      kItemRunHistory,
                                        kItemPaintRecentFiles,       kItemLastRegistryKey,     kItemWordPadRecentFiles,
                                        kItemIeAddressBarHistory,    kItemOperaTypedAddresses, kItemOperaCookies,
                                        kItemFirefoxBrowsingHistory, kItemFirefoxFormHistory,  kItemFirefoxDownloads,
                                        kItemFirefoxCookies,         kItemFirefoxPasswords,    kItemOfficeRecentFolder,
                                        kItemMediaPlayerRecentFiles, kItemAcrobatRecentFiles,  kItemFlashPlayerHistory};
  static std::wstring ItemList() {
    std::wstring list;
    for (const unsigned id : kItems) list += (list.empty() ? L"" : L",") + std::to_wstring(id);
    return list;
  }
  std::vector<testing::SeededTrace> SeededInItems() const {
    const std::set<unsigned> items(std::begin(kItems), std::end(kItems));
    std::vector<testing::SeededTrace> traces;
    for (const auto& trace : seeded_) {
      if (items.count(trace.itemId)) traces.push_back(trace);
    }
    return traces;
  }

  testing::TempFolder temp_;
  std::wstring previousTemp_;
  std::vector<testing::SeededTrace> seeded_;
};

TEST_F(SeededMachine, ScanListsEverySeededTraceAsAJsonLineAndSumsUp) {
  const ProgramResult result = RunProgram(CliProgram(), L"scan --json --items " + ItemList());
  ASSERT_TRUE(result.finished);
  ASSERT_EQ(result.exitCode, 0u) << result.err;
  const std::vector<std::string> lines = testing::SplitLines(result.out);
  const std::set<std::string> printed(lines.begin(), lines.end());
  CMyObject names;
  std::set<unsigned> itemsWithTraces;
  uint64_t bytes = 0;
  for (const testing::SeededTrace& trace : SeededInItems()) {
    names.SetId(trace.itemId);
    EXPECT_EQ(printed.count(TraceLine(trace, names.Name())), 1u) << TraceLine(trace, names.Name());
    itemsWithTraces.insert(trace.itemId);
    bytes += trace.bytes;
  }
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "{\"type\":\"summary\",\"traces\":" + std::to_string(lines.size() - 1) + ",\"items\":" +
                              std::to_string(itemsWithTraces.size()) + ",\"bytes\":" + std::to_string(bytes) + "}");
}

TEST_F(SeededMachine, EraseDeletesWhatTheScanFoundAndASecondScanFindsNothing) {
  const ProgramResult erase = RunProgram(CliProgram(), L"erase --json --items " + ItemList());
  ASSERT_TRUE(erase.finished);
  EXPECT_EQ(erase.exitCode, 0u) << erase.out << erase.err;
  const std::vector<std::string> lines = testing::SplitLines(erase.out);
  ASSERT_FALSE(lines.empty());
  const std::string traces = std::to_string(lines.size() - 1);
  uint64_t bytes = 0;
  for (size_t line = 0; line + 1 < lines.size(); ++line) {
    const size_t at = lines[line].rfind("\"bytes\":");
    ASSERT_NE(at, std::string::npos) << lines[line];
    bytes += std::stoull(lines[line].substr(at + 8));
  }
  EXPECT_EQ(lines.back(), "{\"type\":\"summary\",\"traces\":" + traces + ",\"deleted\":" + traces +
                              ",\"failed\":0,\"skipped\":0,\"bytes\":" + std::to_string(bytes) + "}")
      << "the bytes deleted are those the scan found";

  for (const testing::SeededTrace& trace : SeededInItems()) {
    if (!trace.isRegistry) {
      EXPECT_FALSE(testing::FileExists(trace.location + trace.name)) << ToUtf8(trace.location + trace.name);
    }
  }
  const ProgramResult again = RunProgram(CliProgram(), L"scan --items " + ItemList());
  EXPECT_EQ(again.out, "0 traces found in 0 items, 0 KB to be recovered\n");
}

TEST_F(SeededMachine, AFileThatCannotBeDeletedMakesTheEraseFail) {
  const std::wstring locked = temp_ / L"locked.tmp";
  testing::MakeFile(locked);
  ASSERT_TRUE(SetFileAttributesW(locked.c_str(), FILE_ATTRIBUTE_READONLY));
  const ProgramResult erase = RunProgram(CliProgram(), L"erase --items 106");
  EXPECT_EQ(erase.exitCode, 1u);
  EXPECT_NE(erase.out.find("failed\t" + ToUtf8(locked)), std::string::npos) << erase.out;
  EXPECT_NE(erase.out.find(" deleted, 1 failed"), std::string::npos) << erase.out;
  SetFileAttributesW(locked.c_str(), FILE_ATTRIBUTE_NORMAL);
}

// The settings file beside the tool, as a test writes it; put back as it was after.
class OneClickCommand : public ::testing::Test {
 protected:
  static constexpr wchar_t kWordPadKey[] =
      L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Wordpad\\Recent File List";
  void SetUp() override {
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
    settingsPath_ = ModuleFolder() + L"setting.ini";
    hadSettings_ = testing::FileExists(settingsPath_);
    previous_ = testing::ReadFileBytes(settingsPath_);
  }
  void TearDown() override {
    if (settingsPath_.empty()) return;
    if (hadSettings_) {
      testing::WriteFileBytes(settingsPath_, previous_);
    } else {
      DeleteFileW(settingsPath_.c_str());
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, kWordPadKey);
  }

  std::wstring settingsPath_;
  bool hadSettings_ = false;
  std::string previous_;
};

TEST_F(OneClickCommand, ErasesEveryItemOfTheListEvenWhereTheScanFoundNothing) {
  // The list holds only an empty sub-key: nothing for a scan to find.
  RegDeleteTreeW(HKEY_CURRENT_USER, kWordPadKey);
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, (std::wstring(kWordPadKey) + L"\\Empty").c_str(), 0, nullptr, 0,
                            KEY_ALL_ACCESS | KEY_WOW64_32KEY, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(key);
  ASSERT_TRUE(testing::WriteFileBytes(settingsPath_, "[OneClickItem]\r\nOneClickItems=1\r\nitem0=126\r\n"));

  const ProgramResult plain = RunProgram(CliProgram(), L"erase --json --items 126");
  EXPECT_EQ(plain.out, "{\"type\":\"summary\",\"traces\":0,\"deleted\":0,\"failed\":0,\"skipped\":0,\"bytes\":0}\n");
  EXPECT_TRUE(OpenKey(HKEY_CURRENT_USER, kWordPadKey, KEY_READ)) << "an erase takes only what the scan found";

  const ProgramResult oneClick = RunProgram(CliProgram(), L"erase --json --one-click");
  EXPECT_EQ(oneClick.exitCode, 0u) << oneClick.out;
  EXPECT_EQ(oneClick.out, "{\"type\":\"summary\",\"traces\":0,\"deleted\":1,\"failed\":0,\"skipped\":0,\"bytes\":0}\n");
  EXPECT_FALSE(OpenKey(HKEY_CURRENT_USER, kWordPadKey, KEY_READ)) << "one-click erases it all the same";
}

TEST(CliTraceUsage, BadSelectionsExitWithTwoAndNameTheArgument) {
  for (const auto& [arguments, named] :
       std::vector<std::pair<std::wstring, std::string>>{{L"scan --items", "--items"},
                                                         {L"scan --items 104,,105", "104,,105"},
                                                         {L"erase --items 104x", "104x"},
                                                         {L"scan --all --default", "--default"},
                                                         {L"scan --everything", "--everything"}}) {
    const ProgramResult result = RunProgram(CliProgram(), arguments);
    ASSERT_TRUE(result.finished);
    EXPECT_EQ(result.exitCode, 2u) << ToUtf8(arguments);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(named), std::string::npos) << result.err;
  }
}

TEST(CliTraceUsage, ItemIdsAreAsciiDigitsAndNothingElse) {
  // The C runtime's wide digit test takes superscripts and other scripts' digits too.
  for (const wchar_t* list : {L"10\u00B2", L"\u00B9\u00B2", L"1\u0661", L"\uFF11\uFF10\uFF14", L"104,+5", L"104, 5"}) {
    std::wstring problem;
    EXPECT_FALSE(ParseTraceCommandOptions({L"--items", list}, problem)) << ::testing::PrintToString(std::wstring(list));
    EXPECT_EQ(problem, std::wstring(L"bad item list: ") + list);
  }
  std::wstring problem;
  const auto options = ParseTraceCommandOptions({L"--items", L"0104,132"}, problem);
  ASSERT_TRUE(options) << ToUtf8(problem);
  EXPECT_EQ(options->items, (std::vector<unsigned>{104, 132}));
  const ProgramResult result = RunProgram(CliProgram(), L"scan --items 10\u00B2");
  EXPECT_EQ(result.exitCode, 2u);
  EXPECT_NE(result.err.find("bad item list: 10\xC2\xB2"), std::string::npos) << result.err;
}

TEST(CliTraceUsage, ItemIdsRunToTenDigitsAsTheIdsOfRuleItemsDo) {
  std::wstring problem;
  const auto options = ParseTraceCommandOptions({L"--items", L"2147483647,4294967295,0000000104"}, problem);
  ASSERT_TRUE(options) << ToUtf8(problem);
  EXPECT_EQ(options->items, (std::vector<unsigned>{2147483647u, 4294967295u, 104u}));
  for (const wchar_t* list : {L"4294967296", L"99999999999", L"104,18446744073709551720"}) {
    EXPECT_FALSE(ParseTraceCommandOptions({L"--items", list}, problem)) << "no id is that large, and none wraps round";
    EXPECT_EQ(problem, std::wstring(L"bad item list: ") + list);
  }
}

TEST(CliTraceSelection, IdsThatNameNoItemAreIgnored) {
  const ProgramResult result = RunProgram(CliProgram(), L"scan --items 1,134,151,99999 --json");
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.out, "{\"type\":\"summary\",\"traces\":0,\"items\":0,\"bytes\":0}\n");
}

}  // namespace
}  // namespace lumenor
