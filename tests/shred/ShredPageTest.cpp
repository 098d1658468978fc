// The shred page as the user meets it: the rows Add File and Add Directory make, the
// folders and files it refuses and says why, Cancel File and Cancel All, the question
// before shredding, the running look and Stop.
#include "tests/support/TempFolder.h"
#include "tests/support/ThreadStarters.h"
#include "tests/support/TraceFixtures.h"

#include "res/resource.h"
#include "shred/DlgShred.h"
#include "shred/Pickers.h"

#include <gtest/gtest.h>

#include <commctrl.h>
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace lumenor {
namespace {

using testing::FileExists;
using testing::MakeFile;
using testing::TempFolder;

class ShredPage : public ::testing::Test {
 protected:
  void SetUp() override {
    parent_ = CreateWindowExW(0, L"STATIC", L"shred page test", WS_OVERLAPPEDWINDOW, 0, 0, 800, 600, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr);
    ASSERT_NE(parent_, nullptr);
    ASSERT_TRUE(page_.Create(parent_));
    page_.SetMessageBoxes(
        [this](const std::wstring& text) {
          asked_.push_back(text);
          return answer_;
        },
        [this](const std::wstring& text) { told_.push_back(text); });
  }
  void TearDown() override {
    if (parent_ != nullptr) DestroyWindow(parent_);
  }

  // Runs the page's messages until `done` holds or ten seconds pass.
  bool PumpUntil(const std::function<bool()>& done) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done()) {
      if (std::chrono::steady_clock::now() > until) return false;
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
      Sleep(5);
    }
    return true;
  }
  void Click(int id) { SendMessageW(page_.Handle(), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0); }
  // Add Directory as the button does it, then the walk on the worker to its end.
  void AddFolderAndWait(const std::wstring& folder) {
    if (page_.AddFolder(folder)) {
      ASSERT_TRUE(PumpUntil([&] { return !page_.Running(); }));
    }
  }
  std::vector<std::wstring> ListedPaths() const {
    std::vector<std::wstring> paths;
    for (int row = 0; row < page_.List().RowCount(); ++row) paths.push_back(Row(row)[1] + Row(row)[0]);
    return paths;
  }
  bool Enabled(int id) const { return IsWindowEnabled(GetDlgItem(page_.Handle(), id)) != FALSE; }
  std::vector<std::wstring> Row(int row) const {
    return {page_.List().RowText(row, 0), page_.List().RowText(row, 1), page_.List().RowText(row, 2)};
  }
  void SelectRows(std::initializer_list<int> rows) {
    for (const int row : rows) {
      LVITEMW state{};
      state.stateMask = LVIS_SELECTED;
      state.state = LVIS_SELECTED;
      SendMessageW(GetDlgItem(page_.Handle(), IDC_SHRED_LIST), LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&state));
    }
  }

  HWND parent_ = nullptr;
  CDlgShred page_;
  bool answer_ = true;
  std::vector<std::wstring> asked_;
  std::vector<std::wstring> told_;
};

constexpr int kSevenControls[] = {IDC_SHRED_QUICK,      IDC_SHRED_SAFE,        IDC_SHRED_THOROUGH,  IDC_SHRED_ADD_FILE,
                                  IDC_SHRED_ADD_FOLDER, IDC_SHRED_CANCEL_FILE, IDC_SHRED_CANCEL_ALL};

