// Brings the community's winapp2.ini up to date from its project. The new file is written
// beside the old one under another name and put in its place in one step only when it
// arrived whole and reads as rules, so no reader ever sees half a file; otherwise the old
// one stays and the result says why in plain words. No window: lumenor-cli runs it
// directly, a page on a worker thread with a stop token.
#pragma once

#include "base/StopToken.h"
#include "settings/IniFileRW.h"

#include <string>

namespace lumenor {

// In setting.ini: [CommunityRules] Address=<http or https address of winapp2.ini>.
inline constexpr wchar_t kCommunityRulesSection[] = L"CommunityRules";
inline constexpr wchar_t kCommunityRulesAddressKey[] = L"Address";
inline constexpr wchar_t kCommunityRulesDefaultAddress[] =
    L"https://raw.githubusercontent.com/MoscaDotTo/Winapp2/master/Non-CCleaner/Winapp2.ini";

// The address the settings name, or the project's own when they name none.
std::wstring CommunityRulesAddress(const CIniFileRW& settings);

// winapp2.ini beside the running program; empty when the program's folder is unknown.
std::wstring CommunityRulesFile();

struct CommunityRulesUpdate {
  bool replaced = false;
  std::wstring reason;   // when the old file stayed: why ("the server answered with HTTP status 404")
  int entries = 0;       // the entries the new file loads
  int problems = 0;      // the faults the reader reported in it
  std::wstring version;  // its "; Version:" line, the day it was published ("260730"); may be empty
};

// Downloads `address` (http:// or https://) and puts it in place of `target` (a full path).
// The download goes to `target` + ".download" first, which is removed when it is not used.
CommunityRulesUpdate UpdateCommunityRules(const std::wstring& address, const std::wstring& target,
                                          const StopToken& stop = {});

}  // namespace lumenor
