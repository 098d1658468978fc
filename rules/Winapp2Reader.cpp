#include "rules/Winapp2Reader.h"

#include "base/TextEncoding.h"
#include "rules/Winapp2Values.h"

#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>
#include <utility>

namespace lumenor::rules {

namespace {

using winapp2::Parsed;
using winapp2::SameName;
using winapp2::Trimmed;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr wchar_t kDefaultGroup[] = L"Applications";

// ASCII without NUL: such a line needs no decoding.
bool IsPlainAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte != 0 && byte < 0x80;
  });
}

// Strict UTF-8: no overlong forms, no surrogates, nothing beyond U+10FFFF, and no NUL,
// which no name in a rule can hold.
bool IsValidUtf8(std::string_view bytes) {
  size_t i = 0;
  while (i < bytes.size()) {
    const auto lead = static_cast<unsigned char>(bytes[i]);
    if (lead == 0) return false;
    if (lead < 0x80) {
      ++i;
      continue;
    }
    size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
      length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3;
      if (lead == 0xE0) low = 0xA0;
      if (lead == 0xED) high = 0x9F;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4;
      if (lead == 0xF0) low = 0x90;
      if (lead == 0xF4) high = 0x8F;
    } else {
      return false;
    }
    if (bytes.size() - i < length) return false;
    for (size_t k = 1; k < length; ++k) {
      const auto next = static_cast<unsigned char>(bytes[i + k]);
      if (next < (k == 1 ? low : 0x80) || next > (k == 1 ? high : 0xBF)) return false;
    }
    i += length;
  }
  return true;
}

// The line as text. A line that is not valid UTF-8 keeps its ASCII and shows U+FFFD for
// every other byte, so its '[', '=' and '|' stay where they were and it can be reported
// for what it is.
std::wstring LineText(std::string_view raw, bool& valid) {
  const bool ascii = IsPlainAscii(raw);
  valid = ascii || IsValidUtf8(raw);
  if (valid && !ascii) return FromUtf8(raw);
  std::wstring text(raw.size(), L'\0');
  std::transform(raw.begin(), raw.end(), text.begin(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte != 0 && byte < 0x80 ? static_cast<wchar_t>(byte) : static_cast<wchar_t>(0xFFFD);
  });
  return text;
}

enum class KeyKind {
  kLangSecRef,
  kSection,
  kDetect,
  kDetectFile,
  kDetectOS,
  kSpecialDetect,
  kWarning,
  kDefault,
  kFileKey,
  kRegKey,
  kExcludeKey,
};

// The kind of a key by its name, letter case aside; the numbered kinds may end in digits
// ("FileKey12"), and the number itself means nothing.
std::optional<KeyKind> KindOfKey(std::wstring_view name) {
  struct Known {
    std::wstring_view name;
    KeyKind kind;
    bool numbered;
  };
  static constexpr std::array<Known, 11> kKnown = {{
      {L"LangSecRef", KeyKind::kLangSecRef, false},
      {L"Section", KeyKind::kSection, false},
      {L"Detect", KeyKind::kDetect, true},
      {L"DetectFile", KeyKind::kDetectFile, true},
      {L"DetectOS", KeyKind::kDetectOS, false},
      {L"SpecialDetect", KeyKind::kSpecialDetect, false},
      {L"Warning", KeyKind::kWarning, false},
      {L"Default", KeyKind::kDefault, false},
      {L"FileKey", KeyKind::kFileKey, true},
      {L"RegKey", KeyKind::kRegKey, true},
      {L"ExcludeKey", KeyKind::kExcludeKey, true},
  }};
  size_t letters = name.size();
  while (letters > 0 && name[letters - 1] >= L'0' && name[letters - 1] <= L'9') --letters;
  const std::wstring_view stem = name.substr(0, letters);
  for (const Known& known : kKnown) {
    if (SameName(stem, known.name) && (known.numbered || letters == name.size())) return known.kind;
  }
  return std::nullopt;
}

std::optional<int> LangSecRefNumber(std::wstring_view text) {
  if (text.empty() || text.size() > 9) return std::nullopt;
  int number = 0;
  for (const wchar_t c : text) {
    if (c < L'0' || c > L'9') return std::nullopt;
    number = number * 10 + static_cast<int>(c - L'0');
  }
  return number;
}

