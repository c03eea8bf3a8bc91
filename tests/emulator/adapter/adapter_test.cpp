#include "emulator/adapter/adapter.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/bytes.h"
#include "testing/emulated_printer.h"
#include "testing/packets.h"
#include "testing/rows.h"

namespace {

using emulator::Personality;
using npa::Bytes;
using Printer = support::EmulatedPrinter;
using support::bytes;

using packets::Garbage;
using packets::QueryAuthStatus;
using packets::QueryIp;
using packets::QuerySsid;
using packets::QueryTrouble;
using packets::Refused;
using packets::SettingsStored;
using packets::StoreSsid;
using packets::wrapped;

TEST(Adapter, StoresSettingsAndReturnsThem) {
  Printer printer;
  EXPECT_EQ(printer.ask(StoreSsid), SettingsStored);
  EXPECT_EQ(printer.ask(QuerySsid), bytes("A5 00 0B 50 E0 D8 00 28 08 00 03 61 62 00"));
}

TEST(Adapter, AnswersAWrappedRequestInAWrapper) {
  Printer printer;
  EXPECT_EQ(printer.ask(wrapped(StoreSsid)),
            bytes("A5 00 0E 50 E0 63 02 00 08 A5 00 05 50 E0 DA 01 01"));
  EXPECT_EQ(printer.ask(wrapped(QuerySsid)),
            bytes("A5 00 14 50 E0 63 02 00 0E A5 00 0B 50 E0 D8 00 28 08 00 03 61 62 00"));
}

TEST(Adapter, AnswersEachPacketOfOneWrite) {
  Printer printer;
  EXPECT_EQ(printer.ask(support::joined({StoreSsid, StoreSsid})),
            support::joined({SettingsStored, SettingsStored}));
}

TEST(Adapter, WaitsForTheRestOfAPacket) {
  Printer printer;
  EXPECT_EQ(printer.ask(bytes("A5 00 0C 50 E0 DA 01 28 08")), Bytes());
  EXPECT_EQ(printer.ask(bytes("00 00 03 61 62 00")), SettingsStored);
}

TEST(Adapter, ReturnsNoValueForUnknownSettingsAndKeys) {
  Printer printer;
  EXPECT_EQ(printer.ask(QuerySsid), bytes("A5 00 08 50 E0 D8 00 28 08 00 00"));
  EXPECT_EQ(printer.ask(packets::StorePreSharedKey), SettingsStored);
  EXPECT_EQ(printer.ask(packets::QueryPreSharedKey), bytes("A5 00 08 50 E0 D8 00 28 11 00 00"));
}

TEST(Adapter, HasTheValuesOfItsPersonality) {
  Printer printer(
      {.ipAddress = {10, 1, 2, 3}, .troubleCode = 7, .ssid = "net", .descriptor = "A-"});
  EXPECT_EQ(printer.ask(QueryIp), bytes("A5 00 0C 50 E0 D8 00 0A 02 00 04 0A 01 02 03"));
  EXPECT_EQ(printer.ask(QueryTrouble), bytes("A5 00 0C 50 E0 D8 00 28 15 00 04 00 00 00 07"));
  EXPECT_EQ(printer.ask(QuerySsid), bytes("A5 00 0C 50 E0 D8 00 28 08 00 04 6E 65 74 00"));
  EXPECT_EQ(printer.ask(packets::QueryDescriptor), bytes("A5 00 0A 50 E0 D8 00 06 1F 00 02 41 2D"));
}

TEST(Adapter, HoldsAnyInitialSetting) {
  Printer printer({.ssid = "net",
                   .settings = {{{0x28, 0x30}, {0x61, 0x00}},
                                {{0x28, 0x08}, {0x62, 0x00}},
                                {{0x2A, 0x02}, {0x63, 0x00}},
                                {{0x28, 0x11}, {0x64}}}});
  // An unknown setting counts as a secret, so a query returns no value.
  EXPECT_TRUE(printer.adapter.settings().holds({0x28, 0x30}));
  EXPECT_EQ(printer.ask(QuerySsid), bytes("A5 00 0C 50 E0 D8 00 28 08 00 04 6E 65 74 00"));
  EXPECT_EQ(printer.ask(bytes("A5 00 06 50 E0 D8 00 2A 02")),
            bytes("A5 00 13 50 E0 63 02 00 0D A5 00 0A 50 E0 D8 00 2A 02 00 02 63 00"));
  EXPECT_EQ(printer.ask(packets::QueryPreSharedKey), bytes("A5 00 08 50 E0 D8 00 28 11 00 00"));
}

TEST(Adapter, DoesNotAcceptMalformedSettings) {
  Printer printer;
  EXPECT_EQ(printer.ask(bytes("A5 00 0A 50 E0 DA 01 28 08 00 00 09 61")),
            bytes("A5 00 05 50 E0 DA 01 00"));
  EXPECT_FALSE(printer.adapter.settings().holds({0x28, 0x08}));
}

TEST(Adapter, RefusesUnknownRequests) {
  Printer printer;
  EXPECT_EQ(printer.ask(bytes("A5 00 02 50 E0")), Refused);
  EXPECT_EQ(printer.ask(bytes("A5 00 06 50 E0 C0 03 00 02")), Refused);
}

TEST(Adapter, DoesNotAnswerASniff) {
  Printer printer;
  EXPECT_EQ(printer.ask(packets::Sniff), Bytes());
}

struct PersonalityRow : support::Row {
  Personality personality;
  Bytes toBare;
  Bytes toWrapped;
  bool stores;
};

class SettingsPersonality : public testing::TestWithParam<PersonalityRow> {};

TEST_P(SettingsPersonality, DeterminesTheReplyToSettings) {
  EXPECT_EQ(Printer(GetParam().personality).ask(wrapped(StoreSsid)), GetParam().toWrapped);
  Printer printer(GetParam().personality);
  EXPECT_EQ(printer.ask(StoreSsid), GetParam().toBare);
  EXPECT_EQ(printer.adapter.settings().holds({0x28, 0x08}), GetParam().stores);
}

INSTANTIATE_TEST_SUITE_P(
    Personalities, SettingsPersonality,
    testing::Values(
        PersonalityRow{{"RefuseWrapped"}, {.refuseWrapped = true}, SettingsStored, Refused, true},
        PersonalityRow{{"RefuseAll"}, {.refuseAll = true}, Refused, Refused, false},
        PersonalityRow{{"Silent"}, {.silent = true}, {}, {}, false},
        PersonalityRow{{"Garbage"}, {.garbage = true}, Garbage, Garbage, false},
        PersonalityRow{{"Cut"}, {.cutAt = 3}, bytes("A5 00 05"), bytes("A5 00 0E"), true},
        PersonalityRow{{"CutTheLastByte"},
                       {.cutAt = 7},
                       bytes("A5 00 05 50 E0 DA 01"),
                       bytes("A5 00 0E 50 E0 63 02"),
                       true},
        PersonalityRow{{"CutAfterTheEnd"},
                       {.cutAt = 8},
                       SettingsStored,
                       bytes("A5 00 0E 50 E0 63 02 00"),
                       true},
        PersonalityRow{{"OtherResult"},
                       {.settingsResult = 2},
                       bytes("A5 00 05 50 E0 DA 01 02"),
                       bytes("A5 00 0E 50 E0 63 02 00 08 A5 00 05 50 E0 DA 01 02"),
                       false}),
    support::rowName);

TEST(Adapter, AnswersLateAndInPieces) {
  using std::chrono::milliseconds;
  Printer printer({.replyDelay = std::chrono::seconds(3), .pieceSize = 3});
  const auto replies = printer.adapter.receive(StoreSsid);
  ASSERT_EQ(replies.size(), 3U);
  EXPECT_EQ(replies[0].bytes, bytes("A5 00 05"));
  EXPECT_EQ(replies[1].bytes, bytes("50 E0 DA"));
  EXPECT_EQ(replies[2].bytes, bytes("01 01"));
  EXPECT_EQ(replies[0].delay, milliseconds(3000));
  EXPECT_LT(replies[0].delay, replies[1].delay);
  EXPECT_LT(replies[1].delay, replies[2].delay);
}

TEST(Adapter, HasAnAddressAfterTheGivenCountOfQueries) {
  Printer printer({.addressAcquired = {.afterQueries = 2}});
  const Bytes none = bytes("A5 00 0C 50 E0 D8 00 0A 02 00 04 00 00 00 00");
  EXPECT_EQ(printer.ask(QueryIp), none);
  EXPECT_EQ(printer.ask(QueryIp), none);
  EXPECT_EQ(printer.ask(QueryIp), packets::IpReply);
}

TEST(Adapter, HasAnAddressAfterTheGivenSeconds) {
  using std::chrono::seconds;
  Printer printer({.addressAcquired = {.afterTime = seconds(5)}});
  printer.now += seconds(4);
  EXPECT_EQ(printer.ask(QueryIp).back(), 0);
  printer.now += seconds(1);
  EXPECT_EQ(printer.ask(QueryIp).back(), 20);
}

TEST(Adapter, ReturnsTroubleCode0AfterTheGivenCountOfQueries) {
  Printer printer({.troubleCode = 9, .troubleCleared = emulator::Readiness{.afterQueries = 1}});
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 9);
  EXPECT_EQ(printer.ask(QueryTrouble).back(), 0);
}

