#include "testing/send_query.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using support::Bytes;
using support::bytes;
using support::joined;
using support::Output;
using support::pattern;
using support::Quiet;
using support::ReplyRow;
using support::SendQuery;
using virtual_system::Second;

// --- Order of the calls -------------------------------------------------------------------------

TEST_F(SendQuery, OpensWritesPausesTwoSecondsReadsAndCloses) {
  answer({bytes("A5 00 03 50 E0 42")});
  EXPECT_EQ(query(), bytes("E0 42"));
  EXPECT_EQ(system.events, (std::vector<std::string>{"open", "write", "sleep 2", "read", "close"}));
  EXPECT_EQ(device.writes, std::vector<Bytes>{packets::QueryCommonName});
  EXPECT_EQ(device.readSizes, (std::vector<std::size_t>{1, 2, 3}));
  EXPECT_EQ(system.now(), 2 * Second);
  EXPECT_EQ(output, Quiet);
}

TEST_F(SendQuery, WritesTheRestOfARequestAfterAShortWrite) {
  device.writeResult = [](std::size_t size) {
    return static_cast<int>(std::min<std::size_t>(size, 8192));
  };
  const Bytes request = pattern(20'000);
  query(request, 1);
  ASSERT_EQ(device.writes.size(), 3U);
  EXPECT_EQ(joined({device.writes[0], device.writes[1], device.writes[2]}), request);
  EXPECT_EQ(system.events[1], "write");
  EXPECT_EQ(system.events[4], "sleep 2");
}

TEST_F(SendQuery, ReadsEvenIfTheWriteFails) {
  device.reply(bytes("A5 00 03 50 E0 42"));
  device.writeResult = [](std::size_t) {
    return -EIO;
  };
  EXPECT_EQ(query(), bytes("E0 42"));
}

namespace {

struct OpenErrorRow : support::Row {
  int error;
};

class SendQueryOpenError : public SendQuery, public testing::WithParamInterface<OpenErrorRow> {};

}  // namespace

TEST_P(SendQueryOpenError, IsReportedAndEndsTheExchangeImmediately) {
  device.openErrno = GetParam().error;
  EXPECT_EQ(query(10), Bytes());
  EXPECT_TRUE(untouched);
  EXPECT_EQ(output, (Output{"", "D [ZVK] Failed to open usb device '/dev/usb/lp0'!\n" +
                                    support::TransportReleased}));
  EXPECT_EQ(system.events, std::vector<std::string>{"open"});
  EXPECT_EQ(system.now(), 0);
}

INSTANTIATE_TEST_SUITE_P(Errors, SendQueryOpenError,
                         testing::Values(OpenErrorRow{{"NoDevice"}, ENOENT},
                                         OpenErrorRow{{"NoPermission"}, EACCES},
                                         OpenErrorRow{{"Busy"}, EBUSY}),
                         support::rowName);

TEST(SendQueryPath, IsLoggedUnchanged) {
  const virtual_system::System system;
  for (const std::string path : {"printer", "", "99999999999:1", "/dev/usb/lp99"}) {
    unsigned char* reply = nullptr;
    const auto send = [&] {
      sendConfig exchange(path);
      unsigned char byte = 0;
      return exchange.sendQuery(&byte, 1, reply, 3);
    };
    Output output;
    EXPECT_EQ(resultOf(send, output), 0);
    EXPECT_EQ(reply, nullptr);
    const std::string line =
        std::string("D [ZVK] Failed to open usb device '").append(path).append("'!\n");
    EXPECT_EQ(output, (Output{"", line + support::TransportReleased}));
  }
}

// --- Replies that end the exchange --------------------------------------------------------------

namespace {

class SendQueryReply : public SendQuery, public testing::WithParamInterface<ReplyRow> {};

}  // namespace

TEST_P(SendQueryReply, EndsWithoutWaiting) {
  answer({bytes(GetParam().reply)});
  EXPECT_EQ(query(10), bytes(GetParam().collected));
  EXPECT_EQ(system.now(), 2 * Second);
  EXPECT_EQ(output, Quiet);
}

INSTANTIATE_TEST_SUITE_P(
    Replies, SendQueryReply,
    testing::Values(
        ReplyRow{{"OnePacket"}, "A5 00 05 50 E0 01 02 03", "E0 01 02 03"},
        ReplyRow{{"NoFlagBits"}, "A5 00 03 00 E0 01", "E0 01"},
        ReplyRow{{"EveryFlagBitWithoutMeaning"}, "A5 00 03 5F E0 01", "E0 01"},
        ReplyRow{{"TwoPackets"}, "A5 00 03 20 E0 01 A5 00 04 00 E1 02 03", "E0 01 E1 02 03"},
        ReplyRow{{"ThreePackets"},
                 "A5 00 03 70 E0 01 A5 00 03 70 E1 02 A5 00 03 50 E2 03",
                 "E0 01 E1 02 E2 03"},
        ReplyRow{
            {"BytesAfterTheLastPacketAreNotRead"}, "A5 00 03 50 E0 01 A5 00 03 50 E1 02", "E0 01"},
        ReplyRow{{"EndFlagAfterAPacket"}, "A5 00 03 20 E0 01 A5 00 03 80 E1 02", "E0 01"},
        ReplyRow{{"EndFlagTakesPrecedenceOverMoreFollows"},
                 "A5 00 03 20 E0 01 A5 00 03 A0 E1 02 A5 00 03 50 E2 03",
                 "E0 01"},
        ReplyRow{{"EmptyPacketBeforeTheLast"}, "A5 00 01 20 A5 00 03 50 E0 01", "E0 01"},
        ReplyRow{{"OtherBytesBefore"}, "00 FF 5A A5 00 03 50 E0 01", "E0 01"}),
    support::rowName);

TEST_F(SendQuery, IgnoresAPacketWhoseFlagEndsTheExchange) {
  for (const char* const reply : {"A5 00 03 80 E0 01", "A5 00 03 D4 E0 01", "A5 00 03 FF E0 01",
                                  "A5 00 01 50", "A5 00 01 80"}) {
    answer({bytes(reply)});
    EXPECT_EQ(query(10), Bytes()) << reply;
    EXPECT_TRUE(untouched) << reply;
    EXPECT_EQ(system.events.back(), "close") << reply;
  }
  EXPECT_EQ(system.now(), 10 * Second);
}

TEST_F(SendQuery, ReadsALengthAbove255FromBothBytes) {
  const Bytes body = pattern(0x0102 - 1);
  answer({joined({bytes("A5 01 02 50"), body})});
  EXPECT_EQ(query(), body);
}

TEST_F(SendQuery, ReadsTheLongestPacket) {
  const Bytes body = pattern(0xFFFF - 1);
  answer({joined({bytes("A5 FF FF 50"), body})});
  EXPECT_EQ(query(), body);
}
