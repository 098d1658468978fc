// "setting.ini" as the program writes and reads it: the default file, options, the saved
// selections of items and the cookie keep-list.
#include "base/ModulePath.h"
#include "catalogue/ItemIds.h"
#include "settings/Settings.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <windows.h>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::ReadFileBytes;
using testing::TempFolder;
using testing::WriteFileBytes;

// The file's non-blank lines, as the profile functions laid them out.
std::vector<std::string> MeaningfulLines(const std::wstring& path) {
  std::vector<std::string> lines;
  for (std::string& line : testing::SplitLines(ReadFileBytes(path))) {
    if (!line.empty()) {
      lines.push_back(std::move(line));
    }
  }
  return lines;
}

class SettingsFile : public ::testing::Test {
 protected:
  TempFolder folder_;
  std::wstring path_ = folder_ / L"setting.ini";
  CIniFileRW file_ = CIniFileRW::AtPath(path_);
};

TEST_F(SettingsFile, DefaultsAreWrittenKeyForKeyInOrder) {
  ASSERT_TRUE(WriteDefaultSettings(file_));
  const std::vector<std::string> expected = {
      "[General Settings]",
      "Run at windows startup=0",
      "Automaticly update=0",
      "[Exit setting]",
      "exit=0",
      "tray=1",
      "[Scan Schduler]",
      "every=0",
      "day=0",
      "hour=9",
      "minute=38",
      "when=0",
      "[OneClickItem]",
      "OneClickItems=10",
      "item0=104",
      "item1=105",
      "item2=106",
      "item3=107",
      "item4=108",
      "item5=109",
      "item6=113",
      "item7=129",
      "item8=130",
      "item9=132",
      "[DefaultItem]",
      "DefaultItems=12",
      "item0=104",
      "item1=105",
      "item2=106",
      "item3=107",
      "item4=108",
      "item5=109",
      "item6=113",
      "item7=129",
      "item8=130",
      "item9=141",
      "[RecentItem]",
      "RecentItems=-1",
  };
  EXPECT_EQ(MeaningfulLines(path_), expected);
}

TEST_F(SettingsFile, DefaultScanSelectionDeclaresTwelveOfWhichTwoReadAsOne) {
  ASSERT_TRUE(WriteDefaultSettings(file_));
  const std::vector<unsigned> windowsEntries = {
      kItemDocumentHistory,       kItemSearchHistory,         kItemTemporaryFiles, kItemRecycleBins,
      kItemStartMenuClickHistory, kItemStartMenuOrderHistory, kItemRunHistory};
  std::vector<unsigned> scan = windowsEntries;
  scan.insert(scan.end(), {kItemIeTemporaryFiles, kItemVisitedSites, kItemIeAddressBarHistory, 1, 1});
  EXPECT_EQ(ReadScanSelection(file_), scan);
  std::vector<unsigned> oneClick = windowsEntries;
  oneClick.insert(oneClick.end(), {kItemIeTemporaryFiles, kItemVisitedSites, kItemIeCookies});
  EXPECT_EQ(ReadSelection(file_, Selection::kOneClick), oneClick);
}

TEST_F(SettingsFile, DefaultOptionsReadBackAsWritten) {
  ASSERT_TRUE(WriteDefaultSettings(file_));
  const OptionValues options = ReadOptionValues(file_);
  EXPECT_EQ(options.runAtStartup, 0);
  EXPECT_EQ(options.autoUpdate, 0);
  EXPECT_EQ(options.exitOnClose, 0);
  EXPECT_EQ(options.trayOnClose, 1);
  EXPECT_EQ(options.scheduleOn, 0);
  EXPECT_EQ(options.day, 0);
  EXPECT_EQ(options.hour, 9);
  EXPECT_EQ(options.minute, 38);
  EXPECT_EQ(options.pm, 0);
}

TEST_F(SettingsFile, AnEmptyOrMissingFileReadsEveryOptionAsOne) {
  for (const bool present : {true, false}) {
    if (present) {
      ASSERT_TRUE(WriteFileBytes(path_, ""));
    }
    const OptionValues options = ReadOptionValues(file_);
    for (const int value : {options.runAtStartup, options.autoUpdate, options.exitOnClose, options.trayOnClose,
                            options.scheduleOn, options.day, options.hour, options.minute, options.pm}) {
      EXPECT_EQ(value, 1) << (present ? "empty file" : "missing file");
    }
    // A count of 1 with no entry gives one entry that names no item.
    EXPECT_EQ(ReadSelection(file_, Selection::kOneClick), std::vector<unsigned>{1});
    EXPECT_EQ(ReadScanSelection(file_), std::vector<unsigned>{1});
    if (present) {
      ASSERT_TRUE(DeleteFileW(path_.c_str()));
    }
  }
  EXPECT_FALSE(FileExists(path_)) << "reading must not create the file";
}

