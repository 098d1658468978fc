// The domains whose cookies an erase keeps. A cookie stays when its host is a listed
// domain `d`, is ".d", or ends with ".d": "example.org" keeps "example.org",
// ".example.org" and "www.example.org", never "badexample.org". Letters compare without
// regard to case (ASCII; hosts are stored in their ASCII form).
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace lumenor {

class CookieKeepList {
 public:
  // Adds `domain` trimmed of blanks, in lower case, without a leading dot. False, and
  // nothing added, for a domain that is empty then; a domain already listed is kept once.
  bool Add(std::wstring_view domain);

  // The domains in the order they were first added, as normalised.
  const std::vector<std::wstring>& Domains() const { return domains_; }
  bool Empty() const { return domains_.empty(); }

  bool Keeps(std::wstring_view host) const;
  // The same for a host in UTF-8, as SQLite hands it over.
  bool KeepsUtf8(std::string_view host) const;

 private:
  struct TextHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
  };

  std::vector<std::wstring> domains_;
  // The same domains in UTF-8, for looking up hosts without converting each one.
  std::unordered_set<std::string, TextHash, std::equal_to<>> lookup_;
};

}  // namespace lumenor
