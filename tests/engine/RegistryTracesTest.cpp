// Registry locations: what a scan reports and what an erase deletes and counts.
#include "engine/Registry.h"
#include "engine/RegistryTraces.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <sddl.h>

#include <atomic>
#include <utility>

namespace lumenor {
namespace {

using testing::TestKey;
using Found = std::pair<std::wstring, std::wstring>;  // key path, value name

std::vector<Found> Scan(const TestKey& key, std::wstring_view selector, const StopToken& stop = StopToken()) {
  std::vector<Found> found;
  ScanRegistryLocation(
      key.Root(), key.Path(), selector, stop,
      [&](std::wstring_view path, std::wstring_view name, uint64_t) { found.emplace_back(path, name); });
  return found;
}

TEST(RegistryScan, WholeKeyReportsValuesOfEveryLevelSubKeysBeforeTheirParent) {
  TestKey key;
  key.SetText(L"", L"a", L"1");
  key.SetText(L"", L"b", L"2");
  key.SetText(L"S", L"c", L"3");
  key.SetText(L"S\\T", L"d", L"4");
  key.CreateKey(L"S\\Empty");
  EXPECT_EQ(Scan(key, L"*.*"),
            (std::vector<Found>{{key / L"S\\T", L"d"}, {key / L"S", L"c"}, {key.Path(), L"a"}, {key.Path(), L"b"}}));
}

TEST(RegistryScan, NamedValueIsReportedOnlyWhenItExists) {
  TestKey key;
  key.SetText(L"", L"lastkey", L"HKEY_CURRENT_USER\\Software");
  key.SetText(L"", L"other", L"x");
  EXPECT_EQ(Scan(key, L"lastkey"), (std::vector<Found>{{key.Path(), L"lastkey"}}));
  EXPECT_TRUE(Scan(key, L"missing").empty());
  EXPECT_TRUE(Scan(key, L"LASTKEY").size() == 1) << "value names are not case-sensitive in the registry";
}

TEST(RegistryScan, MissingKeyOrKeysWithoutValuesReportNothing) {
  TestKey key;
  key.CreateKey(L"A\\B\\C");
  EXPECT_TRUE(Scan(key, L"*.*").empty());
  ScanRegistryLocation(
      HKEY_CURRENT_USER, key / L"Nowhere", L"*.*", StopToken(),
      [](std::wstring_view, std::wstring_view, uint64_t) { ADD_FAILURE() << "reported from a missing key"; });
}

TEST(RegistryScan, SeesTheThirtyTwoBitViewOfTheMachineBranch) {
  TestKey key(HKEY_LOCAL_MACHINE);
  key.SetText(L"", L"seen", L"1");
  EXPECT_EQ(Scan(key, L"*.*").size(), 1u);
#ifdef _WIN64
  // The same path in the 64-bit view is another key.
  HKEY native = nullptr;
  EXPECT_NE(RegOpenKeyExW(HKEY_LOCAL_MACHINE, key.Path().c_str(), 0, KEY_READ | KEY_WOW64_64KEY, &native),
            ERROR_SUCCESS);
  if (native != nullptr) RegCloseKey(native);
#endif
}

TEST(RegistryScan, StopsAfterTheEntryBeingHandled) {
  TestKey key;
  for (int i = 0; i < 20; ++i) key.SetText(L"S" + std::to_wstring(i), L"v", L"x");
  for (int i = 0; i < 20; ++i) key.SetText(L"", L"v" + std::to_wstring(i), L"x");
  StopSignal stop;
  int reported = 0;
  ScanRegistryLocation(key.Root(), key.Path(), L"*.*", StopToken(&stop),
                       [&](std::wstring_view, std::wstring_view, uint64_t) {
                         if (++reported == 3) stop.Request();
                       });
  EXPECT_EQ(reported, 3);

  // A fresh signal, set by nobody, stops nothing.
  const StopSignal fresh;
  EXPECT_EQ(Scan(key, L"*.*", StopToken(&fresh)).size(), 40u);
}

TEST(RegistryErase, WholeKeyGoesWithEverythingBelowAndCountsItsValues) {
  TestKey key;
  key.SetText(L"Clean", L"a", L"1");
  key.SetText(L"Clean", L"b", L"2");
  key.SetText(L"Clean\\S", L"c", L"3");
  key.SetText(L"Clean\\S\\T", L"d", L"4");
  key.CreateKey(L"Clean\\S\\Empty");
  key.SetText(L"Neighbour", L"keep", L"1");
  testing::RecordingTally tally;
  EraseRegistryLocation(key.Root(), key / L"Clean", L"*.*", tally);
  EXPECT_FALSE(key.KeyExists(L"Clean"));
  EXPECT_TRUE(key.ValueExists(L"Neighbour", L"keep"));
  EXPECT_EQ(tally.erased, 4);
  EXPECT_TRUE(tally.failures.empty());
}

TEST(RegistryErase, KeyWithSubKeysButNoValuesCountsOneErasedTrace) {
  TestKey key;
  key.CreateKey(L"Clean\\A\\B");
  key.CreateKey(L"Clean\\C");
  testing::RecordingTally tally;
  EraseRegistryLocation(key.Root(), key / L"Clean", L"*.*", tally);
  EXPECT_FALSE(key.KeyExists(L"Clean"));
  EXPECT_EQ(tally.erased, 1);
}

TEST(RegistryErase, NamedValueGoesAloneAndAMissingOneIsAFailure) {
  TestKey key;
  key.SetText(L"", L"Start Page", L"http://example.invalid/");
  key.SetText(L"", L"Other", L"x");
  testing::RecordingTally tally;
  EraseRegistryLocation(key.Root(), key.Path(), L"Start Page", tally);
  EXPECT_FALSE(key.ValueExists(L"", L"Start Page"));
  EXPECT_TRUE(key.ValueExists(L"", L"Other"));
  EXPECT_EQ(tally.reports, std::vector<int>{1});

  EraseRegistryLocation(key.Root(), key.Path(), L"Start Page", tally);
  EXPECT_EQ(tally.failures.size(), 1u);
  EraseRegistryLocation(key.Root(), key / L"Nowhere", L"*.*", tally);
  EraseRegistryLocation(key.Root(), key / L"Nowhere", L"value", tally);
  EXPECT_EQ(tally.failures.size(), 1u) << "a missing key is no failure";
}

// A key whose security lets everyone read it and nothing more, put back to full access
// at the end so the test key can go.
class ReadOnlyKey {
 public:
  ReadOnlyKey(const TestKey& key, const std::wstring& subKey) : key_(key), path_(key / subKey) {
    key.SetText(subKey, L"value", L"x");
    applied_ = SetSecurity(L"D:P(A;;KR;;;WD)");
  }
  ~ReadOnlyKey() { SetSecurity(L"D:P(A;;KA;;;WD)"); }
  bool Applied() const { return applied_; }

