// The community's own winapp2.ini (version 260730), built into this test program when the
// build found a copy (tests/CMakeLists.txt): every entry but those its faults leave empty,
// the file's figures key by key, each fault at its line, and the time a load takes.
#include "rules/Winapp2Reader.h"
#include "tests/rules/RuleSetViews.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace lumenor {
namespace {

using rules::Exclusion;
using rules::FileScope;
using rules::Hive;
using rules::Item;
using rules::Winapp2File;
using testing::FindApplication;
using testing::FindItem;
using testing::ProblemTexts;

class RealWinapp2 : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    bytes_ = new std::string(testing::LoadTestData(IDR_WINAPP2_REAL_FILE));
    if (!bytes_->empty()) file_ = new Winapp2File(rules::ReadWinapp2(*bytes_, L"Winapp2.ini"));
  }
  static void TearDownTestSuite() {
    delete file_;
    delete bytes_;
    file_ = nullptr;
    bytes_ = nullptr;
  }
  void SetUp() override {
    if (file_ == nullptr) GTEST_SKIP() << "no copy of Winapp2.ini was found when this program was built";
  }

  template <typename Visit>
  static void ForEachItem(Visit visit) {
    for (const rules::Application& application : file_->rules.applications) {
      for (const Item& item : application.items) visit(item);
    }
  }

  static std::string* bytes_;
  static Winapp2File* file_;
};

std::string* RealWinapp2::bytes_ = nullptr;
Winapp2File* RealWinapp2::file_ = nullptr;

bool HasWildcard(std::wstring_view text) { return text.find_first_of(L"*?") != std::wstring_view::npos; }

TEST_F(RealWinapp2, LoadsEveryEntryButTheTwoItsFaultsLeaveEmpty) {
  const rules::Winapp2Counts& counts = file_->counts;
  EXPECT_EQ(counts.version, L"260730");
  EXPECT_EQ(counts.entriesRead, 4067);
  EXPECT_EQ(counts.entriesLoaded, 4065);
  EXPECT_EQ(file_->rules.applications.size(), 73u);
  std::set<unsigned> ids;
  size_t items = 0;
  ForEachItem([&](const Item& item) {
    ++items;
    ids.insert(item.id);
  });
  EXPECT_EQ(items, 4065u);
  EXPECT_EQ(ids.size(), items) << "every item has an id of its own";
  EXPECT_EQ(FindItem(file_->rules, L"Moonlighter"), nullptr);
  EXPECT_EQ(FindItem(file_->rules, L"Samsung Odyssey 3D Hub"), nullptr);
  for (const wchar_t* group : {L"Applications", L"Internet", L"Multimedia", L"Utilities", L"Windows", L"Games"}) {
    const rules::Application* application = FindApplication(file_->rules, group);
    ASSERT_NE(application, nullptr) << ::testing::PrintToString(std::wstring(group));
    EXPECT_EQ(application->category, L"Community Rules");
  }
  EXPECT_EQ(FindApplication(file_->rules, L"Utilities")->items.size(), 944u);
}

TEST_F(RealWinapp2, EachFaultIsReportedAtItsLine) {
  EXPECT_EQ(ProblemTexts(file_->rules),
            (std::vector<std::string>{
                "11029 [Dolby Access] FileKey5: unknown variable %Package (no closing %)",
                "11252 [Dropbox] FileKey7: no '|' between the folder and its file masks",
                "21515 [Moonlighter] entry left out: it has no usable FileKey or RegKey",
                "21517 [Moonlighter] DetectFile: stray '%' after \"%UserProfile%\\AppData\"",
                "21518 [Moonlighter] FileKey1: stray '%' after \"%UserProfile%\\AppData\"",
                "21519 [Moonlighter] FileKey2: stray '%' after \"%UserProfile%\\AppData\"",
                "27107 [Samsung Live Wallpaper] FileKey5: unknown variable %Package (no closing %)",
                "27108 [Samsung Live Wallpaper] FileKey6: unknown variable %Package (no closing %)",
                "27149 [Samsung Odyssey 3D Hub] entry left out: it has no usable FileKey or RegKey",
                "27152 [Samsung Odyssey 3D Hub] FileKey1: stray '%' after \"%UserProfile%\\AppData\"",
            }));
  for (const rules::Problem& problem : file_->rules.problems) EXPECT_EQ(problem.where.file, L"Winapp2.ini");
}

// The file's own figures; the keys refused above account for every difference.
TEST_F(RealWinapp2, FileKeysMatchTheFilesFiguresLessTheSevenRefused) {
  const rules::Winapp2Counts& counts = file_->counts;
  EXPECT_EQ(counts.fileKeys.read, 14118);
  EXPECT_EQ(counts.fileKeys.refused, 7);
  std::map<FileScope, int> scopes;
  int wildFolders = 0;
  int wildBeforeLast = 0;
  ForEachItem([&](const Item& item) {
    for (const rules::FileAction& action : item.files) {
      ++scopes[action.scope];
      wildFolders += HasWildcard(action.folder) ? 1 : 0;
      const size_t last = action.folder.rfind(L'\\');
      wildBeforeLast += last != std::wstring::npos && HasWildcard(action.folder.substr(0, last)) ? 1 : 0;
    }
  });
  // No flag: 6,411 in the file, less the five refused (three %Package, two stray '%'),
  // and the key without any '|' has no flag slot at all. REMOVESELF: 5,522 less one.
  EXPECT_EQ(scopes[FileScope::kDirect], 6411 - 5);
  EXPECT_EQ(scopes[FileScope::kRecursive], 2184);
  EXPECT_EQ(scopes[FileScope::kRemoveSelf], 5522 - 1);
  EXPECT_EQ(scopes[FileScope::kEmptyFolders], 0);
  EXPECT_EQ(wildFolders, 5764);
  EXPECT_EQ(wildBeforeLast, 3894);
}

