// The parsing of paths: steps, names and filters.

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "xml/simple_xpath.h"

namespace {

using Node = simpleXPath::nodeType;

std::vector<std::string> namesOf(std::string_view path) {
  std::vector<std::string> names;
  for (const Node& step : simpleXPath::parsePath(path)) {
    names.push_back(step.name);
  }
  return names;
}

using Names = std::vector<std::string>;

struct Step {
  std::string_view text;
  std::string name;
  std::string filterName;
  std::string filterValue;
  int index;
};

}  // namespace

TEST(XPathPath, IsSplitAtSlashes) {
  EXPECT_EQ(namesOf("/response/MapElem/child"), (Names{"response", "MapElem", "child"}));
}

TEST(XPathPath, IgnoresTextBeforeTheFirstSlash) {
  EXPECT_EQ(namesOf("r/a"), Names{"a"});
  EXPECT_EQ(namesOf("r"), Names{});
}

TEST(XPathPath, SkipsEmptySteps) {
  EXPECT_EQ(namesOf(""), Names{});
  EXPECT_EQ(namesOf("/"), Names{});
  EXPECT_EQ(namesOf("//"), Names{});
  EXPECT_EQ(namesOf("//a//b/"), (Names{"a", "b"}));
  EXPECT_EQ(namesOf("/a/ /b"), (Names{"a", "b"}));
}

TEST(XPathPath, TakesNoMemoryForEmptySteps) {
  EXPECT_LE(simpleXPath::parsePath(std::string(1'000'000, '/')).capacity(), 16U);
}

TEST(XPathPath, TrimsOnlySpaces) {
  EXPECT_EQ(namesOf("/  a /\tb\n/ c d "), (Names{"a", "\tb\n", "c d"}));
}

TEST(XPathPath, IsSplitInsideFilterValuesToo) {
  EXPECT_EQ(namesOf("/a[@n='x/y']"), (Names{"a", "y']"}));
}

TEST(XPathStep, HasNameAndFilter) {
  const std::vector<Step> steps = {
      {"a", "a", "", "", 0},
      {" a b ", "a b", "", "", 0},
      // Positions
      {"a[1]", "a", "<INDEX>", "1", 1},
      {"a[9]", "a", "<INDEX>", "9", 9},
      {"a [ 2 ]", "a", "<INDEX>", " 2 ", 2},
      {"a[2x]", "a", "<INDEX>", "2x", 2},
      {"a[02]", "a", "<INDEX>", "02", 2},
      {"a[+3]", "a", "<INDEX>", "+3", 3},
      {"a[\t4]", "a", "<INDEX>", "\t4", 4},
      {"a[5]b[6]", "a", "<INDEX>", "5", 5},
      {"[7]", "", "<INDEX>", "7", 7},
      {"a[1@n='x']", "a", "<INDEX>", "1@n='x'", 1},
      // A filter that has no "@" and is not a position from 1 to 9 never matches.
      {"a[0]", "a", "<UNDEFINED>", "", 0},
      {"a[10]", "a", "<UNDEFINED>", "", 0},
      {"a[-1]", "a", "<UNDEFINED>", "", 0},
      {"a[4294967297]", "a", "<UNDEFINED>", "", 0},
      {"a[18446744073709551617]", "a", "<UNDEFINED>", "", 0},
      {"a[]", "a", "<UNDEFINED>", "", 0},
      {"a[x]", "a", "<UNDEFINED>", "", 0},
      {"a[n='x']", "a", "<UNDEFINED>", "", 0},
      {"a[[1]]", "a", "<UNDEFINED>", "", 0},
      {"a['1']", "a", "<UNDEFINED>", "", 0},
      // Attributes
      {"a[@n='x']", "a", "n", "x", 0},
      {"a[ @ n = 'x y' ]", "a", "n", "x y", 0},
      {"a[@n=' x ']", "a", "n", " x ", 0},
      {"a[@n='']", "a", "n", "", 0},
      {"a[ignored @n=ignored 'x' ignored]", "a", "n", "x", 0},
      {"a[@n='x=y']", "a", "n", "x=y", 0},
      {"a[@n@m='x']", "a", "n@m", "x", 0},
      {"a[0@n='x']", "a", "n", "x", 0},
      {"a[10@n='x']", "a", "n", "x", 0},
      {"a[@n='x'y']", "a", "n", "x", 0},
      {"a[@n='x[y']", "a", "n", "x[y", 0},
      // Incomplete filters are dropped.
      {"a[@n]", "a", "", "", 0},
      {"a[@n 'x']", "a", "", "", 0},
      {"a[n='x'@]", "a", "", "", 0},
      {"a[@n=y]", "a", "", "", 0},
      {"a[@n=\"x\"]", "a", "", "", 0},
      {"a[@n='x]", "a", "", "", 0},
      {"a[@n='x]y']", "a", "", "", 0},
      {"a['@n=x']", "a", "", "", 0},
      {"a[@n=x']", "a", "", "", 0},
      // Without the closing bracket there is no filter.
      {"a[1", "a", "", "", 0},
      {"a[", "a", "", "", 0},
      {"a]1[", "a]1", "", "", 0},
      {"a]", "a]", "", "", 0},
  };
  for (const Step& step : steps) {
    const Node node = simpleXPath::parseNode(step.text);
    EXPECT_EQ(node.name, step.name) << step.text;
    EXPECT_EQ(node.filterName, step.filterName) << step.text;
    EXPECT_EQ(node.filterValue, step.filterValue) << step.text;
    EXPECT_EQ(node.index, step.index) << step.text;
    EXPECT_EQ(node.text, "") << step.text;
  }
}

