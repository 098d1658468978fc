#include "cli/RulesCommand.h"

#include "cli/JsonText.h"
#include "settings/Settings.h"
#include "update/CommunityRules.h"

namespace lumenor {

std::optional<RulesUpdateOptions> ParseRulesUpdateOptions(const std::vector<std::wstring>& arguments,
                                                          std::wstring& problem) {
  RulesUpdateOptions options;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::wstring& argument = arguments[i];
    if (argument == L"--json") {
      options.json = true;
    } else if (argument == L"--url") {
      if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
        problem = L"--url needs an address";
        return std::nullopt;
      }
      options.url = arguments[++i];
    } else {
      problem = L"unexpected argument: " + argument;
      return std::nullopt;
    }
  }
  return options;
}

int RunRulesUpdate(const RulesUpdateOptions& options, const ConsoleOutput& out) {
  // Read, never written: the settings page is where the address is changed.
  const std::wstring address = options.url.empty() ? CommunityRulesAddress(CIniFileRW(kSettingsFileName)) : options.url;
  const CommunityRulesUpdate update = UpdateCommunityRules(address, CommunityRulesFile());
  std::wstring line;
  if (options.json) {
    line = update.replaced
               ? L"{\"type\":\"rules-update\",\"result\":\"replaced\",\"entries\":" + std::to_wstring(update.entries) +
                     L",\"version\":" + JsonString(update.version) + L",\"problems\":" +
                     std::to_wstring(update.problems) + L"}"
               : L"{\"type\":\"rules-update\",\"result\":\"kept\",\"reason\":" + JsonString(update.reason) + L"}";
  } else if (update.replaced) {
    line = L"winapp2.ini replaced: " + std::to_wstring(update.entries) + L" entries" +
           (update.version.empty() ? L"" : L", version " + update.version);
    if (update.problems > 0) {
      line += L"; " + std::to_wstring(update.problems) + (update.problems == 1 ? L" fault" : L" faults") + L" left out";
    }
  } else {
    line = L"winapp2.ini kept: " + update.reason;
  }
  return (out.WriteLine(line) && update.replaced) ? 0 : 1;
}

}  // namespace lumenor
