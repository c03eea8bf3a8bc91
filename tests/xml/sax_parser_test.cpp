// Whole parses: the order of the callbacks, text outside elements, text, stopping.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "xml/attributes.h"
#include "xml/recording_handler.h"

namespace {

using Events = std::vector<std::string>;

}  // namespace

TEST(SaxParse, MakesTheFirstAndTheLastCallbackForAnEmptyDocument) {
  RecordingHandler handler;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString(""), 0);
  EXPECT_EQ(handler.events, (Events{"start", "end"}));
}

TEST(SaxParse, TreatsANullPointerAsAnEmptyDocument) {
  RecordingHandler handler;
  const char* null = nullptr;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString(null), 0);
  EXPECT_EQ(handler.events, (Events{"start", "end"}));
}

TEST(SaxParse, ReportsAReplyInDocumentOrder) {
  const Parsed parsed = parse(
      "<?xml version=\"1.0\"?><response><MapElem>"
      "<child name=\"status_code\"><IntegerElem>1</IntegerElem></child>"
      "<child name=\"empty\"/></MapElem></response>");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.output, "");
  EXPECT_EQ(parsed.events, (Events{"<response", "<MapElem", "<child name=\"status_code\"",
                                   "<IntegerElem", "\"1\" 1", ">IntegerElem", ">child",
                                   "<child name=\"empty\"", ">child", ">MapElem", ">response"}));
}

TEST(SaxParse, WorksWithAHandlerThatOverridesNothing) {
  SimpleSAXHandler handler;
  EXPECT_FALSE(handler.m_Stop);
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a b=\"1\">x<c/></a>"), 0);
}

TEST(SaxParse, EndsAtTheFirstZeroByte) {
  const Parsed parsed = parse(std::string("<a/>\0<b/>", 9));
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.events, (Events{"<a", ">a"}));
}

TEST(SaxParse, IsNotAffectedByChangesOfTheString) {
  class Overwriting : public RecordingHandler {
   public:
    std::string document = "<a><b/></a>";
    void startElement(const char* name, attributes& attrs) override {
      RecordingHandler::startElement(name, attrs);
      document.assign(document.size(), '?');
    }
  };
  Overwriting handler;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString(handler.document), 0);
  EXPECT_EQ(handler.events, (Events{"start", "<a", "<b", ">b", ">a", "end"}));
}

TEST(SaxParse, KeepsNothingForTheNextParse) {
  RecordingHandler handler;
  SimpleSAXParser parser(handler);
  const std::string output = outputOf([&] {
    EXPECT_EQ(parser.parseXMLString("<a><b c=\"1\">x</d>"), -1);
    handler.events.clear();
    EXPECT_EQ(parser.parseXMLString("<a>y</a>"), 0);
  });
  EXPECT_EQ(handler.events, (Events{"start", "<a", "\"y\" 1", ">a", "end"}));
  EXPECT_EQ(output, "Parsing error at character 16, '>'\n");
}

TEST(SaxParse, MayStartInsideAnotherParse) {
  class Nesting : public RecordingHandler {
   public:
    SimpleSAXParser* parser = nullptr;
    void startElement(const char* name, attributes& attrs) override {
      RecordingHandler::startElement(name, attrs);
      if (std::string(name) == "outer") {
        EXPECT_EQ(parser->parseXMLString("<inner d=\"2\">text</inner>"), 0);
      }
    }
  };
  Nesting handler;
  SimpleSAXParser parser(handler);
  handler.parser = &parser;
  EXPECT_EQ(parser.parseXMLString("<outer c=\"1\">x</outer>"), 0);
  EXPECT_EQ(handler.events, (Events{"start", "<outer c=\"1\"", "start", "<inner d=\"2\"",
                                    "\"text\" 4", ">inner", "end", "\"x\" 1", ">outer", "end"}));
}

TEST(SaxProlog, IsSkipped) {
  const Parsed parsed =
      parse("<?xml version=\"1.0\"?>\n<!-- a > comment -->\n\t <?more?> <!DOCTYPE a --><a/>");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.events, (Events{"<a", ">a"}));
}

