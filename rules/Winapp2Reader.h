// Reads the community's winapp2.ini into the rule model: each entry becomes one item of the
// application its LangSecRef or Section names, all under the category "Community Rules".
// The file is untrusted data: a fault never stops the reader; it becomes a problem with its
// line, the key or entry at fault is left out, and the rest is read.
#pragma once

#include "rules/RuleModel.h"

#include <string>
#include <string_view>

namespace lumenor::rules {

inline constexpr wchar_t kCommunityCategory[] = L"Community Rules";
inline constexpr wchar_t kWinapp2FileName[] = L"winapp2.ini";

// How much of a file was read, for "rules check" and the update's report. A key is
// refused for a fault of its own; a key of an entry left out whole is read, not refused.
struct Winapp2Counts {
  struct Keys {
    int read = 0;
    int refused = 0;
  };
  std::wstring version;  // the header's "; Version: 260730" (the day it was published); empty when absent
  int entriesRead = 0;   // every section, well formed or not
  int entriesLoaded = 0;
  Keys fileKeys;
  Keys regKeys;
  Keys excludeKeys;
  Keys detects;      // Detect and DetectN
  Keys detectFiles;  // DetectFile and DetectFileN
  int warnings = 0;
};

struct Winapp2File {
  RuleSet rules;  // origin kCommunity
  Winapp2Counts counts;
};

// `bytes` is the file as stored: UTF-8 with or without a byte order mark, CRLF or LF line
// ends. A line that is not valid UTF-8 is a problem (a comment aside) and is read as a
// fault: its key refused, or its section taken as malformed. `fileName` goes into every
// SourcePosition.
Winapp2File ReadWinapp2(std::string_view bytes, std::wstring_view fileName);

// The group an entry's "LangSecRef=<number>" puts it in: "Internet Explorer" for 3001,
// "Edge" for 3005 and 3006, ...; "Applications" for any number without a name of its own.
std::wstring Winapp2GroupName(int langSecRef);

}  // namespace lumenor::rules
