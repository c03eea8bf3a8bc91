#include "session/session.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "session/discovery.h"
#include "testing/answering_printer.h"
#include "testing/packets.h"
#include "testing/sysfs_tree.h"

namespace {

using session::Profile;
using session::Report;
using session::Result;
using session::Security;
using session::Session;
using session::Step;
using support::Bytes;
using virtual_system::Second;

/// A fixture for sessions with an emulated printer.
class SessionTest : public support::AnsweringPrinter {
 protected:
  SessionTest() { plugIn({}); }

  Session makeSession() {
    return Session({.device = "/dev/usb/lp0", .node = "/dev/usb/lp0"},
                   {.onStep = [this](Step step) { steps.push_back(step); },
                    .isInterrupted =
                        [this] {
                          return system.now() >= interruptedAt;
                        }});
  }

  Report set(Profile profile, Session::SetOptions options = {}) {
    return makeSession().set(profile, options);
  }

  static Profile wpaProfile() {
    Profile profile;
    profile.ssid = "home";
    profile.security = Security::Wpa;
    profile.secret = session::Secret("long enough");
    return profile;
  }

  static Profile enterpriseProfile() {
    Profile profile;
    profile.ssid = "office";
    profile.security = Security::Enterprise;
    profile.user = "printer";
    profile.eapMethods = {"peap"};
    profile.secret = session::Secret("secret");
    return profile;
  }

  /// Returns the stored settings in words.
  std::vector<std::string> stored() const { return printer->adapter.describe(true); }
  bool holds(const std::string& line) const {
    const auto all = stored();
    return std::ranges::count(all, line) == 1;
  }

  static constexpr virtual_system::Microseconds Never = 1'000'000 * Second;

