#include "catalogue/LocationRecord.h"

namespace lumenor {

std::wstring_view RootPrefixOf(HKEY rootKey) {
  if (rootKey == HKEY_CLASSES_ROOT) return L"HKEY_CLASSES_ROOT\\";
  if (rootKey == HKEY_CURRENT_USER) return L"HKEY_CURRENT_USER\\";
  if (rootKey == HKEY_LOCAL_MACHINE) return L"HKEY_LOCAL_MACHINE\\";
  if (rootKey == HKEY_USERS) return L"HKEY_USERS\\";
  if (rootKey == HKEY_CURRENT_CONFIG) return L"HKEY_CURRENT_CONFIG\\";
  return {};
}

}  // namespace lumenor
