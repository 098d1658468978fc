// Our XML rule files read into the rule model: every element and attribute, every fault
// with its line, column and what it leaves out, item ids for the built-in rules and for
// other files, and the encodings a file may be saved in.
#include "rules/XmlRuleReader.h"

#include "base/TextEncoding.h"
#include "tests/xml/XmlTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace lumenor::rules {
namespace {

constexpr wchar_t kFile[] = L"C:\\Lumenor\\rules\\mine.xml";

std::string Utf8(std::wstring_view text) { return ToUtf8(text); }

std::string At(const SourcePosition& where) { return std::to_string(where.line) + ":" + std::to_string(where.column); }

std::string Joined(const std::vector<std::wstring>& parts, std::string_view separator) {
  std::string joined;
  for (const std::wstring& part : parts) {
    if (!joined.empty()) joined += separator;
    joined += Utf8(part);
  }
  return joined;
}

std::string KeyText(const RegistryKey& key) {
  static constexpr const char* kHives[] = {"HKCU", "HKLM", "HKU", "HKCR", "HKCC"};
  return std::string(kHives[static_cast<int>(key.hive)]) + "\\" + Utf8(key.path);
}

std::string VersionText(const std::optional<WindowsVersion>& version) {
  return version ? std::to_string(version->major) + "." + std::to_string(version->minor) : "-";
}

void DumpDetection(std::ostream& out, const std::string& indent, const Detection& detection) {
  for (const RegistryKey& key : detection.keys) out << indent << "detect key " << KeyText(key) << "\n";
  for (const std::wstring& path : detection.paths) out << indent << "detect path " << Utf8(path) << "\n";
  if (detection.minimumWindows || detection.maximumWindows) {
    out << indent << "windows " << VersionText(detection.minimumWindows) << " to "
        << VersionText(detection.maximumWindows) << "\n";
  }
}

void DumpFiles(std::ostream& out, const std::string& indent, const FileAction& files) {
  static constexpr const char* kScopes[] = {"direct", "recursive", "remove-self", "empty-folders"};
  out << indent << "files " << Utf8(files.folder) << " [" << Joined(files.masks, ";") << "] "
      << kScopes[static_cast<int>(files.scope)] << (files.inLocalTwin ? " local" : "") << " @" << At(files.where)
      << "\n";
}

void DumpNamed(std::ostream& out, const std::string& indent, const NamedAction& named) {
  out << indent << "action " << Utf8(named.name) << " " << Utf8(named.file);
  for (const auto& [parameter, value] : named.parameters) out << " " << Utf8(parameter) << "=" << Utf8(value);
  out << " @" << At(named.where) << "\n";
}

// Every field of the model, one line each, so that a difference shows where it is.
std::string Dump(const RuleSet& rules) {
  std::ostringstream out;
  for (const Application& application : rules.applications) {
    out << "application " << Utf8(application.name) << " in " << Utf8(application.category) << " @"
        << At(application.where) << "\n";
    DumpDetection(out, "  ", application.detection);
    for (const std::wstring& process : application.processes) out << "  running " << Utf8(process) << "\n";
    for (const std::wstring& lockFile : application.lockFiles) out << "  lockfile " << Utf8(lockFile) << "\n";
    for (const Item& item : application.items) {
      out << "  item " << item.id << " " << Utf8(item.name) << (item.tickedByDefault ? " ticked" : "") << " @"
          << At(item.where) << "\n";
      if (!item.warning.empty()) out << "    warning " << Utf8(item.warning) << "\n";
      DumpDetection(out, "    ", item.detection);
      for (const FileAction& files : item.files) DumpFiles(out, "    ", files);
      for (const RegistryAction& registry : item.registry) {
        out << "    registry " << KeyText(registry.key) << (registry.value ? " value=" + Utf8(*registry.value) : "")
            << (registry.allValues ? " all-values" : "") << " @" << At(registry.where) << "\n";
      }
      for (const ProfileAction& profile : item.profiles) {
        out << "    profiles " << (profile.kind == ProfileKind::kChromium ? "chromium " : "mozilla ")
            << Utf8(profile.root) << (profile.localRoot.empty() ? "" : " local " + Utf8(profile.localRoot)) << " @"
            << At(profile.where) << "\n";
        for (const FileAction& files : profile.files) DumpFiles(out, "      ", files);
        for (const NamedAction& named : profile.named) DumpNamed(out, "      ", named);
      }
      for (const NamedAction& named : item.named) DumpNamed(out, "    ", named);
      for (const Exclusion& exclusion : item.exclusions) {
        static constexpr const char* kKinds[] = {"files", "folder", "key"};
        out << "    exclude " << kKinds[static_cast<int>(exclusion.kind)] << " "
            << (exclusion.kind == Exclusion::Kind::kRegistryKey ? KeyText(exclusion.key) : Utf8(exclusion.folder))
            << " [" << Joined(exclusion.masks, ";") << "] @" << At(exclusion.where) << "\n";
      }
    }
  }
  return out.str();
}

// "line:column: message", one a problem.
std::vector<std::string> Problems(const RuleSet& rules) {
  std::vector<std::string> problems;
  for (const Problem& problem : rules.problems) problems.push_back(At(problem.where) + ": " + Utf8(problem.message));
  return problems;
}

// What loaded, short: "Tool{Kept:f1,Bad:f2x1}" (files, registry, named actions, profiles, exclusions).
std::string Outline(const RuleSet& rules) {
  std::string outline;
  for (const Application& application : rules.applications) {
    if (!outline.empty()) outline += ' ';
    outline += Utf8(application.name);
    outline += '{';
    for (size_t index = 0; index < application.items.size(); ++index) {
      const Item& item = application.items[index];
      if (index > 0) outline += ',';
      outline += Utf8(item.name);
      outline += ':';
      const std::pair<char, size_t> counts[] = {{'f', item.files.size()},
                                                {'r', item.registry.size()},
                                                {'n', item.named.size()},
                                                {'p', item.profiles.size()},
                                                {'x', item.exclusions.size()}};
      for (const auto& [letter, count] : counts) {
        if (count == 0) continue;
        outline += letter;
        outline += std::to_string(count);
      }
    }
    outline += "}";
  }
  return outline;
}

RuleSet Read(std::string_view document, RuleOrigin origin = RuleOrigin::kUserFile) {
  return ReadXmlRules(document, kFile, origin);
}

// The example of the rule format, as the built-in rules would write it.
constexpr char kExample[] = R"(<?xml version="1.0" encoding="UTF-8"?>
<rules version="1">
  <category name="Applications Today">
    <application name="Notepad++">
      <detect path="%AppData%\Notepad++"/>                 <!-- a file or folder; * in the last name -->
      <detect key="HKCU\Software\Notepad++"/>              <!-- any one detect found: detected -->
      <windows min="6.1" max="10.0"/>                      <!-- optional: Windows versions (major.minor) -->
      <running process="notepad++.exe"/>                   <!-- while it runs, nothing of it is touched -->
      <running lockfile="%AppData%\Notepad++\session.lock"/>  <!-- a file it holds open while it runs -->
      <item name="Session" id="3001" default="false">
        <warning>The files open in Notepad++ are not reopened next time.</warning>
        <files folder="%AppData%\Notepad++" masks="session.xml"/>
      </item>
      <item name="Backups of unsaved files" id="3002">
        <files folder="%AppData%\Notepad++\backup\*" masks="*.tmp;*.bak" scope="recursive"/>
        <exclude files="%AppData%\Notepad++\backup" masks="keep.bak"/>
        <exclude folder="%AppData%\Notepad++\backup\pinned"/>
      </item>
    </application>
    <application name="7-Zip">
      <detect key="HKCU\Software\7-Zip"/>
      <item name="History" id="3010" default="true">
        <registry key="HKCU\Software\7-Zip\FM" value="FolderHistory"/>
        <registry key="HKCU\Software\7-Zip\Compression" value="ArcHistory"/>
      </item>
    </application>
  </category>
  <category name="Web Browsers Today">
    <application name="Google Chrome">
      <detect path="%LocalAppData%\Google\Chrome\User Data"/>
      <running process="chrome.exe"/>
      <running lockfile="%LocalAppData%\Google\Chrome\User Data\lockfile"/>
      <item name="Cookies" id="1002" default="true">
        <profiles kind="chromium" root="%LocalAppData%\Google\Chrome\User Data">
          <action name="chromium-cookies" file="Network\Cookies"/>
        </profiles>
      </item>
    </application>
    <application name="Mozilla Firefox">
      <detect path="%AppData%\Mozilla\Firefox\profiles.ini"/>
      <running process="firefox.exe"/>
      <item name="Cache" id="1101" default="true">
        <profiles kind="mozilla" root="%AppData%\Mozilla\Firefox" local-root="%LocalAppData%\Mozilla\Firefox">
          <files folder="cache2" masks="*" scope="remove-self" local="true"/>
        </profiles>
      </item>
    </application>
  </category>
</rules>
)";

