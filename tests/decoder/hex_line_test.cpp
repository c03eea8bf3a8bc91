#include "decoder/hex_line.h"

#include <gtest/gtest.h>

#include "testing/bytes.h"
#include "testing/rows.h"

namespace {

using decoder::HexLine;
using decoder::readHexLine;
using support::bytes;
using Form = HexLine::Form;
using Direction = decoder::Stream::Direction;

struct LineRow : support::Row {
  const char* line;
  const char* bytes;
  bool endsBlock = false;
};

class HexLineOf : public testing::TestWithParam<LineRow> {};

TEST_P(HexLineOf, IsRecognized) {
  const auto line = readHexLine(GetParam().line);
  ASSERT_TRUE(line.has_value());
  EXPECT_EQ(line->bytes, bytes(GetParam().bytes));
  EXPECT_EQ(line->endsBlock, GetParam().endsBlock);
  EXPECT_EQ(line->form, Form::Plain);
  EXPECT_FALSE(line->hasHiddenBytes);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, HexLineOf,
    testing::Values(LineRow{{"Pairs"}, "A5 00 06", "A5 00 06"},
                    LineRow{{"Together"}, "a50006", "A5 00 06"},
                    LineRow{{"SingleDigits"}, "a5 0 6 ", "A5 00 06"},
                    LineRow{{"CSyntax"}, "0xA5, 0X00,0x6;", "A5 00 06"},
                    LineRow{{"Indented"}, " \t A5\t00\r", "A5 00"},
                    LineRow{{"FullDumpLine"},
                            "A5 00 4D 50 E0 63 02 00 47 A5 00 44 50 E0 DA 01 |..MP.c..G..DP...",
                            "A5 00 4D 50 E0 63 02 00 47 A5 00 44 50 E0 DA 01"},
                    LineRow{{"LastDumpLine"}, "02                   |.", "02", true},
                    LineRow{{"DumpOfAText"}, "7C 41 |zvkprinter: |", "7C 41", true},
                    LineRow{{"DumpOfBars"}, "20 7C 20 7C || | |", "20 7C 20 7C", true},
                    LineRow{{"DumpAfterAPrompt"},
                            "the password:A5 00 3F 50 E0 63 02 00 39 A5 00 36 50 E0 DA 01 "
                            "|..?P.c..9..6P...\r",
                            "A5 00 3F 50 E0 63 02 00 39 A5 00 36 50 E0 DA 01"},
                    LineRow{{"DumpAfterATime"},
                            "2026-11-22 12:34 02                                              |.",
                            "02",
                            true},
                    LineRow{{"ShortDumpAfterATime"}, "12:34:56 A5 7C |.|", "A5 7C", true},
                    LineRow{{"ShortDumpAfterAWord"}, "n8 A5 7C |.|", "A5 7C", true},
                    LineRow{{"FullDumpAfterANumber"},
                            "12 A5 00 3F 50 E0 63 02 00 39 A5 00 36 50 E0 DA 01 |..?P.c..9..6P...",
                            "A5 00 3F 50 E0 63 02 00 39 A5 00 36 50 E0 DA 01"},
                    LineRow{{"DumpWithItsTextCut"},
                            "A5 00 3F 50 E0 63 02 00 39 A5 00 36 50 E0 DA 01 |.",
                            "A5 00 3F 50 E0 63 02 00 39 A5 00 36 50 E0 DA 01"},
                    LineRow{{"ShortDumpWithItsTextCut"}, "A5 00 06 |.", "A5 00 06", true},
                    LineRow{{"LogLine"}, "zvkprinter: <- A5 00", "A5 00", true}),
    support::rowName);

struct CountedRow : support::Row {
  const char* line;
  std::uint64_t offset;
  const char* bytes;
};

class CountedLineOf : public testing::TestWithParam<CountedRow> {};

TEST_P(CountedLineOf, IsRecognized) {
  const auto line = readHexLine(GetParam().line);
  ASSERT_TRUE(line.has_value());
  EXPECT_EQ(line->form, Form::Counted);
  EXPECT_EQ(line->offset, GetParam().offset);
  EXPECT_EQ(line->bytes, bytes(GetParam().bytes));
  EXPECT_FALSE(line->endsBlock);
}

INSTANTIATE_TEST_SUITE_P(
    Xxd, CountedLineOf,
    testing::Values(
        CountedRow{{"Full"},
                   "00000010: 2808 0000 0278 0041 4241 4241 4241 4241  (....x.ABABABABA",
                   16,
                   "28 08 00 00 02 78 00 41 42 41 42 41 42 41 42 41"},
        CountedRow{
            {"Last"}, "00000000: a500 06                                  ...", 0, "A5 00 06"},
        CountedRow{{"EightColumns"},
                   "00000008: 0200 0004 0000 0001  ........\r",
                   8,
                   "02 00 00 04 00 00 00 01"},
        CountedRow{{"UpperCase"}, "00000000: A5E0  ..", 0, "A5 E0"},
        CountedRow{{"SingleBytes"}, "00000000: 7c 41  |A", 0, "7C 41"},
        CountedRow{
            {"GroupsOfFour"}, "00000000: a5000650 e0d800    ...P...", 0, "A5 00 06 50 E0 D8 00"},
        CountedRow{{"OneGroup"}, "00000000: a5000650e0  ...P.", 0, "A5 00 06 50 E0"},
        CountedRow{{"SevenDigits"}, "0000010: a500  ..", 16, "A5 00"},
        CountedRow{{"SixteenDigits"}, "ffffffffffffffff: a5  .", 0xFFFFFFFFFFFFFFFF, "A5"},
        CountedRow{{"Indented"}, "  \t00000000: a500  ..", 0, "A5 00"},
        CountedRow{{"WithoutText"}, "00000000: a500", 0, "A5 00"},
        CountedRow{{"TextOfBlanks"}, "00000000: 2020     ", 0, "20 20"},
        CountedRow{{"TextWithBlanksAtItsEnds"}, "00000000: 2041 20   A", 0, "20 41 20"},
        CountedRow{{"TextOfALog"},
                   "00000000: 7a76 6b70 7269 6e74 6572 3a20  zvkprinter: ",
                   0,
                   "7A 76 6B 70 72 69 6E 74 65 72 3A 20"}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Hexdump, CountedLineOf,
    testing::Values(
        CountedRow{{"Full"},
                   "00000010  a5 00 14 50 e0 da 01 28  02 00 00 04 00 00 00 01  |...P...(........|",
                   16,
                   "A5 00 14 50 E0 DA 01 28 02 00 00 04 00 00 00 01"},
        CountedRow{{"Last"}, "00000000  A5 00                                   |..|", 0, "A5 00"},
        CountedRow{{"EightColumns"},
                   "00000008  a5 00 14 50 e0 da 01 28   |...P...(|\r",
                   8,
                   "A5 00 14 50 E0 DA 01 28"},
        CountedRow{{"TextOfBars"}, "00000000  7c 7c  ||||", 0, "7C 7C"},
        CountedRow{{"TextOfAnotherCharacterSet"}, "00000000  e9  |\xC3\xA9|", 0, "E9"},
        CountedRow{{"TextCut"}, "a5000000  41 42 43  |A", 0xA5000000, "41 42 43"},
        CountedRow{{"WithoutText"}, "00000000  a5 00  06", 0, "A5 00 06"},
        CountedRow{{"SixteenDigits"}, "00000001ffffffff  a5  |.|", 0x1FFFFFFFF, "A5"}),
    support::rowName);

class ColonLineOf : public testing::TestWithParam<LineRow> {};

TEST_P(ColonLineOf, IsRecognized) {
  const auto line = readHexLine(GetParam().line);
  ASSERT_TRUE(line.has_value());
  EXPECT_EQ(line->form, Form::Colons);
  EXPECT_EQ(line->bytes, bytes(GetParam().bytes));
}

INSTANTIATE_TEST_SUITE_P(Forms, ColonLineOf,
                         testing::Values(LineRow{{"Pairs"}, "a5:00:06", "A5 00 06"},
                                         LineRow{{"UpperCase"}, "A5:E0", "A5 E0"},
                                         LineRow{
                                             {"ContinuedOnTheNextLine"}, "    a5:00:\r", "A5 00"},
                                         LineRow{{"OneByte"}, "08:", "08"}),
                         support::rowName);

/// Lines that are similar to those of hexdump but have another form.
INSTANTIATE_TEST_SUITE_P(
    Groups, HexLineOf,
    testing::Values(LineRow{{"FourTogether"}, "a5000650  e0 d8", "A5 00 06 50 E0 D8"},
                    LineRow{{"DigitMissing"}, "00000000  a5 0", "00 00 00 00 A5 00"},
                    LineRow{{"OneBlank"}, "00000000 a5 |.|", "00 00 00 00 A5", true},
                    LineRow{{"ThreeBlanks"}, "00000000  a5   00  |..|", "00 00 00 00 A5 00", true},
                    LineRow{{"NoBlank"}, "00000000  a500 |..|", "00 00 00 00 A5 00", true},
                    LineRow{{"NoBytes"}, "00000000  |", "00 00 00 00", true}),
    support::rowName);

class OtherLine : public testing::TestWithParam<const char*> {};

TEST_P(OtherLine, IsNotRecognized) {
  EXPECT_FALSE(readHexLine(GetParam()).has_value());
}

INSTANTIATE_TEST_SUITE_P(
    Lines, OtherLine,
    testing::Values("", " ", ",", "|", "0x", "A5 00 06 G", "A5 0 000", "* A5", "***", "12:34:5",
                    "1:2", ":a5:00", "a5::00", "a5:00:0", "a5:00 06", "a5:0006", "2026-11-21",
                    "# A5 00",
                    // Dumps of xxd whose text column shows other bytes.
                    "00000000: 501400a5 2801dae0  ...P...(", "00000000: 10100101 00000000  ..",
                    "00000000: a500 06  ....", "00000000: a500  .. .", "00000000: a50 0  ..",
                    "00000000: ", "00000000:a500", "000000: a500", "10000000000000000: a500",
                    "00000000000000000: a500",

                    // Dumps whose text column shows other bytes, or with other spaces.
                    "x A5 00 |...", "x A5 00 |.A", "xA5 0 |..", "x A500 |..", "x A5-00 |..",
                    "x A5 00|..", "xAA5 00 |..", "x A5  00 |..", "x A5 00  |..", "x |A", "x",
                    "x A5 00 !..", "x A5 00 06 |.", "-1", "A5 +1", "D [ZVK] SSID = home",
                    "\xC3\xA5"));

TEST(HexLine, HasTheDirectionInTheLog) {
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
