// What the "Cookies to Keep" dialog edits, without the dialog: the domains whose cookies
// stay, and the hosts the last scan found cookies of that would still go. Keeping a
// domain takes the hosts it covers off the offer ("example.org" covers "www.example.org");
// letting one go offers its hosts again.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor {

// A domain as it is kept: blanks trimmed, a pasted address cut to its host
// ("https://www.example.org:8443/a" is "www.example.org"), lower case, without a leading
// dot. Nothing when no host is left, or it holds a character no host name has.
std::optional<std::wstring> DomainToKeep(std::wstring_view typed);

class CookieKeepChoice {
 public:
  // `kept` as the settings file holds it, `found` as the last scan found them (either may
  // be empty); entries that are no domain are dropped.
  CookieKeepChoice(const std::vector<std::wstring>& kept, const std::vector<std::wstring>& found);

  // The domains kept, in the order they were added.
  const std::vector<std::wstring>& Kept() const { return kept_; }
  // The hosts found whose cookies would still go, in the order found.
  std::vector<std::wstring> Offered() const;

  // Keeps a domain typed or picked; false, and nothing changed, for one DomainToKeep
  // refuses. A domain already kept is kept once.
  bool Keep(std::wstring_view domain);
  void LetGo(std::wstring_view domain);

 private:
  std::vector<std::wstring> kept_;
  std::vector<std::wstring> found_;
};

}  // namespace lumenor
