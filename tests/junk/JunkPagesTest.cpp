// The junk page as the user works it: the set-up page's ticks, scope and two messages,
// the tab strip locked during a walk, the walk's rows on the result page, the reset the
// main window asks for, and the two ways of removing files.
#include "junk/DlgJunk.h"
#include "junk/JunkCatalogue.h"
#include "res/resource.h"
#include "scan/DlgScanResult.h"
#include "tests/junk/JunkFixtures.h"
#include "tests/support/TempFolder.h"
#include "tests/support/ThreadStarters.h"
#include "tests/support/TraceFixtures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <thread>

namespace lumenor {
namespace {

using testing::JunkRow;
using testing::MakeFile;
using testing::ScratchFolder;

struct Said {
  std::wstring text;
  std::wstring caption;
  UINT type;
};

class JunkPage : public ::testing::Test {
 protected:
  void SetUp() override {
    host_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1000, 760, nullptr, nullptr, GetModuleHandleW(nullptr),
                            nullptr);
    ASSERT_NE(host_, nullptr);
    page_ = std::make_unique<CDlgJunk>();
    ASSERT_TRUE(page_->Create(host_));
    page_->SetMessageBox([this](HWND, const std::wstring& text, const std::wstring& caption, UINT type) {
      said_.push_back({text, caption, type});
      return answer_;
    });
    ShowWindow(host_, SW_SHOWNOACTIVATE);
    page_->Show(SW_SHOW);
    Pump();
  }
  void TearDown() override {
    page_.reset();
    DestroyWindow(host_);
  }

  static void Pump() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  CDlgJunkScan& SetUpPage() { return page_->SetUpPage(); }
  CDlgJunkJunk& ResultPage() { return page_->ResultPage(); }
  HWND SetUpItem(int id) { return GetDlgItem(SetUpPage().Handle(), id); }

  void Press(HWND page, int id) {
    SendMessageW(page, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(GetDlgItem(page, id)));
    Pump();
  }
  // Ticks a radio button as a click does, then tells the page.
  void Choose(int id, std::initializer_list<int> group) {
    for (const int other : group) SendMessageW(SetUpItem(other), BM_SETCHECK, other == id ? BST_CHECKED : 0, 0);
    Press(SetUpPage().Handle(), id);
  }
  void ChooseFolder(const std::wstring& typed) {
    Choose(IDC_JUNK_CHOOSE_FOLDER, {IDC_JUNK_ALL_DISKS, IDC_JUNK_CHOOSE_FOLDER});
    SetWindowTextW(SetUpItem(IDC_JUNK_FOLDER), typed.c_str());
  }
  void Start() { Press(SetUpPage().Handle(), IDC_JUNK_START); }
  void ClickTab(int tab) {
    HWND strip = GetDlgItem(page_->Handle(), IDC_JUNK_TABS);
    const RECT rect = page_->Tabs().TabRect(tab);
    SendMessageW(strip, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM((rect.left + rect.right) / 2, rect.bottom / 2));
    SendMessageW(strip, WM_LBUTTONUP, 0, MAKELPARAM((rect.left + rect.right) / 2, rect.bottom / 2));
    Pump();
  }
  void WaitForTheWalk() {
    for (int waited = 0; ResultPage().Scanning() && waited < 60000; waited += 10) {
      Pump();
      Sleep(10);
    }
    Pump();
    ASSERT_FALSE(ResultPage().Scanning());
  }
  // Starts from the set-up page with the default masks and waits for the rows.
  void Scan(const std::wstring& folder) {
    ChooseFolder(folder);
    Start();
    WaitForTheWalk();
  }
  std::vector<JunkRow> ListedRows() {
    std::vector<JunkRow> rows;
    const controls::CMyListCtrl& list = ResultPage().Results();
    for (int row = 0; row < list.RowCount(); ++row) rows.emplace_back(list.RowText(row, 1), list.RowText(row, 0));
    std::sort(rows.begin(), rows.end());
    return rows;
  }
  int RowOf(const std::wstring& name) {
    const controls::CMyListCtrl& list = ResultPage().Results();
    for (int row = 0; row < list.RowCount(); ++row) {
      if (list.RowText(row, 0) == name) return row;
    }
    return -1;
  }
  std::vector<int> TickedRows() {
    std::vector<int> ticked;
    for (int row = 0; row < SetUpPage().Catalogue().RowCount(); ++row) {
      if (SetUpPage().Catalogue().Checked(row)) ticked.push_back(row);
    }
    return ticked;
  }
  static std::vector<int> FirstRows(int count) {
    std::vector<int> rows(static_cast<size_t>(count));
    for (int row = 0; row < count; ++row) rows[static_cast<size_t>(row)] = row;
    return rows;
  }
  std::wstring SummaryLine() {
    wchar_t text[128] = {};
    GetDlgItemTextW(ResultPage().Handle(), IDC_JUNK_SUMMARY, text, 128);
    return text;
  }

