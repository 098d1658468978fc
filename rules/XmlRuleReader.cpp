#include "rules/XmlRuleReader.h"

#include "base/TextEncoding.h"
#include "rules/MaskRules.h"
#include "rules/XmlRuleValues.h"
#include "xml/XmlReader.h"

#include <algorithm>
#include <array>
#include <climits>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumenor::rules {

namespace {

using xml::Element;
using xmlrules::Parsed;
using xmlrules::PathPlace;
using xmlrules::PathRules;
using xmlrules::PathWildcards;

constexpr std::string_view kFormatVersion = "1";

// Every element name of the format, so that one in the wrong place is told apart from a typo.
constexpr std::array<std::string_view, 13> kElementNames = {"rules",   "category", "application", "detect", "windows",
                                                            "running", "item",     "warning",     "files",  "registry",
                                                            "exclude", "profiles", "action"};

std::wstring Quoted(std::wstring_view text) { return L"\"" + std::wstring(text) + L"\""; }

std::wstring Tag(std::string_view name) { return L"<" + FromUtf8(name) + L">"; }

int Clamped(size_t number) { return number > INT_MAX ? INT_MAX : static_cast<int>(number); }

bool IsLayout(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r'; }

std::wstring WithoutLayout(std::wstring_view text) {
  while (!text.empty() && IsLayout(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsLayout(text.back())) text.remove_suffix(1);
  return std::wstring(text);
}

std::vector<const Element*> ChildElements(const Element& element) {
  std::vector<const Element*> children;
  for (const xml::Node& child : element.Children()) {
    if (child.AsElement() != nullptr) children.push_back(child.AsElement());
  }
  return children;
}

// The attribute's value without the blanks around it; nothing when it is not there.
std::optional<std::wstring> Attribute(const Element& element, std::string_view name) {
  const std::optional<std::string_view> value = element.AttributeValue(name);
  if (!value) return std::nullopt;
  return std::wstring(TrimBlanks(FromUtf8(*value)));
}

// The elements that hold neither elements nor text: text in one is reported by its holder.
bool IsLeaf(std::string_view name) {
  return name == "files" || name == "registry" || name == "action" || name == "exclude" || name == "detect" ||
         name == "windows" || name == "running";
}

// A child element where it does not belong: a name of the format in the wrong place, or
// one the format does not know.
std::wstring Misplaced(const Element& child, std::string_view parent) {
  const bool known = std::find(kElementNames.begin(), kElementNames.end(), child.Name()) != kElementNames.end();
  return known ? Tag(child.Name()) + L" does not belong in " + Tag(parent)
               : L"unknown element " + Tag(child.Name()) + L" in " + Tag(parent);
}

// What is wrong with an element, found before its reader decides what it leaves out. The
// first fault found is the one reported.
struct Fault {
  const Element* at = nullptr;
  std::wstring text;

  bool Set(const Element& element, std::wstring why) {
    if (at == nullptr) {
      at = &element;
      text = std::move(why);
    }
    return false;
  }
};

// The first attribute of the element that is not among `known`, as a fault; empty when
// there is none.
std::wstring UnknownAttribute(const Element& element, std::initializer_list<std::string_view> known) {
  for (const xml::Attribute& attribute : element.Attributes()) {
    if (std::find(known.begin(), known.end(), attribute.name) == known.end()) {
      return L"unknown attribute " + Quoted(FromUtf8(attribute.name)) + L" in " + Tag(element.Name());
    }
  }
  return {};
}

bool NoChildElements(const Element& element, Fault& fault) {
  const std::vector<const Element*> children = ChildElements(element);
  return children.empty() || fault.Set(*children.front(), Misplaced(*children.front(), element.Name()));
}

// An element that takes the attributes named and no child elements.
bool CheckShape(const Element& element, std::initializer_list<std::string_view> known, Fault& fault) {
  std::wstring unknown = UnknownAttribute(element, known);
  if (!unknown.empty()) return fault.Set(element, std::move(unknown));
  return NoChildElements(element, fault);
}

std::optional<std::wstring> Required(const Element& element, std::string_view name, Fault& fault) {
  std::optional<std::wstring> value = Attribute(element, name);
  if (!value) fault.Set(element, Tag(element.Name()) + L" has no " + Quoted(FromUtf8(name)) + L" attribute");
  return value;
}

// The attribute read by `parse`; a refusal names the element and the attribute.
template <typename Value, typename Parse>
std::optional<Value> ParsedAttribute(const Element& element, std::string_view name, const std::wstring& text,
                                     Parse parse, Fault& fault) {
  Parsed<Value> parsed = parse(text);
  if (!parsed.value) fault.Set(element, Tag(element.Name()) + L" " + FromUtf8(name) + L": " + parsed.fault);
  return std::move(parsed.value);
}

std::optional<std::wstring> PathAttribute(const Element& element, std::string_view name, PathRules rules,
                                          Fault& fault) {
  const std::optional<std::wstring> text = Required(element, name, fault);
  if (!text) return std::nullopt;
  return ParsedAttribute<std::wstring>(
      element, name, *text, [rules](std::wstring_view value) { return xmlrules::ParsePath(value, rules); }, fault);
}

std::optional<RegistryKey> KeyAttribute(const Element& element, std::string_view name, bool wildcards, Fault& fault) {
  const std::optional<std::wstring> text = Required(element, name, fault);
  if (!text) return std::nullopt;
  return ParsedAttribute<RegistryKey>(
      element, name, *text, [wildcards](std::wstring_view value) { return xmlrules::ParseKey(value, wildcards); },
      fault);
}

// An optional true-or-false attribute: `fallback` when it is not there.
std::optional<bool> TrueFalseAttribute(const Element& element, std::string_view name, bool fallback, Fault& fault) {
  const std::optional<std::wstring> text = Attribute(element, name);
  if (!text) return fallback;
  return ParsedAttribute<bool>(element, name, *text, xmlrules::ParseTrueFalse, fault);
}

std::optional<std::vector<std::wstring>> MasksAttribute(const Element& element, const std::wstring& text,
                                                        Fault& fault) {
  MaskList list = SplitMasks(text);
  if (!list.Ok()) {
    fault.Set(element, Tag(element.Name()) + L" masks: " + list.fault);
    return std::nullopt;
  }
  return std::move(list.masks);
}

// How many of the attributes named the element has.
int CountAttributes(const Element& element, std::initializer_list<std::string_view> names) {
  return static_cast<int>(std::count_if(names.begin(), names.end(),
                                        [&element](std::string_view name) { return element.AttributeValue(name); }));
}

std::optional<FileScope> ScopeNamed(std::wstring_view name) {
  if (name == L"direct") return FileScope::kDirect;
  if (name == L"recursive") return FileScope::kRecursive;
  if (name == L"remove-self") return FileScope::kRemoveSelf;
  if (name == L"empty-folders") return FileScope::kEmptyFolders;
  return std::nullopt;
}

class RuleFileReader {
 public:
  RuleFileReader(std::wstring_view fileName, RuleOrigin origin) : fileName_(fileName) { rules_.origin = origin; }

  RuleSet Read(std::string_view bytes);

 private:
  SourcePosition Where(const Element& element) const {
    return {fileName_, Clamped(element.Place().line), Clamped(element.Place().column)};
  }
  void Report(const SourcePosition& where, const std::wstring& entry, std::wstring message) {
    rules_.problems.push_back({where, entry, std::move(message)});
  }
  void Report(const Element& at, const std::wstring& entry, std::wstring message) {
    Report(Where(at), entry, std::move(message));
  }
  // The fault's problem, at the element at fault (`owner` when none was named).
  void Report(const Fault& fault, const Element& owner, const std::wstring& entry, std::wstring_view leftOut) {
    Report(fault.at != nullptr ? *fault.at : owner, entry, fault.text + L"; " + std::wstring(leftOut));
  }
  void ReportText(const Element& element, const std::wstring& entry);

  void ReadRoot(const Element& root);
  void ReadCategory(const Element& element);
  std::optional<Application> ReadApplication(const Element& element, const std::wstring& category);
  void AddApplication(Application application, const Element& element);
  std::optional<Item> ReadItem(const Element& element, const std::wstring& application);
  std::optional<ProfileAction> ReadProfiles(const Element& element, const std::wstring& entry);

  // The elements that hold no others. Each gives its value, or false or nothing with
  // `fault` set; the caller decides what the fault leaves out.
  std::optional<FileAction> ReadFiles(const Element& element, const ProfileAction* profile, Fault& fault) const;
  std::optional<RegistryAction> ReadRegistry(const Element& element, Fault& fault) const;
  std::optional<NamedAction> ReadNamedAction(const Element& element, bool inProfile, Fault& fault) const;
  std::optional<Exclusion> ReadExclusion(const Element& element, Fault& fault) const;
  bool ReadDetect(const Element& element, Detection& detection, Fault& fault) const;
  bool ReadWindows(const Element& element, Detection& detection, Fault& fault) const;
  bool ReadRunning(const Element& element, Application& application, Fault& fault) const;
  std::optional<std::wstring> ReadWarning(const Element& element, Fault& fault) const;

  std::wstring fileName_;
  RuleSet rules_;
  std::map<unsigned, int> idLines_;  // each id taken in this file, and the line of its item
};

RuleSet RuleFileReader::Read(std::string_view bytes) {
  xml::ReadResult document = xml::ReadXml(bytes);
  if (!document.Ok()) {
    Report({fileName_, Clamped(document.error.line), Clamped(document.error.column)}, L"",
           FromUtf8(document.error.message) + L"; nothing loaded");
    return std::move(rules_);
  }
  ReadRoot(*document.root);
  std::stable_sort(rules_.problems.begin(), rules_.problems.end(), [](const Problem& a, const Problem& b) {
    return a.where.line != b.where.line ? a.where.line < b.where.line : a.where.column < b.where.column;
  });
  return std::move(rules_);
}

// Text never changes what a rule does, but where none belongs it is likely a slip.
void RuleFileReader::ReportText(const Element& element, const std::wstring& entry) {
  for (const xml::Node& child : element.Children()) {
    if (child.IsText() && !WithoutLayout(FromUtf8(child.Text())).empty()) {
      Report(element, entry, L"text in " + Tag(element.Name()) + L" is ignored");
      return;
    }
  }
}

void RuleFileReader::ReadRoot(const Element& root) {
  if (root.Name() != "rules") {
    Report(root, L"", L"the root element is " + Tag(root.Name()) + L", not <rules>; nothing loaded");
    return;
  }
  Fault fault;
  std::wstring unknown = UnknownAttribute(root, {"version"});
  if (!unknown.empty()) fault.Set(root, std::move(unknown));
  const std::optional<std::wstring> version = Required(root, "version", fault);
  if (version && *version != FromUtf8(kFormatVersion)) {
    fault.Set(root, L"<rules> version " + Quoted(*version) + L" is not one this program reads (" +
                        FromUtf8(kFormatVersion) + L")");
  }
  if (fault.at != nullptr) {
    Report(fault, root, L"", L"nothing loaded");
    return;
  }
  ReportText(root, L"");
  for (const Element* child : ChildElements(root)) {
    if (child->Name() == "category") {
      ReadCategory(*child);
    } else {
      Report(*child, L"", Misplaced(*child, "rules") + L"; left out");
    }
  }
}

void RuleFileReader::ReadCategory(const Element& element) {
  const std::wstring name = Attribute(element, "name").value_or(L"");
  Fault fault;
  std::wstring unknown = UnknownAttribute(element, {"name"});
  if (!unknown.empty()) fault.Set(element, std::move(unknown));
  if (name.empty()) fault.Set(element, L"<category> has no name");
  if (fault.at != nullptr) {
    Report(fault, element, name, name.empty() ? L"category left out" : L"category " + Quoted(name) + L" left out");
    return;
  }
  ReportText(element, name);
  for (const Element* child : ChildElements(element)) {
    if (child->Name() != "application") {
      Report(*child, name, Misplaced(*child, "category") + L"; left out");
    } else if (std::optional<Application> application = ReadApplication(*child, name)) {
      AddApplication(std::move(*application), *child);
    }
  }
}

std::optional<Application> RuleFileReader::ReadApplication(const Element& element, const std::wstring& category) {
  Application application;
  application.name = Attribute(element, "name").value_or(L"");
  application.category = category;
  application.where = Where(element);
  const std::wstring& entry = application.name;
  const std::wstring leftOut =
      application.name.empty() ? L"application left out" : L"application " + Quoted(application.name) + L" left out";
  bool keep = true;
  const auto fail = [&](const Element& at, const std::wstring& why) {
    Report(at, entry, why + L"; " + leftOut);
    keep = false;
  };
  const auto failWith = [&](const Fault& fault) {
    Report(fault, element, entry, leftOut);
    keep = false;
  };
  if (std::wstring unknown = UnknownAttribute(element, {"name"}); !unknown.empty()) fail(element, unknown);
  if (application.name.empty()) fail(element, L"<application> has no name");
  ReportText(element, entry);
  bool hadItems = false;
  bool sawWindows = false;
  for (const Element* child : ChildElements(element)) {
    const std::string& tag = child->Name();
    if (IsLeaf(tag)) ReportText(*child, entry);
    Fault fault;
    if (tag == "item") {
      hadItems = true;
      if (std::optional<Item> item = ReadItem(*child, application.name)) application.items.push_back(std::move(*item));
    } else if (tag == "detect") {
      if (!ReadDetect(*child, application.detection, fault)) failWith(fault);
    } else if (tag == "windows") {
      if (sawWindows) {
        fail(*child, L"a second <windows> in <application>");
      } else if (sawWindows = true; !ReadWindows(*child, application.detection, fault)) {
        failWith(fault);
      }
    } else if (tag == "running") {
      if (!ReadRunning(*child, application, fault)) failWith(fault);
    } else {
      fail(*child, Misplaced(*child, "application"));
    }
  }
  if (keep && application.items.empty()) {
    fail(element, hadItems ? L"<application> has no items left" : L"<application> has no items");
  }
  if (!keep) return std::nullopt;
  return application;
}

// Ids are taken only by what loads, so an item left out never keeps a later one out.
void RuleFileReader::AddApplication(Application application, const Element& element) {
  std::vector<Item> kept;
  for (Item& item : application.items) {
    if (rules_.origin != RuleOrigin::kBuiltIn) item.id = DerivedItemId(application.name, item.name);
    const auto [taken, added] = idLines_.try_emplace(item.id, item.where.line);
    if (!added) {
      const std::wstring line = std::to_wstring(taken->second);
      Report(item.where, application.name + L": " + item.name,
             (rules_.origin == RuleOrigin::kBuiltIn
                  ? L"id " + std::to_wstring(item.id) + L" is already used on line " + line
                  : L"the item on line " + line + L" has the same id") +
                 L"; item " + Quoted(item.name) + L" left out");
      continue;
    }
    kept.push_back(std::move(item));
  }
  if (kept.empty()) {
    Report(element, application.name,
           L"<application> has no items left; application " + Quoted(application.name) + L" left out");
    return;
  }
  application.items = std::move(kept);
  rules_.applications.push_back(std::move(application));
}

std::optional<Item> RuleFileReader::ReadItem(const Element& element, const std::wstring& application) {
  Item item;
  item.name = Attribute(element, "name").value_or(L"");
  item.where = Where(element);
  const std::wstring entry =
      item.name.empty() || application.empty() ? application + item.name : application + L": " + item.name;
  const std::wstring leftOut = item.name.empty() ? L"item left out" : L"item " + Quoted(item.name) + L" left out";
  bool keep = true;
  const auto fail = [&](const Element& at, const std::wstring& why) {
    Report(at, entry, why + L"; " + leftOut);
    keep = false;
  };
  const auto failWith = [&](const Fault& fault) {
    Report(fault, element, entry, leftOut);
    keep = false;
  };
  if (std::wstring unknown = UnknownAttribute(element, {"name", "id", "default"}); !unknown.empty()) {
    fail(element, unknown);
  }
  if (item.name.empty()) fail(element, L"<item> has no name");
  // Other files' ids are derived from the names; one written there is ignored.
  if (rules_.origin == RuleOrigin::kBuiltIn) {
    Fault fault;
    const std::optional<std::wstring> id = Attribute(element, "id");
    if (!id) {
      fail(element, L"<item> has no id, which every built-in item needs");
    } else if (const std::optional<unsigned> number =
                   ParsedAttribute<unsigned>(element, "id", *id, xmlrules::ParseBuiltInId, fault)) {
      item.id = *number;
    } else {
      failWith(fault);
    }
  }
  Fault defaultFault;
  if (const std::optional<bool> ticked = TrueFalseAttribute(element, "default", false, defaultFault)) {
    item.tickedByDefault = *ticked;
  } else {
    failWith(defaultFault);
  }
  ReportText(element, entry);
  bool hadActions = false;
  bool sawWarning = false;
  bool sawWindows = false;
  for (const Element* child : ChildElements(element)) {
    const std::string& tag = child->Name();
    if (IsLeaf(tag)) ReportText(*child, entry);
    Fault fault;
    if (tag == "files") {
      hadActions = true;
      if (std::optional<FileAction> files = ReadFiles(*child, nullptr, fault)) {
        item.files.push_back(std::move(*files));
      } else {
        Report(fault, *child, entry, L"left out");
      }
    } else if (tag == "registry") {
      hadActions = true;
      if (std::optional<RegistryAction> registry = ReadRegistry(*child, fault)) {
        item.registry.push_back(std::move(*registry));
      } else {
        Report(fault, *child, entry, L"left out");
      }
    } else if (tag == "action") {
      hadActions = true;
      if (std::optional<NamedAction> named = ReadNamedAction(*child, false, fault)) {
        item.named.push_back(std::move(*named));
      } else {
        Report(fault, *child, entry, L"left out");
      }
    } else if (tag == "profiles") {
      hadActions = true;
      if (std::optional<ProfileAction> profiles = ReadProfiles(*child, entry))
        item.profiles.push_back(std::move(*profiles));
    } else if (tag == "exclude") {
      if (std::optional<Exclusion> exclusion = ReadExclusion(*child, fault)) {
        item.exclusions.push_back(std::move(*exclusion));
      } else {
        failWith(fault);
      }
    } else if (tag == "detect") {
      if (!ReadDetect(*child, item.detection, fault)) failWith(fault);
    } else if (tag == "windows") {
      if (sawWindows) {
        fail(*child, L"a second <windows> in <item>");
      } else if (sawWindows = true; !ReadWindows(*child, item.detection, fault)) {
        failWith(fault);
      }
    } else if (tag == "warning") {
      if (sawWarning) {
        fail(*child, L"a second <warning> in <item>");
      } else if (sawWarning = true; std::optional<std::wstring> warning = ReadWarning(*child, fault)) {
        item.warning = std::move(*warning);
      } else {
        failWith(fault);
      }
    } else {
      fail(*child, Misplaced(*child, "item"));
    }
  }
  const bool cleansSomething =
      !item.files.empty() || !item.registry.empty() || !item.named.empty() || !item.profiles.empty();
  if (keep && !cleansSomething) {
    fail(element, hadActions ? L"<item> has nothing left to clean" : L"<item> has nothing to clean");
  }
  if (!keep) return std::nullopt;
  return item;
}

std::optional<ProfileAction> RuleFileReader::ReadProfiles(const Element& element, const std::wstring& entry) {
  ProfileAction profile;
  profile.where = Where(element);
  bool keep = true;
  const auto fail = [&](const Element& at, const std::wstring& why) {
    Report(at, entry, why + L"; <profiles> left out");
    keep = false;
  };
  Fault fault;
  std::wstring unknown = UnknownAttribute(element, {"kind", "root", "local-root"});
  if (!unknown.empty()) fault.Set(element, std::move(unknown));
  const std::optional<std::wstring> kind = Required(element, "kind", fault);
  if (kind && *kind == L"chromium") {
    profile.kind = ProfileKind::kChromium;
  } else if (kind && *kind == L"mozilla") {
    profile.kind = ProfileKind::kMozilla;
  } else if (kind) {
    fault.Set(element, L"<profiles> kind: " + Quoted(*kind) + L" is neither chromium nor mozilla");
  }
  const PathRules rootRules{PathPlace::kMachine, PathWildcards::kNone};
  if (const std::optional<std::wstring> root = PathAttribute(element, "root", rootRules, fault)) profile.root = *root;
  if (element.AttributeValue("local-root")) {
    if (profile.kind != ProfileKind::kMozilla) {
      fault.Set(element, L"<profiles> local-root: only mozilla profiles have local twins");
    } else if (const std::optional<std::wstring> localRoot = PathAttribute(element, "local-root", rootRules, fault)) {
      profile.localRoot = *localRoot;
    }
  }
  // How its actions read depends on the attributes: without them, they are not judged.
  if (fault.at != nullptr) {
    Report(fault, element, entry, L"<profiles> left out");
    return std::nullopt;
  }
  ReportText(element, entry);
  bool hadActions = false;
  for (const Element* child : ChildElements(element)) {
    if (IsLeaf(child->Name())) ReportText(*child, entry);
    Fault childFault;
    if (child->Name() == "files") {
      hadActions = true;
      if (std::optional<FileAction> files = ReadFiles(*child, &profile, childFault)) {
        profile.files.push_back(std::move(*files));
      } else {
        Report(childFault, *child, entry, L"left out");
      }
    } else if (child->Name() == "action") {
      hadActions = true;
      if (std::optional<NamedAction> named = ReadNamedAction(*child, true, childFault)) {
        profile.named.push_back(std::move(*named));
      } else {
        Report(childFault, *child, entry, L"left out");
      }
    } else {
      fail(*child, Misplaced(*child, "profiles"));
    }
  }
  if (keep && profile.files.empty() && profile.named.empty()) {
    fail(element, hadActions ? L"<profiles> has nothing left to clean" : L"<profiles> has nothing to clean");
  }
  if (!keep) return std::nullopt;
  return profile;
}

std::optional<FileAction> RuleFileReader::ReadFiles(const Element& element, const ProfileAction* profile,
                                                    Fault& fault) const {
  if (!CheckShape(element, {"folder", "masks", "scope", "local"}, fault)) return std::nullopt;
  FileAction files;
  files.where = Where(element);
  const PathRules folderRules = profile ? PathRules{PathPlace::kInProfile, PathWildcards::kAnyName, true}
                                        : PathRules{PathPlace::kMachine, PathWildcards::kAnyName};
  std::optional<std::wstring> folder = PathAttribute(element, "folder", folderRules, fault);
  if (!folder) return std::nullopt;
  files.folder = std::move(*folder);
  if (const std::optional<std::wstring> scope = Attribute(element, "scope")) {
    const std::optional<FileScope> known = ScopeNamed(*scope);
    if (!known) {
      fault.Set(element,
                L"<files> scope: " + Quoted(*scope) + L" is none of direct, recursive, remove-self and empty-folders");
      return std::nullopt;
    }
    files.scope = *known;
  }
  // Only the empty-folders scope works without masks.
  const bool needsMasks = files.scope != FileScope::kEmptyFolders;
  if (const std::optional<std::wstring> masks = Attribute(element, "masks")) {
    std::optional<std::vector<std::wstring>> list = MasksAttribute(element, *masks, fault);
    if (!list) return std::nullopt;
    if (list->empty() && needsMasks) {
      fault.Set(element, L"<files> masks: names no file mask");
      return std::nullopt;
    }
    files.masks = std::move(*list);
  } else if (needsMasks) {
    fault.Set(element, L"<files> has no \"masks\" attribute");
    return std::nullopt;
  }
  const std::optional<bool> local = TrueFalseAttribute(element, "local", false, fault);
  if (!local) return std::nullopt;
  if (*local) {
    if (profile == nullptr || profile->kind != ProfileKind::kMozilla) {
      fault.Set(element, L"<files> local=\"true\" is only allowed inside <profiles kind=\"mozilla\">");
      return std::nullopt;
    }
    if (profile->localRoot.empty()) {
      fault.Set(element, L"<files> local=\"true\" needs a local-root on its <profiles>");
      return std::nullopt;
    }
  }
  files.inLocalTwin = *local;
  return files;
}

std::optional<RegistryAction> RuleFileReader::ReadRegistry(const Element& element, Fault& fault) const {
  if (!CheckShape(element, {"key", "value", "all-values"}, fault)) return std::nullopt;
  RegistryAction registry;
  registry.where = Where(element);
  std::optional<RegistryKey> key = KeyAttribute(element, "key", true, fault);
  if (!key) return std::nullopt;
  registry.key = std::move(*key);
  registry.value = Attribute(element, "value");
  const std::optional<bool> allValues = TrueFalseAttribute(element, "all-values", false, fault);
  if (!allValues) return std::nullopt;
  if (*allValues && registry.value) {
    fault.Set(element, L"<registry> takes either value or all-values=\"true\", not both");
    return std::nullopt;
  }
  registry.allValues = *allValues;
  registry.wildcards = true;  // our files write "*" and "?" as wildcards in key names
  return registry;
}

std::optional<NamedAction> RuleFileReader::ReadNamedAction(const Element& element, bool inProfile, Fault& fault) const {
  const std::optional<std::wstring> name = Required(element, "name", fault);
  if (!name) return std::nullopt;
  const NamedActionKind* kind = FindNamedAction(*name);
  if (kind == nullptr) {
    fault.Set(element, L"unknown action " + Quoted(*name));
    return std::nullopt;
  }
  for (const xml::Attribute& attribute : element.Attributes()) {
    const std::wstring parameter = FromUtf8(attribute.name);
    if (attribute.name != "name" && attribute.name != "file" &&
        std::find(kind->parameters.begin(), kind->parameters.end(), parameter) == kind->parameters.end()) {
      fault.Set(element, L"action " + Quoted(kind->name) + L" takes no parameter " + Quoted(parameter));
      return std::nullopt;
    }
  }
  if (!NoChildElements(element, fault)) return std::nullopt;
  NamedAction named;
  named.name = kind->name;
  named.where = Where(element);
  // The folders may hold wildcards ("_side_profiles\*\Network\Cookies"); the file's own name
  // names one file in each.
  const PathRules fileRules{inProfile ? PathPlace::kInProfile : PathPlace::kMachine, PathWildcards::kFolderNames};
  std::optional<std::wstring> file = PathAttribute(element, "file", fileRules, fault);
  if (!file) return std::nullopt;
  named.file = std::move(*file);
  // Every parameter is needed: one left out would leave the action to guess how far to go.
  for (const std::wstring_view parameter : kind->parameters) {
    const std::optional<std::wstring> value = Attribute(element, ToUtf8(parameter));
    if (!value || value->empty()) {
      fault.Set(element, L"action " + Quoted(kind->name) + L" needs parameter " + Quoted(parameter));
      return std::nullopt;
    }
    named.parameters.emplace_back(parameter, *value);
  }
  return named;
}

std::optional<Exclusion> RuleFileReader::ReadExclusion(const Element& element, Fault& fault) const {
  if (!CheckShape(element, {"files", "folder", "key", "masks"}, fault)) return std::nullopt;
  if (CountAttributes(element, {"files", "folder", "key"}) != 1) {
    fault.Set(element, L"<exclude> takes exactly one of files, folder and key");
    return std::nullopt;
  }
  Exclusion exclusion;
  exclusion.where = Where(element);
  const std::optional<std::wstring> masks = Attribute(element, "masks");
  if (element.AttributeValue("key")) {
    if (masks) {
      fault.Set(element, L"<exclude> masks do not go with key");
      return std::nullopt;
    }
    std::optional<RegistryKey> key = KeyAttribute(element, "key", true, fault);
    if (!key) return std::nullopt;
    exclusion.kind = Exclusion::Kind::kRegistryKey;
    exclusion.key = std::move(*key);
    return exclusion;
  }
  const bool files = element.AttributeValue("files").has_value();
  exclusion.kind = files ? Exclusion::Kind::kFiles : Exclusion::Kind::kFolder;
  std::optional<std::wstring> folder =
      PathAttribute(element, files ? "files" : "folder", {PathPlace::kMachine, PathWildcards::kAnyName}, fault);
  if (!folder) return std::nullopt;
  exclusion.folder = std::move(*folder);
  if (masks) {
    std::optional<std::vector<std::wstring>> list = MasksAttribute(element, *masks, fault);
    if (!list) return std::nullopt;
    exclusion.masks = std::move(*list);
  }
  if (files && exclusion.masks.empty()) {
    fault.Set(element, L"<exclude files> needs the names of the files that stay in masks");
    return std::nullopt;
  }
  return exclusion;
}

bool RuleFileReader::ReadDetect(const Element& element, Detection& detection, Fault& fault) const {
  if (!CheckShape(element, {"key", "path"}, fault)) return false;
  if (CountAttributes(element, {"key", "path"}) != 1)
    return fault.Set(element, L"<detect> takes exactly one of key and path");
  if (element.AttributeValue("key")) {
    std::optional<RegistryKey> key = KeyAttribute(element, "key", false, fault);
    if (!key) return false;
    detection.keys.push_back(std::move(*key));
    return true;
  }
  std::optional<std::wstring> path =
      PathAttribute(element, "path", {PathPlace::kMachine, PathWildcards::kLastName}, fault);
  if (!path) return false;
  detection.paths.push_back(std::move(*path));
  return true;
}

bool RuleFileReader::ReadWindows(const Element& element, Detection& detection, Fault& fault) const {
  if (!CheckShape(element, {"min", "max"}, fault)) return false;
  if (CountAttributes(element, {"min", "max"}) == 0) return fault.Set(element, L"<windows> has neither min nor max");
  std::array<std::optional<WindowsVersion>, 2> versions;
  constexpr std::array<std::string_view, 2> names = {"min", "max"};
  for (size_t side = 0; side < 2; ++side) {
    const std::optional<std::wstring> text = Attribute(element, names[side]);
    if (!text) continue;
    versions[side] = ParsedAttribute<WindowsVersion>(element, names[side], *text, xmlrules::ParseWindowsVersion, fault);
    if (!versions[side]) return false;
  }
  if (versions[0] && versions[1] && *versions[1] < *versions[0])
    return fault.Set(element, L"<windows> max is below min");
  detection.minimumWindows = versions[0];
  detection.maximumWindows = versions[1];
  return true;
}

bool RuleFileReader::ReadRunning(const Element& element, Application& application, Fault& fault) const {
  if (!CheckShape(element, {"process", "lockfile"}, fault)) return false;
  if (CountAttributes(element, {"process", "lockfile"}) != 1) {
    return fault.Set(element, L"<running> takes exactly one of process and lockfile");
  }
  if (const std::optional<std::wstring> process = Attribute(element, "process")) {
    std::optional<std::wstring> name =
        ParsedAttribute<std::wstring>(element, "process", *process, xmlrules::ParseProcessName, fault);
    if (!name) return false;
    application.processes.push_back(std::move(*name));
    return true;
  }
  std::optional<std::wstring> lockFile =
      PathAttribute(element, "lockfile", {PathPlace::kMachine, PathWildcards::kAnyName}, fault);
  if (!lockFile) return false;
  application.lockFiles.push_back(std::move(*lockFile));
  return true;
}

std::optional<std::wstring> RuleFileReader::ReadWarning(const Element& element, Fault& fault) const {
  if (!CheckShape(element, {}, fault)) return std::nullopt;
  std::wstring text = WithoutLayout(FromUtf8(element.Text()));
  if (text.empty()) {
    fault.Set(element, L"<warning> has no text");
    return std::nullopt;
  }
  return text;
}

}  // namespace

RuleSet ReadXmlRules(std::string_view bytes, std::wstring_view fileName, RuleOrigin origin) {
  return RuleFileReader(fileName, origin).Read(bytes);
}

bool LooksLikeXml(std::string_view bytes) {
  const auto blank = [](unsigned unit) { return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n'; };
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    const bool bigEndian = bytes[0] == '\xFE';
    for (size_t at = 2; at + 1 < bytes.size(); at += 2) {
      const auto first = static_cast<unsigned char>(bytes[at]);
      const auto second = static_cast<unsigned char>(bytes[at + 1]);
      const unsigned unit = bigEndian ? (first << 8) | second : (second << 8) | first;
      if (!blank(unit)) return unit == '<';
    }
    return false;
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  for (const char c : bytes) {
    if (!blank(static_cast<unsigned char>(c))) return c == '<';
  }
  return false;
}

}  // namespace lumenor::rules
