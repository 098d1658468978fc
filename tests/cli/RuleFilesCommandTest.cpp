// A user's own rule file dropped beside lumenor-cli, used as the user uses it: its items
// listed with their ids, warnings and defaults where the machine has the application;
// the same ids on every run and after the file is edited; scans that show each file and
// value with its size; erases that take exactly that (masks whole names, scopes, folders
// removed only when empty, exclusions, registry keys and values, wildcards in middle
// folders); and a broken file told with its line and column while the rest loads.
#include "tests/cli/UserRuleFiles.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include "base/TextEncoding.h"
#include "rules/RuleModel.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lumenor {
namespace {

using testing::EntriesBelow;
using testing::ListedId;
using testing::ListedItem;
using testing::MakeFile;
using testing::ProgramResult;
using testing::SkippedLine;
using testing::TraceLine;

std::vector<std::string> Lines(const std::string& out) { return testing::SplitLines(out); }

bool Has(const std::vector<std::string>& lines, const std::string& line) {
  return std::find(lines.begin(), lines.end(), line) != lines.end();
}

std::vector<std::string> Sorted(std::vector<std::string> lines) {
  std::sort(lines.begin(), lines.end());
  return lines;
}

class UserRuleFile : public testing::UserRuleFiles {};

constexpr char kListedRules[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <detect path="%Temp%\Rule App"/>
      <item name="Cache" default="true">
        <warning>Pages open slower the first time.</warning>
        <files folder="%Temp%\Rule App\Cache" masks="*"/>
      </item>
      <item name="Logs">
        <files folder="%Temp%\Rule App\logs" masks="*.log"/>
      </item>
      <item name="Plugins">
        <detect path="%Temp%\Rule App\plugins\*.dll"/>
        <files folder="%Temp%\Rule App\plugins" masks="*.tmp"/>
      </item>
    </application>
    <application name="Absent App">
      <detect path="%Temp%\Absent App"/>
      <item name="Cache" default="true">
        <files folder="%Temp%\Absent App" masks="*"/>
      </item>
    </application>
  </category>
</rules>
)";

TEST_F(UserRuleFile, ListShowsItsItemsWithIdWarningAndDefaultWhereTheMachineHasTheApplication) {
  testing::MakeFolders(*this / L"Rule App\\");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kListedRules));
  const unsigned cache = rules::DerivedItemId(L"Rule App", L"Cache");
  const unsigned logs = rules::DerivedItemId(L"Rule App", L"Logs");
  const unsigned plugins = rules::DerivedItemId(L"Rule App", L"Plugins");
  const unsigned absentCache = rules::DerivedItemId(L"Absent App", L"Cache");

  const ProgramResult json = Cli(L"list --json");
  EXPECT_EQ(json.exitCode, 0u);
  EXPECT_EQ(json.err, "") << "the file has no problem";
  const unsigned category = ListedId(json.out, 0, "Lumenor Tests");
  const unsigned application = ListedId(json.out, 1, "Rule App");
  ASSERT_NE(category, 0u) << json.out;
  ASSERT_NE(application, 0u) << json.out;
  const std::vector<std::string> lines = Lines(json.out);
  const auto first = std::find(lines.begin(), lines.end(),
                               "{\"type\":\"node\",\"id\":" + std::to_string(category) +
                                   ",\"level\":0,\"name\":\"Lumenor Tests\",\"parent\":0}");
  ASSERT_GE(std::distance(first, lines.end()), 4) << "the category, its application and its two items\n" << json.out;
  EXPECT_EQ(
      std::vector<std::string>(first + 1, first + 4),
      (std::vector<std::string>{
          "{\"type\":\"node\",\"id\":" + std::to_string(application) + ",\"level\":1,\"name\":\"Rule App\"," +
              "\"parent\":" + std::to_string(category) + "}",
          "{\"type\":\"node\",\"id\":" + std::to_string(cache) + ",\"level\":2,\"name\":\"Cache\",\"parent\":" +
              std::to_string(application) + ",\"default\":true,\"warning\":\"Pages open slower the first time.\"}",
          "{\"type\":\"node\",\"id\":" + std::to_string(logs) +
              ",\"level\":2,\"name\":\"Logs\",\"parent\":" + std::to_string(application) + ",\"default\":false}"}));
  EXPECT_EQ(ListedId(json.out, 1, "Absent App"), 0u) << "its detect path is missing";
  EXPECT_EQ(ListedItem(json.out, "Rule App", "Plugins"), 0u) << "the item's own detect finds no plug-in";
  EXPECT_GE(cache, rules::kFirstDerivedId);

  const ProgramResult plain = Cli(L"list");
  EXPECT_NE(
      plain.out.find(std::to_string(category) + "\t0\tLumenor Tests\n" + std::to_string(application) +
                     "\t1\tRule App\n" + std::to_string(cache) + "\t2\tCache\n" + std::to_string(logs) + "\t2\tLogs\n"),
      std::string::npos)
      << plain.out;

  const ProgramResult absent = Cli(L"scan --json --items " + std::to_wstring(absentCache));
  EXPECT_EQ(absent.out, "{\"type\":\"summary\",\"traces\":0,\"items\":0,\"bytes\":0}\n")
      << "an item the machine does not show cannot be scanned by its id either";

  MakeFile(*this / L"Rule App\\plugins\\spell.dll");
  MakeFile(*this / L"Absent App\\state.bin");
  const ProgramResult found = Cli(L"list --json");
  EXPECT_EQ(ListedItem(found.out, "Rule App", "Plugins"), plugins) << found.out;
  EXPECT_NE(ListedId(found.out, 1, "Absent App"), 0u) << "installed now";
  EXPECT_TRUE(Has(Lines(found.out), "{\"type\":\"node\",\"id\":" + std::to_string(absentCache) +
                                        ",\"level\":2,\"name\":\"Cache\",\"parent\":" +
                                        std::to_string(ListedId(found.out, 1, "Absent App")) + ",\"default\":true}"))
      << found.out;
}

