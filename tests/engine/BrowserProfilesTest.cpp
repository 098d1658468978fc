// Which browser profiles are read from Chromium's "Local State", from its folder names,
// and from Firefox's and Thunderbird's profiles.ini; names and paths from those files are
// hostile until checked, since the engine deletes inside the folders they name.
#include "engine/BrowserProfiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumenor {
namespace {

using Names = std::vector<std::wstring>;

std::string LocalStateWithProfiles(const std::string& infoCacheMembers) {
  return R"({"browser":{"enabled_labs_experiments":[]},"profile":{"last_used":"Profile 4","info_cache":{)" +
         infoCacheMembers + R"(},"profiles_order":["Default"]},"os_crypt":{"encrypted_key":"RFBBUEk="}})";
}

TEST(ChromiumProfiles, LocalStateGivesEveryProfileDefaultFirstThenByNumber) {
  const std::string localState =
      LocalStateWithProfiles(R"("Profile 4":{"name":"Work"},"Default":{"name":"Person 1"},"Profile 10":{"name":"x"},)"
                             R"("Profile 1":{"name":"Home","is_using_default_name":false})");
  EXPECT_EQ(ChromiumProfilesFromLocalState(localState), (Names{L"Default", L"Profile 1", L"Profile 4", L"Profile 10"}));
  EXPECT_EQ(ChromiumProfilesFromLocalState("\xEF\xBB\xBF" + localState)->size(), 4u);
  EXPECT_EQ(ChromiumProfilesFromLocalState(LocalStateWithProfiles(R"("Profil\u00e9 2":{})")),
            (Names{L"Profil\u00e9 2"}));
}

TEST(ChromiumProfiles, LocalStateThatIsNotJsonOrHasNoProfileListGivesNothing) {
  const std::string unreadable[] = {
      "",
      "{",
      "{\"profile\":{\"info_cache\":{\"Default\":{}}}",  // cut short
      "[]",
      "{\"profile\":{}}",
      "{\"profile\":\"Default\"}",
      "{\"profile\":{\"info_cache\":[\"Default\"]}}",
      "{\"profile\":{\"info_cache\":{\"Default\":{}}}} trailing",
      "{\"profile\":{\"info_cache\":{\"D\xC3\x28\":{}}}}",  // not UTF-8
  };
  for (const std::string& text : unreadable) {
    EXPECT_EQ(ChromiumProfilesFromLocalState(text), std::nullopt) << text;
  }
  EXPECT_EQ(ChromiumProfilesFromLocalState(LocalStateWithProfiles("")), Names{});
}

TEST(ChromiumProfiles, LocalStateLargerThanTheLimitIsNotRead) {
  std::string atLimit = LocalStateWithProfiles(R"("Default":{})");
  atLimit.resize(kMaxLocalStateBytes, ' ');
  EXPECT_EQ(ChromiumProfilesFromLocalState(atLimit), Names{L"Default"});
  atLimit += ' ';
  EXPECT_EQ(ChromiumProfilesFromLocalState(atLimit), std::nullopt);
}

TEST(ChromiumProfiles, HostileAndNonProfileNamesAreNeverReturned) {
  const std::string localState = LocalStateWithProfiles(
      R"("..":{},".":{},"":{},"a\\b":{},"a/b":{},"C:":{},"x:y":{},"..\\..\\Windows":{},)"
      R"("System Profile":{},"guest profile":{},"Crashpad":{},"ShaderCache":{},"Safe Browsing":{},)"
      R"("tab\t":{},"\u0000x":{},".. ":{},"Default.":{},"a*b":{},"a?":{},"\u007f":{},)"
      R"("Default":{},"default":{},"Profile 2":{})");
  EXPECT_EQ(ChromiumProfilesFromLocalState(localState), (Names{L"Default", L"Profile 2"}));

  for (const std::wstring_view name : {L"..", L"a\\b", L"System Profile", L"Guest Profile", L"CRASHPAD"}) {
    EXPECT_FALSE(IsChromiumProfileFolderName(name)) << ::testing::PrintToString(std::wstring(name));
  }
  EXPECT_FALSE(IsChromiumProfileFolderName(std::wstring(256, L'a')));
  EXPECT_TRUE(IsChromiumProfileFolderName(std::wstring(255, L'a')));
}

TEST(ChromiumProfiles, FolderFallbackTakesDefaultAndEveryProfileFolder) {
  const Names folders = {L"Crashpad",    L"Profile 7",     L"System Profile", L"Guest Profile",
                         L"ShaderCache", L"Safe Browsing", L"GrShaderCache",  L"Local State",
                         L"Profile 1",   L"Profile",       L"Profile ",       L"ProfileX",
                         L"profile 3",   L"Profile ..",    L"Default",        L"Profile Work"};
  EXPECT_EQ(ChromiumProfilesFromFolderNames(folders),
            (Names{L"Default", L"Profile 1", L"profile 3", L"Profile 7", L"Profile Work"}));
  EXPECT_EQ(ChromiumProfilesFromFolderNames({L"Crashpad", L"Local State"}), Names{});
}

constexpr std::string_view kProfilesIni =
    "[General]\n"
    "StartWithLastProfile=1\n"
    "Version=2\n"
    "\n"
    "[Install308046B0AF4A39CB]\n"
    "Default=Profiles/zzzz9999.elsewhere\n"
    "Locked=1\n"
    "\n"
    "[Profile1]\n"
    "Name=work\n"
    "IsRelative=0\n"
    "Path=D:\\Mail\\Work Profile\n"
    "\n"
    "[Profile0]\n"
    "Name=default-release\n"
    "IsRelative=1\n"
    "Path=Profiles/abcd1234.default-release\n"
    "Default=1\n";

void ExpectBothProfiles(const std::vector<MozillaProfile>& profiles) {
  ASSERT_EQ(profiles.size(), 2u);
  EXPECT_EQ(profiles[0].name, L"work");
  EXPECT_EQ(profiles[0].path, L"D:\\Mail\\Work Profile");
  EXPECT_FALSE(profiles[0].isRelative);
  EXPECT_FALSE(profiles[0].isDefault);
  EXPECT_EQ(profiles[1].name, L"default-release");
  EXPECT_EQ(profiles[1].path, L"Profiles\\abcd1234.default-release");
  EXPECT_TRUE(profiles[1].isRelative);
  EXPECT_TRUE(profiles[1].isDefault);
}

TEST(MozillaProfiles, EveryProfileSectionIsReadNotOnlyTheDefault) {
  ExpectBothProfiles(MozillaProfilesFromIni(kProfilesIni));
}

TEST(MozillaProfiles, LineEndsMarkCaseAndBlanksDoNotMatter) {
  std::string crlf;
  for (const char c : kProfilesIni) {
    crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
  }
  ExpectBothProfiles(MozillaProfilesFromIni(crlf));
  ExpectBothProfiles(MozillaProfilesFromIni("\xEF\xBB\xBF" + crlf));
  ExpectBothProfiles(MozillaProfilesFromIni(
      "  [profile1]  \n NAME = work \nisrelative= 0\npath =D:\\Mail\\Work Profile  \n"
      "[PROFILE0]\r\nname=default-release\r\nPath\t=\tProfiles/abcd1234.default-release\r\ndefault=1"));
  const std::vector<MozillaProfile> accented =
      MozillaProfilesFromIni("[Profile0]\nName=J\xC3\xBCrgen\nPath=Profiles/j\n");
  ASSERT_EQ(accented.size(), 1u);
  EXPECT_EQ(accented[0].name, L"J\u00FCrgen");
  EXPECT_TRUE(accented[0].isRelative);
}

TEST(MozillaProfiles, RelativePathsThatCouldLeaveTheProfilesFolderAreLeftOut) {
  std::string ini;
  const char* const hostile[] = {
      "../../Windows", "Profiles/../../x", "Profiles/..", "Profiles/. .", "...", "/etc",
      "\\Windows",     "C:/Windows",       "C:Windows",   "Profiles/x:y", "",    "Profiles/a*",
      "Profiles/\x01"};
  int section = 0;
  for (const char* path : hostile) {
    ini += "[Profile" + std::to_string(section++) + "]\nName=bad\nIsRelative=1\nPath=" + path + "\n";
  }
  ini += "[Profile99]\nName=good\nIsRelative=1\nPath=Profiles/ok..name\n";
  ini += "[Profile100]\nName=no path\n";
  ini += "[ProfileX]\nName=not a profile section\nPath=Profiles/x\n";
  const std::vector<MozillaProfile> profiles = MozillaProfilesFromIni(ini);
  ASSERT_EQ(profiles.size(), 1u);
  EXPECT_EQ(profiles[0].name, L"good");
  EXPECT_EQ(profiles[0].path, L"Profiles\\ok..name");
}

TEST(MozillaProfiles, WithoutIsRelativeTheShapeOfThePathDecides) {
  const std::vector<MozillaProfile> profiles = MozillaProfilesFromIni(
      "[Profile0]\nPath=Profiles/a.default\n[Profile1]\nPath=E:\\Firefox\\b\n[Profile2]\nPath=\\\\server\\share\\c\n");
  ASSERT_EQ(profiles.size(), 3u);
  EXPECT_TRUE(profiles[0].isRelative);
  EXPECT_EQ(profiles[0].path, L"Profiles\\a.default");
  EXPECT_FALSE(profiles[1].isRelative);
  EXPECT_EQ(profiles[1].path, L"E:\\Firefox\\b");
  EXPECT_FALSE(profiles[2].isRelative);
  EXPECT_EQ(profiles[2].path, L"\\\\server\\share\\c");
}

}  // namespace
}  // namespace lumenor