// "; Version: 260730" among the comments above the first entry.
std::optional<std::wstring> HeaderVersion(std::wstring_view comment) {
  comment = Trimmed(comment.substr(1));
  constexpr std::wstring_view kLabel = L"Version:";
  if (comment.size() < kLabel.size() || !SameName(comment.substr(0, kLabel.size()), kLabel)) return std::nullopt;
  return std::wstring(Trimmed(comment.substr(kLabel.size())));
}

// One entry while its keys are read.
struct Draft {
  Item item;
  std::optional<std::wstring> langSecRefGroup;
  std::optional<std::wstring> sectionGroup;
  int detectionLines = 0;  // Detect, DetectFile and SpecialDetect lines, read or refused
  std::wstring leftOut;    // why the entry cannot be loaded whatever else it holds
};

class Reader {
 public:
  explicit Reader(std::wstring_view fileName) : fileName_(fileName) { file_.rules.origin = RuleOrigin::kCommunity; }

  void Line(std::string_view raw, int number) {
    bool valid = true;
    const std::wstring text = LineText(raw, valid);
    const std::wstring_view line = Trimmed(text);
    if (line.empty()) return;
    if (line.front() == L';') {
      if (file_.counts.entriesRead == 0 && valid && file_.counts.version.empty()) {
        if (std::optional<std::wstring> version = HeaderVersion(line)) file_.counts.version = std::move(*version);
      }
      return;
    }
    if (line.front() == L'[') {
      StartEntry(line, number, valid);
      return;
    }
    const size_t equals = line.find(L'=');
    if (equals == std::wstring_view::npos) {
      if (!inMalformedEntry_) Report(number, L"line is neither a comment, a section nor <key>=<value>");
      return;
    }
    const std::wstring_view name = Trimmed(line.substr(0, equals));
    const std::wstring_view value = Trimmed(line.substr(equals + 1));
    const std::optional<KeyKind> kind = KindOfKey(name);
    if (kind) CountRead(*kind);
    if (!draft_) {
      if (inMalformedEntry_) return;  // reported once, with its section
      if (kind) Refuse(*kind, number, name, L"key outside any entry");
      if (!kind) Report(number, std::wstring(name) + L": key outside any entry");
      return;
    }
    if (!kind) {
      Report(number, L"unknown key \"" + std::wstring(name) + L"\"");
      return;
    }
    ReadKey(*kind, name, valid ? value : std::wstring_view(), number, valid);
  }

  // A file that cannot be read at all: one problem, at its first line.
  Winapp2File Unreadable(std::wstring message) {
    Report(1, std::move(message));
    return std::move(file_);
  }

  Winapp2File Finish() {
    FinishEntry();
    std::stable_sort(file_.rules.problems.begin(), file_.rules.problems.end(),
                     [](const Problem& a, const Problem& b) { return a.where.line < b.where.line; });
    return std::move(file_);
  }

 private:
  SourcePosition At(int line) const { return SourcePosition{fileName_, line, 0}; }

  void Report(int line, std::wstring message) {
    file_.rules.problems.push_back(Problem{At(line), draft_ ? draft_->item.name : std::wstring(), std::move(message)});
  }

  Winapp2Counts::Keys* Counter(KeyKind kind) {
    switch (kind) {
      case KeyKind::kFileKey:
        return &file_.counts.fileKeys;
      case KeyKind::kRegKey:
        return &file_.counts.regKeys;
      case KeyKind::kExcludeKey:
        return &file_.counts.excludeKeys;
      case KeyKind::kDetect:
        return &file_.counts.detects;
      case KeyKind::kDetectFile:
        return &file_.counts.detectFiles;
      default:
        return nullptr;
    }
  }

  void CountRead(KeyKind kind) {
    if (Winapp2Counts::Keys* counter = Counter(kind)) ++counter->read;
    if (kind == KeyKind::kWarning) ++file_.counts.warnings;
  }