TEST_F(ShredPage, AddFileListsEachFileOnceWithItsRealSizeAndTellsWhatItLeftOutForSafety) {
  TempFolder root;
  MakeFile(root / L"a.txt", "12345");
  {
    // 3,000,000,000 bytes, mostly a hole: a signed 32-bit size would show it negative.
    MakeFile(root / L"big.iso", "");
    HANDLE file = CreateFileW((root / L"big.iso").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    LARGE_INTEGER size{};
    size.QuadPart = 3000000000;
    EXPECT_TRUE(SetFilePointerEx(file, size, nullptr, FILE_BEGIN) && SetEndOfFile(file));
    CloseHandle(file);
  }
  MakeFile(root / L"readonly.txt");
  ASSERT_TRUE(SetFileAttributesW((root / L"readonly.txt").c_str(), FILE_ATTRIBUTE_READONLY));
  MakeFile(root / L"linked.txt");
  ASSERT_TRUE(CreateHardLinkW((root / L"other.txt").c_str(), (root / L"linked.txt").c_str(), nullptr));

  page_.AddFiles({root / L"a.txt", root / L"big.iso", root / L"A.TXT", root / L"readonly.txt", root / L"linked.txt"});
  ASSERT_EQ(page_.List().RowCount(), 2);
  EXPECT_EQ(Row(0), (std::vector<std::wstring>{L"a.txt", root.Path(), L"5"}));
  EXPECT_EQ(Row(1), (std::vector<std::wstring>{L"big.iso", root.Path(), L"3000000000"}));
  ASSERT_EQ(told_.size(), 1u) << "one message for all the files left out";
  EXPECT_NE(told_[0].find(root / L"linked.txt" + L" (has other hard links)"), std::wstring::npos);
  EXPECT_EQ(told_[0].find(L"readonly.txt"), std::wstring::npos) << "unwritable files are left out silently";
  EXPECT_FALSE(page_.AddPath(root / L"a.txt")) << "already listed";
  ASSERT_TRUE(SetFileAttributesW((root / L"readonly.txt").c_str(), FILE_ATTRIBUTE_NORMAL));
}

TEST_F(ShredPage, AddDirectoryRefusesAProtectedFolderOrALinkAndSaysWhy) {
  page_.AddFolder(L"C:\\");
  page_.AddFolder(L"C:\\windows\\..");
  ASSERT_EQ(told_.size(), 2u);
  EXPECT_EQ(told_[0].rfind(L"C:\\ cannot be shredded as a whole: it is a protected folder", 0), 0u) << told_[0];
  EXPECT_EQ(told_[1].rfind(L"C:\\ cannot be shredded as a whole: it is a protected folder", 0), 0u) << told_[1];
  if (GetFileAttributesW(L"E:\\link-fixtures\\clean\\top-link") != INVALID_FILE_ATTRIBUTES) {
    page_.AddFolder(L"E:\\link-fixtures\\clean\\top-link");
    ASSERT_EQ(told_.size(), 3u);
    EXPECT_EQ(told_[2], L"E:\\link-fixtures\\clean\\top-link\\ cannot be shredded as a whole: link.");
  }
  EXPECT_EQ(page_.List().RowCount(), 0);
}

TEST_F(ShredPage, AddDirectoryListsTheTreeAndNeverAFileThroughALink) {
  if (GetFileAttributesW(L"E:\\link-fixtures\\files\\file-link.txt") == INVALID_FILE_ATTRIBUTES) {
    GTEST_SKIP() << "no link fixtures here (they come with the Wine test harness)";
  }
  MakeFile(L"E:\\link-fixtures\\clean\\sub\\page.txt", "page");
  AddFolderAndWait(L"E:\\link-fixtures");
  const std::vector<std::wstring> paths = ListedPaths();
  EXPECT_NE(std::find(paths.begin(), paths.end(), L"E:\\link-fixtures\\clean\\sub\\page.txt"), paths.end());
  for (const std::wstring& path : paths) {
    EXPECT_EQ(path.find(L"-link"), std::wstring::npos) << "listed through a link: " << ::testing::PrintToString(path);
  }
  ASSERT_EQ(told_.size(), 1u);
  EXPECT_NE(told_[0].find(L"E:\\link-fixtures\\files\\file-link.txt (link)"), std::wstring::npos) << told_[0];
  page_.List().DeleteAll();
}

// A tree big enough that walking it takes the worker a while.
class BigTree {
 public:
  static constexpr int kFolders = 20;
  static constexpr int kFilesPerFolder = 40;
  BigTree() {
    for (int folder = 0; folder < kFolders; ++folder) {
      const std::wstring path =
          root_ / (L"d" + std::to_wstring(folder % 4) + L"\\sub" + std::to_wstring(folder) + L"\\");
      for (int file = 0; file < kFilesPerFolder; ++file) {
        const std::wstring name = path + L"f" + std::to_wstring(file) + L".bin";
        MakeFile(name, "x");
        files_.insert(name);
      }
    }
  }
  const std::wstring& Root() const { return root_.Path(); }
  const std::set<std::wstring>& Files() const { return files_; }

 private:
  TempFolder root_;
  std::set<std::wstring> files_;
};

TEST_F(ShredPage, AddDirectoryWalksABigTreeOnTheWorkerWhileTheWindowAnswers) {
  const BigTree tree;
  const std::wstring first = *tree.Files().begin();
  ASSERT_TRUE(page_.AddPath(first));  // listed before: still one row afterwards

  std::atomic<bool> walkStarted{false};
  std::atomic<ULONGLONG> roundTripMs{~0ull};
  std::atomic<bool> answeredWhileWalking{false};
  std::thread user([&] {
    while (!walkStarted) Sleep(1);
    const ULONGLONG start = GetTickCount64();
    DWORD_PTR answer = 0;
    if (SendMessageTimeoutW(page_.Handle(), WM_NULL, 0, 0, SMTO_NORMAL, 5000, &answer) != 0) {
      roundTripMs = GetTickCount64() - start;
      answeredWhileWalking = page_.Running();
    }
  });
  ASSERT_TRUE(page_.AddFolder(tree.Root()));
  const bool runningOnReturn = page_.Running();
  walkStarted = true;
  EXPECT_TRUE(runningOnReturn) << "Add Directory came back before the walk was done";
  EXPECT_FALSE(Enabled(IDC_SHRED_ADD_FILE)) << "the list is the walk's while it runs";
  EXPECT_TRUE(Enabled(IDC_SHRED_SHRED)) << "as Stop";
  ASSERT_TRUE(PumpUntil([&] { return !page_.Running(); }));
  user.join();
  EXPECT_LT(roundTripMs.load(), 1000u) << "the window's thread answered a message during the walk";
  if (!answeredWhileWalking) std::printf("note: the walk ended before the round trip came back\n");

  const std::vector<std::wstring> listed = ListedPaths();
  EXPECT_EQ(listed.size(), tree.Files().size()) << "every file once, the one listed before included";
  EXPECT_EQ(std::set<std::wstring>(listed.begin(), listed.end()), tree.Files());
  EXPECT_TRUE(Enabled(IDC_SHRED_ADD_FILE));
  EXPECT_TRUE(told_.empty());
}

TEST_F(ShredPage, StopEndsTheWalkOfAddDirectoryAndKeepsWhatItListed) {
  const BigTree tree;
  {
    // Stop is pressed before the walk's thread gets going: it ends at its first entry.
    const testing::HeldThreads held;
    page_.SetThreadStarter(held.Held());
    ASSERT_TRUE(page_.AddFolder(tree.Root()));
    Click(IDC_SHRED_SHRED);
    EXPECT_TRUE(asked_.empty()) << "Stop asks nothing";
  }
  ASSERT_TRUE(PumpUntil([&] { return !page_.Running(); }));
  EXPECT_LE(page_.List().RowCount(), 1);
  for (const std::wstring& path : ListedPaths()) EXPECT_TRUE(tree.Files().contains(path)) << path;
  EXPECT_TRUE(Enabled(IDC_SHRED_ADD_FOLDER));

  page_.SetThreadStarter(controls::StartSystemThread);
  AddFolderAndWait(tree.Root());
  EXPECT_EQ(page_.List().RowCount(), static_cast<int>(tree.Files().size())) << "a later walk lists the rest";
}

TEST_F(ShredPage, AWalkOrAJobWhoseThreadCannotStartSaysSoAndTouchesNothing) {
  TempFolder root;
  MakeFile(root / L"a.txt", "aaa");
  page_.SetThreadStarter(testing::FailingThreadStarter());
  EXPECT_FALSE(page_.AddFolder(root.Path()));
  EXPECT_FALSE(page_.Running());
  EXPECT_EQ(page_.List().RowCount(), 0);
  ASSERT_EQ(told_.size(), 1u);
  EXPECT_EQ(told_[0],
            L"Lumenor could not start this task: Windows has no room for another thread. Nothing was changed.");

  ASSERT_TRUE(page_.AddPath(root / L"a.txt"));
  Click(IDC_SHRED_SHRED);
  EXPECT_EQ(asked_.size(), 1u);
  EXPECT_FALSE(page_.Running());
  EXPECT_EQ(told_.size(), 2u);
  EXPECT_EQ(page_.List().RowCount(), 1) << "the row stays: its file was not shredded";
  EXPECT_EQ(testing::ReadFileBytes(root / L"a.txt"), "aaa");
  for (const int id : kSevenControls) EXPECT_TRUE(Enabled(id)) << "control " << id;
}

TEST_F(ShredPage, CancelFileRemovesEverySelectedRowAndCancelAllTheRestLeavingTheFiles) {
  TempFolder root;
  for (const wchar_t* name : {L"1.txt", L"2.txt", L"3.txt", L"4.txt"}) MakeFile(root / name);
  page_.AddFiles({root / L"1.txt", root / L"2.txt", root / L"3.txt", root / L"4.txt"});
  SelectRows({0, 2, 3});
  Click(IDC_SHRED_CANCEL_FILE);
  ASSERT_EQ(page_.List().RowCount(), 1);
  EXPECT_EQ(Row(0)[0], L"2.txt");
  EXPECT_TRUE(page_.AddPath(root / L"3.txt")) << "a cancelled file may be listed again";
  Click(IDC_SHRED_CANCEL_ALL);
  EXPECT_EQ(page_.List().RowCount(), 0);
  EXPECT_EQ(testing::EntriesBelow(root.Path()).size(), 4u);
}

TEST_F(ShredPage, ShredAsksFirstAndNoLeavesEverything) {
  TempFolder root;
  MakeFile(root / L"a.txt", std::string(1536 * 1024, 'a'));
  MakeFile(root / L"b.txt", std::string(512 * 1024, 'b'));
  page_.AddFiles({root / L"a.txt", root / L"b.txt"});
  answer_ = false;
  Click(IDC_SHRED_SHRED);
  EXPECT_EQ(asked_, (std::vector<std::wstring>{L"Shred 2 files (2.0 MB)? This cannot be undone."}));
  EXPECT_FALSE(page_.Running());
  EXPECT_EQ(page_.List().RowCount(), 2);
  EXPECT_TRUE(FileExists(root / L"a.txt"));

  page_.List().DeleteAll();
  Click(IDC_SHRED_CANCEL_ALL);
  asked_.clear();
  Click(IDC_SHRED_SHRED);
  EXPECT_TRUE(asked_.empty()) << "nothing to ask about an empty list";
  EXPECT_FALSE(page_.Running());
}

TEST_F(ShredPage, ShredRunsWithSevenControlsDisabledThenEmptiesTheListAndComesBack) {
  TempFolder root;
  MakeFile(root / L"a.txt", std::string(300000, 'a'));
  MakeFile(root / L"b.txt", "b");
  page_.AddFiles({root / L"a.txt", root / L"b.txt"});
  Click(IDC_SHRED_SAFE);
  SendMessageW(GetDlgItem(page_.Handle(), IDC_SHRED_SAFE), BM_SETCHECK, BST_CHECKED, 0);
  SendMessageW(GetDlgItem(page_.Handle(), IDC_SHRED_QUICK), BM_SETCHECK, BST_UNCHECKED, 0);
  EXPECT_EQ(page_.Method(), ShredMethod::kSafe);
  Click(IDC_SHRED_SHRED);
  ASSERT_TRUE(page_.Running());
  for (const int id : kSevenControls) EXPECT_FALSE(Enabled(id)) << "control " << id;
  EXPECT_TRUE(Enabled(IDC_SHRED_SHRED)) << "it is the Stop button now";
  page_.AddFiles({root / L"b.txt"});
  EXPECT_EQ(page_.List().RowCount(), 2) << "the list does not change under the job";

  ASSERT_TRUE(PumpUntil([&] { return !page_.Running(); }));
  EXPECT_EQ(page_.List().RowCount(), 0);
  EXPECT_TRUE(testing::EntriesBelow(root.Path()).empty());
  for (const int id : kSevenControls) EXPECT_TRUE(Enabled(id)) << "control " << id;
  EXPECT_EQ(SendMessageW(page_.ProgressBar(), PBM_GETPOS, 0, 0), 0);
  EXPECT_TRUE(told_.empty());
}

TEST_F(ShredPage, StopEndsTheJobAndLeavesTheFilesNotShreddedListed) {
  TempFolder root;
  MakeFile(root / L"a.bin", std::string(32 * 1024 * 1024, 'a'));
  MakeFile(root / L"b.bin", "b");
  page_.AddFiles({root / L"a.bin", root / L"b.bin"});
  SendMessageW(GetDlgItem(page_.Handle(), IDC_SHRED_SAFE), BM_SETCHECK, BST_CHECKED, 0);
  SendMessageW(GetDlgItem(page_.Handle(), IDC_SHRED_QUICK), BM_SETCHECK, BST_UNCHECKED, 0);
  Click(IDC_SHRED_SHRED);
  ASSERT_TRUE(page_.Running());
  Click(IDC_SHRED_SHRED);  // Stop, long before 96 MB are written
  ASSERT_TRUE(PumpUntil([&] { return !page_.Running(); }));
  EXPECT_EQ(page_.List().RowCount(), 2);
  EXPECT_TRUE(FileExists(root / L"a.bin"));
  EXPECT_EQ(testing::ReadFileBytes(root / L"b.bin"), "b");
}

TEST(FilePicker, ManyChosenFilesBecomeWholePathsInTheFolderTheDialogNames) {
  const wchar_t one[] = L"C:\\x\\only.txt\0\0";
  EXPECT_EQ(ChosenPaths(one, std::size(one)), (std::vector<std::wstring>{L"C:\\x\\only.txt"}));
  const wchar_t many[] = L"C:\\x\0a.txt\0b c.doc\0\0";
  EXPECT_EQ(ChosenPaths(many, std::size(many)), (std::vector<std::wstring>{L"C:\\x\\a.txt", L"C:\\x\\b c.doc"}));
  const wchar_t atRoot[] = L"C:\\\0a.txt\0b.txt\0\0";
  EXPECT_EQ(ChosenPaths(atRoot, std::size(atRoot)), (std::vector<std::wstring>{L"C:\\a.txt", L"C:\\b.txt"}));
  const wchar_t unended[] = {L'C', L':', L'\\', L'a'};
  EXPECT_TRUE(ChosenPaths(unended, std::size(unended)).empty());
}

}  // namespace
}  // namespace lumenor
