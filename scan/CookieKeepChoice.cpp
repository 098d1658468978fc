#include "scan/CookieKeepChoice.h"

#include "browserdb/CookieKeepList.h"

#include <algorithm>

namespace lumenor {

namespace {

bool IsHostCharacter(wchar_t c) {
  return (c >= L'a' && c <= L'z') || (c >= L'0' && c <= L'9') || c == L'-' || c == L'.' || c == L'_';
}

}  // namespace

std::optional<std::wstring> DomainToKeep(std::wstring_view typed) {
  if (const size_t scheme = typed.find(L"://"); scheme != std::wstring_view::npos) typed.remove_prefix(scheme + 3);
  typed = typed.substr(0, typed.find_first_of(L"/?#"));
  if (const size_t user = typed.rfind(L'@'); user != std::wstring_view::npos) typed.remove_prefix(user + 1);
  typed = typed.substr(0, typed.find(L':'));
  // The keep-list's own form: trimmed, lower case, no leading dot.
  CookieKeepList list;
  if (!list.Add(typed)) return std::nullopt;
  std::wstring domain = list.Domains().front();
  while (!domain.empty() && domain.back() == L'.') domain.pop_back();
  if (domain.empty() || !std::all_of(domain.begin(), domain.end(), IsHostCharacter) ||
      domain.find(L"..") != std::wstring::npos) {
    return std::nullopt;
  }
  return domain;
}

CookieKeepChoice::CookieKeepChoice(const std::vector<std::wstring>& kept, const std::vector<std::wstring>& found) {
  for (const std::wstring& domain : kept) (void)Keep(domain);  // one that is no domain is dropped
  for (const std::wstring& host : found) {
    const std::optional<std::wstring> name = DomainToKeep(host);
    if (name && std::find(found_.begin(), found_.end(), *name) == found_.end()) found_.push_back(*name);
  }
}

std::vector<std::wstring> CookieKeepChoice::Offered() const {
  CookieKeepList list;
  for (const std::wstring& domain : kept_) (void)list.Add(domain);
  std::vector<std::wstring> offered;
  for (const std::wstring& host : found_) {
    if (!list.Keeps(host)) offered.push_back(host);
  }
  return offered;
}

bool CookieKeepChoice::Keep(std::wstring_view domain) {
  const std::optional<std::wstring> name = DomainToKeep(domain);
  if (!name) return false;
  if (std::find(kept_.begin(), kept_.end(), *name) == kept_.end()) kept_.push_back(*name);
  return true;
}

void CookieKeepChoice::LetGo(std::wstring_view domain) {
  std::erase_if(kept_, [&](const std::wstring& kept) { return kept == domain; });
}

}  // namespace lumenor
