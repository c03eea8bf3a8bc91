// Queries on whole documents.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/bytes.h"
#include "xml/recording_handler.h"
#include "xml/simple_sax_parser.h"
#include "xml/simple_xpath.h"

namespace {

using support::repeated;

const std::string TwoSiblings = R"(<r><a n="x">1</a><a n="y">2</a></r>)";

std::string query(const std::string& document, const std::string& path) {
  return simpleXPath(document).query(path);
}

}  // namespace

TEST(XPathQuery, SelectsByNameAttributeAndPosition) {
  simpleXPath xpath(TwoSiblings);
  EXPECT_EQ(xpath.query("/r/a[@n='y']"), "2");
  EXPECT_EQ(xpath.query("/r/a[2]"), "2");
  EXPECT_EQ(xpath.query("/r/a"), "1");
  EXPECT_EQ(xpath.query("/r/a[1]"), "1");
  EXPECT_EQ(xpath.query("/r/a[3]"), "");
}

TEST(XPathQuery, AcceptsBothKindsOfText) {
  simpleXPath xpath(TwoSiblings);
  const std::string path = "/r/a[2]";
  EXPECT_EQ(xpath.query(path), "2");
  EXPECT_EQ(xpath.query(path.c_str()), "2");
  const char* null = nullptr;
  EXPECT_EQ(xpath.query(null), "");
}

TEST(XPathQuery, IsIndependentOfThePreviousQuery) {
  simpleXPath xpath(TwoSiblings);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(xpath.query("/r/a"), "1");
    EXPECT_EQ(xpath.query("/r/b"), "");
    EXPECT_EQ(xpath.query(""), "");
    EXPECT_EQ(xpath.query("/r/a[2]"), "2");
  }
}

TEST(XPathQuery, SetsTheStopFlagToWhetherAnElementMatches) {
  simpleXPath xpath("<r><a/></r>");
  EXPECT_EQ(xpath.query("/r/a"), "");
  EXPECT_TRUE(xpath.m_Stop);
  EXPECT_EQ(xpath.query("/r/b"), "");
  EXPECT_FALSE(xpath.m_Stop);
}

TEST(XPathQuery, NeedsAnAbsolutePath) {
  EXPECT_EQ(query(TwoSiblings, "r/a"), "");
  EXPECT_EQ(query(TwoSiblings, "/a"), "");
  EXPECT_EQ(query("<a>1</a>", "r/a"), "1");
  EXPECT_EQ(query("<r><b><a>1</a></b></r>", "/r/a"), "");
  EXPECT_EQ(query("<r><a><a>1</a></a></r>", "/r/a/a"), "1");
}

TEST(XPathQuery, AcceptsPositionsUpToNine) {
  const std::string document = "<r>" + repeated("<a>x</a>", 8) + "<a>9</a><a>10</a><a>11</a></r>";
  EXPECT_EQ(query(document, "/r/a[9]"), "9");
  EXPECT_EQ(query(document, "/r/a[10]"), "");
  EXPECT_EQ(query(document, "/r/a[11]"), "");
  EXPECT_EQ(query(document, "/r/a[0]"), "");
  EXPECT_EQ(query(document, "/r/a[-1]"), "");
}

TEST(XPathQuery, ReadsPositionsLikeAtoi) {
  EXPECT_EQ(query(TwoSiblings, "/r/a[2x]"), "2");
  EXPECT_EQ(query(TwoSiblings, "/r/a[02]"), "2");
  EXPECT_EQ(query(TwoSiblings, "/ r / a [ 2 ] "), "2");
}

TEST(XPathQuery, CountsPositionsInRunsOfEqualNames) {
  const std::string document = "<r><a>1</a><a>2</a><b/><a>3</a><a>4</a></r>";
  EXPECT_EQ(query(document, "/r/a[1]"), "1");
  EXPECT_EQ(query(document, "/r/a[2]"), "2");
  EXPECT_EQ(query(document, "/r/a[3]"), "");
  EXPECT_EQ(query("<r><b/><a>1</a><b/><a>2</a><a>3</a></r>", "/r/a[2]"), "3");
}

TEST(XPathQuery, CountsPositionsFromTheLastClosedElementAtAnyDepth) {
  // The inner <a> continues the count of the <a> that closed before the inner one, although the
  // parents differ.
  EXPECT_EQ(query("<r><a>1</a><b><a>2</a></b></r>", "/r/b/a[2]"), "2");
  EXPECT_EQ(query("<r><a>1</a><b><a>2</a></b></r>", "/r/b/a[1]"), "");
  // The count ends when the parent of the counted element closes.
  EXPECT_EQ(query("<r><b><a>1</a></b><a>2</a></r>", "/r/a[1]"), "2");
  // An element of the same name inside the sibling continues the count.
  EXPECT_EQ(query("<r><a>1</a><a>2<a>3</a></a><a>4</a></r>", "/r/a[2]/a[2]"), "3");
  EXPECT_EQ(query("<r><a>1<b/></a><a>2</a></r>", "/r/a[2]"), "2");
}

