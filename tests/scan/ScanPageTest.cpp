// The scan page as a user drives it: tick items, scan, see the rows, delete one row,
// erase with the progress dialog, a location refused by the folder rules shown as a
// note, and the restart that only the dialog's hidden button may ask for.
#include "catalogue/Catalogue.h"
#include "catalogue/ItemIds.h"
#include "engine/Registry.h"
#include "res/resource.h"
#include "scan/DlgScan.h"
#include "settings/Settings.h"
#include "tests/support/DestructiveTests.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ThreadStarters.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace lumenor {
namespace {

constexpr wchar_t kRunMruKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\RunMRU";

class ScanPage : public ::testing::Test {
 protected:
  void SetUp() override {
    LUMENOR_ONLY_WHERE_ERASING_IS_HARMLESS();
    BuildCatalogue();
    previousTemp_ = MachinePaths().EnvironmentVariable(L"TEMP").value_or(L"");
    SetTemp(temp_.Path());
    for (const wchar_t* name : {L"a.tmp", L"b.tmp", L"sub\\c.tmp"}) testing::MakeFile(temp_ / name);
    RegDeleteTreeW(HKEY_CURRENT_USER, kRunMruKey);
    testing::SetRegistryText(HKEY_CURRENT_USER, kRunMruKey, L"a", L"cmd\\1");
    ASSERT_TRUE(testing::WriteFileBytes(settingsFolder_ / L"setting.ini", "[RecentItem]\r\nRecentItems=0\r\n"));

    owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 800, 600, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(owner_, nullptr);
    page_ = std::make_unique<CDlgScan>();
    page_->SetSettingsFile(settings_);
    page_->SetRestart([this] { ++restarts_; });
    ASSERT_TRUE(page_->Create(owner_));
    ShowWindow(owner_, SW_SHOW);
    page_->Show(SW_SHOW);
  }
  void TearDown() override {
    page_.reset();
    if (owner_ != nullptr) DestroyWindow(owner_);
    if (!previousTemp_.empty()) {
      SetTemp(previousTemp_);
      RegDeleteTreeW(HKEY_CURRENT_USER, kRunMruKey);
      FreeCatalogue();
    }
  }
  static void SetTemp(std::wstring folder) {
    if (folder.back() == L'\\') folder.pop_back();
    ASSERT_TRUE(SetEnvironmentVariableW(L"TEMP", folder.c_str()));
  }
  void Tick(std::initializer_list<unsigned> ids) {
    page_->Selection().UntickAll();
    for (const unsigned id : ids) page_->Selection().TickById(id);
    page_->Tree().RefreshChecks();
  }
  void Press(int command) { SendMessageW(page_->Handle(), WM_COMMAND, static_cast<WPARAM>(command), 0); }
  void Scan() {
    Press(IDC_SCAN_START);
    page_->WaitForWorker();
  }
  std::wstring SummaryLine() const {
    wchar_t text[256] = L"";
    GetDlgItemTextW(page_->Handle(), IDC_SCAN_SUMMARY, text, 256);
    return text;
  }
  std::vector<std::wstring> Column(int column) const {
    std::vector<std::wstring> texts;
    for (int row = 0; row < page_->Results().RowCount(); ++row) texts.push_back(page_->Results().RowText(row, column));
    std::sort(texts.begin(), texts.end());
    return texts;
  }

