// The maker's web sites: the only place their addresses are written. For tests the
// environment variable LUMENOR_MAKER_SITE (for instance "http://127.0.0.1:8080") stands
// for both sites.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lumenor {

inline constexpr wchar_t kMakerSiteVariable[] = L"LUMENOR_MAKER_SITE";

// The home page, "http://..." without a final slash; paths are appended to it.
std::wstring MakerHomePage();
std::wstring MakerPage(std::wstring_view path);    // on the home site, e.g. "/faq.php"
std::wstring MakerAdPage(std::wstring_view path);  // on the second site, "/go.asp?id=201"

// Opens a web page or a document the way the shell does ("open"); windows take it as a
// parameter so tests can watch what would be opened.
using PageOpener = std::function<void(const std::wstring& target, int showCommand)>;
void OpenWithShell(const std::wstring& target, int showCommand);

}  // namespace lumenor