TEST_F(RealWinapp2, RegistryExclusionDetectionAndWarningFiguresMatchTheFile) {
  const rules::Winapp2Counts& counts = file_->counts;
  EXPECT_EQ(counts.regKeys.read, 3677);
  EXPECT_EQ(counts.excludeKeys.read, 86);
  EXPECT_EQ(counts.detects.read, 1444);
  EXPECT_EQ(counts.detectFiles.read, 3319);
  EXPECT_EQ(counts.detectFiles.refused, 1);
  EXPECT_EQ(counts.warnings, 5);
  std::map<Hive, int> hives;
  int withValue = 0;
  std::map<Exclusion::Kind, int> exclusions;
  int detectKeys = 0;
  int detectPaths = 0;
  int warnings = 0;
  ForEachItem([&](const Item& item) {
    for (const rules::RegistryAction& action : item.registry) {
      ++hives[action.key.hive];
      withValue += action.value ? 1 : 0;
    }
    for (const Exclusion& exclusion : item.exclusions) ++exclusions[exclusion.kind];
    detectKeys += static_cast<int>(item.detection.keys.size());
    detectPaths += static_cast<int>(item.detection.paths.size());
    warnings += item.warning.empty() ? 0 : 1;
  });
  EXPECT_EQ(hives[Hive::kCurrentUser], 3434);
  EXPECT_EQ(hives[Hive::kLocalMachine], 178);
  EXPECT_EQ(hives[Hive::kUsers], 65);
  EXPECT_EQ(withValue, 2453);
  EXPECT_EQ(exclusions[Exclusion::Kind::kFiles], 51);
  EXPECT_EQ(exclusions[Exclusion::Kind::kFolder], 31);
  EXPECT_EQ(exclusions[Exclusion::Kind::kRegistryKey], 4);
  EXPECT_EQ(detectKeys, 1444);
  // Less the refused one and the sound one of Samsung Odyssey 3D Hub, which is left out.
  EXPECT_EQ(detectPaths, 3319 - 2);
  EXPECT_EQ(warnings, 5);
}

TEST_F(RealWinapp2, EntriesReadAsTheirAuthorsWroteThem) {
  const Item* framework = FindItem(file_->rules, L".NET Framework", L"Windows");
  ASSERT_NE(framework, nullptr);
  EXPECT_EQ(framework->id, rules::DerivedItemId(L"Windows", L".NET Framework"));
  EXPECT_EQ(framework->where.line, 13);
  EXPECT_EQ(framework->detection.keys.size(), 2u);
  ASSERT_EQ(framework->files.size(), 18u);
  EXPECT_EQ(framework->files[7].folder, L"%WinDir%\\assembly\\t*mp");
  EXPECT_EQ(framework->files[7].scope, FileScope::kRemoveSelf);
  EXPECT_EQ(framework->files[7].where.line, 24);
  ASSERT_EQ(framework->registry.size(), 3u);
  EXPECT_EQ(framework->registry[1].key.hive, Hive::kLocalMachine);
  EXPECT_EQ(framework->registry[1].key.path, L"Software\\CBSTEST");
  EXPECT_EQ(framework->registry[1].value, L"CBSTestWDSLogFile");

  const Item* dropbox = FindItem(file_->rules, L"Dropbox", L"Utilities");
  ASSERT_NE(dropbox, nullptr);
  ASSERT_EQ(dropbox->files.size(), 26u) << "27 FileKeys, the seventh refused";
  EXPECT_EQ(dropbox->files[5].where.line, 11252 - 1);
  EXPECT_EQ(dropbox->files[6].where.line, 11252 + 1);
  EXPECT_EQ(dropbox->files[6].folder, L"%LocalAppData%\\Dropbox\\CrashReports");

  const Item* shell = FindItem(file_->rules, L"Windows Shell - Folder/Dialog Box View Settings");
  ASSERT_NE(shell, nullptr);
  ASSERT_EQ(shell->exclusions.size(), 4u);
  EXPECT_EQ(shell->exclusions[2].kind, Exclusion::Kind::kRegistryKey);
  EXPECT_EQ(shell->exclusions[2].key.path, L"Software\\Microsoft\\Windows\\Shell\\Bags\\1\\Desktop");
  EXPECT_EQ(shell->exclusions[2].where.line, 33621);
}

TEST_F(RealWinapp2, LoadsInAFewTensOfMilliseconds) {
  std::vector<double> times;
  LARGE_INTEGER frequency{};
  ASSERT_TRUE(QueryPerformanceFrequency(&frequency));
  for (int run = 0; run < 5; ++run) {
    LARGE_INTEGER start{};
    LARGE_INTEGER end{};
    ASSERT_TRUE(QueryPerformanceCounter(&start));
    const Winapp2File file = rules::ReadWinapp2(*bytes_, L"Winapp2.ini");
    ASSERT_TRUE(QueryPerformanceCounter(&end));
    EXPECT_EQ(file.counts.entriesLoaded, 4065);
    times.push_back(1000.0 * static_cast<double>(end.QuadPart - start.QuadPart) /
                    static_cast<double>(frequency.QuadPart));
  }
  std::sort(times.begin(), times.end());
  const double median = times[times.size() / 2];
  RecordProperty("median_load_ms", std::to_string(median));
  std::printf("Winapp2.ini (%zu bytes) loads in %.1f ms (median of 5)\n", bytes_->size(), median);
  // Generous for a busy test machine; other readers have taken twenty seconds.
  EXPECT_LT(median, 1000.0);
}

}  // namespace
}  // namespace lumenor