  testing::TempFolder temp_;
  testing::TempFolder settingsFolder_;
  CIniFileRW settings_ = CIniFileRW::AtPath(settingsFolder_ / L"setting.ini");
  std::wstring previousTemp_;
  HWND owner_ = nullptr;
  std::unique_ptr<CDlgScan> page_;
  int restarts_ = 0;
};

TEST_F(ScanPage, AScanListsEveryTraceCountsItAndSavesTheSelection) {
  Tick({kItemRunHistory, kItemTemporaryFiles});
  Scan();
  EXPECT_EQ(Column(1), (std::vector<std::wstring>{L"a", L"a.tmp", L"b.tmp", L"c.tmp"}));
  EXPECT_EQ(page_->ItemsDone(), 4);
  EXPECT_EQ(page_->Tree().ScanStateOf(kItemRunHistory), CMyTreeCtrl::kDone);
  EXPECT_EQ(page_->Tree().ScanStateOf(kAppWindowsEntries), CMyTreeCtrl::kDone)
      << "the application is done with its items";
  EXPECT_EQ(page_->Tree().ScanStateOf(kItemVisitedSites), CMyTreeCtrl::kUntouched);
  EXPECT_EQ(ReadSelection(settings_, Selection::kRecent),
            (std::vector<unsigned>{kItemTemporaryFiles, kItemRunHistory}));
  EXPECT_FALSE(page_->Scanning());
  EXPECT_FALSE(page_->Busy());
}

TEST_F(ScanPage, AScanOrOneClickEraseWhoseThreadCannotStartLeavesThePageUsable) {
  Tick({kItemTemporaryFiles});
  page_->SetThreadStarter(testing::FailingThreadStarter());
  Press(IDC_SCAN_START);
  EXPECT_FALSE(page_->Scanning());
  EXPECT_FALSE(page_->Busy());
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(page_->Handle(), IDC_SCAN_ERASE))) << "the actions are back";
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(page_->Handle(), IDC_SCAN_DELETE_ROW)));
  EXPECT_EQ(page_->Results().RowCount(), 0);
  EXPECT_FALSE(page_->StartOneClickErase()) << "said, not pretended";
  EXPECT_FALSE(page_->Busy());

  page_->SetThreadStarter(controls::StartSystemThread);
  Tick({kItemTemporaryFiles});  // the one-click erase ticked its own list
  Scan();
  EXPECT_EQ(page_->Results().RowCount(), 3) << "the next scan runs as ever";
}

TEST_F(ScanPage, DeletingARowDeletesItsTraceAndLowersTheCount) {
  Tick({kItemTemporaryFiles});
  Scan();
  ASSERT_EQ(page_->Results().RowCount(), 3);
  ASSERT_TRUE(page_->Results().SelectRow(0));
  const std::wstring file = page_->Results().RowText(0, 2) + page_->Results().RowText(0, 1);
  Press(IDC_SCAN_DELETE_ROW);
  EXPECT_FALSE(testing::FileExists(file));
  EXPECT_EQ(page_->Results().RowCount(), 2);
  EXPECT_EQ(page_->ItemsDone(), 2);
}

TEST_F(ScanPage, TheSummaryLineAddsUpTheSizesFoundAndFollowsDeletedRowsAndTheErase) {
  const std::string big(1536 * 1024, 'x');  // 1.5 MB
  testing::MakeFile(temp_ / L"a.tmp", big);
  testing::MakeFile(temp_ / L"b.tmp", std::string(2000, 'y'));
  testing::MakeFile(temp_ / L"sub\\c.tmp", "z");
  Tick({kItemTemporaryFiles});
  Scan();
  EXPECT_EQ(SummaryLine(), L"3 traces, 1.5 MB to be recovered");

  int bigRow = 0;
  while (bigRow < page_->Results().RowCount() && page_->Results().RowText(bigRow, 1) != L"a.tmp") ++bigRow;
  ASSERT_TRUE(page_->Results().SelectRow(bigRow));
  Press(IDC_SCAN_DELETE_ROW);
  EXPECT_EQ(SummaryLine(), L"2 traces, 2 KB to be recovered") << "2001 bytes, rounded up";

  page_->SetEraseDialogRunner([](HWND, int, std::function<void(EraseTally&)> erase) -> INT_PTR {
    testing::RecordingTally tally;
    erase(tally);
    return IDOK;
  });
  Press(IDC_SCAN_ERASE);
  EXPECT_EQ(SummaryLine().find(L"traces"), std::wstring::npos) << "no total without a scan";
}

TEST_F(ScanPage, EraseRunsTheProgressDialogAndEmptiesThePage) {
  Tick({kItemRunHistory, kItemTemporaryFiles});
  Scan();
  int shownTotal = 0;
  page_->SetEraseDialogRunner([&](HWND, int total, std::function<void(EraseTally&)> erase) -> INT_PTR {
    shownTotal = total;
    EXPECT_TRUE(page_->EraseDialogOpen()) << "the main window asks this while the dialog runs";
    EXPECT_TRUE(page_->Busy());
    testing::RecordingTally tally;
    erase(tally);  // on this thread: the dialog's own test covers its worker
    EXPECT_EQ(tally.erased, 4);
    return IDOK;
  });
  Press(IDC_SCAN_ERASE);
  EXPECT_EQ(shownTotal, 4);
  EXPECT_FALSE(page_->EraseDialogOpen());
  EXPECT_EQ(restarts_, 0);
  EXPECT_EQ(page_->Results().RowCount(), 0);
  EXPECT_EQ(page_->ItemsDone(), 0);
  EXPECT_FALSE(testing::FileExists(temp_ / L"a.tmp"));
  EXPECT_FALSE(static_cast<bool>(OpenKey(HKEY_CURRENT_USER, kRunMruKey, KEY_READ)));
  int calls = 0;
  page_->SetEraseDialogRunner([&](HWND, int, std::function<void(EraseTally&)>) -> INT_PTR { return ++calls; });
  Press(IDC_SCAN_ERASE);
  EXPECT_EQ(calls, 0) << "a second erase needs a new scan";
}

