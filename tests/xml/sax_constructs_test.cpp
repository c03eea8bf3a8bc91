// The parser's single constructs: names, tags, attributes.

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "xml/attributes.h"
#include "xml/character_class.h"
#include "xml/recording_handler.h"

namespace {

using Events = std::vector<std::string>;
using ParseRetType = SimpleSAXParser::ParseRetType;

/// A fixture for tests of the parser's single steps.
class SaxSteps : public testing::Test {
 protected:
  RecordingHandler handler;
  SimpleSAXParser parser{handler};
  attributes attrs;
  std::size_t position = 0;
  std::string_view name;
  std::string value;
  bool isEmpty = false;
};

std::string withAttribute(const std::string& name) {
  return "<a " + name + "=\"1\"";
}

}  // namespace

TEST(CharacterClass, IsCorrectForEveryByte) {
  const std::string letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const bool isSpace = byte == 9 || byte == 10 || byte == 13 || byte == 32;
    const bool isStart = byte != 0 && (letters + ":_").find(c) != std::string::npos;
    const bool isPart = byte != 0 && (letters + ":_-.0123456789").find(c) != std::string::npos;
    EXPECT_EQ(xml::isOf(xml::WhiteSpace, c), isSpace) << byte;
    EXPECT_EQ(xml::isOf(xml::NameStart, c), isStart) << byte;
    EXPECT_EQ(xml::isOf(xml::NamePart, c), isPart) << byte;
  }
}

TEST(SaxNames, MayHaveLettersDigitsAndFourSigns) {
  EXPECT_EQ(parse("<:a-b.c_9:/>").events, (Events{"<:a-b.c_9:", ">:a-b.c_9:"}));
  EXPECT_EQ(parse("<_></_>").events, (Events{"<_", ">_"}));
}

TEST(SaxNames, MustStartWithALetterColonOrUnderscore) {
  EXPECT_EQ(parse("<a><-b><.c><9d></a>").events,
            (Events{"<a", "\"-b>\" 3", "\".c>\" 3", "\"9d>\" 3", ">a"}));
}

TEST(SaxNames, AreReservedInSevenSpellingsOfXml) {
  for (const std::string prefix : {"xml", "XML", "Xml", "XMl", "xML", "xmL", "XmL"}) {
    for (const std::string rest : {"", "foo", ":a"}) {
      const std::string name = std::string(prefix).append(rest);
      EXPECT_EQ(parse("<" + name + "/>").result, -1) << name;
    }
    EXPECT_EQ(parse("<a" + prefix + "/>").result, 0) << prefix;
    const std::string tag = withAttribute(prefix);
    EXPECT_EQ(parse(tag + "/>").events, (Events{tag, ">a"}));
  }
}

TEST(SaxNames, MayStartWithTheEighthSpelling) {
  EXPECT_EQ(parse("<xMl>1</xMl>").events, (Events{"<xMl", "\"1\" 1", ">xMl"}));
  EXPECT_EQ(parse("<xMlfoo/>").events, (Events{"<xMlfoo", ">xMlfoo"}));
}

TEST(SaxNames, MayBeShorterThanTheReservedPrefix) {
  EXPECT_EQ(parse("<x/>").result, 0);
  EXPECT_EQ(parse("<xm/>").result, 0);
  EXPECT_EQ(parse("<xm").events, (Events{"<xm"}));
}

TEST(SaxOpenTag, MayHaveWhiteSpaceBetweenItsParts) {
  EXPECT_EQ(parse("<a\n\tb \r= \"1\"\n c=\"2\" />").events, (Events{"<a b=\"1\" c=\"2\"", ">a"}));
  EXPECT_EQ(parse("<a ></a >").events, (Events{"<a", ">a"}));
}

TEST(SaxOpenTag, NeedsNoWhiteSpaceBetweenAttributes) {
  EXPECT_EQ(parse("<a b=\"1\"c=\"2\"/>").events, (Events{"<a b=\"1\" c=\"2\"", ">a"}));
}

TEST(SaxOpenTag, ReportsAttributesSortedByName) {
  EXPECT_EQ(parse("<a c=\"1\" b=\"2\" d=\"3\" aa=\"4\"/>").events,
            (Events{"<a aa=\"4\" b=\"2\" c=\"1\" d=\"3\"", ">a"}));
}

