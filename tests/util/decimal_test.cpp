#include "util/decimal.h"

#include <gtest/gtest.h>
#include <limits>

#include "support/rows.h"

namespace {

using support::PrintTo;

struct Row {
  const char* name;
  std::string_view text;
  int value;
};

class ToInt : public testing::TestWithParam<Row> {};

}  // namespace

TEST_P(ToInt, ReadsALeadingDecimalNumber) {
  EXPECT_EQ(util::toInt(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ToInt,
    testing::Values(Row{"Zero", "0", 0}, Row{"OneDigit", "7", 7}, Row{"LeadingZeros", "002", 2},
                    Row{"AllDigits", "1234567890", 1234567890}, Row{"Negative", "-16", -16},
                    Row{"PlusSign", "+3", 3}, Row{"Empty", "", 0}, Row{"SignAlone", "-", 0},
                    Row{"TwoSigns", "--1", 0}, Row{"PlusAndMinus", "+-1", 0},
                    Row{"NoDigits", "lp", 0}, Row{"TextBehind", "2x9", 2},
                    Row{"ColonBehind", "5:6", 5}, Row{"SlashIsNoDigit", "/1", 0},
                    Row{"WhiteSpaceInFront", " \t\n\v\f\r12", 12}, Row{"BlankBehind", "1 2", 1},
                    Row{"BlankBehindSign", "- 1", 0}, Row{"WhiteSpaceAlone", "  ", 0}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Limits, ToInt,
    testing::Values(Row{"Largest", "2147483647", std::numeric_limits<int>::max()},
                    Row{"AboveLargest", "2147483648", std::numeric_limits<int>::max()},
                    Row{"Smallest", "-2147483648", std::numeric_limits<int>::min()},
                    Row{"BelowSmallest", "-2147483649", std::numeric_limits<int>::min()},
                    Row{"FarAbove", "99999999999999999999999", std::numeric_limits<int>::max()},
                    Row{"FarBelow", "-99999999999999999999999", std::numeric_limits<int>::min()}),
    support::rowName);
