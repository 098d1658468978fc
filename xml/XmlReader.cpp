#include "xml/XmlReader.h"

#include "xml/MessageText.h"
#include "xml/Unicode.h"

#include <algorithm>
#include <cstdio>
#include <unordered_set>
#include <utility>
#include <vector>

namespace lumenor::xml {

namespace {

constexpr size_t kFewAttributes = 8;
constexpr char32_t kBeyondUnicode = 0x110000;

std::string SizeText(size_t bytes) {
  constexpr size_t kMiB = size_t{1024} * 1024;
  if (bytes >= kMiB && bytes % kMiB == 0) {
    return std::to_string(bytes / kMiB) + " MiB";
  }
  return std::to_string(bytes) + " bytes";
}

std::string CodePointText(char32_t codePoint) {
  char text[16] = {};
  (void)std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned>(codePoint));
  return text;
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), [](char one, char other) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return lower(one) == lower(other);
  });
}

bool IsSupportedEncoding(std::string_view name) {
  for (std::string_view supported : {"UTF-8", "UTF-16", "UTF-16LE", "UTF-16BE", "US-ASCII"}) {
    if (EqualsIgnoringCase(name, supported)) {
      return true;
    }
  }
  return false;
}

int DigitValue(char c, bool hex) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  if (hex && c >= 'a' && c <= 'f') {
    return c - 'a' + 10;
  }
  if (hex && c >= 'A' && c <= 'F') {
    return c - 'A' + 10;
  }
  return -1;
}

// The UTF-8 text the parser reads, and how its positions map back to the input as given.
struct Source {
  std::string_view text;  // without the byte order mark
  bool fromUtf16 = false;
  size_t markBytes = 0;
};

// Line, column and input offset of places in the text, counted forward from the last
// place asked for, so that placing every element of a large document stays linear.
class PlaceCounter {
 public:
  explicit PlaceCounter(const Source& source) : source_(source), offset_(source.markBytes) {}

  // `position` must not lie before the last one asked for.
  XmlError At(size_t position) {
    for (; counted_ < position && counted_ < source_.text.size(); ++counted_) {
      const auto byte = static_cast<unsigned char>(source_.text[counted_]);
      const bool continuation = (byte & 0xC0) == 0x80;
      // "\r\n" ends one line: at its "\r", so that a place between the two is on the next.
      if (byte == '\r' || (byte == '\n' && !afterCarriageReturn_)) {
        ++line_;
        column_ = 1;
      } else if (byte != '\n' && !continuation) {
        ++column_;
      }
      afterCarriageReturn_ = byte == '\r';
      if (!source_.fromUtf16) {
        ++offset_;
      } else if (!continuation) {
        offset_ += byte >= 0xF0 ? 4 : 2;  // a character beyond U+FFFF took a surrogate pair
      }
    }
    return {line_, column_, offset_, {}};
  }

 private:
  const Source& source_;
  size_t counted_ = 0;
  size_t line_ = 1;
  size_t column_ = 1;
  size_t offset_ = 0;
  bool afterCarriageReturn_ = false;
};

XmlError ErrorAt(const Source& source, size_t position, std::string message) {
  XmlError error = PlaceCounter(source).At(position);
  error.message = std::move(message);
  return error;
}

std::optional<XmlError> CheckCharacters(const Source& source) {
  const std::string_view text = source.text;
  size_t position = 0;
  while (position < text.size()) {
    const auto byte = static_cast<unsigned char>(text[position]);
    if (byte >= 0x20 && byte < 0x80) {
      ++position;
      continue;
    }
    const DecodedCharacter character = DecodeUtf8(text, position);
    if (character.length == 0) {
      return ErrorAt(source, position, "invalid UTF-8");
    }
    if (!IsDocumentCharacter(character.codePoint)) {
      return ErrorAt(source, position, Joined({"character ", CodePointText(character.codePoint), " is not allowed"}));
    }
    position += character.length;
  }
  return std::nullopt;
}

