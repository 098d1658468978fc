// Reads an XML document into an element tree, or says where and why it cannot. Meant for
// the program's own files, and safe on hostile ones: no document type declaration (so no
// entity expansion), bounded size and nesting, and nothing that recurses.
//
// Encodings: UTF-8 with or without byte order mark; UTF-16 little or big endian with its
// mark. Invalid UTF-8 or UTF-16 is an error.
//
// What the tree holds:
// - Comments and processing instructions (the XML declaration too) are left out; text on
//   both sides of one joins into a single text node, as text and CDATA sections do.
// - Line ends in text become "\n"; in attribute values tabs and line ends become spaces
//   (written as character references, they stay as they were).
// - Whitespace between elements: in an element that holds child elements and no other
//   text than blanks (space, tab, line feed, carriage return written as themselves), that
//   text is layout and is dropped. Otherwise every text child stays exactly as written,
//   leading and trailing blanks included. A blank written as a character reference or in
//   CDATA counts as text, not layout, and keeps the element's text.
//
// Error positions: line and column are 1-based; the column counts characters (code
// points) from the start of the line, a byte order mark not included. The offset counts
// bytes from the start of the input as given, 0-based: a byte order mark counts, and a
// UTF-16 document is measured in its UTF-16 bytes. "\r\n", "\r" and "\n" each end a line.
// An input over the size limit is reported at line 1, column 1, offset 0.
#pragma once

#include "xml/XmlTree.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lumenor::xml {

inline constexpr size_t kMaxInputBytes = size_t{64} * 1024 * 1024;
inline constexpr size_t kMaxDepth = 256;

struct ReadLimits {
  size_t maxInputBytes = kMaxInputBytes;
  size_t maxDepth = kMaxDepth;  // the root element is at depth 1
};

struct XmlError {
  size_t line = 0;
  size_t column = 0;
  size_t offset = 0;
  std::string message;  // short plain English, such as "'</item>' does not close '<app>'"
};

// "line 12, column 7 (offset 301): '</item>' does not close '<app>'"
std::string Describe(const XmlError& error);

struct ReadResult {
  std::optional<Element> root;  // nothing when the document was refused
  XmlError error;               // why, when it was

  bool Ok() const { return root.has_value(); }
};

ReadResult ReadXml(std::string_view input, const ReadLimits& limits = {});

}  // namespace lumenor::xml