 private:
  bool SetSecurity(const wchar_t* sddl) const {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(sddl, SDDL_REVISION_1, &descriptor, nullptr)) {
      return false;
    }
    HKEY key = nullptr;
    bool set = false;
    if (RegOpenKeyExW(key_.Root(), path_.c_str(), 0, WRITE_DAC | kRegistryView, &key) == ERROR_SUCCESS) {
      set = RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor) == ERROR_SUCCESS;
      RegCloseKey(key);
    }
    LocalFree(descriptor);
    return set;
  }

  const TestKey& key_;
  std::wstring path_;
  bool applied_ = false;
};

TEST(RegistryEraseFailures, KeysAndValuesThatCannotGoAreCountedNeverLost) {
  TestKey key;
  key.SetText(L"Clean", L"trace", L"x");
  const ReadOnlyKey locked(key, L"Clean\\Locked");
  const ReadOnlyKey lockedAlone(key, L"Alone");
  ASSERT_TRUE(locked.Applied() && lockedAlone.Applied());
  HKEY probe = nullptr;
  if (RegOpenKeyExW(key.Root(), (key / L"Alone").c_str(), 0, DELETE | kRegistryView, &probe) == ERROR_SUCCESS) {
    RegCloseKey(probe);
    GTEST_SKIP() << "this registry does not enforce key security (Wine does not)";
  }

  testing::RecordingTally tally;
  EraseRegistryLocation(key.Root(), key / L"Clean", L"*.*", tally);
  const std::wstring prefix = L"HKEY_CURRENT_USER\\" + key.Path();
  EXPECT_EQ(tally.failures, (std::vector<std::wstring>{prefix + L"\\Clean\\Locked", prefix + L"\\Clean"}))
      << "the sub-key that cannot be opened, then the key it keeps from going";
  EXPECT_TRUE(key.ValueExists(L"Clean\\Locked", L"value"));

  testing::RecordingTally alone;
  EraseRegistryLocation(key.Root(), key / L"Alone", L"*.*", alone);
  EraseRegistryLocation(key.Root(), key / L"Alone", L"value", alone);
  EXPECT_EQ(alone.failures, (std::vector<std::wstring>{prefix + L"\\Alone", prefix + L"\\Alone\\value"}));
  EXPECT_EQ(alone.erased, 0);
}