TEST_F(UserRuleFile, TheDefaultSelectionTicksTheItemsTheFileMarksDefault) {
  testing::MakeFolders(*this / L"Rule App\\");
  MakeFile(*this / L"Rule App\\Cache\\page.bin", "12345");
  MakeFile(*this / L"Rule App\\logs\\today.log");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kListedRules));
  const ProgramResult scan = Cli(L"scan --json --default");
  const std::vector<std::string> traces = testing::LinesOfType(scan.out, "trace");
  EXPECT_TRUE(Has(traces, TraceLine(rules::DerivedItemId(L"Rule App", L"Cache"), "Cache", *this / L"Rule App\\Cache\\",
                                    L"page.bin", 5)))
      << scan.out;
  const std::string logs = "\"id\":" + std::to_string(rules::DerivedItemId(L"Rule App", L"Logs")) + ",";
  for (const std::string& trace : traces) EXPECT_EQ(trace.find(logs), std::string::npos) << "Logs is not a default";
}

constexpr char kFirstEdition[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <item name="Cache"><files folder="%Temp%\Rule App\Cache" masks="*"/></item>
      <item name="Logs"><files folder="%Temp%\Rule App\logs" masks="*.log"/></item>
    </application>
  </category>
</rules>
)";

// Edited elsewhere: another application first, the items the other way round, other
// masks, another letter case, an id attribute of its own.
constexpr char kSecondEdition[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Another App">
      <item name="Cache"><files folder="%Temp%\Another App" masks="*"/></item>
    </application>
    <application name="RULE APP">
      <item name="logs" id="5"><files folder="%Temp%\Rule App\logs" masks="*.log;*.txt" scope="recursive"/></item>
      <item name="Cache" default="true"><files folder="%Temp%\Rule App\Cache" masks="*.bin"/></item>
    </application>
  </category>
</rules>
)";