TEST(SaxOpenTag, KeepsTheLastOfRepeatedAttributes) {
  EXPECT_EQ(parse("<a b=\"1\" b=\"2\"/>").events, (Events{"<a b=\"2\"", ">a"}));
  EXPECT_EQ(parse("<a c=\"1\" b=\"2\" c=\"3\" b=\"4\" a=\"5\" c=\"6\"/>").events,
            (Events{"<a a=\"5\" b=\"4\" c=\"6\"", ">a"}));
}

TEST(SaxOpenTag, DoesNotKeepTheAttributesOfThePreviousTag) {
  EXPECT_EQ(parse("<a b=\"1\"><c/><d e=\"2\"/></a>").events,
            (Events{"<a b=\"1\"", "<c", ">c", "<d e=\"2\"", ">d", ">a"}));
}

TEST(SaxOpenTag, IsCompleteIfCutOutsideAnAttribute) {
  const std::vector<std::pair<std::string, std::string>> cuts = {
      {"<a", "<a"},
      {"<a ", "<a"},
      {"<a b=\"1\"", "<a b=\"1\""},
      {"<a b=\"1\" ", "<a b=\"1\""},
  };
  for (const auto& [document, event] : cuts) {
    const Parsed parsed = parse(document);
    EXPECT_EQ(parsed.result, 0) << document;
    EXPECT_EQ(parsed.events, Events{event}) << document;
    EXPECT_EQ(parsed.output, "") << document;
  }
}

TEST(SaxValues, MayHaveAnyCharacterExceptTheDoubleQuote) {
  EXPECT_EQ(parse("<a b=\"<c d='1'/>\n\t\xFF\"/>").events,
            (Events{"<a b=\"<c d='1'/>\n\t\xFF\"", ">a"}));
  EXPECT_EQ(parse("<a b=\"\"/>").events, (Events{"<a b=\"\"", ">a"}));
  EXPECT_EQ(parse("<a b=\" x \"/>").events, (Events{"<a b=\" x \"", ">a"}));
}

TEST(SaxValues, HaveTheirEntitiesReplaced) {
  EXPECT_EQ(parse("<a b=\"&lt;&no;x&quot;\"/>").events, (Events{"<a b=\"<x\"\"", ">a"}));
}

TEST_F(SaxSteps, ReportWhiteSpaceAtThePosition) {
  for (const std::string_view text : {" <a>", "\t", "\r", "\n"}) {
    EXPECT_EQ(parser.parseOpenTag(text, position, name, attrs, isEmpty),
              SimpleSAXParser::PARSE_WHITESPACE);
    EXPECT_EQ(parser.parseCloseTag(text, position, "a"), SimpleSAXParser::PARSE_WHITESPACE);
    EXPECT_EQ(parser.parseName(text, position, name), SimpleSAXParser::PARSE_WHITESPACE);
    EXPECT_EQ(parser.parseAttribute(text, position, name, value),
              SimpleSAXParser::PARSE_WHITESPACE);
    EXPECT_EQ(parser.parseAttrValue(text, position, value), SimpleSAXParser::PARSE_WHITESPACE);
    EXPECT_EQ(position, 0U);
  }
}

TEST_F(SaxSteps, FailAtAnotherConstruct) {
  for (const std::string_view text : {"-", "", "\x80"}) {
    EXPECT_EQ(parser.parseOpenTag(text, position, name, attrs, isEmpty),
              SimpleSAXParser::PARSE_ERROR);
    EXPECT_EQ(parser.parseCloseTag(text, position, "a"), SimpleSAXParser::PARSE_ERROR);
    EXPECT_EQ(parser.parseName(text, position, name), SimpleSAXParser::PARSE_ERROR);
    EXPECT_EQ(parser.parseAttribute(text, position, name, value), SimpleSAXParser::PARSE_ERROR);
    EXPECT_EQ(parser.parseAttrValue(text, position, value), SimpleSAXParser::PARSE_ERROR);
    EXPECT_EQ(parser.skipProcessingInstruction(text, position), SimpleSAXParser::PARSE_ERROR);
    EXPECT_EQ(parser.skipComment(text, position), SimpleSAXParser::PARSE_ERROR);
    EXPECT_EQ(position, 0U);
  }
}

