#include "emulator/adapter/message.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "testing/bytes.h"
#include "testing/object_store.h"
#include "testing/packets.h"
#include "testing/rows.h"

namespace {

using emulator::Message;
using emulator::parseMessage;
using support::bytes;
using Kind = Message::Kind;

struct MessageRow : support::Row {
  const char* packet;
  Kind kind;
  bool wrapped;
  const char* words;
};

class ParseMessage : public testing::TestWithParam<MessageRow> {};

TEST_P(ParseMessage, IdentifiesThePacket) {
  const Message message = parseMessage(bytes(GetParam().packet));
  EXPECT_EQ(message.packet, bytes(GetParam().packet));
  EXPECT_EQ(message.kind, GetParam().kind);
  EXPECT_EQ(message.wrapped, GetParam().wrapped);
  EXPECT_EQ(describe(message, false), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Packets, ParseMessage,
    testing::Values(
        MessageRow{{"Query"}, "A5 00 06 50 E0 D8 00 28 08", Kind::Query, false, "query: SSID"},
        MessageRow{{"WrappedQuery"},
                   "A5 00 0F 50 E0 63 02 00 09 A5 00 06 50 E0 D8 00 0A 02",
                   Kind::Query,
                   true,
                   "query, wrapped: IP address"},
        MessageRow{{"GenerateCertificate"},
                   "A5 00 06 50 E0 DA 01 2A 0C 00 00 01 01",
                   Kind::StoreSettings,
                   false,
                   "store settings: generate certificate = 1"},
        MessageRow{{"WrappedGenerateCertificate"},
                   "A5 00 13 50 E0 63 02 00 0D A5 00 06 50 E0 DA 01 2A 0C 00 00 01 01",
                   Kind::StoreSettings,
                   true,
                   "store settings, wrapped: generate certificate = 1"},
        MessageRow{{"UnknownQuery"},
                   "A5 00 06 50 E0 D8 00 28 FF",
                   Kind::Query,
                   false,
                   "query: unknown setting"},
        MessageRow{{"LongQuery"},
                   "A5 00 07 50 E0 D8 00 28 08 00",
                   Kind::Malformed,
                   false,
                   "malformed packet"},
        MessageRow{{"Settings"},
                   "A5 00 14 50 E0 DA 01 28 02 00 00 04 00 00 00 01 28 08 00 00 02 78 00",
                   Kind::StoreSettings,
                   false,
                   "store settings: mode = 1 (ad-hoc), SSID = \"x\""},
        MessageRow{{"SingleSettings"},
                   "A5 00 0A 50 E0 D8 01 06 14 00 00 01 01",
                   Kind::StoreSettings,
                   false,
                   "store settings: adapter reset = 1"},
        MessageRow{
            {"NoSettings"}, "A5 00 04 50 E0 DA 01", Kind::StoreSettings, false, "store settings"},
        MessageRow{{"SecretSetting"},
                   "A5 00 0B 50 E0 DA 01 28 11 00 00 02 6B 00",
                   Kind::StoreSettings,
                   false,
                   "store settings: pre-shared key = (2 bytes)"},
        MessageRow{{"UnknownSetting"},
                   "A5 00 0A 50 E0 DA 01 28 FF 00 00 01 6B",
                   Kind::StoreSettings,
                   false,
                   "store settings: object 28 FF = (1 bytes)"},
        MessageRow{{"SettingThatOverruns"},
                   "A5 00 0A 50 E0 DA 01 28 08 00 00 02 6B",
                   Kind::Malformed,
                   false,
                   "malformed packet"},
        MessageRow{{"SettingHeaderCut"},
                   "A5 00 08 50 E0 DA 01 28 08 00 00",
                   Kind::Malformed,
                   false,
                   "malformed packet"},
        MessageRow{{"WrapperTooLong"},
                   "A5 00 0F 50 E0 63 02 00 0A A5 00 06 50 E0 D8 00 0A 02",
                   Kind::Malformed,
                   true,
                   "malformed packet, wrapped"},
        MessageRow{{"InnerTooLong"},
                   "A5 00 0F 50 E0 63 02 00 09 A5 00 07 50 E0 D8 00 0A 02",
                   Kind::Malformed,
                   true,
                   "malformed packet, wrapped"},
        MessageRow{{"InnerWithoutStart"},
                   "A5 00 0F 50 E0 63 02 00 09 A4 00 06 50 E0 D8 00 0A 02",
                   Kind::Malformed,
                   true,
                   "malformed packet, wrapped"},
        MessageRow{{"EmptyWrapper"},
                   "A5 00 06 50 E0 63 02 00 00",
                   Kind::Malformed,
                   true,
                   "malformed packet, wrapped"},
        MessageRow{{"Sniff"},
                   "A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E",
                   Kind::Announcement,
                   false,
                   "announces a method call"},
        MessageRow{{"EmptyObjectStoreCall"},
                   "A5 00 06 50 E0 C0 03 00 01",
                   Kind::MethodCall,
                   false,
                   "method call: cannot be parsed"},
        MessageRow{{"ObjectStoreCallOfAnotherKind"},
                   "A5 00 06 50 E0 C0 03 00 02",
                   Kind::Unknown,
                   false,
                   "unknown packet"},
        MessageRow{{"ObjectStoreCallCut"},
                   "A5 00 05 50 E0 C0 03 00",
                   Kind::Unknown,
                   false,
                   "unknown packet"},
        MessageRow{
            {"OtherCommand"}, "A5 00 06 50 E1 D8 00 28 08", Kind::Unknown, false, "unknown packet"},
        MessageRow{{"Nothing"}, "A5 00 00", Kind::Unknown, false, "unknown packet"}),
    support::rowName);

/// Returns a text with "*" for each secret byte of a packet and "." for each other byte.
std::string hiddenBytes(const char* packet) {
  std::string text;
  for (const bool hidden : parseMessage(bytes(packet)).secretBytes) {
    text.push_back(hidden ? '*' : '.');
  }
  return text;
}

TEST(SecretBytes, AreTheValuesOfKeysAndOfUnknownSettings) {
  EXPECT_EQ(hiddenBytes("A5 00 14 50 E0 DA 01 28 08 00 00 02 78 00 28 11 00 00 04 6B 65 79 00"),
            "...................****");
  EXPECT_EQ(hiddenBytes("A5 00 0A 50 E0 DA 01 28 FF 00 00 01 6B"), "............*");
}

TEST(SecretBytes, AreFoundInsideAWrapper) {
  EXPECT_EQ(hiddenBytes("A5 00 14 50 E0 63 02 00 0E A5 00 0B 50 E0 DA 01 28 09 00 00 02 6B 00"),
            ".....................**");
}

TEST(SecretBytes, AreAllDataOfAnUnknownPacket) {
  // In order: a setting that exceeds the packet, settings with another command, a query that is too
  // long, a method call that cannot be parsed.
  EXPECT_EQ(hiddenBytes("A5 00 0A 50 E0 DA 01 28 11 00 00 09 6B"), ".....********");
  EXPECT_EQ(hiddenBytes("A5 00 0A 50 E1 DA 01 28 11 00 00 01 6B"), ".....********");
  EXPECT_EQ(hiddenBytes("A5 00 07 50 E0 D8 00 28 08 6B"), ".....*****");
  EXPECT_EQ(hiddenBytes("A5 00 07 50 E0 C0 03 00 01 6B"), ".....*****");
  EXPECT_EQ(hiddenBytes("A5 00 02 50 E0"), ".....");
  EXPECT_EQ(hiddenBytes("A5 00 00"), "...");
}

TEST(SecretBytes, AreAbsentFromAQueryAndASniff) {
  EXPECT_EQ(hiddenBytes("A5 00 06 50 E0 D8 00 28 08"), ".........");
  EXPECT_EQ(hiddenBytes("A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E"),
            std::string(19, '.'));
}

TEST(SecretBytes, AreAbsentFromAMethodCall) {
  const std::string xml = support::callText("queryCAList", 420);
  const Message message = parseMessage(support::callPacket(xml));
  EXPECT_EQ(std::ranges::count(message.secretBytes, true), 0);
  EXPECT_EQ(describe(message, false), "method call: queryCAList");
}

/// Returns the parsed packet that stores a setting with a size field of 0 and a value of `count`
/// bytes.
Message withSizeOfZero(const char* key, std::size_t count) {
  return parseMessage(packets::framed(support::joined(
      {bytes("50 E0 DA 01"), bytes(key), bytes("00 00 00"), npa::Bytes(count, 'p')})));
}

TEST(ParseMessage, AcceptsTheSize0For256BytesIfTheFieldHasOnlyTheLowByte) {
  for (const char* key : {"2A 03", "2A 0A"}) {
    const Message message = withSizeOfZero(key, 256);
    ASSERT_EQ(message.kind, Kind::StoreSettings) << key;
    ASSERT_EQ(message.settings.size(), 1U) << key;
    EXPECT_EQ(message.settings[0].value, npa::Bytes(256, 'p')) << key;
  }
  EXPECT_EQ(withSizeOfZero("2A 03", 255).kind, Kind::Malformed);
  EXPECT_EQ(withSizeOfZero("2A 02", 256).kind, Kind::Malformed);
}

TEST(SecretBytes, AreAll256BytesOfALongPassword) {
  const Message message = withSizeOfZero("2A 03", 256);
  EXPECT_EQ(std::ranges::count(message.secretBytes, true), 256);
  EXPECT_EQ(describe(message, false), "store settings: 802.1x password = (256 bytes)");
}

TEST(SecretBytes, AreAllBytesOfAWrapperWithAWrongSize) {
  EXPECT_EQ(hiddenBytes("A5 00 14 50 E0 63 02 00 0F A5 00 0B 50 E0 DA 01 28 09 00 00 02 6B 00"),
            std::string(23, '*'));
}

TEST(DescribeMessage, ShowsSecretsIfTheCallerSaysSo) {
  const Message message = parseMessage(packets::StorePreSharedKey);
  EXPECT_EQ(describe(message, true), "store settings: pre-shared key = \"k\"");
}

}  // namespace
