// Database files by any path a profile can have: non-ASCII folder names, paths longer
// than MAX_PATH, "\\?\" paths; and paths that name no file by themselves refused.
#include "browserdb/BrowserSchemas.h"
#include "browserdb/CookieDatabase.h"
#include "browserdb/SqliteDatabase.h"
#include "tests/browserdb/BrowserFixtures.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace lumenor {
namespace {

using testing::FixtureDatabase;
using testing::TempFolder;

TEST(VerbatimPath, DriveAndSharePathsAreMadeCanonicalAndPrefixed) {
  EXPECT_EQ(VerbatimPath(L"C:/Users/me/../you\\\\Profile\\.\\Cookies"), L"\\\\?\\C:\\Users\\you\\Profile\\Cookies");
  EXPECT_EQ(VerbatimPath(L"\\\\server\\share\\Profile\\Cookies"), L"\\\\?\\UNC\\server\\share\\Profile\\Cookies");
  EXPECT_EQ(VerbatimPath(L"\\\\?\\C:\\Profile\\Cookies"), L"\\\\?\\C:\\Profile\\Cookies");
}

TEST(VerbatimPath, PathsThatDependOnWhereTheProgramStandsOrNameADeviceAreRefused) {
  for (const wchar_t* path : {L"Cookies", L"Profile\\Cookies", L"C:Cookies", L"\\Profile\\Cookies",
                              L"\\\\.\\C:\\Profile\\Cookies", L"\\\\.\\PhysicalDrive0", L""}) {
    EXPECT_EQ(VerbatimPath(path), L"") << ::testing::PrintToString(std::wstring(path));
  }
  const DatabaseErase erase = EraseCookies(L"Cookies", CookieStore::kChromium, CookieKeepList());
  EXPECT_EQ(erase.failure, DatabaseFailure::kCannotOpen);
}

// Makes `folder` and every folder above it that is missing (in "\\?\" form).
bool MakeFolders(const std::wstring& folder) {
  for (size_t slash = folder.find(L'\\', 7); slash != std::wstring::npos; slash = folder.find(L'\\', slash + 1)) {
    const std::wstring part = folder.substr(0, slash);
    if (!CreateDirectoryW(part.c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS) {
      return false;
    }
  }
  return true;
}

class DatabaseAt : public ::testing::Test {
 protected:
  // A cookie database at `path`, erased through `erasePath`, must lose its other cookies.
  void ExpectErasedAt(const std::wstring& path, const std::wstring& erasePath) const {
    {
      FixtureDatabase database(path, testing::kChromiumCookiesSchema);
      database.AddChromiumCookie("example.org", "kept", "1");
      database.AddChromiumCookie(".tracker.net", "uid", "2");
    }
    CookieKeepList keep;
    ASSERT_TRUE(keep.Add(L"example.org"));
    const DatabaseScan scan = ScanCookies(erasePath, CookieStore::kChromium, keep);
    EXPECT_EQ(scan.failure, DatabaseFailure::kNone);
    EXPECT_EQ(scan.lines.size(), 1u);
    const DatabaseErase erase = EraseCookies(erasePath, CookieStore::kChromium, keep);
    EXPECT_EQ(erase.failure, DatabaseFailure::kNone);
    EXPECT_EQ(erase.rowsDeleted, 1u);
    EXPECT_EQ(FixtureDatabase(path).Texts("SELECT host_key FROM cookies"), std::vector<std::string>{"example.org"});
  }

  TempFolder folder_;
};

TEST_F(DatabaseAt, AFolderWithANonAsciiName) {
  const std::wstring profile = folder_ / L"Профиль Ünïcødé 日本";
  ASSERT_TRUE(CreateDirectoryW(profile.c_str(), nullptr));
  ExpectErasedAt(profile + L"\\Cookies", profile + L"\\Cookies");
}

TEST_F(DatabaseAt, APathLongerThanMaxPathGivenPlainOrInItsVerbatimForm) {
  std::wstring profile = L"\\\\?\\" + folder_.Path();
  while (profile.size() < 2 * MAX_PATH) {
    profile += L"a rather long folder name for a profile\\";
  }
  ASSERT_TRUE(MakeFolders(profile));
  const std::wstring plain = profile.substr(4) + L"Cookies";
  ASSERT_GT(plain.size(), static_cast<size_t>(MAX_PATH));
  ExpectErasedAt(plain, plain);
  ExpectErasedAt(profile + L"Network Cookies", profile + L"Network Cookies");

  // The temporary folder's own clean-up takes only short paths.
  for (const wchar_t* name : {L"Cookies", L"Network Cookies"}) {
    EXPECT_TRUE(DeleteFileW((profile + name).c_str()));
  }
  while (profile.size() > 4 + folder_.Path().size()) {
    profile.pop_back();
    EXPECT_TRUE(RemoveDirectoryW(profile.c_str()));
    profile.erase(profile.find_last_of(L'\\') + 1);
  }
}

}  // namespace
}  // namespace lumenor