TEST_F(ScanPage, OnlyTheDialogsHiddenCancelRestartsAndADialogNeverShownDoesNot) {
  for (const auto& [result, restarts] : std::vector<std::pair<INT_PTR, int>>{{IDOK, 0}, {-1, 0}, {IDCANCEL, 1}}) {
    Tick({kItemRunHistory});
    testing::SetRegistryText(HKEY_CURRENT_USER, kRunMruKey, L"a", L"cmd\\1");
    Scan();
    restarts_ = 0;
    page_->SetEraseDialogRunner([result = result](HWND, int, std::function<void(EraseTally&)>) { return result; });
    Press(IDC_SCAN_ERASE);
    EXPECT_EQ(restarts_, restarts) << "dialog result " << result;
  }
}

TEST_F(ScanPage, AFolderTheRulesRefuseIsShownAsANoteAndNeverErased) {
  const std::wstring canary = L"C:\\lumenor-page-canary.txt";
  testing::MakeFile(canary);
  SetTemp(L"C:\\\\");
  Tick({kItemTemporaryFiles});
  Scan();
  ASSERT_EQ(page_->Results().RowCount(), 1);
  EXPECT_EQ(page_->Results().RowText(0, 1), L"Skipped (protected folder)");
  EXPECT_EQ(page_->Results().RowText(0, 2), L"C:\\");
  EXPECT_EQ(page_->ItemsDone(), 0) << "a note is no trace";
  ASSERT_TRUE(page_->Results().SelectRow(0));
  Press(IDC_SCAN_DELETE_ROW);
  EXPECT_EQ(page_->Results().RowCount(), 0);
  EXPECT_TRUE(testing::FileExists(canary));
  DeleteFileW(canary.c_str());
}

// A named callback: a lambda has no __stdcall conversion, which the 32-bit build needs.
BOOL CALLBACK NoteDialogShowingClose(HWND window, LPARAM found) {
  HWND close = GetDlgItem(window, IDC_ERASE_CLOSE);
  if (close != nullptr && IsWindowVisible(close)) *reinterpret_cast<HWND*>(found) = window;
  return TRUE;
}

TEST_F(ScanPage, TheRealDialogErasesAndEndsWithClose) {
  Tick({kItemTemporaryFiles});
  Scan();
  std::thread user([&] {
    // Close, once the dialog shows it.
    for (int waited = 0; waited < 10000; waited += 50) {
      HWND dialog = nullptr;
      EnumThreadWindows(GetWindowThreadProcessId(page_->Handle(), nullptr), NoteDialogShowingClose,
                        reinterpret_cast<LPARAM>(&dialog));
      if (dialog != nullptr) {
        PostMessageW(dialog, WM_COMMAND, IDC_ERASE_CLOSE, 0);
        return;
      }
      Sleep(50);
    }
  });
  Press(IDC_SCAN_ERASE);
  user.join();
  EXPECT_EQ(restarts_, 0);
  EXPECT_FALSE(testing::FileExists(temp_ / L"a.tmp"));
  EXPECT_FALSE(page_->EraseDialogOpen());
}

TEST_F(ScanPage, TheCookiesButtonOpensTheKeepListOfThePagesSettingsFile) {
  int opened = 0;
  std::wstring path;
  std::vector<std::wstring> offered = {L"left from before"};
  page_->SetCookiesDialogRunner([&](HWND owner, const CIniFileRW& settings, std::vector<std::wstring> found) {
    EXPECT_EQ(owner, page_->Handle());
    ++opened;
    path = settings.Path();
    offered = std::move(found);
  });
  EXPECT_TRUE(IsWindowVisible(GetDlgItem(page_->Handle(), IDC_SCAN_COOKIES_TO_KEEP)));
  Tick({kItemRunHistory});
  Scan();
  Press(IDC_SCAN_COOKIES_TO_KEEP);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(path, settings_.Path());
  EXPECT_TRUE(offered.empty()) << "the scan found no cookies to offer";
}

}  // namespace
}  // namespace lumenor
