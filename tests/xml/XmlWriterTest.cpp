// What the writer writes, that anything read and written reads back as the same tree,
// what it refuses, and that trees deeper than any stack are written, compared and freed
// without recursion.
#include "tests/xml/XmlTestSupport.h"

#include <gtest/gtest.h>

#include <string>

namespace lumenor::xml {
namespace {

using testing::ReadOrFail;
using testing::Utf16Document;

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

std::string WriteOrFail(const Element& root) {
  const WriteResult written = WriteXml(root);
  EXPECT_TRUE(written.Ok()) << written.error;
  return written.text;
}

TEST(XmlWriter, IndentsElementOnlyContentAndEscapesTextAndAttributes) {
  Element rules("rules");
  rules.SetAttribute("version", "1");
  rules.SetAttribute("version", "2");
  Element& app = rules.AppendElement("app");
  app.SetAttribute("name", "A&B \"x\" <y> 'z'");
  app.AppendElement("item").AppendText("a < b & c > d");
  app.AppendElement("none");
  rules.AppendElement("last").AppendText("  spaced  ");

  EXPECT_EQ(WriteOrFail(rules), std::string(kDeclaration) +
                                    "<rules version=\"2\">\n"
                                    "  <app name=\"A&amp;B &quot;x&quot; &lt;y&gt; 'z'\">\n"
                                    "    <item>a &lt; b &amp; c &gt; d</item>\n"
                                    "    <none/>\n"
                                    "  </app>\n"
                                    "  <last>  spaced  </last>\n"
                                    "</rules>\n");
}

TEST(XmlWriter, MixedContentStaysOnOneLineAndLoneBlanksBecomeReferences) {
  Element paragraph("p");
  paragraph.AppendText("Hello ");
  paragraph.AppendElement("b").AppendElement("i");
  paragraph.AppendText(" ");
  EXPECT_EQ(WriteOrFail(paragraph), std::string(kDeclaration) + "<p>Hello <b><i/></b> </p>\n");

  Element blanks("p");
  blanks.AppendElement("b");
  blanks.AppendText(" \t\n");
  EXPECT_EQ(WriteOrFail(blanks), std::string(kDeclaration) + "<p><b/>&#x20;&#x9;&#xA;</p>\n");
}

TEST(XmlWriter, CharactersADocumentCannotHoldAsThemselvesBecomeReferences) {
  Element root("a");
  root.SetAttribute("v", "tab\tline\nreturn\r");
  root.AppendText("return\r bell\x07 \xEF\xBF\xBE tab\t");
  EXPECT_EQ(WriteOrFail(root), std::string(kDeclaration) +
                                   "<a v=\"tab&#x9;line&#xA;return&#xD;\">return&#xD; bell&#x7; &#xFFFE; tab\t</a>\n");
}

TEST(XmlWriter, WhatWasReadReadsBackAsTheSameTree) {
  const std::string documents[] = {
      "<a>&lt;&amp;&gt;&quot;&apos; &#x1F600; &#233;</a>",
      "<a>x<![CDATA[<b>]]]]><![CDATA[>]]>y</a>",
      "<r\xC3\xA9gle nom=\"\xE6\x97\xA5\xE6\x9C\xAC\">\xD0\x9F\xD1\x80\xD0\xB8\xD0\xB2\xD0\xB5\xD1\x82</r\xC3\xA9gle>",
      "<p>  lead <b> inner </b> trail  </p>",
      "<p>\n  <b/>\n  text\n  <c/>\n</p>",
      "<p><b/>&#32;<c/>&#10;</p>",
      "<p><b/><![CDATA[ ]]></p>",
      "<p>  </p>",
      "<a v=\" x&#9;y&#10;z&#13; \" w='\"'>&#13;&#x1;&#xFFFE;\r\n</a>",
      "<a>\n  <b>\n    <c>text</c>\n  </b>\n  <d/>\n</a>",
      "<p>mixed <b>\n  <c/>\n  <d/>\n</b></p>",
      "<?xml version=\"1.0\"?><!-- c --><a><?pi x?>one<!-- c -->two</a><!-- c -->",
      "<a x=\"]]>\">]]&gt;</a>",
  };
  for (const std::string& document : documents) {
    SCOPED_TRACE(document);
    const Element first = ReadOrFail(document);
    const std::string written = WriteOrFail(first);
    EXPECT_EQ(ReadOrFail(written), first) << written;
    EXPECT_EQ(WriteOrFail(ReadOrFail(written)), written);
  }
  const Element fromUtf16 = ReadOrFail(Utf16Document(u"<a b=\"\u00E9\">\U0001F600\r\n</a>", true));
  EXPECT_EQ(ReadOrFail(WriteOrFail(fromUtf16)), fromUtf16);
}

TEST(XmlWriter, RefusesTreesThatWouldNotReadBackTheSame) {
  const auto errorOf = [](const Element& root) { return WriteXml(root).error; };
  EXPECT_EQ(errorOf(Element("a b")), "'a b' is not a valid element name");
  EXPECT_EQ(errorOf(Element("")), "'' is not a valid element name");

  Element badAttribute("a");
  badAttribute.SetAttribute("1x", "");
  EXPECT_EQ(errorOf(badAttribute), "'1x' in '<a>' is not a valid attribute name");

  Element twice("a");
  twice.Attributes() = {{"x", "1"}, {"y", "2"}, {"x", "3"}};
  EXPECT_EQ(errorOf(twice), "attribute 'x' appears twice in '<a>'");

  Element nul("a");
  nul.AppendElement("b").AppendText(std::string("x\0y", 3));
  EXPECT_EQ(errorOf(nul), "text in '<b>' holds U+0000");

  Element badBytes("a");
  badBytes.SetAttribute("v", "\xC3");
  EXPECT_EQ(errorOf(badBytes), "text in '<a>' is not valid UTF-8");
}

TEST(XmlWriter, TextChildrenSideBySideAreWrittenAsOne) {
  Element root("a");
  root.AppendText("one");
  root.AppendText(" two");
  ASSERT_EQ(root.Children().size(), 1u);
  root.Children().emplace_back(std::string(" three"));
  root.Children().emplace_back(std::string());
  EXPECT_EQ(ReadOrFail(WriteOrFail(root)).Text(), "one two three");
}

Element Chain(size_t depth) {
  Element root("e");
  Element* deepest = &root;
  for (size_t level = 1; level < depth; ++level) {
    deepest = &deepest->AppendElement("e");
  }
  return root;
}

TEST(XmlWriter, DeepTreesAreWrittenToTheReadersLimitComparedAndFreedWithoutRecursion) {
  const Element deepest = Chain(kMaxDepth);
  EXPECT_EQ(ReadOrFail(WriteOrFail(deepest)), deepest);

  // Far deeper than a thread's stack could follow by recursion.
  constexpr size_t kVeryDeep = 200'000;
  Element tooDeep = Chain(kVeryDeep);
  EXPECT_EQ(WriteXml(tooDeep).error, "'<e>' nests deeper than 256 elements, more than the reader accepts");
  const Element same = Chain(kVeryDeep);
  EXPECT_TRUE(tooDeep == same);
  tooDeep = Chain(2);
  EXPECT_FALSE(tooDeep == same);
}

}  // namespace
}  // namespace lumenor::xml
