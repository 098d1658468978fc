// Rule items of a user's file on the scan page, as the user ticks, scans and erases them:
// ticking an item that carries a warning asks first, OK keeps the tick and Cancel puts
// back every box the press changed, whether it ticked the item, its application or its
// category; items without a warning, and unticking, ask nothing. Rows opened after their
// boxes changed show them as they are now, each row standing for its own item.
#include "tests/scan/RuleTreeFixtures.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TraceFixtures.h"

#include "base/ResourceString.h"
#include "catalogue/ItemIds.h"
#include "engine/SystemPaths.h"
#include "res/resource.h"
#include "rules/RuleModel.h"
#include "scan/DlgScan.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>

namespace lumenor {
namespace {

using testing::BoxState;
using testing::PressSpaceOn;

const unsigned kSessions = rules::DerivedItemId(L"Rule App", L"Sessions");
const unsigned kPasswords = rules::DerivedItemId(L"Rule App", L"Passwords");
const unsigned kCache = rules::DerivedItemId(L"Rule App", L"Cache");
const unsigned kQuietCache = rules::DerivedItemId(L"Quiet App", L"Cache");

class RuleItemsOnTheScanPage : public ::testing::Test {
 protected:
  void SetUp() override {
    InstallCatalogue(testing::CatalogueWithTestRules());
    previousTemp_ = MachinePaths().EnvironmentVariable(L"TEMP").value_or(L"");
    std::wstring temp = temp_.Path();
    temp.pop_back();
    ASSERT_TRUE(SetEnvironmentVariableW(L"TEMP", temp.c_str()));
    ASSERT_TRUE(testing::WriteFileBytes(settingsFolder_ / L"setting.ini", "[RecentItem]\r\nRecentItems=0\r\n"));
    owner_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 800, 600, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(owner_, nullptr);
    page_ = std::make_unique<CDlgScan>();
    page_->SetSettingsFile(settings_);
    page_->SetMessageBox(questions_.Ask());
    ASSERT_TRUE(page_->Create(owner_));
    ShowWindow(owner_, SW_SHOW);
    page_->Show(SW_SHOW);
    application_ = testing::NodeIdNamed(CMyObject::kApplication, L"Rule App");
    category_ = testing::NodeIdNamed(CMyObject::kCategory, L"Lumenor Tests");
    ASSERT_NE(application_, 0u);
    ASSERT_NE(category_, 0u);
  }
  void TearDown() override {
    page_.reset();
    if (owner_ != nullptr) DestroyWindow(owner_);
    if (!previousTemp_.empty()) SetEnvironmentVariableW(L"TEMP", previousTemp_.c_str());
    FreeCatalogue();
  }

  void Space(unsigned id) { PressSpaceOn(page_->Tree(), page_->Selection(), id); }
  void Press(int command) { SendMessageW(page_->Handle(), WM_COMMAND, static_cast<WPARAM>(command), 0); }
  int Box(unsigned id) const { return BoxState(page_->Tree(), page_->Selection(), id); }
  std::vector<unsigned> Ticked() const { return page_->Selection().TickedItems(); }
  // The rows under the row of `id` once the user opens it, each as "name:box", followed by
  // the name of the node the row stands for when that is another.
  std::vector<std::wstring> OpenedRows(unsigned id) const {
    CMyTreeCtrl& tree = page_->Tree();
    const HTREEITEM parent = tree.ItemOfRow(page_->Selection().RowOf(id));
    SendMessageW(tree.Handle(), TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(parent));
    std::vector<std::wstring> rows;
    for (auto child = reinterpret_cast<HTREEITEM>(
             SendMessageW(tree.Handle(), TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(parent)));
         child != nullptr; child = reinterpret_cast<HTREEITEM>(SendMessageW(tree.Handle(), TVM_GETNEXTITEM, TVGN_NEXT,
                                                                            reinterpret_cast<LPARAM>(child)))) {
      wchar_t text[128] = {};
      TVITEMW item{};
      item.mask = TVIF_TEXT | TVIF_STATE;
      item.hItem = child;
      item.stateMask = TVIS_STATEIMAGEMASK;
      item.pszText = text;
      item.cchTextMax = 128;
      if (SendMessageW(tree.Handle(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)) == FALSE) continue;
      std::wstring row = std::wstring(text) + L":" + std::to_wstring(item.state >> 12);
      const int shown = tree.RowOfItem(child);
      const CMyObject* node =
          shown < 0 ? nullptr : FindNodeById(CatalogueRoot(), page_->Selection().Rows()[static_cast<size_t>(shown)].id);
      if (node == nullptr || node->Name() != text) row += L" (row of " + (node ? node->Name() : L"nothing") + L")";
      rows.push_back(std::move(row));
    }
    return rows;
  }
  std::vector<std::wstring> QuestionTexts() const {
    std::vector<std::wstring> texts;
    for (const auto& question : questions_.asked) texts.push_back(question.text);
    return texts;
  }

