#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "session/discovery.h"
#include "testing/rows.h"
#include "testing/sysfs_tree.h"
#include "testing/virtual_system.h"

namespace {

using session::Choice;
using session::Printer;
using Problem = session::Choice::Problem;
using Devices = std::vector<std::string>;

Devices devicesOf(const std::vector<Printer>& printers) {
  Devices result;
  for (const Printer& printer : printers) {
    result.push_back(printer.device);
  }
  return result;
}

/// A machine with two printers on usblp and one without a driver.
class ThreePrinters : public testing::Test {
 protected:
  ThreePrinters() {
    tree.addUsblpPrinter(1, "X12", "MFG:Acme;MDL:L100;");
    tree.addUsblpPrinter(2, "x12", "MFG:Acme;MDL:L200;");
    tree.addDevice("1-3", {.bus = "1", .number = "15", .serial = "L100", .product = "P[1]"});
    tree.addInterface("1-3:1.0", {});
  }

  Choice choose(const std::string& wanted) const {
    return session::choosePrinter(wanted, tree.machine());
  }

  void expectChosen(const std::string& wanted, const std::string& device) const {
    const Choice choice = choose(wanted);
    EXPECT_EQ(choice.problem, Problem::None) << wanted;
    EXPECT_EQ(choice.printer.device, device) << wanted;
    EXPECT_EQ(devicesOf(choice.candidates), Devices()) << wanted;
  }

  void expectProblem(const std::string& wanted, Problem problem, const Devices& candidates) const {
    const Choice choice = choose(wanted);
    EXPECT_EQ(choice.problem, problem) << wanted;
    EXPECT_EQ(choice.printer.device, "") << wanted;
    EXPECT_EQ(devicesOf(choice.candidates), candidates) << wanted;
  }

  const Devices all{"/dev/usb/lp1", "/dev/usb/lp2", "1:15"};
  support::SysfsTree tree;
  virtual_system::System system;
};

TEST_F(ThreePrinters, AreFoundByPath) {
  expectChosen("/dev/usb/lp2", "/dev/usb/lp2");
  EXPECT_EQ(choose("/dev/usb/lp2").printer.serial, "x12");
  expectChosen(tree.node("usb/lp2"), "/dev/usb/lp2");
  expectChosen(tree.node("bus/usb/001/015"), "1:15");
}

TEST_F(ThreePrinters, AreNotNeededForAPath) {
  expectChosen("/dev/usb/lp0", "/dev/usb/lp0");
  const Printer printer = choose("/dev/usb/lp0").printer;
  EXPECT_EQ(printer.node, "/dev/usb/lp0");
  EXPECT_EQ(printer.address, std::nullopt);
  EXPECT_EQ(printer.serial, std::nullopt);
}

TEST_F(ThreePrinters, DoNotFitAnotherPath) {
  for (const char* path : {"/dev/lp0", "/dev/usblp0", "/dev/usb/lp", "/dev/usb/lp0x", "/tmp/lp0",
                           "/dev/usb/lp-1", "/"}) {
    expectProblem(path, Problem::NoMatch, all);
  }
}

TEST_F(ThreePrinters, AreFoundByAddress) {
  expectChosen("1:15", "1:15");
  expectChosen("001:015", "1:15");
  expectChosen("1:2", "/dev/usb/lp2");
  expectProblem("1:5", Problem::NoMatch, all);
  for (const char* half : {"1:", ":15", ":", "1:x", "x:15", "1:15:"}) {
    expectProblem(half, Problem::NoMatch, all);
  }
}

TEST_F(ThreePrinters, AreFoundByTheExactSerialNumber) {
  expectChosen("X12", "/dev/usb/lp1");
  expectChosen("x12", "/dev/usb/lp2");
  expectProblem("X1", Problem::NoMatch, all);
}

TEST_F(ThreePrinters, AreFoundBySerialNumberBeforeName) {
  expectChosen("L100", "1:15");
  expectChosen("l100", "/dev/usb/lp1");
}

TEST_F(ThreePrinters, AreFoundByPartOfMakeAndModelInAnyCase) {
  expectChosen("ME l2", "/dev/usb/lp2");
  expectChosen("p[1]", "1:15");
  expectProblem("acme l300", Problem::NoMatch, all);
  expectProblem("aCMe", Problem::Several, {"/dev/usb/lp1", "/dev/usb/lp2"});
}

TEST_F(ThreePrinters, AreSeveralIfNoneIsNamed) {
  expectProblem("", Problem::Several, all);
}

TEST_F(ThreePrinters, AreSeveralIfTheirSerialNumbersAreEqual) {
  tree.addUsblpPrinter(4, "X12", "");
  expectProblem("X12", Problem::Several, {"/dev/usb/lp1", "/dev/usb/lp4"});
}

class OneMachine : public testing::Test {
 protected:
  std::optional<Printer> find(const Printer& printer, bool hadTwin = false) const {
    return session::findAgain(printer, hadTwin, tree.machine());
  }

  support::SysfsTree tree;
  virtual_system::System system;
};

TEST_F(OneMachine, HasNoPrinterToChoose) {
  EXPECT_EQ(session::choosePrinter("", tree.machine()).problem, Problem::NoPrinters);
  EXPECT_EQ(session::choosePrinter("X12", tree.machine()).problem, Problem::NoMatch);
}

TEST_F(OneMachine, HasOnePrinterThatNeedsNoName) {
  tree.addUsblpPrinter(3, "X12", "");
  const Choice choice = session::choosePrinter("", tree.machine());
  EXPECT_EQ(choice.problem, Problem::None);
  EXPECT_EQ(choice.printer.device, "/dev/usb/lp3");
}

TEST_F(OneMachine, FindsAPrinterAgainBySerialNumber) {
  tree.addUsblpPrinter(1, "X11", "");
  tree.addUsblpPrinter(7, "X12", "");
  const auto found = find({.device = "1:1",
                           .node = tree.node("usb/lp1"),
                           .address = {},
                           .serial = "X12",
                           .make = {},
                           .model = {}});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->device, "/dev/usb/lp7");
  EXPECT_EQ(found->address, "1:7");
}