// The attribute names of one tag, checked for repeats: a short list, or a hash set once
// a tag has many, so a tag with a million attributes is not read in quadratic time.
class AttributeNames {
 public:
  bool Add(std::string_view name) {
    if (!many_.empty()) {
      return many_.insert(name).second;
    }
    if (std::find(few_.begin(), few_.end(), name) != few_.end()) {
      return false;
    }
    few_.push_back(name);
    if (few_.size() > kFewAttributes) {
      many_.insert(few_.begin(), few_.end());
    }
    return true;
  }

 private:
  std::vector<std::string_view> few_;
  std::unordered_set<std::string_view> many_;
};

class Reader {
 public:
  Reader(const Source& source, const ReadLimits& limits)
      : source_(source), text_(source.text), limits_(limits), places_(source) {}

  ReadResult Read();

 private:
  struct OpenElement {
    Element element;
    size_t tagStart = 0;
    bool hasChildElement = false;
    bool hasText = false;  // text that is more than layout
  };

  bool Fail(size_t position, std::string message) {
    error_ = ErrorAt(source_, position, std::move(message));
    return false;
  }
  bool AtEnd() const { return position_ >= text_.size(); }
  bool LooksAt(std::string_view what) const { return text_.substr(position_).starts_with(what); }
  bool SkipBlanks();
  std::string_view ReadName();

  bool ReadText();
  bool ReadReference(std::string& out);
  bool ReadCdata();
  bool ReadComment();
  bool ReadProcessingInstruction();
  bool CheckDeclaredEncoding(size_t end);
  bool ReadStartTag();
  bool ReadAttribute(Element& element, AttributeNames& names);
  bool ReadEndTag();
  void FlushText();
  void CloseElement();

  const Source& source_;
  std::string_view text_;
  ReadLimits limits_;
  PlaceCounter places_;
  size_t position_ = 0;
  std::vector<OpenElement> open_;
  std::optional<Element> root_;
  std::string pendingText_;
  bool pendingHasText_ = false;
  std::optional<XmlError> error_;
};

ReadResult Reader::Read() {
  while (!error_ && !AtEnd()) {
    if (text_[position_] != '<') {
      ReadText();
    } else if (LooksAt("<!--")) {
      ReadComment();
    } else if (LooksAt("<?")) {
      ReadProcessingInstruction();
    } else if (LooksAt("<![CDATA[")) {
      ReadCdata();
    } else if (LooksAt("<!DOCTYPE")) {
      Fail(position_, "document type declarations are not accepted");
    } else if (LooksAt("<!")) {
      Fail(position_, "unknown markup after '<!'");
    } else if (LooksAt("</")) {
      ReadEndTag();
    } else {
      ReadStartTag();
    }
  }
  if (!error_ && !open_.empty()) {
    Fail(open_.back().tagStart, Joined({"'<", Quoted(open_.back().element.Name()), ">' is not closed"}));
  }
  if (!error_ && !root_) {
    Fail(position_, "the document has no root element");
  }
  if (error_) {
    return {std::nullopt, std::move(*error_)};
  }
  return {std::move(root_), {}};
}

bool Reader::SkipBlanks() {
  const size_t start = position_;
  while (!AtEnd() && IsBlank(text_[position_])) {
    ++position_;
  }
  return position_ != start;
}

std::string_view Reader::ReadName() {
  const size_t start = position_;
  while (!AtEnd()) {
    const DecodedCharacter character = DecodeUtf8(text_, position_);
    const bool fits =
        position_ == start ? IsNameStartCharacter(character.codePoint) : IsNameCharacter(character.codePoint);
    if (character.length == 0 || !fits) {
      break;
    }
    position_ += character.length;
  }
  return text_.substr(start, position_ - start);
}