  HWND host_ = nullptr;
  std::unique_ptr<CDlgJunk> page_;
  std::vector<Said> said_;
  int answer_ = IDOK;
};

TEST_F(JunkPage, OpensOnTheCatalogueWithTheDefaultTickedAndEveryDiskChosen) {
  const CJunkCatalogueList& catalogue = SetUpPage().Catalogue();
  ASSERT_EQ(catalogue.RowCount(), 45);
  EXPECT_EQ(catalogue.RowText(0, 0), L"*.swp");
  EXPECT_EQ(catalogue.RowText(0, 1), L"Temporary Junk Files");
  EXPECT_EQ(catalogue.RowText(44, 1), L"Readme Files");
  EXPECT_EQ(TickedRows(), FirstRows(12));
  EXPECT_TRUE(SetUpPage().IsVisible());
  EXPECT_FALSE(ResultPage().IsVisible());
  EXPECT_EQ(page_->Tabs().Selected(), CDlgJunk::kSetUpTab);
  EXPECT_EQ(SendMessageW(SetUpItem(IDC_JUNK_ALL_DISKS), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_FALSE(IsWindowEnabled(SetUpItem(IDC_JUNK_FOLDER)));
  EXPECT_FALSE(IsWindowEnabled(SetUpItem(IDC_JUNK_BROWSE)));
  ChooseFolder(L"");
  EXPECT_TRUE(IsWindowEnabled(SetUpItem(IDC_JUNK_FOLDER)));
  EXPECT_TRUE(IsWindowEnabled(SetUpItem(IDC_JUNK_BROWSE)));
}

TEST_F(JunkPage, SelectorsTickEveryRowNoneOrTheFirstTwelveAndNothingTickedStartsNothing) {
  Press(SetUpPage().Handle(), IDC_JUNK_ALL);
  EXPECT_EQ(TickedRows(), FirstRows(45));
  Press(SetUpPage().Handle(), IDC_JUNK_DEFAULT);
  EXPECT_EQ(TickedRows(), FirstRows(12)) << "Default after All";
  Press(SetUpPage().Handle(), IDC_JUNK_NONE);
  EXPECT_TRUE(TickedRows().empty());
  for (const bool oneFolder : {false, true}) {
    if (oneFolder) ChooseFolder(L"C:\\Temp");
    Start();
    ASSERT_EQ(said_.size(), oneFolder ? 2u : 1u);
    EXPECT_EQ(said_.back().text, L"Please select at least one item of junk file type");
    EXPECT_EQ(said_.back().caption, L"") << "the system's default caption";
    EXPECT_FALSE(ResultPage().Scanning());
    EXPECT_FALSE(ResultPage().IsVisible());
  }
}

TEST_F(JunkPage, AFolderThatIsNotAbsoluteGetsThePathMessageAndNoWalk) {
  for (const wchar_t* typed : {L"", L"temp", L"C:temp", L"\\\\.\\C:\\"}) {
    said_.clear();
    ChooseFolder(typed);
    Start();
    ASSERT_EQ(said_.size(), 1u) << ::testing::PrintToString(std::wstring(typed));
    EXPECT_EQ(said_[0].text, L"Please choose a path for cleaning junk files");
    EXPECT_FALSE(ResultPage().Scanning());
    EXPECT_TRUE(SetUpPage().IsVisible());
  }
}

TEST_F(JunkPage, StartShowsTheResultPageWhereTheWalksRowsArrive) {
  ScratchFolder root;
  const testing::SeededTree tree = testing::SeedJunkTree(root.Path());
  std::wstring typed = root.Path();
  typed.pop_back();  // as typed, without the final backslash
  ChooseFolder(typed);
  Start();
  EXPECT_TRUE(ResultPage().IsVisible());
  EXPECT_FALSE(SetUpPage().IsVisible());
  EXPECT_EQ(page_->Tabs().Selected(), CDlgJunk::kResultsTab);
  WaitForTheWalk();
  EXPECT_EQ(ListedRows(), tree.defaultRows);
  EXPECT_EQ(SummaryLine(), L"6 files found, 0.00 MB");
  EXPECT_FALSE(page_->Searching());
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(ResultPage().Handle(), IDC_JUNK_STOP)));
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(ResultPage().Handle(), IDC_JUNK_DELETE)));
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(ResultPage().Handle(), IDC_JUNK_DELETE_ALL)));
  EXPECT_TRUE(said_.empty());
}

