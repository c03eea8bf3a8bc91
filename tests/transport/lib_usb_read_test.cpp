#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/bytes.h"
#include "testing/lib_usb_transfer.h"
#include "testing/rows.h"

using support::Bytes;
using support::bytes;
using support::joined;
using support::LibUsbTransfer;
using support::pattern;
using support::TransferRow;
using virtual_system::Second;

namespace {

constexpr int RingCapacity = 65536;

}  // namespace

// --- Bulk poll ----------------------------------------------------------------------------------

TEST_F(LibUsbTransfer, PollFailsIfTheConnectorIsClosed) {
  EXPECT_EQ(connector.isReadReady(1000), IO_FAILED);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
  EXPECT_TRUE(library.calls.empty());
}

TEST_F(LibUsbTransfer, PollReadsOnePacketWithItsTimeoutInMilliseconds) {
  open();
  library.incoming = pattern(100);
  EXPECT_EQ(connector.isReadReady(1234), IO_READ_READY);
  EXPECT_EQ(connector.getLastError(), IO_READ_READY);
  EXPECT_EQ(library.readSizes, std::vector<int>{64});
  EXPECT_EQ(library.readTimeouts, std::vector<int>{1234});
  EXPECT_EQ(library.incoming.size(), 36U);
  EXPECT_EQ(read(64), pattern(64));
}

namespace {

class LibUsbPollResult : public LibUsbTransfer, public testing::WithParamInterface<TransferRow> {};

}  // namespace

TEST_P(LibUsbPollResult, BecomesTheStatus) {
  open();
  library.bulkRead = [](char*, int) {
    return GetParam().result;
  };
  EXPECT_EQ(connector.isReadReady(1000), GetParam().status);
  EXPECT_EQ(connector.getLastError(), GetParam().status);
}

INSTANTIATE_TEST_SUITE_P(Results, LibUsbPollResult,
                         testing::Values(TransferRow{{"OneByte"}, 1, IO_READ_READY},
                                         TransferRow{{"WholePacket"}, 64, IO_READ_READY},
                                         TransferRow{{"Nothing"}, 0, IO_TIMEOUT},
                                         TransferRow{{"Timeout"}, -110, IO_TIMEOUT},
                                         TransferRow{{"Stall"}, -32, IO_FAILED},
                                         TransferRow{{"Unplugged"}, -19, IO_FAILED}),
                         support::rowName);

TEST_F(LibUsbTransfer, PollPausesBrieflyAfterAnImmediateEmptyRead) {
  open();
  library.bulkRead = [](char*, int) {
    return 0;
  };
  EXPECT_EQ(connector.isReadReady(1000), IO_TIMEOUT);
  EXPECT_EQ(system.briefPauses.size(), 1U);
}

TEST_F(LibUsbTransfer, PollDoesNotPauseAfterItsTimeout) {
  open();
  EXPECT_EQ(connector.isReadReady(1000), IO_TIMEOUT);
  EXPECT_TRUE(system.briefPauses.empty());
  EXPECT_EQ(system.now(), Second);
}

TEST_F(LibUsbTransfer, PollDropsAPacketThatWouldLeaveNoFreeByte) {
  open();
  fillRing(RingCapacity - 64);
  library.incoming = Bytes(64, 0xEE);
  EXPECT_EQ(connector.isReadReady(0), IO_FAILED);
  EXPECT_TRUE(library.incoming.empty());
  library.incoming = bytes("F1 F2");
  EXPECT_EQ(connector.isReadReady(0), IO_READ_READY);
  EXPECT_EQ(read(RingCapacity - 62), joined({pattern(RingCapacity - 64), bytes("F1 F2")}));
}

TEST_F(LibUsbTransfer, PollKeepsAPacketThatLeavesOneFreeByte) {
  open();
  fillRing(RingCapacity - 64);
  library.incoming = Bytes(63, 0xEE);
  EXPECT_EQ(connector.isReadReady(0), IO_READ_READY);
  EXPECT_EQ(read(RingCapacity - 1).size(), 65535U);
}

// --- Buffered read ------------------------------------------------------------------------------

TEST_F(LibUsbTransfer, ReadOfZeroBytesDoesNotPoll) {
  open();
  unsigned char byte = 0x55;
  EXPECT_EQ(connector.read(&byte, 0), 0);
  EXPECT_EQ(connector.read(&byte, -1), 0);
  EXPECT_EQ(library.readSizes.size(), 0U);
  EXPECT_EQ(byte, 0x55);
}

TEST_F(LibUsbTransfer, ReadReturnsStoredBytesWithoutPolling) {
  open();
  fillRing(10);
  library.calls.clear();
  EXPECT_EQ(read(4), pattern(4));
  EXPECT_EQ(read(6), bytes("04 05 06 07 08 09"));
  EXPECT_TRUE(library.calls.empty());
}

TEST_F(LibUsbTransfer, ReadPollsUntilItHasEnoughBytesAndKeepsTheRest) {
  open();
  library.incoming = pattern(150);
  EXPECT_EQ(read(70), pattern(70));
  EXPECT_EQ(library.readTimeouts, (std::vector<int>{10000, 10000}));
  EXPECT_EQ(library.incoming.size(), 22U);
  EXPECT_EQ(read(58).size(), 58U);
  EXPECT_EQ(library.readTimeouts.size(), 2U);
}

TEST_F(LibUsbTransfer, ReadReturnsTheBytesBeforeATimeout) {
  open();
  library.incoming = pattern(70);
  EXPECT_EQ(read(100), pattern(70));
  EXPECT_EQ(library.readTimeouts, (std::vector<int>{10000, 10000, 10000}));
  EXPECT_EQ(connector.getLastError(), IO_TIMEOUT);
}

TEST_F(LibUsbTransfer, ReadReturnsNothingAfterOneTimeout) {
  open();
  EXPECT_EQ(read(10), Bytes());
  EXPECT_EQ(library.readTimeouts, std::vector<int>{10000});
  EXPECT_EQ(system.now(), 10 * Second);
}

TEST_F(LibUsbTransfer, ReadReturnsStoredBytesIfAPollFails) {
  open();
  fillRing(5);
  library.bulkRead = [](char*, int) {
    return -19;
  };
  EXPECT_EQ(read(10), pattern(5));
}

TEST_F(LibUsbTransfer, ReadReturnsStoredBytesAfterClose) {
  open();
  fillRing(5);
  connector.close();
  EXPECT_EQ(read(10), pattern(5));
  EXPECT_EQ(read(10), Bytes());
}

TEST_F(LibUsbTransfer, PeeksNothing) {
  open();
  fillRing(5);
  Bytes buffer = bytes("EE EE");
  EXPECT_EQ(connector.peek(buffer.data(), 2), 0);
  EXPECT_EQ(buffer, bytes("EE EE"));
  EXPECT_EQ(connector.getLastError(), IO_READ_READY);
  EXPECT_EQ(read(5), pattern(5));
}