TEST_F(UserRuleFile, AnItemKeepsItsIdOnEveryRunAndWhenTheFileIsEditedUntilItIsRenamed) {
  MakeFile(*this / L"Rule App\\logs\\today.log");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kFirstEdition));
  const ProgramResult first = Cli(L"list --json");
  const unsigned logs = ListedItem(first.out, "Rule App", "Logs");
  ASSERT_NE(logs, 0u) << first.out;
  EXPECT_EQ(logs, rules::DerivedItemId(L"Rule App", L"Logs")) << "the id comes from the names";
  EXPECT_EQ(Cli(L"list --json").out, first.out) << "a second start lists the same";

  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kSecondEdition));
  const ProgramResult edited = Cli(L"list --json");
  EXPECT_EQ(ListedItem(edited.out, "RULE APP", "logs"), logs) << edited.out;
  EXPECT_EQ(ListedItem(edited.out, "RULE APP", "Cache"), ListedItem(first.out, "Rule App", "Cache"));
  const ProgramResult scan = Cli(L"scan --json --items " + std::to_wstring(logs));
  EXPECT_EQ(testing::LinesOfType(scan.out, "trace"),
            std::vector<std::string>{TraceLine(logs, "logs", *this / L"Rule App\\logs\\", L"today.log", 5)})
      << "a selection saved by the id finds the item as it is now";

  ASSERT_TRUE(
      WriteRules(L"lumenor-tests.xml", testing::Replaced(kSecondEdition, "name=\"logs\"", L"name=\"Log files\"")));
  const ProgramResult renamed = Cli(L"list --json");
  EXPECT_EQ(ListedItem(renamed.out, "RULE APP", "logs"), 0u);
  EXPECT_EQ(ListedItem(renamed.out, "RULE APP", "Log files"), rules::DerivedItemId(L"Rule App", L"Log files"));
  EXPECT_EQ(renamed.out.find("\"id\":" + std::to_string(logs) + ","), std::string::npos) << "a new item, a new id";
}

constexpr char kFileRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <item name="Log"><files folder="%Temp%\Rule App\logs" masks="LOG"/></item>
      <item name="Dumps"><files folder="%Temp%\Rule App\dumps" masks="*.dmp"/></item>
      <item name="Cache"><files folder="%Temp%\Rule App\Cache" masks="*" scope="remove-self"/></item>
      <item name="Temporary"><files folder="%Temp%\Rule App\Temp" masks="*.tmp" scope="remove-self"/></item>
      <item name="History"><files folder="%Temp%\Rule App\History" masks="*.dat" scope="recursive"/></item>
    </application>
  </category>
</rules>
)";