TEST_F(JunkPage, TheWholeCatalogueChosenPutsBothChklistRowsIntoTheMaskList) {
  ScratchFolder root;
  const testing::SeededTree tree = testing::SeedJunkTree(root.Path());
  Press(SetUpPage().Handle(), IDC_JUNK_ALL);
  Scan(root.Path());
  const std::vector<std::wstring>& masks = SetUpPage().ChosenMasks();
  ASSERT_EQ(masks.size(), 45u);
  EXPECT_EQ(std::count(masks.begin(), masks.end(), L"chklist.*"), 2);
  EXPECT_EQ(ListedRows(), tree.allRows) << "a file listed once whatever number of masks accept it";
}

TEST_F(JunkPage, TabStripIgnoresClicksWhileAJunkWalkRuns) {
  const auto click = [this](int tab) { ClickTab(tab); };
  ScratchFolder root;
  {
    const testing::HeldThreads held;
    ResultPage().SetThreadStarter(held.Held());
    page_->StartJunkScan(root.Path(), AllJunkMasks());
    EXPECT_TRUE(ResultPage().IsVisible());
    click(CDlgJunk::kSetUpTab);
    EXPECT_TRUE(ResultPage().IsVisible()) << "the set-up page cannot be reached during a walk";
    EXPECT_FALSE(SetUpPage().IsVisible());
  }
  WaitForTheWalk();
  click(CDlgJunk::kSetUpTab);
  EXPECT_TRUE(SetUpPage().IsVisible());
  EXPECT_FALSE(ResultPage().IsVisible());
  // The strip's message names the tab in its second parameter.
  SendMessageW(page_->Handle(), CDlgJunk::kShowTabMessage, 0, CDlgJunk::kResultsTab);
  EXPECT_TRUE(ResultPage().IsVisible());
}

TEST_F(JunkPage, ResetGoesBackToTheSetUpPageButNotWhileAWalkRuns) {
  ScratchFolder root;
  MakeFile(root / L"a.tmp");
  {
    const testing::HeldThreads held;
    ResultPage().SetThreadStarter(held.Held());
    ChooseFolder(root.Path());
    Start();
    const int resets = page_->Resets();
    page_->ResetToSetUp();
    EXPECT_TRUE(ResultPage().IsVisible());
    EXPECT_EQ(page_->Resets(), resets) << "nothing is reset under a running walk";
  }
  WaitForTheWalk();
  EXPECT_EQ(ResultPage().Results().RowCount(), 1) << "the walk's rows arrived in full";
  page_->ResetToSetUp();
  EXPECT_TRUE(SetUpPage().IsVisible());
  EXPECT_EQ(page_->Tabs().Selected(), CDlgJunk::kSetUpTab);
  EXPECT_EQ(ResultPage().Results().RowCount(), 0);
  EXPECT_EQ(GetWindowTextLengthW(SetUpItem(IDC_JUNK_FOLDER)), 0);
  EXPECT_EQ(SendMessageW(SetUpItem(IDC_JUNK_ALL_DISKS), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_EQ(SendMessageW(SetUpItem(IDC_JUNK_CHOOSE_FOLDER), BM_GETCHECK, 0, 0), BST_UNCHECKED);
  EXPECT_FALSE(IsWindowEnabled(SetUpItem(IDC_JUNK_FOLDER)));
  EXPECT_EQ(TickedRows(), FirstRows(12)) << "the ticks stay";
}

TEST_F(JunkPage, StopEndsAWalkOfEveryFixedDisk) {
  page_->StartJunkScan(L"", AllJunkMasks());
  EXPECT_TRUE(page_->Searching());
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(ResultPage().Handle(), IDC_JUNK_STOP)));
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(ResultPage().Handle(), IDC_JUNK_DELETE_ALL)));
  Press(ResultPage().Handle(), IDC_JUNK_STOP);
  WaitForTheWalk();
  EXPECT_FALSE(page_->Searching());
}

