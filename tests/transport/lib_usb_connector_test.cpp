#include "transport/lib_usb_connector.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/bytes.h"
#include "testing/fake_libusb.h"
#include "testing/mutex_journal.h"
#include "transport/luu.h"

using fake_libusb::Alternate;
using fake_libusb::Configuration;
using fake_libusb::Interface;
using fake_libusb::Library;
using Calls = std::vector<std::string>;

namespace {

constexpr unsigned char PrinterClass = 7;
constexpr unsigned char ScannerClass = 6;

/// A fixture with a connector for printers. The test adds the devices of the bus.
class LibUsb : public testing::Test {
 protected:
  void expectOpened(int bus, int device) {
    EXPECT_EQ(connector.open(bus, device), 0);
    EXPECT_EQ(connector.getLastError(), IO_OK);
    EXPECT_EQ(library.openHandles, 1);
  }

  void expectNotOpened(int bus, int device) {
    EXPECT_EQ(connector.open(bus, device), 1);
    EXPECT_EQ(connector.getLastError(), IO_FAILED);
    EXPECT_EQ(library.openHandles, 0);
  }

  Library library;
  LibUsbConnector connector{PrinterClass};
};

}  // namespace

// --- The device search --------------------------------------------------------------------------

TEST_F(LibUsb, HasItsTypeAndNoStatusAtFirst) {
  EXPECT_EQ(connector.getType(), HC_LOC_LIBUSB);
  EXPECT_EQ(connector.getLastError(), IO_OK);
}

TEST_F(LibUsb, FailsToOpenWithoutAnAddress) {
  library.addPrinter("001", "001");
  EXPECT_EQ(connector.open(), 1);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
  EXPECT_EQ(library.calls, Calls());
}

TEST_F(LibUsb, EnumeratesTheDevicesAndClaimsTheInterface) {
  library.addPrinter("002", "005");
  library.setConfiguration = -EBUSY;  // ignored
  expectOpened(2, 5);
  EXPECT_EQ(library.calls,
            (Calls{"usb_init()", "usb_find_busses()", "usb_find_devices()", "usb_get_busses()",
                   "usb_open()", "usb_set_configuration(1)", "usb_claim_interface(0)"}));
}

TEST_F(LibUsb, OpensTheDeviceWithBothNumbers) {
  library.addPrinter("001", "005");
  library.addPrinter("002", "004");
  struct usb_device* const wanted = library.addPrinter("002", "005");
  library.addPrinter("002", "006");
  library.onOpen = [&](const struct usb_device* device) {
    EXPECT_EQ(device, wanted);
  };
  expectOpened(2, 5);
  EXPECT_EQ(library.count("usb_open()"), 1);
}

TEST_F(LibUsb, ReadsTheNamesAsNumbers) {
  library.addPrinter("2-usb", " 5x");
  expectOpened(2, 5);
}

TEST_F(LibUsb, ClosesTheDeviceBeforeOpeningAnother) {
  library.addPrinter("001", "002");
  library.addPrinter("001", "003");
  expectOpened(1, 2);
  expectOpened(1, 3);
  EXPECT_EQ(library.count("usb_close()"), 1);
}

TEST_F(LibUsb, FindsNothingOnAnEmptySystem) {
  expectNotOpened(2, 5);
}

TEST_F(LibUsb, FindsNothingAtAnotherAddress) {
  library.addPrinter("002", "005");
  expectNotOpened(5, 2);
  expectNotOpened(2, 0);
  EXPECT_EQ(library.count("usb_open()"), 0);
}

TEST_F(LibUsb, SkipsADeviceWithoutConfigurations) {
  library.addDevice("001", "002", {});
  expectNotOpened(1, 2);
  library.addPrinter("001", "002");
  expectOpened(1, 2);
}

TEST_F(LibUsb, SkipsADeviceOfAnotherClass) {
  library.addDevice("001", "002", {{1, {{{ScannerClass, 0, {}}}}}});
  expectNotOpened(1, 2);
  EXPECT_EQ(library.count("usb_open()"), 0);
}

TEST_F(LibUsb, FindsThePrinterInALaterConfigurationInterfaceAndAlternateSetting) {
  const Configuration first = {1, {{{ScannerClass, 0, {}}}}};
  const Configuration second = {
      9, {{{ScannerClass, 1, {}}}, {{ScannerClass, 2, {}}, {PrinterClass, 3, {}}}}};
  library.addDevice("001", "002", {first, second});
  expectOpened(1, 2);
  EXPECT_EQ(library.calls.back(), "usb_claim_interface(3)");
  EXPECT_EQ(library.count("usb_set_configuration(9)"), 1);
  EXPECT_EQ(library.count("usb_open()"), 1);
}

