#include "cli/zvk_setup.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "testing/basic_batch.h"
#include "testing/command_line.h"
#include "testing/fake_libusb.h"
#include "testing/files.h"
#include "testing/object_store.h"
#include "testing/output.h"
#include "testing/packets.h"
#include "testing/rows.h"
#include "testing/standard_input.h"
#include "testing/usblp_printer.h"

using support::Bytes;
using support::bytes;
using support::CommandLine;
using support::HelpText;
using support::Output;
using support::outputOf;
using support::TransportReleased;
using virtual_system::Second;

namespace {

/// A fixture for tests of a whole run, with a scripted printer.
class Setup : public support::UsblpPrinter {
 protected:
  /// Runs the program with these arguments and returns its result. Sets `output` to what the
  /// program printed.
  int run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "/usr/bin/zvkconfig");
    CommandLine line(std::move(arguments));
    int result = -77;
    output = outputOf([&] {
      const zvkSetup setup(line.count(), line.vector());
      result = setup.getReturnCode();
    });
    return result;
  }

  Output output;
};

const Bytes Accepted = bytes("A5 00 03 50 E0 01");
const Bytes Refused = bytes("A5 00 03 D4 E0 01");

// The packet for default mode, security and channel, and the SSID "x".
const Bytes& BarePacket = basic_batch::SsidX;
const Bytes WrappedPacket = packets::wrapped(BarePacket);

/// Returns the log lines of one attempt of -c with the SSID "x" that ends with `result`.
std::string attempt(int result) {
  return basic_batch::attemptLines({.ssid = "x"}, result);
}

// The packet of -ca for an open network with default mode and channel, and the SSID "x".
const Bytes BareOpen = bytes(
    "A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 00 "
    "28 05 00 00 04 00 00 00 06 28 08 00 00 02 78 00");
const Bytes WrappedOpen = packets::wrapped(BareOpen);

}  // namespace

// --- Help ---------------------------------------------------------------------------------------

TEST_F(Setup, PrintsTheHelpAfterCreatingTheGenerator) {
  EXPECT_EQ(run({"-h"}), 0);
  EXPECT_EQ(output, (Output{HelpText, TransportReleased}));
  EXPECT_EQ(device.opens, 0);
}

TEST_F(Setup, PrintsTheHelpAndIgnoresFurtherArguments) {
  EXPECT_EQ(run({"-h", "--ssid=x", "/dev/usb/lp1", "-c"}), 0);
  EXPECT_EQ(output, (Output{HelpText, TransportReleased}));
}

TEST(ShowHelp, PrintsOnlyTheHelp) {
  int result = -77;
  EXPECT_EQ(outputOf([&] { result = zvkSetup::showHelp(); }), (Output{HelpText, ""}));
  EXPECT_EQ(result, 0);
}

// --- Missing arguments --------------------------------------------------------------------------

TEST_F(Setup, ThrowsWithoutACommand) {
  CommandLine line({"zvkconfig"});
  EXPECT_THROW(zvkSetup(line.count(), line.vector()), std::out_of_range);
  EXPECT_THROW(zvkSetup(0, line.vector()), std::out_of_range);
}

TEST_F(Setup, ThrowsIfAConfigurationHasNoSecondArgument) {
  CommandLine line({"zvkconfig", "-c"});
  EXPECT_THROW(zvkSetup(line.count(), line.vector()), std::out_of_range);
  EXPECT_EQ(device.opens, 0);
}

TEST_F(Setup, NeedsNoSecondArgumentForHelp) {
  EXPECT_EQ(run({"-h"}), 0);
}

// --- Basic configuration ------------------------------------------------------------------------

TEST_F(Setup, ConfiguresTheDefaultDevice) {
  answer({Accepted});
  EXPECT_EQ(run({"-c", "--ssid=x"}), 0);
  EXPECT_EQ(device.writes, std::vector<Bytes>{WrappedPacket});
  EXPECT_EQ(output, (Output{"", attempt(0) + TransportReleased}));
  EXPECT_EQ(system.sleeps, std::vector<unsigned int>{5});
}

