// Writes an element tree as a UTF-8 XML document, with an XML declaration first and "\n"
// line ends, that ReadXml reads back as the same tree.
//
// Element-only content (child elements and no text) is indented, two spaces a level,
// which the reader drops again as layout. An element holding text and elements is
// written on one line as it stands; when all its text is blanks, they are written as
// character references, so the reader keeps them rather than take them for layout. Characters a document cannot hold as
// themselves (control characters, U+FFFE, U+FFFF), carriage returns, and in attribute
// values tabs and line feeds too, are written as references.
//
// A tree the reader could not have made is refused, not written wrongly: a name that is
// no XML name, two attributes of one name, text that is not UTF-8 or holds U+0000,
// elements nested deeper than the reader's limit, a document over its size limit. Text
// children side by side are written, and so read back, as one; an empty one vanishes.
#pragma once

#include "xml/XmlTree.h"

#include <string>

namespace lumenor::xml {

struct WriteResult {
  std::string text;   // the document, when it could be written
  std::string error;  // why not, otherwise

  bool Ok() const { return error.empty(); }
};

WriteResult WriteXml(const Element& root);

}  // namespace lumenor::xml