TEST_F(LibUsb, StopsAtTheFirstClaim) {
  const Interface printer0 = {{PrinterClass, 0, {}}};
  const Interface printer1 = {{PrinterClass, 1, {}}};
  library.addDevice("001", "002", {{1, {printer0, printer1}}, {2, {printer0}}});
  library.addPrinter("001", "002");
  expectOpened(1, 2);
  EXPECT_EQ(library.count("usb_open()"), 1);
  EXPECT_EQ(library.calls.back(), "usb_claim_interface(0)");
}

TEST_F(LibUsb, TriesTheNextInterfaceAfterARefusedClaim) {
  const Alternate firstSetting = {PrinterClass, 0, {}};
  const Alternate otherSetting = {PrinterClass, 1, {}};
  const Interface next = {{PrinterClass, 2, {}}};
  const Interface ofNextConfiguration = {{PrinterClass, 3, {}}};
  const Interface ofNextDevice = {{PrinterClass, 4, {}}};
  library.addDevice("001", "002",
                    {{1, {{firstSetting, otherSetting}, next}}, {2, {ofNextConfiguration}}});
  library.addDevice("1x", "002", {{1, {ofNextDevice}}});
  library.claim = [](int interface) {
    return interface == 4 ? 0 : -EBUSY;
  };
  expectOpened(1, 2);
  EXPECT_EQ(
      Calls(library.calls.begin() + 4, library.calls.end()),
      (Calls{"usb_open()", "usb_set_configuration(1)", "usb_claim_interface(0)", "usb_close()",
             "usb_open()", "usb_set_configuration(1)", "usb_claim_interface(2)", "usb_close()",
             "usb_open()", "usb_set_configuration(2)", "usb_claim_interface(3)", "usb_close()",
             "usb_open()", "usb_set_configuration(1)", "usb_claim_interface(4)"}));
}

TEST_F(LibUsb, FailsIfEveryClaimIsRefused) {
  library.addPrinter("001", "002");
  library.claim = [](int) {
    return -EBUSY;
  };
  expectNotOpened(1, 2);
  EXPECT_EQ(library.calls.back(), "usb_close()");
}

TEST_F(LibUsb, FailsIfTheDeviceCannotBeOpened) {
  library.addPrinter("001", "002");
  library.opens = false;
  expectNotOpened(1, 2);
  EXPECT_EQ(library.calls.back(), "usb_open()");
}

TEST_F(LibUsb, TreatsAPositiveClaimResultAsSuccess) {
  library.addPrinter("001", "002");
  library.claim = [](int) {
    return 1;
  };
  expectOpened(1, 2);
}

TEST_F(LibUsb, ClaimsTheGivenInterface) {
  struct usb_device* const device = library.addDevice(
      "001", "002", {{4, {{{PrinterClass, 0, {}}}}}, {5, {{{PrinterClass, 2, {}}}}}});
  EXPECT_TRUE(connector.claim(device, 1, device->config[1].interface[0].altsetting));
  EXPECT_EQ(library.calls,
            (Calls{"usb_open()", "usb_set_configuration(5)", "usb_claim_interface(2)"}));
}

// --- Closing ------------------------------------------------------------------------------------

TEST_F(LibUsb, ReleasesTheClaimedInterfaceAndClosesOnce) {
  library.addDevice("001", "002", {{1, {{{PrinterClass, 3, {}}}}}});
  expectOpened(1, 2);
  library.calls.clear();
  EXPECT_EQ(connector.close(), 0);
  EXPECT_EQ(connector.getLastError(), IO_OK);
  EXPECT_EQ(library.calls, (Calls{"usb_release_interface(3)", "usb_close()"}));
  EXPECT_EQ(connector.close(), 1);
  EXPECT_EQ(connector.getLastError(), IO_FAILED);
  EXPECT_EQ(library.calls.size(), 2U);
}

TEST_F(LibUsb, ClosesUnderBothLocksAndReleasesThemInReverseOrder) {
  library.addPrinter("001", "002");
  expectOpened(1, 2);
  unsigned char byte = 0;
  std::string locks;
  {
    const support::MutexJournal journal;
    connector.write(&byte, 1);
    connector.isReadReady(0);
    connector.close();
    locks = journal.text();
  }
  EXPECT_EQ(locks, "+A -A +B -B +A +B -B -A");
}

TEST(LibUsbDestructor, ClosesAnOpenDevice) {
  Library library;
  library.addPrinter("001", "002");
  {
    LibUsbConnector connector(PrinterClass);
    connector.open(1, 2);
  }
  EXPECT_EQ(library.openHandles, 0);
  EXPECT_EQ(library.count("usb_release_interface(0)"), 1);
}

TEST(LibUsbDestructor, DoesNothingForAClosedDevice) {
  Library library;
  { const LibUsbConnector connector(PrinterClass); }
  EXPECT_EQ(library.calls, Calls());
}
