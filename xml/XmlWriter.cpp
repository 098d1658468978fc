#include "xml/XmlWriter.h"

#include "xml/MessageText.h"
#include "xml/Unicode.h"
#include "xml/XmlReader.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

namespace lumenor::xml {

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view kIndent = "  ";

void AppendReference(std::string& out, char32_t codePoint) {
  char reference[16] = {};
  (void)std::snprintf(reference, sizeof reference, "&#x%X;", static_cast<unsigned>(codePoint));
  out += reference;
}

bool IsBlankText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return IsBlank(c); });
}

enum class Place { kText, kBlankText, kAttribute };

class Writer {
 public:
  WriteResult Write(const Element& root);

 private:
  struct Frame {
    const Element* element;
    size_t nextChild;
    size_t depth;
    bool indented;           // children on lines of their own
    bool mixed;              // text and elements: everything below is written as it stands
    bool blankTextIsLayout;  // how the reader would take its text: blanks must be references
  };

  bool Fail(std::string message) {
    error_ = std::move(message);
    return false;
  }
  bool Open(const Element& element, size_t depth, bool insideMixed);
  bool WriteStartTag(const Element& element);
  bool WriteEscaped(std::string_view text, Place place, const Element& owner);
  void NewLine(size_t depth);

  std::string out_;
  std::string error_;
  std::vector<Frame> open_;
};

WriteResult Writer::Write(const Element& root) {
  out_ = kDeclaration;
  if (!Open(root, 0, false)) {
    return {{}, error_};
  }
  while (!open_.empty()) {
    Frame& frame = open_.back();
    const std::vector<Node>& children = frame.element->Children();
    if (frame.nextChild == children.size()) {
      if (frame.indented) {
        NewLine(frame.depth);
      }
      out_ += "</";
      out_ += frame.element->Name();
      out_ += '>';
      open_.pop_back();
      continue;
    }
    const Node& child = children[frame.nextChild++];
    if (child.IsText()) {
      const Place place = frame.blankTextIsLayout ? Place::kBlankText : Place::kText;
      if (!WriteEscaped(child.Text(), place, *frame.element)) {
        return {{}, error_};
      }
      continue;
    }
    const Frame parent = frame;  // Open() may move the frames
    if (parent.indented) {
      NewLine(parent.depth + 1);
    }
    if (!Open(*child.AsElement(), parent.depth + 1, parent.mixed)) {
      return {{}, error_};
    }
  }
  out_ += '\n';
  if (out_.size() > kMaxInputBytes) {
    return {{}, "the document would be larger than the reader accepts"};
  }
  return {std::move(out_), {}};
}

bool Writer::Open(const Element& element, size_t depth, bool insideMixed) {
  if (depth >= kMaxDepth) {
    return Fail(Joined({"'<", Quoted(element.Name()), ">' nests deeper than ", std::to_string(kMaxDepth),
                        " elements, more than the reader accepts"}));
  }
  if (!WriteStartTag(element)) {
    return false;
  }
  const std::vector<Node>& children = element.Children();
  if (children.empty()) {
    out_ += "/>";
    return true;
  }
  out_ += '>';
  const bool hasElements = std::any_of(children.begin(), children.end(), [](const Node& c) { return !c.IsText(); });
  const bool hasText = std::any_of(children.begin(), children.end(), [](const Node& c) { return c.IsText(); });
  const bool onlyBlankText =
      std::all_of(children.begin(), children.end(), [](const Node& c) { return !c.IsText() || IsBlankText(c.Text()); });
  const bool mixed = insideMixed || (hasElements && hasText);
  open_.push_back({&element, 0, depth, !mixed && hasElements, mixed, hasElements && onlyBlankText});
  return true;
}

bool Writer::WriteStartTag(const Element& element) {
  if (!IsXmlName(element.Name())) {
    return Fail(Joined({"'", Quoted(element.Name()), "' is not a valid element name"}));
  }
  std::vector<std::string_view> names;
  for (const Attribute& attribute : element.Attributes()) {
    if (!IsXmlName(attribute.name)) {
      return Fail(
          Joined({"'", Quoted(attribute.name), "' in '<", Quoted(element.Name()), ">' is not a valid attribute name"}));
    }
    names.push_back(attribute.name);
  }
  std::sort(names.begin(), names.end());
  if (const auto repeated = std::adjacent_find(names.begin(), names.end()); repeated != names.end()) {
    return Fail(Joined({"attribute '", Quoted(*repeated), "' appears twice in '<", Quoted(element.Name()), ">'"}));
  }
  out_ += '<';
  out_ += element.Name();
  for (const Attribute& attribute : element.Attributes()) {
    out_ += ' ';
    out_ += attribute.name;
    out_ += "=\"";
    if (!WriteEscaped(attribute.value, Place::kAttribute, element)) {
      return false;
    }
    out_ += '"';
  }
  return true;
}

bool Writer::WriteEscaped(std::string_view text, Place place, const Element& owner) {
  size_t position = 0;
  while (position < text.size()) {
    const DecodedCharacter character = DecodeUtf8(text, position);
    if (character.length == 0 || character.codePoint == 0) {
      const std::string_view what = character.length == 0 ? "is not valid UTF-8" : "holds U+0000";
      return Fail(Joined({"text in '<", Quoted(owner.Name()), ">' ", what}));
    }
    const char32_t c = character.codePoint;
    const bool blank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
    if (c == '&') {
      out_ += "&amp;";
    } else if (c == '<') {
      out_ += "&lt;";
    } else if (c == '>') {
      out_ += "&gt;";
    } else if (c == '"' && place == Place::kAttribute) {
      out_ += "&quot;";
    } else if (c == '\r' || !IsDocumentCharacter(c) || (blank && place == Place::kBlankText) ||
               ((c == '\t' || c == '\n') && place == Place::kAttribute)) {
      AppendReference(out_, c);
    } else {
      out_.append(text.substr(position, character.length));
    }
    position += character.length;
  }
  return true;
}

void Writer::NewLine(size_t depth) {
  out_ += '\n';
  for (size_t level = 0; level < depth; ++level) {
    out_ += kIndent;
  }
}

}  // namespace

WriteResult WriteXml(const Element& root) { return Writer().Write(root); }

}  // namespace lumenor::xml
