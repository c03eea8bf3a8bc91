#include "decoder/hex_line.h"

#include <gtest/gtest.h>

#include "testing/bytes.h"
#include "testing/rows.h"

namespace {

using decoder::HexLine;
using decoder::readHexLine;
using support::bytes;
using Direction = decoder::Stream::Direction;

struct LineRow : support::Row {
  const char* line;
  const char* bytes;
  bool endsBlock = false;
};

class HexLineOf : public testing::TestWithParam<LineRow> {};

TEST_P(HexLineOf, IsTaken) {
  const auto line = readHexLine(GetParam().line);
  ASSERT_TRUE(line.has_value());
  EXPECT_EQ(line->bytes, bytes(GetParam().bytes));
  EXPECT_EQ(line->endsBlock, GetParam().endsBlock);
  EXPECT_FALSE(line->hasHiddenBytes);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, HexLineOf,
    testing::Values(LineRow{{"Pairs"}, "A5 00 06", "A5 00 06"},
                    LineRow{{"Together"}, "a50006", "A5 00 06"},
                    LineRow{{"SingleDigits"}, "a5 0 6 ", "A5 00 06"},
                    LineRow{{"AsInC"}, "0xA5, 0X00,0x6;", "A5 00 06"},
                    LineRow{{"Indented"}, " \t A5\t00\r", "A5 00"},
                    LineRow{{"FullDumpLine"},
                            "A5 00 4D 50 E0 63 02 00 47 A5 00 44 50 E0 DA 01 |..MP.c..G..DP...",
                            "A5 00 4D 50 E0 63 02 00 47 A5 00 44 50 E0 DA 01"},
                    LineRow{{"LastDumpLine"}, "02                   |.", "02", true},
                    LineRow{{"DumpOfAText"}, "7C 41 |zvkprinter: |", "7C 41", true},
                    LineRow{{"LogLine"}, "zvkprinter: <- A5 00", "A5 00", true}),
    support::rowName);

class NoHexLine : public testing::TestWithParam<const char*> {};

TEST_P(NoHexLine, IsNotTaken) {
  EXPECT_FALSE(readHexLine(GetParam()).has_value());
}

INSTANTIATE_TEST_SUITE_P(Lines, NoHexLine,
                         testing::Values("", " ", ",", "|", "0x", "A5 00 06 G", "A5 0 000", "* A5",
                                         "***", "12:34:56", "2026-11-21", "# A5 00",
                                         "zvkprinter: ", "zvkprinter:    A5", "-1", "A5 +1",
                                         "D [ZVK] SSID = home", "\xC3\xA5"));

TEST(HexLine, TakesTheDirectionFromTheLog) {
  EXPECT_EQ(readHexLine("zvkprinter: <- A5")->direction, Direction::ToPrinter);
  EXPECT_EQ(readHexLine("zvkprinter: -> A5")->direction, Direction::FromPrinter);
  EXPECT_EQ(readHexLine("A5")->direction, Direction::Unknown);
}

TEST(HexLine, HasZerosForMaskedBytes) {
  const auto line = readHexLine("zvkprinter: <- A5 ** **");
  ASSERT_TRUE(line.has_value());
  EXPECT_TRUE(line->hasHiddenBytes);
  EXPECT_EQ(line->bytes, bytes("A5 00 00"));
}

}  // namespace
