// Helpers the XML tests share: documents in UTF-16, and trees read with a clear failure.
#pragma once

#include "xml/XmlReader.h"
#include "xml/XmlWriter.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

namespace lumenor::xml {

// A tree in a failure message: as the writer writes it.
inline void PrintTo(const Element& element, std::ostream* out) {
  const WriteResult written = WriteXml(element);
  *out << (written.Ok() ? written.text : "(unwritable: " + written.error + ")");
}

}  // namespace lumenor::xml

namespace lumenor::xml::testing {

// The document as UTF-16 bytes with its byte order mark.
inline std::string Utf16Document(std::u16string_view text, bool bigEndian) {
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char16_t unit : text) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

// The root of a document the test expects to read; a failure names the reader's error.
inline Element ReadOrFail(std::string_view document) {
  ReadResult result = ReadXml(document);
  if (!result.Ok()) {
    ADD_FAILURE() << Describe(result.error);
    return Element("failed");
  }
  return std::move(*result.root);
}

}  // namespace lumenor::xml::testing