TEST_F(UserRuleFile, ScanShowsEachFileWithItsSizeAndEraseTakesExactlyWhatMasksAndScopesReach) {
  const std::wstring app = *this / L"Rule App\\";
  for (const wchar_t* file :
       {L"logs\\LOG", L"logs\\other.log", L"logs\\LOG.txt", L"logs\\catalog", L"dumps\\a.dmp", L"dumps\\b.DMP",
        L"dumps\\c.dmp.old", L"dumps\\d.dmpx", L"dumps\\sub\\e.dmp", L"Cache\\a.bin", L"Cache\\b\\c.bin",
        L"Cache\\b\\d\\e.bin", L"Temp\\x.tmp", L"Temp\\gone\\z.tmp", L"Temp\\kept\\y.tmp", L"Temp\\kept\\notes.txt",
        L"History\\h1.dat", L"History\\old\\h2.dat"}) {
    MakeFile(app + file, ToUtf8(file));  // sizes that differ
  }
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kFileRules));
  const unsigned log = rules::DerivedItemId(L"Rule App", L"Log");
  const unsigned dumps = rules::DerivedItemId(L"Rule App", L"Dumps");
  const unsigned cache = rules::DerivedItemId(L"Rule App", L"Cache");
  const unsigned temporary = rules::DerivedItemId(L"Rule App", L"Temporary");
  const unsigned history = rules::DerivedItemId(L"Rule App", L"History");
  const std::wstring items = testing::ItemList({log, dumps, cache, temporary, history});

  const ProgramResult scan = Cli(L"scan --json --items " + items);
  EXPECT_EQ(scan.exitCode, 0u) << scan.err;
  const auto trace = [&](unsigned id, std::string_view item, std::wstring_view file) {
    const std::wstring path = app + std::wstring(file);
    const size_t slash = path.find_last_of(L'\\');
    return TraceLine(id, item, path.substr(0, slash + 1), path.substr(slash + 1), ToUtf8(file).size());
  };
  // A folder that a remove-self scope takes once emptied, listed with no size.
  const auto folder = [&](unsigned id, std::string_view item, std::wstring_view parent, std::wstring_view name) {
    return TraceLine(id, item, app + std::wstring(parent), std::wstring(name) + L"\\", 0);
  };
  std::vector<std::string> expected{
      trace(log, "Log", L"logs\\LOG"),
      trace(dumps, "Dumps", L"dumps\\a.dmp"),
      trace(dumps, "Dumps", L"dumps\\b.DMP"),
      trace(cache, "Cache", L"Cache\\a.bin"),
      trace(cache, "Cache", L"Cache\\b\\c.bin"),
      trace(cache, "Cache", L"Cache\\b\\d\\e.bin"),
      folder(cache, "Cache", L"", L"Cache"),
      folder(cache, "Cache", L"Cache\\", L"b"),
      folder(cache, "Cache", L"Cache\\b\\", L"d"),
      trace(temporary, "Temporary", L"Temp\\x.tmp"),
      trace(temporary, "Temporary", L"Temp\\gone\\z.tmp"),
      folder(temporary, "Temporary", L"Temp\\", L"gone"),
      trace(temporary, "Temporary", L"Temp\\kept\\y.tmp"),
      trace(history, "History", L"History\\h1.dat"),
      trace(history, "History", L"History\\old\\h2.dat"),
  };
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(testing::LinesOfType(scan.out, "trace"), expected)
      << "LOG is the whole name: never other.log, LOG.txt or catalog; *.dmp never c.dmp.old";
  uint64_t bytes = 0;
  for (const std::string& line : expected) bytes += std::stoull(line.substr(line.rfind(':') + 1));
  EXPECT_EQ(testing::LinesOfType(scan.out, "summary"),
            std::vector<std::string>{
                "{\"type\":\"summary\",\"traces\":15,\"items\":5,\"bytes\":" + std::to_string(bytes) + "}"});

  const ProgramResult erase = Cli(L"erase --json --items " + items);
  EXPECT_EQ(erase.exitCode, 0u) << erase.out;
  EXPECT_EQ(testing::LinesOfType(erase.out, "summary"),
            std::vector<std::string>{"{\"type\":\"summary\",\"traces\":15,\"deleted\":15,\"failed\":0,\"skipped\":0,"
                                     "\"bytes\":" +
                                     std::to_string(bytes) + "}"});
  EXPECT_EQ(EntriesBelow(app),
            (std::vector<std::wstring>{
                L"History\\", L"History\\old\\",                       // recursive: the files only
                L"Temp\\", L"Temp\\kept\\", L"Temp\\kept\\notes.txt",  // remove-self: a folder with a file stays
                L"dumps\\", L"dumps\\c.dmp.old", L"dumps\\d.dmpx", L"dumps\\sub\\", L"dumps\\sub\\e.dmp", L"logs\\",
                L"logs\\LOG.txt", L"logs\\catalog", L"logs\\other.log"}))
      << "Cache went whole, folders and all";
  EXPECT_EQ(Cli(L"scan --json --items " + items).out, "{\"type\":\"summary\",\"traces\":0,\"items\":0,\"bytes\":0}\n");
}