  virtual_system::Microseconds interruptedAt = Never;
  std::vector<Step> steps;
};

// --- status -------------------------------------------------------------------------------------

TEST_F(SessionTest, StatusReportsWhatTheAdapterAnswers) {
  plugIn({.ssid = "home"});
  const Report report = makeSession().status();
  EXPECT_EQ(report.result, Result::Ok);
  EXPECT_EQ(report.state.ssid, "home");
  EXPECT_EQ(report.state.address, (npa::Address{192, 168, 1, 20}));
  EXPECT_EQ(report.state.troubleCode, 0);
  EXPECT_EQ(report.state.authentication, 0);
  EXPECT_EQ(steps, (std::vector{Step::Open, Step::ReadStatus}));
}

TEST_F(SessionTest, StatusOfAnAdapterWithoutANetworkHasAnEmptyName) {
  const Report report = makeSession().status();
  EXPECT_EQ(report.result, Result::Ok);
  EXPECT_EQ(report.state.ssid, "");
}

TEST_F(SessionTest, SetWorksForAnAdapterWithoutANetwork) {
  const Report report = set(wpaProfile());
  EXPECT_EQ(report.result, Result::Confirmed);
  EXPECT_EQ(report.ssidBefore, "");
}

TEST_F(SessionTest, StatusReadsEachValueAfterThePauseOfItsExchange) {
  plugIn({.ssid = "home"});
  EXPECT_EQ(makeSession().status().result, Result::Ok);
  // The pauses of the queries for SSID, trouble code, address and authentication status.
  EXPECT_EQ(system.sleeps, (std::vector{2U, 2U, 3U, 2U}));
}

TEST_F(SessionTest, StatusStopsReadingAtTheEndOfAPacket) {
  plugIn({.ssid = "home"});
  EXPECT_EQ(makeSession().status().result, Result::Ok);
  EXPECT_LE(system.now(), 10 * Second);
}

TEST_F(SessionTest, StatusLeavesOutWhatTheAdapterDoesNotHave) {
  plugIn({.addressAcquired = {.afterQueries = 100}, .ssid = "home"});
  const Report report = makeSession().status();
  EXPECT_EQ(report.result, Result::Ok);
  EXPECT_EQ(report.state.address, std::nullopt);
}

TEST_F(SessionTest, StatusReportsATroubleCode) {
  plugIn({.troubleCode = 7, .ssid = "home"});
  EXPECT_EQ(makeSession().status().state.troubleCode, 7);
}

TEST_F(SessionTest, StatusOfASilentAdapterIsNoAnswer) {
  plugIn({.silent = true});
  EXPECT_EQ(makeSession().status().result, Result::NoAnswer);
}

TEST_F(SessionTest, StatusGoesOnBareIfWrappersAreRefused) {
  plugIn({.refuseWrapped = true, .ssid = "home"});
  const Report report = makeSession().status();
  EXPECT_EQ(report.state.ssid, "home");
  EXPECT_EQ(report.state.authentication, 0);
  // Only the first of the four queries is sent twice.
  EXPECT_EQ(device.writes.size(), 5U);
}

TEST_F(SessionTest, StatusOfAMissingPrinterSaysSoAndWaitsForNothing) {
  device.openErrno = ENOENT;
  const Report report = makeSession().status();
  EXPECT_EQ(report.result, Result::NoSuchPrinter);
  EXPECT_EQ(system.sleeps, std::vector<unsigned int>());
}

TEST_F(SessionTest, StatusWithoutPermissionSaysSo) {
  device.openErrno = EACCES;
  EXPECT_EQ(makeSession().status().result, Result::NoPermission);
}

TEST_F(SessionTest, StatusOfABusyPrinterSaysSo) {
  device.openErrno = EBUSY;
  EXPECT_EQ(makeSession().status().result, Result::Busy);
}

// --- set ----------------------------------------------------------------------------------------

TEST_F(SessionTest, SetStoresAndConfirms) {
  plugIn({.ssid = "old"});
  const Report report = set(wpaProfile());
  EXPECT_EQ(report.result, Result::Confirmed);
  EXPECT_EQ(report.ssidBefore, "old");
  EXPECT_EQ(report.state.ssid, "home");
  EXPECT_EQ(report.state.address, (npa::Address{192, 168, 1, 20}));
  EXPECT_TRUE(report.sentSettings);
  EXPECT_EQ(steps, (std::vector{Step::Open, Step::ReadSettings, Step::Store, Step::Confirm}));
  EXPECT_TRUE(holds("pre-shared key = \"long enough\""));
}

TEST_F(SessionTest, SetWithoutWaitingEndsWithTheAcceptedSettings) {
  plugIn({.ssid = "old"});
  EXPECT_EQ(set(wpaProfile(), {.waitSeconds = 0}).result, Result::Stored);
  EXPECT_EQ(steps.back(), Step::Store);
}

TEST_F(SessionTest, SetLeavesAPrinterAloneThatIsInTheNetwork) {
  plugIn({.ssid = "home"});
  const Report report = set(wpaProfile());
  EXPECT_EQ(report.result, Result::Unchanged);
  EXPECT_FALSE(report.sentSettings);
  EXPECT_TRUE(printer->adapter.settings().stored().empty());
}

TEST_F(SessionTest, SetWithForceStoresAllTheSame) {
  plugIn({.ssid = "home"});
  EXPECT_EQ(set(wpaProfile(), {.force = true}).result, Result::Confirmed);
  EXPECT_FALSE(printer->adapter.settings().stored().empty());
}

TEST_F(SessionTest, SetStoresIfThePrinterHasTheNameButNoAddress) {
  plugIn({.addressAcquired = {.afterQueries = 1}, .ssid = "home"});
  EXPECT_EQ(set(wpaProfile()).result, Result::Confirmed);
}

TEST_F(SessionTest, SetClearsTheSecretOnceItIsSent) {
  plugIn({.ssid = "old"});
  Profile profile = wpaProfile();
  EXPECT_EQ(makeSession().set(profile, {.waitSeconds = 0}).result, Result::Stored);
  EXPECT_TRUE(profile.secret.isEmpty());
}

TEST_F(SessionTest, SetSendsBareIfWrappersAreRefused) {
  plugIn({.refuseWrapped = true, .ssid = "old"});
  EXPECT_EQ(set(wpaProfile()).result, Result::Confirmed);
}

TEST_F(SessionTest, SetEndsIfTheAdapterRefuses) {
  plugIn({.settingsResult = 0, .ssid = "old"});
  const Report report = set(wpaProfile());
  EXPECT_EQ(report.result, Result::Refused);
  EXPECT_TRUE(report.sentSettings);
}

TEST_F(SessionTest, SetStoresNothingInAnAdapterThatDoesNotAnswer) {
  plugIn({.silent = true});
  const Report report = set(wpaProfile());
  EXPECT_EQ(report.result, Result::NoAnswer);
  EXPECT_FALSE(report.sentSettings);
  // Two queries for the SSID.
  EXPECT_EQ(device.writes.size(), 2U);
}

TEST_F(SessionTest, SetWaitsForTheAddress) {
  plugIn({.addressAcquired = {.afterTime = std::chrono::seconds(40)}, .ssid = "old"});
  EXPECT_EQ(set(wpaProfile()).result, Result::Confirmed);
  EXPECT_GE(system.now(), 40 * Second);
}

TEST_F(SessionTest, SetEndsStoredIfTheTimeIsUp) {
  plugIn({.troubleCode = 3, .ssid = "old"});
  const Report report = set(wpaProfile(), {.waitSeconds = 30});
  EXPECT_EQ(report.result, Result::Stored);
  EXPECT_EQ(report.state.troubleCode, 3);
  EXPECT_GE(system.now(), 30 * Second);
  EXPECT_LE(system.now(), 60 * Second);
}

TEST_F(SessionTest, SetWaitsAsLongIfTheClockIsSet) {
  for (const std::int64_t shift : {-3600, 3600}) {
    plugIn({.troubleCode = 3, .ssid = "old"});
    const auto answer = device.onWrite;
    device.onWrite = [&, answer, count = 0](const Bytes& request) mutable {
      answer(request);
      // The third request is the first one of the confirmation.
      if (++count == 3) {
        system.clockShift += shift;
      }
    };
    const auto start = system.now();
    EXPECT_EQ(set(wpaProfile(), {.waitSeconds = 30}).result, Result::Stored);
    EXPECT_GE(system.now() - start, 30 * Second);
    EXPECT_LE(system.now() - start, 60 * Second);
  }
}

TEST_F(SessionTest, StatusOfASilentAdapterEndsIfTheClockIsSetBack) {
  plugIn({.silent = true});
  device.readResult = [&] {
    // The last query collects its reply. The requests before it read the SSID (twice), the trouble
    // code and the address.
    if (device.writes.size() == 5 && system.clockShift == 0) {
      system.clockShift = -3600;
    }
    return 0;
  };
  EXPECT_EQ(makeSession().status().result, Result::NoAnswer);
  EXPECT_LT(system.clockShift, 0);
  EXPECT_LE(system.now(), 120 * Second);
}

TEST_F(SessionTest, SetOf8021xSendsOptionsThenNetworkAndConfirmsTheAuthentication) {
  plugIn({.ssid = "old", .authStatus = {2}});
  const Report report = set(enterpriseProfile());
  EXPECT_EQ(report.result, Result::Confirmed);
  EXPECT_EQ(report.state.authentication, 2);
}

TEST_F(SessionTest, SetOf8021xIsNotConfirmedWithoutAuthentication) {
  plugIn({.ssid = "old", .authStatus = {9}});
  const Report report = set(enterpriseProfile(), {.waitSeconds = 20});
  EXPECT_EQ(report.result, Result::Stored);
  EXPECT_EQ(report.state.authentication, 9);
}

TEST_F(SessionTest, SetWaitsForAPrinterThatIsGoneForAWhile) {
  plugIn({.ssid = "old"});
  int opens = 0;
  const auto answer = device.onWrite;
  device.onWrite = [&, answer](const Bytes& request) {
    answer(request);
    // The second write stores the settings. After it the printer is gone.
    if (++opens == 2) {
      device.openErrno = ENODEV;
    }
  };
  const Report report = set(wpaProfile(), {.waitSeconds = 20});
  EXPECT_EQ(report.result, Result::Stored);
  EXPECT_EQ(report.state.ssid, std::nullopt);
  EXPECT_EQ(steps.back(), Step::WaitForPrinter);
}

/// A printer with a serial number, which sysfs shows at /dev/usb/lp0.
class PrinterInSysfs : public SessionTest {
 protected:
  PrinterInSysfs() {
    tree.addDevice("1-1", {.bus = "1", .number = "5", .serial = "A"});
    tree.addInterface("1-1:1.0", {.driver = "usblp", .usblp = "usbmisc/lp0"});
    tree.addNode("usb/lp0");
    plugIn({.ssid = "old"});
  }

