#include "xml/XmlTree.h"

#include <utility>

namespace lumenor::xml {

Element::Element(std::string name) : name_(std::move(name)) {}

// Child elements are freed from a list of our own, one level at a time, so a deep tree
// does not recurse through the destructors.
Element::~Element() {
  std::vector<std::unique_ptr<Element>> detached;
  const auto detachChildren = [&detached](Element& element) {
    for (Node& child : element.children_) {
      if (child.element_) {
        detached.push_back(std::move(child.element_));
      }
    }
  };
  detachChildren(*this);
  while (!detached.empty()) {
    const std::unique_ptr<Element> element = std::move(detached.back());
    detached.pop_back();
    detachChildren(*element);
  }
}

Element::Element(Element&& other) noexcept = default;
Element& Element::operator=(Element&& other) noexcept = default;

std::optional<std::string_view> Element::AttributeValue(std::string_view name) const {
  for (const Attribute& attribute : attributes_) {
    if (attribute.name == name) {
      return attribute.value;
    }
  }
  return std::nullopt;
}

const Element* Element::FirstChild(std::string_view name) const {
  for (const Node& child : children_) {
    if (child.AsElement() != nullptr && child.AsElement()->Name() == name) {
      return child.AsElement();
    }
  }
  return nullptr;
}

std::vector<const Element*> Element::ChildrenNamed(std::string_view name) const {
  std::vector<const Element*> found;
  for (const Node& child : children_) {
    if (child.AsElement() != nullptr && child.AsElement()->Name() == name) {
      found.push_back(child.AsElement());
    }
  }
  return found;
}

std::string Element::Text() const {
  std::string text;
  for (const Node& child : children_) {
    text += child.Text();
  }
  return text;
}

void Element::SetAttribute(std::string_view name, std::string value) {
  for (Attribute& attribute : attributes_) {
    if (attribute.name == name) {
      attribute.value = std::move(value);
      return;
    }
  }
  attributes_.push_back({std::string(name), std::move(value)});
}

Element& Element::AppendElement(std::string name) { return AppendElement(Element(std::move(name))); }

Element& Element::AppendElement(Element child) {
  children_.emplace_back(std::move(child));
  return *children_.back().AsElement();
}

void Element::AppendText(std::string_view text) {
  if (text.empty()) {
    return;
  }
  if (!children_.empty() && children_.back().IsText()) {
    children_.back().text_ += text;
    return;
  }
  children_.emplace_back(std::string(text));
}

bool operator==(const Element& left, const Element& right) {
  std::vector<std::pair<const Element*, const Element*>> pending{{&left, &right}};
  while (!pending.empty()) {
    const auto [first, second] = pending.back();
    pending.pop_back();
    if (first->Name() != second->Name() || first->Attributes() != second->Attributes() ||
        first->Children().size() != second->Children().size()) {
      return false;
    }
    for (size_t index = 0; index < first->Children().size(); ++index) {
      const Node& one = first->Children()[index];
      const Node& other = second->Children()[index];
      if (one.IsText() != other.IsText() || one.Text() != other.Text()) {
        return false;
      }
      if (!one.IsText()) {
        pending.emplace_back(one.AsElement(), other.AsElement());
      }
    }
  }
  return true;
}

}  // namespace lumenor::xml
