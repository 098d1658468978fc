#include "shred/DlgShred.h"

#include "base/ResourceString.h"
#include "base/UniqueHandle.h"
#include "controls/Paint.h"
#include "res/artwork_ids.h"
#include "res/resource.h"

namespace lumenor {

CDlgShred::CDlgShred() : CDialog(IDD_SHRED) {}

bool CDlgShred::OnInit() {
  if (list_.Attach(window_, IDC_SHRED_LIST)) {
    (void)list_.AddColumn(LoadResourceString(IDS_SHRED_COLUMN_NAME), 120);
    (void)list_.AddColumn(LoadResourceString(IDS_SHRED_COLUMN_PATH), 180);
    (void)list_.AddColumn(LoadResourceString(IDS_SHRED_COLUMN_SIZE), 160);
  }
  const int methodIds[3] = {IDC_SHRED_QUICK, IDC_SHRED_SAFE, IDC_SHRED_THOROUGH};
  for (size_t index = 0; index < methods_.size(); ++index) {
    (void)methods_[index].Attach(window_, methodIds[index], 0, 0, controls::kPageBackground);
  }
  methods_[0].SetChecked(true);
  if (shred_.Attach(window_, IDC_SHRED_SHRED)) {
    shred_.SetPictures(IDB_SHRED_NORMAL, IDB_SHRED_HOT, IDB_SHRED_PRESSED, IDB_SHRED_DISABLED);
    (void)shred_.FitToPicture(controls::Corner::kBottomRight);  // else the picture is stretched to the template's size
  }
  return true;
}

bool CDlgShred::AddPath(const std::wstring& fullPath) {
  const size_t slash = fullPath.rfind(L'\\');
  const std::wstring name = slash == std::wstring::npos ? fullPath : fullPath.substr(slash + 1);
  return AddFile(fullPath, name);
}

bool CDlgShred::AddFile(const std::wstring& fullPath, const std::wstring& name) {
  // Deliberately the first occurrence of the name: a name that also stands earlier in the
  // path cuts the folder there.
  const size_t at = name.empty() ? std::wstring::npos : fullPath.find(name);
  const std::wstring folder = at == std::wstring::npos ? fullPath : fullPath.substr(0, at);
  for (int row = 0; row < list_.RowCount(); ++row) {
    if (list_.RowText(row, 0) == name && list_.RowText(row, 1) == folder) {
      return false;
    }
  }
  // Opened as a shred pass opens it: what cannot be overwritten is not listed.
  UniqueHandle file(::CreateFileW(fullPath.c_str(), GENERIC_WRITE, FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) {
    return false;
  }
  const DWORD size = ::GetFileSize(file.Get(), nullptr);
  return list_.AppendRow({name, folder, std::to_wstring(static_cast<int>(size))}, 0) >= 0;
}

bool CDlgShred::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
  if (controls::ColourWhitePage(message, wParam, result)) {
    return true;
  }
  return CDialog::OnMessage(message, wParam, lParam, result);
}

}  // namespace lumenor
