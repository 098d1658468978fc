// A scan of every entry of the community's own winapp2.ini (built into this test program
// when the build found a copy) on the test machine's folders: the rules are untrusted
// data, so no pattern picks a file that lies right in a protected folder, and nothing is
// found behind a link.
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestData.h"
#include "tests/support/TraceFixtures.h"

#include "catalogue/Catalogue.h"
#include "engine/FilePath.h"
#include "engine/RuleTraces.h"
#include "rules/NameMask.h"
#include "rules/Winapp2Reader.h"
#include "scan/PrivacyRun.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>
#include <vector>

namespace lumenor {
namespace {

// Whether a rule of the item names this file by its whole name, without a wildcard.
bool NamedByItsRule(const rules::Item& item, std::wstring_view name) {
  for (const rules::FileAction& files : item.files) {
    for (const std::wstring& mask : files.masks) {
      if (!rules::HasWildcard(mask) && rules::MaskMatches(mask, name)) return true;
    }
  }
  return false;
}

bool BehindALink(const std::wstring& folder) {
  for (size_t slash = folder.find(L'\\', 3); slash != std::wstring::npos; slash = folder.find(L'\\', slash + 1)) {
    const DWORD attributes = GetFileAttributesW(ForFileApi(folder.substr(0, slash)).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return true;
  }
  return false;
}

class NullReports final : public RunReports {
 public:
  void StageReached(RunStage) override {}
  void TraceFound(const FoundTrace& trace) override { traces.push_back(trace); }
  void LocationSkipped(const SkippedLocation&) override { ++skipped; }
  void Erased(int, uint64_t) override {}
  void EraseFailed(const std::wstring&) override {}
  std::vector<FoundTrace> traces;
  int skipped = 0;
};

TEST(CommunityRules, AScanOfEveryEntryFindsNothingAProtectedFolderOrALinkWouldGiveAway) {
  LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();  // it seeds two files at the root of C:
  const std::string bytes = testing::LoadTestData(IDR_WINAPP2_REAL_FILE);
  if (bytes.empty()) GTEST_SKIP() << "no copy of winapp2.ini was built in";
  // One name a rule gives by pattern and one it names, both right at the root of C:.
  const std::wstring byPattern = L"C:\\AdwCleaner[S01].txt";
  const std::wstring named = L"C:\\AiOLog.txt";
  ASSERT_TRUE(testing::WriteFileBytes(byPattern, "report"));
  ASSERT_TRUE(testing::WriteFileBytes(named, "log"));

  auto book = std::make_unique<rules::RuleBook>();
  book->Add(rules::ReadWinapp2(bytes, L"winapp2.ini").rules);
  const CCatalogue catalogue = CCatalogue::Build(std::move(book), [](const rules::RuleBook::Entry&) { return true; });
  std::vector<unsigned> ids;
  for (const rules::RuleBook::Entry& entry : catalogue.Rules()->Entries()) ids.push_back(entry.item->id);
  const auto run = MakeScanRun(catalogue.Root(), ids, catalogue.Rules());
  ASSERT_GT(run->Items().size(), 4000u);
  NullReports reports;
  const FolderGuard& guard = testing::MachineGuard();
  ScanItems(*run, nullptr, reports, StopToken(), guard);
  (void)DeleteFileW(byPattern.c_str());
  (void)DeleteFileW(named.c_str());

  bool namedFound = false;
  for (const FoundTrace& trace : reports.traces) {
    if (trace.isRegistry || trace.location.empty() || trace.location.back() != L'\\') continue;
    const rules::RuleBook::Entry* entry = catalogue.Rules()->Find(trace.item->Id());
    ASSERT_NE(entry, nullptr);
    if (guard.Inspect(trace.location).verdict == FolderVerdict::kProtectedFolder) {
      EXPECT_TRUE(NamedByItsRule(*entry->item, trace.name))
          << "picked by a pattern in a protected folder: " << ::testing::PrintToString(trace.location + trace.name)
          << " by " << ::testing::PrintToString(entry->item->name);
    }
    EXPECT_FALSE(BehindALink(trace.location)) << ::testing::PrintToString(trace.location + trace.name);
    namedFound = namedFound || trace.location + trace.name == named;
    EXPECT_NE(trace.location + trace.name, byPattern);
  }
  EXPECT_TRUE(namedFound) << "a file a rule names is found even at the root of a drive";
  EXPECT_GT(reports.skipped, 0) << "the broad rules are refused, and say so";
}

}  // namespace
}  // namespace lumenor