bool Reader::ReadText() {
  if (open_.empty()) {
    SkipBlanks();
    if (!AtEnd() && text_[position_] != '<') {
      return Fail(position_, root_ ? "text after the root element" : "text before the root element");
    }
    return true;
  }
  while (!AtEnd() && text_[position_] != '<') {
    const char c = text_[position_];
    if (c == '&') {
      if (!ReadReference(pendingText_)) {
        return false;
      }
      pendingHasText_ = true;
    } else if (c == '\r') {
      pendingText_ += '\n';
      position_ += LooksAt("\r\n") ? 2 : 1;
    } else if (c == ']' && LooksAt("]]>")) {
      return Fail(position_, "']]>' is not allowed in text");
    } else {
      pendingHasText_ = pendingHasText_ || !IsBlank(c);
      pendingText_ += c;
      ++position_;
    }
  }
  return true;
}

bool Reader::ReadReference(std::string& out) {
  const size_t start = position_;
  ++position_;
  if (!AtEnd() && text_[position_] == '#') {
    ++position_;
    const bool hex = !AtEnd() && text_[position_] == 'x';
    if (hex) {
      ++position_;
    }
    char32_t value = 0;
    size_t digits = 0;
    for (; !AtEnd() && DigitValue(text_[position_], hex) >= 0; ++position_, ++digits) {
      const auto digit = static_cast<char32_t>(DigitValue(text_[position_], hex));
      value = std::min<char32_t>(value * (hex ? 16 : 10) + digit, kBeyondUnicode);
    }
    if (digits == 0 || AtEnd() || text_[position_] != ';') {
      return Fail(start, "a character reference needs digits and a closing ';'");
    }
    ++position_;
    if (!IsReferenceableCharacter(value)) {
      return Fail(start, Joined({"'", Quoted(text_.substr(start, position_ - start)), "' names no valid character"}));
    }
    AppendUtf8(out, value);
    return true;
  }
  const std::string_view name = ReadName();
  if (name.empty() || AtEnd() || text_[position_] != ';') {
    return Fail(start, "'&' must begin a reference such as '&amp;'");
  }
  ++position_;
  static constexpr std::pair<std::string_view, char> kEntities[] = {
      {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};
  for (const auto& [entity, character] : kEntities) {
    if (name == entity) {
      out += character;
      return true;
    }
  }
  return Fail(start, Joined({"unknown entity '&", Quoted(name), ";'"}));
}

bool Reader::ReadCdata() {
  const size_t start = position_;
  if (open_.empty()) {
    return Fail(start, "CDATA outside the root element");
  }
  const size_t end = text_.find("]]>", start);
  if (end == std::string_view::npos) {
    return Fail(start, "CDATA section is not closed");
  }
  constexpr size_t kOpening = std::string_view("<![CDATA[").size();
  for (position_ = start + kOpening; position_ < end; ++position_) {
    const char c = text_[position_];
    if (c == '\r') {
      pendingText_ += '\n';
      if (text_[position_ + 1] == '\n') {
        ++position_;
      }
    } else {
      pendingText_ += c;
    }
    pendingHasText_ = true;
  }
  position_ = end + 3;
  return true;
}

bool Reader::ReadComment() {
  const size_t start = position_;
  const size_t dashes = text_.find("--", start + 4);
  if (dashes == std::string_view::npos) {
    return Fail(start, "comment is not closed");
  }
  if (dashes + 2 == text_.size() || text_[dashes + 2] != '>') {
    return Fail(dashes, "'--' is not allowed inside a comment");
  }
  position_ = dashes + 3;
  return true;
}

bool Reader::ReadProcessingInstruction() {
  const size_t start = position_;
  position_ += 2;
  const std::string_view target = ReadName();
  if (target.empty()) {
    return Fail(position_, "'<?' must be followed by a name");
  }
  if (!AtEnd() && !IsBlank(text_[position_]) && !LooksAt("?>")) {
    return Fail(position_, Joined({"expected a blank or '?>' after '<?", Quoted(target), "'"}));
  }
  const size_t end = text_.find("?>", position_);
  if (end == std::string_view::npos) {
    return Fail(start, Joined({"'<?", Quoted(target), "' is not closed by '?>'"}));
  }
  if (EqualsIgnoringCase(target, "xml")) {
    if (start != 0) {
      return Fail(start, "the XML declaration must come first");
    }
    if (!CheckDeclaredEncoding(end)) {
      return false;
    }
  }
  position_ = end + 2;
  return true;
}

// The declaration's encoding, when it names one, must be one this reader decodes: a file
// saved in another code page would otherwise be misread without a word.
bool Reader::CheckDeclaredEncoding(size_t end) {
  const std::string_view declaration = text_.substr(position_, end - position_);
  size_t at = declaration.find("encoding");
  if (at == std::string_view::npos) {
    return true;
  }
  at += std::string_view("encoding").size();
  while (at < declaration.size() && IsBlank(declaration[at])) {
    ++at;
  }
  if (at == declaration.size() || declaration[at] != '=') {
    return true;
  }
  ++at;
  while (at < declaration.size() && IsBlank(declaration[at])) {
    ++at;
  }
  if (at == declaration.size() || (declaration[at] != '"' && declaration[at] != '\'')) {
    return true;
  }
  const size_t close = declaration.find(declaration[at], at + 1);
  if (close == std::string_view::npos) {
    return true;
  }
  const std::string_view encoding = declaration.substr(at + 1, close - at - 1);
  if (!IsSupportedEncoding(encoding)) {
    return Fail(position_ + at + 1,
                Joined({"encoding '", Quoted(encoding), "' is not supported: use UTF-8 or UTF-16"}));
  }
  return true;
}

bool Reader::ReadStartTag() {
  const size_t start = position_;
  ++position_;
  const std::string_view name = ReadName();
  if (name.empty()) {
    return Fail(position_, "'<' must be followed by an element name");
  }
  if (open_.empty() && root_) {
    return Fail(start, Joined({"a second root element '<", Quoted(name), ">'"}));
  }
  if (open_.size() >= limits_.maxDepth) {
    return Fail(start,
                Joined({"'<", Quoted(name), ">' nests deeper than ", std::to_string(limits_.maxDepth), " elements"}));
  }
  FlushText();
  OpenElement opened{Element(std::string(name)), start};
  const XmlError place = places_.At(start);
  opened.element.SetPlace({place.line, place.column});
  AttributeNames names;
  while (true) {
    const bool blank = SkipBlanks();
    if (AtEnd()) {
      return Fail(start, Joined({"'<", Quoted(name), "' is not closed by '>'"}));
    }
    if (text_[position_] == '>') {
      ++position_;
      open_.push_back(std::move(opened));
      return true;
    }
    if (LooksAt("/>")) {
      position_ += 2;
      open_.push_back(std::move(opened));
      CloseElement();
      return true;
    }
    if (!blank) {
      return Fail(position_, Joined({"expected a blank, '>' or '/>' in '<", Quoted(name), ">'"}));
    }
    if (!ReadAttribute(opened.element, names)) {
      return false;
    }
  }
}

bool Reader::ReadAttribute(Element& element, AttributeNames& names) {
  const size_t nameStart = position_;
  const std::string_view name = ReadName();
  if (name.empty()) {
    return Fail(position_, Joined({"expected an attribute name in '<", Quoted(element.Name()), ">'"}));
  }
  SkipBlanks();
  const bool hasEquals = !AtEnd() && text_[position_] == '=';
  if (hasEquals) {
    ++position_;
    SkipBlanks();
  }
  if (!hasEquals || AtEnd() || (text_[position_] != '"' && text_[position_] != '\'')) {
    return Fail(position_, Joined({"attribute '", Quoted(name), "' needs '=' and a quoted value"}));
  }
  const char quote = text_[position_];
  const size_t valueStart = position_;
  ++position_;
  std::string value;
  while (true) {
    if (AtEnd()) {
      return Fail(valueStart, Joined({"the value of attribute '", Quoted(name), "' is not closed"}));
    }
    const char c = text_[position_];
    if (c == quote) {
      ++position_;
      break;
    }
    if (c == '<') {
      return Fail(position_, "'<' is not allowed in an attribute value");
    }
    if (c == '&') {
      if (!ReadReference(value)) {
        return false;
      }
      continue;
    }
    if (c == '\r' && LooksAt("\r\n")) {
      ++position_;
      continue;
    }
    value += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
    ++position_;
  }
  if (!names.Add(name)) {
    return Fail(nameStart, Joined({"attribute '", Quoted(name), "' appears twice"}));
  }
  element.Attributes().push_back({std::string(name), std::move(value)});
  return true;
}

bool Reader::ReadEndTag() {
  const size_t start = position_;
  position_ += 2;
  const std::string_view name = ReadName();
  if (name.empty()) {
    return Fail(position_, "'</' must be followed by an element name");
  }
  SkipBlanks();
  if (AtEnd() || text_[position_] != '>') {
    return Fail(position_, Joined({"expected '>' to end '</", Quoted(name), ">'"}));
  }
  ++position_;
  if (open_.empty()) {
    return Fail(start, Joined({"'</", Quoted(name), ">' closes no open element"}));
  }
  if (open_.back().element.Name() != name) {
    return Fail(start,
                Joined({"'</", Quoted(name), ">' does not close '<", Quoted(open_.back().element.Name()), ">'"}));
  }
  FlushText();
  CloseElement();
  return true;
}

void Reader::FlushText() {
  if (!pendingText_.empty() && !open_.empty()) {
    OpenElement& parent = open_.back();
    parent.element.AppendText(pendingText_);
    parent.hasText = parent.hasText || pendingHasText_;
  }
  pendingText_.clear();
  pendingHasText_ = false;
}

void Reader::CloseElement() {
  OpenElement closed = std::move(open_.back());
  open_.pop_back();
  if (closed.hasChildElement && !closed.hasText) {
    std::vector<Node>& children = closed.element.Children();
    std::erase_if(children, [](const Node& child) { return child.IsText(); });
  }
  if (open_.empty()) {
    root_ = std::move(closed.element);
    return;
  }
  open_.back().element.AppendElement(std::move(closed.element));
  open_.back().hasChildElement = true;
}

}  // namespace

