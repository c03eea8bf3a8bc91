#include "catalogue/packet_grammar.h"

#include <gtest/gtest.h>

#include "testing/bytes.h"
#include "testing/rows.h"

namespace {

using catalogue::Body;
using catalogue::Cursor;
using catalogue::Data;
using catalogue::PacketParts;
using npa::Bytes;
using npa::SettingKey;
using support::bytes;

Bytes copyOf(Data data) {
  return {data.begin(), data.end()};
}

/// Returns the bytes of `head` (hex), followed by `count` bytes 70.
Bytes withFill(const char* head, std::size_t count) {
  return support::joined({bytes(head), Bytes(count, 0x70)});
}

TEST(Cursor, ReadsBytesFromTheFront) {
  const Bytes all = bytes("01 02 03 2A 1D 01 00 FF 77");
  Cursor cursor(all);
  EXPECT_EQ(cursor.byte(), 0x01);
  EXPECT_EQ(copyOf(*cursor.bytes(2)), bytes("02 03"));
  EXPECT_EQ(cursor.key(), (SettingKey{0x2A, 0x1D}));
  EXPECT_EQ(cursor.number(), 0x0100U);
  EXPECT_TRUE(cursor.skip(bytes("FF")));
  EXPECT_EQ(copyOf(cursor.rest()), bytes("77"));
  EXPECT_EQ(copyOf(*cursor.bytes(1)), bytes("77"));
  EXPECT_EQ(copyOf(*cursor.bytes(0)), Bytes());
}

TEST(Cursor, ReadsNothingIfTooFewBytesAreLeft) {
  const Bytes one = bytes("A5");
  Cursor cursor(one);
  EXPECT_FALSE(cursor.bytes(2));
  EXPECT_FALSE(cursor.number());
  EXPECT_FALSE(cursor.key());
  EXPECT_FALSE(cursor.packet());
  EXPECT_FALSE(cursor.skip(bytes("A5 00")));
  EXPECT_FALSE(cursor.skip(bytes("A4")));
  EXPECT_EQ(copyOf(cursor.rest()), one);
  EXPECT_EQ(cursor.byte(), 0xA5);
  EXPECT_FALSE(cursor.byte());
}

TEST(Cursor, ReadsCompletePackets) {
  const Bytes both = bytes("A5 00 02 D4 E0 A5 00 00 A5 00 01");
  Cursor cursor(both);
  EXPECT_EQ(copyOf(*cursor.packet()), bytes("A5 00 02 D4 E0"));
  EXPECT_EQ(copyOf(*cursor.packet()), bytes("A5 00 00"));
  EXPECT_FALSE(cursor.packet());
  EXPECT_EQ(copyOf(cursor.rest()), bytes("A5 00 01"));
}

TEST(Cursor, ReadsNoPacketWithAnotherStartByteOrACutEnd) {
  for (const char* text : {"", "A5", "A5 00", "A5 00 01", "A4 00 00", "00 A5 00 00"}) {
    const Bytes all = bytes(text);
    Cursor cursor(all);
    EXPECT_FALSE(cursor.packet()) << text;
    EXPECT_EQ(copyOf(cursor.rest()), all) << text;
  }
}

TEST(Cursor, ReadsThePacketWithFourBytesMoreThanItsLengthField) {
  const Bytes generate = bytes("A5 00 06 50 E0 DA 01 2A 0C 00 00 01 01");
  EXPECT_EQ(copyOf(*Cursor(generate).packet()), generate);
  EXPECT_FALSE(Cursor(Data(generate).first(generate.size() - 1)).packet());
  EXPECT_EQ(Cursor(bytes("A5 00 06 50 E0 DA 01 2A 0D 00 00 01 01")).packet()->size(), 9U);
}

struct PartsRow : support::Row {
  const char* packet;
  PacketParts::Kind kind;
  npa::Byte flag;
  const char* body;
};

class PacketPartsOf : public testing::TestWithParam<PartsRow> {};

TEST_P(PacketPartsOf, AreKindFlagAndBody) {
  const Bytes packet = bytes(GetParam().packet);
  const PacketParts parts = catalogue::readPacketParts(packet);
  EXPECT_EQ(parts.kind, GetParam().kind);
  EXPECT_EQ(parts.flag, GetParam().flag);
  EXPECT_EQ(copyOf(parts.body), bytes(GetParam().body));
}

INSTANTIATE_TEST_SUITE_P(
    Packets, PacketPartsOf,
    testing::Values(
        PartsRow{{"Content"}, "A5 00 02 50 E0", PacketParts::Kind::Content, 0x50, "E0"},
        PartsRow{{"MoreFollows"}, "A5 00 02 70 E0", PacketParts::Kind::Content, 0x70, "E0"},
        PartsRow{{"OnlyFlag"}, "A5 00 01 50", PacketParts::Kind::Content, 0x50, ""},
        PartsRow{{"NoFlag"}, "A5 00 00", PacketParts::Kind::NoFlag, 0, ""},
        PartsRow{{"LessThanAHeader"}, "A5", PacketParts::Kind::NoFlag, 0, ""},
        PartsRow{{"Refusal"}, "A5 00 02 D4 E0", PacketParts::Kind::Refusal, 0xD4, "E0"},
        PartsRow{
            {"RefusalWithMore"}, "A5 00 02 F4 E0", PacketParts::Kind::EndOfExchange, 0xF4, "E0"},
        PartsRow{{"End"}, "A5 00 02 80 E0", PacketParts::Kind::EndOfExchange, 0x80, "E0"},
        PartsRow{{"Announcement"},
                 "A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E",
                 PacketParts::Kind::Announcement,
                 0x80,
                 "A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E"},
        PartsRow{{"NearlyAnAnnouncement"},
                 "A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2F",
                 PacketParts::Kind::EndOfExchange,
                 0x80,
                 "A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2F"}),
    support::rowName);

struct BodyRow : support::Row {
  const char* body;
  Body::Kind kind;
  const char* content;
};

class BodyOf : public testing::TestWithParam<BodyRow> {};

TEST_P(BodyOf, HasAKindAndContent) {
  const Bytes all = bytes(GetParam().body);
  const Body body = catalogue::readBody(all);
  EXPECT_EQ(body.kind, GetParam().kind);
  EXPECT_EQ(copyOf(body.content), bytes(GetParam().content));
}

INSTANTIATE_TEST_SUITE_P(
    Bodies, BodyOf,
    testing::Values(BodyRow{{"Query"}, "E0 D8 00 28 08", Body::Kind::QueryOrValue, "28 08"},
                    BodyRow{{"Group"}, "E0 DA 01 77", Body::Kind::SettingsGroup, "77"},
                    BodyRow{{"Single"}, "E0 D8 01", Body::Kind::SingleSettings, ""},
                    BodyRow{{"Wrapper"}, "E0 63 02 00", Body::Kind::Wrapper, "00"},
                    BodyRow{{"Call"}, "E0 C0 03 00 01 3C", Body::Kind::MethodCall, "3C"},
                    BodyRow{{"CallCut"}, "E0 C0 03 00", Body::Kind::Unknown, "C0 03 00"},
                    BodyRow{{"AnotherCall"}, "E0 C0 03 00 02", Body::Kind::Unknown, "C0 03 00 02"},
                    BodyRow{{"KindCut"}, "E0 D8", Body::Kind::Unknown, "D8"},
                    BodyRow{{"AnotherKind"}, "E0 D8 02", Body::Kind::Unknown, "D8 02"},
                    BodyRow{{"OnlyCommand"}, "E0", Body::Kind::Unknown, ""},
                    BodyRow{{"AnotherCommand"}, "E1 D8 00 28", Body::Kind::Unknown, "E1 D8 00 28"},
                    BodyRow{{"Nothing"}, "", Body::Kind::Unknown, ""}),
    support::rowName);

TEST(QueryOrValue, IsAQueryWithoutASize) {
  const Bytes content = bytes("28 08");
  const catalogue::QueryOrValue parsed = catalogue::readQueryOrValue(content);
  EXPECT_TRUE(parsed.isQuery());
  EXPECT_FALSE(parsed.isValue());
  EXPECT_EQ(parsed.key, (SettingKey{0x28, 0x08}));
}

TEST(QueryOrValue, IsAValueIfItsSizeIsRight) {
  const Bytes content = bytes("28 08 00 02 68 69");
  const catalogue::QueryOrValue parsed = catalogue::readQueryOrValue(content);
  EXPECT_TRUE(parsed.isValue());
  EXPECT_FALSE(parsed.isQuery());
  EXPECT_EQ(parsed.sizeField, 2U);
  EXPECT_EQ(copyOf(parsed.rest), bytes("68 69"));
  EXPECT_TRUE(catalogue::readQueryOrValue(bytes("28 08 00 00")).isValue());
}

TEST(QueryOrValue, IsNeitherIfItIsCutOrTooLong) {
  struct {
    const char* content;
    bool hasKey;
    bool hasSize;
    const char* rest;
  } const rows[] = {
      {"", false, false, ""},
      {"28", false, false, "28"},
      {"28 08 00", true, false, "00"},
      {"28 08 00 02 68", true, true, "68"},
      {"28 08 00 00 68", true, true, "68"},
  };
  for (const auto& row : rows) {
    const Bytes content = bytes(row.content);
    const catalogue::QueryOrValue parsed = catalogue::readQueryOrValue(content);
    EXPECT_FALSE(parsed.isQuery() || parsed.isValue()) << row.content;
    EXPECT_EQ(parsed.key.has_value(), row.hasKey) << row.content;
    EXPECT_EQ(parsed.sizeField.has_value(), row.hasSize) << row.content;
    EXPECT_EQ(copyOf(parsed.rest), bytes(row.rest)) << row.content;
  }
}

TEST(QueryOrValue, AcceptsTheSize0For256BytesIfTheFieldHasOnlyTheLowByte) {
  EXPECT_TRUE(catalogue::readQueryOrValue(withFill("2A 03 00 00", 256)).isValue());
  EXPECT_FALSE(catalogue::readQueryOrValue(withFill("2A 03 00 00", 255)).isValue());
  EXPECT_FALSE(catalogue::readQueryOrValue(withFill("2A 03 00 00", 257)).isValue());
  EXPECT_FALSE(catalogue::readQueryOrValue(withFill("2A 02 00 00", 256)).isValue());
}

TEST(Settings, AreASeriesOfObjects) {
  const Bytes content = bytes("28 02 00 00 04 00 00 00 01 28 08 00 00 00 28 11 00 00 01 61");
  const catalogue::Settings settings = catalogue::readSettings(content);
  ASSERT_EQ(settings.objects.size(), 3U);
  EXPECT_EQ(settings.objects[0].key, (SettingKey{0x28, 0x02}));
  EXPECT_EQ(copyOf(settings.objects[0].value), bytes("00 00 00 01"));
  EXPECT_EQ(copyOf(settings.objects[1].value), Bytes());
  EXPECT_EQ(copyOf(settings.objects[2].value), bytes("61"));
  EXPECT_TRUE(settings.rest.empty());
  EXPECT_FALSE(settings.result);
  EXPECT_EQ(settings.objects[2].value.data(), &content.back());
}

TEST(Settings, StopAtAnObjectThatIsCut) {
  for (const char* cut : {"28 11", "28 11 00 00", "28 11 00 00 02 61", "28 11 00 FF FF"}) {
    const Bytes content = support::joined({bytes("28 08 00 00 01 61"), bytes(cut)});
    const catalogue::Settings settings = catalogue::readSettings(content);
    EXPECT_EQ(settings.objects.size(), 1U) << cut;
    EXPECT_EQ(copyOf(settings.rest), bytes(cut)) << cut;
    EXPECT_FALSE(settings.result) << cut;
  }
}

TEST(Settings, AcceptTheSize0For256BytesIfTheFieldHasOnlyTheLowByte) {
  const Bytes content = withFill("2A 03 00 00 00", 256);
  const catalogue::Settings settings = catalogue::readSettings(content);
  ASSERT_EQ(settings.objects.size(), 1U);
  EXPECT_EQ(settings.objects[0].value.size(), 256U);
  EXPECT_EQ(catalogue::readSettings(withFill("2A 02 00 00 00", 256)).objects.size(), 1U);
  EXPECT_EQ(catalogue::readSettings(withFill("2A 02 00 00 00", 256)).rest.size(), 256U);
}

TEST(Settings, AreAResultIfThereIsOneByte) {
  const Bytes content = bytes("01");
  const catalogue::Settings settings = catalogue::readSettings(content);
  EXPECT_EQ(settings.result, 0x01);
  EXPECT_TRUE(settings.objects.empty());
  EXPECT_EQ(copyOf(settings.rest), content);
  EXPECT_FALSE(catalogue::readSettings({}).result);
  EXPECT_TRUE(catalogue::readSettings({}).rest.empty());
}

TEST(Wrapper, HasAsManyBytesAsItsSizeSays) {
  const Bytes content = bytes("00 02 61 62 63");
  const catalogue::Wrapper wrapper = catalogue::readWrapper(content);
  EXPECT_TRUE(wrapper.isWhole());
  EXPECT_EQ(copyOf(wrapper.inside), bytes("61 62"));
  EXPECT_EQ(copyOf(wrapper.after), bytes("63"));
  EXPECT_TRUE(catalogue::readWrapper(bytes("00 00")).isWhole());
}

TEST(Wrapper, IsNotWholeIfItHasFewerBytes) {
  const Bytes content = bytes("01 00 61 62 63");
  const catalogue::Wrapper wrapper = catalogue::readWrapper(content);
  EXPECT_FALSE(wrapper.isWhole());
  EXPECT_EQ(wrapper.size, 256U);
  EXPECT_EQ(copyOf(wrapper.inside), bytes("61 62 63"));
  EXPECT_TRUE(wrapper.after.empty());
}

TEST(Wrapper, MayEndBeforeItsSize) {
  const Bytes content = bytes("00");
  const catalogue::Wrapper wrapper = catalogue::readWrapper(content);
  EXPECT_FALSE(wrapper.size);
  EXPECT_FALSE(wrapper.isWhole());
  EXPECT_TRUE(wrapper.inside.empty());
  EXPECT_EQ(copyOf(wrapper.after), content);
}

}  // namespace