TEST(XPathQuery, ReturnsTheTextOfTheElementItself) {
  const std::string document = "<r>one<a>two</a> three<!-- c -->&lt;four<a/> five </r>";
  EXPECT_EQ(query(document, "/r"), "onethree<fourfive ");
  EXPECT_EQ(query(document, "/r/a"), "two");
}

TEST(XPathQuery, ReturnsTextWithoutLeadingSpaceAndUnknownEntities) {
  EXPECT_EQ(query("<r> \n a &amp; b &no; c </r>", "/r"), "a & b  c ");
}

TEST(XPathQuery, FindsTheElementThatClosesFirst) {
  EXPECT_EQ(query("<r><a></a><a>2</a></r>", "/r/a"), "");
  EXPECT_EQ(query("<r>1</r><r>2</r>", "/r"), "1");
  EXPECT_EQ(query("<r>1</r><r>2</r>", "/r[2]"), "2");
}

TEST(XPathQuery, AcceptsFiltersAtAnyStep) {
  const std::string document =
      R"(<r><g n="1"><a>x</a><a>y</a></g><g n="2"><a k="q">z</a><a>u</a></g></r>)";
  EXPECT_EQ(query(document, "/r/g[@n='2']/a"), "z");
  EXPECT_EQ(query(document, "/r/g[@n='2']/a[2]"), "u");
  EXPECT_EQ(query(document, "/r/g[2]/a[@k='q']"), "z");
  EXPECT_EQ(query(document, "/r[1]/g[1]/a[2]"), "y");
  EXPECT_EQ(query(document, "/r/g[@n='3']/a"), "");
  EXPECT_EQ(query(document, "/r/g[@n='1']/a[@k='q']"), "");
}

TEST(XPathQuery, DropsMalformedFilters) {
  EXPECT_EQ(query(TwoSiblings, "/r/a[@n=y]"), "1");
  EXPECT_EQ(query(TwoSiblings, "/r/a[@n=\"y\"]"), "1");
  EXPECT_EQ(query(TwoSiblings, "/r/a[@='y']"), "1");
  EXPECT_EQ(query(TwoSiblings, "/r/a[@n='y'"), "1");
}

TEST(XPathQuery, FindsNothingForAFilterWithoutAnAttribute) {
  EXPECT_EQ(query(TwoSiblings, "/r/a[n='y']"), "");
  EXPECT_EQ(query(TwoSiblings, "/r/a[]"), "");
}

TEST(XPathQuery, TreatsAbsentAttributesAsEmpty) {
  EXPECT_EQ(query("<r><a n=\"x\">1</a><a>2</a></r>", "/r/a[@n='']"), "2");
  EXPECT_EQ(query("<r><a>1</a></r>", "/r/a[@m='']"), "1");
}

TEST(XPathQuery, FindsEmptyElementsWithoutText) {
  EXPECT_EQ(query("<r><a/><a>2</a></r>", "/r/a"), "");
  EXPECT_EQ(query("<r><a/><a>2</a></r>", "/r/a[2]"), "2");
}

TEST(XPathQuery, StopsTheParseAtTheMatch) {
  EXPECT_EQ(outputOf([] { EXPECT_EQ(query("<r><a>1</a></wrong>", "/r/a"), "1"); }), "");
}

TEST(XPathQuery, ReturnsNothingForAMalformedDocument) {
  const std::string output =
      outputOf([] { EXPECT_EQ(query("<r><b></wrong><a>1</a></r>", "/r/a"), ""); });
  EXPECT_EQ(output, "Parsing error at character 13, '>'\n");
}

TEST(XPathQuery, ReturnsNothingForAnEmptyDocument) {
  EXPECT_EQ(query("", "/a"), "");
  EXPECT_EQ(query("text", "/text"), "");
}

TEST(XPathQuery, ReturnsNothingForAnElementThatDoesNotClose) {
  EXPECT_EQ(query("<r><a>1", "/r/a"), "");
}

TEST(XPathQuery, EndsTheDocumentAtTheFirstZeroByte) {
  EXPECT_EQ(query(std::string("<r>\0</r><r>1</r>", 16), "/r"), "");
}

TEST(XPathQuery, FindsNothingForAnEmptyPath) {
  for (const char* path : {"", "/", "//", "///", " / / ", "r", "[1]", "/[1]", "/]", "/[", "/["}) {
    EXPECT_EQ(query("<r>1</r>", path), "") << path;
  }
}

