#include "emulator/certificates/binary_text.h"

#include <gtest/gtest.h>
#include <string>

#include "testing/rows.h"

namespace {

using emulator::fromBase64;
using emulator::toBase64;

// The test vectors of RFC 4648.
TEST(BinaryText, IsBase64InBothDirections) {
  const std::string text = "foobar";
  const char* const encoded[] = {"", "Zg==", "Zm8=", "Zm9v", "Zm9vYg==", "Zm9vYmE=", "Zm9vYmFy"};
  for (std::size_t size = 0; size <= text.size(); ++size) {
    EXPECT_EQ(toBase64(text.substr(0, size)), encoded[size]);
    EXPECT_EQ(fromBase64(encoded[size]), text.substr(0, size));
  }
}

TEST(BinaryText, MayHaveAnyBytes) {
  const std::string bytes("\0\xFF\xE0\0", 4);
  EXPECT_EQ(fromBase64(toBase64(bytes)), bytes);
}

struct BrokenRow : support::Row {
  std::string text;
};

class BrokenBase64 : public testing::TestWithParam<BrokenRow> {};

TEST_P(BrokenBase64, YieldsNothing) {
  EXPECT_EQ(fromBase64(GetParam().text), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, BrokenBase64,
    testing::Values(BrokenRow{{"HalfAGroup"}, "Zm"}, BrokenRow{{"NoPadding"}, "Zm9vYg"},
                    BrokenRow{{"OnlyPadding"}, "===="}, BrokenRow{{"ThreePaddings"}, "Z==="},
                    BrokenRow{{"PaddingInside"}, "Zg==Zm9v"}, BrokenRow{{"StrayBits"}, "Zh=="},
                    BrokenRow{{"LineEnd"}, "Zm9v\n"}, BrokenRow{{"FourBlanks"}, "    "},
                    BrokenRow{{"BlanksAround"}, "  Zm9v  "},
                    BrokenRow{{"LineEndInside"}, "Zm\n\n9v\n\n"},
                    BrokenRow{{"OtherAlphabet"}, "Zm9-"}, BrokenRow{{"Minus"}, "----"},
                    BrokenRow{{"Zero"}, std::string("Zm9\0", 4)},
                    BrokenRow{{"HighBytes"}, "\xC3\xA4\xC3\xA4"}),
    support::rowName);

}  // namespace