  // The key is left out; what its absence would change about the entry is settled here.
  void Refuse(KeyKind kind, int line, std::wstring_view name, const std::wstring& fault) {
    if (Winapp2Counts::Keys* counter = Counter(kind)) ++counter->refused;
    Report(line, std::wstring(name) + L": " + fault);
    if (!draft_) return;
    // Without its exclusion the entry would clean what its authors meant to keep, and
    // without its Windows range it would run where they never meant it to.
    if (kind == KeyKind::kExcludeKey) draft_->leftOut = L"an ExcludeKey of it could not be read";
    if (kind == KeyKind::kDetectOS) draft_->leftOut = L"its DetectOS could not be read";
  }

  void ReadKey(KeyKind kind, std::wstring_view name, std::wstring_view value, int line, bool valid) {
    Item& item = draft_->item;
    if (kind == KeyKind::kDetect || kind == KeyKind::kDetectFile || kind == KeyKind::kSpecialDetect) {
      ++draft_->detectionLines;
    }
    if (!valid) {
      Refuse(kind, line, name, L"not valid UTF-8");
      return;
    }
    std::wstring fault;
    switch (kind) {
      case KeyKind::kLangSecRef:
        if (const std::optional<int> number = LangSecRefNumber(value)) {
          draft_->langSecRefGroup = Winapp2GroupName(*number);
        } else {
          Report(line, std::wstring(name) + L": \"" + std::wstring(value) + L"\" is not a number");
        }
        return;
      case KeyKind::kSection:
        if (value.empty()) {
          Report(line, std::wstring(name) + L": names no group");
        } else {
          draft_->sectionGroup = std::wstring(value);
        }
        return;
      case KeyKind::kWarning:
        item.warning = value;
        return;
      case KeyKind::kDefault:
        if (SameName(value, L"True") || SameName(value, L"False")) {
          item.tickedByDefault = SameName(value, L"True");
        } else {
          Report(line, std::wstring(name) + L": \"" + std::wstring(value) + L"\" is neither True nor False");
        }
        return;
      case KeyKind::kDetect:
        fault = Take(winapp2::ParseRegistryKey(value), item.detection.keys);
        break;
      case KeyKind::kDetectFile:
        fault = Take(winapp2::ParseFolder(value), item.detection.paths);
        break;
      case KeyKind::kSpecialDetect:
        fault = Take(winapp2::ParseSpecialDetect(value), item.detection.special);
        break;
      case KeyKind::kDetectOS: {
        Parsed<winapp2::WindowsRange> range = winapp2::ParseDetectOS(value);
        if (range.value) {
          item.detection.minimumWindows = range.value->minimum;
          item.detection.maximumWindows = range.value->maximum;
        }
        fault = std::move(range.fault);
        break;
      }
      case KeyKind::kFileKey:
        fault = TakeWithPlace(winapp2::ParseFileKey(value), item.files, line);
        break;
      case KeyKind::kRegKey:
        fault = TakeWithPlace(winapp2::ParseRegKey(value), item.registry, line);
        break;
      case KeyKind::kExcludeKey:
        fault = TakeWithPlace(winapp2::ParseExcludeKey(value), item.exclusions, line);
        break;
    }
    if (!fault.empty()) Refuse(kind, line, name, fault);
  }

  template <typename Value>
  static std::wstring Take(Parsed<Value> parsed, std::vector<Value>& into) {
    if (!parsed.value) return std::move(parsed.fault);
    into.push_back(std::move(*parsed.value));
    return {};
  }

  template <typename Value>
  std::wstring TakeWithPlace(Parsed<Value> parsed, std::vector<Value>& into, int line) const {
    if (!parsed.value) return std::move(parsed.fault);
    parsed.value->where = At(line);
    into.push_back(std::move(*parsed.value));
    return {};
  }

  void StartEntry(std::wstring_view line, int number, bool valid) {
    FinishEntry();
    ++file_.counts.entriesRead;
    inMalformedEntry_ = false;
    std::wstring_view name;
    if (line.size() >= 2 && line.back() == L']') {
      name = Trimmed(line.substr(1, line.size() - 2));
      // "[Name *]": the star marks the file's own entries and is no part of the name.
      if (name.size() >= 2 && name.back() == L'*' &&
          (name[name.size() - 2] == L' ' || name[name.size() - 2] == L'\t')) {
        name = Trimmed(name.substr(0, name.size() - 1));
      } else if (name == L"*") {
        name = {};
      }
    }
    if (name.empty() || !valid) {
      inMalformedEntry_ = true;
      Report(number, valid ? L"malformed section line \"" + std::wstring(line) + L"\"; its entry is left out"
                           : std::wstring(L"section line is not valid UTF-8; its entry is left out"));
      return;
    }
    draft_.emplace();
    draft_->item.name = name;
    draft_->item.where = At(number);
  }

