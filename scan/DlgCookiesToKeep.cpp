#include "scan/DlgCookiesToKeep.h"

#include "res/resource.h"
#include "settings/Settings.h"

#include <windowsx.h>

#include <algorithm>

namespace lumenor {

namespace {

// Fills a list box with `texts`, in their order.
void FillList(HWND list, const std::vector<std::wstring>& texts) {
  (void)SendMessageW(list, WM_SETREDRAW, FALSE, 0);  // answers nothing useful
  (void)ListBox_ResetContent(list);
  for (const std::wstring& text : texts) (void)ListBox_AddString(list, text.c_str());  // a full list shows less
  (void)SendMessageW(list, WM_SETREDRAW, TRUE, 0);
  (void)InvalidateRect(list, nullptr, TRUE);  // a list that exists takes it
}

}  // namespace

CDlgCookiesToKeep::CDlgCookiesToKeep(const CIniFileRW& settings, std::vector<std::wstring> foundHosts)
    : CDialog(IDD_COOKIES_TO_KEEP), settings_(settings), foundHosts_(std::move(foundHosts)) {}

bool CDlgCookiesToKeep::OnInit() {
  choice_.emplace(ReadCookiesToKeep(settings_), foundHosts_);
  ShowLists();
  return true;
}

void CDlgCookiesToKeep::ShowLists() const {
  FillList(Item(IDC_KEEP_FOUND), choice_->Offered());
  FillList(Item(IDC_KEEP_LIST), choice_->Kept());
}

std::vector<std::wstring> CDlgCookiesToKeep::Selected(int list) const {
  const HWND box = Item(list);
  std::vector<std::wstring> texts;
  const int count = ListBox_GetCount(box);
  for (int index = 0; index < count; ++index) {
    if (ListBox_GetSel(box, index) <= 0) continue;
    std::wstring text(static_cast<size_t>(std::max(ListBox_GetTextLen(box, index), 0)) + 1, L'\0');
    const int length = ListBox_GetText(box, index, text.data());
    if (length > 0) texts.emplace_back(text.data(), static_cast<size_t>(length));
  }
  return texts;
}

void CDlgCookiesToKeep::KeepTyped() {
  const controls::CWindow edit(Item(IDC_KEEP_DOMAIN));
  if (!choice_->Keep(edit.Text())) {
    (void)MessageBeep(MB_ICONWARNING);  // no host in it: the text stays to be mended
    (void)SetFocus(edit.Handle());
    return;
  }
  (void)edit.SetText(L"");
  ShowLists();
}

bool CDlgCookiesToKeep::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDC_KEEP_ADD_FOUND:
      for (const std::wstring& host : Selected(IDC_KEEP_FOUND)) (void)choice_->Keep(host);
      ShowLists();
      return true;
    case IDC_KEEP_REMOVE:
      for (const std::wstring& domain : Selected(IDC_KEEP_LIST)) choice_->LetGo(domain);
      ShowLists();
      return true;
    case IDC_KEEP_ADD_TYPED:
      KeepTyped();
      return true;
    case IDC_KEEP_FOUND:
    case IDC_KEEP_LIST:
      if (code == LBN_DBLCLK) return OnCommand(id == IDC_KEEP_FOUND ? IDC_KEEP_ADD_FOUND : IDC_KEEP_REMOVE, 0, nullptr);
      return false;
    case IDOK:
      // Enter in the domain's box adds the domain; the list is written by OK itself.
      if (GetFocus() == Item(IDC_KEEP_DOMAIN) && !controls::CWindow(Item(IDC_KEEP_DOMAIN)).Text().empty()) {
        KeepTyped();
        return true;
      }
      // A list that could not be written leaves the old one; the dialog closes anyway.
      (void)WriteCookiesToKeep(settings_, choice_->Kept());
      return End(IDOK);
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

bool ChooseCookiesToKeep(HWND owner, const CIniFileRW& settings, std::vector<std::wstring> foundHosts) {
  CDlgCookiesToKeep dialog(settings, std::move(foundHosts));
  return dialog.DoModal(owner) == IDOK;
}

}  // namespace lumenor
