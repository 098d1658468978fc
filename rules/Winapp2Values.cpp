#include "rules/Winapp2Values.h"

#include "rules/Variables.h"

#include <array>

namespace lumenor::rules::winapp2 {

namespace {

wchar_t UpperAscii(wchar_t c) { return c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - L'a' + L'A') : c; }

std::wstring Quoted(std::wstring_view text) { return L"\"" + std::wstring(text) + L"\""; }

// The parts of a value between its '|' signs.
std::vector<std::wstring_view> SplitAt(std::wstring_view text, wchar_t separator) {
  std::vector<std::wstring_view> parts;
  for (;;) {
    const size_t at = text.find(separator);
    parts.push_back(text.substr(0, at));
    if (at == std::wstring_view::npos) return parts;
    text.remove_prefix(at + 1);
  }
}

int Wildcards(std::wstring_view name) {
  int count = 0;
  for (const wchar_t c : name) count += (c == L'*' || c == L'?') ? 1 : 0;
  return count;
}

bool OnlyDots(std::wstring_view name) {
  return !name.empty() && name.find_first_not_of(L'.') == std::wstring_view::npos;
}

bool IsSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

bool StartsWithDrive(std::wstring_view text) {
  return text.size() >= 2 && ((text[0] >= L'A' && text[0] <= L'Z') || (text[0] >= L'a' && text[0] <= L'z')) &&
         text[1] == L':' && (text.size() == 2 || IsSeparator(text[2]));
}

// Why SplitVariables could not read a text: "unknown variable %Package%", "unknown
// variable %Package" when the closing sign is missing, or a stray sign after a name.
std::wstring VariableFault(std::wstring_view text, const std::wstring& reported) {
  if (reported != L"%") return L"unknown variable " + reported;
  // Signs pair up from the left, so the one without a partner is the last.
  const size_t lone = text.rfind(L'%');
  const size_t end = text.find_first_of(L"\\/", lone);
  const std::wstring_view name = text.substr(lone, end == std::wstring_view::npos ? end : end - lone);
  if (name.size() > 1) return L"unknown variable " + std::wstring(name) + L" (no closing %)";
  return L"stray '%' after " + Quoted(text.substr(0, lone));
}

std::optional<int> SmallNumber(std::wstring_view digits) {
  if (digits.empty() || digits.size() > 4) return std::nullopt;
  int number = 0;
  for (const wchar_t c : digits) {
    if (c < L'0' || c > L'9') return std::nullopt;
    number = number * 10 + static_cast<int>(c - L'0');
  }
  return number;
}

// "6.1" or "10" (minor 0). A build number is refused: the model compares major.minor only,
// and dropping it would widen a range.
std::optional<WindowsVersion> ParseVersion(std::wstring_view text) {
  const size_t dot = text.find(L'.');
  const std::optional<int> major = SmallNumber(text.substr(0, dot));
  if (!major) return std::nullopt;
  if (dot == std::wstring_view::npos) return WindowsVersion{*major, 0};
  const std::optional<int> minor = SmallNumber(text.substr(dot + 1));
  if (!minor) return std::nullopt;
  return WindowsVersion{*major, *minor};
}

}  // namespace

std::wstring_view Trimmed(std::wstring_view text) {
  constexpr std::wstring_view kBlanks = L" \t\r\f\v";
  const size_t first = text.find_first_not_of(kBlanks);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool SameName(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (UpperAscii(a[i]) != UpperAscii(b[i])) return false;
  }
  return true;
}

