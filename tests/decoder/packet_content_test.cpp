#include "decoder/packet_content.h"

#include <gtest/gtest.h>

#include "decoder/decoded.h"
#include "testing/bytes.h"
#include "testing/rows.h"

namespace {

struct PacketRow : support::Row {
  const char* packet;
  const char* words;  ///< the report after "line 1: "
  int status = 0;
};

class PacketWords : public testing::TestWithParam<PacketRow> {};

TEST_P(PacketWords, DescribeThePacket) {
  const Decoded result = decoded(GetParam().packet);
  EXPECT_EQ(result.words, "line 1: " + std::string(GetParam().words));
  EXPECT_EQ(result.status, GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(
    Requests, PacketWords,
    testing::Values(
        PacketRow{{"Query"},
                  "A5 00 06 50 E0 D8 00 0A 02",
                  "request, bare, 9 bytes: query\n    network address 0A 02: IP address\n"},
        PacketRow{{"WrappedQuery"},
                  "A5 00 0F 50 E0 63 02 00 09 A5 00 06 50 E0 D8 00 06 1F",
                  "request, wrapped, 18 bytes: query\n    adapter 06 1F: adapter descriptor\n"},
        PacketRow{{"QueryForAnUnknownSetting"},
                  "A5 00 06 50 E0 D8 00 28 FF",
                  "request, bare, 9 bytes: query\n"
                  "    wireless network 28 FF: unknown setting\n"},
        PacketRow{{"QueryInAnUnknownGroup"},
                  "A5 00 06 50 E0 D8 00 29 01",
                  "request, bare, 9 bytes: query\n    29 01: unknown setting\n"},
        PacketRow{{"Settings"},
                  "A5 00 14 50 E0 DA 01 28 02 00 00 04 00 00 00 01 28 08 00 00 02 78 00",
                  "request, bare, 23 bytes: store settings\n"
                  "    wireless network 28 02: mode = 1 (ad-hoc)\n"
                  "    wireless network 28 08: SSID = \"x\"\n"},
        PacketRow{{"SingleSettings"},
                  "A5 00 0A 50 E0 D8 01 06 14 00 00 01 01",
                  "request, bare, 13 bytes: store settings one by one\n"
                  "    adapter 06 14: adapter reset = 1\n"},
        PacketRow{
            {"NoSettings"}, "A5 00 04 50 E0 DA 01", "request, bare, 7 bytes: store settings\n"},
        PacketRow{{"GenerationOfACertificate"},
                  "A5 00 06 50 E0 DA 01 2A 0C 00 00 01 01",
                  "request, bare, 13 bytes: store settings\n"
                  "    802.1x 2A 0C: generate certificate = 1\n"},
        PacketRow{{"WrappedGenerationOfACertificate"},
                  "A5 00 13 50 E0 63 02 00 0D A5 00 06 50 E0 DA 01 2A 0C 00 00 01 01",
                  "request, wrapped, 22 bytes: store settings\n"
                  "    802.1x 2A 0C: generate certificate = 1\n"},
        PacketRow{{"Secrets"},
                  "A5 00 11 50 E0 DA 01 2A 03 00 00 02 70 00 28 FE 00 00 01 6B",
                  "request, bare, 20 bytes: store settings\n"
                  "    802.1x 2A 03: 802.1x password = (2 bytes)\n"
                  "    wireless network 28 FE: object 28 FE = (1 bytes)\n"},
        PacketRow{{"TextThatDoesNotPrint"},
                  "A5 00 0D 50 E0 DA 01 28 08 00 00 04 1B 5B FF 0A",
                  "request, bare, 16 bytes: store settings\n"
                  "    wireless network 28 08: SSID = \"\\x1B[\\xFF\\x0A\"\n"},
        PacketRow{{"Announcement"},
                  "A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E",
                  "request, bare, 19 bytes: announces a method call\n"},
        PacketRow{{"MethodCall"},
                  "A5 00 0A 50 E0 C0 03 00 01 3C 61 2F 3E",
                  "request, bare, 13 bytes: method call\n    <a />\n"},
        PacketRow{{"MethodCallThatIsNotWellFormed"},
                  "A5 00 0B 50 E0 C0 03 00 01 3C 61 0A 1B 62",
                  "request, bare, 14 bytes: method call, not well-formed XML\n"
                  "    <a\n    \\x1Bb\n"},
        PacketRow{{"EmptyMethodCall"},
                  "A5 00 06 50 E0 C0 03 00 01",
                  "request, bare, 9 bytes: method call, not well-formed XML\n"}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Replies, PacketWords,
    testing::Values(
        PacketRow{{"Accepted"},
                  "A5 00 05 50 E0 DA 01 01",
                  "reply, bare, 8 bytes: settings accepted (01)\n"},
        PacketRow{{"NotAccepted"},
                  "A5 00 0E 50 E0 63 02 00 08 A5 00 05 50 E0 DA 01 00",
                  "reply, wrapped, 17 bytes: settings not accepted (00)\n"},
        PacketRow{{"Refusal"}, "A5 00 02 D4 E0", "reply, bare, 5 bytes: refused\n"},
        PacketRow{{"EndOfExchange"},
                  "A5 00 06 80 E0 D8 00 28 08",
                  "reply, bare, 9 bytes: ends the exchange\n"},
        PacketRow{{"Address"},
                  "A5 00 0C 50 E0 D8 00 0A 02 00 04 C0 A8 01 14",
                  "reply, bare, 15 bytes: value\n"
                  "    network address 0A 02: IP address = 192.168.1.20\n"},
        PacketRow{{"NoValue"},
                  "A5 00 08 50 E0 D8 00 28 11 00 00",
                  "reply, bare, 11 bytes: value\n"
                  "    wireless network 28 11: pre-shared key = (0 bytes)\n"},
        PacketRow{{"MoreFollows"},
                  "A5 00 12 70 E0 63 02 00 0C A5 00 09 50 E0 D8 00 2A 1D 00 01 0B",
                  "reply, wrapped, more follows, 21 bytes: value\n"
                  "    802.1x 2A 1D: 802.1x authentication status = 11 (CA Certificate Not "
                  "Installed)\n"},
        PacketRow{{"SeveralRecords"},
                  "A5 00 1E 50 E0 63 02 00 18 A5 00 09 50 E0 D8 00 2A 1D 00 01 00 "
                  "A5 00 09 50 E0 D8 00 2A 1D 00 01 0C",
                  "reply, wrapped, 33 bytes: value\n"
                  "    802.1x 2A 1D: 802.1x authentication status = 0 (802.1x not enabled)\n"
                  "    and: value\n"
                  "    802.1x 2A 1D: 802.1x authentication status = 12\n"},
        PacketRow{{"MethodReply"},
                  "A5 00 0C 50 E0 C0 03 00 01 00 E0 3C 61 2F 3E",
                  "reply, bare, 15 bytes: reply to a method call\n    <a />\n"}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Faults, PacketWords,
    testing::Values(
        PacketRow{
            {"NoFlag"}, "A5 00 00", "packet, bare, 3 bytes: malformed packet, no flag byte\n", 1},
        PacketRow{{"OnlyFlag"}, "A5 00 01 50", "packet, bare, 4 bytes: unknown packet\n", 1},
        PacketRow{{"UnknownCommand"},
                  "A5 00 06 50 E1 D8 00 28 08",
                  "packet, bare, 9 bytes: unknown packet\n    data = (5 bytes)\n",
                  1},
        PacketRow{{"QueryCut"},
                  "A5 00 05 50 E0 D8 00 28",
                  "packet, bare, 8 bytes: malformed packet, cut query\n"
                  "    data = (1 byte)\n",
                  1},
        PacketRow{{"QueryFollowedByAByte"},
                  "A5 00 07 50 E0 D8 00 28 08 00",
                  "packet, bare, 10 bytes: malformed packet, 1 byte after the query\n"
                  "    data = (1 byte)\n",
                  1},
        PacketRow{{"ValueTooLong"},
                  "A5 00 0A 50 E0 D8 00 28 08 00 01 61 62",
                  "packet, bare, 13 bytes: malformed packet, expected a value of 1 byte, got 2\n"
                  "    wireless network 28 08: SSID\n"
                  "    data = (2 bytes)\n",
                  1},
        PacketRow{{"SettingThatDoesNotFit"},
                  "A5 00 10 50 E0 DA 01 28 08 00 00 01 61 28 11 00 00 02 6B",
                  "packet, bare, 19 bytes: malformed packet, cut setting object\n"
                  "    wireless network 28 08: SSID = \"a\"\n"
                  "    data = (6 bytes)\n",
                  1},
        PacketRow{{"WrapperWithoutSize"},
                  "A5 00 05 50 E0 63 02 00",
                  "packet, wrapped, 8 bytes: malformed packet, wrapper without a size\n"
                  "    data = (3 bytes)\n",
                  1},
        PacketRow{{"EmptyWrapper"},
                  "A5 00 06 50 E0 63 02 00 00",
                  "packet, wrapped, 9 bytes: malformed packet, empty wrapper\n",
                  1},
        PacketRow{{"WrapperTooLong"},
                  "A5 00 0F 50 E0 63 02 00 0A A5 00 06 50 E0 D8 00 0A 02",
                  "packet, wrapped, 18 bytes: malformed packet, expected 10 bytes in the "
                  "wrapper, got 9\n    data = (9 bytes)\n",
                  1},
        PacketRow{
            {"BytesAfterTheWrappedPacket"},
            "A5 00 10 50 E0 63 02 00 09 A5 00 06 50 E0 D8 00 0A 02 77",
            "request, wrapped, 19 bytes: query\n    network address 0A 02: IP address\n"
            "    and: malformed packet, 1 byte after the wrapped packets\n    data = (1 byte)\n",
            1},
        PacketRow{{"RecordCut"},
                  "A5 00 0E 50 E0 63 02 00 08 A5 00 06 50 E0 D8 00 0A",
                  "packet, wrapped, 17 bytes: malformed packet, cut packet in the "
                  "wrapper\n    data = (8 bytes)\n",
                  1},
        PacketRow{{"LengthCut"},
                  "A5 00 08 50 E0 63 02 00 02 A5 00",
                  "packet, wrapped, 11 bytes: malformed packet, cut packet in the "
                  "wrapper\n    data = (2 bytes)\n",
                  1},
        PacketRow{{"NoPacketInside"},
                  "A5 00 08 50 E0 63 02 00 02 D8 00",
                  "packet, wrapped, 11 bytes: malformed packet, 2 bytes outside any packet\n"
                  "    data = (2 bytes)\n",
                  1},
        PacketRow{{"WrapperInsideAWrapper"},
                  "A5 00 0F 50 E0 63 02 00 09 A5 00 06 50 E0 63 02 00 00",
                  "packet, wrapped, 18 bytes: unknown packet\n    data = (4 bytes)\n",
                  1}),
    support::rowName);

std::string withSizeOfZero(const char* head, std::size_t count) {
  std::string text = head;
  for (std::size_t i = 0; i < count; ++i) {
    text.append(" 70");
  }
  return text;
}

TEST(PacketWords, AcceptTheSize0For256BytesIfTheFieldHasOnlyTheLowByte) {
  EXPECT_EQ(wordsOf(withSizeOfZero("A5 01 09 50 E0 DA 01 2A 03 00 00 00", 256)),
            "line 1: request, bare, 268 bytes: store settings\n"
            "    802.1x 2A 03: 802.1x password = (256 bytes)\n");
  EXPECT_EQ(decoded(withSizeOfZero("A5 01 08 50 E0 DA 01 2A 03 00 00 00", 255)).status, 1);
}

TEST(PacketWords, ShowSecretsAndDataIfTheOptionsSaySo) {
  decoder::Options options;
  options.showSecrets = true;
  EXPECT_EQ(
      decodedWith(options, "A5 00 11 50 E0 DA 01 2A 03 00 00 02 70 00 28 FE 00 00 01 6B").words,
      "line 1: request, bare, 20 bytes: store settings\n"
      "    802.1x 2A 03: 802.1x password = \"p\"\n"
      "    wireless network 28 FE: object 28 FE = 6B\n");
  EXPECT_EQ(decodedWith(options, "A5 00 03 50 E1 6B").words,
            "line 1: packet, bare, 6 bytes: unknown packet\n    data = E1 6B\n");
}

}  // namespace
