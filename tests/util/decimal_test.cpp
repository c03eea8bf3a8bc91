#include "util/decimal.h"

#include <gtest/gtest.h>
#include <limits>

#include "testing/rows.h"

namespace {

struct NumberRow : support::Row {
  std::string_view text;
  int value;
};

class ToInt : public testing::TestWithParam<NumberRow> {};

}  // namespace

TEST_P(ToInt, ReadsALeadingDecimalNumber) {
  EXPECT_EQ(util::toInt(GetParam().text), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ToInt,
    testing::Values(NumberRow{{"Zero"}, "0", 0}, NumberRow{{"OneDigit"}, "7", 7},
                    NumberRow{{"LeadingZeros"}, "002", 2},
                    NumberRow{{"AllDigits"}, "1234567890", 1234567890},
                    NumberRow{{"Negative"}, "-16", -16}, NumberRow{{"PlusSign"}, "+3", 3},
                    NumberRow{{"Empty"}, "", 0}, NumberRow{{"OnlySign"}, "-", 0},
                    NumberRow{{"TwoSigns"}, "--1", 0}, NumberRow{{"PlusAndMinus"}, "+-1", 0},
                    NumberRow{{"NoDigits"}, "lp", 0}, NumberRow{{"TextAfter"}, "2x9", 2},
                    NumberRow{{"ColonAfter"}, "5:6", 5}, NumberRow{{"SlashIsNoDigit"}, "/1", 0},
                    NumberRow{{"WhiteSpaceBefore"}, " \t\n\v\f\r12", 12},
                    NumberRow{{"BlankAfter"}, "1 2", 1}, NumberRow{{"BlankAfterSign"}, "- 1", 0},
                    NumberRow{{"OnlyWhiteSpace"}, "  ", 0}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Limits, ToInt,
    testing::Values(
        NumberRow{{"Largest"}, "2147483647", std::numeric_limits<int>::max()},
        NumberRow{{"AboveLargest"}, "2147483648", std::numeric_limits<int>::max()},
        NumberRow{{"Smallest"}, "-2147483648", std::numeric_limits<int>::min()},
        NumberRow{{"BelowSmallest"}, "-2147483649", std::numeric_limits<int>::min()},
        NumberRow{{"FarAbove"}, "99999999999999999999999", std::numeric_limits<int>::max()},
        NumberRow{{"FarBelow"}, "-99999999999999999999999", std::numeric_limits<int>::min()}),
    support::rowName);