Parsed<std::wstring> ParseFolder(std::wstring_view text) {
  text = Trimmed(text);
  if (text.empty()) return {std::nullopt, L"names no folder"};
  std::wstring unknown;
  const std::optional<std::vector<TextPart>> parts = SplitVariables(text, &unknown);
  if (!parts) return {std::nullopt, VariableFault(text, unknown)};
  // A relative folder would be taken from wherever the program happens to run.
  const bool startsWithFolderVariable =
      !parts->empty() && parts->front().variable && *parts->front().variable != Variable::kUserName;
  if (!startsWithFolderVariable && !StartsWithDrive(text)) {
    return {std::nullopt, L"folder " + Quoted(text) + L" starts with neither a folder variable nor a drive"};
  }
  // "C:" alone is whatever folder is current on that drive, as relative as "Temp".
  if (!startsWithFolderVariable && text.size() == 2) {
    return {std::nullopt, L"folder " + Quoted(text) + L" is the drive's current folder, not its root " +
                              Quoted(std::wstring(text) + L"\\")};
  }
  size_t start = 0;
  while (start <= text.size()) {
    size_t end = start;
    while (end < text.size() && !IsSeparator(text[end])) ++end;
    const std::wstring_view name = text.substr(start, end - start);
    if (OnlyDots(name)) return {std::nullopt, L"folder " + Quoted(text) + L" holds a \".\" or \"..\" name"};
    if (Wildcards(name) > kMaxWildcards) {
      return {std::nullopt,
              L"folder name " + Quoted(name) + L" has more than " + std::to_wstring(kMaxWildcards) + L" wildcards"};
    }
    start = end + 1;
  }
  std::wstring folder(text);
  // "C:\" keeps its backslash: "C:" alone is the drive's current folder, not its root.
  while (folder.size() > 1 && IsSeparator(folder.back()) && !(folder.size() == 3 && folder[1] == L':')) {
    folder.pop_back();
  }
  return {std::move(folder), {}};
}

Parsed<std::vector<std::wstring>> ParseMasks(std::wstring_view text) {
  std::vector<std::wstring> masks;
  for (const std::wstring_view part : SplitAt(text, L';')) {
    const std::wstring_view mask = Trimmed(part);
    if (mask.empty()) continue;
    // A folder in the mask slot once made another reader delete a whole Desktop.
    if (mask.find_first_of(L"\\/:") != std::wstring_view::npos) {
      return {std::nullopt, L"mask " + Quoted(mask) + L" names a path, not a file name"};
    }
    if (OnlyDots(mask)) return {std::nullopt, L"mask " + Quoted(mask) + L" names no file"};
    if (Wildcards(mask) > kMaxWildcards) {
      return {std::nullopt,
              L"mask " + Quoted(mask) + L" has more than " + std::to_wstring(kMaxWildcards) + L" wildcards"};
    }
    masks.emplace_back(mask);
  }
  if (masks.empty()) return {std::nullopt, L"names no file mask"};
  return {std::move(masks), {}};
}

Parsed<FileAction> ParseFileKey(std::wstring_view value) {
  const std::vector<std::wstring_view> parts = SplitAt(value, L'|');
  if (parts.size() < 2) return {std::nullopt, L"no '|' between the folder and its file masks"};
  Parsed<std::wstring> folder = ParseFolder(parts[0]);
  if (!folder.value) return {std::nullopt, std::move(folder.fault)};
  Parsed<std::vector<std::wstring>> masks = ParseMasks(parts[1]);
  if (!masks.value) return {std::nullopt, std::move(masks.fault)};
  bool recurse = false;
  bool removeSelf = false;
  bool emptyFoldersOnly = false;
  for (size_t i = 2; i < parts.size(); ++i) {
    const std::wstring_view flag = Trimmed(parts[i]);
    if (flag.empty()) continue;  // a stray '|' at the end asks for nothing
    if (SameName(flag, L"RECURSE")) {
      recurse = true;
    } else if (SameName(flag, L"REMOVESELF")) {
      removeSelf = true;
    } else if (SameName(flag, L"RemoveEmptyFoldersOnly")) {
      emptyFoldersOnly = true;
    } else {
      return {std::nullopt, L"unknown flag " + Quoted(flag)};
    }
  }
  FileAction action;
  action.folder = std::move(*folder.value);
  action.masks = std::move(*masks.value);
  // RemoveEmptyFoldersOnly narrows whatever else is asked to the empty folders alone.
  action.scope = emptyFoldersOnly ? FileScope::kEmptyFolders
                 : removeSelf     ? FileScope::kRemoveSelf
                 : recurse        ? FileScope::kRecursive
                                  : FileScope::kDirect;
  return {std::move(action), {}};
}

Parsed<RegistryKey> ParseRegistryKey(std::wstring_view text) {
  text = Trimmed(text);
  const size_t slash = text.find(L'\\');
  const std::wstring_view hiveName = text.substr(0, slash);
  const std::optional<Hive> hive = HiveFromName(hiveName);
  if (!hive) return {std::nullopt, L"unknown registry hive " + Quoted(hiveName)};
  std::wstring_view path = slash == std::wstring_view::npos ? std::wstring_view() : text.substr(slash + 1);
  while (!path.empty() && path.front() == L'\\') path.remove_prefix(1);
  while (!path.empty() && path.back() == L'\\') path.remove_suffix(1);
  return {RegistryKey{*hive, std::wstring(path)}, {}};
}

