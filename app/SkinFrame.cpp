#include "app/SkinFrame.h"

#include "app/ShellMessages.h"
#include "controls/Layout.h"
#include "controls/MemDC.h"
#include "controls/Paint.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>

namespace lumenor {

namespace {

constexpr COLORREF kFooterColour = RGB(226, 234, 244);
// Normal, hover and selected pictures of the four tabs.
constexpr int kTabPictures[4][3] = {{IDB_TAB_SCAN_NORMAL, IDB_TAB_SCAN_HOT, IDB_TAB_SCAN_SELECTED},
                                    {IDB_TAB_JUNK_NORMAL, IDB_TAB_JUNK_HOT, IDB_TAB_JUNK_SELECTED},
                                    {IDB_TAB_SHRED_NORMAL, IDB_TAB_SHRED_HOT, IDB_TAB_SHRED_SELECTED},
                                    {IDB_TAB_SETTINGS_NORMAL, IDB_TAB_SETTINGS_HOT, IDB_TAB_SETTINGS_SELECTED}};
constexpr int kButtonIds[6] = {IDC_MAIN_UPDATE, IDC_MAIN_HELP,     IDC_MAIN_HELP_FOOTER,
                               IDC_MAIN_AD,     IDC_SKIN_MINIMIZE, IDC_SKIN_CLOSE};
// Space around the frame's bands and between neighbours, in dialog units.
constexpr SIZE kMarginUnits{6, 4};
constexpr SIZE kGapUnits{2, 2};

std::wstring WindowText(HWND window) { return controls::CWindow(window).Text(); }

}  // namespace

HFONT CSkinFrame::TitleFont() const { return titleFont_ ? titleFont_.Get() : controls::DialogFont(window_); }

void CSkinFrame::SetUp(HWND window, HICON icon, const PageOpener& opener) {
  window_ = window;
  icon_ = icon;
  // The caption in the template names the window (task bar, other programs); the skin
  // draws its own caption band instead of the system's.
  (void)controls::CWindow(window).ChangeStyle(WS_CAPTION | WS_THICKFRAME,
                                              0);  // with the frame left, the skin is only smaller
  if (icon != nullptr) {
    (void)::SendMessageW(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));  // answers the old icon
  }

  (void)tabs_.CreateStrip(window, IDC_MAIN_TABS, POINT{}, kShowPageMessage);
  for (const auto& pictures : kTabPictures) {
    (void)tabs_.AddTab(pictures[0], pictures[1], pictures[2]);
  }
  for (size_t index = 0; index < buttons_.size(); ++index) {
    (void)buttons_[index].Attach(window, kButtonIds[index]);
  }
  // The title and the glyphs of minimise and close: a third larger than the dialog font,
  // bold, so they grow with it.
  LOGFONTW title{};
  if (::GetObjectW(controls::DialogFont(window), sizeof title, &title) != 0) {
    title.lfWeight = FW_BOLD;
    title.lfHeight = ::MulDiv(title.lfHeight, 4, 3);
    titleFont_.Reset(::CreateFontIndirectW(&title));
    glyphFont_.Reset(::CreateFontIndirectW(&title));
  }
  if (glyphFont_) {
    for (int id : {IDC_SKIN_CLOSE, IDC_SKIN_MINIMIZE}) {
      (void)::SendDlgItemMessageW(window, id, WM_SETFONT, reinterpret_cast<WPARAM>(glyphFont_.Get()), FALSE);
    }
  }
  const std::wstring home = MakerHomePage();
  (void)homeLink_.Attach(window, IDC_MAIN_HOME_LINK, home, home, kFooterColour,
                         [opener](const std::wstring& address) { opener(address, SW_SHOWNORMAL); });
}

SIZE CSkinFrame::TitleSize() const {
  SIZE size{};
  const controls::WindowDC dc(window_);
  if (!dc) {
    return size;
  }
  const controls::SelectedObject font(dc.Get(), TitleFont());
  const std::wstring title = WindowText(window_);
  if (::GetTextExtentPoint32W(dc.Get(), title.c_str(), static_cast<int>(title.size()), &size) == FALSE) {
    size = SIZE{};
  }
  return size;
}