std::string Describe(const XmlError& error) {
  return Joined({"line ", std::to_string(error.line), ", column ", std::to_string(error.column), " (offset ",
                 std::to_string(error.offset), "): ", error.message});
}

ReadResult ReadXml(std::string_view input, const ReadLimits& limits) {
  if (input.size() > limits.maxInputBytes) {
    return {std::nullopt, {1, 1, 0, Joined({"the document is larger than ", SizeText(limits.maxInputBytes)})}};
  }
  Source source;
  std::string converted;
  if (input.starts_with("\xEF\xBB\xBF")) {
    source.markBytes = 3;
    source.text = input.substr(3);
  } else if (input.starts_with("\xFF\xFE") || input.starts_with("\xFE\xFF")) {
    source.markBytes = 2;
    source.fromUtf16 = true;
    Utf16Conversion conversion = Utf16ToUtf8(input.substr(2), input[0] == '\xFE');
    converted = std::move(conversion.text);
    source.text = converted;
    if (!conversion.ok) {
      return {std::nullopt, ErrorAt(source, converted.size(), "invalid UTF-16")};
    }
  } else {
    source.text = input;
  }
  if (std::optional<XmlError> error = CheckCharacters(source)) {
    return {std::nullopt, std::move(*error)};
  }
  return Reader(source, limits).Read();
}

}  // namespace lumenor::xml
