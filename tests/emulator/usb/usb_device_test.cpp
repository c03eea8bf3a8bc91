#include "emulator/usb/usb_device.h"

#include <chrono>
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "testing/bytes.h"
#include "testing/packets.h"
#include "testing/usb_printer.h"

// The bulk transfers of a printer without faults.

namespace emulator {

bool operator==(const UsbCompletion& a, const UsbCompletion& b) {
  return a.id == b.id && a.status == b.status && a.done == b.done && a.data == b.data;
}

std::ostream& operator<<(std::ostream& stream, const UsbCompletion& end) {
  return stream << "transfer " << end.id << ": status " << end.status << ", " << end.done
                << " bytes";
}

}  // namespace emulator

namespace {

using emulator::Personality;
using emulator::UsbCompletion;
using emulator::UsbSpeed;
using npa::Bytes;
using packets::IpReply;
using packets::QueryIp;
using packets::QuerySsid;
using support::bytes;
using support::ReadyUsbPrinter;
using Ends = std::vector<UsbCompletion>;
using namespace std::chrono_literals;

UsbCompletion completedWrite(std::uint32_t id, std::size_t count) {
  return {.id = id, .status = 0, .done = count};
}

UsbCompletion completedRead(std::uint32_t id, const Bytes& data, std::int32_t status = 0) {
  return {.id = id, .status = status, .done = data.size(), .data = data};
}

/// Returns a personality whose reply to the query of the SSID has `size` bytes.
Personality withReplyOf(std::size_t size) {
  return {.ssid = std::string(size - 12, 'x')};
}

Bytes part(const Bytes& all, std::size_t from, std::size_t to) {
  return {all.begin() + static_cast<std::ptrdiff_t>(from),
          all.begin() + static_cast<std::ptrdiff_t>(to)};
}

TEST(UsbTransfers, TransferARequestAndItsReply) {
  ReadyUsbPrinter printer;
  printer.write(1, QueryIp);
  EXPECT_EQ(printer.device.advance(), Ends{completedWrite(1, 9)});
  printer.read(2, 1024);
  EXPECT_EQ(printer.device.advance(), (Ends{completedRead(2, IpReply)}));
}

TEST(UsbTransfers, DelayAReadUntilThereIsAReply) {
  ReadyUsbPrinter printer;
  printer.read(1, 1024);
  EXPECT_EQ(printer.device.advance(), Ends());
  EXPECT_EQ(printer.device.waiting(), 1U);
  EXPECT_FALSE(printer.device.nextDue());
  printer.write(2, QueryIp);
  EXPECT_EQ(printer.device.advance(), (Ends{completedWrite(2, 9), completedRead(1, IpReply)}));
  EXPECT_EQ(printer.device.waiting(), 0U);
}

TEST(UsbTransfers, ReturnOneReplyToEachReadInOrder) {
  ReadyUsbPrinter printer;
  printer.read(1, 1024);
  printer.read(2, 1024);
  printer.read(3, 1024);
  printer.write(4, support::joined({QueryIp, QueryIp}));
  EXPECT_EQ(printer.device.advance(),
            (Ends{completedWrite(4, 18), completedRead(1, IpReply), completedRead(2, IpReply)}));
  EXPECT_EQ(printer.device.waiting(), 1U);
}

TEST(UsbTransfers, AcceptAPacketInSeveralWritesAndAnEmptyOne) {
  ReadyUsbPrinter printer;
  printer.write(1, part(QueryIp, 0, 4));
  printer.write(2, {});
  printer.write(3, part(QueryIp, 4, 9));
  printer.read(4, 64);
  EXPECT_EQ(printer.device.advance(), (Ends{completedWrite(1, 4), completedWrite(2, 0),
                                            completedWrite(3, 5), completedRead(4, IpReply)}));
}

TEST(UsbTransfers, ReturnALongReplyInSeveralReads) {
  ReadyUsbPrinter printer({}, withReplyOf(3000));
  printer.write(1, QuerySsid);
  const Bytes reply = support::ReadyUsbPrinter({}, withReplyOf(3000)).printer.ask(QuerySsid);
  ASSERT_EQ(reply.size(), 3000U);
  for (std::uint32_t id = 2; id < 5; ++id) {
    printer.read(id, 1024);
  }
  EXPECT_EQ(
      printer.device.advance(),
      (Ends{completedWrite(1, 9), completedRead(2, part(reply, 0, 1024)),
            completedRead(3, part(reply, 1024, 2048)), completedRead(4, part(reply, 2048, 3000))}));
}

struct WholePackets {
  UsbSpeed speed;
  std::size_t size;
};

class UsbTransfersOfWholePackets : public testing::TestWithParam<WholePackets> {};

TEST_P(UsbTransfersOfWholePackets, EndWithAnEmptyPacket) {
  const auto [speed, size] = GetParam();
  ReadyUsbPrinter printer({.speed = speed}, withReplyOf(size));
  printer.write(1, support::joined({QuerySsid, QuerySsid}));
  printer.read(2, size + 1);
  printer.read(3, size);
  printer.read(4, size);
  const Ends ends = printer.device.advance();
  ASSERT_EQ(ends.size(), 4U);
  EXPECT_EQ(ends[1].done, size);
  // The reply fills the buffer, so the next read gets the empty packet.
  EXPECT_EQ(ends[2].done, size);
  EXPECT_EQ(ends[3], completedRead(4, {}));
  printer.read(5, size);
  EXPECT_EQ(printer.device.advance(), Ends());
}

INSTANTIATE_TEST_SUITE_P(Speeds, UsbTransfersOfWholePackets,
                         testing::Values(WholePackets{UsbSpeed::Full, 64},
                                         WholePackets{UsbSpeed::Full, 128},
                                         WholePackets{UsbSpeed::High, 512},
                                         WholePackets{UsbSpeed::High, 1024}));

TEST(UsbTransfers, ReturnTheEmptyPacketToAReadOfZeroBytes) {
  ReadyUsbPrinter printer({}, withReplyOf(512));
  printer.write(1, support::joined({QuerySsid, QueryIp}));
  printer.read(2, 512);
  printer.read(3, 0);
  printer.read(4, 512);
  const Ends ends = printer.device.advance();
  ASSERT_EQ(ends.size(), 4U);
  EXPECT_EQ(ends[2], completedRead(3, {}));
  EXPECT_EQ(ends[3], completedRead(4, IpReply));
}

TEST(UsbTransfers, EndWithAShortPacketOfHighSpeed) {
  ReadyUsbPrinter printer({}, withReplyOf(64));
  printer.write(1, QuerySsid);
  printer.read(2, 64);
  printer.read(3, 64);
  EXPECT_EQ(printer.device.advance().size(), 2U);
}

TEST(UsbTransfers, LoseTheRestOfAPacketThatDoesNotFit) {
  ReadyUsbPrinter printer({.speed = UsbSpeed::Full}, withReplyOf(150));
  const Bytes reply = support::ReadyUsbPrinter({}, withReplyOf(150)).printer.ask(QuerySsid);
  printer.write(1, QuerySsid);
  printer.read(2, 10);
  printer.read(3, 70);
  printer.read(4, 64);
  const std::int32_t tooMuch = emulator::UsbTooMuch;
  EXPECT_EQ(printer.device.advance(),
            (Ends{completedWrite(1, 9), completedRead(2, part(reply, 0, 10), tooMuch),
                  completedRead(3, part(reply, 64, 134), tooMuch)}));
}

TEST(UsbTransfers, FailIfTheHostRequiresMoreBytes) {
  ReadyUsbPrinter printer;
  printer.write(1, support::joined({QueryIp, QueryIp}));
  printer.read(2, 16, true);
  printer.read(3, 15, true);
  EXPECT_EQ(printer.device.advance(),
            (Ends{completedWrite(1, 18), completedRead(2, IpReply, emulator::UsbShort),
                  completedRead(3, IpReply)}));
}

TEST(UsbTransfers, CanBeUnlinkedWhileTheyWait) {
  ReadyUsbPrinter printer;
  printer.read(1, 1024);
  printer.read(2, 1024);
  EXPECT_TRUE(printer.device.unlink(1));
  EXPECT_FALSE(printer.device.unlink(1));
  EXPECT_FALSE(printer.device.unlink(7));
  printer.write(3, QueryIp);
  EXPECT_EQ(printer.device.advance(), (Ends{completedWrite(3, 9), completedRead(2, IpReply)}));
  EXPECT_FALSE(printer.device.unlink(2));
}

TEST(UsbTransfers, StallAtAMissingEndpoint) {
  support::UsbPrinter unconfigured;
  unconfigured.read(1, 64);
  unconfigured.write(2, QueryIp);
  const UsbCompletion stalledRead{.id = 1, .status = emulator::UsbStalled};
  const UsbCompletion stalledWrite{.id = 2, .status = emulator::UsbStalled};
  EXPECT_EQ(unconfigured.device.advance(), (Ends{stalledRead, stalledWrite}));
  ReadyUsbPrinter oneWay({.alternates = 2});
  oneWay.read(1, 64);
  EXPECT_EQ(oneWay.device.advance(), Ends{stalledRead});
  for (const std::uint32_t endpoint : {1U, 0x82U, 0x102U, 0xFFFFFFFFU}) {
    ReadyUsbPrinter printer;
    printer.device.submit(
        {.id = 1, .endpoint = endpoint, .direction = emulator::UsbDirection::In, .length = 64});
    EXPECT_EQ(printer.device.advance(), Ends{stalledRead}) << endpoint;
  }
}

TEST(UsbTransfers, FollowTheDelayAndThePiecesOfTheAdapter) {
  ReadyUsbPrinter printer({}, {.replyDelay = 3s, .pieceSize = 10});
  printer.read(1, 1024);
  printer.read(2, 1024);
  printer.write(3, QueryIp);
  const auto start = printer.printer.now;
  EXPECT_EQ(printer.device.advance(), Ends{completedWrite(3, 9)});
  EXPECT_EQ(printer.device.nextDue(), start + 3s);
  printer.printer.now = start + 2999ms;
  EXPECT_EQ(printer.device.advance(), Ends());
  printer.printer.now = start + 3s;
  EXPECT_EQ(printer.device.advance(), Ends{completedRead(1, part(IpReply, 0, 10))});
  EXPECT_EQ(printer.device.nextDue(), start + 3020ms);
  printer.printer.now = start + 3020ms;
  EXPECT_EQ(printer.device.advance(), Ends{completedRead(2, part(IpReply, 10, 15))});
  EXPECT_FALSE(printer.device.nextDue());
}

TEST(UsbTransfers, AreDiscardedByAnUnplug) {
  ReadyUsbPrinter printer;
  printer.write(1, support::joined({QueryIp, part(QueryIp, 0, 5)}));
  printer.device.advance();
  printer.device.unplug();
  EXPECT_EQ(printer.ask({0x80, 8, 0, 0, 1}), bytes("00"));
  printer.configure();
  printer.read(2, 1024);
  EXPECT_EQ(printer.device.advance(), Ends());
  printer.device.unplug();
  EXPECT_EQ(printer.device.waiting(), 0U);
  printer.configure();
  printer.write(3, QueryIp);
  printer.read(4, 1024);
  EXPECT_EQ(printer.device.advance(), (Ends{completedWrite(3, 9), completedRead(4, IpReply)}));
}

}  // namespace
