// The contents of "setting.ini": option keys, the three saved selections of privacy
// items, and the defaults written when the file is missing.
#pragma once

#include "settings/IniFileRW.h"

#include <span>
#include <string>
#include <vector>

namespace lumenor {

inline constexpr wchar_t kSettingsFileName[] = L"setting.ini";

// The stored options; each one is a plain number (booleans 0 or 1).
struct OptionValues {
  int runAtStartup = 0;  // "General Settings" / "Run at windows startup"
  int autoUpdate = 0;    // "General Settings" / "Automaticly update"
  int exitOnClose = 0;   // "Exit setting" / "exit"
  int trayOnClose = 1;   // "Exit setting" / "tray"
  int scheduleOn = 0;    // "Scan Schduler" / "every"
  int day = 0;           // 0 every day, 1 to 7 Sunday to Saturday
  int hour = 9;          // 0 to 11
  int minute = 38;
  int pm = 0;  // "when": 0 AM, 1 PM
};

// One option of the file, in the order a fresh file lists them.
enum class Option { kRunAtStartup, kAutoUpdate, kExit, kTray, kScheduleOn, kDay, kHour, kMinute, kWhen };
inline constexpr Option kAllOptions[] = {Option::kRunAtStartup, Option::kAutoUpdate, Option::kExit,
                                         Option::kTray,         Option::kScheduleOn, Option::kDay,
                                         Option::kHour,         Option::kMinute,     Option::kWhen};

int& ValueOf(OptionValues& options, Option option);
int ValueOf(const OptionValues& options, Option option);

OptionValues ReadOptionValues(const CIniFileRW& file);
bool WriteOption(const CIniFileRW& file, Option option, int value);
bool WriteOptionValues(const CIniFileRW& file, const OptionValues& options);

// The saved selections of privacy items. Each is a section with a count key (the
// section's name plus "s") and the keys "item0", "item1", ... holding item ids.
enum class Selection { kOneClick, kDefault, kRecent };

// The ids of one list as stored: a missing entry reads as 1, which names no item.
// A negative count reads as an empty list.
std::vector<unsigned> ReadSelection(const CIniFileRW& file, Selection which);
// The list a scan starts from: the recent one, or the default one while no scan
// selection has been saved yet (count -1).
std::vector<unsigned> ReadScanSelection(const CIniFileRW& file);
// Writes the entries, then the count. Keys of a longer, older list stay behind unread.
bool WriteSelection(const CIniFileRW& file, Selection which, std::span<const unsigned> ids);

// A list as a freshly written default file holds it (the recent list reading as the
// default scan list).
std::vector<unsigned> BuiltInSelection(Selection which);

// The cookie keep-list: section "CookiesToKeep", its count in key "CookiesToKeep", the
// domains in "domain0", "domain1", ... Read as stored, without the entries that are
// missing or empty; a missing section or count reads as an empty list.
std::vector<std::wstring> ReadCookiesToKeep(const CIniFileRW& file);
// Writes the domains, then the count, then removes the entries a longer list left behind
// (a domain taken off the list leaves no trace of it in the file).
bool WriteCookiesToKeep(const CIniFileRW& file, std::span<const std::wstring> domains);

// Writes the complete built-in default file; false if any key could not be written.
bool WriteDefaultSettings(const CIniFileRW& file);

}  // namespace lumenor