TEST_F(SaxSteps, FailAfterTheEndOfTheText) {
  position = 5;
  EXPECT_EQ(parser.parseOpenTag("<a>", position, name, attrs, isEmpty),
            SimpleSAXParser::PARSE_ERROR);
  EXPECT_EQ(parser.parseName("a", position, name), SimpleSAXParser::PARSE_ERROR);
  EXPECT_EQ(parser.parseElement("<a>", position), 0);
  EXPECT_EQ(parser.parseText("abc", position, value), SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 5U);
  EXPECT_EQ(handler.events, Events{});
}

TEST_F(SaxSteps, NeedANameInAnEndTag) {
  // The text, the expected name, and the position of the fault.
  struct Row {
    std::string_view text;
    std::string_view expected;
    std::size_t fault;
  };
  for (const Row& row : std::vector<Row>{{"</xml>", "xml", 2},
                                         {"</1a>", "1a", 2},
                                         {"</->", "-", 2},
                                         {"</>", "", 2},
                                         {"</a b>", "a b", 3},
                                         {"</ab>", "a", 4},
                                         {"</a>", "ab", 3}}) {
    position = 0;
    EXPECT_EQ(parser.parseCloseTag(row.text, position, row.expected), SimpleSAXParser::PARSE_ERROR)
        << row.text;
    EXPECT_EQ(position, row.fault) << row.text;
  }
}

TEST_F(SaxSteps, KeepTheAttributesBeforeAFault) {
  EXPECT_EQ(parser.parseOpenTag("<a b=\"1\" c='2'>", position, name, attrs, isEmpty),
            SimpleSAXParser::PARSE_ERROR);
  EXPECT_EQ(position, 11U);
  EXPECT_EQ(attrs.getAttribute("b"), "1");
  EXPECT_FALSE(attrs.isAttrExist("c"));
}

TEST_F(SaxSteps, LeaveTheOtherArgumentsAloneAtAFault) {
  name = "old";
  value = "old";
  EXPECT_EQ(parser.parseAttribute("b='1'", position, name, value), SimpleSAXParser::PARSE_ERROR);
  EXPECT_EQ(position, 2U);
  position = 0;
  EXPECT_EQ(parser.parseAttrValue("\"1", position, value), SimpleSAXParser::PARSE_ERROR);
  position = 0;
  EXPECT_EQ(parser.parseName("xml", position, name), SimpleSAXParser::PARSE_ERROR);
  EXPECT_EQ(name, "old");
  EXPECT_EQ(value, "old");
}

TEST_F(SaxSteps, AdvanceThePosition) {
  EXPECT_EQ(parser.parseOpenTag("<a b=\"1\">x", position, name, attrs, isEmpty),
            SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 9U);
  EXPECT_EQ(name, "a");
  EXPECT_EQ(attrs.getAttribute("b"), "1");
  EXPECT_FALSE(isEmpty);

  position = 1;
  EXPECT_EQ(parser.parseOpenTag("x<a/>x", position, name, attrs, isEmpty),
            SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 5U);
  EXPECT_TRUE(isEmpty);

  position = 1;
  EXPECT_EQ(parser.parseCloseTag("x</a >x", position, "a"), SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 6U);

  position = 0;
  EXPECT_EQ(parser.skipProcessingInstruction("<?p?>x", position), SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 5U);

  position = 0;
  EXPECT_EQ(parser.skipComment("<!---->x", position), SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 7U);

  position = 0;
  EXPECT_EQ(parser.parseText("  ab<", position, value), SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 4U);
  EXPECT_EQ(handler.events, (Events{"\"ab\" 2"}));
}

TEST_F(SaxSteps, ReadAnAttributeUpToItsClosingQuote) {
  EXPECT_EQ(parser.parseAttribute("b = \"x&gt;\"/>", position, name, value),
            SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 10U);
  EXPECT_EQ(name, "b");
  EXPECT_EQ(value, "x>");

  position = 0;
  EXPECT_EQ(parser.parseAttrValue("\"a&amp;\" ", position, value), SimpleSAXParser::PARSE_OK);
  EXPECT_EQ(position, 7U);
  EXPECT_EQ(value, "a&");
}

TEST_F(SaxSteps, SkipToTheEndOfTheTextIfTheConstructHasNoEnd) {
  EXPECT_EQ(parser.skipProcessingInstruction("<?p>", position), SimpleSAXParser::PARSE_ERROR);
  EXPECT_EQ(position, 4U);
  position = 0;
  EXPECT_EQ(parser.skipComment("<!-- ->", position), SimpleSAXParser::PARSE_ERROR);
  EXPECT_EQ(position, 7U);
}
