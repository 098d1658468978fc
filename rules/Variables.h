// The variables a rule's folders may start with or hold: "%LocalAppData%\Google\...".
// Readers check the names; the engine gives them their folders on this machine.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenor::rules {

enum class Variable {
  kAppData,             // %AppData%: the roaming application data
  kLocalAppData,        // %LocalAppData%
  kLocalLowAppData,     // %LocalLowAppData%: %UserProfile%\AppData\LocalLow
  kProgramData,         // %ProgramData%, also written %CommonAppData% and %AllUsersProfile%
  kProgramFiles,        // %ProgramFiles%: both the 64-bit and the x86 folder
  kCommonProgramFiles,  // %CommonProgramFiles%: both as well
  kUserProfile,         // %UserProfile%
  kWinDir,              // %WinDir%, also written %SystemRoot%
  kSystemDrive,         // %SystemDrive%: "C:"
  kPublic,              // %Public%
  kTemp,                // %Temp%, also written %Tmp%
  kUserName,            // %UserName%: a name, not a folder
  kDocuments,           // %Documents%: the known folder
  kPictures,            // %Pictures%
  kMusic,               // %Music%
  kVideo,               // %Video%
  kHomeDrive,           // %HomeDrive%
};

// The variable a name stands for ("LocalAppData", without the percent signs; letter case
// aside); nothing for an unknown name.
std::optional<Variable> VariableFromName(std::wstring_view name);

// The text split at its variables: plain text and variables in turn. Nothing when a
// variable is unknown or a percent sign has no partner; `unknown` then names it
// ("%Package%", or "%" for a lone sign).
struct TextPart {
  std::wstring text;  // the plain text, when `variable` is empty
  std::optional<Variable> variable;
};
std::optional<std::vector<TextPart>> SplitVariables(std::wstring_view text, std::wstring* unknown = nullptr);

}  // namespace lumenor::rules
