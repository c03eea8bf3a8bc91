#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/bytes.h"
#include "testing/lib_usb_transfer.h"
#include "testing/rows.h"

using support::Bulk;
using support::Bytes;
using support::bytes;
using support::Interrupt;
using support::joined;
using support::LibUsbTransfer;
using support::pattern;
using support::TransferRow;
using virtual_system::Second;

// --- Endpoints ----------------------------------------------------------------------------------

TEST_F(LibUsbTransfer, UsesOnlyBulkEndpoints) {
  open({{0x81, Bulk, 16}, {0x02, Bulk, 512}, {0x83, Interrupt, 8}, {0x04, Interrupt, 8}});
  write(bytes("01"));
  connector.isReadReady(0);
  EXPECT_EQ(library.calls, (std::vector<std::string>{"usb_bulk_write(2)", "usb_bulk_read(129)"}));
  EXPECT_EQ(library.readSizes, std::vector<int>{16});
}

TEST_F(LibUsbTransfer, UsesTheLastEndpointOfADirection) {
  open({{0x81, Bulk, 16}, {0x02, Bulk, 512}, {0x83, Bulk, 32}, {0x04, Bulk, 512}});
  write(bytes("01"));
  connector.isReadReady(0);
  EXPECT_EQ(library.calls, (std::vector<std::string>{"usb_bulk_write(4)", "usb_bulk_read(131)"}));
  EXPECT_EQ(library.readSizes, std::vector<int>{32});
}

TEST_F(LibUsbTransfer, ChecksOnlyTheTransferTypeBits) {
  open({{0x81, 0xFC | Bulk, 16}, {0x02, 0x40 | Bulk, 512}});
  connector.isReadReady(0);
  EXPECT_EQ(library.calls, std::vector<std::string>{"usb_bulk_read(129)"});
}

// --- Bulk write ---------------------------------------------------------------------------------

TEST_F(LibUsbTransfer, WritesChunksOfTheInEndpointsPacketSize) {
  open();
  const Bytes data = pattern(150);
  EXPECT_EQ(write(data), 150);
  EXPECT_EQ(connector.getLastError(), IO_OK);
  EXPECT_EQ(library.chunkSizes, (std::vector<int>{64, 64, 22}));
  EXPECT_EQ(library.writeTimeouts, (std::vector<int>{5000, 5000, 5000}));
  EXPECT_EQ(joined({library.written[0], library.written[1], library.written[2]}), data);
}

TEST_F(LibUsbTransfer, WritesChunksOf32BytesWithoutInEndpoint) {
  open({{0x02, Bulk, 512}});
  EXPECT_EQ(write(pattern(70)), 70);
  EXPECT_EQ(library.chunkSizes, (std::vector<int>{32, 32, 6}));
}

TEST_F(LibUsbTransfer, WritesChunksOf32BytesIfTheInEndpointHasNoPacketSize) {
  open({{0x81, Bulk, 0}, {0x02, Bulk, 512}});
  EXPECT_EQ(write(pattern(33)), 33);
  EXPECT_EQ(library.chunkSizes, (std::vector<int>{32, 1}));
}

TEST_F(LibUsbTransfer, DoesNotCallLibusbForAnEmptyWrite) {
  open();
  EXPECT_EQ(write({}), 0);
  EXPECT_TRUE(library.calls.empty());
}

TEST_F(LibUsbTransfer, WritesNothingAndSetsNoStatusIfClosed) {
  EXPECT_EQ(connector.isWriteReady(0), IO_WRITE_READY);
  EXPECT_EQ(write(bytes("01")), 0);
  EXPECT_EQ(connector.getLastError(), IO_WRITE_READY);
  EXPECT_TRUE(library.calls.empty());
}

TEST_F(LibUsbTransfer, ContinuesAfterTheAcceptedPartOfAChunk) {
  open();
  const Bytes data = pattern(100);
  answerWrites({10, 64});
  EXPECT_EQ(write(data), 100);
  EXPECT_EQ(library.chunkSizes, (std::vector<int>{64, 64, 26}));
  EXPECT_EQ(joined({library.written[0], library.written[1], library.written[2]}), data);
}