constexpr char kExclusionRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <item name="Data">
        <files folder="%Temp%\Rule App\Data" masks="*" scope="remove-self"/>
        <exclude files="%Temp%\Rule App\Data" masks="keep.log"/>
        <exclude folder="%Temp%\Rule App\Data\pinned"/>
        <exclude folder="%Temp%\Rule App\Data" masks="*.db"/>
      </item>
    </application>
  </category>
</rules>
)";

TEST_F(UserRuleFile, WhatAnItemExcludesStaysAndTheFoldersHoldingItStayWithIt) {
  const std::wstring data = *this / L"Rule App\\Data\\";
  for (const wchar_t* file : {L"a.log", L"keep.log", L"pinned\\b.log", L"pinned\\deep\\c.txt", L"sub\\c.log",
                              L"sub\\keep.log", L"sub\\deep\\state.db", L"other\\d.log"}) {
    MakeFile(data + file);
  }
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kExclusionRules));
  const unsigned id = rules::DerivedItemId(L"Rule App", L"Data");
  const ProgramResult scan = Cli(L"scan --json --items " + std::to_wstring(id));
  EXPECT_EQ(
      testing::LinesOfType(scan.out, "trace"),
      Sorted({TraceLine(id, "Data", data, L"a.log", 5), TraceLine(id, "Data", data + L"other\\", L"d.log", 5),
              TraceLine(id, "Data", data + L"sub\\", L"c.log", 5),
              TraceLine(id, "Data", data + L"sub\\", L"keep.log", 5), TraceLine(id, "Data", data, L"other\\", 0)}))
      << "exclude files names the files of its own folder only; of the folders only other\\ ends up empty";
  const ProgramResult erase = Cli(L"erase --json --items " + std::to_wstring(id));
  EXPECT_EQ(erase.exitCode, 0u) << erase.out;
  EXPECT_EQ(EntriesBelow(data),
            (std::vector<std::wstring>{L"keep.log", L"pinned\\", L"pinned\\b.log", L"pinned\\deep\\",
                                       L"pinned\\deep\\c.txt", L"sub\\", L"sub\\deep\\", L"sub\\deep\\state.db"}));
}

constexpr char kFolderRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <item name="Empty folders">
        <files folder="%Temp%\Rule App\Tidy" scope="empty-folders"/>
      </item>
      <item name="Emptied">
        <files folder="%Temp%\Rule App\Bare" masks="*.tmp" scope="remove-self"/>
      </item>
    </application>
  </category>
</rules>
)";

TEST_F(UserRuleFile, FoldersAScopeRemovesAreListedAsTracesAndOnlyEmptyOnesGo) {
  const std::wstring app = *this / L"Rule App\\";
  for (const wchar_t* folder : {L"Tidy\\a\\b", L"Tidy\\c", L"Bare\\x\\y"}) testing::MakeFolders(app + folder);
  MakeFile(app + L"Tidy\\c\\keep.txt");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kFolderRules));
  const unsigned tidy = rules::DerivedItemId(L"Rule App", L"Empty folders");
  const unsigned bare = rules::DerivedItemId(L"Rule App", L"Emptied");
  const std::wstring items = testing::ItemList({tidy, bare});

  const ProgramResult scan = Cli(L"scan --json --items " + items);
  EXPECT_EQ(scan.exitCode, 0u) << scan.err;
  EXPECT_EQ(
      testing::LinesOfType(scan.out, "trace"),
      Sorted({TraceLine(tidy, "Empty folders", app + L"Tidy\\", L"a\\", 0),
              TraceLine(tidy, "Empty folders", app + L"Tidy\\a\\", L"b\\", 0),
              TraceLine(bare, "Emptied", app, L"Bare\\", 0), TraceLine(bare, "Emptied", app + L"Bare\\", L"x\\", 0),
              TraceLine(bare, "Emptied", app + L"Bare\\x\\", L"y\\", 0)}))
      << "a scope with no file to take still lists the folders it takes; Tidy holds c, which holds a file";

  const ProgramResult erase = Cli(L"erase --json --items " + items);
  EXPECT_EQ(erase.exitCode, 0u) << erase.out;
  EXPECT_EQ(testing::LinesOfType(erase.out, "summary"),
            std::vector<std::string>{
                "{\"type\":\"summary\",\"traces\":5,\"deleted\":5,\"failed\":0,\"skipped\":0,\"bytes\":0}"});
  EXPECT_EQ(EntriesBelow(app), (std::vector<std::wstring>{L"Tidy\\", L"Tidy\\c\\", L"Tidy\\c\\keep.txt"}));
}

