// A list is read in one parse. The texts and the printed errors are the same as with a query for
// each position.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/output.h"
#include "testing/rows.h"
#include "xml/simple_xpath.h"

using support::Output;
using support::outputOf;

namespace {

using Texts = std::vector<std::string>;

Texts queriedOneByOne(simpleXPath& xpath, const std::string& path) {
  Texts texts;
  for (int position = 1;; ++position) {
    const std::string text = xpath.query(path + "[" + std::to_string(position) + "]");
    if (text.empty()) {
      return texts;
    }
    texts.push_back(text);
  }
}

struct Row : support::Row {
  std::string document;
  Texts texts;
};

class XPathList : public testing::TestWithParam<Row> {};

TEST_P(XPathList, EqualsAQueryForEachPosition) {
  simpleXPath xpath(GetParam().document);
  Texts list;
  Texts expected;
  const Output complaints = outputOf([&] { list = xpath.queryList("/r/a"); });
  EXPECT_EQ(complaints, outputOf([&] { expected = queriedOneByOne(xpath, "/r/a"); }));
  EXPECT_EQ(list, expected);
  EXPECT_EQ(list, GetParam().texts);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, XPathList,
    testing::Values(
        Row{{"NoDocument"}, "", {}}, Row{{"NoEntry"}, "<r><b>1</b></r>", {}},
        Row{{"Three"}, "<r><a>1</a><a>2</a><a>3</a></r>", {"1", "2", "3"}},
        Row{{"Ten"},
            "<r><a>1</a><a>2</a><a>3</a><a>4</a><a>5</a><a>6</a><a>7</a><a>8</a><a>9</a>"
            "<a>10</a></r>",
            {"1", "2", "3", "4", "5", "6", "7", "8", "9"}},
        Row{{"EmptyEntryEndsTheList"}, "<r><a>1</a><a/><a>3</a></r>", {"1"}},
        Row{{"EmptyFirstEntry"}, "<r><a/><a>2</a></r>", {}},
        Row{{"SecondRunContinuesAfterTheFirst"},
            "<r><a>1</a><b/><a>x</a><a>2</a><a>3</a></r>",
            {"1", "2", "3"}},
        Row{{"SecondListInAnotherParent"}, "<r><a>1</a></r><r><a>x</a><a>2</a></r>", {"1", "2"}},
        Row{{"CountContinuesFromTheElementClosedLast"},
            "<r><a>x<a>y</a></a><a>2</a><a>3</a></r>",
            {"x", "2", "3"}},
        Row{{"PositionsOutOfOrder"}, "<r><b><a>0</a></b><a>1</a><b><a/><a/></b></r>", {"1"}},
        Row{{"SecondBeforeFirst"}, "<a/><r><a>2</a><b/><a>1</a></r>", {"1", "2"}},
        Row{{"EmptySecondBeforeFirst"}, "<a/><r><a/><b/><a>1</a><b>", {"1"}},
        Row{{"MalformedAfterTheList"}, "<r><a>1</a><a>2</a></b>", {"1", "2"}},
        Row{{"MalformedAfterAnEmptyEntry"}, "<r><a>1</a><a/></b>", {"1"}},
        Row{{"MalformedAfterNine"},
            "<r><a>1</a><a>2</a><a>3</a><a>4</a><a>5</a><a>6</a><a>7</a><a>8</a><a>9</a></b>",
            {"1", "2", "3", "4", "5", "6", "7", "8", "9"}},
        Row{{"MalformedBeforeTheList"}, "<r></b><a>1</a></r>", {}}),
    support::rowName);

TEST(XPathListTwice, LeavesNothingForTheNextQuery) {
  simpleXPath xpath("<r><a>1</a><a>2</a></r>");
  EXPECT_EQ(xpath.queryList("/r/a"), (Texts{"1", "2"}));
  EXPECT_EQ(xpath.query("/r/a[2]"), "2");
  EXPECT_EQ(xpath.queryList("/r/b"), Texts());
  EXPECT_EQ(xpath.query("/r/a"), "1");
}

}  // namespace
