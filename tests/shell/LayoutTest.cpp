// Every page fits its frame: each visible control lies whole inside its page, no two
// controls of a page lie on each other unless one is meant to hold the other, pages lie
// inside the main window, pictures keep their size and lists show only their own
// columns. CTest runs this program twice, at 96 dots per inch and, in a Wine prefix of
// its own, at 144, where dialog units are half as large again as pictures' pixels.
#include "app/DlgWelcome.h"
#include "catalogue/Catalogue.h"
#include "controls/GdiOwners.h"
#include "controls/Layout.h"
#include "controls/NButtonEx.h"
#include "res/resource.h"
#include "scan/DlgCookiesToKeep.h"
#include "scan/DlgOptionsChoose.h"
#include "scan/DlgScanResult.h"
#include "tests/shell/ShellTestSupport.h"
#include "tests/support/TempFolder.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace lumenor {
namespace {

using controls::Height;
using controls::Width;

// Controls meant to lie over others; each may hold a control that lies wholly inside it.
const std::set<int> kHolders = {IDC_OPTIONS_GENERAL_FRAME, IDC_OPTIONS_EXIT_FRAME, IDC_OPTIONS_SCHEDULER_FRAME,
                                IDC_OPTIONS_COMMUNITY_FRAME};

struct Child {
  int id;
  HWND window;
  RECT rect;  // in the parent's client coordinates
};

std::string Describe(const Child& child) {
  wchar_t kind[64] = {};
  (void)GetClassNameW(child.window, kind, 64);
  std::ostringstream text;
  text << "control " << child.id << " (";
  for (const wchar_t* letter = kind; *letter != L'\0'; ++letter) {
    text << static_cast<char>(*letter);
  }
  text << ") at " << child.rect.left << "," << child.rect.top << "-" << child.rect.right << "," << child.rect.bottom;
  return text.str();
}

std::string Describe(const RECT& rect) {
  std::ostringstream text;
  text << rect.left << "," << rect.top << "-" << rect.right << "," << rect.bottom;
  return text.str();
}

RECT RectIn(HWND window, HWND parent) {
  RECT rect{};
  EXPECT_TRUE(GetWindowRect(window, &rect));
  MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

std::vector<Child> VisibleChildren(HWND parent) {
  std::vector<Child> children;
  for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
    if (IsWindowVisible(child)) {
      children.push_back({GetDlgCtrlID(child), child, RectIn(child, parent)});
    }
  }
  return children;
}

bool Inside(const RECT& inner, const RECT& outer) {
  return inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

bool Overlap(const RECT& a, const RECT& b) {
  RECT common{};
  return IntersectRect(&common, &a, &b) != FALSE;
}

// Controls that lie on each other where neither is a holder around the other.
void ExpectNoOverlaps(const std::vector<Child>& children) {
  for (size_t first = 0; first < children.size(); ++first) {
    for (size_t second = first + 1; second < children.size(); ++second) {
      const Child& a = children[first];
      const Child& b = children[second];
      if (!Overlap(a.rect, b.rect)) {
        continue;
      }
      const bool held = (kHolders.count(a.id) != 0 && Inside(b.rect, a.rect)) ||
                        (kHolders.count(b.id) != 0 && Inside(a.rect, b.rect));
      EXPECT_TRUE(held) << Describe(a) << " overlaps " << Describe(b);
    }
  }
}

class Layout : public testing::MainWindowTest {
 protected:
  struct Page {
    const char* name;
    int index;
    controls::CDialog* dialog;
    int junkTab = -1;  // for the junk page's sub-pages: the tab that shows them
  };
  // The main window's pages, at their templates' size.
  std::vector<Page> Pages() {
    return {{"privacy scan", CPcDlg::kScanPage, &Window().ScanPage()},
            {"junk", CPcDlg::kJunkPage, &Window().JunkPage()},
            {"shredder", CPcDlg::kShredPage, &Window().ShredPage()},
            {"settings", CPcDlg::kOptionsPage, &Window().OptionsPage()},
            {"help", CPcDlg::kHelpPage, &Window().HelpPage()}};
  }
  // The pages and the sub-pages inside them, sized by their holders.
  static constexpr size_t kJunkSetUpPage = 5;
  static constexpr size_t kJunkResultsPage = 6;
  std::vector<Page> PagesAndSubPages() {
    std::vector<Page> pages = Pages();
    pages.push_back({"junk set-up", CPcDlg::kJunkPage, &Window().JunkPage().SetUpPage(), CDlgJunk::kSetUpTab});
    pages.push_back({"junk results", CPcDlg::kJunkPage, &Window().JunkPage().ResultPage(), CDlgJunk::kResultsTab});
    return pages;
  }
  void Visit(const Page& page) {
    Window().ShowPage(page.index);
    if (page.junkTab >= 0) {
      Window().JunkPage().ShowSubPage(page.junkTab);
    }
    Pump();
    ASSERT_TRUE(page.dialog->IsVisible()) << page.name;
  }
  HWND PageItem(const Page& page, int id) { return GetDlgItem(page.dialog->Handle(), id); }
};

TEST_F(Layout, RunsAtTheScreenResolutionItWasStartedWith) {
  // Set by CTest for each run; the prefix's LogPixels is what makes it so.
  const char* wanted = std::getenv("LUMENOR_LOG_PIXELS");
  if (wanted == nullptr) {
    GTEST_SKIP() << "run without LUMENOR_LOG_PIXELS: any resolution";
  }
  const controls::WindowDC screen(nullptr);
  ASSERT_TRUE(screen);
  EXPECT_EQ(GetDeviceCaps(screen.Get(), LOGPIXELSY), std::atoi(wanted));
}

TEST_F(Layout, PagesLieInsideTheFrameAtTheirTemplatesSize) {
  Open();
  RECT client{};
  ASSERT_TRUE(GetClientRect(Main(), &client));
  const FrameLayout& frame = Window().Frame();
  for (const Page& page : Pages()) {
    SCOPED_TRACE(page.name);
    Visit(page);
    const RECT rect = RectIn(page.dialog->Handle(), Main());
    const SIZE wanted = controls::TemplateSize(page.dialog->Handle(), page.dialog->TemplateId());
    EXPECT_GT(wanted.cx, 0);
    EXPECT_EQ(Width(rect), wanted.cx);
    EXPECT_EQ(Height(rect), wanted.cy);
    EXPECT_TRUE(Inside(rect, frame.pages)) << Describe(rect) << " outside the room for pages " << Describe(frame.pages);
    EXPECT_TRUE(Inside(rect, client)) << Describe(rect) << " outside the main window's client area";
  }
}

TEST_F(Layout, FrameControlsLieInsideTheirBandsWithoutOverlapping) {
  Open();
  RECT client{};
  ASSERT_TRUE(GetClientRect(Main(), &client));
  const FrameLayout& frame = Window().Frame();
  std::vector<Child> controls;
  for (const Child& child : VisibleChildren(Main())) {
    if (child.id != 0) {  // pages are dialogs without an id
      controls.push_back(child);
    }
  }
  ASSERT_EQ(controls.size(), 8u) << "update, help, minimise, close, AD, home link, footer help, tabs";
  for (const Child& control : controls) {
    EXPECT_TRUE(Inside(control.rect, client)) << Describe(control);
    EXPECT_FALSE(Overlap(control.rect, frame.pages)) << Describe(control) << " lies on the pages";
    EXPECT_GT(Width(control.rect), 0) << Describe(control);
    EXPECT_GT(Height(control.rect), 0) << Describe(control);
  }
  ExpectNoOverlaps(controls);
  for (int id : {IDC_MAIN_UPDATE, IDC_MAIN_HELP, IDC_SKIN_MINIMIZE, IDC_SKIN_CLOSE}) {
    EXPECT_TRUE(Inside(RectIn(GetDlgItem(Main(), id), Main()), frame.caption)) << "caption button " << id;
  }
  for (int id : {IDC_MAIN_HOME_LINK, IDC_MAIN_HELP_FOOTER}) {
    EXPECT_TRUE(Inside(RectIn(GetDlgItem(Main(), id), Main()), frame.footer)) << "footer control " << id;
  }
  EXPECT_EQ(frame.footer.bottom, client.bottom) << "the footer closes the window";
}

TEST_F(Layout, JunkSubPagesFillTheJunkPageUnderItsTabStrip) {
  Open();
  CDlgJunk& junk = Window().JunkPage();
  const RECT room = junk.ClientRect();
  const RECT strip = RectIn(GetDlgItem(junk.Handle(), IDC_JUNK_TABS), junk.Handle());
  for (controls::CDialog* page :
       {static_cast<controls::CDialog*>(&junk.SetUpPage()), static_cast<controls::CDialog*>(&junk.ResultPage())}) {
    const RECT rect = RectIn(page->Handle(), junk.Handle());
    EXPECT_EQ(rect.top, strip.bottom) << Describe(rect);
    EXPECT_EQ(rect.bottom, room.bottom) << Describe(rect);
    EXPECT_EQ(Width(rect), Width(room)) << Describe(rect);
  }
}

TEST_F(Layout, EveryVisibleControlLiesWholeInsideItsPage) {
  Open();
  for (const Page& page : PagesAndSubPages()) {
    SCOPED_TRACE(page.name);
    Visit(page);
    const RECT client = page.dialog->ClientRect();
    const std::vector<Child> controls = VisibleChildren(page.dialog->Handle());
    EXPECT_FALSE(controls.empty());
    for (const Child& control : controls) {
      EXPECT_GT(Width(control.rect), 0) << Describe(control) << " was never laid out";
      EXPECT_GT(Height(control.rect), 0) << Describe(control) << " was never laid out";
      EXPECT_TRUE(Inside(control.rect, client)) << Describe(control) << " leaves the page " << Describe(client);
    }
  }
}

TEST_F(Layout, NoTwoControlsOfAPageOverlapUnlessOneHoldsTheOther) {
  Open();
  for (const Page& page : PagesAndSubPages()) {
    SCOPED_TRACE(page.name);
    Visit(page);
    ExpectNoOverlaps(VisibleChildren(page.dialog->Handle()));
  }
}

TEST_F(Layout, PictureButtonsShowTheirPicturesAtTheirOwnSize) {
  Open();
  struct Case {
    size_t page;  // in PagesAndSubPages
    int id;
  };
  const Case cases[] = {
      {CPcDlg::kScanPage, IDC_SCAN_START},
      {CPcDlg::kScanPage, IDC_SCAN_DELETE_ROW},
      {CPcDlg::kScanPage, IDC_SCAN_ERASE},
      {CPcDlg::kScanPage, IDC_SCAN_SELECT_ALL},
      {CPcDlg::kScanPage, IDC_SCAN_SELECT_NONE},
      {CPcDlg::kScanPage, IDC_SCAN_SELECT_DEFAULT},
      {kJunkSetUpPage, IDC_JUNK_START},
      {kJunkResultsPage, IDC_JUNK_STOP},
      {kJunkResultsPage, IDC_JUNK_DELETE},
      {kJunkResultsPage, IDC_JUNK_DELETE_ALL},
      {CPcDlg::kShredPage, IDC_SHRED_SHRED},
      {CPcDlg::kOptionsPage, IDC_OPTIONS_SAVE},
      {CPcDlg::kHelpPage, IDC_HELP_SUPPORT},
      {CPcDlg::kHelpPage, IDC_HELP_MANUAL},
      {CPcDlg::kHelpPage, IDC_HELP_SUPPORT_AGAIN},
  };
  const std::vector<Page> pages = PagesAndSubPages();
  for (const Case& c : cases) {
    HWND window = PageItem(pages[c.page], c.id);
    auto* button = dynamic_cast<controls::CNButtonEx*>(controls::CControl::FromHandle(window));
    ASSERT_NE(button, nullptr) << "button " << c.id;
    const SIZE picture = button->PictureSize();
    EXPECT_GT(picture.cx, 0) << "button " << c.id << " has its pictures";
    const RECT rect = button->RectInParent();
    EXPECT_EQ(Width(rect), picture.cx) << "button " << c.id;
    EXPECT_EQ(Height(rect), picture.cy) << "button " << c.id;
  }
}

TEST_F(Layout, ListsShowOnlyTheirOwnColumnsBeforeAndAfterTheyScroll) {
  Open();
  struct Case {
    const char* name;
    size_t page;  // in PagesAndSubPages
    int id;
    std::vector<int> widths;  // as given, in pixels at 96 dots per inch
  };
  const Case cases[] = {
      {"scan results", CPcDlg::kScanPage, IDC_SCAN_RESULTS, {200, 100, 240}},
      {"shred list", CPcDlg::kShredPage, IDC_SHRED_LIST, {120, 180, 160}},
      {"junk catalogue", kJunkSetUpPage, IDC_JUNK_CATALOG, {80, 170}},
      {"junk results", kJunkResultsPage, IDC_JUNK_RESULTS, {100, 350}},
  };
  const int dotsPerInch = GetDeviceCaps(controls::WindowDC(nullptr).Get(), LOGPIXELSX);
  const std::vector<Page> pages = PagesAndSubPages();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Visit(pages[c.page]);
    HWND list = PageItem(pages[c.page], c.id);
    ASSERT_NE(list, nullptr);
    const auto expectColumns = [&](const char* when) {
      HWND header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
      ASSERT_EQ(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0), static_cast<LRESULT>(c.widths.size())) << when;
      RECT client{};
      ASSERT_TRUE(GetClientRect(list, &client));
      int total = 0;
      for (size_t column = 0; column < c.widths.size(); ++column) {
        const int width = static_cast<int>(SendMessageW(list, LVM_GETCOLUMNWIDTH, column, 0));
        EXPECT_GE(width, MulDiv(c.widths[column], dotsPerInch, 96)) << when << ", column " << column;
        total += width;
      }
      EXPECT_EQ(total, client.right) << when << ": the columns end where the list ends";
      EXPECT_EQ(GetWindowLongW(list, GWL_STYLE) & WS_HSCROLL, 0) << when << ": nothing to scroll sideways";
    };
    expectColumns("empty");
    // Enough rows for a vertical scroll bar, which narrows what the columns may take. The
    // lists are virtual: the count is all the list view keeps.
    ASSERT_NE(SendMessageW(list, LVM_SETITEMCOUNT, 60, 0), 0);
    Pump();
    ASSERT_NE(GetWindowLongW(list, GWL_STYLE) & WS_VSCROLL, 0);
    expectColumns("full");
    ASSERT_NE(SendMessageW(list, LVM_SETITEMCOUNT, 0, 0), 0);
    Pump();
    expectColumns("emptied again");
  }
}