constexpr char kRegistryRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <detect key="HKCU\{key}\App"/>
      <item name="Registry">
        <registry key="HKCU\{key}\App\MRU"/>
        <registry key="HKEY_CURRENT_USER\{key}\App\Settings" value="LastFile"/>
        <registry key="HKCU\{key}\App\Recent\*\Files" all-values="true"/>
        <exclude key="HKCU\{key}\App\MRU\Pinned"/>
      </item>
    </application>
  </category>
</rules>
)";

TEST_F(UserRuleFile, RegistryKeysValuesAndWildcardKeysGoAndAnExcludedKeyStays) {
  const testing::TestKey key;
  key.SetText(L"App\\MRU", L"a", L"one");
  key.SetText(L"App\\MRU\\Sub", L"b", L"two");
  key.SetText(L"App\\MRU\\Pinned", L"c", L"three");
  key.SetText(L"App\\Settings", L"LastFile", L"x");
  key.SetText(L"App\\Settings", L"Window", L"y");
  key.SetText(L"App\\Recent\\Word\\Files", L"f1", L"letter.doc");
  key.SetText(L"App\\Recent\\Paint\\Files", L"f2", L"cat.png");
  key.SetText(L"App\\Recent\\Paint\\Other", L"o", L"stays");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", testing::Replaced(kRegistryRules, "{key}", key.Path())));
  const unsigned id = rules::DerivedItemId(L"Rule App", L"Registry");
  const std::wstring root = L"HKEY_CURRENT_USER\\" + key.Path() + L"\\";
  // Text values count their characters and the terminating null, two bytes each.
  const auto value = [&](std::wstring_view subKey, std::wstring_view name, std::wstring_view text) {
    return TraceLine(id, "Registry", root + std::wstring(subKey), std::wstring(name), (text.size() + 1) * 2, true);
  };
  std::vector<std::string> expected{value(L"App\\MRU", L"a", L"one"), value(L"App\\MRU\\Sub", L"b", L"two"),
                                    value(L"App\\Settings", L"LastFile", L"x"),
                                    value(L"App\\Recent\\Word\\Files", L"f1", L"letter.doc"),
                                    value(L"App\\Recent\\Paint\\Files", L"f2", L"cat.png")};
  std::sort(expected.begin(), expected.end());

  const ProgramResult scan = Cli(L"scan --json --items " + std::to_wstring(id));
  EXPECT_EQ(testing::LinesOfType(scan.out, "trace"), expected) << scan.out << scan.err;
  const ProgramResult erase = Cli(L"erase --json --items " + std::to_wstring(id));
  EXPECT_EQ(erase.exitCode, 0u) << erase.out;
  EXPECT_FALSE(key.ValueExists(L"App\\MRU", L"a"));
  EXPECT_FALSE(key.KeyExists(L"App\\MRU\\Sub"));
  EXPECT_TRUE(key.ValueExists(L"App\\MRU\\Pinned", L"c")) << "the excluded key stays, and the keys above it";
  EXPECT_FALSE(key.ValueExists(L"App\\Settings", L"LastFile"));
  EXPECT_TRUE(key.ValueExists(L"App\\Settings", L"Window")) << "only the value named";
  EXPECT_FALSE(key.ValueExists(L"App\\Recent\\Word\\Files", L"f1"));
  EXPECT_TRUE(key.KeyExists(L"App\\Recent\\Word\\Files")) << "all-values leaves the key";
  EXPECT_TRUE(key.ValueExists(L"App\\Recent\\Paint\\Other", L"o"));
}