TEST_F(Setup, ConfiguresTheGivenDevice) {
  auto& other = system.device("/dev/usb/lp1");
  run({"-c", "--ssid=x", "/dev/usb/lp1"});
  EXPECT_EQ(other.writes.at(0), WrappedPacket);
  EXPECT_EQ(device.opens, 0);
}

TEST_F(Setup, ParsesTheSwitchLikeAnOption) {
  // The switch is parsed like any other argument, but contains no key.
  answer({Accepted});
  EXPECT_EQ(run({"-c", "-c", "--ssid=x"}), 0);
  EXPECT_EQ(device.writes, std::vector<Bytes>{WrappedPacket});
}

// --- The retry with bare packets ----------------------------------------------------------------

namespace {

struct RetryRow : support::Row {
  std::vector<Bytes> replies;
  std::vector<Bytes> packets;
  std::vector<int> results;  ///< of each run
};

class Retry : public Setup, public testing::WithParamInterface<RetryRow> {};

}  // namespace

TEST_P(Retry, FollowsARefusalOrSilence) {
  answer(GetParam().replies);
  EXPECT_EQ(run({"-c", "--ssid=x"}), GetParam().results.back());
  EXPECT_EQ(device.writes, GetParam().packets);
  std::string lines;
  for (const int result : GetParam().results) {
    lines += attempt(result);
  }
  EXPECT_EQ(output, (Output{"", lines + TransportReleased}));
}

INSTANTIATE_TEST_SUITE_P(
    Replies, Retry,
    testing::Values(
        RetryRow{{"Accepted"}, {Accepted}, {WrappedPacket}, {0}},
        RetryRow{{"NotAccepted"}, {bytes("00")}, {WrappedPacket}, {1}},
        RetryRow{
            {"RefusedThenAccepted"}, {Refused, Accepted}, {WrappedPacket, BarePacket}, {-1, 0}},
        RetryRow{{"RefusedThenNotAccepted"},
                 {Refused, bytes("00")},
                 {WrappedPacket, BarePacket},
                 {-1, 1}},
        RetryRow{
            {"RefusedTwice"}, {Refused, Refused, Accepted}, {WrappedPacket, BarePacket}, {-1, -1}},
        RetryRow{{"SilentThenAccepted"}, {{}, Accepted}, {WrappedPacket, BarePacket}, {-1, 0}},
        RetryRow{{"SilentTwice"}, {{}}, {WrappedPacket, BarePacket}, {-1, -1}}),
    support::rowName);

TEST_F(Setup, SendsABarePacketIfTheWrapperIsTooLarge) {
  answer({Accepted});
  const std::string ssid(65498, 's');
  EXPECT_EQ(run({"-c", "--ssid=" + ssid}), 0);
  ASSERT_EQ(device.writes.size(), 1U);
  EXPECT_EQ(Bytes(device.writes[0].begin(), device.writes[0].begin() + 7),
            bytes("A5 FF FF 50 E0 DA 01"));
}

TEST_F(Setup, FailsIfTheBarePacketIsTooLarge) {
  EXPECT_EQ(run({"-c", "--ssid=" + std::string(65499, 's')}), -1);
  EXPECT_EQ(device.opens, 0);
}

TEST_F(Setup, PromptsForThePasswordInEachRun) {
  answer({Refused, Accepted});
  const support::StandardInput input("one\ntwo\n");
  EXPECT_EQ(run({"-c", "--security=WPA"}), 0);
  EXPECT_EQ(output.out, "Please provide the password:\n\nPlease provide the password:\n\n");
  EXPECT_EQ(device.writes.size(), 2U);
}

// --- Advanced configuration and certificate settings --------------------------------------------

TEST_F(Setup, RepeatsARefusedAdvancedConfigurationBare) {
  answer({Refused, Accepted});
  EXPECT_EQ(run({"-ca", "--security=OPEN", "--ssid=x"}), 0);
  EXPECT_EQ(device.writes, (std::vector<Bytes>{WrappedOpen, BareOpen}));
  EXPECT_TRUE(output.err.ends_with("D [ZVK] Adv OPEN ret = 0\n" + TransportReleased)) << output.err;
}