Parsed<RegistryAction> ParseRegKey(std::wstring_view value) {
  // Only the first '|' separates: a value name may hold one.
  const size_t bar = value.find(L'|');
  Parsed<RegistryKey> key = ParseRegistryKey(value.substr(0, bar));
  if (!key.value) return {std::nullopt, std::move(key.fault)};
  if (key.value->path.empty()) return {std::nullopt, L"names a whole registry hive"};
  RegistryAction action;
  action.key = std::move(*key.value);
  // An empty name after the '|' is the key's default value, never the whole key.
  if (bar != std::wstring_view::npos) action.value = std::wstring(value.substr(bar + 1));
  return {std::move(action), {}};
}

Parsed<Exclusion> ParseExcludeKey(std::wstring_view value) {
  const std::vector<std::wstring_view> parts = SplitAt(value, L'|');
  const std::wstring_view kind = Trimmed(parts[0]);
  Exclusion exclusion;
  if (SameName(kind, L"REG")) {
    if (parts.size() != 2) return {std::nullopt, L"REG exclusion must name one key and nothing more"};
    Parsed<RegistryKey> key = ParseRegistryKey(parts[1]);
    if (!key.value) return {std::nullopt, std::move(key.fault)};
    exclusion.kind = Exclusion::Kind::kRegistryKey;
    exclusion.key = std::move(*key.value);
    return {std::move(exclusion), {}};
  }
  const bool files = SameName(kind, L"FILE");
  if (!files && !SameName(kind, L"PATH")) {
    return {std::nullopt, L"unknown exclusion " + Quoted(kind) + L" (FILE, PATH or REG)"};
  }
  if (parts.size() < 2 || parts.size() > 3 || (files && parts.size() != 3)) {
    return {std::nullopt, files ? L"FILE exclusion must be FILE|<folder>\\|<name>[;<name>...]"
                                : L"PATH exclusion must be PATH|<folder>\\ or PATH|<folder>\\|<mask>[;<mask>...]"};
  }
  Parsed<std::wstring> folder = ParseFolder(parts[1]);
  if (!folder.value) return {std::nullopt, std::move(folder.fault)};
  exclusion.kind = files ? Exclusion::Kind::kFiles : Exclusion::Kind::kFolder;
  exclusion.folder = std::move(*folder.value);
  if (parts.size() == 3) {
    Parsed<std::vector<std::wstring>> masks = ParseMasks(parts[2]);
    if (!masks.value) return {std::nullopt, std::move(masks.fault)};
    exclusion.masks = std::move(*masks.value);
  }
  return {std::move(exclusion), {}};
}

Parsed<WindowsRange> ParseDetectOS(std::wstring_view value) {
  const std::vector<std::wstring_view> parts = SplitAt(value, L'|');
  if (parts.size() != 2) return {std::nullopt, L"must be <lowest version>|<highest version>"};
  WindowsRange range;
  for (size_t side = 0; side < 2; ++side) {
    const std::wstring_view text = Trimmed(parts[side]);
    if (text.empty()) continue;
    const std::optional<WindowsVersion> version = ParseVersion(text);
    if (!version) return {std::nullopt, L"Windows version " + Quoted(text) + L" is not <major>.<minor>"};
    (side == 0 ? range.minimum : range.maximum) = version;
  }
  if (!range.minimum && !range.maximum) return {std::nullopt, L"names no Windows version"};
  return {range, {}};
}

Parsed<std::wstring> ParseSpecialDetect(std::wstring_view value) {
  static constexpr std::array<std::wstring_view, 4> kKnown = {L"DET_CHROME", L"DET_MOZILLA", L"DET_THUNDERBIRD",
                                                              L"DET_OPERA"};
  const std::wstring_view name = Trimmed(value);
  for (const std::wstring_view known : kKnown) {
    if (SameName(name, known)) return {std::wstring(known), {}};
  }
  return {std::nullopt, L"unknown test " + Quoted(name)};
}

}  // namespace lumenor::rules::winapp2
