#include "rules/RuleModel.h"

#include <array>
#include <utility>

namespace lumenor::rules {

namespace {

wchar_t LowerAscii(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

bool SameAsciiText(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
  }
  return true;
}

}  // namespace

std::optional<Hive> HiveFromName(std::wstring_view name) {
  static constexpr std::array<std::pair<std::wstring_view, Hive>, 10> kHives = {{
      {L"HKCU", Hive::kCurrentUser},
      {L"HKEY_CURRENT_USER", Hive::kCurrentUser},
      {L"HKLM", Hive::kLocalMachine},
      {L"HKEY_LOCAL_MACHINE", Hive::kLocalMachine},
      {L"HKU", Hive::kUsers},
      {L"HKEY_USERS", Hive::kUsers},
      {L"HKCR", Hive::kClassesRoot},
      {L"HKEY_CLASSES_ROOT", Hive::kClassesRoot},
      {L"HKCC", Hive::kCurrentConfig},
      {L"HKEY_CURRENT_CONFIG", Hive::kCurrentConfig},
  }};
  for (const auto& [known, hive] : kHives) {
    if (SameAsciiText(name, known)) return hive;
  }
  return std::nullopt;
}

const std::vector<NamedActionKind>& KnownNamedActions() {
  // Each edits a file in place; none deletes the file it works on.
  static const std::vector<NamedActionKind> kKnown = {
      {L"firefox-history", {}},                // the visits of places.sqlite; bookmarks and their places stay
      {L"firefox-cookies", {}},                // the rows of cookies.sqlite, but those the keep-list keeps
      {L"chromium-cookies", {}},               // the rows of a Chromium cookie database, likewise
      {L"chromium-form-data", {}},             // the rows of "autocomplete" in "Web Data"
      {L"ini-values", {L"section", L"keys"}},  // keys of one section of an ini file
  };
  return kKnown;
}

const NamedActionKind* FindNamedAction(std::wstring_view name) {
  for (const NamedActionKind& kind : KnownNamedActions()) {
    if (SameAsciiText(kind.name, name)) return &kind;
  }
  return nullptr;
}

unsigned DerivedItemId(std::wstring_view application, std::wstring_view item) {
  // FNV-1a over the UTF-16 units of both names, ASCII letters folded, so the number is
  // the same on every machine and every start.
  uint32_t hash = 2166136261u;
  const auto add = [&hash](uint32_t unit) {
    hash ^= unit & 0xFFu;
    hash *= 16777619u;
    hash ^= (unit >> 8) & 0xFFu;
    hash *= 16777619u;
  };
  for (const wchar_t c : application) add(static_cast<uint32_t>(LowerAscii(c)) & 0xFFFFu);
  add(0x0001u);
  for (const wchar_t c : item) add(static_cast<uint32_t>(LowerAscii(c)) & 0xFFFFu);
  // Below 2^31, so that the settings file's signed numbers hold it.
  constexpr uint32_t kSpan = 0x7FFFFFFFu - kFirstDerivedId;
  return kFirstDerivedId + hash % kSpan;
}

}  // namespace lumenor::rules