TEST(XPathStep, HasNoFilterIfTheAttributeNameIsEmpty) {
  EXPECT_EQ(simpleXPath::parseNode("a[@='y']").filterName, "");
  EXPECT_EQ(simpleXPath::parseNode("a[@ ='y']").filterName, "");
}

TEST(XPathFilter, IsStoredInTheGivenNode) {
  Node node;
  simpleXPath::parseFilterAttr("@n='x'", node);
  EXPECT_EQ(node.filterName, "n");
  EXPECT_EQ(node.filterValue, "x");
  simpleXPath::parseFilterAttr("n", node);
  EXPECT_EQ(node.filterName, "<UNDEFINED>");
  EXPECT_EQ(node.filterValue, "");
}

TEST(XPathSpaces, AreRemovedAtBothEnds) {
  EXPECT_EQ(simpleXPath::removeSpaces(""), "");
  EXPECT_EQ(simpleXPath::removeSpaces("   "), "");
  EXPECT_EQ(simpleXPath::removeSpaces("a"), "a");
  EXPECT_EQ(simpleXPath::removeSpaces(" a"), "a");
  EXPECT_EQ(simpleXPath::removeSpaces("a  "), "a");
  EXPECT_EQ(simpleXPath::removeSpaces("  a b\t "), "a b\t");
}

TEST(XPathNode, IsResetInEveryField) {
  Node node;
  node.name = "a";
  node.text = "b";
  node.attrs.setAttribute("c", "d");
  node.index = 5;
  node.filterName = "e";
  node.filterValue = "f";
  const Node copy = node;
  simpleXPath::resetNode(node);
  EXPECT_EQ(node.name + node.text + node.filterName + node.filterValue, "");
  EXPECT_EQ(node.index, 0);
  EXPECT_FALSE(node.attrs.isAttrExist("c"));
  EXPECT_EQ(copy.name + copy.text + copy.filterName + copy.filterValue, "abef");
  EXPECT_EQ(copy.index, 5);
  EXPECT_EQ(copy.attrs.getAttribute("c"), "d");
}

namespace {

/// A fixture for tests that match a path against open elements.
class XPathMatch : public testing::Test {
 protected:
  XPathMatch() {
    stack.resize(2);
    stack[0].name = "r";
    stack[0].index = 1;
    stack[0].text = "outer";
    stack[1].name = "a";
    stack[1].index = 2;
    stack[1].text = "inner";
    stack[1].attrs.setAttribute("n", "x");
  }

  bool matches(std::string_view path) {
    return simpleXPath::isFindMatch(simpleXPath::parsePath(path), stack, result);
  }

  std::vector<Node> stack;
  std::string result = "unchanged";
};

}  // namespace

TEST_F(XPathMatch, ReturnsTheTextOfTheInnermostElement) {
  EXPECT_TRUE(matches("/r/a"));
  EXPECT_EQ(result, "inner");
}

TEST_F(XPathMatch, NeedsAsManyStepsAsElements) {
  EXPECT_FALSE(matches("/r"));
  EXPECT_FALSE(matches("/a"));
  EXPECT_FALSE(matches("/r/a/b"));
  EXPECT_FALSE(matches(""));
  EXPECT_EQ(result, "unchanged");
}

TEST_F(XPathMatch, IsFalseWithoutStepsAndElements) {
  stack.clear();
  EXPECT_FALSE(matches(""));
}

TEST_F(XPathMatch, NeedsEveryStepToMatch) {
  EXPECT_FALSE(matches("/r/b"));
  EXPECT_FALSE(matches("/b/a"));
  EXPECT_FALSE(matches("/R/a"));
  EXPECT_FALSE(matches("/r[2]/a"));
  EXPECT_TRUE(matches("/r[1]/a[2]"));
  EXPECT_FALSE(matches("/r/a[1]"));
  EXPECT_TRUE(matches("/r/a[@n='x']"));
  EXPECT_FALSE(matches("/r/a[@n='X']"));
  EXPECT_FALSE(matches("/r/a[@n='']"));
  EXPECT_FALSE(matches("/r/a[@m='x']"));
}

TEST_F(XPathMatch, TreatsAnAbsentAttributeAsEmpty) {
  EXPECT_TRUE(matches("/r/a[@m='']"));
}

TEST_F(XPathMatch, FailsForAnUndefinedFilter) {
  EXPECT_FALSE(matches("/r/a[0]"));
  EXPECT_FALSE(matches("/r[x]/a"));
}

TEST_F(XPathMatch, RecognizesMarkersInThePath) {
  stack[1].attrs.setAttribute("<UNDEFINED>", "x");
  EXPECT_FALSE(matches("/r/a[@<UNDEFINED>='x']"));
  EXPECT_FALSE(matches("/r/a[@<INDEX>='']"));
}
