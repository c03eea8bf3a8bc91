#include <cerrno>
#include <gtest/gtest.h>
#include <string>

#include "testing/bytes.h"
#include "testing/fake_libusb.h"
#include "testing/output.h"
#include "testing/rows.h"
#include "testing/transport_user.h"
#include "testing/virtual_system.h"

using support::Output;
using support::outputOf;
using support::TransportUser;
using virtual_system::Device;

namespace {

/// A fixture for tests of CT_Open. There is no printer until a test adds one.
class TransportOpen : public testing::Test {
 protected:
  /// Opens `path`. Expects the result and no output.
  void expectOpen(const char* path, int result) {
    int opened = 77;
    EXPECT_EQ(outputOf([&] { opened = transport->CT_Open(path); }), Output());
    EXPECT_EQ(opened, result);
  }

  virtual_system::System system;
  fake_libusb::Library library;
  TransportUser transport;
  unsigned char byte = 0;
};

struct PathRow : support::Row {
  const char* path;
  const char* device;
};

class UsblpPath : public TransportOpen, public testing::WithParamInterface<PathRow> {};
class BadPath : public TransportOpen, public testing::WithParamInterface<PathRow> {};
class LibUsbAddress : public TransportOpen, public testing::WithParamInterface<PathRow> {};

}  // namespace

// --- usblp paths --------------------------------------------------------------------------------