TEST(Adapter, AlwaysWrapsTheRecordsOf8021xSettings) {
  Printer printer({.authStatus = {2}});
  const Bytes record = bytes("A5 00 12 50 E0 63 02 00 0C A5 00 09 50 E0 D8 00 2A 1D 00 01 02");
  EXPECT_EQ(printer.ask(QueryAuthStatus), record);
  EXPECT_EQ(printer.ask(wrapped(QueryAuthStatus)), record);
}

TEST(Adapter, ReturnsSeveralRecordsAfterOneOfAnotherSetting) {
  Printer printer({.authStatus = {2, 5}, .otherRecordFirst = true});
  EXPECT_EQ(printer.ask(QueryAuthStatus),
            bytes("A5 00 2D 50 E0 63 02 00 27 A5 00 0C 50 E0 D8 00 2A 26 00 04 00 00 00 00 "
                  "A5 00 09 50 E0 D8 00 2A 1D 00 01 02 A5 00 09 50 E0 D8 00 2A 1D 00 01 05"));
}

TEST(Adapter, CutsTheLastRecordInsideACompletePacket) {
  Printer printer({.authStatus = {2}, .cutRecordAt = 11});
  EXPECT_EQ(printer.ask(QueryAuthStatus),
            bytes("A5 00 11 50 E0 63 02 00 0B A5 00 09 50 E0 D8 00 2A 1D 00 01"));
}