  void FinishEntry() {
    if (!draft_) return;
    Draft& draft = *draft_;
    const std::wstring group = draft.sectionGroup      ? *draft.sectionGroup
                               : draft.langSecRefGroup ? *draft.langSecRefGroup
                                                       : std::wstring(kDefaultGroup);
    Item& item = draft.item;
    item.id = DerivedItemId(group, item.name);
    const int line = item.where.line;
    std::wstring leftOut;
    if (const auto [first, added] = firstOfId_.try_emplace(item.id, line, item.name); !added) {
      const auto& [firstLine, firstName] = first->second;
      leftOut = (SameName(firstName, item.name) ? L"same entry as line " : L"same item id as the entry at line ") +
                std::to_wstring(firstLine);
    } else if (!draft.leftOut.empty()) {
      leftOut = draft.leftOut;
    } else if (item.files.empty() && item.registry.empty()) {
      leftOut = L"it has no usable FileKey or RegKey";
    } else if (draft.detectionLines > 0 && item.detection.Empty()) {
      // Without any of them it would apply everywhere, which its authors never meant.
      leftOut = L"none of its detection lines could be read";
    }
    if (!leftOut.empty()) {
      Report(line, L"entry left out: " + leftOut);
      draft_.reset();
      return;
    }
    ApplicationNamed(group, line).items.push_back(std::move(item));
    ++file_.counts.entriesLoaded;
    draft_.reset();
  }

  // The group's application, made on its first entry; letter case aside, as item ids are.
  Application& ApplicationNamed(const std::wstring& group, int line) {
    std::wstring folded = group;
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [](wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; });
    std::vector<Application>& applications = file_.rules.applications;
    const auto [found, added] = applicationIndex_.emplace(std::move(folded), applications.size());
    if (added) {
      Application& application = applications.emplace_back();
      application.name = group;
      application.category = kCommunityCategory;
      application.where = At(line);
    }
    return applications[found->second];
  }

  std::wstring fileName_;
  Winapp2File file_;
  std::optional<Draft> draft_;
  bool inMalformedEntry_ = false;  // its keys belong to no entry and are passed over quietly
  std::unordered_map<unsigned, std::pair<int, std::wstring>> firstOfId_;  // line and name
  std::unordered_map<std::wstring, size_t> applicationIndex_;
};

}  // namespace

std::wstring Winapp2GroupName(int langSecRef) {
  switch (langSecRef) {
    case 3001:
      return L"Internet Explorer";
    case 3005:
    case 3006:
      return L"Edge";
    case 3022:
      return L"Internet";
    case 3023:
      return L"Multimedia";
    case 3024:
      return L"Utilities";
    case 3025:
      return L"Windows";
    case 3026:
      return L"Firefox";
    case 3027:
      return L"Opera";
    case 3028:
      return L"Safari";
    case 3029:
      return L"Google Chrome";
    case 3030:
      return L"Thunderbird";
    case 3031:
      return L"Windows Store";
    case 3033:
      return L"Vivaldi";
    case 3034:
      return L"Brave";
    default:
      return kDefaultGroup;  // 3021 and every number without a name of its own
  }
}

Winapp2File ReadWinapp2(std::string_view bytes, std::wstring_view fileName) {
  Reader reader(fileName);
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
    return reader.Unreadable(L"the file is UTF-16; winapp2.ini is read as UTF-8");
  if (bytes.substr(0, kUtf8Mark.size()) == kUtf8Mark) bytes.remove_prefix(kUtf8Mark.size());
  int number = 0;
  while (!bytes.empty()) {
    ++number;
    const size_t end = bytes.find('\n');
    std::string_view raw = bytes.substr(0, end);
    if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
    reader.Line(raw, number);
    if (end == std::string_view::npos) break;
    bytes.remove_prefix(end + 1);
  }
  return reader.Finish();
}

}  // namespace lumenor::rules
