#include "settings/Settings.h"

#include "catalogue/ItemIds.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace lumenor {

namespace {

constexpr wchar_t kGeneral[] = L"General Settings";
constexpr wchar_t kRunAtStartup[] = L"Run at windows startup";
constexpr wchar_t kAutoUpdate[] = L"Automaticly update";
constexpr wchar_t kExitSetting[] = L"Exit setting";
constexpr wchar_t kExit[] = L"exit";
constexpr wchar_t kTray[] = L"tray";
constexpr wchar_t kScheduler[] = L"Scan Schduler";
constexpr wchar_t kEvery[] = L"every";
constexpr wchar_t kDay[] = L"day";
constexpr wchar_t kHour[] = L"hour";
constexpr wchar_t kMinute[] = L"minute";
constexpr wchar_t kWhen[] = L"when";
constexpr wchar_t kCookiesToKeep[] = L"CookiesToKeep";

// A damaged count must not keep the program reading keys for hours; no real list comes
// near this size.
constexpr int kMaxSelectionEntries = 1024;

constexpr int kNoRecentSelection = -1;

constexpr unsigned kOneClickDefaults[] = {kItemDocumentHistory, kItemSearchHistory,         kItemTemporaryFiles,
                                          kItemRecycleBins,     kItemStartMenuClickHistory, kItemStartMenuOrderHistory,
                                          kItemRunHistory,      kItemIeTemporaryFiles,      kItemVisitedSites,
                                          kItemIeCookies};
// The default scan list declares 12 entries but holds 10 keys: "item9" is written three
// times and ends as the address bar history, and the last two entries read as the
// missing-key value 1. Files in the field look like this, so it stays.
constexpr unsigned kDefaultScanWrites[] = {kItemDocumentHistory, kItemSearchHistory,         kItemTemporaryFiles,
                                           kItemRecycleBins,     kItemStartMenuClickHistory, kItemStartMenuOrderHistory,
                                           kItemRunHistory,      kItemIeTemporaryFiles,      kItemVisitedSites,
                                           kItemIeFormData,      kItemIePasswords,           kItemIeAddressBarHistory};
constexpr int kLastDefaultScanKey = 9;

struct OptionKey {
  const wchar_t* section;
  const wchar_t* name;
};

OptionKey KeyOf(Option option) {
  switch (option) {
    case Option::kRunAtStartup:
      return {kGeneral, kRunAtStartup};
    case Option::kAutoUpdate:
      return {kGeneral, kAutoUpdate};
    case Option::kExit:
      return {kExitSetting, kExit};
    case Option::kTray:
      return {kExitSetting, kTray};
    case Option::kScheduleOn:
      return {kScheduler, kEvery};
    case Option::kDay:
      return {kScheduler, kDay};
    case Option::kHour:
      return {kScheduler, kHour};
    case Option::kMinute:
      return {kScheduler, kMinute};
    case Option::kWhen:
      break;
  }
  return {kScheduler, kWhen};
}

struct ListKeys {
  const wchar_t* section;
  const wchar_t* countKey;
};

ListKeys KeysOf(Selection which) {
  switch (which) {
    case Selection::kOneClick:
      return {L"OneClickItem", L"OneClickItems"};
    case Selection::kDefault:
      return {L"DefaultItem", L"DefaultItems"};
    case Selection::kRecent:
      break;
  }
  return {L"RecentItem", L"RecentItems"};
}

std::wstring EntryKey(int index) { return L"item" + std::to_wstring(index); }

std::vector<unsigned> ReadEntries(const CIniFileRW& file, const wchar_t* section, int count) {
  std::vector<unsigned> ids;
  if (count <= 0) return ids;
  const CIniFileRW::Section entries = file.ReadSection(section);
  for (int i = 0; i < count && i < kMaxSelectionEntries; ++i) {
    ids.push_back(static_cast<unsigned>(entries.ReadInt(EntryKey(i))));
  }
  return ids;
}

std::wstring DomainKey(int index) { return L"domain" + std::to_wstring(index); }

// A count as the file holds it: decimal digits, nothing else. Anything other, a missing
// key included, counts no entries.
int ParseCount(const std::wstring& text) {
  if (text.empty()) {
    return 0;
  }
  int count = 0;
  for (const wchar_t c : text) {
    if (c < L'0' || c > L'9') {
      return 0;
    }
    count = std::min(count * 10 + (c - L'0'), kMaxSelectionEntries);
  }
  return count;
}

}  // namespace

int& ValueOf(OptionValues& options, Option option) {
  switch (option) {
    case Option::kRunAtStartup:
      return options.runAtStartup;
    case Option::kAutoUpdate:
      return options.autoUpdate;
    case Option::kExit:
      return options.exitOnClose;
    case Option::kTray:
      return options.trayOnClose;
    case Option::kScheduleOn:
      return options.scheduleOn;
    case Option::kDay:
      return options.day;
    case Option::kHour:
      return options.hour;
    case Option::kMinute:
      return options.minute;
    case Option::kWhen:
      break;
  }
  return options.pm;
}

