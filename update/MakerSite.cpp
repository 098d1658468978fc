#include "update/MakerSite.h"

#include <windows.h>

#include <shellapi.h>

namespace lumenor {

namespace {

constexpr wchar_t kHomeSite[] = L"http://www.lumenor.example";
constexpr wchar_t kSecondSite[] = L"http://go.lumenor.example";

std::wstring SiteOverride() {
  wchar_t buffer[512] = {};
  const DWORD length = ::GetEnvironmentVariableW(kMakerSiteVariable, buffer, static_cast<DWORD>(std::size(buffer)));
  if (length == 0 || length >= std::size(buffer)) {
    return {};
  }
  std::wstring site(buffer, length);
  while (!site.empty() && site.back() == L'/') {
    site.pop_back();
  }
  return site;
}

}  // namespace

std::wstring MakerHomePage() {
  std::wstring site = SiteOverride();
  return site.empty() ? kHomeSite : site;
}

std::wstring MakerPage(std::wstring_view path) { return MakerHomePage() + std::wstring(path); }

std::wstring MakerAdPage(std::wstring_view path) {
  std::wstring site = SiteOverride();
  return (site.empty() ? std::wstring(kSecondSite) : site) + std::wstring(path);
}

void OpenWithShell(const std::wstring& target, int showCommand) {
  // A page or manual that fails to open is not reported; the shell's answer is dropped.
  (void)::ShellExecuteW(nullptr, L"open", target.c_str(), nullptr, nullptr, showCommand);
}

}  // namespace lumenor