TEST(SaxProlog, MayHaveAnyTextAndStrayCharacters) {
  const Parsed parsed = parse("text & ; > </b> <1 << < \x80 /> <a/>");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.output, "");
  EXPECT_EQ(parsed.events, (Events{"<a", ">a"}));
}

TEST(SaxProlog, MayBeTheWholeDocument) {
  for (const char* document : {"text", "<", "<?p?>", "<!-- c -->", "</a>", " \n"}) {
    const Parsed parsed = parse(document);
    EXPECT_EQ(parsed.result, 0) << document;
    EXPECT_EQ(parsed.events, Events{}) << document;
  }
}

TEST(SaxProlog, FailsWithoutAMessageIfItDoesNotEnd) {
  for (const char* document : {"<?xml", "<?", "<!", "<!-- a -- ><a/>", "<!DOCTYPE a><a/>",
                               "x<?xml version=\"1.0\"><a></a>"}) {
    const Parsed parsed = parse(document);
    EXPECT_EQ(parsed.result, -1) << document;
    EXPECT_EQ(parsed.events, Events{}) << document;
    EXPECT_EQ(parsed.output, "") << document;
  }
}

TEST(SaxSkipped, AreInstructionsAndCommentsAnywhere) {
  const Parsed parsed = parse("<a><?p <b> ?><!-- <c> & > --><!x -->y<?q?></a><!-- d --> <?r?>");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.events, (Events{"<a", "\"y\" 1", ">a"}));
}

TEST(SaxSkipped, MayBeAsShortAsTheirEnds) {
  // The "?" of "<?" can also begin the end "?>". The "--" of "<!--" can also begin the end "-->".
  EXPECT_EQ(parse("<?><a/>").events, (Events{"<a", ">a"}));
  EXPECT_EQ(parse("<!--><a/>").events, (Events{"<a", ">a"}));
  EXPECT_EQ(parse("<a><?><b/><!--><c/></a>").events, (Events{"<a", "<b", ">b", "<c", ">c", ">a"}));
}

TEST(SaxContent, MayHaveSeveralTopLevelElements) {
  const Parsed parsed = parse("<a>1</a> \t\r\n<b/><c>2</c>");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.events, (Events{"<a", "\"1\" 1", ">a", "<b", ">b", "<c", "\"2\" 1", ">c"}));
}

TEST(SaxContent, FailsForTextBetweenTopLevelElements) {
  const Parsed parsed = parse("<a/> x<b/>");
  EXPECT_EQ(parsed.result, -1);
  EXPECT_EQ(parsed.events, (Events{"<a", ">a"}));
  EXPECT_EQ(parsed.output, "dunno what to do?!\nParsing error at character 5, 'x'\n");
}

TEST(SaxContent, SkipsAStrayLessThanSign) {
  EXPECT_EQ(parse("<a>x<1y< z<</a>").events,
            (Events{"<a", "\"x\" 1", "\"1y\" 2", "\"z\" 1", ">a"}));
  EXPECT_EQ(parse("<a/><<b/><").events, (Events{"<a", ">a", "<b", ">b"}));
  EXPECT_EQ(parse("<a/><").result, 0);
  EXPECT_EQ(parse("<a/><1").output, "dunno what to do?!\nParsing error at character 5, '1'\n");
}

TEST(SaxContent, ReportsNoEndForElementsOpenAtTheEnd) {
  const Parsed parsed = parse("<a><b>text");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.output, "");
  EXPECT_EQ(parsed.events, (Events{"<a", "<b", "\"text\" 4"}));
}

TEST(SaxText, LosesOnlyLeadingWhiteSpace) {
  EXPECT_EQ(parse("<a> \t\r\nhi there \n</a>").events, (Events{"<a", "\"hi there \n\" 10", ">a"}));
}

TEST(SaxText, IsNotReportedIfItIsWhiteSpace) {
  EXPECT_EQ(parse("<a> \t\r\n</a>").events, (Events{"<a", ">a"}));
  EXPECT_EQ(parse("<a> \t\r\n").events, (Events{"<a"}));
}

