// The XML reader and writer. A document the reader refuses is refused at a place that
// lies in the input, counted as the header says; one it accepts is a tree the reader could
// have made (valid names, no repeated attribute, text in one piece, nesting within the
// limit), which the writer writes and the reader reads back as the same tree, and which
// reads the same from UTF-16. A lower nesting limit refuses exactly the deeper documents.
#include "base/TextEncoding.h"
#include "fuzz/FuzzInput.h"
#include "xml/Unicode.h"
#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace {

using lumenor::xml::Element;
using lumenor::xml::ReadResult;
using lumenor::xml::XmlError;

constexpr size_t kLowDepth = 3;

std::string ShownBytes(std::string_view bytes) {
  std::string shown;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if (value >= 0x20 && value < 0x7F && value != '\\') {
      shown += byte;
    } else {
      char escape[8];
      (void)std::snprintf(escape, sizeof escape, "\\x%02x", value);
      shown += escape;
    }
  }
  return shown;
}

std::string ShownError(const XmlError& error) { return lumenor::xml::Describe(error); }

// Written apart from the reader on purpose: well-formed UTF-8 without U+0000.
bool IsCleanUtf8(std::string_view text) {
  size_t index = 0;
  while (index < text.size()) {
    const auto lead = static_cast<unsigned char>(text[index]);
    size_t length = 1;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead == 0) return false;
    if (lead < 0x80) {
      ++index;
      continue;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
      length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
      length = 3;
      low = lead == 0xE0 ? 0xA0 : 0x80;
      high = lead == 0xED ? 0x9F : 0xBF;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
      length = 4;
      low = lead == 0xF0 ? 0x90 : 0x80;
      high = lead == 0xF4 ? 0x8F : 0xBF;
    } else {
      return false;
    }
    if (text.size() - index < length) return false;
    for (size_t offset = 1; offset < length; ++offset) {
      const auto next = static_cast<unsigned char>(text[index + offset]);
      if (next < (offset == 1 ? low : 0x80) || next > (offset == 1 ? high : 0xBF)) return false;
    }
    index += length;
  }
  return true;
}

// Every element in document order with its depth (the root at 1), without recursion.
void EachElement(const Element& root, const std::function<void(const Element&, size_t)>& visit) {
  std::vector<std::pair<const Element*, size_t>> pending{{&root, 1}};
  while (!pending.empty()) {
    const auto [element, depth] = pending.back();
    pending.pop_back();
    visit(*element, depth);
    const auto& children = element->Children();
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      if (child->AsElement() != nullptr) pending.emplace_back(child->AsElement(), depth + 1);
    }
  }
}

std::vector<lumenor::xml::SourcePlace> Places(const Element& root) {
  std::vector<lumenor::xml::SourcePlace> places;
  EachElement(root, [&](const Element& element, size_t) { places.push_back(element.Place()); });
  return places;
}

// A tree the reader could have made; gives its depth.
size_t CheckTree(const Element& root, const std::string& shown) {
  size_t deepest = 0;
  lumenor::xml::SourcePlace previous{1, 1};
  EachElement(root, [&](const Element& element, size_t depth) {
    deepest = std::max(deepest, depth);
    FUZZ_REQUIRE(lumenor::xml::IsXmlName(element.Name()), shown);
    std::vector<std::string_view> names;
    for (const lumenor::xml::Attribute& attribute : element.Attributes()) {
      FUZZ_REQUIRE(lumenor::xml::IsXmlName(attribute.name), shown);
      FUZZ_REQUIRE(IsCleanUtf8(attribute.value), shown + " attribute " + attribute.name);
      names.push_back(attribute.name);
    }
    std::sort(names.begin(), names.end());
    FUZZ_REQUIRE(std::adjacent_find(names.begin(), names.end()) == names.end(), shown);
    bool afterText = false;
    for (const lumenor::xml::Node& child : element.Children()) {
      if (child.IsText()) {
        FUZZ_REQUIRE(!child.Text().empty() && !afterText, shown + " in <" + element.Name() + ">");
        FUZZ_REQUIRE(IsCleanUtf8(child.Text()), shown);
      }
      afterText = child.IsText();
    }
    // Start tags come in document order, each at a place of the document.
    const lumenor::xml::SourcePlace place = element.Place();
    FUZZ_REQUIRE(place.line >= 1 && place.column >= 1, shown);
    FUZZ_REQUIRE(
        place.line > previous.line || (place.line == previous.line && place.column >= previous.column),
        shown + " <" + element.Name() + "> at " + std::to_string(place.line) + ":" + std::to_string(place.column));
    previous = place;
  });
  FUZZ_REQUIRE(deepest <= lumenor::xml::kMaxDepth, shown);
  return deepest;
}

// The line and column of a byte offset in UTF-8 text, counted apart from the reader:
// "\r\n", "\r" and "\n" each end a line; the column counts code points.
std::pair<size_t, size_t> PlaceOf(std::string_view text, size_t offset) {
  size_t line = 1;
  size_t column = 1;
  for (size_t index = 0; index < offset && index < text.size(); ++index) {
    const char c = text[index];
    if (c == '\r' || (c == '\n' && (index == 0 || text[index - 1] != '\r'))) {
      ++line;
      column = 1;
    } else if (c != '\n' && (static_cast<unsigned char>(c) & 0xC0) != 0x80) {
      ++column;
    }
  }
  return {line, column};
}