TEST_F(JunkPage, AWalkWhoseThreadCannotStartEndsAtOnceWithTheResultPageUsable) {
  ScratchFolder root;
  MakeFile(root / L"a.tmp");
  ResultPage().SetThreadStarter(testing::FailingThreadStarter());
  ChooseFolder(root.Path());
  Start();
  EXPECT_FALSE(page_->Searching());
  EXPECT_TRUE(ResultPage().IsVisible());
  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(ResultPage().Handle(), IDC_JUNK_STOP)));
  EXPECT_TRUE(IsWindowEnabled(GetDlgItem(ResultPage().Handle(), IDC_JUNK_DELETE_ALL)));
  EXPECT_EQ(SummaryLine(), L"0 files found, 0.00 MB");
  ClickTab(CDlgJunk::kSetUpTab);
  EXPECT_TRUE(SetUpPage().IsVisible()) << "the tabs answer again";

  ResultPage().SetThreadStarter(controls::StartSystemThread);
  Scan(root.Path());
  EXPECT_EQ(ResultPage().Results().RowCount(), 1);
}

// Three junk files: one plain, one read-only, one held open by the test without delete
// sharing.
class JunkRemovalPage : public JunkPage {
 protected:
  void SetUp() override {
    JunkPage::SetUp();
    MakeFile(root_ / L"plain.tmp");
    MakeFile(root_ / L"readonly.tmp");
    MakeFile(root_ / L"held.tmp");
    ASSERT_TRUE(SetFileAttributesW((root_ / L"readonly.tmp").c_str(), FILE_ATTRIBUTE_READONLY));
    held_ = CreateFileW((root_ / L"held.tmp").c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(held_, INVALID_HANDLE_VALUE);
    Scan(root_.Path());
    ASSERT_EQ(ResultPage().Results().RowCount(), 3);
  }
  void TearDown() override {
    if (held_ != INVALID_HANDLE_VALUE) CloseHandle(held_);
    JunkPage::TearDown();
  }
  ScratchFolder root_;
  HANDLE held_ = INVALID_HANDLE_VALUE;
};

TEST_F(JunkRemovalPage, DeleteAllAsksFirstThenDeletesWhatItCanAndEmptiesTheList) {
  bool dialogShown = false;
  EraseProgress progress(0);
  bool warningShown = false;
  ResultPage().SetEraseDialogRunner([&](CDlgScanResult& dialog, HWND owner) {
    dialogShown = true;
    std::thread user([&] {
      for (int waited = 0; !(dialog.Finished() && dialog.CloseShown()) && waited < 10000; waited += 20) Sleep(20);
      progress = dialog.Progress();
      warningShown = dialog.WarningShown();
      PostMessageW(dialog.Handle(), WM_COMMAND, IDC_ERASE_CLOSE, 0);
    });
    (void)dialog.Run(owner);
    user.join();
  });
  answer_ = IDNO;
  Press(ResultPage().Handle(), IDC_JUNK_DELETE_ALL);
  ASSERT_EQ(said_.size(), 1u);
  EXPECT_EQ(said_[0].text, L"Delete 3 files (0.00 MB)?");
  EXPECT_EQ(said_[0].caption, L"Lumenor");
  EXPECT_EQ(said_[0].type & MB_TYPEMASK, static_cast<UINT>(MB_YESNO));
  EXPECT_FALSE(dialogShown);
  EXPECT_EQ(ResultPage().Results().RowCount(), 3) << "No keeps everything";

  answer_ = IDYES;
  Press(ResultPage().Handle(), IDC_JUNK_DELETE_ALL);
  ASSERT_TRUE(dialogShown);
  EXPECT_EQ(progress.Total(), 3);
  EXPECT_EQ(progress.DeletedCount(), 2);
  EXPECT_EQ(progress.FailedCount(), 1);
  EXPECT_TRUE(warningShown);
  EXPECT_EQ(ResultPage().Results().RowCount(), 0) << "emptied whatever the outcome";
  EXPECT_EQ(SummaryLine(), L"0 files found, 0.00 MB");
  EXPECT_FALSE(testing::FileExists(root_ / L"plain.tmp"));
  EXPECT_FALSE(testing::FileExists(root_ / L"readonly.tmp"));
  EXPECT_TRUE(testing::FileExists(root_ / L"held.tmp"));
  EXPECT_EQ(said_.size(), 2u) << "no message for a failure here";
}

TEST_F(JunkRemovalPage, ADeleteAllWhoseThreadCannotStartShowsTheWarningAndCloses) {
  bool warningShown = false;
  EraseProgress progress(0);
  INT_PTR result = 0;
  ResultPage().SetEraseDialogRunner([&](CDlgScanResult& dialog, HWND owner) {
    dialog.SetThreadStarter(testing::FailingThreadStarter());
    std::thread user([&] {
      for (int waited = 0; !(dialog.Finished() && dialog.CloseShown()) && waited < 10000; waited += 20) Sleep(20);
      warningShown = dialog.WarningShown();
      progress = dialog.Progress();
      PostMessageW(dialog.Handle(), WM_COMMAND, IDCANCEL, 0);  // Esc closes, as Close does
    });
    result = dialog.Run(owner);
    user.join();
  });
  answer_ = IDYES;
  Press(ResultPage().Handle(), IDC_JUNK_DELETE_ALL);
  EXPECT_EQ(result, IDOK);
  EXPECT_TRUE(warningShown);
  EXPECT_EQ(progress.DeletedCount(), 0);
  EXPECT_EQ(progress.FailedCount(), 1) << "the erase that never ran is told as one failure";
  EXPECT_TRUE(testing::FileExists(root_ / L"plain.tmp"));
}

TEST_F(JunkRemovalPage, DeleteSelectedTakesOnlyTheFirstSelectedRowAndSaysWhenItCannot) {
  const controls::CMyListCtrl& list = ResultPage().Results();
  const int plain = RowOf(L"plain.tmp");
  const int readOnly = RowOf(L"readonly.tmp");
  ASSERT_TRUE(list.SelectRow(plain));
  ASSERT_TRUE(list.SelectRow(readOnly));
  const std::wstring first = plain < readOnly ? L"plain.tmp" : L"readonly.tmp";
  const std::wstring second = plain < readOnly ? L"readonly.tmp" : L"plain.tmp";
  Press(ResultPage().Handle(), IDC_JUNK_DELETE);
  EXPECT_FALSE(testing::FileExists(root_ / first));
  EXPECT_TRUE(testing::FileExists(root_ / second));
  EXPECT_EQ(list.RowCount(), 2);
  EXPECT_EQ(RowOf(first), -1);
  EXPECT_TRUE(said_.empty());

  LVITEMW unselected{};
  unselected.stateMask = LVIS_SELECTED;
  SendMessageW(list.Handle(), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&unselected));
  ASSERT_TRUE(list.SelectRow(RowOf(L"held.tmp")));
  Press(ResultPage().Handle(), IDC_JUNK_DELETE);
  ASSERT_EQ(said_.size(), 1u);
  EXPECT_EQ(said_[0].text, L"For certain reasons,the file could not be removed by Lumenor");
  EXPECT_NE(RowOf(L"held.tmp"), -1) << "the row stays";
  EXPECT_EQ(list.RowCount(), 2);
}

}  // namespace
}  // namespace lumenor