TEST(Adapter, AnswersInSeveralPacketsThatAnnounceTheNext) {
  Printer printer({.authStatus = {2}, .replyPackets = 2});
  EXPECT_EQ(printer.ask(QueryAuthStatus),
            bytes("A5 00 15 70 E0 63 02 00 0F A5 00 0C 50 E0 D8 00 2A 26 00 04 00 00 00 00 "
                  "A5 00 12 50 E0 63 02 00 0C A5 00 09 50 E0 D8 00 2A 1D 00 01 02"));
}

TEST(Adapter, RefusesAQueryWhoseReplyDoesNotFitIntoAPacket) {
  Printer printer;
  // This is the largest value that one bare packet can store. Its reply is too large for a wrapper.
  constexpr std::size_t valueSize = 0xFFFF - 4 - 5;
  Bytes store = bytes("A5 FF FF 50 E0 DA 01 28 08 00 FF F6");
  store.resize(store.size() + valueSize, 'x');
  ASSERT_EQ(printer.ask(store), SettingsStored);
  EXPECT_EQ(printer.ask(QuerySsid).size(), 9 + 2 + valueSize);
  EXPECT_EQ(printer.ask(wrapped(QuerySsid)), Refused);
}

TEST(AdapterLog, HasRequestAndReplyInHexAndInWordsWithMaskedKeys) {
  Printer printer;
  printer.ask(support::joined({bytes("00"), packets::StorePreSharedKey}));
  EXPECT_EQ(printer.log,
            (std::vector<std::string>{"<- A5 00 0B 50 E0 DA 01 28 11 00 00 02 ** **",
                                      "   store settings: pre-shared key = (2 bytes)",
                                      "-> A5 00 05 50 E0 DA 01 01", "   settings stored",
                                      "   1 bytes outside any packet"}));
}

}  // namespace