TEST(SaxText, KeepsWhiteSpaceOtherThanTabLineFeedReturnAndSpace) {
  EXPECT_EQ(parse("<a>\v</a>").events, (Events{"<a", "\"\v\" 1", ">a"}));
  EXPECT_EQ(parse("<a>\f</a>").events, (Events{"<a", "\"\f\" 1", ">a"}));
  EXPECT_EQ(parse("<a>\xA0</a>").events, (Events{"<a", "\"\xA0\" 1", ">a"}));
}

TEST(SaxText, EndsAtTheNextMarkup) {
  EXPECT_EQ(parse("<a>x<!-- c --> y<?p?>z<b/> u</a>").events,
            (Events{"<a", "\"x\" 1", "\"y\" 1", "\"z\" 1", "<b", ">b", "\"u\" 1", ">a"}));
}

TEST(SaxText, HasTheCountOfItsDocumentCharacters) {
  EXPECT_EQ(parse("<a>a&amp;b</a>").events, (Events{"<a", "\"a&b\" 7", ">a"}));
  EXPECT_EQ(parse("<a>&no;</a>").events, (Events{"<a", "\"\" 4", ">a"}));
  EXPECT_EQ(parse("<a> &lt; </a>").events, (Events{"<a", "\"< \" 5", ">a"}));
}

TEST(SaxText, KeepsBytesAbove127) {
  std::string bytes;
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    bytes += static_cast<char>(byte);
  }
  EXPECT_EQ(parse("<a>" + bytes + "</a>").events, (Events{"<a", "\"" + bytes + "\" 128", ">a"}));
}

TEST(SaxStop, SkipsTheDocumentIfSetAtTheStart) {
  RecordingHandler handler;
  handler.stopAt = "start";
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<?never ending <a></b>"), 0);
  EXPECT_EQ(handler.events, (Events{"start", "end"}));
}

TEST(SaxStop, IsNotClearedByTheParser) {
  RecordingHandler handler;
  handler.m_Stop = true;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a/>"), 0);
  EXPECT_EQ(handler.events, (Events{"start", "end"}));
  EXPECT_TRUE(handler.m_Stop);
}

TEST(SaxStop, IsReadOnlyAfterTheEndOfAnEmptyElement) {
  // Stops in the callbacks for "b", and changes its mind before the element ends.
  class Wavering : public RecordingHandler {
   public:
    void startElement(const char* name, attributes& attrs) override {
      RecordingHandler::startElement(name, attrs);
      m_Stop = *name == 'b';
    }
    void endElement(const char* name) override {
      RecordingHandler::endElement(name);
      m_Stop = false;
    }
  } handler;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a><b/><c/></a>"), 0);
  EXPECT_EQ(handler.events, (Events{"start", "<a", "<b", ">b", "<c", ">c", ">a", "end"}));
}

TEST(SaxStop, EndsTheCallbacksAfterAStartTag) {
  const Parsed parsed = parse("<a><b>x</b></wrong>", "<b");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.output, "");
  EXPECT_EQ(parsed.events, (Events{"<a", "<b"}));
}

TEST(SaxStop, ReportsTheEndOfAnEmptyElement) {
  const Parsed parsed = parse("<a><b/><c/></a>", "<b");
  EXPECT_EQ(parsed.result, 0);
  EXPECT_EQ(parsed.events, (Events{"<a", "<b", ">b"}));
}

TEST(SaxStop, EndsTheCallbacksAfterAnEmptyElement) {
  EXPECT_EQ(parse("<a><b/><c/></a>", ">b").events, (Events{"<a", "<b", ">b"}));
}

TEST(SaxStop, EndsTheCallbacksAfterTextAndAfterAnEndTag) {
  EXPECT_EQ(parse("<a>x</b>", "\"x\" 1").events, (Events{"<a", "\"x\" 1"}));
  EXPECT_EQ(parse("<a>x</b>", "\"x\" 1").result, 0);
  EXPECT_EQ(parse("<a><b>x</b></wrong>", ">b").events, (Events{"<a", "<b", "\"x\" 1", ">b"}));
  EXPECT_EQ(parse("<a><b>x</b></wrong>", ">b").result, 0);
}
