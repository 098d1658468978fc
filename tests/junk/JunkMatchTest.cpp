// The junk mask catalogue against its golden file, and which names the masks accept:
// the special masks with their own rules, the extension test every mask falls back to,
// and the first chosen mask winning.
#include "base/ResourceString.h"
#include "base/TextEncoding.h"
#include "junk/JunkCatalogue.h"
#include "junk/JunkMatcher.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumenor {
namespace {

TEST(JunkCatalogue, RowsMatchTheGoldenFileInOrderWithTheFirstTwelveAsDefault) {
  const std::vector<std::string> lines = testing::SplitLines(testing::LoadTestData(IDR_EXPECTED_JUNK_MASKS));
  const auto rows = JunkMaskCatalogue();
  ASSERT_EQ(lines.size(), 45u);
  ASSERT_EQ(rows.size(), lines.size());
  const std::vector<std::wstring> defaults = DefaultJunkMasks();
  for (size_t index = 0; index < rows.size(); ++index) {
    const std::vector<std::string> fields = testing::SplitTabs(lines[index]);
    ASSERT_EQ(fields.size(), 4u) << lines[index];
    SCOPED_TRACE(lines[index]);
    EXPECT_EQ(fields[0], std::to_string(index + 1));
    EXPECT_EQ(ToUtf8(rows[index].mask), fields[1]);
    EXPECT_EQ(ToUtf8(LoadResourceString(rows[index].descriptionId)), fields[2]);
    EXPECT_EQ(index < defaults.size() && defaults[index] == rows[index].mask, fields[3] == "default");
  }
  EXPECT_EQ(AllJunkMasks().size(), 45u);
}

TEST(JunkCatalogue, MasksAreLowerCaseSoLoweredNamesCanMatchThem) {
  for (const JunkMaskRow& row : JunkMaskCatalogue()) {
    EXPECT_EQ(LowerCaseName(row.mask), row.mask);
    EXPECT_TRUE(IsCatalogueMask(row.mask));
  }
  EXPECT_FALSE(IsCatalogueMask(L"*.TMP"));
  EXPECT_FALSE(IsCatalogueMask(L"*.txt"));
}

struct MatchCase {
  const wchar_t* mask;
  const wchar_t* name;  // as it stands on the disk; lowered before matching
  bool accepted;
};

TEST(JunkMask, SpecialMasksAndTheExtensionTest) {
  const MatchCase cases[] = {
      {L"*.tmp", L"draft.tmp", true},
      {L"*.tmp", L"DRAFT.TMP", true},
      {L"*.tmp", L"a.tmp1", false},
      {L"*.tmp", L"a.tmp.bak", false},
      {L"*.tmp", L".tmp", true},  // empty base
      {L"*.tmp", L"tmp", false},
      {L"*.^", L"x.^", true},
      {L"*.^", L"x.^^", false},
      {L"*.$$$", L"setup.$$$", true},
      {L"*.~*", L"report.~doc", true},
      {L"*.~*", L"report.doc~", false},
      {L"~*.*", L"~wrl0001.tmp", true},
      {L"~*.*", L"~lock", false},  // no dot: never junk
      {L"~*.*", L"a~.txt", false},
      {L"*.??~", L"x.ab~", true},
      {L"*.??~", L"x.abc~", false},  // four characters after the dot
      {L"*.??~", L"x.b~", false},
      {L"iebak.dat", L"IEBAK.DAT", true},
      {L"iebak.dat", L"xiebak.dat", false},
      {L"ffastun.*", L"ffastun.ffl", true},
      {L"ffastun.*", L"ffastun0.ffl", false},
      {L"chklist.*", L"CHKLIST.MS", true},
      {L"file????._dd", L"FILE1234._DD", true},
      {L"file????._dd", L"file123._dd", false},
      {L"file????._dd", L"file12345._dd", false},
      {L"file????._dd", L"file1234._dx", false},
      {L"twain???.mtx", L"twain001.mtx", true},
      {L"twain???.mtx", L"twain01.mtx", false},
      {L"system.1st", L"System.1st", true},
      {L"suhdlog.dat", L"suhdlog.dat", true},
      {L"modemdet.txt", L"modemdet.txt", true},
      {L"modemdet.txt", L"readme.txt", false},
      {L"thumbs.db", L"Thumbs.db", true},
      {L"thumbs.db", L"other.db", false},
      {L"mscreate.dir", L"MSCREATE.DIR", true},
      {L"*.wri", L"Readme", false},  // no dot
      {L"*.", L"name.", true},       // empty extension, only for a mask that says so
      {L"*.tmp", L"name.", false},
  };
  for (const MatchCase& c : cases) {
    EXPECT_EQ(MaskAccepts(c.mask, LowerCaseName(c.name)), c.accepted) << ToUtf8(c.mask) << " on " << ToUtf8(c.name);
  }
}

TEST(JunkMask, NoMaskOfTheCatalogueAcceptsANameWithoutADot) {
  for (const wchar_t* name : {L"readme", L"Readme", L"chklist", L"thumbs", L"~temp"}) {
    EXPECT_FALSE(FirstAcceptingMask(LowerCaseName(name), AllJunkMasks())) << ToUtf8(name);
  }
}

TEST(JunkMask, TheFirstChosenMaskThatAcceptsWins) {
  const std::vector<std::wstring> masks = {L"*.log", L"~*.*", L"*.tmp", L"*.??~"};
  EXPECT_EQ(FirstAcceptingMask(L"~draft.tmp", masks), 1u) << "\"~*.*\" comes before \"*.tmp\"";
  EXPECT_EQ(FirstAcceptingMask(L"draft.tmp", masks), 2u);
  EXPECT_EQ(FirstAcceptingMask(L"~a.ab~", masks), 1u);
  EXPECT_EQ(FirstAcceptingMask(L"a.ab~", masks), 3u);
  EXPECT_FALSE(FirstAcceptingMask(L"a.txt", masks));
  // The catalogue's two "chklist.*" rows chosen together: the first is the one reported.
  const std::vector<std::wstring> twice = {L"*.chk", L"chklist.*", L"chklist.*"};
  EXPECT_EQ(FirstAcceptingMask(L"chklist.ms", twice), 1u);
}

TEST(JunkMask, NamesAreLoweredBeyondAscii) {
  EXPECT_EQ(LowerCaseName(L"\u00C4RGER.TMP"), L"\u00E4rger.tmp");
  EXPECT_EQ(LowerCaseName(L"Mixed.Old"), L"mixed.old");
  EXPECT_EQ(LowerCaseName(L""), L"");
}

}  // namespace
}  // namespace lumenor
