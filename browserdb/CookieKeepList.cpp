#include "browserdb/CookieKeepList.h"

#include "base/TextEncoding.h"

namespace lumenor {

namespace {

bool IsBlank(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

template <typename Char>
Char AsciiLower(Char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<Char>(c - 'A' + 'a') : c;
}

}  // namespace

bool CookieKeepList::Add(std::wstring_view domain) {
  while (!domain.empty() && IsBlank(domain.front())) {
    domain.remove_prefix(1);
  }
  while (!domain.empty() && IsBlank(domain.back())) {
    domain.remove_suffix(1);
  }
  if (!domain.empty() && domain.front() == L'.') {
    domain.remove_prefix(1);
  }
  std::wstring normalised(domain);
  for (wchar_t& c : normalised) {
    c = AsciiLower(c);
  }
  const std::string utf8 = ToUtf8(normalised);
  if (utf8.empty()) {
    return false;
  }
  if (lookup_.insert(utf8).second) {
    domains_.push_back(std::move(normalised));
  }
  return true;
}

bool CookieKeepList::Keeps(std::wstring_view host) const { return KeepsUtf8(ToUtf8(host)); }

bool CookieKeepList::KeepsUtf8(std::string_view host) const {
  if (lookup_.empty() || host.empty()) {
    return false;
  }
  std::string lowered(host);
  for (char& c : lowered) {
    c = AsciiLower(c);
  }
  // The host itself, then every part after one of its dots: "a.b.example.org" is looked
  // up as itself, "b.example.org", "example.org" and "org". A leading dot gives the
  // whole host without it, which covers ".d".
  std::string_view rest = lowered;
  for (;;) {
    if (lookup_.contains(rest)) {
      return true;
    }
    const size_t dot = rest.find('.');
    if (dot == std::string_view::npos) {
      return false;
    }
    rest.remove_prefix(dot + 1);
  }
}

}  // namespace lumenor
