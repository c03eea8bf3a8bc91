#include "emulator/run/command_line.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "catalogue/option_parser.h"
#include "testing/rows.h"

namespace {

using emulator::Options;
using emulator::parseOptions;
using Words = std::vector<std::string>;

Options parseRun(Words options) {
  options.insert(options.begin(), "run");
  options.insert(options.end(), {"--", "true"});
  return parseOptions(options);
}

TEST(ParseOptions, SelectsHelpWithoutArguments) {
  EXPECT_EQ(parseOptions({}).action, Options::Action::Help);
  EXPECT_EQ(parseOptions({"--help"}).action, Options::Action::Help);
}

TEST(ParseOptions, ReadsTheCommandAfterTheDashes) {
  const Options options = parseOptions({"run", "--show", "--", "sh", "-c", "--", "x"});
  EXPECT_EQ(options.action, Options::Action::Run);
  EXPECT_TRUE(options.showSettings);
  EXPECT_EQ(options.command, (Words{"sh", "-c", "--", "x"}));
}

TEST(ParseOptions, SelectsAPrinterWithoutFaultsByDefault) {
  const Options options = parseRun({});
  EXPECT_FALSE(options.personality.refuseWrapped);
  EXPECT_FALSE(options.personality.silent);
  EXPECT_FALSE(options.personality.cutAt);
  EXPECT_EQ(options.personality.settingsResult, 0x01);
  EXPECT_TRUE(options.namespaces);
  EXPECT_FALSE(options.logFile);
  EXPECT_FALSE(options.stateFolder);
  EXPECT_TRUE(options.personality.networks.empty());
  EXPECT_FALSE(options.personality.restartAfterStore);
  EXPECT_TRUE(options.personality.objectReplies.empty());
  EXPECT_TRUE(options.personality.certificates.factoryCertificate);
  EXPECT_EQ(options.personality.certificates.rsaBits, 0U);
  EXPECT_EQ(options.personality.certificates.defaults.commonName, "printer");
}

TEST(ParseOptions, TakesAnInterfaceForTheRadio) {
  EXPECT_FALSE(parseRun({}).radio);
  EXPECT_EQ(parseRun({"--radio=wlan1"}).radio, "wlan1");
}

TEST(ParseOptions, UsesTheLastLog) {
  EXPECT_FALSE(parseRun({"--log=a"}).appendsLog);
  const Options appended = parseRun({"--log=a", "--log-append=b"});
  EXPECT_EQ(appended.logFile, "b");
  EXPECT_TRUE(appended.appendsLog);
  const Options emptied = parseRun({"--log-append=b", "--log=a"});
  EXPECT_EQ(emptied.logFile, "a");
  EXPECT_FALSE(emptied.appendsLog);
}

TEST(ParseOptions, AcceptsEveryOption) {
  const Options options = parseRun({"--refuse-wrapped",
                                    "--refuse-all",
                                    "--silent",
                                    "--garbage",
                                    "--late=3",
                                    "--cut=4",
                                    "--pieces",
                                    "5",
                                    "--result=fe",
                                    "--ip=1.2.3.255",
                                    "--ip-after=2",
                                    "--trouble-code=255",
                                    "--trouble-over-after=20s",
                                    "--ssid=a=b",
                                    "--setting=28:30=a:b=c",
                                    "--setting=28:1f=4",
                                    "--setting=6:14=1",
                                    "--setting=0A:02=1.2.3.4",
                                    "--network=home:a=b",
                                    "--network=x:y:",
                                    "--restart-after-store=4",
                                    "--descriptor",
                                    "x-",
                                    "--auth-status=1,12",
                                    "--other-first",
                                    "--cut-record=11",
                                    "--packets=2",
                                    "--object-reply=queryCAList:a:b",
                                    "--object-reply=x:y",
                                    "--object-status=queryCertList:7",
                                    "--object-status=65535",
                                    "--cert-default=CN=a=b",
                                    "--cert-default=AN=",
                                    "--key-bits=2048",
                                    "--no-factory-certificate",
                                    "--state=d",
                                    "--log=f",
                                    "--show-secrets",
                                    "--no-namespace"});
  const emulator::Personality& printer = options.personality;
  EXPECT_TRUE(printer.refuseWrapped);
  EXPECT_TRUE(printer.refuseAll);
  EXPECT_TRUE(printer.silent);
  EXPECT_TRUE(printer.garbage);
  EXPECT_EQ(printer.replyDelay, std::chrono::seconds(3));
  EXPECT_EQ(printer.cutAt, 4U);
  EXPECT_EQ(printer.pieceSize, 5U);
  EXPECT_EQ(printer.settingsResult, 0xFE);
  EXPECT_EQ(printer.ipAddress, (std::array<npa::Byte, 4>{1, 2, 3, 255}));
  EXPECT_EQ(printer.addressAcquired.afterQueries, 2);
  EXPECT_EQ(printer.troubleCode, 255);
  ASSERT_TRUE(printer.troubleCleared);
  EXPECT_EQ(printer.troubleCleared->afterTime, std::chrono::seconds(20));
  EXPECT_EQ(printer.troubleCleared->afterQueries, 0);
  EXPECT_EQ(printer.ssid, "a=b");
  ASSERT_EQ(printer.settings.size(), 4U);
  EXPECT_EQ(printer.settings[0].key, (npa::SettingKey{0x28, 0x30}));
  EXPECT_EQ(printer.settings[0].value, (npa::Bytes{'a', ':', 'b', '=', 'c', 0}));
  EXPECT_EQ(printer.settings[1].key, (npa::SettingKey{0x28, 0x1F}));
  EXPECT_EQ(printer.settings[1].value, (npa::Bytes{0, 0, 0, 4}));
  EXPECT_EQ(printer.settings[2].key, (npa::SettingKey{0x06, 0x14}));
  EXPECT_EQ(printer.settings[2].value, npa::Bytes{1});
  EXPECT_EQ(printer.settings[3].value, (npa::Bytes{1, 2, 3, 4}));
  ASSERT_EQ(printer.networks.size(), 2U);
  EXPECT_EQ(printer.networks[0].ssid, "home");
  EXPECT_EQ(printer.networks[0].key, "a=b");
  EXPECT_EQ(printer.networks[1].ssid, "x:y");
  EXPECT_EQ(printer.networks[1].key, "");
  EXPECT_EQ(printer.restartAfterStore, std::chrono::seconds(4));
  EXPECT_EQ(printer.descriptor, "x-");
  EXPECT_EQ(printer.authStatus, (std::vector<npa::Byte>{1, 12}));
  EXPECT_TRUE(printer.otherRecordFirst);
  EXPECT_EQ(printer.cutRecordAt, 11U);
  EXPECT_EQ(printer.replyPackets, 2U);
  ASSERT_EQ(printer.objectReplies.size(), 4U);
  EXPECT_EQ(printer.objectReplies[0].method, "queryCAList");
  EXPECT_EQ(printer.objectReplies[0].file, "a:b");
  EXPECT_FALSE(printer.objectReplies[0].status);
  EXPECT_EQ(printer.objectReplies[1].method, "");
  EXPECT_EQ(printer.objectReplies[1].file, "x:y");
  EXPECT_EQ(printer.objectReplies[2].method, "queryCertList");
  EXPECT_EQ(printer.objectReplies[2].status, 7);
  EXPECT_EQ(printer.objectReplies[3].method, "");
  EXPECT_EQ(printer.objectReplies[3].status, 65535);
  EXPECT_EQ(printer.certificates.defaults.commonName, "a=b");
  EXPECT_EQ(printer.certificates.defaults.altName, "");
  EXPECT_EQ(printer.certificates.defaults.country, "US");
  EXPECT_EQ(printer.certificates.rsaBits, 2048U);
  EXPECT_FALSE(printer.certificates.factoryCertificate);
  EXPECT_EQ(options.stateFolder, "d");
  EXPECT_EQ(options.logFile, "f");
  EXPECT_TRUE(options.showSecrets);
  EXPECT_FALSE(options.namespaces);
}

TEST(ParseOptions, ReadsTheLinkOfServe) {
  EXPECT_EQ(parseOptions({"serve", "--link=/tmp/x"}).link, "/tmp/x");
}

TEST(ParseOptions, ReadsTheStateOfShow) {
  const Options options = parseOptions({"show", "--state", "d", "--show-secrets"});
  EXPECT_EQ(options.action, Options::Action::Show);
  EXPECT_EQ(options.stateFolder, "d");
}

TEST(ParseOptions, SelectsAUsbDeviceWithoutFaultsByDefault) {
  const Options options = parseOptions({"usb", "--attach"});
  EXPECT_EQ(options.action, Options::Action::Usb);
  EXPECT_TRUE(options.attach);
  EXPECT_FALSE(options.port);
  EXPECT_TRUE(options.command.empty());
  const emulator::UsbTraits& usb = options.usb;
  EXPECT_EQ(usb.speed, emulator::UsbSpeed::High);
  EXPECT_EQ(usb.alternates, 1U);
  EXPECT_TRUE(usb.faults.empty());
  EXPECT_EQ(usb.outBytesPerSecond, 0U);
  EXPECT_FALSE(usb.replugAfter);
}

TEST(ParseOptions, AcceptsEveryOptionOfUsb) {
  using Kind = emulator::UsbFault::Kind;
  using emulator::UsbDirection;
  const Options options =
      parseOptions({"usb", "--port=65535", "--speed=full", "--alternates=4", "--usb-stall=in",
                    "--usb-protocol-error=out:5", "--usb-hold", "in:1000000000", "--usb-slow=64",
                    "--usb-unplug-after=out:0", "--usb-replug-after=7", "--serial=X-1", "--silent",
                    "--", "true"});
  EXPECT_FALSE(options.attach);
  EXPECT_EQ(options.port, 65535);
  EXPECT_EQ(options.command, Words{"true"});
  EXPECT_TRUE(options.personality.silent);
  const emulator::UsbTraits& usb = options.usb;
  EXPECT_EQ(usb.speed, emulator::UsbSpeed::Full);
  EXPECT_EQ(usb.alternates, 4U);
  EXPECT_EQ(usb.outBytesPerSecond, 64U);
  EXPECT_EQ(usb.replugAfter, std::chrono::seconds(7));
  EXPECT_EQ(usb.serial, "X-1");
  const std::vector<emulator::UsbFault> expected = {{Kind::Stall, UsbDirection::In, 0},
                                                    {Kind::ProtocolError, UsbDirection::Out, 5},
                                                    {Kind::Hold, UsbDirection::In, 1'000'000'000},
                                                    {Kind::Unplug, UsbDirection::Out, 0}};
  ASSERT_EQ(usb.faults.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(usb.faults[i].kind, expected[i].kind) << i;
    EXPECT_EQ(usb.faults[i].direction, expected[i].direction) << i;
    EXPECT_EQ(usb.faults[i].afterBytes, expected[i].afterBytes) << i;
  }
  EXPECT_EQ(parseOptions({"usb", "--attach", "--speed=high"}).usb.speed, emulator::UsbSpeed::High);
}

struct Mistake : support::Row {
  Words arguments;
  const char* reason;
};

class WrongCommandLine : public testing::TestWithParam<Mistake> {};

TEST_P(WrongCommandLine, IsReportedWithTheExpectedValue) {
  try {
    parseOptions(GetParam().arguments);
    FAIL() << "accepted";
  } catch (const catalogue::UsageError& error) {
    EXPECT_STREQ(error.what(), GetParam().reason);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Commands, WrongCommandLine,
    testing::Values(
        Mistake{{"UnknownCommand"},
                {"walk"},
                "command: expected run, serve, usb, show or help, got 'walk'"},
        Mistake{{"EmptyCommand"}, {""}, "command: expected run, serve, usb, show or help, got ''"},
        Mistake{{"RunWithoutDashes"}, {"run"}, "run: expected -- and a command"},
        Mistake{{"RunWithoutCommand"}, {"run", "--"}, "run: expected -- and a command"},
        Mistake{
            {"CommandWithoutDashes"}, {"run", "ls"}, "ls: expected an option, or -- and a command"},
        Mistake{{"ServeWithoutLink"}, {"serve"}, "serve: expected --link=PATH"},
        Mistake{{"ShowWithoutState"}, {"show"}, "show: expected --state=DIR"},
        Mistake{{"UsbWithoutPlace"}, {"usb"}, "usb: expected either --attach or --port=N"},
        Mistake{{"UsbWithTwoPlaces"},
                {"usb", "--attach", "--port=0"},
                "usb: expected either --attach or --port=N"},
        Mistake{{"RadioAndNetwork"},
                {"run", "--radio=wlan1", "--network=a:b", "--", "true"},
                "--radio: expected no --network"}),
    support::rowName);

Mistake mistake(const char* name, const char* option, const char* reason) {
  return {{name}, {"usb", "--attach", option}, reason};
}

INSTANTIATE_TEST_SUITE_P(
    Values, WrongCommandLine,
    testing::Values(
        mistake("UnknownOption", "--nonsense=1", "--nonsense: no such option"),
        mistake("InterfaceInAFolder", "--radio=a/b",
                "--radio: expected the name of a network interface, got 'a/b'"),
        mistake("InterfaceTooLong", "--radio=1234567890123456",
                "--radio: expected the name of a network interface, got '1234567890123456'"),
        mistake("FlagWithValue", "--silent=1", "--silent: expected no value, got '1'"),
        mistake("NoValue", "--late", "--late: expected a value"),
        mistake("TextForANumber", "--late=x",
                "--late: expected a number of seconds from 0 to 3600, got 'x'"),
        mistake("NothingForANumber",
                "--cut=", "--cut: expected a number of bytes from 0 to 65538, got ''"),
        mistake("NumberTooLarge", "--packets=101",
                "--packets: expected a number of packets from 0 to 100, got '101'"),
        mistake("NumberNegative", "--usb-replug-after=-1",
                "--usb-replug-after: expected a number of seconds from 0 to 3600, got '-1'"),
        mistake("ByteTooLarge", "--trouble-code=256",
                "--trouble-code: expected a number from 0 to 255, got '256'"),
        mistake("HexByteTooLarge", "--result=100",
                "--result: expected a hex number from 0 to FF, got '100'"),
        mistake("ListThatEndsInAComma", "--auth-status=1,",
                "--auth-status: expected numbers from 0 to 255 with commas between them, got '1,'"),
        mistake("AddressTooShort", "--ip=1.2.3",
                "--ip: expected an IPv4 address such as 192.168.1.20, got '1.2.3'"),
        mistake("AddressTooLong", "--ip=1.2.3.4.5",
                "--ip: expected an IPv4 address such as 192.168.1.20, got '1.2.3.4.5'"),
        mistake("AddressByteTooLarge", "--ip=1.2.3.256",
                "--ip: expected an IPv4 address such as 192.168.1.20, got '1.2.3.256'"),
        // The messages do not show the value, which may be a key.
        mistake("SettingWithoutValue", "--setting=28:08", "--setting: expected GROUP:OBJECT=VALUE"),
        mistake("SettingWithoutColon", "--setting=2808=a:b",
                "--setting: expected GROUP:OBJECT=VALUE"),
        mistake("SettingOfNoGroup", "--setting=100:08=x",
                "--setting: expected a hex number from 0 to FF"),
        mistake("SettingOfNoObject", "--setting=28:=x",
                "--setting: expected a hex number from 0 to FF"),
        mistake("NumberOfASettingTooLarge", "--setting=28:1F=256",
                "--setting: expected a number from 0 to 255"),
        mistake("FlagOfASettingTooLarge", "--setting=06:14=2",
                "--setting: expected a number from 0 to 1"),
        mistake("NetworkWithoutColon", "--network=secret",
                "--network: expected an SSID of 1 to 32 bytes, then a colon and a key without "
                "colons"),
        mistake("NetworkWithoutSsid", "--network=:secret",
                "--network: expected an SSID of 1 to 32 bytes, then a colon and a key without "
                "colons"),
        mistake("NetworkWithALongSsid", "--network=123456789012345678901234567890123:secret",
                "--network: expected an SSID of 1 to 32 bytes, then a colon and a key without "
                "colons"),
        mistake("RestartTooLong", "--restart-after-store=3601",
                "--restart-after-store: expected a number of seconds from 0 to 3600, got '3601'"),
        mistake("TooManyQueries", "--ip-after=65539",
                "--ip-after: expected a number of queries from 0 to 65538, or of seconds from 0s "
                "to 3600s, got '65539'"),
        mistake("TooManySeconds", "--trouble-over-after=3601s",
                "--trouble-over-after: expected a number of queries from 0 to 65538, or of seconds "
                "from 0s to 3600s, got '3601s'"),
        mistake("PortTooLarge", "--port=65536",
                "--port: expected a number from 0 to 65535, got '65536'"),
        mistake("UnknownSpeed", "--speed=low", "--speed: expected full or high, got 'low'"),
        mistake("NoAlternate", "--alternates=0",
                "--alternates: expected a number from 1 to 4, got '0'"),
        mistake("SerialWithASemicolon", "--serial=X;Y",
                "--serial: expected 1 to 64 printable ASCII characters other than a blank and ;, "
                "got 'X;Y'"),
        mistake("TooManyAlternates", "--alternates=5",
                "--alternates: expected a number from 1 to 4, got '5'"),
        mistake("NoDirection", "--usb-stall=5",
                "--usb-stall: expected in or out, optionally with a colon and a number of bytes up "
                "to 1000000000, got '5'"),
        mistake("NoCountAfterTheDirection", "--usb-hold=in:",
                "--usb-hold: expected in or out, optionally with a colon and a number of bytes up "
                "to 1000000000, got 'in:'"),
        mistake("UnplugWithoutCount", "--usb-unplug-after=in",
                "--usb-unplug-after: expected in or out with a colon and a number of bytes up to "
                "1000000000, got 'in'"),
        mistake("StatusOfNoMethod", "--object-status=queryCA:2",
                "--object-status: expected a code from 0 to 65535, optionally after a method's "
                "name and a colon, got 'queryCA:2'"),
        mistake("StatusOfNoNumber", "--object-status=queryCAList:x",
                "--object-status: expected a code from 0 to 65535, optionally after a method's "
                "name and a colon, got 'queryCAList:x'"),
        mistake("DefaultOfNoField", "--cert-default=X=1",
                "--cert-default: expected O, OU, C, ST, L, CN or AN, then = and a text, got 'X=1'"),
        mistake("DefaultWithoutText", "--cert-default=CN",
                "--cert-default: expected O, OU, C, ST, L, CN or AN, then = and a text, got 'CN'"),
        mistake("KeyTooSmall", "--key-bits=1023",
                "--key-bits: expected 0 or a number of bits from 1024 to 4096, got '1023'"),
        mistake("KeyTooLarge", "--key-bits=4097",
                "--key-bits: expected 0 or a number of bits from 1024 to 4096, got '4097'")),
    support::rowName);

TEST(HelpText, ContainsCommandsAndOptions) {
  const std::string help = emulator::helpText();
  for (const char* line : {
           "\n  zvkprinter run [OPTION...] -- COMMAND [ARGUMENT...]\n"
           "      Run COMMAND with the emulated printer at /dev/usb/lp0.\n",
           "\n  zvkprinter usb --attach [OPTION...] [-- COMMAND [ARGUMENT...]]\n"
           "  zvkprinter usb --port=N [OPTION...] [-- COMMAND [ARGUMENT...]]\n",
           "\n  --refuse-wrapped              refuse wrapped packets\n",
           "\n  --late=SECONDS                delay each reply\n",
           "\n  --speed=full|high             speed of the device (default: high)\n",
           "\n  --usb-unplug-after=in|out:BYTES\n"
           "                                unplug the printer after this number of bytes\n",
           "\n  --log=FILE                    log to a file instead of standard error\n",
       }) {
    EXPECT_NE(help.find(line), std::string::npos) << line;
  }
}

}  // namespace