void CheckError(std::string_view input, const XmlError& error, const std::string& shown) {
  const std::string detail = shown + " -> " + ShownError(error);
  FUZZ_REQUIRE(error.line >= 1 && error.column >= 1, detail);
  FUZZ_REQUIRE(error.offset <= input.size(), detail);
  FUZZ_REQUIRE(!error.message.empty(), detail);
  if (input.starts_with("\xFF\xFE") || input.starts_with("\xFE\xFF")) return;
  const size_t mark = input.starts_with("\xEF\xBB\xBF") ? 3 : 0;
  FUZZ_REQUIRE(error.offset >= mark || error.offset == 0, detail);
  const auto [line, column] = PlaceOf(input.substr(mark), error.offset - std::min(error.offset, mark));
  FUZZ_REQUIRE(error.line == line && error.column == column,
               detail + " but the offset is at " + std::to_string(line) + ":" + std::to_string(column));
}

// The document in UTF-16 with its mark, when it is well-formed UTF-8.
std::optional<std::string> AsUtf16(std::string_view input, bool bigEndian) {
  if (input.starts_with("\xFF\xFE") || input.starts_with("\xFE\xFF")) return std::nullopt;
  if (input.starts_with("\xEF\xBB\xBF")) input.remove_prefix(3);
  const std::wstring units = lumenor::FromUtf8(input);
  if (lumenor::ToUtf8(units) != input) return std::nullopt;
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const wchar_t unit : units) {
    const auto high = static_cast<char>((unit >> 8) & 0xFF);
    const auto low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

void CheckUtf16(std::string_view input, const ReadResult& asRead, const std::string& shown) {
  for (const bool bigEndian : {false, true}) {
    const std::optional<std::string> utf16 = AsUtf16(input, bigEndian);
    if (!utf16) return;
    const ReadResult again = lumenor::xml::ReadXml(*utf16);
    const std::string detail = shown + (bigEndian ? " as UTF-16BE" : " as UTF-16LE");
    FUZZ_REQUIRE(again.Ok() == asRead.Ok(), detail + " -> " + (again.Ok() ? "accepted" : ShownError(again.error)));
    if (asRead.Ok()) {
      FUZZ_REQUIRE(*again.root == *asRead.root, detail);
      const auto places = Places(*again.root);
      const auto expected = Places(*asRead.root);
      FUZZ_REQUIRE(std::equal(places.begin(), places.end(), expected.begin(), expected.end(),
                              [](const auto& one, const auto& other) {
                                return one.line == other.line && one.column == other.column;
                              }),
                   detail);
      continue;
    }
    FUZZ_REQUIRE(again.error.line == asRead.error.line && again.error.column == asRead.error.column &&
                     again.error.message == asRead.error.message,
                 detail + " -> " + ShownError(again.error) + " but " + ShownError(asRead.error));
    FUZZ_REQUIRE(again.error.offset <= utf16->size(), detail);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string shown = ShownBytes(input);
  const ReadResult asRead = lumenor::xml::ReadXml(input);
  const ReadResult low = lumenor::xml::ReadXml(input, {lumenor::xml::kMaxInputBytes, kLowDepth});
  if (!asRead.Ok()) {
    FUZZ_REQUIRE(!asRead.root.has_value(), shown);
    CheckError(input, asRead.error, shown);
    FUZZ_REQUIRE(!low.Ok(), shown);
    CheckUtf16(input, asRead, shown);
    return 0;
  }
  const size_t depth = CheckTree(*asRead.root, shown);
  FUZZ_REQUIRE(low.Ok() == (depth <= kLowDepth), shown + " is " + std::to_string(depth) + " deep");
  if (!low.Ok()) {
    CheckError(input, low.error, shown);
    FUZZ_REQUIRE(low.error.message.find("nests deeper than 3") != std::string::npos, ShownError(low.error));
  }
  if (!input.empty()) {
    const ReadResult tooLarge = lumenor::xml::ReadXml(input, {input.size() - 1, lumenor::xml::kMaxDepth});
    FUZZ_REQUIRE(!tooLarge.Ok() && tooLarge.error.line == 1 && tooLarge.error.column == 1 && tooLarge.error.offset == 0,
                 shown);
  }

  const lumenor::xml::WriteResult written = lumenor::xml::WriteXml(*asRead.root);
  FUZZ_REQUIRE(written.Ok(), shown + " not written: " + written.error);
  const ReadResult back = lumenor::xml::ReadXml(written.text);
  FUZZ_REQUIRE(back.Ok(), shown + " written as " + ShownBytes(written.text) + " -> " + ShownError(back.error));
  FUZZ_REQUIRE(*back.root == *asRead.root, shown + " written as " + ShownBytes(written.text));
  const lumenor::xml::WriteResult again = lumenor::xml::WriteXml(*back.root);
  FUZZ_REQUIRE(again.Ok() && again.text == written.text, shown + " written as " + ShownBytes(written.text));
  CheckUtf16(input, asRead, shown);
  return 0;
}