int ValueOf(const OptionValues& options, Option option) {
  OptionValues copy = options;
  return ValueOf(copy, option);
}

OptionValues ReadOptionValues(const CIniFileRW& file) {
  OptionValues options;
  for (const Option option : kAllOptions) {
    const OptionKey key = KeyOf(option);
    ValueOf(options, option) = file.ReadInt(key.section, key.name);
  }
  return options;
}

bool WriteOption(const CIniFileRW& file, Option option, int value) {
  const OptionKey key = KeyOf(option);
  return file.WriteInt(key.section, key.name, value);
}

bool WriteOptionValues(const CIniFileRW& file, const OptionValues& options) {
  bool written = true;
  for (const Option option : kAllOptions) {
    written &= WriteOption(file, option, ValueOf(options, option));
  }
  return written;
}

std::vector<unsigned> ReadSelection(const CIniFileRW& file, Selection which) {
  const ListKeys keys = KeysOf(which);
  return ReadEntries(file, keys.section, file.ReadInt(keys.section, keys.countKey));
}

std::vector<unsigned> ReadScanSelection(const CIniFileRW& file) {
  const ListKeys recent = KeysOf(Selection::kRecent);
  const int count = file.ReadInt(recent.section, recent.countKey);
  if (count == kNoRecentSelection) {
    return ReadSelection(file, Selection::kDefault);
  }
  return ReadEntries(file, recent.section, count);
}

bool WriteSelection(const CIniFileRW& file, Selection which, std::span<const unsigned> ids) {
  const ListKeys keys = KeysOf(which);
  bool written = true;
  int count = 0;
  for (const unsigned id : ids) {
    written &= file.WriteInt(keys.section, EntryKey(count), static_cast<int>(id));
    ++count;
  }
  written &= file.WriteInt(keys.section, keys.countKey, count);
  return written;
}

std::vector<unsigned> BuiltInSelection(Selection which) {
  if (which == Selection::kOneClick) {
    return {std::begin(kOneClickDefaults), std::end(kOneClickDefaults)};
  }
  std::vector<unsigned> ids(std::begin(kDefaultScanWrites), std::begin(kDefaultScanWrites) + kLastDefaultScanKey);
  ids.push_back(kDefaultScanWrites[std::size(kDefaultScanWrites) - 1]);
  ids.resize(std::size(kDefaultScanWrites), 1);
  return ids;
}

std::vector<std::wstring> ReadCookiesToKeep(const CIniFileRW& file) {
  std::wstring text;
  (void)file.ReadString(kCookiesToKeep, kCookiesToKeep, text);  // a missing count leaves the text empty
  const int count = ParseCount(text);
  std::vector<std::wstring> domains;
  for (int i = 0; i < count; ++i) {
    if (file.ReadString(kCookiesToKeep, DomainKey(i), text)) {
      domains.push_back(std::move(text));
    }
  }
  return domains;
}

bool WriteCookiesToKeep(const CIniFileRW& file, std::span<const std::wstring> domains) {
  if (domains.size() > static_cast<size_t>(kMaxSelectionEntries)) {
    return false;
  }
  bool written = true;
  int count = 0;
  for (const std::wstring& domain : domains) {
    written &= file.WriteString(kCookiesToKeep, DomainKey(count), domain);
    ++count;
  }
  written &= file.WriteInt(kCookiesToKeep, kCookiesToKeep, count);
  std::wstring stale;
  for (int i = count; i < kMaxSelectionEntries && file.ReadString(kCookiesToKeep, DomainKey(i), stale); ++i) {
    written &= file.DeleteKey(kCookiesToKeep, DomainKey(i));
  }
  return written;
}

bool WriteDefaultSettings(const CIniFileRW& file) {
  // Keys are written in the order a fresh file lists them.
  bool written = WriteOptionValues(file, OptionValues{});

  const ListKeys oneClick = KeysOf(Selection::kOneClick);
  written &= file.WriteInt(oneClick.section, oneClick.countKey, static_cast<int>(std::size(kOneClickDefaults)));
  for (int i = 0; i < static_cast<int>(std::size(kOneClickDefaults)); ++i) {
    written &= file.WriteInt(oneClick.section, EntryKey(i), static_cast<int>(kOneClickDefaults[i]));
  }

  const ListKeys defaults = KeysOf(Selection::kDefault);
  written &= file.WriteInt(defaults.section, defaults.countKey, static_cast<int>(std::size(kDefaultScanWrites)));
  for (int i = 0; i < static_cast<int>(std::size(kDefaultScanWrites)); ++i) {
    written &= file.WriteInt(defaults.section, EntryKey(std::min(i, kLastDefaultScanKey)),
                             static_cast<int>(kDefaultScanWrites[i]));
  }

  const ListKeys recent = KeysOf(Selection::kRecent);
  written &= file.WriteInt(recent.section, recent.countKey, kNoRecentSelection);
  return written;
}

}  // namespace lumenor