TEST(XmlRuleReader, TheFormatsExampleReadsIntoTheModelItDescribes) {
  const RuleSet rules = Read(kExample, RuleOrigin::kBuiltIn);
  EXPECT_EQ(Problems(rules), std::vector<std::string>{});
  EXPECT_EQ(rules.origin, RuleOrigin::kBuiltIn);
  EXPECT_EQ(Dump(rules),
            "application Notepad++ in Applications Today @4:5\n"
            "  detect key HKCU\\Software\\Notepad++\n"
            "  detect path %AppData%\\Notepad++\n"
            "  windows 6.1 to 10.0\n"
            "  running notepad++.exe\n"
            "  lockfile %AppData%\\Notepad++\\session.lock\n"
            "  item 3001 Session @10:7\n"
            "    warning The files open in Notepad++ are not reopened next time.\n"
            "    files %AppData%\\Notepad++ [session.xml] direct @12:9\n"
            "  item 3002 Backups of unsaved files @14:7\n"
            "    files %AppData%\\Notepad++\\backup\\* [*.tmp;*.bak] recursive @15:9\n"
            "    exclude files %AppData%\\Notepad++\\backup [keep.bak] @16:9\n"
            "    exclude folder %AppData%\\Notepad++\\backup\\pinned [] @17:9\n"
            "application 7-Zip in Applications Today @20:5\n"
            "  detect key HKCU\\Software\\7-Zip\n"
            "  item 3010 History ticked @22:7\n"
            "    registry HKCU\\Software\\7-Zip\\FM value=FolderHistory @23:9\n"
            "    registry HKCU\\Software\\7-Zip\\Compression value=ArcHistory @24:9\n"
            "application Google Chrome in Web Browsers Today @29:5\n"
            "  detect path %LocalAppData%\\Google\\Chrome\\User Data\n"
            "  running chrome.exe\n"
            "  lockfile %LocalAppData%\\Google\\Chrome\\User Data\\lockfile\n"
            "  item 1002 Cookies ticked @33:7\n"
            "    profiles chromium %LocalAppData%\\Google\\Chrome\\User Data @34:9\n"
            "      action chromium-cookies Network\\Cookies @35:11\n"
            "application Mozilla Firefox in Web Browsers Today @39:5\n"
            "  detect path %AppData%\\Mozilla\\Firefox\\profiles.ini\n"
            "  running firefox.exe\n"
            "  item 1101 Cache ticked @42:7\n"
            "    profiles mozilla %AppData%\\Mozilla\\Firefox local %LocalAppData%\\Mozilla\\Firefox @43:9\n"
            "      files cache2 [*] remove-self local @44:11\n");
  for (const Application& application : rules.applications) {
    EXPECT_EQ(application.where.file, kFile);
    for (const Item& item : application.items) EXPECT_EQ(item.where.file, kFile);
  }
}