TEST(RegistryLinks, AreNeitherFollowedByAScanNorByAnErase) {
  TestKey key;
  key.SetText(L"Target", L"canary", L"keep me");
  key.SetText(L"Clean", L"trace", L"x");
  if (!key.CreateLink(L"Clean\\Link", L"Target")) {
    GTEST_SKIP() << "registry links cannot be made here";
  }
  std::vector<Found> found;
  ScanRegistryLocation(
      key.Root(), key / L"Clean", L"*.*", StopToken(),
      [&](std::wstring_view path, std::wstring_view name, uint64_t) { found.emplace_back(path, name); });
  EXPECT_EQ(found, (std::vector<Found>{{key / L"Clean", L"trace"}})) << "scan went through the link";

  testing::RecordingTally tally;
  EraseRegistryLocation(key.Root(), key / L"Clean", L"*.*", tally);
  EXPECT_TRUE(key.ValueExists(L"Target", L"canary"));
  EXPECT_FALSE(key.KeyExists(L"Clean")) << "the link itself goes, and with it the key that held it";
  EXPECT_EQ(tally.erased, 1) << "only the value beside the link is counted";
}

TEST(RegistryDepth, ChainsFourHundredKeysDeepAreScannedAndErasedWhole) {
  TestKey key;
  std::wstring path;
  UniqueKey parent = OpenKey(key.Root(), key.Path(), KEY_ALL_ACCESS);
  ASSERT_TRUE(parent);
  // Built level by level so no path grows beyond what the registry accepts in one call.
  for (int level = 0; level < 400; ++level) {
    HKEY child = nullptr;
    ASSERT_EQ(
        RegCreateKeyExW(parent.Get(), L"k", 0, nullptr, 0, KEY_ALL_ACCESS | kRegistryView, nullptr, &child, nullptr),
        ERROR_SUCCESS)
        << "level " << level;
    parent = UniqueKey(child);
  }
  const wchar_t deepValue[] = L"deep";
  ASSERT_EQ(RegSetValueExW(parent.Get(), L"v", 0, REG_SZ, reinterpret_cast<const BYTE*>(deepValue), sizeof deepValue),
            ERROR_SUCCESS);
  parent.Reset();

  const std::vector<Found> found = Scan(key, L"*.*");
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].second, L"v");
  EXPECT_EQ(found[0].first.size(), key.Path().size() + 400 * 2);

  testing::RecordingTally tally;
  EraseRegistryLocation(key.Root(), key / L"k", L"*.*", tally);
  EXPECT_FALSE(key.KeyExists(L"k"));
  EXPECT_EQ(tally.erased, 1);
}

}  // namespace
}  // namespace lumenor
