#include <cerrno>
#include <gtest/gtest.h>
#include <vector>

#include "testing/bytes.h"
#include "testing/open_usblp.h"
#include "testing/rows.h"

using support::Bytes;
using support::bytes;
using support::OpenUsblp;

TEST_F(OpenUsblp, ReadsArrivedBytesAndLeavesTheStatusUnchanged) {
  device.reply(bytes("01 02 03"));
  connector.peek(buffer.data(), 0);
  EXPECT_EQ(connector.read(buffer.data(), 10), 3);
  EXPECT_EQ(buffer, bytes("01 02 03 EE EE EE EE EE EE EE"));
  EXPECT_EQ(device.readSizes, std::vector<std::size_t>{10});
  EXPECT_EQ(connector.getLastError(), IO_BAD_DEVICE);
}

TEST_F(OpenUsblp, ReturnsZeroForAnEmptyRead) {
  device.reply({});
  connector.peek(buffer.data(), 0);
  EXPECT_EQ(connector.read(buffer.data(), 10), 0);
  EXPECT_EQ(connector.getLastError(), IO_BAD_DEVICE);
}

namespace {

struct WriteRow : support::Row {
  int size;
  int accepted;
  HCIOStatus status;
};

class UsblpWrite : public OpenUsblp, public testing::WithParamInterface<WriteRow> {};

}  // namespace

TEST_P(UsblpWrite, ReturnsTheAcceptedCountAndSetsTheStatus) {
  device.writeResult = [](std::size_t) {
    return GetParam().accepted;
  };
  EXPECT_EQ(connector.write(buffer.data(), GetParam().size), GetParam().accepted);
  EXPECT_EQ(connector.getLastError(), GetParam().status);
  EXPECT_EQ(device.writes.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Counts, UsblpWrite,
                         testing::Values(WriteRow{{"All"}, 10, 10, IO_OK},
                                         WriteRow{{"Some"}, 10, 4, IO_SHORT_WRITE},
                                         WriteRow{{"None"}, 10, 0, IO_NOTHING_WRITTEN},
                                         WriteRow{{"NoneOfNone"}, 0, 0, IO_NOTHING_WRITTEN}),
                         support::rowName);

TEST_F(OpenUsblp, WritesTheBytesInOrder) {
  Bytes data = bytes("A5 00 06");
  EXPECT_EQ(connector.write(data.data(), 3), 3);
  EXPECT_EQ(device.writes, std::vector<Bytes>{data});
}

namespace {

struct ErrnoRow : support::Row {
  int error;
  HCIOStatus status;
};

class UsblpErrno : public OpenUsblp, public testing::WithParamInterface<ErrnoRow> {};

}  // namespace

TEST_P(UsblpErrno, SetsTheStatusOfARead) {
  device.readResult = [] {
    return -GetParam().error;
  };
  EXPECT_EQ(connector.read(buffer.data(), 10), -1);
  EXPECT_EQ(connector.getLastError(), GetParam().status);
}

TEST_P(UsblpErrno, SetsTheStatusOfAWrite) {
  device.writeResult = [](std::size_t) {
    return -GetParam().error;
  };
  EXPECT_EQ(connector.write(buffer.data(), 10), -1);
  EXPECT_EQ(connector.getLastError(), GetParam().status);
}

// EAGAIN, EBADF and EINTR set a status. Other errors leave the status that `open` has set.
INSTANTIATE_TEST_SUITE_P(Errors, UsblpErrno,
                         testing::Values(ErrnoRow{{"Eagain"}, EAGAIN, IO_TRY_AGAIN},
                                         ErrnoRow{{"BadDescriptor"}, EBADF, IO_BAD_DEVICE},
                                         ErrnoRow{{"Interrupted"}, EINTR, IO_INTERRUPTED},
                                         ErrnoRow{{"InputOutput"}, EIO, IO_OK},
                                         ErrnoRow{{"Unplugged"}, ENODEV, IO_OK}),
                         support::rowName);

TEST(UsblpClosed, ReportsABadDescriptor) {
  USBLPConnector connector("/dev/usb/lp", 0);
  unsigned char byte = 0;
  EXPECT_EQ(connector.read(&byte, 1), -1);
  EXPECT_EQ(connector.getLastError(), IO_BAD_DEVICE);
  EXPECT_EQ(connector.close(), 1);
  EXPECT_EQ(connector.write(&byte, 1), -1);
  EXPECT_EQ(connector.getLastError(), IO_BAD_DEVICE);
}

TEST_F(OpenUsblp, PeeksZeros) {
  EXPECT_EQ(connector.peek(buffer.data(), 4), 0);
  EXPECT_EQ(buffer, bytes("00 00 00 00 EE EE EE EE EE EE"));
  EXPECT_EQ(connector.getLastError(), IO_BAD_DEVICE);
}