TEST_P(UsblpPath, OpensTheDeviceWithItsNumber) {
  Device& device = system.device(GetParam().device);
  expectOpen(GetParam().path, 0);
  EXPECT_EQ(device.opens, 1);
  EXPECT_TRUE(library.calls.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Paths, UsblpPath,
    testing::Values(PathRow{{"Default"}, "/dev/usb/lp0", "/dev/usb/lp0"},
                    PathRow{{"HighestNumber"}, "/dev/usb/lp16", "/dev/usb/lp16"},
                    PathRow{{"UsblpName"}, "/dev/usb/usblp2", "/dev/usb/lp2"},
                    PathRow{{"UsblpNameTakesPrecedence"}, "/dev/usb/lp1/usblp2", "/dev/usb/lp2"},
                    PathRow{{"FirstUsblpCounts"}, "/dev/usb/usblp3/usblp4", "/dev/usb/lp3"},
                    PathRow{{"FirstLpCounts"}, "/dev/usb/lp5/lp6", "/dev/usb/lp5"},
                    PathRow{{"OtherFolder"}, "/chroot/dev/usb/lp7", "/dev/usb/lp7"},
                    PathRow{{"OtherNameBefore"}, "/dev/usbprinters/lp8", "/dev/usb/lp8"},
                    PathRow{{"TextAfterTheNumber"}, "/dev/usb/lp9x", "/dev/usb/lp9"},
                    PathRow{{"NoDigits"}, "/dev/usb/lp", "/dev/usb/lp0"},
                    PathRow{{"NumberElsewhere"}, "/dev/usb3/lp4", "/dev/usb/lp4"},
                    PathRow{{"ColonIsIgnored"}, "/dev/usb/lp1:2", "/dev/usb/lp1"}),
    support::rowName);

TEST_P(BadPath, OpensNothing) {
  Device& device = system.device("/dev/usb/lp0");
  library.addPrinter("000", "000");
  expectOpen(GetParam().path, -1);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(library.openHandles, 0);
  // There is no connector: a libusb connector would return 0.
  EXPECT_EQ(transport->CT_Write(&byte, 1, 0), -1);
  EXPECT_EQ(transport->CT_Read(&byte, 1), 0);
  EXPECT_EQ(transport->CT_Close(), -1);
  EXPECT_EQ(system.now(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, BadPath,
    testing::Values(PathRow{{"NeitherForm"}, "printer", nullptr}, PathRow{{"Empty"}, "", nullptr},
                    PathRow{{"None"}, nullptr, nullptr},
                    PathRow{{"OnlyFolder"}, "/dev/usb/", nullptr},
                    PathRow{{"NoLpName"}, "/dev/usb/printer0", nullptr},
                    PathRow{{"NumberTooHigh"}, "/dev/usb/lp99", nullptr},
                    PathRow{{"FirstNumberTooHigh"}, "/dev/usb/lp17", nullptr},
                    PathRow{{"NumberOfManyDigits"}, "/dev/usb/lp4294967296", nullptr},
                    PathRow{{"NegativeNumber"}, "/dev/usb/lp-1", nullptr},
                    PathRow{{"BusTooLong"}, "99999999999:1", nullptr},
                    PathRow{{"BusOfTenCharacters"}, "0000000000:0", nullptr},
                    PathRow{{"DeviceOfTenCharacters"}, "0:0000000000", nullptr}),
    support::rowName);

TEST_F(TransportOpen, FailsForEachSystemError) {
  for (const int error : {ENOENT, EACCES, EBUSY}) {
    system.device("/dev/usb/lp0").openErrno = error;
    expectOpen("/dev/usb/lp0", -1);
    EXPECT_EQ(system.device("/dev/usb/lp0").opens, 1) << "error " << error;
    system.device("/dev/usb/lp0").opens = 0;
  }
}

TEST_F(TransportOpen, KeepsAUsblpConnectorThatFailedToOpen) {
  expectOpen("/dev/usb/lp0", -1);
  EXPECT_EQ(transport->CT_Write(&byte, 1, 0), -1);
  EXPECT_EQ(transport->CT_Read(&byte, 1), 0);
  EXPECT_EQ(transport->CT_Close(), -1);
  EXPECT_EQ(system.now(), 0);
  EXPECT_EQ(system.selects, 0);
}

// --- libusb addresses ---------------------------------------------------------------------------

TEST_P(LibUsbAddress, OpensTheDeviceWithBothNumbers) {
  struct usb_device* const wanted = library.addPrinter("002", GetParam().device);
  library.addPrinter("003", GetParam().device);
  library.onOpen = [&](const struct usb_device* device) {
    EXPECT_EQ(device, wanted);
  };
  expectOpen(GetParam().path, 0);
  EXPECT_EQ(library.openHandles, 1);
  EXPECT_EQ(transport->CT_Write(&byte, 1, 0), 1);
  EXPECT_EQ(transport->CT_Close(), 0);
  EXPECT_EQ(library.openHandles, 0);
}

INSTANTIATE_TEST_SUITE_P(Addresses, LibUsbAddress,
                         testing::Values(PathRow{{"Short"}, "2:5", "005"},
                                         PathRow{{"AsListed"}, "002:005", "005"},
                                         PathRow{{"LongestParts"}, "000000002:000000005", "005"},
                                         PathRow{{"SplitAtTheFirstColon"}, "2:5:9", "005"},
                                         PathRow{{"TextAfterTheNumbers"}, "2a:5b", "005"},
                                         PathRow{{"NoDeviceNumberIsZero"}, "2:", "000"},
                                         PathRow{{"OtherFolder"}, "2:/dev/us", "000"}),
                         support::rowName);

TEST_F(TransportOpen, ReadsAMissingBusNumberAsZero) {
  library.addPrinter("000", "000");
  expectOpen(":", 0);
  EXPECT_EQ(library.openHandles, 1);
}

TEST_F(TransportOpen, KeepsALibUsbConnectorThatFailedToOpen) {
  for (const char* const path : {"1:", ":", "2:5"}) {
    expectOpen(path, -1);
    EXPECT_EQ(transport->CT_Write(&byte, 1, 0), 0) << path;
    EXPECT_EQ(transport->CT_Read(&byte, 1), 0) << path;
    EXPECT_EQ(transport->CT_Close(), -1) << path;
  }
  EXPECT_EQ(system.now(), 0);
}

TEST_F(TransportOpen, ClaimsOnlyAPrinterInterface) {
  library.addDevice("002", "005", {{1, {{{8, 0, {}}}, {{7, 1, {}}}}}});
  expectOpen("2:5", 0);
  EXPECT_EQ(library.calls.back(), "usb_claim_interface(1)");
}

// --- A second open ------------------------------------------------------------------------------

TEST_F(TransportOpen, ClosesTheEarlierConnectorFirst) {
  Device& device = system.device("/dev/usb/lp0");
  library.addPrinter("002", "005");
  expectOpen("/dev/usb/lp0", 0);
  expectOpen("/dev/usb/lp0", 0);
  EXPECT_EQ(system.events, (std::vector<std::string>{"open", "close", "open"}));
  expectOpen("2:5", 0);
  EXPECT_FALSE(device.isOpen);
  expectOpen("printer", -1);
  EXPECT_EQ(library.openHandles, 0);
  EXPECT_EQ(transport->CT_Write(&byte, 1, 0), -1);
}
