#include "util/utility.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "testing/bytes.h"
#include "testing/output.h"
#include "testing/rows.h"

using support::Bytes;
using support::bytes;
using support::Output;
using support::outputOf;

TEST(CopyToBigEndianBuffer, WritesTheTwoBytesOfAShort) {
  Bytes out = bytes("EE EE EE");
  Utility::CopyToBigEndianBuffer(static_cast<unsigned short>(0xA50F), out.data());
  EXPECT_EQ(out, bytes("A5 0F EE"));
}

TEST(CopyToBigEndianBuffer, WritesTheLowFourBytesOfALong) {
  Bytes out = bytes("EE EE EE EE EE");
  Utility::CopyToBigEndianBuffer(static_cast<unsigned long>(0x99'A1B2C3D4ULL), out.data());
  EXPECT_EQ(out, bytes("A1 B2 C3 D4 EE"));
}

TEST(ExtractShortFromBuffer, ReadsTheHighByteFirst) {
  EXPECT_EQ(Utility::ExtractShortFromBuffer(bytes("FE 01").data()), 0xFE01);
}

TEST(ExtractLongFromBuffer, ReadsTheHighestByteFirst) {
  EXPECT_EQ(Utility::ExtractLongFromBuffer(bytes("FE 81 02 93").data()), 0xFE810293UL);
}

// --- Numbers of any length ----------------------------------------------------------------------

namespace {

struct NumberRow : support::Row {
  unsigned int value;
  const char* stored;
};

class NumberOfLength : public testing::TestWithParam<NumberRow> {};

}  // namespace

TEST_P(NumberOfLength, IsStoredHighestByteFirst) {
  const Bytes expected = bytes(GetParam().stored);
  unsigned int value = GetParam().value;
  auto length = static_cast<unsigned int>(expected.size());
  Bytes out(expected.size() + 1, 0xEE);
  EXPECT_EQ(Utility::IntToChar(&value, out.data(), &length), 0);
  EXPECT_EQ(out, support::joined({expected, bytes("EE")}));
  EXPECT_EQ(length, expected.size());
}

TEST_P(NumberOfLength, IsReadHighestByteFirst) {
  Bytes in = bytes(GetParam().stored);
  auto length = static_cast<unsigned int>(in.size());
  unsigned int value = 0x77777777;
  EXPECT_EQ(Utility::CharToInt(&value, in.data(), &length), 0);
  EXPECT_EQ(value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Lengths, NumberOfLength,
                         testing::Values(NumberRow{{"None"}, 0, ""}, NumberRow{{"One"}, 0xF1, "F1"},
                                         NumberRow{{"Two"}, 0x1234, "12 34"},
                                         NumberRow{{"Three"}, 0xA1B2C3, "A1 B2 C3"},
                                         NumberRow{{"Four"}, 0xF1E2D3C4, "F1 E2 D3 C4"}),
                         support::rowName);

TEST(IntToChar, DropsTheBytesAboveTheLength) {
  unsigned int value = 0xA1B2C3D4;
  unsigned int length = 2;
  Bytes out(2);
  Utility::IntToChar(&value, out.data(), &length);
  EXPECT_EQ(out, bytes("C3 D4"));
}

// --- Hex text -----------------------------------------------------------------------------------

namespace {

struct HexRow : support::Row {
  std::string text;
  const char* expected;
};

struct BadHexRow : support::Row {
  std::string text;
  int count;
  const char* message;
};

class HexText : public testing::TestWithParam<HexRow> {};
class BadHexText : public testing::TestWithParam<BadHexRow> {};

}  // namespace

TEST_P(HexText, IsConvertedToBytes) {
  const Bytes expected = bytes(GetParam().expected);
  unsigned char* buffer = nullptr;
  int count = -1;
  const Output output =
      outputOf([&] { count = Utility::getHexValues(GetParam().text.c_str(), buffer); });
  const std::unique_ptr<unsigned char[]> owned(buffer);
  ASSERT_EQ(count, static_cast<int>(expected.size()));
  ASSERT_NE(buffer, nullptr);
  EXPECT_EQ(Bytes(buffer, buffer + count), expected);
  EXPECT_EQ(output, Output());
}

INSTANTIATE_TEST_SUITE_P(Texts, HexText,
                         testing::Values(HexRow{{"LowerCase"}, "a5000350e0", "A5 00 03 50 E0"},
                                         HexRow{{"UpperCase"}, "A5000350E0", "A5 00 03 50 E0"},
                                         HexRow{{"EveryDigit"},
                                                "0123456789abcdefABCDEF",
                                                "01 23 45 67 89 AB CD EF AB CD EF"},
                                         HexRow{{"OddLastDigitIsDropped"}, "ABC", "AB"},
                                         HexRow{{"OneDigit"}, "7", ""}),
                         support::rowName);

TEST_P(BadHexText, IsReportedAndSetsTheBufferToNull) {
  unsigned char before = 0;
  unsigned char* buffer = &before;
  int count = -1;
  const Output output =
      outputOf([&] { count = Utility::getHexValues(GetParam().text.c_str(), buffer); });
  EXPECT_EQ(count, GetParam().count);
  EXPECT_EQ(buffer, nullptr);
  EXPECT_EQ(output, (Output{GetParam().message, ""}));
}

INSTANTIATE_TEST_SUITE_P(
    Characters, BadHexText,
    testing::Values(BadHexRow{{"InTheMiddle"}, "A5G0", 2, "not valid Hex char?! '47'\n"},
                    BadHexRow{{"OnlyTheFirstIsReported"}, "A5GZ", 2, "not valid Hex char?! '47'\n"},
                    BadHexRow{
                        {"LowerCaseIsShownAsUpperCase"}, "x", 0, "not valid Hex char?! '58'\n"},
                    BadHexRow{{"OddLast"}, "ABG", 1, "not valid Hex char?! '47'\n"},
                    BadHexRow{{"Blank"}, "A5 00", 2, "not valid Hex char?! '20'\n"},
                    BadHexRow{{"LineEnd"}, "\n", 0, "not valid Hex char?! 'A'\n"},
                    BadHexRow{{"BelowTheDigits"}, "/0", 1, "not valid Hex char?! '2F'\n"},
                    BadHexRow{{"AboveTheDigits"}, ":0", 1, "not valid Hex char?! '3A'\n"},
                    BadHexRow{{"BelowTheLetters"}, "@0", 1, "not valid Hex char?! '40'\n"},
                    BadHexRow{{"BelowTheSmallLetters"}, "`0", 1, "not valid Hex char?! '60'\n"},
                    BadHexRow{{"TopBitSet"}, "\x80", 0, "not valid Hex char?! 'FFFFFF80'\n"},
                    BadHexRow{{"AllBitsSet"}, "00\xFF", 1, "not valid Hex char?! 'FFFFFFFF'\n"}),
    support::rowName);

TEST(GetHexValues, LeavesTheBufferUnchangedForAnEmptyText) {
  unsigned char before = 0;
  unsigned char* buffer = &before;
  EXPECT_EQ(Utility::getHexValues("", buffer), 0);
  EXPECT_EQ(buffer, &before);
}

// --- Dump ---------------------------------------------------------------------------------------

namespace {

struct DumpRow : support::Row {
  Bytes data;
  std::string dump;
};

class Dump : public testing::TestWithParam<DumpRow> {};

}  // namespace

TEST_P(Dump, GoesToStandardErrorInHexAndAsText) {
  Bytes data = GetParam().data;
  const auto show = [&] {
    Utility::ShowBytes(data.data(), static_cast<int>(data.size()));
  };
  EXPECT_EQ(outputOf(show), (Output{"", GetParam().dump}));
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, Dump,
    testing::Values(DumpRow{{"None"}, {}, ""}, DumpRow{{"One"}, bytes("5A"), "5A |Z\n"},
                    DumpRow{{"Three"}, bytes("41 00 7F"), "41 00 7F |A..\n"},
                    DumpRow{{"Fifteen"},
                            Bytes(15, 'a'),
                            "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 |aaaaaaaaaaaaaaa\n"},
                    DumpRow{{"Sixteen"},
                            Bytes(16, 'a'),
                            "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 |aaaaaaaaaaaaaaaa\n"},
                    DumpRow{{"Seventeen"},
                            Bytes(17, 'a'),
                            "61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 61 |aaaaaaaaaaaaaaaa\n"
                            "61 " +
                                std::string(45, ' ') + "|a\n"},
                    DumpRow{{"Twenty"},
                            Bytes(20, 'b'),
                            "62 62 62 62 62 62 62 62 62 62 62 62 62 62 62 62 |bbbbbbbbbbbbbbbb\n"
                            "62 62 62 62 " +
                                std::string(36, ' ') + "|bbbb\n"},
                    DumpRow{{"ThirtyTwo"},
                            Bytes(32, 0xFF),
                            "FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF |................\n"
                            "FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF FF |................\n"}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Characters, Dump,
    testing::Values(DumpRow{{"FirstAndLastPrintable"},
                            bytes("1F 20 21 7D 7E 7F"),
                            "1F 20 21 7D 7E 7F |. !}~.\n"},
                    DumpRow{{"TopBitSet"}, bytes("80 A5 C1 FF"), "80 A5 C1 FF |....\n"},
                    DumpRow{{"BarAndLineEnd"}, bytes("7C 0A"), "7C 0A ||.\n"}),
    support::rowName);

TEST(ShowBytes, WritesNothingForANegativeCount) {
  unsigned char byte = 0x41;
  EXPECT_EQ(outputOf([&] { Utility::ShowBytes(&byte, -1); }), Output());
}

TEST(ShowBytes, WritesEveryLineOfALongDump) {
  Bytes data(std::size_t{16} * 1000, 'x');
  std::string expected;
  for (int line = 0; line < 1000; ++line) {
    expected += "78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 78 |xxxxxxxxxxxxxxxx\n";
  }
  const auto show = [&] {
    Utility::ShowBytes(data.data(), static_cast<int>(data.size()));
  };
  EXPECT_EQ(outputOf(show), (Output{"", expected}));
}
