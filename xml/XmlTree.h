// The element tree the XML reader builds and the writer writes: elements with a name,
// attributes in document order and children that are elements or text, all in UTF-8.
// Trees may be deeper than any stack: destroying and comparing them never recurses.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lumenor::xml {

class Node;

// Where an element's start tag begins in the document it was read from: 1-based line and
// column, counted as the reader counts them in its errors. Zero for an element built in code.
struct SourcePlace {
  size_t line = 0;
  size_t column = 0;
};

struct Attribute {
  std::string name;
  std::string value;

  friend bool operator==(const Attribute&, const Attribute&) = default;
};

class Element {
 public:
  explicit Element(std::string name);
  ~Element();
  Element(Element&& other) noexcept;
  Element& operator=(Element&& other) noexcept;
  Element(const Element&) = delete;
  Element& operator=(const Element&) = delete;

  const std::string& Name() const { return name_; }
  const SourcePlace& Place() const { return place_; }
  void SetPlace(SourcePlace place) { place_ = place; }
  const std::vector<Attribute>& Attributes() const { return attributes_; }
  const std::vector<Node>& Children() const { return children_; }
  // For code that edits a tree in place. The reader never gives two attributes of one
  // name, two text children side by side or an empty one; the writer refuses the first
  // and merges the others, so such a tree does not read back the same.
  std::vector<Attribute>& Attributes() { return attributes_; }
  std::vector<Node>& Children() { return children_; }

  // The attribute's value; nothing when the element has no such attribute.
  std::optional<std::string_view> AttributeValue(std::string_view name) const;
  // The first child element of that name, or null.
  const Element* FirstChild(std::string_view name) const;
  // Every child element of that name, in document order.
  std::vector<const Element*> ChildrenNamed(std::string_view name) const;
  // The text children joined: the element's own text, without that of its child elements.
  std::string Text() const;

  // Replaces the value of an attribute the element has, or adds it at the end.
  void SetAttribute(std::string_view name, std::string value);
  Element& AppendElement(std::string name);
  Element& AppendElement(Element child);
  // Adds to the text child at the end, if there is one, so text stays in one piece.
  void AppendText(std::string_view text);

 private:
  std::string name_;
  SourcePlace place_;
  std::vector<Attribute> attributes_;
  std::vector<Node> children_;
};

// A child of an element: an element or a run of text.
class Node {
 public:
  explicit Node(std::string text) : text_(std::move(text)) {}
  explicit Node(Element element) : element_(std::make_unique<Element>(std::move(element))) {}

  bool IsText() const { return element_ == nullptr; }
  // The text of a text node; empty for an element.
  const std::string& Text() const { return text_; }
  // The element of an element node; null for text.
  const Element* AsElement() const { return element_.get(); }
  Element* AsElement() { return element_.get(); }

 private:
  friend class Element;
  std::string text_;
  std::unique_ptr<Element> element_;
};

// Same name, same attributes in the same order, same children; where they were read
// from does not count.
bool operator==(const Element& left, const Element& right);

}  // namespace lumenor::xml