TEST(XPathQuery, AcceptsUnbalancedBracketsAndQuotes) {
  for (const char* path :
       {"/r[", "/r]", "/r[[", "/r]]", "/r][", "/r[@", "/r[@n", "/r[@n=", "/r[@n='", "/r[@n='x",
        "/r[@n='x'", "/r[@]", "/r[@n=]", "/r[@n=']", "/r['", "/r[']", "/r[@'=]", "/r[='@"}) {
    const std::string found = query("<r>1</r>", path);
    EXPECT_TRUE(found.empty() || found == "1") << path;
  }
}

TEST(XPathQuery, AcceptsAPathOfAMebibyte) {
  constexpr std::size_t size = 1 << 20;
  EXPECT_EQ(query("<r>1</r>", std::string(size, '/')), "");
  EXPECT_EQ(query("<r>1</r>", std::string(size, '/') + "r"), "1");
  EXPECT_EQ(query("<r>1</r>", std::string(size, ' ') + "/r"), "1");
  EXPECT_EQ(query("<r>1</r>", "/r[" + std::string(size, '[')), "1");
  EXPECT_EQ(query("<r>1</r>", "/r[" + std::string(size, '9') + "]"), "");
  EXPECT_EQ(query("<r n=\"x\">1</r>", "/r[@n='" + std::string(size, 'x') + "']"), "");
  EXPECT_EQ(query("<r>1</r>", repeated("/a", size / 2)), "");
  const std::string name(size, 'n');
  EXPECT_EQ(query("<" + name + ">1</" + name + ">", "/" + name), "1");
}

TEST(XPathQuery, AcceptsADepthOfAMillion) {
  EXPECT_EQ(query(repeated("<a>", 1'000'000) + "x", "/a/a"), "");
  EXPECT_EQ(query("<a>1" + repeated("<a>", 100'000) + repeated("</a>", 100'001), "/a"), "1");
}

TEST(XPathQuery, AcceptsADeepPathAndADeepDocument) {
  constexpr std::size_t depth = 20'000;
  const std::string document =
      repeated("<a>", depth) + repeated("<a/>", depth) + "<a>x</a>" + repeated("</a>", depth);
  EXPECT_EQ(query(document, repeated("/a", depth + 1)), "");
  EXPECT_EQ(query(document, "/b" + repeated("/a", depth)), "");
  EXPECT_EQ(query(document, repeated("/a", depth) + "/a[@n='x']"), "");
}

TEST(XPathQuery, ReadsTheNameOfAnAttributeUpToAZeroByte) {
  using namespace std::string_literals;
  EXPECT_EQ(query("<r n=\"y\">1</r>", "/r[@n\0z='y']"s), "1");
}

TEST(XPathHandler, GetsTheCallbacksOfAQueryInADerivedClass) {
  class Counting : public simpleXPath {
   public:
    using simpleXPath::simpleXPath;
    void start() override {
      log += "start ";
      simpleXPath::start();
    }
    void startElement(const char* name, attributes& attrs) override {
      log += "<" + std::string(name) + " ";
      simpleXPath::startElement(name, attrs);
    }
    void characters(const char* text, unsigned int len) override {
      log += std::string(text) + " ";
      simpleXPath::characters(text, len);
    }
    void endElement(const char* name) override {
      log += ">" + std::string(name) + " ";
      simpleXPath::endElement(name);
    }
    void end() override { log += "end"; }
    std::string log;
  } xpath("<r><a>1</a><a>2</a><a>3</a></r>");
  EXPECT_EQ(xpath.query("/r/a[2]"), "2");
  EXPECT_EQ(xpath.log, "start <r <a 1 >a <a 2 >a end");
  EXPECT_TRUE(xpath.m_Stop);
  EXPECT_EQ(xpath.query("/r/a[4]"), "");
  EXPECT_FALSE(xpath.m_Stop);
  EXPECT_EQ(SimpleSAXParser(xpath).parseXMLString("<r><a/><a/><a/><a/></r>"), 0);
  EXPECT_FALSE(xpath.m_Stop);
}

TEST(XPathHandler, FindsNothingInAParseWithoutAQuery) {
  simpleXPath xpath("<r>1</r>");
  EXPECT_EQ(SimpleSAXParser(xpath).parseXMLString("<r>2</r>"), 0);
  EXPECT_FALSE(xpath.m_Stop);
  EXPECT_EQ(xpath.query("/r"), "1");
}

TEST(XPathHandler, MayBeCalledOutOfOrder) {
  simpleXPath xpath("<r>1</r>");
  attributes none;
  xpath.endElement("a");
  xpath.characters("text", 4);
  xpath.startElement("a", none);
  xpath.characters(nullptr, 0);
  xpath.endElement("a");
  xpath.end();
  EXPECT_FALSE(xpath.m_Stop);
  EXPECT_EQ(xpath.query("/r"), "1");
}