namespace {

class LibUsbWriteFailure : public LibUsbTransfer,
                           public testing::WithParamInterface<TransferRow> {};

}  // namespace

TEST_P(LibUsbWriteFailure, EndsTheWriteWithTheShortCount) {
  open();
  answerWrites({64, GetParam().result});
  EXPECT_EQ(write(pattern(150)), 64);
  EXPECT_EQ(connector.getLastError(), GetParam().status);
  EXPECT_EQ(library.chunkSizes.size(), 2U);
  EXPECT_EQ(library.count("usb_clear_halt(2)"), 0);
}

INSTANTIATE_TEST_SUITE_P(Errors, LibUsbWriteFailure,
                         testing::Values(TransferRow{{"Stall"}, -32, IO_BAD_DEVICE},
                                         TransferRow{{"Unplugged"}, -19, IO_FAILED},
                                         TransferRow{{"InputOutput"}, -5, IO_FAILED},
                                         TransferRow{{"NotPermitted"}, -1, IO_FAILED}),
                         support::rowName);

TEST_F(LibUsbTransfer, RepeatsAChunkThatTimedOutAfterClearingTheHalt) {
  open();
  const Bytes data = pattern(70);
  answerWrites({-110, -110, 64});
  EXPECT_EQ(write(data), 70);
  EXPECT_EQ(connector.getLastError(), IO_OK);
  EXPECT_EQ(library.calls, (std::vector<std::string>{"usb_bulk_write(2)", "usb_clear_halt(2)",
                                                     "usb_bulk_write(2)", "usb_clear_halt(2)",
                                                     "usb_bulk_write(2)", "usb_bulk_write(2)"}));
  EXPECT_EQ(joined({library.written[0], library.written[1]}), data);
}

TEST_F(LibUsbTransfer, GivesUpAfter24Retries) {
  open();
  answerWrites({64, -110});
  EXPECT_EQ(write(pattern(150)), 64);
  EXPECT_EQ(connector.getLastError(), IO_TRY_AGAIN);
  EXPECT_EQ(library.count("usb_bulk_write(2)"), 1 + 1 + 24);
  EXPECT_EQ(system.now(), 125 * Second);
}

TEST_F(LibUsbTransfer, SucceedsWithTheLastRetry) {
  open();
  std::vector<int> results(24, -110);
  results.push_back(64);
  answerWrites(results);
  EXPECT_EQ(write(pattern(10)), 10);
  EXPECT_EQ(connector.getLastError(), IO_OK);
}

TEST_F(LibUsbTransfer, CountsTheRetriesOfAllChunksTogether) {
  open();
  std::vector<int> results(20, -110);
  results.push_back(64);
  results.push_back(-110);
  answerWrites(results);
  EXPECT_EQ(write(pattern(150)), 64);
  EXPECT_EQ(library.count("usb_bulk_write(2)"), 1 + 24 + 1);
}

TEST_F(LibUsbTransfer, GivesUpIfNothingIsEverAccepted) {
  open();
  answerWrites({64, 0});
  EXPECT_EQ(write(pattern(150)), 64);
  EXPECT_EQ(connector.getLastError(), IO_TRY_AGAIN);
  EXPECT_EQ(library.count("usb_bulk_write(2)"), 1 + 1 + 24);
}

TEST_F(LibUsbTransfer, IsAlwaysReadyForWriting) {
  EXPECT_EQ(connector.isWriteReady(1000), IO_WRITE_READY);
  EXPECT_EQ(connector.getLastError(), IO_WRITE_READY);
  open();
  EXPECT_EQ(connector.isWriteReady(1000), IO_WRITE_READY);
  EXPECT_TRUE(library.calls.empty());
  EXPECT_EQ(system.now(), 0);
}
