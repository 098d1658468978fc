// What the reader makes of well-formed documents: the tree and its helpers, entities and
// references, CDATA, which blanks are layout, line ends, and every input encoding.
#include "tests/xml/XmlTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumenor::xml {
namespace {

using testing::ReadOrFail;
using testing::Utf16Document;

std::vector<std::string> TextsOf(const std::vector<const Element*>& elements) {
  std::vector<std::string> texts;
  for (const Element* element : elements) {
    texts.push_back(element->Text());
  }
  return texts;
}

TEST(XmlReader, ReadsElementsAttributesInDocumentOrderAndText) {
  const Element root = ReadOrFail(
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!-- rules for one application -->\n"
      "<rules version=\"2\" author='me'>\n"
      "  <app name=\"Firefox\" id=\"7\">\n"
      "    <item>Cache</item>\n"
      "    <item>Cookies</item>\n"
      "  </app>\n"
      "  <empty/>\n"
      "</rules>\n");

  EXPECT_EQ(root.Name(), "rules");
  EXPECT_EQ(root.Attributes(), (std::vector<Attribute>{{"version", "2"}, {"author", "me"}}));
  ASSERT_EQ(root.Children().size(), 2u);
  const Element* app = root.FirstChild("app");
  ASSERT_NE(app, nullptr);
  EXPECT_EQ(app->AttributeValue("name"), "Firefox");
  EXPECT_EQ(app->AttributeValue("id"), "7");
  EXPECT_EQ(app->AttributeValue("missing"), std::nullopt);
  EXPECT_EQ(TextsOf(app->ChildrenNamed("item")), (std::vector<std::string>{"Cache", "Cookies"}));
  EXPECT_TRUE(root.ChildrenNamed("item").empty());
  EXPECT_EQ(root.FirstChild("nothing"), nullptr);
  ASSERT_NE(root.FirstChild("empty"), nullptr);
  EXPECT_TRUE(root.FirstChild("empty")->Children().empty());
}

TEST(XmlReader, ReplacesTheFiveEntitiesAndCharacterReferences) {
  const Element root =
      ReadOrFail("<a title=\"&lt;&amp;&gt;&quot;&apos;\">&#65;&#x42;&#x1f600;&#233; &amp;lt; &#x10FFFF;</a>");
  EXPECT_EQ(root.AttributeValue("title"), "<&>\"'");
  EXPECT_EQ(root.Text(), "AB\xF0\x9F\x98\x80\xC3\xA9 &lt; \xF4\x8F\xBF\xBF");
}

TEST(XmlReader, CdataAndTextAroundCommentsJoinIntoOneTextNode) {
  // A CDATA section cannot hold "]]>"; writers split it over two sections.
  const Element root =
      ReadOrFail("<a>x<![CDATA[<b>&amp;]]]]><![CDATA[>]]>y<!-- note -->z<?tool data?>w<![CDATA[]]></a>");
  ASSERT_EQ(root.Children().size(), 1u);
  EXPECT_TRUE(root.Children()[0].IsText());
  EXPECT_EQ(root.Text(), "x<b>&amp;]]>yzw");
}

TEST(XmlReader, BlanksBetweenChildElementsAreLayoutOtherTextStaysWhole) {
  const Element layout = ReadOrFail("<a>\n  <b/>\n\t<c/>\n</a>");
  ASSERT_EQ(layout.Children().size(), 2u);
  EXPECT_FALSE(layout.Children()[0].IsText());
  EXPECT_FALSE(layout.Children()[1].IsText());

  const Element mixed = ReadOrFail("<p> Hello <b>big</b> <i>world</i>\n</p>");
  ASSERT_EQ(mixed.Children().size(), 5u);
  EXPECT_EQ(mixed.Children()[0].Text(), " Hello ");
  EXPECT_EQ(mixed.Children()[2].Text(), " ");
  EXPECT_EQ(mixed.Children()[4].Text(), "\n");

  EXPECT_EQ(ReadOrFail("<p>  </p>").Text(), "  ");

  // A blank written as a reference or in CDATA is meant: the element keeps all its text.
  const Element referenced = ReadOrFail("<p>\n <b/>&#32;<c/></p>");
  ASSERT_EQ(referenced.Children().size(), 4u);
  EXPECT_EQ(referenced.Children()[0].Text(), "\n ");
  EXPECT_EQ(referenced.Children()[2].Text(), " ");
  EXPECT_EQ(ReadOrFail("<p><b/><![CDATA[ ]]></p>").Children().size(), 2u);
}

TEST(XmlReader, LineEndsBecomeLineFeedsAndAttributeBlanksBecomeSpaces) {
  const Element root = ReadOrFail("<a v=\"x\r\ny\tz\nw&#10;&#9;\">1\r\n2\r3<![CDATA[\r\n]]></a>");
  EXPECT_EQ(root.AttributeValue("v"), "x y z w\n\t");
  EXPECT_EQ(root.Text(), "1\n2\n3\n");
}

TEST(XmlReader, NamesMayHoldNonAsciiLettersDotsDashesAndColons) {
  const Element root = ReadOrFail(
      "<r\xC3\xA9gle xml:lang=\"fr\" data-x.y=\"1\"><_a\xC2\xB7"
      "b/></r\xC3\xA9gle>");
  EXPECT_EQ(root.Name(), "r\xC3\xA9gle");
  EXPECT_EQ(root.AttributeValue("xml:lang"), "fr");
  EXPECT_EQ(root.AttributeValue("data-x.y"), "1");
  EXPECT_NE(root.FirstChild("_a\xC2\xB7"
                            "b"),
            nullptr);
}

TEST(XmlReader, Utf8WithAndWithoutMarkAndUtf16BothWaysGiveTheSameTree) {
  const std::string utf8 = "<a n=\"\xC3\xA9\">\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80</a>";
  const std::u16string utf16 = u"<a n=\"\u00E9\">\u65E5\u672C \U0001F600</a>";
  const Element expected = ReadOrFail(utf8);
  EXPECT_EQ(expected.Text(), "\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80");

  EXPECT_EQ(ReadOrFail("\xEF\xBB\xBF" + utf8), expected);
  EXPECT_EQ(ReadOrFail(Utf16Document(utf16, false)), expected);
  EXPECT_EQ(ReadOrFail(Utf16Document(utf16, true)), expected);
  EXPECT_EQ(ReadOrFail(Utf16Document(u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + utf16, false)), expected);
}

// Each element knows where its start tag begins, counted as errors are: the rule readers
// report a fault in an element at that place.
TEST(XmlReader, EveryElementKnowsTheLineAndColumnOfItsStartTag) {
  const auto placeOf = [](const Element* element) {
    return element == nullptr ? std::string("missing")
                              : std::to_string(element->Place().line) + ":" + std::to_string(element->Place().column);
  };
  const Element root = ReadOrFail(
      "<?xml version=\"1.0\"?>\r\n"
      "<rules>\r\n"
      "  <!-- <skipped/> -->\n"
      "  <a n=\"\xC3\xA9\xE2\x82\xAC\"><b/>\r"
      "\t<c\n"
      "     x=\"1\"/></a><![CDATA[<d/>]]><e/>\n"
      "</rules>");
  EXPECT_EQ(placeOf(&root), "2:1");
  const Element* a = root.FirstChild("a");
  EXPECT_EQ(placeOf(a), "4:3");
  ASSERT_NE(a, nullptr);
  EXPECT_EQ(placeOf(a->FirstChild("b")), "4:13") << "characters, not bytes";
  EXPECT_EQ(placeOf(a->FirstChild("c")), "5:2");
  EXPECT_EQ(placeOf(root.FirstChild("e")), "6:33");

  // A byte order mark takes no column; in UTF-16 columns still count characters.
  EXPECT_EQ(ReadOrFail("\xEF\xBB\xBF<a/>").Place().column, 1u);
  EXPECT_EQ(ReadOrFail("\xEF\xBB\xBF <a/>").Place().column, 2u);
  const Element utf16 = ReadOrFail(Utf16Document(u"<a>\n\U0001F600<b/></a>", false));
  EXPECT_EQ(placeOf(utf16.FirstChild("b")), "2:2");

  // Built in code: no place, and the place never counts in a comparison.
  Element built("rules");
  EXPECT_EQ(built.Place().line, 0u);
  EXPECT_EQ(ReadOrFail("\n\n<rules/>"), built);
}

TEST(XmlReader, NestsAsDeepAsTheLimitAndNoFurther) {
  const auto nested = [](size_t depth, std::string_view innermost = "") {
    std::string document;
    for (size_t level = 0; level < depth; ++level) {
      document += "<e>";
    }
    document += innermost;
    for (size_t level = 0; level < depth; ++level) {
      document += "</e>";
    }
    return document;
  };
  ASSERT_EQ(kMaxDepth, 256u);
  const ReadResult deepest = ReadXml(nested(256));
  ASSERT_TRUE(deepest.Ok()) << Describe(deepest.error);
  size_t depth = 1;
  for (const Element* element = &*deepest.root; element->FirstChild("e") != nullptr;
       element = element->FirstChild("e")) {
    ++depth;
  }
  EXPECT_EQ(depth, 256u);

  const ReadResult tooDeep = ReadXml(nested(257));
  ASSERT_FALSE(tooDeep.Ok());
  EXPECT_EQ(Describe(tooDeep.error), "line 1, column 769 (offset 768): '<e>' nests deeper than 256 elements");
  EXPECT_TRUE(ReadXml(nested(255, "<e/>")).Ok());
  EXPECT_EQ(ReadXml(nested(256, "<e/>")).error.message, "'<e>' nests deeper than 256 elements");
}

TEST(XmlReader, RefusesAnInputOverTheSizeLimitBeforeReadingIt) {
  ASSERT_EQ(kMaxInputBytes, 64u * 1024 * 1024);
  const std::string document = "<a>12345</a>";  // 12 bytes
  EXPECT_TRUE(ReadXml(document, {.maxInputBytes = 12}).Ok());
  const ReadResult refused = ReadXml(document, {.maxInputBytes = 11});
  ASSERT_FALSE(refused.Ok());
  EXPECT_EQ(Describe(refused.error), "line 1, column 1 (offset 0): the document is larger than 11 bytes");
  // The limit counts the bytes as given, mark included, not the converted text.
  const std::string utf16 = Utf16Document(u"<a/>", false);  // 10 bytes
  EXPECT_TRUE(ReadXml(utf16, {.maxInputBytes = 10}).Ok());
  EXPECT_FALSE(ReadXml(utf16, {.maxInputBytes = 9}).Ok());
  EXPECT_EQ(ReadXml(std::string(65, ' '), {.maxInputBytes = 64}).error.message, "the document is larger than 64 bytes");
}

}  // namespace
}  // namespace lumenor::xml