TEST(XmlRuleReader, EveryOtherFormOfTheFormatIsRead) {
  const RuleSet rules = Read(R"(<rules version="1">
  <category name="Forms">
    <application name="Tool">
      <windows max="6.3"/>
      <item name="Everything" default="false">
        <detect path="%ProgramFiles%\Tool\tool*.exe"/>
        <detect key="HKLM\Software\Tool"/>
        <windows min="10.0"/>
        <files folder="%Temp%\Tool" masks="  a.log ;; b?.txt ;" scope="direct" local="false"/>
        <files folder="%LocalAppData%\Tool\*\cache" scope="empty-folders"/>
        <registry key="HKEY_CURRENT_USER\Software\Tool\MRU\" all-values="true"/>
        <registry key="HKU\*\Software\Tool" value=""/>
        <action name="ini-values" file="%AppData%\Tool\tool.ini" keys="list;times" section="Recent"/>
        <exclude key="HKCU\Software\Tool\MRU\Pinned"/>
        <exclude folder="%LocalAppData%\Tool\keep" masks="*.db"/>
        <profiles kind="chromium" root="%LocalAppData%\Tool\User Data">
          <files folder="" masks="Visited Links"/>
          <files folder="Cache\Cache_Data" masks="*" scope="recursive"/>
          <action name="chromium-form-data" file="Web Data"/>
        </profiles>
        <profiles kind="mozilla" root="%AppData%\Tool">
          <action name="firefox-history" file="places.sqlite"/>
          <action name="firefox-cookies" file="cookies.sqlite"/>
        </profiles>
      </item>
    </application>
  </category>
</rules>)");
  EXPECT_EQ(Problems(rules), std::vector<std::string>{});
  EXPECT_EQ(Dump(rules),
            "application Tool in Forms @3:5\n"
            "  windows - to 6.3\n"
            "  item " +
                std::to_string(DerivedItemId(L"Tool", L"Everything")) +
                " Everything @5:7\n"
                "    detect key HKLM\\Software\\Tool\n"
                "    detect path %ProgramFiles%\\Tool\\tool*.exe\n"
                "    windows 10.0 to -\n"
                "    files %Temp%\\Tool [a.log;b?.txt] direct @9:9\n"
                "    files %LocalAppData%\\Tool\\*\\cache [] empty-folders @10:9\n"
                "    registry HKCU\\Software\\Tool\\MRU all-values @11:9\n"
                "    registry HKU\\*\\Software\\Tool value= @12:9\n"
                "    profiles chromium %LocalAppData%\\Tool\\User Data @16:9\n"
                "      files  [Visited Links] direct @17:11\n"
                "      files Cache\\Cache_Data [*] recursive @18:11\n"
                "      action chromium-form-data Web Data @19:11\n"
                "    profiles mozilla %AppData%\\Tool @21:9\n"
                "      action firefox-history places.sqlite @22:11\n"
                "      action firefox-cookies cookies.sqlite @23:11\n"
                "    action ini-values %AppData%\\Tool\\tool.ini section=Recent keys=list;times @13:9\n"
                "    exclude key HKCU\\Software\\Tool\\MRU\\Pinned [] @14:9\n"
                "    exclude folder %LocalAppData%\\Tool\\keep [*.db] @15:9\n");
}