TEST_F(SettingsFile, AShorterListLeavesTheOldKeysBehindUnread) {
  const std::vector<unsigned> ten = {kItemDocumentHistory, kItemSearchHistory,         kItemTemporaryFiles,
                                     kItemRecycleBins,     kItemStartMenuClickHistory, kItemStartMenuOrderHistory,
                                     kItemRunHistory,      kItemIeTemporaryFiles,      kItemVisitedSites,
                                     kItemIeCookies};
  const std::vector<unsigned> three = {kItemMediaPlayerRecentFiles, kItemMediaPlayerRecentUrls,
                                       kItemMediaPlayerDatabase};
  ASSERT_TRUE(WriteSelection(file_, Selection::kRecent, ten));
  ASSERT_TRUE(WriteSelection(file_, Selection::kRecent, three));

  EXPECT_EQ(ReadScanSelection(file_), three);
  EXPECT_EQ(file_.ReadInt(L"RecentItem", L"RecentItems"), 3);
  EXPECT_EQ(file_.ReadInt(L"RecentItem", L"item3"), int{kItemRecycleBins});
  EXPECT_EQ(file_.ReadInt(L"RecentItem", L"item9"), int{kItemIeCookies});
}

TEST_F(SettingsFile, RecentCountOfMinusOneFallsBackToTheDefaultList) {
  ASSERT_TRUE(WriteDefaultSettings(file_));
  ASSERT_TRUE(file_.WriteInt(L"RecentItem", L"item0", kItemIcqChatHistory));  // left over, not counted
  EXPECT_EQ(ReadScanSelection(file_).size(), 12u);
  EXPECT_EQ(ReadScanSelection(file_).front(), kItemDocumentHistory);

  ASSERT_TRUE(WriteSelection(file_, Selection::kRecent, std::vector<unsigned>{}));
  EXPECT_TRUE(ReadScanSelection(file_).empty()) << "an empty saved selection stays empty";

  ASSERT_TRUE(file_.WriteInt(L"RecentItem", L"RecentItems", -5));
  EXPECT_TRUE(ReadScanSelection(file_).empty()) << "only -1 means nothing saved";
}

TEST_F(SettingsFile, ADamagedHugeCountIsReadOnlyAsFarAsAListCanGo) {
  ASSERT_TRUE(file_.WriteInt(L"OneClickItem", L"OneClickItems", 2000000000));
  ASSERT_TRUE(file_.WriteInt(L"OneClickItem", L"item0", kItemIcqChatHistory));
  const std::vector<unsigned> ids = ReadSelection(file_, Selection::kOneClick);
  EXPECT_EQ(ids.size(), 1024u);
  EXPECT_EQ(ids.front(), kItemIcqChatHistory);
}

TEST_F(SettingsFile, AListReadInOneGoReadsEachEntryAsTheSystemReadsItsKey) {
  // A hand-edited list: names in other cases, a name twice, a second section of the same
  // name, and values no program wrote.
  ASSERT_TRUE(WriteFileBytes(path_,
                             "[RecentItem]\r\nRecentItems=18\r\nitem0=104\r\nITEM1=105\r\nitem2=-5\r\nitem3=\r\n"
                             "item4=0x1F\r\nitem5=0X1F\r\nitem6=abc\r\nitem7=12abc\r\nitem8=\"42\"\r\n"
                             "item9='43'\r\nitem10=+7\r\nitem11=0b101\r\nitem12=99999999999\r\n"
                             "item13 =  0o17 \r\nitem1=999\r\nitem14=\"12\r\n"
                             "item15=000000000000000000000000000001\r\n"
                             "[Other]\r\nitem16=5\r\n[RecentItem]\r\nitem17=77\r\n"));
  std::vector<unsigned> keyByKey;
  for (int i = 0; i < 18; ++i) {
    keyByKey.push_back(static_cast<unsigned>(file_.ReadInt(L"RecentItem", L"item" + std::to_wstring(i))));
  }
  const std::vector<unsigned> list = ReadScanSelection(file_);
  ASSERT_EQ(list.size(), keyByKey.size());
  for (size_t i = 0; i < list.size(); ++i) EXPECT_EQ(list[i], keyByKey[i]) << "item" << i;
  EXPECT_EQ(list[0], 104u);
  EXPECT_EQ(list[1], 105u) << "the first of a name counts";
  EXPECT_EQ(list[3], 1u) << "an empty entry names no item";
}

TEST_F(SettingsFile, NumbersRoundTripInDecimalWithSign) {
  ASSERT_TRUE(file_.WriteInt(L"Scan Schduler", L"hour", 20));
  ASSERT_TRUE(file_.WriteInt(L"Scan Schduler", L"minute", -7));
  EXPECT_EQ(file_.ReadInt(L"Scan Schduler", L"hour"), 20) << "out-of-range values are kept as they are";
  EXPECT_EQ(file_.ReadInt(L"Scan Schduler", L"minute"), -7);
  EXPECT_EQ(file_.ReadInt(L"scan schduler", L"HOUR"), 20) << "names are not case-sensitive";
  const std::vector<std::string> lines = MeaningfulLines(path_);
  EXPECT_EQ(lines, (std::vector<std::string>{"[Scan Schduler]", "hour=20", "minute=-7"}));
}

