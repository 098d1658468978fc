// The built-in rule file as the program reads it from its resources: it loads without a
// problem, its items are those of the golden listing (ids never change once given), and
// what it may touch keeps to the rules of today's browsers and applications.
#include "res/resource.h"
#include "rules/NameMask.h"
#include "rules/XmlRuleReader.h"
#include "tests/rules/RuleSetViews.h"
#include "tests/support/TestData.h"

#include "base/TextEncoding.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace lumenor::rules {
namespace {

const RuleSet& BuiltIn() {
  static const RuleSet rules =
      ReadXmlRules(testing::LoadTestData(IDR_BUILTIN_RULES), L"built-in rules", RuleOrigin::kBuiltIn);
  return rules;
}

bool SameText(std::wstring_view a, std::wstring_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) { return towlower(x) == towlower(y); });
}

std::vector<std::wstring> NamesOf(std::wstring_view path) {
  std::vector<std::wstring> names;
  size_t start = 0;
  for (size_t end = path.find(L'\\');; end = path.find(L'\\', start)) {
    names.emplace_back(path.substr(start, end - start));
    if (end == std::wstring_view::npos) break;
    start = end + 1;
  }
  return names;
}

// Every file action of an item, those of its profile actions with them.
std::vector<const FileAction*> FileActionsOf(const Item& item) {
  std::vector<const FileAction*> actions;
  for (const FileAction& files : item.files) actions.push_back(&files);
  for (const ProfileAction& profiles : item.profiles) {
    for (const FileAction& files : profiles.files) actions.push_back(&files);
  }
  return actions;
}

TEST(BuiltInRules, LoadWithoutAProblem) {
  ASSERT_FALSE(testing::LoadTestData(IDR_BUILTIN_RULES).empty()) << "the rule file is compiled into the program";
  EXPECT_EQ(testing::ProblemTexts(BuiltIn()), std::vector<std::string>{});
  EXPECT_EQ(BuiltIn().applications.size(), 22u);
}

TEST(BuiltInRules, ItemsIdsDefaultsAndWarningsAreThoseOfTheGoldenListing) {
  std::vector<std::string> expected;
  for (const std::string& line : testing::SplitLines(testing::LoadTestData(IDR_EXPECTED_BUILTIN_RULES))) {
    if (!line.empty() && line.front() != '#') expected.push_back(line);
  }
  std::vector<std::string> loaded;
  for (const Application& application : BuiltIn().applications) {
    for (const Item& item : application.items) {
      loaded.push_back(std::to_string(item.id) + "\t" + ToUtf8(application.category) + "\t" + ToUtf8(application.name) +
                       "\t" + ToUtf8(item.name) + "\t" + (item.tickedByDefault ? "ticked" : "-") + "\t" +
                       ToUtf8(item.warning));
    }
  }
  for (size_t row = 0; row < std::min(expected.size(), loaded.size()); ++row) {
    ASSERT_EQ(loaded[row], expected[row]) << "first differing row: " << row + 1;
  }
  EXPECT_EQ(loaded.size(), expected.size());
}

TEST(BuiltInRules, EachCategoryKeepsToItsBlockOfIds) {
  const std::vector<std::pair<std::wstring, std::pair<unsigned, unsigned>>> blocks = {
      {L"Web Browsers Today", {1000, 1999}},
      {L"Windows 10 and 11", {2000, 2999}},
      {L"Applications Today", {3000, 3999}}};
  for (const Application& application : BuiltIn().applications) {
    const auto block = std::find_if(blocks.begin(), blocks.end(),
                                    [&](const auto& entry) { return entry.first == application.category; });
    ASSERT_NE(block, blocks.end()) << ToUtf8(application.category);
    for (const Item& item : application.items) {
      EXPECT_GE(item.id, block->second.first) << ToUtf8(application.name + L": " + item.name);
      EXPECT_LE(item.id, block->second.second) << ToUtf8(application.name + L": " + item.name);
    }
  }
}

TEST(BuiltInRules, BrowsersTickCacheCookiesAndHistoryAndWarnOfEverythingElse) {
  for (const Application& application : BuiltIn().applications) {
    if (application.category != L"Web Browsers Today") continue;
    SCOPED_TRACE(ToUtf8(application.name));
    EXPECT_FALSE(application.detection.Empty()) << "shown only where the browser is";
    EXPECT_FALSE(application.processes.empty());
    EXPECT_FALSE(application.lockFiles.empty());
    ASSERT_EQ(testing::ItemNames(RuleSet{RuleOrigin::kBuiltIn, {application}, {}}),
              (std::vector<std::wstring>{L"Cache", L"Cookies", L"History", L"Sessions", L"Form data",
                                         L"Saved passwords", L"Site storage"}));
    for (const Item& item : application.items) {
      EXPECT_EQ(item.tickedByDefault, item.warning.empty()) << ToUtf8(item.name);
    }
    EXPECT_TRUE(application.items[0].tickedByDefault && application.items[1].tickedByDefault &&
                application.items[2].tickedByDefault);
  }
}

// Whatever a later edit of the file says, it names none of the files and folders that
// hold what users keep: keys, bookmarks, settings, unsaved drafts, mail.
TEST(BuiltInRules, NoActionReachesWhatUsersKeep) {
  const std::vector<std::wstring> keptFiles = {
      L"Local State", L"Preferences",   L"Secure Preferences", L"Bookmarks", L"Web Data",         L"key4.db",
      L"cert9.db",    L"places.sqlite", L"cookies.sqlite",     L"Cookies",   L"Extension Cookies"};
  // Folder names, in lower case; Spotify's alone: Firefox's "storage" holds site data.
  const std::set<std::wstring> keptFolders = {L"extensions",
                                              L"local extension settings",
                                              L"sync extension settings",
                                              L"collections",
                                              L"backup",
                                              L"user",
                                              L"mail",
                                              L"imapmail",
                                              L"news",
                                              L"tabstate"};
  const std::wstring spotifyKeeps = L"storage";
  for (const Application& application : BuiltIn().applications) {
    // A mask for every file never stands in an application's own folder.
    std::set<std::wstring> ownFolders = {L"", L"*"};
    for (const std::wstring& path : application.detection.paths) ownFolders.insert(NamesOf(path).back());
    for (const Item& item : application.items) {
      const std::string where = ToUtf8(application.name + L": " + item.name);
      for (const FileAction* files : FileActionsOf(item)) {
        for (std::wstring name : NamesOf(files->folder)) {
          std::transform(name.begin(), name.end(), name.begin(), towlower);
          EXPECT_EQ(keptFolders.count(name), 0u) << where << ": " << ToUtf8(files->folder);
          EXPECT_FALSE(application.name == L"Spotify" && name == spotifyKeeps) << where;
        }
        for (const std::wstring& mask : files->masks) {
          for (const std::wstring& kept : keptFiles) {
            EXPECT_FALSE(MaskMatches(mask, kept) && !MatchesEveryName(mask)) << where << ": " << ToUtf8(mask);
          }
          if (MatchesEveryName(mask)) {
            const std::wstring last = NamesOf(files->folder).back();
            EXPECT_FALSE(std::any_of(ownFolders.begin(), ownFolders.end(),
                                     [&](const std::wstring& own) { return SameText(own, last); }))
                << where << ": every file of " << ToUtf8(files->folder);
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace lumenor::rules
