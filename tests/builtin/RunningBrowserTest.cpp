// A browser that runs is left alone, whichever sign tells it: its process, the lockfile a
// Chromium browser holds, the parent.lock of a Firefox profile. Nothing of it is scanned
// or erased, and lumenor-cli says why.
#include "tests/builtin/BrowserMachine.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <optional>

namespace lumenor {
namespace {

using testing::FileExists;

constexpr unsigned kChromeCache = 1000;
constexpr unsigned kChromeCookies = 1001;
constexpr unsigned kChromeHistory = 1002;
constexpr unsigned kFirefoxCache = 1070;
constexpr unsigned kFirefoxCookies = 1071;
constexpr unsigned kFirefoxHistory = 1072;

class RunningBrowser : public ::testing::Test {
 protected:
  void SetUp() override {
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
    machine_.emplace();
    machine_->Claim(machine_->LocalAppData() + L"Google");
    machine_->Claim(machine_->AppData() + L"Mozilla\\Firefox");
    machine_->Claim(machine_->LocalAppData() + L"Mozilla\\Firefox");
    chrome_ = machine_->LocalAppData() + L"Google\\Chrome\\User Data\\";
    testing::WriteLocalState(chrome_, {"Default"});
    testing::MakeChromiumProfile(chrome_ + L"Default\\", {"example.com"});
    testing::MakeFile(chrome_ + L"lockfile", "");
    const std::wstring firefox = machine_->AppData() + L"Mozilla\\Firefox\\";
    testing::MakeFile(firefox + L"profiles.ini",
                      "[Profile0]\r\nName=default\r\nIsRelative=1\r\nPath=Profiles/q1w2e3r4.default\r\n");
    firefoxProfile_ = firefox + L"Profiles\\q1w2e3r4.default\\";
    testing::MakeFirefoxPlaces(firefoxProfile_, true, false);
    testing::MakeFirefoxCookies(firefoxProfile_, {"example.org"});
    testing::MakeFile(firefoxProfile_ + L"parent.lock", "");
  }
  void TearDown() override { machine_.reset(); }

  // Scans and erases the browser's items while it runs: nothing found, nothing touched,
  // the skip told.
  void ExpectLeftAlone(const std::vector<unsigned>& items, const std::string& reason, const std::wstring& profile) {
    const std::vector<std::string> before = testing::TreeSnapshot(profile);
    const testing::CliJson scan = testing::RunCliJson(L"scan " + testing::ItemsArgument(items));
    EXPECT_TRUE(scan.OfType("trace").empty());
    EXPECT_EQ(scan.SkipReasons(), std::vector<std::string>(items.size(), reason));
    const testing::CliJson erase = testing::RunCliJson(L"erase " + testing::ItemsArgument(items));
    EXPECT_EQ(erase.exitCode, 1u) << "a location skipped during an erase makes it fail";
    EXPECT_EQ(erase.Summary().value("deleted", -1), 0);
    EXPECT_EQ(testing::TreeSnapshot(profile), before);
  }

  std::optional<testing::BrowserMachine> machine_;
  std::wstring chrome_;
  std::wstring firefoxProfile_;
};

TEST_F(RunningBrowser, AProcessOfTheBrowsersNameHoldsItBack) {
  testing::TempFolder programs;
  ASSERT_TRUE(CopyFileW(testing::ProgramBesideTest(L"lumenor-test-idle.exe").c_str(),
                        (programs / L"chrome.exe").c_str(), TRUE));
  testing::RunningProgram chrome(programs / L"chrome.exe", L"");
  ASSERT_TRUE(chrome.Started());
  ExpectLeftAlone({kChromeCache, kChromeCookies, kChromeHistory}, "Google Chrome is running", chrome_);
}

TEST_F(RunningBrowser, AHeldLockfileHoldsAChromiumBrowserBack) {
  const HANDLE held = CreateFileW((chrome_ + L"lockfile").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  ExpectLeftAlone({kChromeCache, kChromeCookies, kChromeHistory}, "Google Chrome is running", chrome_);
  CloseHandle(held);
  const testing::CliJson after = testing::RunCliJson(L"scan " + testing::ItemsArgument({kChromeHistory}));
  EXPECT_TRUE(after.HasTrace(chrome_ + L"Default\\", L"History")) << "the lockfile left behind holds nothing back";
}

TEST_F(RunningBrowser, AHeldParentLockHoldsFirefoxBack) {
  const HANDLE held =
      CreateFileW((firefoxProfile_ + L"parent.lock").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  ExpectLeftAlone({kFirefoxCache, kFirefoxCookies, kFirefoxHistory}, "Mozilla Firefox is running", firefoxProfile_);
  CloseHandle(held);
}

}  // namespace
}  // namespace lumenor