TEST_F(Setup, DoesNotRepeatAnAdvancedConfigurationThatWasNotAccepted) {
  answer({bytes("00")});
  EXPECT_EQ(run({"-ca", "--security=OPEN", "--ssid=x"}), 1);
  EXPECT_EQ(device.writes, std::vector<Bytes>{WrappedOpen});
}

TEST_F(Setup, SendsNothingForASecurityWithoutAdvancedConfiguration) {
  EXPECT_EQ(run({"-ca", "--ssid=x"}), 0);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output.err,
            "D [ZVK] Advanced config...\nD [ZVK] Master security = 'None'\n" + TransportReleased);
}

TEST_F(Setup, ReadsTheCertificateSettingsOnceEvenIfRefused) {
  answer({Refused});
  EXPECT_EQ(run({"-cer", "/dev/usb/lp0"}), 0);
  EXPECT_EQ(device.writes,
            (std::vector<Bytes>{bytes("A5 00 0F 50 E0 63 02 00 09 A5 00 06 50 E0 D8 00 2A 06"),
                                bytes("A5 00 0F 50 E0 63 02 00 09 A5 00 06 50 E0 D8 00 2A 0A")}));
}

TEST_F(Setup, NeedsASecondArgumentForAdvancedConfigurationAndCertificateSettings) {
  for (const char* command : {"-ca", "-cer"}) {
    CommandLine line({"zvkconfig", command});
    EXPECT_THROW(zvkSetup(line.count(), line.vector()), std::out_of_range);
    CommandLine file({"zvkconfig", command, "-file", "options"});
    EXPECT_THROW(zvkSetup(file.count(), file.vector()), std::out_of_range);
  }
}

// --- Raw packets and queries --------------------------------------------------------------------

TEST_F(Setup, SendsAnEmptyPacketToTheDefaultDeviceWithoutAnNpaFile) {
  auto& other = system.device("/dev/usb/lp1");
  EXPECT_EQ(run({"-npa", "/dev/usb/lp1"}), 0);
  EXPECT_EQ(device.opens, 1);
  EXPECT_EQ(other.opens, 0);
  EXPECT_EQ(output, (Output{"", "D [ZVK] NPA data: 0 bytes\nD [ZVK] sendNPA response (0 bytes)\n" +
                                    TransportReleased}));
}

TEST_F(Setup, ReadsTheReplyToARawPacketForTenSeconds) {
  // Each packet announces another packet. The second packet arrives at the deadline, during a read
  // that began before the deadline. The third packet arrives after the deadline.
  device.onWrite = [this](const Bytes& /*request*/) {
    device.reply(bytes("A5 00 02 70 01"), 11 * Second);
    device.reply(bytes("A5 00 02 70 02"), 12 * Second);
    device.reply(bytes("A5 00 02 70 03"), 12 * Second + Second / 2);
  };
  run({"-npa", "/dev/usb/lp0"});
  EXPECT_EQ(output.err,
            "D [ZVK] NPA data: 0 bytes\nD [ZVK] sendNPA response (2 bytes)\n01 02 |..\n" +
                TransportReleased);
}

TEST_F(Setup, NeedsNoSecondArgumentForAQuery) {
  answer({bytes("A5 00 14 50 E0 63 02 00 0E A5 00 0B 50 E0 D8 00 28 08 00 02 78 00")});
  EXPECT_EQ(run({"-s"}), 0);
  EXPECT_EQ(output, (Output{"x\n", TransportReleased}));
}

// --- Bad devices --------------------------------------------------------------------------------

namespace {

struct DeviceRow : support::Row {
  const char* path;
};

class SetupDevice : public Setup, public testing::WithParamInterface<DeviceRow> {};

}  // namespace

// Both attempts make their pauses. Neither waits for a reply.
TEST_P(SetupDevice, FailsAfterBothAttempts) {
  fake_libusb::Library library;
  EXPECT_EQ(run({"-c", "--ssid=x", GetParam().path}), -1);
  EXPECT_EQ(system.now(), 10 * Second);
  EXPECT_EQ(output, (Output{"", attempt(-1) + attempt(-1) + TransportReleased}));
  EXPECT_EQ(device.opens, 0);
}

