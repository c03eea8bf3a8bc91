#include "transport/usblp_connector.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "testing/mutex_journal.h"
#include "testing/open_usblp.h"
#include "testing/rows.h"
#include "testing/virtual_system.h"

using support::OpenUsblp;
using virtual_system::Device;
using virtual_system::System;

namespace {

constexpr const char* Prefix = "/dev/usb/lp";

}  // namespace

// --- Opening and closing ------------------------------------------------------------------------

TEST(UsblpOpen, OpensPrefixAndNumberNonBlocking) {
  System system;
  const Device& device = system.device("/dev/usb/lp3");
  USBLPConnector connector(Prefix, 3);
  EXPECT_EQ(connector.getLastError(), IO_OK);
  EXPECT_EQ(connector.open(), 0);
  EXPECT_EQ(connector.getLastError(), 0);
  EXPECT_EQ(device.opens, 1);
  EXPECT_EQ(device.openFlags, 0x982);
}

namespace {

constexpr std::size_t LongestPath = 63;

/// Returns a prefix of `length` characters.
std::string prefixOf(std::size_t length) {
  std::string prefix = "/dev/usb/";
  return prefix.append(length - prefix.size(), 'p');
}

struct NameRow : support::Row {
  std::string prefix;
  int number;
  bool formed;
};

class UsblpName : public testing::TestWithParam<NameRow> {};

}  // namespace

TEST_P(UsblpName, IsOpenedIfPrefixAndNumberAreValid) {
  const NameRow& row = GetParam();
  System system;
  const Device& device = system.device(row.prefix + std::to_string(row.number));
  USBLPConnector connector(row.prefix.c_str(), row.number);
  EXPECT_EQ(connector.getType(), HC_LOC_USBLP);
  EXPECT_EQ(connector.open(), row.formed ? 0 : 1);
  EXPECT_EQ(connector.getLastError(), row.formed ? IO_OK : IO_FAILED);
  EXPECT_EQ(device.opens, row.formed ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Names, UsblpName,
    testing::Values(NameRow{{"LowestNumber"}, Prefix, 0, true},
                    NameRow{{"HighestNumber"}, Prefix, 16, true},
                    NameRow{{"NumberTooHigh"}, Prefix, 17, false},
                    NameRow{{"NegativeNumber"}, Prefix, -1, false},
                    NameRow{{"LongestPrefix"}, prefixOf(LongestPath - 1), 0, true},
                    NameRow{{"PrefixTooLong"}, prefixOf(LongestPath), 0, false},
                    NameRow{{"LongestPathWithTwoDigits"}, prefixOf(LongestPath - 2), 10, true},
                    NameRow{{"NoRoomForTheSecondDigit"}, prefixOf(LongestPath - 1), 10, false}),
    support::rowName);

TEST(UsblpOpen, FailsWithoutPrefix) {
  System system;
  USBLPConnector connector(nullptr, 0);
  EXPECT_EQ(connector.open(), 1);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
}

TEST(UsblpOpen, FailsForEachSystemError) {
  for (const int error : {EACCES, EBUSY, ENODEV}) {
    System system;
    system.device("/dev/usb/lp0").openErrno = error;
    USBLPConnector connector(Prefix, 0);
    EXPECT_EQ(connector.open(), 1);
    EXPECT_EQ(connector.getLastError(), IO_FAILED);
    EXPECT_EQ(connector.isReadReady(1000), IO_FAILED);
  }
}

TEST(UsblpOpen, FailsWithoutDevice) {
  System system;
  USBLPConnector connector(Prefix, 0);
  EXPECT_EQ(connector.open(), 1);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
}

TEST(UsblpOpen, FailsWhileTheDeviceIsOpenElsewhere) {
  System system;
  system.device("/dev/usb/lp0");
  USBLPConnector first(Prefix, 0);
  USBLPConnector second(Prefix, 0);
  EXPECT_EQ(first.open(), 0);
  EXPECT_EQ(second.open(), 1);
  EXPECT_EQ(first.close(), 0);
  EXPECT_EQ(second.open(), 0);
}

TEST(UsblpOpen, TreatsDescriptorZeroAsFailure) {
  System system;
  Device& device = system.device("/dev/usb/lp0");
  device.descriptor = 0;
  USBLPConnector connector(Prefix, 0);
  EXPECT_EQ(connector.open(), 1);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
}

TEST_F(OpenUsblp, ClosesOnce) {
  EXPECT_EQ(connector.close(), 0);
  EXPECT_EQ(connector.getLastError(), IO_OK);
  EXPECT_FALSE(device.isOpen);
  EXPECT_EQ(connector.close(), 1);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
  EXPECT_EQ(device.closes, 1);
}

TEST_F(OpenUsblp, ClosesTheDeviceBeforeOpeningItAgain) {
  EXPECT_EQ(connector.open(), 0);
  EXPECT_EQ(device.opens, 2);
  EXPECT_EQ(device.closes, 1);
  EXPECT_EQ(connector.close(), 0);
  EXPECT_EQ(device.closes, 2);
}

TEST_F(OpenUsblp, KeepsTheDescriptorAfterAFailedClose) {
  device.closeErrno = EIO;
  EXPECT_EQ(connector.close(), 1);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
  EXPECT_EQ(connector.isWriteReady(0), IO_WRITE_READY);
  device.closeErrno = 0;
  EXPECT_EQ(connector.close(), 0);
}

TEST_F(OpenUsblp, ClosesUnderBothLocksAndReleasesThemInReverseOrder) {
  std::string locks;
  {
    const support::MutexJournal journal;
    connector.write(buffer.data(), 1);
    connector.read(buffer.data(), 1);
    connector.close();
    locks = journal.text();
  }
  EXPECT_EQ(locks, "+A -A +B -B +A +B -B -A");
}

TEST(UsblpDestructor, ClosesAnOpenDevice) {
  System system;
  const Device& device = system.device("/dev/usb/lp0");
  {
    USBLPConnector connector(Prefix, 0);
    connector.open();
  }
  EXPECT_EQ(device.closes, 1);
}
