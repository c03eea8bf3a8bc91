#include "tools/scdoc.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Words = std::vector<std::string>;
using Views = std::vector<std::string_view>;

TEST(ScdocText, EscapesMarkup) {
  EXPECT_EQ(tools::scdocText("a_b *c* \\d"), "a\\_b \\*c\\* \\\\d");
}

TEST(ScdocUsage, MarksOptionsAndNames) {
  EXPECT_EQ(tools::scdocUsage("--link=PATH [OPTION...] -- COMMAND"),
            "*--link=*_PATH_ [_OPTION_...] *--* _COMMAND_");
  EXPECT_EQ(tools::scdocUsage("A.B.C.D"), "_A.B.C.D_");
  EXPECT_EQ(tools::scdocUsage("in|out[:BYTES]"), "in|out[:_BYTES_]");
  EXPECT_EQ(tools::scdocUsage("METHOD[|METHOD...]"), "_METHOD_[|_METHOD_...]");
}

TEST(ValueNames, AreTheWordsInCapitals) {
  EXPECT_EQ(tools::valueNames("--port=N [OPTION...]"), (Words{"N", "OPTION"}));
  EXPECT_EQ(tools::valueNames("in|out"), Words{});
}

TEST(ScdocSentence, UnderlinesNames) {
  const Words names = {"N", "FILE"};
  EXPECT_EQ(tools::scdocSentence("answer with FILE's bytes, N times", names),
            "Answer with _FILE_'s bytes, _N_ times.");
  EXPECT_EQ(tools::scdocSentence("SSID of NN", names), "SSID of NN.");
}

TEST(BoldWords, JoinsWordsAndShortensNumbers) {
  EXPECT_EQ(tools::boldWords(Views{"a"}), "*a*");
  EXPECT_EQ(tools::boldWords(Views{"a", "b", "c"}), "*a*, *b* or *c*");
  EXPECT_EQ(tools::boldWords(Views{"1", "2"}), "*1* or *2*");
  EXPECT_EQ(tools::boldWords(Views{"1", "2", "3", "4", "5"}), "*1* to *5*");
  EXPECT_EQ(tools::boldWords(Views{"1", "2", "3", "4", "x"}), "*1*, *2*, *3*, *4* or *x*");
}

TEST(ScdocEntry, IndentsTheDescription) {
  EXPECT_EQ(tools::scdocEntry("*-s*", "Print it."), "*-s*\n\tPrint it.\n");
}

}  // namespace