constexpr char kWildcardRules[] = R"(<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <item name="Profile caches">
        <files folder="%Temp%\Rule App\Profiles\*\cache2\entries" masks="*" scope="recursive"/>
        <files folder="%Temp%\Rule App\Profile ?\Code Cache" masks="*"/>
      </item>
    </application>
  </category>
</rules>
)";

TEST_F(UserRuleFile, AWildcardInAMiddleFolderReachesEveryFolderItMatchesAndNoOther) {
  const std::wstring app = *this / L"Rule App\\";
  for (const wchar_t* file :
       {L"Profiles\\abc.default\\cache2\\entries\\1A2B", L"Profiles\\xyz.dev\\cache2\\entries\\sub\\3C4D",
        L"Profiles\\xyz.dev\\cache2\\index", L"Profiles\\xyz.dev\\places.sqlite", L"Profile 1\\Code Cache\\js",
        L"Profile 2\\Code Cache\\wasm", L"Profile 10\\Code Cache\\js", L"Profile 1\\Preferences"}) {
    MakeFile(app + file);
  }
  testing::MakeFolders(app + L"Profiles\\empty\\cache2\\");
  ASSERT_TRUE(WriteRules(L"lumenor-tests.xml", kWildcardRules));
  const unsigned id = rules::DerivedItemId(L"Rule App", L"Profile caches");
  const ProgramResult scan = Cli(L"scan --json --items " + std::to_wstring(id));
  EXPECT_EQ(testing::LinesOfType(scan.out, "trace"),
            Sorted({TraceLine(id, "Profile caches", app + L"Profile 1\\Code Cache\\", L"js", 5),
                    TraceLine(id, "Profile caches", app + L"Profile 2\\Code Cache\\", L"wasm", 5),
                    TraceLine(id, "Profile caches", app + L"Profiles\\abc.default\\cache2\\entries\\", L"1A2B", 5),
                    TraceLine(id, "Profile caches", app + L"Profiles\\xyz.dev\\cache2\\entries\\sub\\", L"3C4D", 5)}))
      << "? is one character: never Profile 10";
  EXPECT_EQ(Cli(L"erase --json --items " + std::to_wstring(id)).exitCode, 0u);
  EXPECT_EQ(EntriesBelow(app), (std::vector<std::wstring>{L"Profile 10\\",
                                                          L"Profile 10\\Code Cache\\",
                                                          L"Profile 10\\Code Cache\\js",
                                                          L"Profile 1\\",
                                                          L"Profile 1\\Code Cache\\",
                                                          L"Profile 1\\Preferences",
                                                          L"Profile 2\\",
                                                          L"Profile 2\\Code Cache\\",
                                                          L"Profiles\\",
                                                          L"Profiles\\abc.default\\",
                                                          L"Profiles\\abc.default\\cache2\\",
                                                          L"Profiles\\abc.default\\cache2\\entries\\",
                                                          L"Profiles\\empty\\",
                                                          L"Profiles\\empty\\cache2\\",
                                                          L"Profiles\\xyz.dev\\",
                                                          L"Profiles\\xyz.dev\\cache2\\",
                                                          L"Profiles\\xyz.dev\\cache2\\entries\\",
                                                          L"Profiles\\xyz.dev\\cache2\\entries\\sub\\",
                                                          L"Profiles\\xyz.dev\\cache2\\index",
                                                          L"Profiles\\xyz.dev\\places.sqlite"}));
}

