// winapp2.ini read into the rule model, on small files written here: entries and their
// groups, every key, flag, variable, exclusion and detection form, letter case, text
// encodings and line ends, and the counts a "rules check" shows.
#include "rules/Winapp2Reader.h"
#include "tests/rules/RuleSetViews.h"

#include <gtest/gtest.h>

#include <string>

namespace lumenor {
namespace {

using rules::Exclusion;
using rules::FileScope;
using rules::Hive;
using rules::Item;
using rules::ReadWinapp2;
using rules::Winapp2File;
using testing::FindApplication;
using testing::FindItem;
using testing::ProblemTexts;

Winapp2File Read(std::string_view text) { return ReadWinapp2(text, L"winapp2.ini"); }

// One entry around `keys`, with a key that keeps it loadable whatever the test adds.
std::string Entry(const std::string& name, const std::string& keys) {
  return "[" + name + " *]\r\nLangSecRef=3021\r\n" + keys + "RegKey99=HKCU\\Software\\Kept\r\n\r\n";
}

const Item& OnlyItem(const Winapp2File& file) {
  static const Item kNone;
  if (file.rules.applications.size() != 1 || file.rules.applications[0].items.size() != 1) {
    ADD_FAILURE() << "expected one item; problems: " << ::testing::PrintToString(ProblemTexts(file.rules));
    return kNone;
  }
  return file.rules.applications[0].items[0];
}

TEST(Winapp2Entries, EachEntryIsAnItemOfItsGroupsApplicationUnderCommunityRules) {
  const Winapp2File file = Read(
      "; Version: 260730\r\n"
      "; # of entries: 9\r\n"
      "\r\n"
      "[Temporary Internet Files *]\r\nLangSecRef=3001\r\nRegKey1=HKCU\\a\r\n"
      "[Edge Cache *]\r\nLangSecRef=3005\r\nRegKey1=HKCU\\a\r\n"
      "[Edge Cookies *]\r\nLangSecRef=3006\r\nRegKey1=HKCU\\a\r\n"
      "[Chrome Media *]\r\nLangSecRef=3029\r\nRegKey1=HKCU\\a\r\n"
      "[Odd Number *]\r\nLangSecRef=4711\r\nRegKey1=HKCU\\a\r\n"
      "[Minecraft *]\r\nSection=Games\r\nRegKey1=HKCU\\a\r\n"
      "[Both *]\r\nLangSecRef=3025\r\nSection=Games\r\nRegKey1=HKCU\\a\r\n"
      "[Lower Case Group *]\r\nSection=games\r\nRegKey1=HKCU\\a\r\n"
      "[No Group *]\r\nRegKey1=HKCU\\a\r\n");
  EXPECT_EQ(ProblemTexts(file.rules), std::vector<std::string>{});
  EXPECT_EQ(file.rules.origin, rules::RuleOrigin::kCommunity);
  EXPECT_EQ(file.counts.version, L"260730");
  const struct {
    const wchar_t* group;
    std::vector<std::wstring> items;
  } expected[] = {
      {L"Internet Explorer", {L"Temporary Internet Files"}},
      {L"Edge", {L"Edge Cache", L"Edge Cookies"}},
      {L"Google Chrome", {L"Chrome Media"}},
      {L"Applications", {L"Odd Number", L"No Group"}},
      {L"Games", {L"Minecraft", L"Both", L"Lower Case Group"}},
  };
  ASSERT_EQ(file.rules.applications.size(), std::size(expected));
  for (size_t i = 0; i < std::size(expected); ++i) {
    const rules::Application& application = file.rules.applications[i];
    EXPECT_EQ(application.name, expected[i].group);
    EXPECT_EQ(application.category, L"Community Rules");
    std::vector<std::wstring> names;
    for (const Item& item : application.items) {
      names.push_back(item.name);
      EXPECT_EQ(item.id, rules::DerivedItemId(expected[i].group, item.name)) << item.name;
      EXPECT_GE(item.id, rules::kFirstDerivedId);
    }
    EXPECT_EQ(names, expected[i].items) << application.name;
  }
  EXPECT_EQ(FindItem(file.rules, L"Edge Cookies")->where.line, 10);
}

TEST(Winapp2Entries, KeysAndFlagsAreReadWhateverTheirLetterCaseAndNumber) {
  const Winapp2File file = Read(
      "[Mixed Case *]\n"
      "langsecref=3024\n"
      "DETECTFILE=%appdata%\\Tool\n"
      "filekey=%LOCALAPPDATA%\\Tool|*.log|recurse\n"
      "FileKey7=%LocalAppData%\\Tool\\Cache|*|RemoveSelf\n"
      "FileKey3=%LocalAppData%\\Tool\\Empty|*|removeemptyfoldersonly|removeself\n"
      "REGKEY1=hkcu\\Software\\Tool\n"
      "excludekey1=path|%LocalAppData%\\Tool\\Keep\\\n"
      "default=TRUE\n");
  const Item& item = OnlyItem(file);
  EXPECT_EQ(file.rules.applications[0].name, L"Utilities");
  EXPECT_EQ(item.detection.paths, std::vector<std::wstring>{L"%appdata%\\Tool"});
  ASSERT_EQ(item.files.size(), 3u);
  EXPECT_EQ(item.files[0].scope, FileScope::kRecursive);
  EXPECT_EQ(item.files[1].scope, FileScope::kRemoveSelf);
  EXPECT_EQ(item.files[2].scope, FileScope::kEmptyFolders);
  ASSERT_EQ(item.registry.size(), 1u);
  EXPECT_EQ(item.registry[0].key.hive, Hive::kCurrentUser);
  ASSERT_EQ(item.exclusions.size(), 1u);
  EXPECT_EQ(item.exclusions[0].kind, Exclusion::Kind::kFolder);
  EXPECT_TRUE(item.tickedByDefault);
}

TEST(Winapp2FileKeys, FolderMasksAndFlagsAreKeptAsWrittenWithTheirLines) {
  const Winapp2File file = Read(Entry("Files",
                                      "FileKey1=%LocalAppData%\\App|*\r\n"
                                      "FileKey2=%LocalAppData%\\App\\|*.*|RECURSE\r\n"
                                      "FileKey3=%WinDir%\\Microsoft.NET\\Framework*\\*\\*\\Logs|*|REMOVESELF\r\n"
                                      "FileKey4=%AppData%\\DropBox| Filecache.db ; SigStore.db;;LOG\r\n"
                                      "FileKey5=%AppData%\\App|*.log|RECURSE|REMOVESELF\r\n"
                                      "FileKey6=%AppData%\\App|*.tmp|RECURSE|\r\n"
                                      "FileKey7=%SystemDrive%|AdwCleaner*.txt\r\n"
                                      "FileKey8=%AppData%\\App|d?ta.???\r\n"));
  const Item& item = OnlyItem(file);
  EXPECT_EQ(ProblemTexts(file.rules), std::vector<std::string>{});
  struct Expected {
    const wchar_t* folder;
    std::vector<std::wstring> masks;
    FileScope scope;
  };
  const Expected expected[] = {
      {L"%LocalAppData%\\App", {L"*"}, FileScope::kDirect},
      {L"%LocalAppData%\\App", {L"*.*"}, FileScope::kRecursive},
      {L"%WinDir%\\Microsoft.NET\\Framework*\\*\\*\\Logs", {L"*"}, FileScope::kRemoveSelf},
      {L"%AppData%\\DropBox", {L"Filecache.db", L"SigStore.db", L"LOG"}, FileScope::kDirect},
      {L"%AppData%\\App", {L"*.log"}, FileScope::kRemoveSelf},
      {L"%AppData%\\App", {L"*.tmp"}, FileScope::kRecursive},
      {L"%SystemDrive%", {L"AdwCleaner*.txt"}, FileScope::kDirect},
      {L"%AppData%\\App", {L"d?ta.???"}, FileScope::kDirect},
  };
  ASSERT_EQ(item.files.size(), std::size(expected));
  for (size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(item.files[i].folder, expected[i].folder) << "FileKey" << i + 1;
    EXPECT_EQ(item.files[i].masks, expected[i].masks) << "FileKey" << i + 1;
    EXPECT_EQ(item.files[i].scope, expected[i].scope) << "FileKey" << i + 1;
    EXPECT_EQ(item.files[i].where.line, static_cast<int>(i) + 3) << "FileKey" << i + 1;
    EXPECT_EQ(item.files[i].where.file, L"winapp2.ini");
  }
}

TEST(Winapp2FileKeys, EveryVariableTheFileUsesIsKnown) {
  const char* const variables[] = {
      "%AppData%",       "%LocalAppData%",       "%ProgramData%", "%ProgramFiles%", "%UserProfile%",
      "%WinDir%",        "%CommonProgramFiles%", "%SystemDrive%", "%Public%",       "%Temp%",
      "%CommonAppData%", "%LocalLowAppData%",    "%Documents%",   "%Pictures%",     "%Music%",
      "%Video%",         "%AllUsersProfile%"};
  std::string keys;
  for (const char* variable : variables) keys += std::string("FileKey=") + variable + "\\App|*.log\r\n";
  keys += "FileKey=%SystemDrive%\\Users\\%UserName%\\App|*.log\r\n";
  const Winapp2File file = Read(Entry("Variables", keys));
  EXPECT_EQ(ProblemTexts(file.rules), std::vector<std::string>{});
  EXPECT_EQ(OnlyItem(file).files.size(), std::size(variables) + 1);
}

TEST(Winapp2FileKeys, VeryBroadRulesAreLoadedAsWrittenForTheFolderGuardToJudge) {
  const Winapp2File file = Read(
      Entry("GnuCash", "FileKey1=%UserProfile%\\*|*.gnucash.*.gnucash;*.gnucash.*.log;translog.*.log|RECURSE\r\n") +
      Entry("ComboFix", "FileKey2=%SystemDrive%\\*.tmp|*|REMOVESELF\r\n"));
  EXPECT_EQ(ProblemTexts(file.rules), std::vector<std::string>{});
  EXPECT_EQ(FindItem(file.rules, L"GnuCash")->files.at(0).folder, L"%UserProfile%\\*");
  EXPECT_EQ(FindItem(file.rules, L"ComboFix")->files.at(0).scope, FileScope::kRemoveSelf);
}

TEST(Winapp2RegKeys, AKeyOrOneOfItsValuesInEveryHive) {
  const Winapp2File file = Read(
      "[Registry *]\r\n"
      "RegKey1=HKCU\\Software\\App\\MRU\r\n"
      "RegKey2=HKLM\\Software\\CBSTEST|CBSTestWDSLogFile\r\n"
      "RegKey3=HKU\\.DEFAULT\\Software\\App\\\r\n"
      "RegKey4=HKCR\\Local Settings\\Software\\App|Last|Used\r\n"
      "RegKey5=HKCC\\Software\\App|\r\n"
      "RegKey6=HKEY_CURRENT_USER\\Software\\Long Name\r\n");
  const Item& item = OnlyItem(file);
  const struct {
    Hive hive;
    const wchar_t* path;
    std::optional<std::wstring> value;
  } expected[] = {
      {Hive::kCurrentUser, L"Software\\App\\MRU", std::nullopt},
      {Hive::kLocalMachine, L"Software\\CBSTEST", L"CBSTestWDSLogFile"},
      {Hive::kUsers, L".DEFAULT\\Software\\App", std::nullopt},
      {Hive::kClassesRoot, L"Local Settings\\Software\\App", L"Last|Used"},  // a value name may hold '|'
      {Hive::kCurrentConfig, L"Software\\App", L""},                         // the default value, not the key
      {Hive::kCurrentUser, L"Software\\Long Name", std::nullopt},
  };
  ASSERT_EQ(item.registry.size(), std::size(expected));
  for (size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(item.registry[i].key.hive, expected[i].hive) << "RegKey" << i + 1;
    EXPECT_EQ(item.registry[i].key.path, expected[i].path) << "RegKey" << i + 1;
    EXPECT_EQ(item.registry[i].value, expected[i].value) << "RegKey" << i + 1;
    EXPECT_EQ(item.registry[i].where.line, static_cast<int>(i) + 2);
  }
}

TEST(Winapp2ExcludeKeys, FilePathAndRegFormsBecomeExclusions) {
  const Winapp2File file =
      Read(Entry("Office",
                 "FileKey1=%AppData%\\Microsoft\\Office\\Recent|*|RECURSE\r\n"
                 "ExcludeKey1=FILE|%AppData%\\Microsoft\\Office\\Recent\\|Welcome to Word.LNK;Welcome to Visio.LNK\r\n"
                 "ExcludeKey2=PATH|%UserProfile%\\Documents\\*\\|~*.doc*.*\r\n"
                 "ExcludeKey3=PATH|%AppData%\\Microsoft\\Word\\STARTUP\\\r\n"
                 "ExcludeKey4=REG|HKCU\\Software\\Microsoft\\Windows\\Shell\\Bags\\1\\Desktop\r\n"
                 "ExcludeKey5=FILE|%ProgramFiles%\\Realtek\\*\\|InstCtrl.txt\r\n"));
  const Item& item = OnlyItem(file);
  EXPECT_EQ(ProblemTexts(file.rules), std::vector<std::string>{});
  ASSERT_EQ(item.exclusions.size(), 5u);
  const Exclusion& names = item.exclusions[0];
  EXPECT_EQ(names.kind, Exclusion::Kind::kFiles);
  EXPECT_EQ(names.folder, L"%AppData%\\Microsoft\\Office\\Recent");
  EXPECT_EQ(names.masks, (std::vector<std::wstring>{L"Welcome to Word.LNK", L"Welcome to Visio.LNK"}));
  EXPECT_EQ(item.exclusions[1].kind, Exclusion::Kind::kFolder);
  EXPECT_EQ(item.exclusions[1].folder, L"%UserProfile%\\Documents\\*");
  EXPECT_EQ(item.exclusions[1].masks, std::vector<std::wstring>{L"~*.doc*.*"});
  EXPECT_EQ(item.exclusions[2].kind, Exclusion::Kind::kFolder);
  EXPECT_EQ(item.exclusions[2].folder, L"%AppData%\\Microsoft\\Word\\STARTUP");
  EXPECT_TRUE(item.exclusions[2].masks.empty()) << "the whole folder";
  EXPECT_EQ(item.exclusions[3].kind, Exclusion::Kind::kRegistryKey);
  EXPECT_EQ(item.exclusions[3].key.hive, Hive::kCurrentUser);
  EXPECT_EQ(item.exclusions[3].key.path, L"Software\\Microsoft\\Windows\\Shell\\Bags\\1\\Desktop");
  EXPECT_EQ(item.exclusions[4].folder, L"%ProgramFiles%\\Realtek\\*");
  EXPECT_EQ(item.exclusions[4].where.line, 8);
}

TEST(Winapp2Detection, RegistryKeysFilesWindowsVersionsAndOldTests) {
  const Winapp2File file = Read(
      "[Detected *]\r\nLangSecRef=3021\r\n"
      "Detect=HKCU\\Software\\App\r\n"
      "Detect2=HKLM\\Software\\App\r\n"
      "DetectFile=%ProgramFiles%\\App\r\n"
      "DetectFile2=%LocalAppData%\\Packages\\App_*\r\n"
      "DetectOS=6.2|\r\n"
      "SpecialDetect=det_chrome\r\n"
      "FileKey1=%LocalAppData%\\App|*.log\r\n"
      "[Old Windows *]\r\nLangSecRef=3025\r\nDetectOS=|6.1\r\nFileKey1=%WinDir%\\Old|*.log\r\n"
      "[Between *]\r\nLangSecRef=3025\r\nDetectOS=6.1|10.0\r\nFileKey1=%WinDir%\\Old|*.log\r\n"
      "[Always *]\r\nLangSecRef=3025\r\nFileKey1=%WinDir%\\Temp|*.log\r\n");
  EXPECT_EQ(ProblemTexts(file.rules), std::vector<std::string>{});
  const rules::Detection& detected = FindItem(file.rules, L"Detected")->detection;
  ASSERT_EQ(detected.keys.size(), 2u);
  EXPECT_EQ(detected.keys[0].hive, Hive::kCurrentUser);
  EXPECT_EQ(detected.keys[1].hive, Hive::kLocalMachine);
  EXPECT_EQ(detected.keys[1].path, L"Software\\App");
  EXPECT_EQ(detected.paths, (std::vector<std::wstring>{L"%ProgramFiles%\\App", L"%LocalAppData%\\Packages\\App_*"}));
  EXPECT_EQ(detected.minimumWindows, (rules::WindowsVersion{6, 2}));
  EXPECT_EQ(detected.maximumWindows, std::nullopt);
  EXPECT_EQ(detected.special, std::vector<std::wstring>{L"DET_CHROME"});

  const rules::Detection& old = FindItem(file.rules, L"Old Windows")->detection;
  EXPECT_EQ(old.minimumWindows, std::nullopt);
  EXPECT_EQ(old.maximumWindows, (rules::WindowsVersion{6, 1}));
  EXPECT_TRUE(old.Empty()) << "a Windows range alone tests nothing on the machine";
  const rules::Detection& between = FindItem(file.rules, L"Between")->detection;
  EXPECT_EQ(between.minimumWindows, (rules::WindowsVersion{6, 1}));
  EXPECT_EQ(between.maximumWindows, (rules::WindowsVersion{10, 0}));
  EXPECT_TRUE(FindItem(file.rules, L"Always")->detection.Empty());
}

TEST(Winapp2Entries, AWarningIsKeptAndDefaultTicksOnlyWhenTrue) {
  const Winapp2File file =
      Read(Entry("Warned", "Warning=This will also delete all app-specific settings.\r\n") +
           Entry("Ticked", "Default=True\r\n") + Entry("Unticked", "Default=False\r\n") + Entry("Silent", ""));
  EXPECT_EQ(FindItem(file.rules, L"Warned")->warning, L"This will also delete all app-specific settings.");
  EXPECT_FALSE(FindItem(file.rules, L"Warned")->tickedByDefault);
  EXPECT_TRUE(FindItem(file.rules, L"Ticked")->tickedByDefault);
  EXPECT_FALSE(FindItem(file.rules, L"Unticked")->tickedByDefault);
  EXPECT_TRUE(FindItem(file.rules, L"Silent")->warning.empty());
  EXPECT_EQ(file.counts.warnings, 1);
}

TEST(Winapp2Text, AByteOrderMarkAndEitherLineEndReadTheSame) {
  const std::string lines[] = {"; Version: 250101",
                               "[Caf\xC3\xA9 Cache *]",
                               "LangSecRef=3022",
                               "FileKey1=%LocalAppData%\\Caf\xC3\xA9|*.tmp",
                               "[Second *]",
                               "Section=Games",
                               "RegKey1=HKCU\\Software\\Second"};
  std::string crlf;
  std::string lf;
  for (const std::string& line : lines) {
    crlf += line + "\r\n";
    lf += line + "\n";
  }
  for (const std::string& text : {crlf, lf, "\xEF\xBB\xBF" + crlf, "\xEF\xBB\xBF" + lf, lf.substr(0, lf.size() - 1)}) {
    const Winapp2File file = Read(text);
    EXPECT_EQ(ProblemTexts(file.rules), std::vector<std::string>{});
    EXPECT_EQ(file.counts.version, L"250101");
    const Item* cafe = FindItem(file.rules, L"Caf\u00e9 Cache");
    ASSERT_NE(cafe, nullptr);
    EXPECT_EQ(cafe->files.at(0).folder, L"%LocalAppData%\\Caf\u00e9");
    EXPECT_EQ(cafe->files.at(0).where.line, 4);
    ASSERT_NE(FindItem(file.rules, L"Second"), nullptr);
    EXPECT_EQ(FindItem(file.rules, L"Second")->registry.at(0).where.line, 7);
  }
}

TEST(Winapp2Counts, KeysReadAndRefusedByKindAndEntriesReadAndLoaded) {
  const Winapp2File file = Read(
      "[One *]\nDetect=HKCU\\Software\\One\nDetectFile=%AppData%\\One\nDetectFile2=%Bad%\\One\n"
      "FileKey1=%AppData%\\One|*.log\nFileKey2=%AppData%\\One\nRegKey1=HKCU\\Software\\One\nRegKey2=HKXX\\One\n"
      "ExcludeKey1=FILE|%AppData%\\One\\|keep.log\nWarning=Careful\n"
      "[Two *]\nRegKey1=HKLM\\Software\\Two\n"
      "[Empty *]\nLangSecRef=3021\n");
  EXPECT_EQ(file.counts.entriesRead, 3);
  EXPECT_EQ(file.counts.entriesLoaded, 2);
  EXPECT_EQ(file.counts.fileKeys.read, 2);
  EXPECT_EQ(file.counts.fileKeys.refused, 1);
  EXPECT_EQ(file.counts.regKeys.read, 3);
  EXPECT_EQ(file.counts.regKeys.refused, 1);
  EXPECT_EQ(file.counts.excludeKeys.read, 1);
  EXPECT_EQ(file.counts.excludeKeys.refused, 0);
  EXPECT_EQ(file.counts.detects.read, 1);
  EXPECT_EQ(file.counts.detectFiles.read, 2);
  EXPECT_EQ(file.counts.detectFiles.refused, 1);
  EXPECT_EQ(file.counts.warnings, 1);
  EXPECT_TRUE(file.counts.version.empty());
}

}  // namespace
}  // namespace lumenor