TEST(SplashLayout, SplashIsItsPictureWithTheButtonInsideIt) {
  for (int plain : {1, 0}) {
    SCOPED_TRACE(plain == 1 ? "plain picture" : "picture with its button");
    CDlgWelcome splash;
    splash.ShowPlainPicture = plain;
    ASSERT_TRUE(splash.Create(nullptr));
    splash.Show(SW_SHOW);
    const RECT client = splash.ClientRect();
    const SIZE picture = splash.PictureSize();
    EXPECT_GT(picture.cx, 0);
    EXPECT_EQ(client.right, picture.cx);
    EXPECT_EQ(client.bottom, picture.cy);
    HWND button = GetDlgItem(splash.Handle(), IDOK);
    EXPECT_EQ(IsWindowVisible(button) != FALSE, plain == 0);
    const RECT rect = RectIn(button, splash.Handle());
    EXPECT_TRUE(Inside(rect, client)) << "OK at " << Describe(rect) << " in " << Describe(client);
  }
}

// The dialogs the pages open: every control whole inside, none on another.
TEST(DialogLayout, EraseDialogIsItsPictureAndHoldsItsControlsWhole) {
  CDlgScanResult dialog(3, [](EraseTally& tally) { tally.Erased(3, 0); });
  ASSERT_TRUE(dialog.Create(nullptr));
  dialog.Show(SW_SHOW);
  for (int waited = 0; !dialog.CloseShown() && waited < 5000; waited += 20) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    Sleep(20);
  }
  ASSERT_TRUE(dialog.CloseShown());
  const RECT client = dialog.ClientRect();
  EXPECT_EQ(client.right, 429);
  EXPECT_EQ(client.bottom, 302);
  const std::vector<Child> children = VisibleChildren(dialog.Handle());
  for (const Child& child : children) {
    EXPECT_TRUE(Inside(child.rect, client)) << Describe(child);
  }
  ExpectNoOverlaps(children);
}