// Line 9: an attribute that is no attribute of <files>; that action alone is left out.
// Line 13: an element the program does not know; the whole item is left out.
constexpr char kRulesWithFaults[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<rules version="1">
  <category name="Lumenor Tests">
    <application name="Rule App">
      <item name="Good">
        <files folder="%Temp%\Rule App\good" masks="*"/>
      </item>
      <item name="Half">
        <files folder="%Temp%\Rule App\half" masks="*" scop="recursive"/>
        <files folder="%Temp%\Rule App\half" masks="*.log"/>
      </item>
      <item name="Unknown">
        <exclud folder="%Temp%\Rule App\keep"/>
        <files folder="%Temp%\Rule App" masks="*"/>
      </item>
    </application>
  </category>
</rules>
)";

constexpr char kNotWellFormed[] = R"(<rules version="1">
  <category name="Broken">
    <application name="Broken App">
      <item name="Everything"><files folder="%Temp%\Rule App" masks="*"/></item>
  </category>
</rules>
)";

constexpr char kAnotherGoodFile[] = R"(<rules version="1">
  <category name="More Tests">
    <application name="Other App">
      <item name="Cache"><files folder="%Temp%\Other App" masks="*"/></item>
    </application>
  </category>
</rules>
)";

TEST_F(UserRuleFile, ABrokenFileIsReportedWithItsLineAndColumnAndEverythingElseLoads) {
  MakeFile(*this / L"Rule App\\half\\a.log");
  MakeFile(*this / L"Rule App\\half\\b.txt");
  ASSERT_TRUE(WriteRules(L"a-faults.xml", kRulesWithFaults));
  ASSERT_TRUE(WriteRules(L"b-broken.xml", kNotWellFormed));
  ASSERT_TRUE(WriteRules(L"c-good.xml", kAnotherGoodFile));
  ASSERT_TRUE(WriteRules(L"notes.txt", "not a rule file: never read"));

  const ProgramResult list = Cli(L"list --json");
  EXPECT_EQ(list.exitCode, 0u) << "problems of a rule file do not stop the program";
  const std::string faults = "warning: " + ToUtf8(RulesPath(L"a-faults.xml"));
  const std::string broken = "warning: " + ToUtf8(RulesPath(L"b-broken.xml"));
  EXPECT_EQ(
      testing::SplitLines(list.err),
      (std::vector<std::string>{faults + R"(:9:9: unknown attribute "scop" in <files>; left out)",
                                faults + R"(:13:9: unknown element <exclud> in <item>; item "Unknown" left out)",
                                broken + R"(:5:3: '</category>' does not close '<application>'; nothing loaded)"}));
  EXPECT_NE(ListedItem(list.out, "Rule App", "Good"), 0u) << list.out;
  EXPECT_EQ(ListedItem(list.out, "Rule App", "Half"), rules::DerivedItemId(L"Rule App", L"Half"));
  EXPECT_EQ(ListedItem(list.out, "Rule App", "Unknown"), 0u);
  EXPECT_EQ(ListedId(list.out, 1, "Broken App"), 0u) << "a file that is not well-formed loads nothing";
  EXPECT_EQ(ListedItem(list.out, "Other App", "Cache"), rules::DerivedItemId(L"Other App", L"Cache"))
      << "the next file loads";

  const unsigned half = rules::DerivedItemId(L"Rule App", L"Half");
  const ProgramResult scan = Cli(L"scan --json --items " + std::to_wstring(half));
  EXPECT_EQ(testing::LinesOfType(scan.out, "trace"),
            std::vector<std::string>{TraceLine(half, "Half", *this / L"Rule App\\half\\", L"a.log", 5)})
      << "the item cleans with the action that is left";
  EXPECT_EQ(scan.err, list.err) << "every command that loads the rules tells their problems";
}

}  // namespace
}  // namespace lumenor
