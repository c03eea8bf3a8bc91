#include "emulator/usb/usbip_session.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "testing/bytes.h"
#include "testing/packets.h"
#include "testing/rows.h"
#include "testing/usb_printer.h"
#include "testing/usbip_host.h"

namespace {

using emulator::UsbipError;
using emulator::UsbipSession;
using emulator::UsbipStatus;
using npa::Bytes;
using packets::IpReply;
using packets::QueryIp;
using support::bytes;
using support::controlCommand;
using support::joined;
using support::readCommand;
using support::submitHeader;
using support::submitReply;
using support::unlinkCommand;
using support::unlinkReply;
using support::writeCommand;
using Phase = UsbipSession::Phase;

constexpr std::uint32_t Stalled = 0xFFFFFFE0;
constexpr std::uint32_t Unlinked = 0xFFFFFF98;

/// A printer and the session of a host that is connected to it.
class Connection {
 public:
  explicit Connection(Phase phase = Phase::Transfers, emulator::UsbTraits traits = {})
      : printer(std::move(traits)), session(printer.device, phase) {}

  /// Passes bytes from the host to the session and returns its output.
  Bytes send(const Bytes& input) {
    session.receive(input);
    return session.takeOutput();
  }

  support::ReadyUsbPrinter printer;
  UsbipSession session;
};

TEST(UsbipSession, AnswersAControlRequestWithItsData) {
  Connection connection;
  EXPECT_EQ(connection.send(controlCommand(7, {0x80, 6, 0x0100, 0, 8})),
            submitReply(7, 0, 8, bytes("12 01 00 02 00 00 00 40")));
}

TEST(UsbipSession, AnswersAStall) {
  Connection connection;
  EXPECT_EQ(connection.send(controlCommand(0xFFFFFFFF, {0x80, 6, 0x0F00, 0, 8})),
            submitReply(0xFFFFFFFF, Stalled, 0));
}

TEST(UsbipSession, ReturnsNoMoreDataThanTheBufferHolds) {
  Connection connection;
  EXPECT_EQ(connection.send(
                submitHeader({.direction = 1, .length = 2, .setup = {0x80, 6, 0x0100, 0, 18}})),
            submitReply(1, 0, 2, bytes("12 01")));
}

TEST(UsbipSession, TransfersARequestAndItsReply) {
  Connection connection;
  EXPECT_EQ(connection.send(readCommand(1, 1024)), Bytes());
  EXPECT_EQ(connection.send(writeCommand(2, QueryIp)),
            joined({submitReply(2, 0, 9), submitReply(1, 0, 15, IpReply)}));
}

TEST(UsbipSession, FailsAShortReadIfTheHostRequiresMoreBytes) {
  Connection connection;
  connection.send(writeCommand(2, QueryIp));
  EXPECT_EQ(connection.send(
                submitHeader({.id = 3, .direction = 1, .endpoint = 2, .flags = 1, .length = 64})),
            submitReply(3, 0xFFFFFF87, 15, IpReply));
}

TEST(UsbipSession, UnlinksAReadThatWaits) {
  Connection connection;
  connection.send(joined({readCommand(1, 1024), readCommand(2, 1024)}));
  EXPECT_EQ(connection.send(unlinkCommand(3, 1)), unlinkReply(3, Unlinked));
  EXPECT_EQ(connection.send(writeCommand(4, QueryIp)),
            joined({submitReply(4, 0, 9), submitReply(2, 0, 15, IpReply)}));
}

TEST(UsbipSession, RepliesToAnUnlinkOfAnEndedRead) {
  Connection connection;
  EXPECT_EQ(connection.send(joined({readCommand(1, 1024), writeCommand(2, QueryIp),
                                    unlinkCommand(3, 1), unlinkCommand(4, 99)})),
            joined({submitReply(2, 0, 9), submitReply(1, 0, 15, IpReply), unlinkReply(3, 0),
                    unlinkReply(4, 0)}));
}

TEST(UsbipSession, CompletesAReadThatEndsJustBeforeItsUnlink) {
  Connection connection(Phase::Transfers, {.outBytesPerSecond = 9});
  connection.send(joined({readCommand(1, 1024), writeCommand(2, QueryIp)}));
  connection.printer.printer.now += std::chrono::seconds(1);
  EXPECT_EQ(connection.send(unlinkCommand(3, 1)),
            joined({submitReply(2, 0, 9), submitReply(1, 0, 15, IpReply), unlinkReply(3, 0)}));
}

TEST(UsbipSession, AcceptsItsInputInAnyPieces) {
  const Bytes input = joined({support::importRequest("1-1"), controlCommand(1, {0x00, 9, 1, 0, 0}),
                              readCommand(2, 64), writeCommand(3, QueryIp), writeCommand(4, {}),
                              readCommand(5, 64), unlinkCommand(6, 5)});
  Connection whole(Phase::Requests);
  const Bytes expected = whole.send(input);
  EXPECT_EQ(expected.size(), 320U + 48U + 48U + 63U + 48U + 48U);
  for (const std::size_t size : {1U, 7U, 39U, 41U, 48U, 100U}) {
    Connection connection(Phase::Requests);
    Bytes output;
    for (std::size_t start = 0; start < input.size(); start += size) {
      const auto first = input.begin() + static_cast<std::ptrdiff_t>(start);
      const Bytes piece(first,
                        first + static_cast<std::ptrdiff_t>(std::min(size, input.size() - start)));
      output = joined({output, connection.send(piece)});
    }
    EXPECT_EQ(output, expected) << size;
  }
}

TEST(UsbipSession, WaitsForTheRestOfACommand) {
  Connection connection;
  Bytes command = writeCommand(1, QueryIp);
  command.pop_back();
  EXPECT_EQ(connection.send(command), Bytes());
  EXPECT_TRUE(connection.printer.printer.log.empty());
}

struct HostileRow : support::Row {
  Bytes input;
  const char* reason;
};

Bytes withKind(std::uint8_t kind) {
  Bytes command = unlinkCommand(1, 1);
  command[3] = kind;
  return command;
}

class HostileHost : public testing::TestWithParam<HostileRow> {};

TEST_P(HostileHost, IsRejected) {
  Connection connection;
  try {
    connection.send(GetParam().input);
    FAIL() << "accepted";
  } catch (const UsbipError& error) {
    EXPECT_STREQ(error.what(), GetParam().reason);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Commands, HostileHost,
    testing::Values(HostileRow{{"OutTooLong"},
                               submitHeader({.endpoint = 1, .length = 0x100001}),
                               "transfer of 1048577 bytes, expected at most 1048576"},
                    HostileRow{{"InTooLong"},
                               submitHeader({.direction = 1, .endpoint = 2, .length = 0xFFFFFFFF}),
                               "transfer of 4294967295 bytes, expected at most 1048576"},
                    HostileRow{{"Isochronous"},
                               submitHeader({.endpoint = 1, .packets = 1}),
                               "isochronous transfer"},
                    HostileRow{{"ManyPackets"},
                               submitHeader({.endpoint = 1, .packets = 0xFFFFFFFE}),
                               "isochronous transfer"},
                    HostileRow{{"Direction"},
                               submitHeader({.direction = 2, .endpoint = 1}),
                               "transfer in unknown direction 2"},
                    HostileRow{{"AnotherDevice"},
                               submitHeader({.device = 0x00010002}),
                               "transfer for another device"},
                    HostileRow{{"UnknownCommand"}, withKind(0), "unknown command 0"},
                    HostileRow{{"AReply"}, withKind(3), "unknown command 3"}),
    support::rowName);

TEST(UsbipSession, AcceptsTheLargestTransferAndBothFormsOfNoPackets) {
  Connection connection;
  const Bytes largest(0x100000, 0);
  EXPECT_EQ(connection.send(writeCommand(1, largest)), submitReply(1, 0, 0x100000));
  EXPECT_EQ(connection.send(submitHeader({.id = 2, .endpoint = 1, .packets = 0xFFFFFFFF})),
            submitReply(2, 0, 0));
}

TEST(UsbipSession, RejectsTooManyTransfers) {
  Connection reads;
  for (std::uint32_t i = 0; i < UsbipSession::MostTransfers; ++i) {
    reads.send(readCommand(i, 0x100000));
  }
  EXPECT_THROW(reads.send(readCommand(1000, 1)), UsbipError);
  Connection writes(Phase::Transfers,
                    {.faults = {{emulator::UsbFault::Kind::Hold, emulator::UsbDirection::Out, 0}}});
  const Bytes command = writeCommand(1, Bytes(0x100000, 0));
  for (int i = 0; i < 4; ++i) {
    writes.send(command);
  }
  EXPECT_THROW(writes.send(writeCommand(1, {0})), UsbipError);
}

TEST(UsbipSession, ListsTheDevice) {
  Connection connection(Phase::Requests);
  EXPECT_EQ(connection.send(support::listRequest()), support::listed());
  Connection full(Phase::Requests, {.speed = emulator::UsbSpeed::Full});
  EXPECT_EQ(full.send(support::listRequest()), support::listed(2));
  EXPECT_FALSE(full.session.hasDevice());
}

TEST(UsbipSession, ListsNothingWhileUnplugged) {
  Connection connection(Phase::Requests);
  connection.session.offer(UsbipStatus::NoDevice);
  EXPECT_EQ(connection.send(support::listRequest()), support::nothingListed());
}

TEST(UsbipSession, ExportsTheDevice) {
  Connection connection(Phase::Requests);
  EXPECT_EQ(connection.send(support::importRequest("1-1")), support::imported());
  EXPECT_TRUE(connection.session.hasDevice());
  EXPECT_EQ(connection.send(writeCommand(2, QueryIp)), submitReply(2, 0, 9));
}

TEST(UsbipSession, ExportsNothingElse) {
  Connection connection(Phase::Requests);
  const Bytes none = support::notImported(4);
  EXPECT_EQ(connection.send(support::importRequest("1-2")), none);
  EXPECT_EQ(connection.send(support::importRequest("1-11")), none);
  EXPECT_EQ(connection.send(support::importRequest(std::string(32, '1'))), none);
  connection.session.offer(UsbipStatus::Busy);
  EXPECT_EQ(connection.send(support::importRequest("1-1")), support::notImported(2));
  EXPECT_FALSE(connection.session.hasDevice());
}

TEST(UsbipSession, RejectsOtherRequests) {
  for (const char* request : {"01 06 80 05 00 00 00 00", "01 11 80 04 00 00 00 00",
                              "01 11 00 05 00 00 00 00", "00 00 00 01 00 00 00 01"}) {
    Connection connection(Phase::Requests);
    EXPECT_THROW(connection.send(bytes(request)), UsbipError) << request;
  }
}

}  // namespace
