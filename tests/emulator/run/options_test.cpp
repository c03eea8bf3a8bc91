#include "emulator/run/options.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/rows.h"

namespace {

using emulator::Options;
using emulator::parseOptions;
using emulator::UsageError;
using Words = std::vector<std::string>;

Options parseRun(Words options) {
  options.insert(options.begin(), "run");
  options.insert(options.end(), {"--", "true"});
  return parseOptions(options);
}

TEST(ParseOptions, IsHelpWithoutArguments) {
  EXPECT_EQ(parseOptions({}).action, Options::Action::Help);
  EXPECT_EQ(parseOptions({"--help"}).action, Options::Action::Help);
}

TEST(ParseOptions, TakesTheCommandBehindTheDashes) {
  const Options options = parseOptions({"run", "--show", "--", "sh", "-c", "--", "x"});
  EXPECT_EQ(options.action, Options::Action::Run);
  EXPECT_TRUE(options.showSettings);
  EXPECT_EQ(options.command, (Words{"sh", "-c", "--", "x"}));
}

TEST(ParseOptions, StartsFromAWellBehavedPrinter) {
  const Options options = parseRun({});
  EXPECT_FALSE(options.personality.refuseWrapped);
  EXPECT_FALSE(options.personality.silent);
  EXPECT_FALSE(options.personality.cutAt);
  EXPECT_EQ(options.personality.settingsResult, 0x01);
  EXPECT_TRUE(options.namespaces);
  EXPECT_FALSE(options.logFile);
  EXPECT_FALSE(options.stateFolder);
  EXPECT_TRUE(options.personality.objectAnswers.empty());
  EXPECT_TRUE(options.personality.certificates.factoryCertificate);
  EXPECT_EQ(options.personality.certificates.rsaBits, 0U);
  EXPECT_EQ(options.personality.certificates.defaults.commonName, "printer");
}

TEST(ParseOptions, TakesTheLastOfTheLogs) {
  EXPECT_FALSE(parseRun({"--log=a"}).appendsLog);
  const Options appended = parseRun({"--log=a", "--log-append=b"});
  EXPECT_EQ(appended.logFile, "b");
  EXPECT_TRUE(appended.appendsLog);
  const Options emptied = parseRun({"--log-append=b", "--log=a"});
  EXPECT_EQ(emptied.logFile, "a");
  EXPECT_FALSE(emptied.appendsLog);
}

TEST(ParseOptions, TakesEveryOption) {
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
  EXPECT_EQ(printer.answerAfter, std::chrono::seconds(3));
  EXPECT_EQ(printer.cutAt, 4U);
  EXPECT_EQ(printer.pieceSize, 5U);
  EXPECT_EQ(printer.settingsResult, 0xFE);
  EXPECT_EQ(printer.ipAddress, (std::array<npa::Byte, 4>{1, 2, 3, 255}));
  EXPECT_EQ(printer.addressAcquired.afterQueries, 2);
  EXPECT_EQ(printer.troubleCode, 255);
  ASSERT_TRUE(printer.troubleOver);
  EXPECT_EQ(printer.troubleOver->afterTime, std::chrono::seconds(20));
  EXPECT_EQ(printer.troubleOver->afterQueries, 0);
  EXPECT_EQ(printer.ssid, "a=b");
  EXPECT_EQ(printer.descriptor, "x-");
  EXPECT_EQ(printer.authStatus, (std::vector<npa::Byte>{1, 12}));
  EXPECT_TRUE(printer.otherRecordFirst);
  EXPECT_EQ(printer.cutRecordAt, 11U);
  EXPECT_EQ(printer.replyPackets, 2U);
  ASSERT_EQ(printer.objectAnswers.size(), 4U);
  EXPECT_EQ(printer.objectAnswers[0].method, "queryCAList");
  EXPECT_EQ(printer.objectAnswers[0].file, "a:b");
  EXPECT_FALSE(printer.objectAnswers[0].status);
  EXPECT_EQ(printer.objectAnswers[1].method, "");
  EXPECT_EQ(printer.objectAnswers[1].file, "x:y");
  EXPECT_EQ(printer.objectAnswers[2].method, "queryCertList");
  EXPECT_EQ(printer.objectAnswers[2].status, 7);
  EXPECT_EQ(printer.objectAnswers[3].method, "");
  EXPECT_EQ(printer.objectAnswers[3].status, 65535);
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

TEST(ParseOptions, TakesTheLinkOfServe) {
  EXPECT_EQ(parseOptions({"serve", "--link=/tmp/x"}).link, "/tmp/x");
}

TEST(ParseOptions, TakesTheStateOfShow) {
  const Options options = parseOptions({"show", "--state", "d", "--show-secrets"});
  EXPECT_EQ(options.action, Options::Action::Show);
  EXPECT_EQ(options.stateFolder, "d");
}

TEST(ParseOptions, StartsFromAUsbDeviceThatIsWell) {
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

TEST(ParseOptions, TakesEveryOptionOfUsb) {
  using Kind = emulator::UsbFault::Kind;
  using emulator::UsbDirection;
  const Options options =
      parseOptions({"usb", "--port=65535", "--speed=full", "--alternates=4", "--usb-stall=in",
                    "--usb-protocol-error=out:5", "--usb-hold", "in:1000000000", "--usb-slow=64",
                    "--usb-unplug-after=out:0", "--usb-replug-after=7", "--silent", "--", "true"});
  EXPECT_FALSE(options.attach);
  EXPECT_EQ(options.port, 65535);
  EXPECT_EQ(options.command, Words{"true"});
  EXPECT_TRUE(options.personality.silent);
  const emulator::UsbTraits& usb = options.usb;
  EXPECT_EQ(usb.speed, emulator::UsbSpeed::Full);
  EXPECT_EQ(usb.alternates, 4U);
  EXPECT_EQ(usb.outBytesPerSecond, 64U);
  EXPECT_EQ(usb.replugAfter, std::chrono::seconds(7));
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

class WrongOptions : public testing::TestWithParam<Mistake> {};

TEST_P(WrongOptions, AreToldWithTheReason) {
  try {
    parseOptions(GetParam().arguments);
    FAIL() << "accepted";
  } catch (const UsageError& error) {
    EXPECT_STREQ(error.what(), GetParam().reason);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Mistakes, WrongOptions,
    testing::Values(
        Mistake{{"UnknownAction"}, {"walk"}, "'walk' is none of run, serve, usb, show and help"},
        Mistake{{"RunWithoutDashes"}, {"run"}, "run needs a command behind --"},
        Mistake{{"RunWithoutCommand"}, {"run", "--"}, "run needs a command behind --"},
        Mistake{{"ServeWithoutLink"}, {"serve"}, "serve needs --link=PATH"},
        Mistake{{"ShowWithoutState"}, {"show"}, "show needs --state=DIR"},
        Mistake{{"UsbWithoutPlace"}, {"usb"}, "usb needs one of --attach and --port=N"},
        Mistake{{"UsbWithTwoPlaces"},
                {"usb", "--attach", "--port=0"},
                "usb needs one of --attach and --port=N"},
        Mistake{{"PortTooLarge"}, {"usb", "--port=65536"}, "'65536' is no number from 0 to 65535"},
        Mistake{{"UnknownSpeed"}, {"usb", "--speed=low"}, "'low' is no speed: full or high"},
        Mistake{{"NoAlternate"},
                {"usb", "--alternates=0"},
                "a device has at least one alternate setting"},
        Mistake{{"TooManyAlternates"}, {"usb", "--alternates=5"}, "'5' is no number from 0 to 4"},
        Mistake{{"NoDirection"}, {"usb", "--usb-stall=5"}, "'5' is no direction: in or out"},
        Mistake{{"NoCountBehindTheDirection"},
                {"usb", "--usb-hold=in:"},
                "'' is no number from 0 to 1000000000"},
        Mistake{{"UnplugWithoutCount"},
                {"usb", "--usb-unplug-after=in"},
                "'in' does not say after how many bytes, such as in:512"},
        Mistake{{"StatusOfNoMethod"},
                {"run", "--object-status=queryCA:2"},
                "'queryCA:2' names no method of the object store"},
        Mistake{{"StatusOfNoNumber"},
                {"run", "--object-status=queryCAList:x"},
                "'x' is no number from 0 to 65535"},
        Mistake{{"DefaultOfNoField"},
                {"run", "--cert-default=X=1"},
                "'X=1' begins with none of O=, OU=, C=, ST=, L=, CN= and AN="},
        Mistake{{"DefaultWithoutText"},
                {"run", "--cert-default=CN"},
                "'CN' begins with none of O=, OU=, C=, ST=, L=, CN= and AN="},
        Mistake{{"KeyTooSmall"},
                {"run", "--key-bits=1023"},
                "'1023' is no size of an RSA key: 1024 to 4096, or 0"},
        Mistake{{"KeyTooLarge"}, {"run", "--key-bits=4097"}, "'4097' is no number from 0 to 4096"},
        Mistake{{"NoOption"}, {"run", "ls"}, "there is no option 'ls'"},
        Mistake{{"UnknownOption"}, {"run", "--nonsense=1"}, "there is no option '--nonsense'"},
        Mistake{{"SwitchWithValue"}, {"run", "--silent=1"}, "--silent takes no value"},
        Mistake{{"OptionWithoutValue"}, {"run", "--late"}, "--late needs a value"},
        Mistake{{"TextForANumber"}, {"run", "--late=x"}, "'x' is no number from 0 to 3600"},
        Mistake{{"NothingForANumber"}, {"run", "--late="}, "'' is no number from 0 to 3600"},
        Mistake{{"NumberTooLarge"}, {"run", "--late=3601"}, "'3601' is no number from 0 to 3600"},
        Mistake{{"NumberNegative"}, {"run", "--late=-1"}, "'-1' is no number from 0 to 3600"},
        Mistake{
            {"ByteTooLarge"}, {"run", "--trouble-code=256"}, "'256' is no number from 0 to 255"},
        Mistake{
            {"ListThatEndsInAComma"}, {"run", "--auth-status=1,"}, "'' is no number from 0 to 255"},
        Mistake{{"AddressTooShort"}, {"run", "--ip=1.2.3"}, "'1.2.3' is no IP address"},
        Mistake{{"AddressTooLong"}, {"run", "--ip=1.2.3.4.5"}, "'4.5' is no number from 0 to 255"},
        Mistake{{"AddressByteTooLarge"},
                {"run", "--ip=1.2.3.256"},
                "'256' is no number from 0 to 255"}),
    support::rowName);

TEST(HelpText, NamesEveryOption) {
  const std::string help = emulator::helpText();
  for (const char* option : {"--refuse-wrapped", "--packets=N", "--log=FILE", "--link=PATH",
                             "--attach", "--usb-hold=in|out[:BYTES]"}) {
    EXPECT_NE(help.find(option), std::string::npos) << option;
  }
}

}  // namespace