TEST(DialogLayout, OneClickDialogKeepsItsTreeAboveItsButtons) {
  BuildCatalogue();
  {
    testing::TempFolder folder;
    CDlgOptionsChoose dialog(CIniFileRW::AtPath(folder / L"setting.ini"));
    ASSERT_TRUE(dialog.Create(nullptr));
    dialog.Show(SW_SHOW);
    const RECT client = dialog.ClientRect();
    const std::vector<Child> children = VisibleChildren(dialog.Handle());
    EXPECT_EQ(children.size(), 4u) << "the tree and three buttons";
    for (const Child& child : children) {
      EXPECT_GT(Width(child.rect), 0) << Describe(child);
      EXPECT_TRUE(Inside(child.rect, client)) << Describe(child);
    }
    ExpectNoOverlaps(children);
  }
  FreeCatalogue();
}

TEST(DialogLayout, CookiesDialogHoldsItsListsAndButtonsWholeAndApart) {
  testing::TempFolder folder;
  CDlgCookiesToKeep dialog(CIniFileRW::AtPath(folder / L"setting.ini"), {L"accounts.example.com", L"tracker.example"});
  ASSERT_TRUE(dialog.Create(nullptr));
  dialog.Show(SW_SHOW);
  const RECT client = dialog.ClientRect();
  const std::vector<Child> children = VisibleChildren(dialog.Handle());
  EXPECT_EQ(children.size(), 12u) << "two lists with their labels, the domain box with its label, five buttons, a note";
  for (const Child& child : children) {
    EXPECT_GT(Width(child.rect), 0) << Describe(child);
    EXPECT_TRUE(Inside(child.rect, client)) << Describe(child);
  }
  ExpectNoOverlaps(children);
}

}  // namespace
}  // namespace lumenor
