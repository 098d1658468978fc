// What the reader refuses, and that each refusal names the line, the column (in
// characters) and the byte offset in the input as given.
#include "tests/xml/XmlTestSupport.h"

#include <gtest/gtest.h>

#include <string>

namespace lumenor::xml {
namespace {

using testing::Utf16Document;

struct Broken {
  std::string document;
  std::string expected;  // Describe() of the error
};

void ExpectRefusals(const std::vector<Broken>& cases) {
  for (const Broken& broken : cases) {
    SCOPED_TRACE(::testing::PrintToString(broken.document));
    const ReadResult result = ReadXml(broken.document);
    EXPECT_FALSE(result.Ok());
    EXPECT_EQ(Describe(result.error), broken.expected);
  }
}

TEST(XmlErrors, StructureErrorsPointAtTheTagAtFault) {
  ExpectRefusals({
      {"<app>\n <x></x>\n</item>", "line 3, column 1 (offset 15): '</item>' does not close '<app>'"},
      {"<app>\n  <item>", "line 2, column 3 (offset 8): '<item>' is not closed"},
      {"<a/>\n<b/>", "line 2, column 1 (offset 5): a second root element '<b>'"},
      {"<a/></a>", "line 1, column 5 (offset 4): '</a>' closes no open element"},
      {"<a/>x", "line 1, column 5 (offset 4): text after the root element"},
      {" x<a/>", "line 1, column 2 (offset 1): text before the root element"},
      {"<![CDATA[x]]><a/>", "line 1, column 1 (offset 0): CDATA outside the root element"},
      {"", "line 1, column 1 (offset 0): the document has no root element"},
      {"\n<!-- only -->", "line 2, column 14 (offset 14): the document has no root element"},
      {"<a", "line 1, column 1 (offset 0): '<a' is not closed by '>'"},
      {"<a x=\"1\"y=\"2\"/>", "line 1, column 9 (offset 8): expected a blank, '>' or '/>' in '<a>'"},
      {"< a/>", "line 1, column 2 (offset 1): '<' must be followed by an element name"},
      {"<a></ a>", "line 1, column 6 (offset 5): '</' must be followed by an element name"},
  });
}

TEST(XmlErrors, DocumentTypeDeclarationsAreRefusedWherever) {
  ExpectRefusals({
      {"<!DOCTYPE a [<!ENTITY x \"y\">]>\n<a>&x;</a>",
       "line 1, column 1 (offset 0): document type declarations are not accepted"},
      {"<?xml version=\"1.0\"?>\n<!DOCTYPE a SYSTEM \"a.dtd\"><a/>",
       "line 2, column 1 (offset 22): document type declarations are not accepted"},
      {"<a>\n<!DOCTYPE a></a>", "line 2, column 1 (offset 4): document type declarations are not accepted"},
      {"<a><!ELEMENT a ANY></a>", "line 1, column 4 (offset 3): unknown markup after '<!'"},
  });
}

TEST(XmlErrors, OnlyTheFiveEntitiesAndValidCharacterReferencesAreRead) {
  ExpectRefusals({
      {"<a>&nbsp;</a>", "line 1, column 4 (offset 3): unknown entity '&nbsp;'"},
      {"<a>AT&T</a>", "line 1, column 6 (offset 5): '&' must begin a reference such as '&amp;'"},
      {"<a>&amp</a>", "line 1, column 4 (offset 3): '&' must begin a reference such as '&amp;'"},
      {"<a>&#0;</a>", "line 1, column 4 (offset 3): '&#0;' names no valid character"},
      {"<a>&#x0;</a>", "line 1, column 4 (offset 3): '&#x0;' names no valid character"},
      {"<a>&#xD800;</a>", "line 1, column 4 (offset 3): '&#xD800;' names no valid character"},
      {"<a>&#57343;</a>", "line 1, column 4 (offset 3): '&#57343;' names no valid character"},
      {"<a>&#x110000;</a>", "line 1, column 4 (offset 3): '&#x110000;' names no valid character"},
      {"<a>&#99999999999999999999;</a>",
       "line 1, column 4 (offset 3): '&#99999999999999999999;' names no valid character"},
      {"<a>&#x;</a>", "line 1, column 4 (offset 3): a character reference needs digits and a closing ';'"},
      {"<a>&#65</a>", "line 1, column 4 (offset 3): a character reference needs digits and a closing ';'"},
      {"<a>&#X41;</a>", "line 1, column 4 (offset 3): a character reference needs digits and a closing ';'"},
      {"<a v=\"&bogus;\"/>", "line 1, column 7 (offset 6): unknown entity '&bogus;'"},
  });
}

TEST(XmlErrors, AttributesNeedQuotedValuesAndDistinctNames) {
  ExpectRefusals({
      {"<a x=\"1\" y=\"2\" x=\"3\"/>", "line 1, column 16 (offset 15): attribute 'x' appears twice"},
      {"<a x=1/>", "line 1, column 6 (offset 5): attribute 'x' needs '=' and a quoted value"},
      {"<a x/>", "line 1, column 5 (offset 4): attribute 'x' needs '=' and a quoted value"},
      {"<a x=\"<\"/>", "line 1, column 7 (offset 6): '<' is not allowed in an attribute value"},
      {"<a x='1/>", "line 1, column 6 (offset 5): the value of attribute 'x' is not closed"},
  });
  // Many attributes are checked through a set: a repeat far down is still found.
  std::string many = "<a";
  for (int index = 0; index < 100; ++index) {
    many += " n" + std::to_string(index) + "=\"\"";
  }
  const ReadResult repeated = ReadXml(many + " n42=\"\"/>");
  EXPECT_EQ(repeated.error.message, "attribute 'n42' appears twice");
  EXPECT_TRUE(ReadXml(many + "/>").Ok());
}

TEST(XmlErrors, CommentsCdataAndInstructionsMustBeClosedAndWellFormed) {
  ExpectRefusals({
      {"<a><!-- open</a>", "line 1, column 4 (offset 3): comment is not closed"},
      {"<a><!-- a -- b --></a>", "line 1, column 11 (offset 10): '--' is not allowed inside a comment"},
      {"<a><![CDATA[x</a>", "line 1, column 4 (offset 3): CDATA section is not closed"},
      {"<a>x]]>y</a>", "line 1, column 5 (offset 4): ']]>' is not allowed in text"},
      {"<a><?pi </a>", "line 1, column 4 (offset 3): '<?pi' is not closed by '?>'"},
      {"<a><? x?></a>", "line 1, column 6 (offset 5): '<?' must be followed by a name"},
      {" <?xml version=\"1.0\"?><a/>", "line 1, column 2 (offset 1): the XML declaration must come first"},
      {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>",
       "line 1, column 31 (offset 30): encoding 'ISO-8859-1' is not supported: use UTF-8 or UTF-16"},
  });
}

TEST(XmlErrors, BadBytesAndForbiddenCharactersAreRefused) {
  ExpectRefusals({
      {"<a>\xC3\x28</a>", "line 1, column 4 (offset 3): invalid UTF-8"},
      {"<a>\xC0\xAF</a>", "line 1, column 4 (offset 3): invalid UTF-8"},          // overlong '/'
      {"<a>\xED\xA0\x80</a>", "line 1, column 4 (offset 3): invalid UTF-8"},      // a surrogate
      {"<a>\xF4\x90\x80\x80</a>", "line 1, column 4 (offset 3): invalid UTF-8"},  // above U+10FFFF
      {"<a>\xE6\x97</a>", "line 1, column 4 (offset 3): invalid UTF-8"},          // cut short
      {"<a>x\x01</a>", "line 1, column 5 (offset 4): character U+0001 is not allowed"},
      {std::string("<a>\0</a>", 8), "line 1, column 4 (offset 3): character U+0000 is not allowed"},
      {"<a>\xEF\xBF\xBF</a>", "line 1, column 4 (offset 3): character U+FFFF is not allowed"},
  });
}

TEST(XmlErrors, ColumnsCountCharactersAndOffsetsCountTheInputsBytes) {
  ExpectRefusals({
      // Two-, three- and four-byte characters before the fault: column 7, offset 12.
      {"<a>\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80</b>", "line 1, column 7 (offset 12): '</b>' does not close '<a>'"},
      {"<a>\r\n<b>\r\n</a>", "line 3, column 1 (offset 10): '</a>' does not close '<b>'"},
      {"<a>\r<b>\r</a>", "line 3, column 1 (offset 8): '</a>' does not close '<b>'"},
      // The mark counts in the offset, not in the column.
      {"\xEF\xBB\xBF<a></b>", "line 1, column 4 (offset 6): '</b>' does not close '<a>'"},
      // UTF-16: two bytes a character, four beyond U+FFFF.
      {Utf16Document(u"<a>\U0001F600</b>", false), "line 1, column 5 (offset 12): '</b>' does not close '<a>'"},
      {Utf16Document(u"<a>\n\u00E9</b>", true), "line 2, column 2 (offset 12): '</b>' does not close '<a>'"},
      {Utf16Document(u"<a>\xD800</a>", false), "line 1, column 4 (offset 8): invalid UTF-16"},
      {Utf16Document(u"<a>\xDC00\xD800</a>", true), "line 1, column 4 (offset 8): invalid UTF-16"},
      {Utf16Document(u"<a/>", false) + "\n", "line 1, column 5 (offset 10): invalid UTF-16"},
      {Utf16Document(u"<a>\x0001</a>", false), "line 1, column 4 (offset 8): character U+0001 is not allowed"},
  });
}

}  // namespace
}  // namespace lumenor::xml
