// "Cookies to Keep" against settings files: what a typed or pasted domain becomes, the
// hosts of the last scan offered until a kept domain covers them, and that "OK" writes
// the list while "Cancel" writes nothing.
#include "res/resource.h"
#include "scan/CookieKeepChoice.h"
#include "scan/DlgCookiesToKeep.h"
#include "settings/Settings.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <windowsx.h>

#include <memory>

namespace lumenor {
namespace {

TEST(CookieKeepChoice, ADomainIsTakenAsTheKeepListComparesItAndAPastedAddressForItsHost) {
  EXPECT_EQ(DomainToKeep(L"  Example.ORG "), L"example.org");
  EXPECT_EQ(DomainToKeep(L".example.org"), L"example.org");
  EXPECT_EQ(DomainToKeep(L"https://user@www.Example.org:8443/path?q=1#top"), L"www.example.org");
  EXPECT_EQ(DomainToKeep(L"example.org."), L"example.org");
  for (const wchar_t* refused : {L"", L"   ", L"https://", L"exa mple.org", L"example..org", L"ex*ample.org"}) {
    EXPECT_EQ(DomainToKeep(refused), std::nullopt) << ::testing::PrintToString(std::wstring(refused));
  }
}

TEST(CookieKeepChoice, KeepingADomainTakesTheHostsItCoversOffTheOfferAndLettingItGoOffersThemAgain) {
  CookieKeepChoice choice({L"kept.example", L"not a domain"},
                          {L".example.org", L"www.example.org", L"badexample.org", L"shop.kept.example"});
  EXPECT_EQ(choice.Kept(), (std::vector<std::wstring>{L"kept.example"}));
  EXPECT_EQ(choice.Offered(), (std::vector<std::wstring>{L"example.org", L"www.example.org", L"badexample.org"}));
  EXPECT_TRUE(choice.Keep(L"example.org"));
  EXPECT_TRUE(choice.Keep(L"EXAMPLE.org")) << "kept once";
  EXPECT_EQ(choice.Kept(), (std::vector<std::wstring>{L"kept.example", L"example.org"}));
  EXPECT_EQ(choice.Offered(), (std::vector<std::wstring>{L"badexample.org"}));
  choice.LetGo(L"kept.example");
  EXPECT_EQ(choice.Offered(), (std::vector<std::wstring>{L"badexample.org", L"shop.kept.example"}));
}

class CookiesToKeepDialog : public ::testing::Test {
 protected:
  // Opens the dialog (modeless, so the test can use it) on a file holding `text`.
  void Open(const std::string& text, std::vector<std::wstring> found) {
    ASSERT_TRUE(testing::WriteFileBytes(path_, text));
    dialog_ = std::make_unique<CDlgCookiesToKeep>(file_, std::move(found));
    ASSERT_TRUE(dialog_->Create(nullptr));
    dialog_->Show(SW_SHOW);
  }
  void Press(int id) { SendMessageW(dialog_->Handle(), WM_COMMAND, static_cast<WPARAM>(id), 0); }
  HWND Item(int id) const { return GetDlgItem(dialog_->Handle(), id); }
  std::vector<std::wstring> Rows(int list) const {
    std::vector<std::wstring> rows;
    for (int index = 0; index < ListBox_GetCount(Item(list)); ++index) {
      wchar_t text[256] = {};
      ListBox_GetText(Item(list), index, text);
      rows.emplace_back(text);
    }
    return rows;
  }
  void Select(int list, const std::wstring& row) {
    const int index = ListBox_FindStringExact(Item(list), -1, row.c_str());
    ASSERT_GE(index, 0) << ::testing::PrintToString(row);
    ListBox_SetSel(Item(list), TRUE, index);
  }

  testing::TempFolder folder_;
  std::wstring path_ = folder_ / L"setting.ini";
  CIniFileRW file_ = CIniFileRW::AtPath(path_);
  std::unique_ptr<CDlgCookiesToKeep> dialog_;
};

TEST_F(CookiesToKeepDialog, PicksFromTheScanTypesAndRemovesThenOkWritesTheList) {
  Open("[CookiesToKeep]\r\nCookiesToKeep=1\r\ndomain0=mail.example\r\n",
       {L"accounts.mail.example", L".bank.example", L"tracker.example"});
  EXPECT_EQ(Rows(IDC_KEEP_LIST), (std::vector<std::wstring>{L"mail.example"}));
  EXPECT_EQ(Rows(IDC_KEEP_FOUND), (std::vector<std::wstring>{L"bank.example", L"tracker.example"}));

  Select(IDC_KEEP_FOUND, L"bank.example");
  Press(IDC_KEEP_ADD_FOUND);
  SetWindowTextW(Item(IDC_KEEP_DOMAIN), L"https://www.shop.example/basket");
  Press(IDC_KEEP_ADD_TYPED);
  EXPECT_EQ(GetWindowTextLengthW(Item(IDC_KEEP_DOMAIN)), 0) << "the box empties once the domain is kept";
  SetWindowTextW(Item(IDC_KEEP_DOMAIN), L"not a domain");
  Press(IDC_KEEP_ADD_TYPED);
  EXPECT_GT(GetWindowTextLengthW(Item(IDC_KEEP_DOMAIN)), 0) << "a refused text stays to be mended";
  Select(IDC_KEEP_LIST, L"mail.example");
  Press(IDC_KEEP_REMOVE);
  EXPECT_EQ(Rows(IDC_KEEP_LIST), (std::vector<std::wstring>{L"bank.example", L"www.shop.example"}));
  EXPECT_EQ(Rows(IDC_KEEP_FOUND), (std::vector<std::wstring>{L"accounts.mail.example", L"tracker.example"}));

  SetWindowTextW(Item(IDC_KEEP_DOMAIN), L"");
  Press(IDOK);
  EXPECT_EQ(ReadCookiesToKeep(file_), (std::vector<std::wstring>{L"bank.example", L"www.shop.example"}));
}

TEST_F(CookiesToKeepDialog, EnterInTheDomainBoxAddsTheDomainAndCancelWritesNothing) {
  const std::string text = "[CookiesToKeep]\r\nCookiesToKeep=1\r\ndomain0=mail.example\r\n";
  Open(text, {});
  EXPECT_TRUE(Rows(IDC_KEEP_FOUND).empty()) << "no scan yet: nothing to pick from";
  SetFocus(Item(IDC_KEEP_DOMAIN));
  SetWindowTextW(Item(IDC_KEEP_DOMAIN), L"example.org");
  Press(IDOK);
  EXPECT_EQ(Rows(IDC_KEEP_LIST), (std::vector<std::wstring>{L"mail.example", L"example.org"}));
  EXPECT_EQ(testing::ReadFileBytes(path_), text) << "Enter in the box adds the domain; it writes nothing";
  Press(IDCANCEL);
  EXPECT_EQ(testing::ReadFileBytes(path_), text);
}

}  // namespace
}  // namespace lumenor
