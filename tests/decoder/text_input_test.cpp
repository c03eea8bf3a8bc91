#include "decoder/text_input.h"

#include <gtest/gtest.h>

#include "decoder/decoded.h"

namespace {

const std::string Query = "A5 00 06 50 E0 D8 00 28 08";
const std::string QueryWords = "request, bare, 9 bytes: query\n    wireless network 28 08: SSID\n";

TEST(TextInput, IsEmptyWithoutHexLines) {
  EXPECT_EQ(wordsOf(""), "");
  EXPECT_EQ(wordsOf("D [ZVK] Basic config...\nD [ZVK] SSID = home\n"), "");
  EXPECT_EQ(decoded("no bytes").status, 3);
}

TEST(TextInput, MayHaveSeveralLinesPerPacketAndSeveralPacketsPerLine) {
  EXPECT_EQ(wordsOf("A5 00 06\n50 E0 D8\n00 28 08\n"), "lines 1-3: " + QueryWords);
  EXPECT_EQ(wordsOf(Query + " " + Query), "line 1: " + QueryWords + "line 1: " + QueryWords);
  EXPECT_EQ(wordsOf("A5 00\n06 50 E0 D8 00 28 08 A5 00\r\n06 50 E0 D8 00 28 08"),
            "lines 1-2: " + QueryWords + "lines 2-3: " + QueryWords);
}

TEST(TextInput, MayHaveBlocksBetweenOtherLines) {
  EXPECT_EQ(wordsOf("one\n" + Query + "\ntwo\n\n" + Query + "\n"),
            "line 2: " + QueryWords + "line 5: " + QueryWords);
}

TEST(TextInput, EndsABlockAtAnyOtherLine) {
  for (const std::string between : {"other", "", "# a comment"}) {
    const Decoded result = decoded("A5 00 06 50 E0\n" + between + "\n" + Query + "\n");
    EXPECT_EQ(result.words, "line 1: cut packet: 5 of 9 bytes\nline 3: " + QueryWords) << between;
    EXPECT_EQ(result.status, 1);
  }
}

TEST(TextInput, EndsABlockAtTheShortLineOfADump) {
  EXPECT_EQ(wordsOf("A5 00 06 50 E0 |.....\n" + Query + "          |.........\n"),
            "line 1: cut packet: 5 of 9 bytes\nline 2: " + QueryWords);
}

TEST(TextInput, FindsLogLinesAfterAListWithoutALineEnd) {
  EXPECT_EQ(wordsOf("a5 0 6 50 e0 d8 0 28 8 D [ZVK] Basic config...\n"), "line 1: " + QueryWords);
  EXPECT_EQ(wordsOf("a5 0 6 50 e0 d8 0 28 8 zvkprinter: <- " + Query + "\n"),
            "line 1: " + QueryWords + "line 1: " + QueryWords);
  // The text column of a dump may contain any text.
  EXPECT_EQ(wordsOf("A5 00 0F 50 E0 D8 00 28 08 00 07 7A 76 6B 70 72 |.D [ZVK] zvkprinter: <- A5\n"
                    "69 6E                                           |in\n"),
            "lines 1-2: reply, bare, 18 bytes: value\n"
            "    wireless network 28 08: SSID = \"zvkprin\"\n");
}

TEST(TextInput, FindsTheListOfTheDefaultRunBeforeItsProgress) {
  EXPECT_EQ(wordsOf("a5 0 6 50 e0 d8 0 28 8 Configuring the printer....\r\n"),
            "line 1: " + QueryWords);
}

TEST(TextInput, FindsADumpAfterOtherText) {
  EXPECT_EQ(wordsOf("Nov 22 00:40:58 zvkconfig[7]: A5 00 0F 50 E0 D8 00 28 08 00 07 7A 76 6B 70 72 "
                    "|...P...(...zvkpr\n"
                    "Nov 22 00:40:58 zvkconfig[7]: 69 6E                                           "
                    "|in\n"),
            "lines 1-2: reply, bare, 18 bytes: value\n"
            "    wireless network 28 08: SSID = \"zvkprin\"\n");
}

TEST(TextInput, EndsABlockAtTheStartOfALog) {
  EXPECT_EQ(wordsOf("A5 00 06 50 E0\nzvkprinter: <- " + Query + "\n"),
            "line 1: cut packet: 5 of 9 bytes\nline 2: " + QueryWords);
}

TEST(TextInput, ReadsTheRoleOfAnUnknownPacketFromTheLog) {
  EXPECT_EQ(wordsOf("zvkprinter: <- A5 00 03 50 E0 01\nzvkprinter: -> A5 00 03 50 E0 01\n"
                    "A5 00 03 50 E0 01\n"),
            "line 1: request, bare, 6 bytes: unknown packet\n    data = (1 byte)\n"
            "line 2: reply, bare, 6 bytes: unknown packet\n    data = (1 byte)\n"
            "line 3: packet, bare, 6 bytes: unknown packet\n    data = (1 byte)\n");
}

TEST(TextInput, NeverShowsBytesThatTheLogMasks) {
  decoder::Options options;
  options.showSecrets = true;
  const std::string_view log = "zvkprinter: <- A5 00 0B 50 E0 DA 01 28 11 00 00 02 ** **\n";
  const std::string_view plain = "A5 00 0B 50 E0 DA 01 28 11 00 00 02 61 62\n";
  const std::string head =
      "line 1: request, bare, 14 bytes: store settings\n"
      "    wireless network 28 11: pre-shared key = ";
  EXPECT_EQ(decodedWith(options, log).words, head + "(2 bytes)\n");
  EXPECT_EQ(decodedWith(options, plain).words, head + "\"ab\"\n");
  EXPECT_EQ(wordsOf(plain), head + "(2 bytes)\n");
  EXPECT_EQ(decodedWith(options, "A5 00 0B 50 E0 DA 01 28 11 00 00 02 **\n61\n").words,
            "lines 1-2" + head.substr(6) + "(2 bytes)\n");
  // The masks of one block do not apply to the next block.
  EXPECT_EQ(decodedWith(options, std::string(log) + std::string(plain)).words,
            head + "(2 bytes)\nline 2" + head.substr(6) + "\"ab\"\n");
}

TEST(CollectedReply, IsReadRecordByRecord) {
  EXPECT_EQ(wordsOf("E0 63 02 00 0C A5 00 09 50 E0 D8 00 2A 1D 00 01 |.c......P...*...\n"
                    "02                                              |.\n"),
            "lines 1-2: reply, wrapped, collected, 17 bytes: value\n"
            "    802.1x 2A 1D: 802.1x authentication status = 2 (Authenticated)\n");
  EXPECT_EQ(wordsOf("E0 D8 00 28 08 00 02 68 69 E0 DA 01 01"),
            "line 1: reply, bare, collected, 13 bytes: value\n"
            "    wireless network 28 08: SSID = \"hi\"\n"
            "    and: settings accepted (01)\n");
}

TEST(CollectedReply, MayConsistOfSeveralWrappedPackets) {
  const std::string record = "E0 63 02 00 0C A5 00 09 50 E0 D8 00 2A 1D 00 01 0";
  EXPECT_EQ(wordsOf(record + "2 " + record + "5"),
            "line 1: reply, wrapped, collected, 34 bytes: value\n"
            "    802.1x 2A 1D: 802.1x authentication status = 2 (Authenticated)\n"
            "    and: value\n"
            "    802.1x 2A 1D: 802.1x authentication status = 5 (Server Cert Expired)\n");
}

TEST(CollectedReply, DropsTheCommandBytesInsideTheXml) {
  EXPECT_EQ(wordsOf("E0 C0 03 00 01 00 E0 3C 61 E0 2F 3E"),
            "line 1: reply, bare, collected, 12 bytes: reply to a method call\n    <a />\n");
}

TEST(CollectedReply, ReportsMalformedContent) {
  const Decoded garbage = decoded("E0 D8 00 28 08 00 05 68");
  EXPECT_EQ(garbage.words,
            "line 1: reply, bare, collected, 8 bytes: malformed packet, expected a value of "
            "5 bytes, got 1\n    wireless network 28 08: SSID\n    data = (1 byte)\n");
  EXPECT_EQ(garbage.status, 1);
  EXPECT_EQ(decoded("E0").words, "line 1: reply, bare, collected, 1 byte: unknown packet\n");
  EXPECT_EQ(decoded("E0 63 02 00 09 A5").words,
            "line 1: reply, wrapped, collected, 6 bytes: malformed packet, expected 9 bytes in "
            "the wrapper, got 1\n    data = (1 byte)\n");
}

}  // namespace