INSTANTIATE_TEST_SUITE_P(Paths, SetupDevice,
                         testing::Values(DeviceRow{{"NoPath"}, "printer"}, DeviceRow{{"Empty"}, ""},
                                         DeviceRow{{"OnlyColon"}, ":"},
                                         DeviceRow{{"OnlyBus"}, "1:"},
                                         DeviceRow{{"NumberTooLong"}, "99999999999:1"},
                                         DeviceRow{{"OnlyFolder"}, "/dev/usb/"},
                                         DeviceRow{{"NumberTooHigh"}, "/dev/usb/lp99"},
                                         DeviceRow{{"NoDevice"}, "/dev/usb/lp1"}),
                         support::rowName);

TEST_F(Setup, FailsIfTheDeviceCannotBeOpened) {
  for (const int error : {EACCES, EBUSY, ENOENT}) {
    device.openErrno = error;
    EXPECT_EQ(run({"-c", "--ssid=x"}), -1);
    EXPECT_TRUE(device.writes.empty());
  }
}

// --- Over libusb --------------------------------------------------------------------------------

TEST_F(Setup, ConfiguresOverLibUsb) {
  fake_libusb::Library library;
  library.addPrinter("002", "005");
  library.incoming = Accepted;
  EXPECT_EQ(run({"-c", "--ssid=x", "2:5"}), 0);
  EXPECT_EQ(library.written, std::vector<Bytes>{WrappedPacket});
  EXPECT_EQ(library.openHandles, 0);
}

// --- Certificates -------------------------------------------------------------------------------

TEST_F(Setup, ReadsCertificateDefaultsWithoutAGenerator) {
  answer({support::success(support::textChild("x509_O", "Org"))});
  EXPECT_EQ(run({"-rcerdefs", "/dev/usb/lp0"}), 0);
  EXPECT_EQ(output, (Output{"cer-org=Org\ncer-unit=\ncer-state=\ncer-country=\ncer-city=\n"
                            "cer-altname=\ncer-common=\n",
                            TransportReleased}));
  EXPECT_EQ(run({"-icer", "/dev/usb/lp0"}), 1);
  EXPECT_EQ(output, Output());
}

TEST_F(Setup, RunsACertificateCommandOnce) {
  // Other commands retry after this reply, which is a refusal.
  answer({bytes("A5 00 02 D4 E0")});
  EXPECT_EQ(run({"-rcerdefs", "/dev/usb/lp0"}), 1);
  EXPECT_EQ(device.writes.size(), 1U);
}

TEST_F(Setup, ReadsTheOptionsOfACertificateCommandFromAFile) {
  const support::TemporaryFolder folder;
  const std::string absent = folder.path("absent");
  const std::string file = folder.write("options", "--802-CA-cer-file=\"" + absent + "\"\n");
  EXPECT_EQ(run({"-icer", "-file", file, "/dev/usb/lp0"}), 2);
  EXPECT_EQ(output.err, "D [ZVK] File not found! ('" + absent + "')\n");
}

class CertificateSwitch : public Setup, public testing::WithParamInterface<const char*> {};

TEST_P(CertificateSwitch, NeedsASecondArgumentAndADeviceForAFile) {
  CommandLine alone({"zvkconfig", GetParam()});
  EXPECT_THROW(zvkSetup(alone.count(), alone.vector()), std::out_of_range);
  CommandLine withFile({"zvkconfig", GetParam(), "-file", "/dev/null"});
  EXPECT_THROW(zvkSetup(withFile.count(), withFile.vector()), std::out_of_range);
  EXPECT_EQ(device.opens, 0);
}

INSTANTIATE_TEST_SUITE_P(Switches, CertificateSwitch,
                         testing::Values("-rcerdefs", "-csr", "-icer"));

TEST_F(Setup, ThrowsWithoutADeviceForCertificates) {
  CommandLine line({"zvkconfig", "-rcerdefs", ""});
  EXPECT_THROW(zvkSetup(line.count(), line.vector()), const char*);
}