TEST_F(SettingsFile, StringsAreReadWholeHoweverLong) {
  const std::wstring longText(5000, L'p');
  ASSERT_TRUE(file_.WriteString(L"Profile0", L"Path", longText));
  ASSERT_TRUE(file_.WriteString(L"Profile0", L"Name", L"default"));
  std::wstring text = L"stale";
  EXPECT_TRUE(file_.ReadString(L"Profile0", L"Path", text));
  EXPECT_EQ(text, longText);
  EXPECT_TRUE(file_.ReadString(L"Profile0", L"Name", text));
  EXPECT_EQ(text, L"default");
  EXPECT_FALSE(file_.ReadString(L"Profile0", L"Missing", text));
  EXPECT_TRUE(text.empty());
}

TEST_F(SettingsFile, APathTooLongForTheFileIsNeverUsedShortened) {
  const std::wstring tooLong = folder_.Path() + std::wstring(CIniFileRW::kMaxPath, L'a') + L".ini";
  const CIniFileRW file = CIniFileRW::AtPath(tooLong);
  EXPECT_FALSE(file.HasUsablePath());
  EXPECT_FALSE(file.WriteInt(L"Exit setting", L"exit", 0));
  EXPECT_EQ(file.ReadInt(L"Exit setting", L"exit"), 1);
  EXPECT_FALSE(WriteDefaultSettings(file));
  WIN32_FIND_DATAW entry;
  HANDLE search = FindFirstFileW((folder_.Path() + L"*.ini").c_str(), &entry);
  EXPECT_EQ(search, INVALID_HANDLE_VALUE) << "a file was written under a shortened name";
  if (search != INVALID_HANDLE_VALUE) {
    FindClose(search);
  }
}

TEST_F(SettingsFile, TheCookieKeepListIsWrittenInItsOwnSectionAndReadsBack) {
  ASSERT_TRUE(WriteDefaultSettings(file_));
  const std::vector<std::wstring> domains = {L"example.org", L"mail.example.net"};
  ASSERT_TRUE(WriteCookiesToKeep(file_, domains));
  EXPECT_EQ(ReadCookiesToKeep(file_), domains);
  const std::vector<std::string> lines = MeaningfulLines(path_);
  const std::vector<std::string> section(std::find(lines.begin(), lines.end(), "[CookiesToKeep]"), lines.end());
  EXPECT_EQ(section, (std::vector<std::string>{"[CookiesToKeep]", "domain0=example.org", "domain1=mail.example.net",
                                               "CookiesToKeep=2"}));
}

TEST_F(SettingsFile, AMissingCookieKeepListReadsAsAnEmptyList) {
  EXPECT_TRUE(ReadCookiesToKeep(file_).empty()) << "no file";
  ASSERT_TRUE(WriteDefaultSettings(file_));
  EXPECT_TRUE(ReadCookiesToKeep(file_).empty()) << "no section";
  ASSERT_TRUE(file_.WriteString(L"CookiesToKeep", L"domain0", L"example.org"));
  EXPECT_TRUE(ReadCookiesToKeep(file_).empty()) << "no count";
  ASSERT_TRUE(file_.WriteString(L"CookiesToKeep", L"CookiesToKeep", L"-1"));
  EXPECT_TRUE(ReadCookiesToKeep(file_).empty()) << "a count that is no count";
}

TEST_F(SettingsFile, KeepListEntriesThatAreMissingOrEmptyArePassedOver) {
  ASSERT_TRUE(file_.WriteInt(L"CookiesToKeep", L"CookiesToKeep", 4));
  ASSERT_TRUE(file_.WriteString(L"CookiesToKeep", L"domain0", L"a.example"));
  ASSERT_TRUE(file_.WriteString(L"CookiesToKeep", L"domain1", L""));
  ASSERT_TRUE(file_.WriteString(L"CookiesToKeep", L"domain3", L"d.example"));
  EXPECT_EQ(ReadCookiesToKeep(file_), (std::vector<std::wstring>{L"a.example", L"d.example"}));
}

TEST_F(SettingsFile, AShorterKeepListLeavesNoDomainTakenOffItInTheFile) {
  ASSERT_TRUE(WriteCookiesToKeep(file_, std::vector<std::wstring>{L"a.example", L"b.example", L"c.example"}));
  ASSERT_TRUE(WriteCookiesToKeep(file_, std::vector<std::wstring>{L"c.example"}));
  EXPECT_EQ(ReadCookiesToKeep(file_), std::vector<std::wstring>{L"c.example"});
  EXPECT_EQ(MeaningfulLines(path_),
            (std::vector<std::string>{"[CookiesToKeep]", "domain0=c.example", "CookiesToKeep=1"}));
}

TEST(SettingsFileLocation, IsTheExecutablesOwnFolder) {
  const CIniFileRW file(kSettingsFileName);
  EXPECT_EQ(file.Path(), ModuleFolder() + L"setting.ini");
  EXPECT_TRUE(file.HasUsablePath());
}

}  // namespace
}  // namespace lumenor