// A rule file with the item "Kept" that always loads, then item "Bad": a good <files> on
// line 6 and the element under test from line 7, column 9.
std::string WithBadItem(std::string_view lines) {
  return std::string(
             "<rules version=\"1\">\n"
             "  <category name=\"Tests\">\n"
             "    <application name=\"Tool\">\n"
             "      <item name=\"Kept\"><files folder=\"%Temp%\" masks=\"*.tmp\"/></item>\n"
             "      <item name=\"Bad\">\n"
             "        <files folder=\"%Temp%\" masks=\"*.log\"/>\n"
             "        ") +
         std::string(lines) +
         "\n"
         "      </item>\n"
         "    </application>\n"
         "  </category>\n"
         "</rules>\n";
}

struct FaultCase {
  const char* lines;
  std::vector<std::string> problems;
  const char* loaded;
};

void ExpectFaults(const std::vector<FaultCase>& cases) {
  for (const FaultCase& fault : cases) {
    const RuleSet rules = Read(WithBadItem(fault.lines));
    EXPECT_EQ(Problems(rules), fault.problems) << fault.lines;
    EXPECT_EQ(Outline(rules), fault.loaded) << fault.lines;
  }
}

TEST(XmlRuleFaults, AFaultyActionIsLeftOutAndTheRestOfItsItemLoads) {
  ExpectFaults({
      {R"(<files folder="%Temp%" masks="*.bak" scop="recursive"/>)",
       {R"(7:9: unknown attribute "scop" in <files>; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<registry value="x"/>)", {R"(7:9: <registry> has no "key" attribute; left out)"}, "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="%Temp%" masks="*.bak" scope="deep"/>)",
       {R"(7:9: <files> scope: "deep" is none of direct, recursive, remove-self and empty-folders; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="%Package%\x" masks="*"/>)",
       {R"(7:9: <files> folder: unknown variable %Package%; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="Temp\x" masks="*"/>)",
       {R"(7:9: <files> folder: "Temp\x" is relative: it must start with a folder variable such as %LocalAppData%; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="%UserName%\x" masks="*"/>)",
       {R"(7:9: <files> folder: "%UserName%\x" is relative: it must start with a folder variable such as %LocalAppData%; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="%Temp%\..\Windows" masks="*"/>)",
       {R"(7:9: <files> folder: "%Temp%\..\Windows" holds a "." or ".." name; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<registry key="HKXX\Software\Tool"/>)",
       {R"(7:9: <registry> key: unknown hive "HKXX"; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<registry key="HKCU\"/>)",
       {R"(7:9: <registry> key: "HKCU\" names a whole hive; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<action name="chrome-history" file="%Temp%\h"/>)",
       {R"(7:9: unknown action "chrome-history"; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<action name="firefox-history" file="%Temp%\places.sqlite" section="x"/>)",
       {R"(7:9: action "firefox-history" takes no parameter "section"; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<action name="ini-values" file="%AppData%\t.ini" section="Recent"/>)",
       {R"(7:9: action "ini-values" needs parameter "keys"; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="%Temp%" masks="*" local="true"/>)",
       {R"(7:9: <files> local="true" is only allowed inside <profiles kind="mozilla">; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="%Temp%" masks="sub\*.log"/>)",
       {R"(7:9: <files> masks: mask "sub\*.log" names a path, not a file name; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="%Temp%" masks="a.log;???????????"/>)",
       {R"(7:9: <files> masks: mask "???????????" has more than 10 wildcards; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<files folder="%Temp%" masks=" ; "/>)",
       {R"(7:9: <files> masks: names no file mask; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<registry key="HKCU\Software\Tool" value="x" all-values="true"/>)",
       {R"(7:9: <registry> takes either value or all-values="true", not both; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<action name="firefox-cookies" file="%AppData%\M\Profiles\*.sqlite"/>)",
       {R"(7:9: <action> file: "%AppData%\M\Profiles\*.sqlite" holds a wildcard in "*.sqlite", where none is allowed; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
  });
}

// An action edits one file in each folder its file's folders reach: "_side_profiles\*".
TEST(XmlRuleFaults, AnActionsFileMayHoldWildcardsInItsFoldersOnly) {
  ExpectFaults({
      {R"(<action name="chromium-cookies" file="%AppData%\O\_side_profiles\*\Network\Cookies"/>)",
       {},
       "Tool{Kept:f1,Bad:f1n1}"},
  });
}

// Inside <profiles> paths are relative to each profile; the profile action goes when
// nothing of it is left.
TEST(XmlRuleFaults, FaultsInsideProfilesLeaveOutTheActionThenTheEmptiedProfiles) {
  ExpectFaults({
      {"<profiles kind=\"chromium\" root=\"%LocalAppData%\\B\">\n"
       "          <files folder=\"%Temp%\\x\" masks=\"*\"/>\n"
       "        </profiles>",
       {"7:9: <profiles> has nothing left to clean; <profiles> left out",
        R"(8:11: <files> folder: "%Temp%\x" holds a variable: inside <profiles> paths are relative to the profile folder; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {"<profiles kind=\"chromium\" root=\"%LocalAppData%\\B\">\n"
       "          <files folder=\"Cache\" masks=\"*\" local=\"true\"/>\n"
       "          <action name=\"chromium-cookies\" file=\"\\Network\\Cookies\"/>\n"
       "          <action name=\"chromium-cookies\" file=\"Network\\Cookies\"/>\n"
       "        </profiles>",
       {R"(8:11: <files> local="true" is only allowed inside <profiles kind="mozilla">; left out)",
        R"(9:11: <action> file: "\Network\Cookies" starts with "\": inside <profiles> paths are relative to the profile folder; left out)"},
       "Tool{Kept:f1,Bad:f1p1}"},
      {"<profiles kind=\"mozilla\" root=\"%AppData%\\M\">\n"
       "          <files folder=\"cache2\" masks=\"*\" local=\"true\"/>\n"
       "        </profiles>",
       {"7:9: <profiles> has nothing left to clean; <profiles> left out",
        R"(8:11: <files> local="true" needs a local-root on its <profiles>; left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<profiles kind="webkit" root="%AppData%\x"><files folder="" masks="*"/></profiles>)",
       {R"(7:9: <profiles> kind: "webkit" is neither chromium nor mozilla; <profiles> left out)"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<profiles kind="chromium" root="%AppData%\x" local-root="%LocalAppData%\x"><files folder="" masks="*"/></profiles>)",
       {"7:9: <profiles> local-root: only mozilla profiles have local twins; <profiles> left out"},
       "Tool{Kept:f1,Bad:f1}"},
      {R"(<profiles kind="chromium" root="%AppData%\x"><exclude folder="%AppData%\x\Default\Keep"/></profiles>)",
       {"7:54: <exclude> does not belong in <profiles>; <profiles> left out"},
       "Tool{Kept:f1,Bad:f1}"},
  });
}

// Leaving out an exclusion, a detection, a Windows range or a warning alone would make the
// item reach further than written, and an unknown element might have been one of them.
TEST(XmlRuleFaults, AFaultInWhatLimitsAnItemLeavesTheWholeItemOut) {
  ExpectFaults({
      {R"(<file folder="%Temp%" masks="*.bak"/>)",
       {R"(7:9: unknown element <file> in <item>; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {R"(<exclude folder="%Temp%\..\x"/>)",
       {R"(7:9: <exclude> folder: "%Temp%\..\x" holds a "." or ".." name; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {R"(<exclude files="%Temp%"/>)",
       {R"(7:9: <exclude files> needs the names of the files that stay in masks; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {R"(<exclude key="HKCU\Software\Tool" masks="*"/>)",
       {R"(7:9: <exclude> masks do not go with key; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {R"(<detect path="%Foo%\x"/>)",
       {R"(7:9: <detect> path: unknown variable %Foo%; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {R"(<detect path="%Temp%\*\x.exe"/>)",
       {R"(7:9: <detect> path: "%Temp%\*\x.exe" holds a wildcard in "*", where none is allowed; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {R"(<windows min="6"/>)",
       {R"(7:9: <windows> min: "6" is not a Windows version such as 6.1 or 10.0; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {R"(<windows min="10.0" max="6.1"/>)",
       {R"(7:9: <windows> max is below min; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {"<warning>One</warning>\n        <warning>Two</warning>",
       {R"(8:9: a second <warning> in <item>; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {"<warning> </warning>", {R"(7:9: <warning> has no text; item "Bad" left out)"}, "Tool{Kept:f1}"},
      {R"(<running process="x.exe"/>)",
       {R"(7:9: <running> does not belong in <item>; item "Bad" left out)"},
       "Tool{Kept:f1}"},
      {"stray words", {"5:7: text in <item> is ignored"}, "Tool{Kept:f1,Bad:f1}"},
  });
}

TEST(XmlRuleFaults, ItemsAndApplicationsThatCleanNothingAreLeftOut) {
  const RuleSet rules = Read(R"(<rules version="1">
  <category name="Tests">
    <application name="Tool">
      <item name="Kept"><files folder="%Temp%" masks="*.tmp"/></item>
      <item name="Warned"><warning>Careful.</warning></item>
      <item name="Emptied"><files folder="%Nowhere%" masks="*"/></item>
      <item name="Ticked" default="yes"><files folder="%Temp%" masks="*"/></item>
      <item><files folder="%Temp%" masks="*"/></item>
    </application>
    <application name="Hollow">
      <detect key="HKCU\Software\Hollow"/>
    </application>
    <application name="Emptied">
      <item name="Gone"><files folder="%Temp%\.." masks="*"/></item>
    </application>
  </category>
</rules>)");
  EXPECT_EQ(Problems(rules), (std::vector<std::string>{
                                 R"(5:7: <item> has nothing to clean; item "Warned" left out)",
                                 R"(6:7: <item> has nothing left to clean; item "Emptied" left out)",
                                 "6:28: <files> folder: unknown variable %Nowhere%; left out",
                                 R"(7:7: <item> default: "yes" is neither true nor false; item "Ticked" left out)",
                                 "8:7: <item> has no name; item left out",
                                 R"(10:5: <application> has no items; application "Hollow" left out)",
                                 R"(13:5: <application> has no items left; application "Emptied" left out)",
                                 R"(14:7: <item> has nothing left to clean; item "Gone" left out)",
                                 R"(14:25: <files> folder: "%Temp%\.." holds a "." or ".." name; left out)",
                             }));
  EXPECT_EQ(Outline(rules), "Tool{Kept:f1}");
  ASSERT_EQ(rules.problems.size(), 9u);
  EXPECT_EQ(rules.problems[0].entry, L"Tool: Warned");
  EXPECT_EQ(rules.problems[5].entry, L"Hollow");
}

// A running test or detection left out alone would clean the application while it runs,
// or where it is not installed: the application goes.
TEST(XmlRuleFaults, AFaultInWhatLimitsAnApplicationLeavesItOut) {
  const RuleSet rules = Read(R"(<rules version="1">
  <category name="Tests">
    <application name="Kept"><item name="A"><files folder="%Temp%" masks="*"/></item></application>
    <application name="Runs">
      <running process="C:\Tools\tool.exe"/>
      <item name="A"><files folder="%Temp%" masks="*"/></item>
    </application>
    <application name="Locks">
      <running lockfile="%AppData%\..\lock"/>
      <item name="A"><files folder="%Temp%" masks="*"/></item>
    </application>
    <application name="Detects">
      <detect key="HKCU\Software\*"/>
      <detect/>
      <item name="A"><files folder="%Temp%" masks="*"/></item>
    </application>
    <application name="Twice">
      <windows min="6.1"/>
      <windows max="10.0"/>
      <item name="A"><files folder="%Temp%" masks="*"/></item>
    </application>
    <application name="Unknown" kind="x">
      <item name="A"><files folder="%Temp%" masks="*"/></item>
      <itme name="B"/>
    </application>
    <application>
      <item name="A"><files folder="%Temp%" masks="*"/></item>
    </application>
  </category>
</rules>)");
  EXPECT_EQ(
      Problems(rules),
      (std::vector<std::string>{
          R"(5:7: <running> process: "C:\Tools\tool.exe" is not a process name such as chrome.exe; application "Runs" left out)",
          R"(9:7: <running> lockfile: "%AppData%\..\lock" holds a "." or ".." name; application "Locks" left out)",
          R"(13:7: <detect> key: "HKCU\Software\*" holds a wildcard in "*", where none is allowed; application "Detects" left out)",
          R"(14:7: <detect> takes exactly one of key and path; application "Detects" left out)",
          R"(19:7: a second <windows> in <application>; application "Twice" left out)",
          R"(22:5: unknown attribute "kind" in <application>; application "Unknown" left out)",
          R"(24:7: unknown element <itme> in <application>; application "Unknown" left out)",
          "26:5: <application> has no name; application left out",
      }));
  EXPECT_EQ(Outline(rules), "Kept{A:f1}");
}

TEST(XmlRuleFaults, OutsideApplicationsOnlyTheElementAtFaultIsLeftOut) {
  const RuleSet rules = Read(R"(<rules version="1">
  <category name="Tests">
    <application name="Kept"><item name="A"><files folder="%Temp%" masks="*"/></item></application>
    <item name="Stray"><files folder="%Temp%" masks="*"/></item>
  </category>
  <categories/>
  <category>
    <application name="Nameless category"><item name="A"><files folder="%Temp%" masks="*"/></item></application>
  </category>
  notes
</rules>)");
  EXPECT_EQ(Problems(rules), (std::vector<std::string>{
                                 "1:1: text in <rules> is ignored",
                                 "4:5: <item> does not belong in <category>; left out",
                                 "6:3: unknown element <categories> in <rules>; left out",
                                 "7:3: <category> has no name; category left out",
                             }));
  EXPECT_EQ(Outline(rules), "Kept{A:f1}");
}

TEST(XmlRuleFaults, ARootThatIsNotRulesVersionOneLoadsNothing) {
  const std::pair<const char*, const char*> cases[] = {
      {"<rules version=\"2\"><category name=\"C\"/></rules>",
       "1:1: <rules> version \"2\" is not one this program reads (1); nothing loaded"},
      {"<rules><category name=\"C\"/></rules>", "1:1: <rules> has no \"version\" attribute; nothing loaded"},
      {"\n  <rules version=\"1\" author=\"me\"/>", "2:3: unknown attribute \"author\" in <rules>; nothing loaded"},
      {"<rule version=\"1\"/>", "1:1: the root element is <rule>, not <rules>; nothing loaded"},
  };
  for (const auto& [document, problem] : cases) {
    const RuleSet rules = Read(document);
    EXPECT_EQ(Problems(rules), std::vector<std::string>{problem}) << document;
    EXPECT_TRUE(rules.applications.empty()) << document;
  }
}

TEST(XmlRuleFaults, ABrokenXmlFileIsOneProblemAndLoadsNothing) {
  std::string document = WithBadItem(R"(<files folder="%Temp%" masks="*.bak">)");
  const RuleSet rules = Read(document);
  EXPECT_EQ(Problems(rules), std::vector<std::string>{"8:7: '</item>' does not close '<files>'; nothing loaded"});
  EXPECT_TRUE(rules.applications.empty());
  ASSERT_EQ(rules.problems.size(), 1u);
  EXPECT_EQ(rules.problems[0].where.file, kFile);

  EXPECT_EQ(Problems(Read("")), std::vector<std::string>{"1:1: the document has no root element; nothing loaded"});
}

TEST(XmlRuleIds, BuiltInItemsCarryTheirOwnUniqueIdsInRange) {
  const RuleSet rules = Read(R"(<rules version="1">
  <category name="C">
    <application name="A">
      <item name="NoId"><files folder="%Temp%" masks="*"/></item>
      <item name="Word" id="x12"><files folder="%Temp%" masks="*"/></item>
      <item name="Low" id="999"><files folder="%Temp%" masks="*"/></item>
      <item name="High" id="100000"><files folder="%Temp%" masks="*"/></item>
      <item name="First" id="2000"><files folder="%Temp%" masks="*"/></item>
      <item name="Again" id="2000"><files folder="%Temp%" masks="*"/></item>
      <item name="Broken" id="2001"><file/></item>
      <item name="Fixed" id="2001"><files folder="%Temp%" masks="*"/></item>
      <item name="Edges" id="1000"><files folder="%Temp%" masks="*"/></item>
    </application>
    <application name="B">
      <item name="Last" id="99999"><files folder="%Temp%" masks="*"/></item>
      <item name="Taken" id="1000"><files folder="%Temp%" masks="*"/></item>
    </application>
  </category>
</rules>)",
                             RuleOrigin::kBuiltIn);
  EXPECT_EQ(Problems(rules), (std::vector<std::string>{
                                 R"(4:7: <item> has no id, which every built-in item needs; item "NoId" left out)",
                                 R"(5:7: <item> id: "x12" is not a number; item "Word" left out)",
                                 R"(6:7: <item> id: "999" is outside 1000 to 99999; item "Low" left out)",
                                 R"(7:7: <item> id: "100000" is outside 1000 to 99999; item "High" left out)",
                                 R"(9:7: id 2000 is already used on line 8; item "Again" left out)",
                                 R"(10:37: unknown element <file> in <item>; item "Broken" left out)",
                                 R"(16:7: id 1000 is already used on line 12; item "Taken" left out)",
                             }));
  std::vector<std::pair<std::string, unsigned>> ids;
  for (const Application& application : rules.applications) {
    for (const Item& item : application.items) ids.emplace_back(Utf8(item.name), item.id);
  }
  EXPECT_EQ(ids, (std::vector<std::pair<std::string, unsigned>>{
                     {"First", 2000}, {"Fixed", 2001}, {"Edges", 1000}, {"Last", 99999}}));
}

std::string ToolWithItems(const std::vector<std::string>& items) {
  std::string document = "<rules version=\"1\"><category name=\"C\"><application name=\"Tool\">\n";
  for (const std::string& item : items) {
    document += "<item name=\"" + item + "\" id=\"7\"><files folder=\"%Temp%\" masks=\"*\"/></item>\n";
  }
  return document + "</application></category></rules>";
}

std::vector<std::pair<std::string, unsigned>> IdsOf(const RuleSet& rules) {
  std::vector<std::pair<std::string, unsigned>> ids;
  for (const Application& application : rules.applications) {
    for (const Item& item : application.items) ids.emplace_back(Utf8(item.name), item.id);
  }
  std::sort(ids.begin(), ids.end());
  return ids;
}

// A user's items get ids from their names: the same on every read, whatever their order,
// and never one the file wrote.
TEST(XmlRuleIds, OtherFilesItemsGetIdsDerivedFromTheirNamesWhateverTheirOrder) {
  const RuleSet rules = Read(ToolWithItems({"Cache", "History", "Cookies"}));
  EXPECT_EQ(Problems(rules), std::vector<std::string>{});
  const std::vector<std::pair<std::string, unsigned>> expected = {
      {"Cache", DerivedItemId(L"Tool", L"Cache")},
      {"Cookies", DerivedItemId(L"Tool", L"Cookies")},
      {"History", DerivedItemId(L"Tool", L"History")},
  };
  EXPECT_EQ(IdsOf(rules), expected);
  for (const auto& [name, id] : expected) EXPECT_GE(id, kFirstDerivedId) << name;
  EXPECT_EQ(IdsOf(Read(ToolWithItems({"Cache", "History", "Cookies"}))), expected);
  EXPECT_EQ(IdsOf(Read(ToolWithItems({"Cookies", "Cache", "History"}))), expected);
  EXPECT_EQ(IdsOf(Read(ToolWithItems({"History", "Cookies", "Cache"}), RuleOrigin::kCommunity)), expected);

  // Letter case aside, the same names give the same id: the later item is left out.
  const RuleSet twice = Read(ToolWithItems({"Cache", "History", "CACHE"}));
  EXPECT_EQ(Problems(twice),
            std::vector<std::string>{R"(4:1: the item on line 2 has the same id; item "CACHE" left out)"});
  EXPECT_EQ(Outline(twice), "Tool{Cache:f1,History:f1}");
}

TEST(XmlRuleEncodings, Utf8WithAMarkAndUtf16BothWaysReadAlike) {
  const std::string utf8 =
      "<rules version=\"1\"><category name=\"Caf\xC3\xA9\">\n"
      "  <application name=\"\xE6\x97\xA5\xE8\xA8\x98\"><item name=\"\xF0\x9F\x93\x9D\">"
      "<files folder=\"%Documents%\\\xE6\x97\xA5\xE8\xA8\x98\" masks=\"*.tmp\"/></item></application>\n"
      "</category></rules>";
  const std::u16string utf16 =
      u"<rules version=\"1\"><category name=\"Caf\u00E9\">\n"
      u"  <application name=\"\u65E5\u8A18\"><item name=\"\U0001F4DD\">"
      u"<files folder=\"%Documents%\\\u65E5\u8A18\" masks=\"*.tmp\"/></item></application>\n"
      u"</category></rules>";
  const RuleSet plain = Read(utf8);
  ASSERT_EQ(Problems(plain), std::vector<std::string>{});
  ASSERT_EQ(plain.applications.size(), 1u);
  EXPECT_EQ(plain.applications[0].category, L"Caf\u00E9");
  EXPECT_EQ(plain.applications[0].name, L"\u65E5\u8A18");
  EXPECT_EQ(plain.applications[0].items[0].files[0].folder, L"%Documents%\\\u65E5\u8A18");
  EXPECT_EQ(plain.applications[0].where.column, 3);

  EXPECT_EQ(Dump(Read("\xEF\xBB\xBF" + utf8)), Dump(plain));
  EXPECT_EQ(Dump(Read(xml::testing::Utf16Document(utf16, false))), Dump(plain));
  EXPECT_EQ(Dump(Read(xml::testing::Utf16Document(utf16, true))), Dump(plain));
}

TEST(XmlRuleEncodings, AFileIsTakenForXmlWhenItsFirstCharacterIsAnAngleBracket) {
  EXPECT_TRUE(LooksLikeXml("<rules/>"));
  EXPECT_TRUE(LooksLikeXml("\xEF\xBB\xBF \r\n\t<?xml version=\"1.0\"?>"));
  EXPECT_TRUE(LooksLikeXml(xml::testing::Utf16Document(u"\n <rules/>", false)));
  EXPECT_TRUE(LooksLikeXml(xml::testing::Utf16Document(u"<rules/>", true)));
  EXPECT_FALSE(LooksLikeXml("; winapp2.ini\r\n[Tool *]\r\n"));
  EXPECT_FALSE(LooksLikeXml("\xEF\xBB\xBF[Tool *]"));
  EXPECT_FALSE(LooksLikeXml(xml::testing::Utf16Document(u"[Tool *]", false)));
  EXPECT_FALSE(LooksLikeXml(""));
  EXPECT_FALSE(LooksLikeXml("  \n"));
}

}  // namespace
}  // namespace lumenor::rules
