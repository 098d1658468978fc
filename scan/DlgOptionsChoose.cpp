#include "scan/DlgOptionsChoose.h"

#include "catalogue/Catalogue.h"
#include "controls/Layout.h"
#include "res/resource.h"
#include "scan/ItemWarnings.h"

namespace lumenor {

namespace {

// The tree fills the dialog above its buttons, this many dialog units in from the edges.
constexpr int kMarginUnits = 7;

}  // namespace

CDlgOptionsChoose::CDlgOptionsChoose(const CIniFileRW& settings) : CDialog(IDD_ONE_CLICK_ITEMS), settings_(settings) {}

bool CDlgOptionsChoose::OnInit() {
  const RECT client = ClientRect();
  const SIZE margin = controls::DialogUnits(window_, kMarginUnits, kMarginUnits);
  const RECT save = controls::CWindow(Item(IDOK)).RectInParent();
  const RECT area{client.left + margin.cx, client.top + margin.cy, client.right - margin.cx, save.top - margin.cy};
  (void)tree_.CreateTree(window_, IDC_ONE_CLICK_TREE, area, reinterpret_cast<HFONT>(Send(WM_GETFONT)));

  selection_ = ItemSelection::FromCatalogue(CatalogueRoot(), true);
  std::vector<const CMyObject*> nodes;
  for (const ItemSelection::Row& row : selection_.Rows()) {
    nodes.push_back(FindNodeById(CatalogueRoot(), row.id));
  }
  tree_.Fill(selection_, std::move(nodes));
  tree_.confirmTicks = [this, rules = ProcessCatalogue().Rules()](const std::vector<unsigned>& ticked) {
    return ConfirmWarnings(window_, ask_, rules, ticked);
  };
  selection_.LoadOneClickSelection(settings_);
  tree_.RefreshChecks();
  return true;
}

bool CDlgOptionsChoose::OnCommand(int id, int code, HWND control) {
  switch (id) {
    case IDOK:
      // A choice that could not be written leaves the old one; the dialog closes anyway.
      (void)selection_.SaveOneClickSelection(settings_);
      return End(IDOK);
    case IDC_ONE_CLICK_SELECT_NONE:
      selection_.UntickAll();
      tree_.RefreshChecks();
      return true;
    default:
      return CDialog::OnCommand(id, code, control);
  }
}

bool ChooseOneClickItems(HWND owner, const CIniFileRW& settings) {
  CDlgOptionsChoose dialog(settings);
  return dialog.DoModal(owner) == IDOK;
}

}  // namespace lumenor
