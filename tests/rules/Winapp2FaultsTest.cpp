// What the winapp2.ini reader refuses, and that it goes on reading: the file's known faults,
// the untrusted forms that could reach further than meant, a broken structure, duplicate
// and empty entries, and text that is not UTF-8. Each fault is one problem with its line.
#include "rules/Winapp2Reader.h"
#include "tests/rules/RuleSetViews.h"

#include <gtest/gtest.h>

#include <string>

namespace lumenor {
namespace {

using rules::ReadWinapp2;
using rules::Winapp2File;
using testing::FindItem;
using testing::ItemNames;
using testing::ProblemTexts;

using Texts = std::vector<std::string>;
using Names = std::vector<std::wstring>;

Winapp2File Read(std::string_view text) { return ReadWinapp2(text, L"winapp2.ini"); }

TEST(Winapp2Faults, TheFilesKnownFaultsAreReportedAndTheRestOfTheirEntriesLoaded) {
  const Winapp2File file = Read(
      "[Dolby Access *]\r\n"                                                                          // 1
      "LangSecRef=3021\r\n"                                                                           // 2
      "FileKey4=%LocalAppData%\\Packages\\DolbyLaboratories.DolbyAccess\\TempState|*|REMOVESELF\r\n"  // 3
      "FileKey5=%Package\\LocalCache|*.log\r\n"                                                       // 4
      "\r\n"                                                                                          // 5
      "[Dropbox *]\r\n"                                                                               // 6
      "LangSecRef=3024\r\n"                                                                           // 7
      "FileKey6=%AppData%\\DropBoxOem\\Log|*|RECURSE\r\n"                                             // 8
      "FileKey7=%LocalAppData%\\Dropbox\\\r\n"                                                        // 9
      "FileKey8=%LocalAppData%\\Dropbox\\CrashReports|*|RECURSE\r\n"                                  // 10
      "[Moonlighter *]\r\n"                                                                           // 11
      "Section=Games\r\n"                                                                             // 12
      "DetectFile=%UserProfile%\\AppData%\\LocalLow\\11BitStudios\\Moonlighter\r\n"                   // 13
      "FileKey1=%UserProfile%\\AppData%\\LocalLow\\11BitStudios\\Moonlighter|*.log\r\n"               // 14
      "[Unknown Name *]\r\n"                                                                          // 15
      "FileKey1=%AppData%\\App|*.log\r\n"                                                             // 16
      "FileKey2=%NoSuchFolder%\\App|*.log\r\n");                                                      // 17
  EXPECT_EQ(ProblemTexts(file.rules), (Texts{"4 [Dolby Access] FileKey5: unknown variable %Package (no closing %)",
                                             "9 [Dropbox] FileKey7: no '|' between the folder and its file masks",
                                             "11 [Moonlighter] entry left out: it has no usable FileKey or RegKey",
                                             "13 [Moonlighter] DetectFile: stray '%' after \"%UserProfile%\\AppData\"",
                                             "14 [Moonlighter] FileKey1: stray '%' after \"%UserProfile%\\AppData\"",
                                             "17 [Unknown Name] FileKey2: unknown variable %NoSuchFolder%"}));
  EXPECT_EQ(ItemNames(file.rules), (Names{L"Dolby Access", L"Unknown Name", L"Dropbox"}))
      << "by group, then in file order";
  EXPECT_EQ(FindItem(file.rules, L"Dolby Access")->files.size(), 1u);
  EXPECT_EQ(FindItem(file.rules, L"Dropbox")->files.size(), 2u);
  EXPECT_EQ(file.counts.fileKeys.read, 8);
  EXPECT_EQ(file.counts.fileKeys.refused, 4);
}

TEST(Winapp2Faults, FileKeysThatCouldReachFurtherThanMeantAreRefused) {
  const Winapp2File file = Read(
      "[Untrusted *]\n"                                    // 1
      "FileKey1=%UserProfile%|Desktop\\*|REMOVESELF\n"     // 2
      "FileKey2=%UserProfile%|Desktop/*.*\n"               // 3
      "FileKey3=%UserProfile%|C:notes.txt\n"               // 4
      "FileKey4=%AppData%\\App|*a*b*c*d*e*f*g*h*i*j*k\n"   // 5: eleven wildcards
      "FileKey5=%AppData%\\App|*a*b*c*d*e*f*g*h*i*j\n"     // 6: ten are allowed
      "FileKey6=%AppData%\\App|*.log|RECURSIVE\n"          // 7
      "FileKey7=App\\Logs|*.log\n"                         // 8
      "FileKey8=%AppData%\\..\\..\\Windows|*.*|RECURSE\n"  // 9
      "FileKey9=%AppData%\\App|..\n"                       // 10
      "FileKey10=%AppData%\\App|\n"                        // 11
      "FileKey11=%AppData%\\App| ; \n"                     // 12
      "FileKey12=%UserName%\\App|*.log\n"                  // 13
      "FileKey13=|*.log\n"                                 // 14
      "FileKey14=C:\\Temp\\App|*.log\n"                    // 15: a drive is a full path
      "FileKey15=%AppData%\\*?*?*?*?*?*?\\App|*.log\n");   // 16: eleven in one folder name
  EXPECT_EQ(
      ProblemTexts(file.rules),
      (Texts{
          "2 [Untrusted] FileKey1: mask \"Desktop\\*\" names a path, not a file name",
          "3 [Untrusted] FileKey2: mask \"Desktop/*.*\" names a path, not a file name",
          "4 [Untrusted] FileKey3: mask \"C:notes.txt\" names a path, not a file name",
          "5 [Untrusted] FileKey4: mask \"*a*b*c*d*e*f*g*h*i*j*k\" has more than 10 wildcards",
          "7 [Untrusted] FileKey6: unknown flag \"RECURSIVE\"",
          "8 [Untrusted] FileKey7: folder \"App\\Logs\" starts with neither a folder variable nor a drive",
          "9 [Untrusted] FileKey8: folder \"%AppData%\\..\\..\\Windows\" holds a \".\" or \"..\" name",
          "10 [Untrusted] FileKey9: mask \"..\" names no file",
          "11 [Untrusted] FileKey10: names no file mask",
          "12 [Untrusted] FileKey11: names no file mask",
          "13 [Untrusted] FileKey12: folder \"%UserName%\\App\" starts with neither a folder variable nor a drive",
          "14 [Untrusted] FileKey13: names no folder",
          "16 [Untrusted] FileKey15: folder name \"*?*?*?*?*?*?\" has more than 10 wildcards",
      }));
  const rules::Item* item = FindItem(file.rules, L"Untrusted");
  ASSERT_NE(item, nullptr);
  ASSERT_EQ(item->files.size(), 2u);
  EXPECT_EQ(item->files[0].where.line, 6);
  EXPECT_EQ(item->files[1].folder, L"C:\\Temp\\App");
}

// "C:" is the folder current on that drive, wherever that happens to be: relative.
TEST(Winapp2Faults, ADriveWithoutItsRootIsRelativeAndRefused) {
  const Winapp2File file = Read(
      "[Drive Alone *]\n"             // 1
      "Detect=HKCU\\Software\\App\n"  // 2
      "DetectFile=C:\n"               // 3
      "FileKey1=c: |*.tmp\n"          // 4
      "FileKey2=C:\\|*.tmp\n"         // 5
      "[Excluded Drive *]\n"          // 6
      "FileKey1=D:\\Temp|*.tmp\n"     // 7
      "ExcludeKey1=PATH|D:\n");       // 8
  EXPECT_EQ(ProblemTexts(file.rules),
            (Texts{
                "3 [Drive Alone] DetectFile: folder \"C:\" is the drive's current folder, not its root \"C:\\\"",
                "4 [Drive Alone] FileKey1: folder \"c:\" is the drive's current folder, not its root \"c:\\\"",
                "6 [Excluded Drive] entry left out: an ExcludeKey of it could not be read",
                "8 [Excluded Drive] ExcludeKey1: folder \"D:\" is the drive's current folder, not its root \"D:\\\"",
            }));
  EXPECT_EQ(ItemNames(file.rules), Names{L"Drive Alone"});
  const rules::Item* item = FindItem(file.rules, L"Drive Alone");
  ASSERT_NE(item, nullptr);
  EXPECT_TRUE(item->detection.paths.empty());
  ASSERT_EQ(item->files.size(), 1u);
  EXPECT_EQ(item->files[0].folder, L"C:\\");
}

TEST(Winapp2Faults, RegistryKeysOutsideTheKnownHivesOrOfAWholeHiveAreRefused) {
  const Winapp2File file = Read(
      "[Registry *]\n"
      "RegKey1=HKXX\\Software\\App\n"
      "RegKey2=Software\\App\n"
      "RegKey3=HKCU\n"
      "RegKey4=HKLM\\|Value\n"
      "RegKey5=HKCU\\Software\\App\n");
  EXPECT_EQ(ProblemTexts(file.rules), (Texts{
                                          "2 [Registry] RegKey1: unknown registry hive \"HKXX\"",
                                          "3 [Registry] RegKey2: unknown registry hive \"Software\"",
                                          "4 [Registry] RegKey3: names a whole registry hive",
                                          "5 [Registry] RegKey4: names a whole registry hive",
                                      }));
  ASSERT_NE(FindItem(file.rules, L"Registry"), nullptr);
  EXPECT_EQ(FindItem(file.rules, L"Registry")->registry.size(), 1u);
}

TEST(Winapp2Faults, DetectionThatCannotBeReadNeverWidensAnEntry) {
  const Winapp2File file = Read(
      "[Half Detected *]\n"                // 1
      "Detect=HKXX\\Software\\App\n"       // 2
      "DetectFile=%AppData%\\App\n"        // 3
      "FileKey1=%AppData%\\App|*.log\n"    // 4
      "[Undetectable *]\n"                 // 5
      "DetectFile=%Nowhere%\\App\n"        // 6
      "SpecialDetect=DET_NETSCAPE\n"       // 7
      "FileKey1=%AppData%\\App|*.log\n"    // 8
      "[Bad Windows Range *]\n"            // 9
      "DetectOS=6.1.7601|\n"               // 10
      "FileKey1=%WinDir%\\Temp|*.log\n"    // 11
      "[No Windows Range *]\n"             // 12
      "DetectOS=|\n"                       // 13
      "FileKey1=%WinDir%\\Temp|*.log\n");  // 14
  EXPECT_EQ(ProblemTexts(file.rules),
            (Texts{
                "2 [Half Detected] Detect: unknown registry hive \"HKXX\"",
                "5 [Undetectable] entry left out: none of its detection lines could be read",
                "6 [Undetectable] DetectFile: unknown variable %Nowhere%",
                "7 [Undetectable] SpecialDetect: unknown test \"DET_NETSCAPE\"",
                "9 [Bad Windows Range] entry left out: its DetectOS could not be read",
                "10 [Bad Windows Range] DetectOS: Windows version \"6.1.7601\" is not <major>.<minor>",
                "12 [No Windows Range] entry left out: its DetectOS could not be read",
                "13 [No Windows Range] DetectOS: names no Windows version",
            }));
  EXPECT_EQ(ItemNames(file.rules), Names{L"Half Detected"});
  EXPECT_EQ(FindItem(file.rules, L"Half Detected")->detection.paths.size(), 1u);
}

TEST(Winapp2Faults, AnExclusionThatCannotBeReadLeavesItsEntryOut) {
  const Winapp2File file = Read(
      "[Bad Kind *]\n"                              // 1
      "FileKey1=%AppData%\\App|*|RECURSE\n"         // 2
      "ExcludeKey1=DIR|%AppData%\\App\\Keep\\\n"    // 3
      "[File Without Names *]\n"                    // 4
      "FileKey1=%AppData%\\App|*|RECURSE\n"         // 5
      "ExcludeKey1=FILE|%AppData%\\App\\\n"         // 6
      "[Registry Value *]\n"                        // 7
      "RegKey1=HKCU\\Software\\App\n"               // 8
      "ExcludeKey1=REG|HKCU\\Software\\App|Keep\n"  // 9
      "[Bad Folder *]\n"                            // 10
      "FileKey1=%AppData%\\App|*|RECURSE\n"         // 11
      "ExcludeKey1=PATH|%Package\\Keep\\|*.db\n"    // 12
      "[Good *]\n"                                  // 13
      "FileKey1=%AppData%\\App|*|RECURSE\n"         // 14
      "ExcludeKey1=REG|HKCU\n");                    // 15: keeps a whole hive, harmless
  EXPECT_EQ(ProblemTexts(file.rules),
            (Texts{
                "1 [Bad Kind] entry left out: an ExcludeKey of it could not be read",
                "3 [Bad Kind] ExcludeKey1: unknown exclusion \"DIR\" (FILE, PATH or REG)",
                "4 [File Without Names] entry left out: an ExcludeKey of it could not be read",
                "6 [File Without Names] ExcludeKey1: FILE exclusion must be FILE|<folder>\\|<name>[;<name>...]",
                "7 [Registry Value] entry left out: an ExcludeKey of it could not be read",
                "9 [Registry Value] ExcludeKey1: REG exclusion must name one key and nothing more",
                "10 [Bad Folder] entry left out: an ExcludeKey of it could not be read",
                "12 [Bad Folder] ExcludeKey1: unknown variable %Package (no closing %)",
            }));
  EXPECT_EQ(ItemNames(file.rules), Names{L"Good"});
  EXPECT_EQ(file.counts.excludeKeys.refused, 4);
}

TEST(Winapp2Faults, ABrokenStructureCostsOnlyWhatItTouches) {
  const Winapp2File file = Read(
      "; a header\n"                          // 1
      "FileKey1=%AppData%\\Stray|*.log\n"     // 2
      "Version=1\n"                           // 3
      "[First *]\n"                           // 4
      "FileKey1=%AppData%\\First|*.log\n"     // 5
      "this line says nothing\n"              // 6
      "Colour=blue\n"                         // 7
      "FileKey0A=%AppData%\\First|*.tmp\n"    // 8
      "Default=Maybe\n"                       // 9
      "LangSecRef=Games\n"                    // 10
      "[Broken *\n"                           // 11
      "FileKey1=%AppData%\\Broken|*.log\n"    // 12
      "nothing here either\n"                 // 13
      "[ *]\n"                                // 14
      "FileKey1=%AppData%\\Nameless|*.log\n"  // 15
      "[]\n"                                  // 16
      "[Second *]\n"                          // 17
      "Section=\n"                            // 18
      "RegKey1=HKCU\\Software\\Second\n"      // 19
      "[Nothing To Clean *]\n"                // 20
      "Detect=HKCU\\Software\\Nothing\n"      // 21
      "Warning=Careful\n");                   // 22
  EXPECT_EQ(ProblemTexts(file.rules), (Texts{
                                          "2 [] FileKey1: key outside any entry",
                                          "3 [] Version: key outside any entry",
                                          "6 [First] line is neither a comment, a section nor <key>=<value>",
                                          "7 [First] unknown key \"Colour\"",
                                          "8 [First] unknown key \"FileKey0A\"",
                                          "9 [First] Default: \"Maybe\" is neither True nor False",
                                          "10 [First] LangSecRef: \"Games\" is not a number",
                                          "11 [] malformed section line \"[Broken *\"; its entry is left out",
                                          "14 [] malformed section line \"[ *]\"; its entry is left out",
                                          "16 [] malformed section line \"[]\"; its entry is left out",
                                          "18 [Second] Section: names no group",
                                          "20 [Nothing To Clean] entry left out: it has no usable FileKey or RegKey",
                                      }));
  EXPECT_EQ(ItemNames(file.rules), (Names{L"First", L"Second"}));
  EXPECT_FALSE(FindItem(file.rules, L"First")->tickedByDefault);
  EXPECT_EQ(file.rules.applications.at(0).name, L"Applications");
  EXPECT_EQ(file.counts.entriesRead, 6);
  EXPECT_EQ(file.counts.entriesLoaded, 2);
  EXPECT_EQ(file.counts.fileKeys.read, 4) << "the keys of a malformed entry are read, not refused";
  EXPECT_EQ(file.counts.fileKeys.refused, 1);
}

TEST(Winapp2Faults, ALaterEntryOfTheSameGroupAndNameIsLeftOut) {
  const Winapp2File file = Read(
      "[Cache *]\nSection=Games\nFileKey1=%AppData%\\First|*.log\n"   // 1-3
      "[cache *]\nSection=games\nFileKey1=%AppData%\\Second|*.log\n"  // 4-6
      "[Cache *]\nSection=Tools\nFileKey1=%AppData%\\Third|*.log\n"   // 7-9: another group
      "[Cache]\nSection=Games\nFileKey1=%AppData%\\Fourth|*.log\n");  // 10-12: no star, same name
  EXPECT_EQ(ProblemTexts(file.rules), (Texts{"4 [cache] entry left out: same entry as line 1",
                                             "10 [Cache] entry left out: same entry as line 1"}));
  ASSERT_EQ(file.rules.applications.size(), 2u);
  EXPECT_EQ(file.rules.applications[0].items.at(0).files.at(0).folder, L"%AppData%\\First");
  EXPECT_EQ(file.rules.applications[1].name, L"Tools");
}

TEST(Winapp2Faults, ALineThatIsNotUtf8IsAFaultOfItsOwnAndACommentMayHoldAnything) {
  const Winapp2File file = Read(
      "; \xFF\xFE a comment in another code page \xE9t\xE9\n"  // 1
      "[Good *]\n"                                             // 2
      "FileKey1=%AppData%\\Caf\xE9|*.log\n"                    // 3: Latin-1, not UTF-8
      "FileKey2=%AppData%\\Good|*.log\n"                       // 4
      "RegKey1=HKCU\\Software\\\xC0\xAF\n"                     // 5: an overlong '/'
      "[Caf\xE9 *]\n"                                          // 6
      "FileKey1=%AppData%\\Cafe|*.log\n"                       // 7
      "[After *]\n"                                            // 8
      "FileKey1=%AppData%\\After|*.log\n"                      // 9
      "FileKey2=%AppData%\\After|a\xED\xA0\x80.log\n");        // 10: a UTF-16 surrogate
  EXPECT_EQ(ProblemTexts(file.rules), (Texts{
                                          "3 [Good] FileKey1: not valid UTF-8",
                                          "5 [Good] RegKey1: not valid UTF-8",
                                          "6 [] section line is not valid UTF-8; its entry is left out",
                                          "10 [After] FileKey2: not valid UTF-8",
                                      }));
  EXPECT_EQ(ItemNames(file.rules), (Names{L"Good", L"After"}));
  EXPECT_EQ(FindItem(file.rules, L"Good")->files.size(), 1u);
}

TEST(Winapp2Faults, AZeroByteInsideALineIsNotText) {
  const std::string text =
      "[Entry *]\nFileKey1=%AppData%\\App|a" + std::string(1, '\0') + "b.log\nFileKey2=%AppData%\\App|*.log\n";
  const Winapp2File file = Read(text);
  EXPECT_EQ(ProblemTexts(file.rules), Texts{"2 [Entry] FileKey1: not valid UTF-8"});
  EXPECT_EQ(FindItem(file.rules, L"Entry")->files.size(), 1u);
}

TEST(Winapp2Faults, AUtf16FileIsOneProblemAndNoEntries) {
  const std::string utf16("\xFF\xFE[\0E\0]\0\r\0\n\0", 12);
  const Winapp2File file = Read(utf16);
  EXPECT_EQ(ProblemTexts(file.rules), Texts{"1 [] the file is UTF-16; winapp2.ini is read as UTF-8"});
  EXPECT_TRUE(file.rules.applications.empty());
  EXPECT_EQ(file.counts.entriesRead, 0);
}

TEST(Winapp2Faults, NothingAtAllIsAnEmptyRuleSet) {
  for (const std::string_view text : {std::string_view(), std::string_view("\xEF\xBB\xBF"), std::string_view("\r\n\n"),
                                      std::string_view("; only comments\n")}) {
    const Winapp2File file = Read(text);
    EXPECT_TRUE(file.rules.applications.empty());
    EXPECT_TRUE(file.rules.problems.empty());
    EXPECT_EQ(file.counts.entriesRead, 0);
  }
}

}  // namespace
}  // namespace lumenor
