#include <gtest/gtest.h>
#include <string>

#include "decoder/decoded.h"
#include "decoder/hex_block.h"

// Dumps of xxd and hexdump, and bytes separated by colons.

namespace {

const std::string QueryWords = "request, bare, 9 bytes: query\n    wireless network 28 08: SSID\n";
const std::string Dump =
    "00000000: a500 0650 e0d8 0028  ...P...(\n"
    "00000008: 08                   .\n";

/// The start of a dump of settings that contain a text of 75 zero bytes.
const std::string Zeros =
    "00000000  a5 00 54 50 e0 da 01 28  08 00 00 4b 00 00 00 00  |..TP...(...K....|\n"
    "00000010  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |................|\n"
    "*\n";
const std::string ZerosWords =
    "request, bare, 87 bytes: store settings\n    wireless network 28 08: SSID = \"\"\n";

TEST(HexDump, JoinsItsLinesToOneStream) {
  EXPECT_EQ(wordsOf(Dump), "lines 1-2: " + QueryWords);
  EXPECT_EQ(wordsOf("00000000  A5 00 06 50 E0 D8 00 28  08 A5 00 02 D4 E0        |...P...(......|\n"
                    "0000000e\n"),
            "line 1: " + QueryWords + "line 1: reply, bare, 5 bytes: refused\n");
}

TEST(HexDump, MayBeBetweenOtherLines) {
  EXPECT_EQ(wordsOf("$ xxd packet\n" + Dump + "$ xxd packet\n" + Dump + "$\n"),
            "lines 2-3: " + QueryWords + "lines 5-6: " + QueryWords);
}

TEST(HexDump, MayFollowAnotherDump) {
  EXPECT_EQ(wordsOf(Dump + Dump), "lines 1-2: " + QueryWords + "lines 3-4: " + QueryWords);
  EXPECT_EQ(wordsOf("A5 00 06 50 E0\n" + Dump + "A5 00 06 50 E0 D8 00 28 08\n"),
            "line 1: cut packet: 5 of 9 bytes\nlines 2-3: " + QueryWords + "line 4: " + QueryWords);
}

TEST(HexDump, MayBeginAtAnyOffset) {
  EXPECT_EQ(wordsOf("fffffff8: a500 0650 e0d8 0028  ...P...(\n100000000: 08  .\n"),
            "lines 1-2: " + QueryWords);
}

TEST(HexDump, MayContainACollectedReply) {
  EXPECT_EQ(
      wordsOf("00000000  e0 da 01 01                                       |....|\n00000004\n"),
      "line 1: reply, bare, collected, 4 bytes: settings accepted (01)\n");
}

TEST(HexDump, ReportsMissingLines) {
  const Decoded result = decoded(
      "00000000: a500 0650  ...P\n"
      "00000008: 08         .\n");
  EXPECT_EQ(result.words,
            "line 1: cut packet: 4 of 9 bytes\n"
            "line 2: 4 bytes missing from the dump\n"
            "line 2: 1 byte outside any packet\n");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(wordsOf("00000000: a500 02d4 e0  .....\nffffffffffffffff: a5  .\n"),
            "line 1: reply, bare, 5 bytes: refused\n"
            "line 2: 18446744073709551610 bytes missing from the dump\n"
            "line 2: cut packet: 1 byte\n");
}

TEST(HexDump, StartsANewStreamIfTheOffsetDecreases) {
  EXPECT_EQ(wordsOf("00000000: a500 0650  ...P\n00000002: a500 02d4 e0  .....\n"),
            "line 1: cut packet: 4 of 9 bytes\nline 2: reply, bare, 5 bytes: refused\n");
}

TEST(HexDump, MayContainAProgramNameInItsTextColumn) {
  EXPECT_EQ(wordsOf("00000000: a500 1450 e0d8 0028 0800 0c7a 766b 7072  ...P...(...zvkpr\n"
                    "00000010: 696e 7465 723a 20                        inter: \n"),
            "lines 1-2: reply, bare, 23 bytes: value\n"
            "    wireless network 28 08: SSID = \"zvkprinter: \"\n");
  EXPECT_EQ(wordsOf("00000000: a500 1550 e0d8 0028                      ...P...(\n"
                    "00000008: 0800 0d7a 766b 7072 696e 7465 723a 2041  ...zvkprinter: A\n"),
            "lines 1-2: reply, bare, 24 bytes: value\n"
            "    wireless network 28 08: SSID = \"zvkprinter: A\"\n");
}

TEST(HexDump, EndsAtItsLastOffset) {
  const std::string cut =
      "00000000  a5 00 06 50 e0                                    |...P.|\n00000005\n";
  EXPECT_EQ(wordsOf(cut), "line 1: cut packet: 5 of 9 bytes\n");
  EXPECT_EQ(wordsOf(cut + "00000005: d800 2808  ..(.\n"),
            "line 1: cut packet: 5 of 9 bytes\nline 3: 4 bytes outside any packet\n");
  // The last line has the form of an offset, but is not the next offset. So it counts as bytes.
  EXPECT_EQ(wordsOf(Dump + "a50002d4e0\n"),
            "lines 1-2: " + QueryWords + "line 3: reply, bare, 5 bytes: refused\n");
  EXPECT_EQ(wordsOf(Dump + "a5000650\ne0d8002808\n"),
            "lines 1-2: " + QueryWords + "lines 3-4: " + QueryWords);
}

TEST(RepeatedLines, AreRepeatedUpToTheNextOffset) {
  EXPECT_EQ(
      wordsOf(Zeros + "00000050  00 00 00 00 00 00 00                              |.......|\n"
                      "00000057\n"),
      "lines 1-4: " + ZerosWords);
  // The form of `xxd -a`.
  EXPECT_EQ(wordsOf("00000000: a500 5450 e0da 0128 0800 004b 0000 0000  ..TP...(...K....\n"
                    "00000010: 0000 0000 0000 0000 0000 0000 0000 0000  ................\n"
                    "*\n"
                    "00000050: 0000 0000 0000 00                        .......\n"),
            "lines 1-4: " + ZerosWords);
}

TEST(RepeatedLines, MayEndTheDump) {
  EXPECT_EQ(wordsOf("00000000  a5 00 02 d4 e0  |.....|\n*\n0000000f\n"),
            "line 1: reply, bare, 5 bytes: refused\n"
            "line 2: reply, bare, 5 bytes: refused\n"
            "line 2: reply, bare, 5 bytes: refused\n");
}

TEST(RepeatedLines, AreReportedIfTheNextOffsetIsWrong) {
  EXPECT_EQ(wordsOf(Zeros + "00000051  00 00 00 00 00 00 00  |.......|\n"),
            "lines 1-2: cut packet: 32 of 87 bytes\n"
            "line 4: 49 bytes missing from the dump\n"
            "line 4: 7 bytes outside any packet\n");
  EXPECT_EQ(wordsOf(Zeros + "other\n"), "lines 1-2: cut packet: 32 of 87 bytes\n");
  EXPECT_EQ(wordsOf("*\n" + Dump), "lines 2-3: " + QueryWords);
  EXPECT_EQ(wordsOf(Zeros + "other\n00000000: 00  .\n00000002: 00  .\n"),
            "lines 1-2: cut packet: 32 of 87 bytes\n"
            "line 5: 1 byte outside any packet\n"
            "line 6: 1 byte missing from the dump\n"
            "line 6: 1 byte outside any packet\n");
  EXPECT_EQ(wordsOf("A5 00 06 50 E0\n*\nD8 00 28 08\n"),
            "line 1: cut packet: 5 of 9 bytes\nline 3: 4 bytes outside any packet\n");
}

TEST(RepeatedLines, HaveAtMostTheSizeOfTheLargestPacket) {
  EXPECT_EQ(decoder::MostRepeatedBytes, 65538U);
  const std::string one = "00000000  00  |.|\n*\n";
  EXPECT_EQ(wordsOf(one + "00010003\n"), "lines 1-2: 65539 bytes outside any packet\n");
  EXPECT_EQ(wordsOf(one + "00010004\n"),
            "line 1: 1 byte outside any packet\nline 2: 65539 bytes repeated; the limit for one "
            "input is 65538\n");
  EXPECT_EQ(wordsOf(one + "ffffffffffffffff\n"),
            "line 1: 1 byte outside any packet\n"
            "line 2: 18446744073709551614 bytes repeated; the limit for one input is 65538\n");
  // The limit holds for all dumps of an input together.
  EXPECT_EQ(wordsOf(one + "00010002\n" + one + "00000002\n" + one + "00000002\n"),
            "lines 1-2: 65538 bytes outside any packet\n"
            "lines 4-5: 2 bytes outside any packet\n"
            "line 7: 1 byte outside any packet\n"
            "line 8: 1 byte repeated; the limit for one input is 65538\n");
}

TEST(ColonList, JoinsItsLinesToOneStream) {
  EXPECT_EQ(wordsOf("a5:00:06:50:e0:d8:00:28:08\n"), "line 1: " + QueryWords);
  EXPECT_EQ(wordsOf("  A5:00:06:50:E0:\n  D8:00:28:\n  08\n"), "lines 1-3: " + QueryWords);
}

TEST(ColonList, IsNeitherATimeNorAnAddress) {
  for (const std::string text : {"12:34:56", "00:11:22:33:44:55", "e0:d5:5e:00:00:00"}) {
    EXPECT_EQ(decoded(text).status, 3) << text;
    EXPECT_EQ(decoded("A5 00 06 50 E0\n" + text).words, "line 1: cut packet: 5 of 9 bytes\n");
    EXPECT_EQ(wordsOf("a5:00:02:d4:e0\nother\n" + text), "line 1: reply, bare, 5 bytes: refused\n");
  }
}

TEST(HexDump, EndsOnlyAtALineWithOnlyAnOffset) {
  struct {
    const char* line;
    const char* bytes;
  } const rows[] = {{"9", "1 byte"}, {"00000009 00", "5 bytes"}, {"000000000000000009", "9 bytes"}};
  EXPECT_EQ(wordsOf(Dump + "00000009\r\n"), "lines 1-2: " + QueryWords);
  for (const auto& row : rows) {
    EXPECT_EQ(wordsOf(Dump + row.line),
              "lines 1-2: " + QueryWords + "line 3: " + row.bytes + " outside any packet\n");
  }
}

/// Cuts a text with lines of every form at each position.
TEST(HexDump, MayBeCutAnywhere) {
  const std::string whole = Dump + Zeros + "00000050  00 00  |..|\n00000052\n" +
                            "a5:00:02:\nd4:e0\nx A5 00 02 D4 E0 |.....\n";
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    EXPECT_NE(decoded(whole.substr(0, size)).status, 2) << size;
  }
}

}  // namespace