TEST_F(OneMachine, DoesNotTakeAnotherPrinterForTheOneThatIsGone) {
  tree.addUsblpPrinter(1, "X11", "");
  EXPECT_FALSE(find({.device = "/dev/usb/lp1",
                     .node = tree.addNode("usb/lp1"),
                     .address = {},
                     .serial = "X12",
                     .make = {},
                     .model = {}}));
}

/// The printers 1 and 2 have the same serial number.
class Twins : public OneMachine {
 protected:
  Twins() {
    tree.addUsblpPrinter(1, "X", "");
    tree.addUsblpPrinter(2, "X", "");
    first = session::findPrinters(tree.machine()).at(0);
    second = session::findPrinters(tree.machine()).at(1);
  }

  Printer first;
  Printer second;
};

TEST_F(Twins, AreTwinsWhileBothAreThere) {
  EXPECT_TRUE(session::hasTwin(first, tree.machine()));
  EXPECT_TRUE(session::hasTwin(second, tree.machine()));
  tree.remove("1-1");
  EXPECT_FALSE(session::hasTwin(second, tree.machine()));
}

TEST_F(Twins, AreFoundAtTheirAddresses) {
  for (const bool hadTwin : {false, true}) {
    EXPECT_EQ(find(first, hadTwin).value().device, "/dev/usb/lp1");
    EXPECT_EQ(find(second, hadTwin).value().device, "/dev/usb/lp2");
  }
}

TEST_F(Twins, AreFoundAtTheirPortsIfBothHaveNewAddresses) {
  tree.write("1-1", "devnum", "9");
  tree.write("1-2", "devnum", "8");
  for (const bool hadTwin : {false, true}) {
    EXPECT_EQ(find(first, hadTwin).value().address, "1:9");
    EXPECT_EQ(find(second, hadTwin).value().address, "1:8");
  }
}

TEST_F(Twins, AreNotTakenForEachOther) {
  tree.remove("1-2");
  EXPECT_FALSE(find(second, true));
}

TEST_F(OneMachine, FindsAPrinterAtAnotherPortByItsSerialNumber) {
  tree.addUsblpPrinter(7, "X12", "");
  const auto found = find({.device = "/dev/usb/lp1",
                           .node = tree.node("usb/lp1"),
                           .address = "1:1",
                           .port = "1-1",
                           .serial = "X12"});
  ASSERT_TRUE(found);
  EXPECT_EQ(found->device, "/dev/usb/lp7");
}

TEST_F(OneMachine, HasNoTwinOfAPrinterWithoutASerialNumber) {
  tree.addUsblpPrinter(1, "", "");
  tree.addUsblpPrinter(2, "", "");
  EXPECT_FALSE(session::hasTwin(session::findPrinters(tree.machine()).at(0), tree.machine()));
}

TEST_F(OneMachine, FindsAPrinterWithoutSerialNumberAtItsPort) {
  tree.addUsblpPrinter(1, "", "");
  const Printer printer = session::findPrinters(tree.machine()).at(0);
  tree.write("1-1", "devnum", "9");
  EXPECT_EQ(find(printer).value().address, "1:9");
  tree.write("1-1", "serial", "X12");
  EXPECT_FALSE(find(printer));
}

TEST_F(OneMachine, DoesNotTakeAPrinterAtAnotherPortForOneWithoutSerialNumber) {
  tree.addUsblpPrinter(1, "", "");
  const Printer printer = session::findPrinters(tree.machine()).at(0);
  tree.remove("1-1");
  tree.addDevice("1-2", {.bus = "1", .number = "9"});
  tree.addInterface("1-2:1.0", {.driver = "usblp", .usblp = "usbmisc/lp1"});
  tree.addNode("usb/lp1");
  EXPECT_FALSE(find(printer));
}

TEST_F(OneMachine, FindsAPrinterWithOnlyAPathAtItsDevice) {
  tree.addUsblpPrinter(1, "X11", "");
  tree.addUsblpPrinter(2, "", "MFG:Acme;");
  tree.addUsblpPrinter(0, "", "MFG:Other;");
  Printer printer;
  printer.device = "/dev/usb/lp2";
  printer.node = "/nowhere";
  const auto found = find(printer);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->make, "Acme");
  EXPECT_EQ(found->node, tree.node("usb/lp2"));
}

TEST_F(OneMachine, FindsAPrinterOfUnknownOriginWhileItsNodeExists) {
  Printer printer;
  printer.device = "/dev/usb/lp9";
  printer.node = tree.node("usb/lp9");
  EXPECT_FALSE(find(printer));
  tree.addNode("usb/lp9");
  const auto found = find(printer);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->device, "/dev/usb/lp9");
}

TEST_F(OneMachine, LooksForTheNodeWithoutReachingTheDriver) {
  Printer printer;
  printer.device = printer.node = "/dev/usb/lp9";
  auto& device = system.device("/dev/usb/lp9");
  device.openErrno = EBUSY;
  EXPECT_TRUE(find(printer));
  EXPECT_EQ(device.openFlags, O_PATH | O_CLOEXEC);
  device.openErrno = ENODEV;
  EXPECT_FALSE(find(printer));
}

}  // namespace