  /// Replaces the printer at /dev/usb/lp0 after it has answered `requests` requests. The new one
  /// has the serial number and the address, and is in the network.
  void replaceAfter(int requests, const std::string& serial, const std::string& number) {
    const auto answer = device.onWrite;
    device.onWrite = [=, this, count = 0](const Bytes& request) mutable {
      answer(request);
      if (++count == requests) {
        tree.write("1-1", "serial", serial + "\n");
        tree.write("1-1", "devnum", number + "\n");
        printer = std::make_unique<support::EmulatedPrinter>(emulator::Personality{.ssid = "home"});
      }
    };
  }

  Report setInTree() {
    Profile profile = wpaProfile();
    Session session(session::findPrinters(tree.machine()).at(0),
                    {.onStep =
                         [this](Step step) {
                           steps.push_back(step);
                         }},
                    tree.machine());
    return session.set(profile, {.waitSeconds = 30});
  }

  support::SysfsTree tree;
};

// The first request reads the SSID, and the second one stores the settings.

TEST_F(PrinterInSysfs, IsNotConfirmedByAnotherPrinterAtItsDevice) {
  replaceAfter(2, "B", "6");
  const Report report = setInTree();
  EXPECT_EQ(report.result, Result::Stored);
  EXPECT_EQ(report.state.ssid, std::nullopt);
  EXPECT_EQ(report.printer.serial, "A");
  EXPECT_EQ(report.printer.address, "1:5");
  EXPECT_EQ(device.writes.size(), 2U);
  EXPECT_EQ(steps.back(), Step::WaitForPrinter);
}

TEST_F(PrinterInSysfs, IsNotConfirmedByAnotherPrinterThatGetsItsDeviceDuringTheQueries) {
  replaceAfter(3, "B", "6");
  const Report report = setInTree();
  EXPECT_EQ(report.result, Result::Stored);
  EXPECT_EQ(report.state.ssid, std::nullopt);
  EXPECT_EQ(report.state.address, std::nullopt);
  // SSID, trouble code and address.
  EXPECT_EQ(device.writes.size(), 5U);
}

TEST_F(PrinterInSysfs, IsConfirmedWithItsNewAddressAfterARestart) {
  replaceAfter(2, "A", "7");
  const Report report = setInTree();
  EXPECT_EQ(report.result, Result::Confirmed);
  EXPECT_EQ(report.printer.device, "/dev/usb/lp0");
  EXPECT_EQ(report.printer.address, "1:7");
}

TEST_F(PrinterInSysfs, IsNotConfirmedByATwinThatGetsItsDevice) {
  tree.addDevice("1-2", {.bus = "1", .number = "6", .serial = "A"});
  tree.addInterface("1-2:1.0", {.driver = "usblp", .usblp = "usbmisc/lp1"});
  const auto answer = device.onWrite;
  device.onWrite = [&, answer, count = 0](const Bytes& request) mutable {
    answer(request);
    if (++count == 2) {
      tree.remove("1-1");
      system.device("/dev/usb/lp1").onWrite = answer;
    }
  };
  const Report report = setInTree();
  EXPECT_EQ(report.result, Result::Stored);
  EXPECT_EQ(report.printer.address, "1:5");
}

TEST_F(SessionTest, SetInterruptedBeforeStoringSendsNothing) {
  plugIn({.ssid = "old"});
  interruptedAt = 1 * Second;
  const Report report = set(wpaProfile());
  EXPECT_EQ(report.result, Result::Interrupted);
  EXPECT_FALSE(report.sentSettings);
  EXPECT_TRUE(printer->adapter.settings().stored().empty());
}

TEST_F(SessionTest, SetInterruptedAfterStoringSaysThatSettingsWereSent) {
  plugIn({.addressAcquired = {.afterQueries = 100}, .ssid = "old"});
  interruptedAt = 20 * Second;
  const Report report = set(wpaProfile());
  EXPECT_EQ(report.result, Result::Interrupted);
  EXPECT_TRUE(report.sentSettings);
}

TEST_F(SessionTest, DiscardsBytesOfAnEarlierRequest) {
  plugIn({.ssid = "home"});
  device.reply(packets::IpReply);
  EXPECT_EQ(makeSession().status().state.ssid, "home");
}

// --- reset --------------------------------------------------------------------------------------

TEST_F(SessionTest, ResetSendsTheResetPacket) {
  EXPECT_EQ(makeSession().reset().result, Result::Ok);
  EXPECT_EQ(device.writes, std::vector<Bytes>{packets::wrapped(packets::Reset)});
  EXPECT_EQ(steps, (std::vector{Step::Open, Step::Reset}));
}

TEST_F(SessionTest, ResetOfASilentAdapterIsNoAnswer) {
  plugIn({.silent = true});
  EXPECT_EQ(makeSession().reset().result, Result::NoAnswer);
}

TEST_F(SessionTest, WaitsWithoutPolling) {
  plugIn({.replyDelay = std::chrono::seconds(4), .ssid = "home"});
  EXPECT_EQ(makeSession().status().state.ssid, "home");
  // The session waits once for the header of each reply. The search for old bytes at the start adds
  // short waits.
  EXPECT_LE(device.readSelects, 20);
}

}  // namespace