void CSkinFrame::LayOut(std::span<const controls::CDialog* const> pages) {
  const auto templateSize = [this](int id) {
    const RECT rect = controls::CWindow(::GetDlgItem(window_, id)).RectInParent();
    return SIZE{controls::Width(rect), controls::Height(rect)};
  };
  FrameParts parts;
  for (const controls::CDialog* page : pages) {
    const SIZE size = controls::TemplateSize(window_, page->TemplateId());
    parts.largestPage.cx = std::max(parts.largestPage.cx, size.cx);
    parts.largestPage.cy = std::max(parts.largestPage.cy, size.cy);
  }
  parts.tabStrip = tabs_.StripSize();
  parts.icon = SIZE{::GetSystemMetrics(SM_CXSMICON), ::GetSystemMetrics(SM_CYSMICON)};
  parts.title = TitleSize();
  parts.update = templateSize(IDC_MAIN_UPDATE);
  parts.help = templateSize(IDC_MAIN_HELP);
  parts.minimise = templateSize(IDC_SKIN_MINIMIZE);
  parts.close = templateSize(IDC_SKIN_CLOSE);
  parts.ad = templateSize(IDC_MAIN_AD);
  parts.homeLink = templateSize(IDC_MAIN_HOME_LINK);
  parts.footerHelp = templateSize(IDC_MAIN_HELP_FOOTER);
  parts.margin = controls::DialogUnits(window_, kMarginUnits.cx, kMarginUnits.cy);
  parts.gap = controls::DialogUnits(window_, kGapUnits.cx, kGapUnits.cy);
  layout_ = ComputeFrameLayout(parts);

  const std::pair<int, const RECT*> places[] = {
      {IDC_MAIN_UPDATE, &layout_.update},
      {IDC_MAIN_HELP, &layout_.help},
      {IDC_SKIN_MINIMIZE, &layout_.minimise},
      {IDC_SKIN_CLOSE, &layout_.close},
      {IDC_MAIN_AD, &layout_.ad},
      {IDC_MAIN_HOME_LINK, &layout_.homeLink},
      {IDC_MAIN_HELP_FOOTER, &layout_.footerHelp},
  };
  for (const auto& [id, rect] : places) {
    (void)controls::CWindow(::GetDlgItem(window_, id))
        .Move(*rect);  // a control that cannot move stays where the template put it
  }
  (void)tabs_.Move(layout_.tabOrigin.x, layout_.tabOrigin.y, parts.tabStrip.cx, parts.tabStrip.cy);
  for (const controls::CDialog* page : pages) {
    if (page->Handle() != nullptr) {
      PlacePage(*page);
    }
  }

  // The window around the client area, centred on the work area.
  RECT window{0, 0, layout_.client.cx, layout_.client.cy};
  (void)::AdjustWindowRectEx(&window, static_cast<DWORD>(::GetWindowLongW(window_, GWL_STYLE)), FALSE,
                             static_cast<DWORD>(::GetWindowLongW(window_, GWL_EXSTYLE)));  // unchanged: no frame
  const int width = controls::Width(window);
  const int height = controls::Height(window);
  RECT work{};
  if (::SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0) == FALSE) {
    work = RECT{0, 0, ::GetSystemMetrics(SM_CXSCREEN), ::GetSystemMetrics(SM_CYSCREEN)};
  }
  (void)controls::CWindow(window_).Move(work.left + (controls::Width(work) - width) / 2,
                                        work.top + (controls::Height(work) - height) / 2, width, height);
}

void CSkinFrame::PlacePage(const controls::CDialog& page) const {
  const SIZE size = controls::TemplateSize(page.Handle(), page.TemplateId());
  (void)page.Move(layout_.pages.left, layout_.pages.top, size.cx, size.cy);  // an unmoved page shows at 0, 0
}

void CSkinFrame::Paint(HDC target) const {
  const RECT client = controls::CWindow(window_).ClientRect();
  controls::CMemDC memory(target, client);
  HDC dc = memory.Get();
  (void)controls::FillSolid(dc, client, controls::kSkinBackground);
  (void)controls::FillGradient(dc, layout_.caption, controls::kSkinCaptionTop, controls::kSkinCaptionBottom);
  (void)controls::FillSolid(dc, layout_.footer, kFooterColour);
  const RECT& pages = layout_.pages;
  const RECT pageFrame{pages.left - 1, pages.top - 1, pages.right + 1, pages.bottom + 1};
  (void)controls::DrawFrame(dc, pageFrame, controls::kSkinBorder);
  (void)controls::DrawFrame(dc, client, controls::kSkinCaptionTop);

  if (icon_ != nullptr) {
    (void)::DrawIconEx(dc, layout_.icon.left, layout_.icon.top, icon_, controls::Width(layout_.icon),
                       controls::Height(layout_.icon), 0, nullptr, DI_NORMAL);
  }
  const std::wstring title = WindowText(window_);
  RECT titleRect{layout_.title.left, layout_.caption.top, layout_.update.left, layout_.caption.bottom};
  const controls::SelectedObject font(dc, TitleFont());
  (void)::SetBkMode(dc, TRANSPARENT);
  (void)::SetTextColor(dc, RGB(255, 255, 255));
  (void)::DrawTextW(dc, title.c_str(), static_cast<int>(title.size()), &titleRect,
                    DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

}  // namespace lumenor
