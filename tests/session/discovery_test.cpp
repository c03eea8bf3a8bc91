#include "session/discovery.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "testing/open_descriptors.h"
#include "testing/rows.h"
#include "testing/sysfs_tree.h"
#include "testing/virtual_system.h"

namespace {

using session::Printer;
using State = session::Printer::State;

class Discovery : public testing::Test {
 protected:
  std::vector<Printer> printers() const { return session::findPrinters(tree.machine()); }

  std::vector<std::string> devices() const {
    std::vector<std::string> result;
    for (const Printer& printer : printers()) {
      result.push_back(printer.device);
    }
    return result;
  }

  /// Returns the only printer.
  Printer printer() const {
    const std::vector<Printer> found = printers();
    EXPECT_EQ(found.size(), 1U);
    return found.empty() ? Printer() : found.front();
  }

  /// Adds a printer without a driver at 1:5.
  void addFreePrinter() const {
    tree.addDevice("1-2", {.bus = "1",
                           .number = "5",
                           .serial = "X12",
                           .manufacturer = "Acme Inc.",
                           .product = "L100 series"});
    tree.addInterface("1-2:1.0", {});
  }

  support::SysfsTree tree;
  virtual_system::System system;
};

using Devices = std::vector<std::string>;

// --- What is a printer --------------------------------------------------------------------------

TEST_F(Discovery, FindsNothingWithoutUsb) {
  std::filesystem::remove_all(tree.machine().sysfs);
  EXPECT_EQ(devices(), Devices());
}

TEST_F(Discovery, FindsNothingWithoutDevices) {
  EXPECT_EQ(devices(), Devices());
}

TEST_F(Discovery, IgnoresHubsAndKeyboards) {
  tree.addDevice("usb1", {.bus = "1", .number = "1"});
  tree.addInterface("1-0:1.0", {.interfaceClass = "09", .driver = "hub"});
  tree.addDevice("1-1", {.bus = "1", .number = "2"});
  tree.addInterface("1-1:1.0", {.interfaceClass = "09", .driver = "hub"});
  tree.addDevice("1-1.4", {.bus = "1", .number = "3", .product = "Keyboard"});
  tree.addInterface("1-1.4:1.0", {.interfaceClass = "03", .driver = "usbhid"});
  tree.addDevice("1-1.3", {.bus = "1", .number = "4", .product = "L100"});
  tree.addInterface("1-1.3:1.0", {});
  EXPECT_EQ(devices(), Devices{"1:4"});
}

TEST_F(Discovery, DescribesAPrinterOnUsblp) {
  tree.addDevice("1-2", {.bus = "1",
                         .number = "5",
                         .serial = "X12",
                         .manufacturer = "Acme Inc.",
                         .product = "L100 series"});
  tree.addInterface(
      "1-2:1.0",
      {.driver = "usblp", .usblp = "usbmisc/lp3", .deviceId = "MFG:Acme;MDL:L100;SN:other;"});
  const Printer found = printer();
  EXPECT_EQ(found.device, "/dev/usb/lp3");
  EXPECT_EQ(found.node, tree.node("usb/lp3"));
  EXPECT_EQ(found.address, "1:5");
  EXPECT_EQ(found.port, "1-2");
  EXPECT_EQ(found.serial, "X12");
  EXPECT_EQ(found.make, "Acme");
  EXPECT_EQ(found.model, "L100");
}

TEST_F(Discovery, FindsTheNodesOfOldKernels) {
  tree.addDevice("1-2", {.bus = "1", .number = "5"});
  tree.addInterface("1-2:1.0", {.driver = "usblp", .usblp = "usb/lp3"});
  tree.addDevice("1-3", {.bus = "1", .number = "6"});
  tree.addInterface("1-3:1.0", {.driver = "usblp", .usblp = "usb:lp4"});
  EXPECT_EQ(devices(), (Devices{"/dev/usb/lp3", "/dev/usb/lp4"}));
}

TEST_F(Discovery, DescribesAPrinterWithoutADriver) {
  addFreePrinter();
  const Printer found = printer();
  EXPECT_EQ(found.device, "1:5");
  EXPECT_EQ(found.node, tree.node("bus/usb/001/005"));
  EXPECT_EQ(found.address, "1:5");
  EXPECT_EQ(found.serial, "X12");
  EXPECT_EQ(found.make, "Acme Inc.");
  EXPECT_EQ(found.model, "L100 series");
}

TEST_F(Discovery, LeavesOutWhatAPrinterDoesNotReport) {
  tree.addDevice("1-2", {.bus = "1", .number = "5", .serial = " ", .product = "\x1B\n"});
  tree.addInterface("1-2:1.0", {.driver = "usblp", .usblp = "usbmisc/lp0", .deviceId = ""});
  const Printer found = printer();
  EXPECT_EQ(found.serial, std::nullopt);
  EXPECT_EQ(found.make, std::nullopt);
  EXPECT_EQ(found.model, std::nullopt);
}

TEST_F(Discovery, CompletesTheDeviceIdFromTheUsbTexts) {
  tree.addDevice(
      "1-2", {.bus = "1", .number = "5", .manufacturer = "Acme Inc.", .product = "L100 series"});
  tree.addInterface("1-2:1.0",
                    {.driver = "usblp", .usblp = "usbmisc/lp0", .deviceId = "MDL:L100;SN:X12;"});
  const Printer found = printer();
  EXPECT_EQ(found.make, "Acme Inc.");
  EXPECT_EQ(found.model, "L100");
  EXPECT_EQ(found.serial, "X12");
}

TEST_F(Discovery, DropsControlBytesAndKeepsAllOthers) {
  tree.addDevice("1-2", {.bus = "1", .number = "5", .serial = "  X\x1B[2J\t\x7F\xC3\x84 \"1 "});
  tree.addInterface("1-2:1.0", {});
  EXPECT_EQ(printer().serial, "X[2J\xC3\x84 \"1");
}

TEST_F(Discovery, ReadsAtMostFourKibibytesOfAFile) {
  addFreePrinter();
  tree.write("1-2", "serial", std::string(1'000'000, 'x'));
  EXPECT_EQ(printer().serial, std::string(4096, 'x'));
}

TEST_F(Discovery, OrdersPrintersByBusAndDeviceNumber) {
  const auto add = [this](const std::string& name, const char* bus, const char* number) {
    tree.addDevice(name, {.bus = bus, .number = number});
    tree.addInterface(name + ":1.0", {});
  };
  add("1-1", "1", "10");
  add("1-2", "1", "9");
  add("10-1", "10", "2");
  add("2-1", "2", "3");
  EXPECT_EQ(devices(), (Devices{"1:9", "1:10", "2:3", "10:2"}));
}

// --- Devices with several interfaces ------------------------------------------------------------

TEST_F(Discovery, FindsThePrinterOfACompositeDevice) {
  tree.addDevice("1-2", {.bus = "1", .number = "5"});
  tree.addInterface("1-2:1.0", {.interfaceClass = "ff"});
  tree.addInterface("1-2:1.1", {.driver = "usblp", .usblp = "usbmisc/lp0"});
  tree.addInterface("1-2:1.2", {.interfaceClass = "08", .driver = "usb-storage"});
  EXPECT_EQ(devices(), Devices{"/dev/usb/lp0"});
}

TEST_F(Discovery, CountsADeviceWithSeveralPrinterInterfacesOnce) {
  tree.addDevice("1-2", {.bus = "1", .number = "5"});
  tree.addInterface("1-2:1.0", {.driver = "usbfs"});
  tree.addInterface("1-2:1.1", {});
  tree.addInterface("1-2:1.2", {.driver = "usblp", .usblp = "usbmisc/lp2"});
  tree.addInterface("1-2:1.3", {.driver = "usblp", .usblp = "usbmisc/lp1"});
  tree.addInterface("1-2:1.4", {.driver = "usblp", .usblp = "usbmisc/lp3"});
  EXPECT_EQ(devices(), Devices{"/dev/usb/lp1"});
}

TEST_F(Discovery, IsReadyWhileOneInterfaceIsFree) {
  tree.addDevice("1-2", {.bus = "1", .number = "5"});
  tree.addInterface("1-2:1.0", {.driver = "usbfs"});
  tree.addInterface("1-2:1.1", {});
  tree.addInterface("1-2:1.2", {.driver = "usbfs"});
  EXPECT_EQ(printer().state, State::Ready);
}

// --- Files that are missing or wrong ------------------------------------------------------------

struct NumberRow : support::Row {
  std::optional<std::string> bus;
  std::optional<std::string> number;
};

class DiscoveryNumbers : public Discovery, public testing::WithParamInterface<NumberRow> {};

TEST_P(DiscoveryNumbers, SkipsADeviceWithout) {
  tree.addDevice("1-2", {.bus = GetParam().bus, .number = GetParam().number});
  tree.addInterface("1-2:1.0", {.driver = "usblp", .usblp = "usbmisc/lp0"});
  tree.addUsblpPrinter(1, "X12", "");
  EXPECT_EQ(devices(), Devices{"/dev/usb/lp1"});
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DiscoveryNumbers,
    testing::Values(NumberRow{{"NoBus"}, {}, "5"}, NumberRow{{"NoNumber"}, "1", {}},
                    NumberRow{{"EmptyBus"}, "", "5"}, NumberRow{{"EmptyNumber"}, "1", ""},
                    NumberRow{{"Word"}, "1", "five"}, NumberRow{{"Negative"}, "-1", "5"},
                    NumberRow{{"Rest"}, "1", "5x"}, NumberRow{{"Large"}, "1", "1234567890"},
                    NumberRow{{"Huge"}, std::string(100'000, '1'), "5"}),
    support::rowName);

TEST_F(Discovery, SkipsDevicesThatAreGone) {
  addFreePrinter();
  tree.addUsblpPrinter(3, "X13", "");
  tree.remove("1-2");
  EXPECT_EQ(devices(), Devices{"/dev/usb/lp3"});
}

TEST_F(Discovery, SkipsAnInterfaceWithoutAClass) {
  tree.addDevice("1-2", {.bus = "1", .number = "5"});
  tree.addInterface("1-2:1.0", {.interfaceClass = {}});
  tree.addInterface("1-2:1.1", {.interfaceClass = "7"});
  tree.addInterface("1-2:1.2", {.interfaceClass = ""});
  EXPECT_EQ(devices(), Devices());
}

TEST_F(Discovery, SkipsAnInterfaceWithoutADevice) {
  tree.addInterface("1-2:1.0", {});
  tree.addInterface(":1.0", {});
  EXPECT_EQ(devices(), Devices());
}

TEST_F(Discovery, ToleratesFoldersAndPipesInPlaceOfFiles) {
  tree.addDevice("1-2", {.bus = "1", .number = "5", .product = "L100"});
  tree.addInterface("1-2:1.0", {});
  std::filesystem::create_directory(tree.file("1-2", "serial"));
  ASSERT_EQ(::mkfifo(tree.file("1-2", "manufacturer").c_str(), 0600), 0);
  const Printer found = printer();
  EXPECT_EQ(found.serial, std::nullopt);
  EXPECT_EQ(found.make, std::nullopt);
  EXPECT_EQ(found.model, "L100");
}

TEST_F(Discovery, IgnoresUsblpNamesWithoutANumber) {
  for (const char* name : {"usbmisc/lp", "usbmisc/lpx", "usbmisc/lp1x", "usbmisc/x1"}) {
    tree.addDevice("1-2", {.bus = "1", .number = "5"});
    tree.addInterface("1-2:1.0", {.usblp = name});
    EXPECT_EQ(devices(), Devices{"1:5"}) << name;
    std::filesystem::remove_all(tree.machine().sysfs + "/bus/usb/devices/1-2");
    std::filesystem::remove_all(tree.machine().sysfs + "/bus/usb/devices/1-2:1.0");
    tree.remove("1-2");
  }
}

// --- The state ----------------------------------------------------------------------------------

struct StateRow : support::Row {
  int error;
  State state;
};

class DiscoveryState : public Discovery, public testing::WithParamInterface<StateRow> {};

TEST_P(DiscoveryState, OnUsblpComesFromOpeningTheNode) {
  tree.addUsblpPrinter(0, "X12", "");
  system.device(tree.node("usb/lp0")).openErrno = GetParam().error;
  EXPECT_EQ(printer().state, GetParam().state);
}

TEST_P(DiscoveryState, WithoutADriverComesFromOpeningTheNode) {
  addFreePrinter();
  system.device(tree.node("bus/usb/001/005")).openErrno = GetParam().error;
  EXPECT_EQ(printer().state, GetParam().state);
}

INSTANTIATE_TEST_SUITE_P(Errors, DiscoveryState,
                         testing::Values(StateRow{{"None"}, 0, State::Ready},
                                         StateRow{{"Eacces"}, EACCES, State::NoPermission},
                                         StateRow{{"Eperm"}, EPERM, State::NoPermission},
                                         StateRow{{"Ebusy"}, EBUSY, State::Busy},
                                         StateRow{{"Enoent"}, ENOENT, State::Ready},
                                         StateRow{{"Enodev"}, ENODEV, State::Ready},
                                         StateRow{{"Eio"}, EIO, State::Ready}),
                         support::rowName);

TEST_F(Discovery, OpensTheNodeOnceWithoutWaitingAndClosesIt) {
  tree.addUsblpPrinter(0, "X12", "");
  auto& device = system.device(tree.node("usb/lp0"));
  EXPECT_EQ(printer().state, State::Ready);
  EXPECT_EQ(device.opens, 1);
  EXPECT_EQ(device.openFlags, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  EXPECT_FALSE(device.isOpen);
  EXPECT_EQ(device.reads, 0);
}

TEST_F(Discovery, OpensNothingWithoutATestOfTheState) {
  tree.addUsblpPrinter(5, "X12", "");
  auto& device = system.device(tree.node("usb/lp5"));
  device.openErrno = EBUSY;
  const auto found = session::findPrinters(tree.machine(), session::StateTest::None);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found.front().state, State::Ready);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(printers().front().state, State::Busy);
  EXPECT_EQ(device.opens, 1);
}

TEST_F(Discovery, IsBusyWhenAProcessHasClaimedTheInterface) {
  for (const char* driver : {"usbfs", "other"}) {
    tree.addDevice("1-2", {.bus = "1", .number = "5"});
    tree.addInterface("1-2:1.0", {.driver = driver});
    auto& device = system.device(tree.node("bus/usb/001/005"));
    EXPECT_EQ(printer().state, State::Busy) << driver;
    EXPECT_EQ(device.opens, 0);
    std::filesystem::remove_all(tree.machine().sysfs + "/bus/usb/devices/1-2");
    std::filesystem::remove_all(tree.machine().sysfs + "/bus/usb/devices/1-2:1.0");
    tree.remove("1-2");
  }
}

TEST_F(Discovery, TakesUsblpNodesFromTheUsualFolder) {
  tree.addUsblpPrinter(0, "X12", "");
  system.device("/dev/usb/lp0").openErrno = EBUSY;
  const auto found = session::findPrinters({.sysfs = tree.machine().sysfs});
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].node, "/dev/usb/lp0");
  EXPECT_EQ(found[0].state, State::Busy);
}

TEST_F(Discovery, LeavesNoDescriptorOpen) {
  tree.addUsblpPrinter(1, "X12", "MFG:Acme;");
  tree.addNode("usb/lp1");
  const long before = support::openDescriptors();
  EXPECT_EQ(printers().size(), 1U);
  EXPECT_EQ(support::openDescriptors(), before);
}

}  // namespace