  testing::TempFolder temp_;
  testing::TempFolder settingsFolder_;
  CIniFileRW settings_ = CIniFileRW::AtPath(settingsFolder_ / L"setting.ini");
  std::wstring previousTemp_;
  testing::RecordedQuestions questions_;
  HWND owner_ = nullptr;
  std::unique_ptr<CDlgScan> page_;
  unsigned application_ = 0;
  unsigned category_ = 0;
};

TEST_F(RuleItemsOnTheScanPage, TickingAnItemWithAWarningAsksFirstAndOkKeepsTheTick) {
  questions_.answer = IDOK;
  Space(kSessions);
  ASSERT_EQ(questions_.asked.size(), 1u);
  EXPECT_EQ(questions_.asked[0].text, std::wstring(L"Rule App, Sessions: ") + testing::kSessionsWarning);
  EXPECT_EQ(questions_.asked[0].caption, LoadResourceString(IDS_RULE_WARNING_CAPTION));
  EXPECT_EQ(questions_.asked[0].type, UINT{MB_OKCANCEL | MB_ICONWARNING});
  EXPECT_EQ(Ticked(), std::vector<unsigned>{kSessions});
  EXPECT_EQ(Box(kSessions), ItemSelection::kTicked);
  EXPECT_EQ(Box(application_), ItemSelection::kPartly);
}

TEST_F(RuleItemsOnTheScanPage, CancelPutsBackEveryBoxThePressChanged) {
  Space(kCache);
  ASSERT_TRUE(questions_.asked.empty());
  questions_.answer = IDCANCEL;
  Space(kSessions);
  EXPECT_EQ(questions_.asked.size(), 1u);
  EXPECT_EQ(Ticked(), std::vector<unsigned>{kCache});
  EXPECT_EQ(Box(kSessions), ItemSelection::kUnticked);
  EXPECT_EQ(Box(kCache), ItemSelection::kTicked);
  EXPECT_EQ(Box(application_), ItemSelection::kPartly) << "as it was before the press";
  EXPECT_EQ(Box(category_), ItemSelection::kPartly);
}

TEST_F(RuleItemsOnTheScanPage, TickingTheApplicationOrTheCategoryAsksOnceAboutTheWarnedItemsItTicks) {
  questions_.answer = IDCANCEL;
  Space(application_);
  ASSERT_EQ(questions_.asked.size(), 1u);
  EXPECT_EQ(questions_.asked[0].text, std::wstring(L"Rule App, Sessions: ") + testing::kSessionsWarning +
                                          L"\n\nRule App, Passwords: " + testing::kPasswordsWarning);
  EXPECT_TRUE(Ticked().empty()) << "Cancel takes back the unwarned Cache too: the press was one";
  EXPECT_EQ(Box(application_), ItemSelection::kUnticked);

  questions_.answer = IDOK;
  Space(kSessions);
  questions_.asked.clear();
  Space(category_);
  EXPECT_EQ(QuestionTexts(),
            std::vector<std::wstring>{std::wstring(L"Rule App, Passwords: ") + testing::kPasswordsWarning})
      << "Sessions was ticked already";
  EXPECT_EQ(Ticked(), (std::vector<unsigned>{kSessions, kPasswords, kCache, kQuietCache}));
  EXPECT_EQ(Box(category_), ItemSelection::kTicked);
}

TEST_F(RuleItemsOnTheScanPage, ItemsWithoutWarningAndUntickingAskNothing) {
  questions_.answer = IDCANCEL;
  Space(kCache);
  Space(testing::NodeIdNamed(CMyObject::kApplication, L"Quiet App"));
  Space(kItemTemporaryFiles);
  EXPECT_TRUE(questions_.asked.empty());
  EXPECT_EQ(Ticked(), (std::vector<unsigned>{kItemTemporaryFiles, kCache, kQuietCache}));

  page_->Selection().TickById(kSessions);
  page_->Tree().RefreshChecks();
  Space(kSessions);
  EXPECT_TRUE(questions_.asked.empty()) << "unticking costs nothing";
  EXPECT_EQ(Box(kSessions), ItemSelection::kUnticked);
}

TEST_F(RuleItemsOnTheScanPage, AClickOnTheBoxAsksAsTheSpaceBarDoes) {
  questions_.answer = IDCANCEL;
  ASSERT_TRUE(testing::ClickBoxOf(page_->Tree(), page_->Selection(), kPasswords));
  EXPECT_EQ(QuestionTexts(),
            std::vector<std::wstring>{std::wstring(L"Rule App, Passwords: ") + testing::kPasswordsWarning});
  EXPECT_EQ(Box(kPasswords), ItemSelection::kUnticked);
  questions_.answer = IDOK;
  ASSERT_TRUE(testing::ClickBoxOf(page_->Tree(), page_->Selection(), kPasswords));
  EXPECT_EQ(Box(kPasswords), ItemSelection::kTicked);
}

TEST_F(RuleItemsOnTheScanPage, RowsOpenedAfterTheirBoxesChangedShowThemAsTheyAreNow) {
  Space(category_);
  EXPECT_EQ(OpenedRows(category_), (std::vector<std::wstring>{L"Rule App:3", L"Quiet App:3"}));
  EXPECT_EQ(OpenedRows(application_), (std::vector<std::wstring>{L"Sessions:3", L"Passwords:3", L"Cache:3"}));

  Press(IDC_SCAN_SELECT_NONE);
  EXPECT_EQ(OpenedRows(application_), (std::vector<std::wstring>{L"Sessions:1", L"Passwords:1", L"Cache:1"}));
  EXPECT_EQ(OpenedRows(testing::NodeIdNamed(CMyObject::kApplication, L"Quiet App")),
            std::vector<std::wstring>{L"Cache:1"})
      << "opened for the first time after Select None";

  Space(kCache);
  EXPECT_EQ(OpenedRows(category_), (std::vector<std::wstring>{L"Rule App:2", L"Quiet App:1"}));
  EXPECT_EQ(Ticked(), std::vector<unsigned>{kCache});
}

TEST_F(RuleItemsOnTheScanPage, TheRuleItemsTicksAreScannedListedAndErased) {
  for (const wchar_t* file : {L"Rule App\\Sessions\\session.json", L"Rule App\\Cache\\a.bin",
                              L"Rule App\\Cache\\b\\c.bin", L"Quiet App\\kept.bin"}) {
    testing::MakeFile(temp_ / file);
  }
  Space(kCache);
  Space(kSessions);
  Press(IDC_SCAN_START);
  page_->WaitForWorker();
  std::vector<std::wstring> rows;
  for (int row = 0; row < page_->Results().RowCount(); ++row) {
    rows.push_back(page_->Results().RowText(row, 0) + L"|" + page_->Results().RowText(row, 1) + L"|" +
                   page_->Results().RowText(row, 2));
  }
  std::sort(rows.begin(), rows.end());
  EXPECT_EQ(rows, (std::vector<std::wstring>{
                      L"Cache|Cache\\|" + temp_ / L"Rule App\\", L"Cache|a.bin|" + temp_ / L"Rule App\\Cache\\",
                      L"Cache|b\\|" + temp_ / L"Rule App\\Cache\\", L"Cache|c.bin|" + temp_ / L"Rule App\\Cache\\b\\",
                      L"Sessions|session.json|" + temp_ / L"Rule App\\Sessions\\"}))
      << "the folders the erase takes once emptied are listed too";
  EXPECT_EQ(page_->Tree().ScanStateOf(kCache), CMyTreeCtrl::kDone);

  page_->SetEraseDialogRunner([&](HWND, int total, std::function<void(EraseTally&)> erase) -> INT_PTR {
    EXPECT_EQ(total, 5);
    testing::RecordingTally tally;
    erase(tally);
    EXPECT_EQ(tally.erased, 5);
    return IDOK;
  });
  Press(IDC_SCAN_ERASE);
  EXPECT_EQ(testing::EntriesBelow(temp_.Path()),
            (std::vector<std::wstring>{L"Quiet App\\", L"Quiet App\\kept.bin", L"Rule App\\", L"Rule App\\Sessions\\"}))
      << "remove-self took the cache folder; the sessions folder is a plain one";
}

}  // namespace
}  // namespace lumenor
