#include <gtest/gtest.h>
#include <optional>

#include "emulator/usb/usb_descriptors.h"
#include "emulator/usb/usb_device.h"
#include "testing/bytes.h"
#include "testing/packets.h"
#include "testing/rows.h"
#include "testing/usb_printer.h"

namespace {

using emulator::UsbSetup;
using npa::Bytes;
using support::bytes;
using support::ReadyUsbPrinter;
using support::UsbPrinter;

constexpr UsbSetup GetConfiguration = {0x80, 8, 0, 0, 1};
constexpr UsbSetup GetInterface = {0x81, 10, 0, 0, 1};
constexpr UsbSetup StatusOfIn = {0x82, 0, 0, 0x82, 2};
constexpr UsbSetup StatusOfOut = {0x82, 0, 0, 0x01, 2};
constexpr UsbSetup HaltIn = {0x02, 3, 0, 0x82, 0};
constexpr UsbSetup ClearIn = {0x02, 1, 0, 0x82, 0};

struct RequestRow : support::Row {
  UsbSetup setup;
  std::optional<Bytes> reply;  ///< nothing for a stall
};

class UsbRequest : public testing::TestWithParam<RequestRow> {};

TEST_P(UsbRequest, GetsItsReply) {
  ReadyUsbPrinter printer({.alternates = 2});
  EXPECT_EQ(printer.ask(GetParam().setup), GetParam().reply);
}

const std::optional<Bytes> Stall;
const Bytes Nothing;

INSTANTIATE_TEST_SUITE_P(
    Standard, UsbRequest,
    testing::Values(
        RequestRow{{"Descriptor"}, {0x80, 6, 0x0100, 0, 18}, emulator::usbDescriptor({}, 1, 0)},
        RequestRow{{"DescriptorCutToTheRequestedLength"},
                   {0x80, 6, 0x0100, 0, 8},
                   bytes("12 01 00 02 00 00 00 40")},
        RequestRow{{"DescriptorShorterThanRequested"},
                   {0x80, 6, 0x0300, 0x0409, 255},
                   bytes("04 03 09 04")},
        RequestRow{{"DescriptorOfAString"},
                   {0x80, 6, 0x0303, 0x0409, 255},
                   bytes("0A 03 30 00 30 00 30 00 31 00")},
        RequestRow{{"UnknownDescriptor"}, {0x80, 6, 0x0F00, 0, 5}, Stall},
        RequestRow{{"DescriptorOfTheInterface"}, {0x81, 6, 0x2200, 0, 5}, Stall},
        RequestRow{{"Address"}, {0x00, 5, 127, 0, 0}, Nothing},
        RequestRow{{"AddressTooLarge"}, {0x00, 5, 128, 0, 0}, Stall},
        RequestRow{{"Configuration"}, GetConfiguration, bytes("01")},
        RequestRow{{"SetConfiguration"}, {0x00, 9, 1, 0, 0}, Nothing},
        RequestRow{{"SetUnknownConfiguration"}, {0x00, 9, 2, 0, 0}, Stall},
        RequestRow{{"Interface"}, GetInterface, bytes("00")},
        RequestRow{{"AnotherInterface"}, {0x81, 10, 0, 1, 1}, Stall},
        RequestRow{{"SetInterface"}, {0x01, 11, 1, 0, 0}, Nothing},
        RequestRow{{"SetUnknownAlternate"}, {0x01, 11, 2, 0, 0}, Stall},
        RequestRow{{"SetAnotherInterface"}, {0x01, 11, 0, 1, 0}, Stall},
        RequestRow{{"StatusOfTheDevice"}, {0x80, 0, 0, 0, 2}, bytes("01 00")},
        RequestRow{{"StatusOfTheInterface"}, {0x81, 0, 0, 0, 2}, bytes("00 00")},
        RequestRow{{"StatusOfAnotherInterface"}, {0x81, 0, 0, 1, 2}, Stall},
        RequestRow{{"StatusOfControlOut"}, {0x82, 0, 0, 0x00, 2}, bytes("00 00")},
        RequestRow{{"StatusOfControlIn"}, {0x82, 0, 0, 0x80, 2}, bytes("00 00")},
        RequestRow{{"StatusOfOut"}, StatusOfOut, bytes("00 00")},
        RequestRow{{"StatusOfMissingIn"}, StatusOfIn, Stall},
        RequestRow{{"StatusOfAMissingEndpoint"}, {0x82, 0, 0, 0x03, 2}, Stall},
        RequestRow{{"ClearHalt"}, {0x02, 1, 0, 0x01, 0}, Nothing},
        RequestRow{{"ClearHaltOfAMissingEndpoint"}, {0x02, 1, 0, 0x81, 0}, Stall},
        RequestRow{{"ClearAnotherFeature"}, {0x02, 1, 1, 0x01, 0}, Stall},
        RequestRow{{"SetAnotherFeature"}, {0x02, 3, 1, 0x01, 0}, Stall},
        RequestRow{{"RemoteWakeup"}, {0x00, 3, 1, 0, 0}, Stall},
        RequestRow{{"SetDescriptor"}, {0x00, 7, 0x0100, 0, 0}, Stall},
        RequestRow{{"SynchFrame"}, {0x82, 12, 0, 0x82, 2}, Stall}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    PrinterClass, UsbRequest,
    testing::Values(
        RequestRow{{"DeviceId"}, {0xA1, 0, 0, 0x0000, 1023}, emulator::deviceId({})},
        RequestRow{{"DeviceIdOfAnAlternate"}, {0xA1, 0, 0, 0x0001, 1023}, emulator::deviceId({})},
        RequestRow{{"LengthOfTheDeviceId"}, {0xA1, 0, 0, 0, 2}, bytes("00 4D")},
        RequestRow{{"DeviceIdOfAMissingAlternate"}, {0xA1, 0, 0, 0x0002, 1023}, Stall},
        RequestRow{{"DeviceIdOfAnotherInterface"}, {0xA1, 0, 0, 0x0100, 1023}, Stall},
        RequestRow{{"DeviceIdOfAnotherConfiguration"}, {0xA1, 0, 1, 0, 1023}, Stall},
        RequestRow{{"PortStatus"}, {0xA1, 1, 0, 0, 1}, bytes("18")},
        RequestRow{{"PortStatusOfAnotherInterface"}, {0xA1, 1, 0, 1, 1}, Stall},
        RequestRow{{"SoftReset"}, {0x21, 2, 0, 0, 0}, Nothing},
        RequestRow{{"SoftResetOfPrinterClass10"}, {0x23, 2, 0, 0, 0}, Nothing},
        RequestRow{{"SoftResetOfAnotherInterface"}, {0x21, 2, 0, 1, 0}, Stall},
        RequestRow{{"UnknownClassRequest"}, {0xA1, 3, 0, 0, 1}, Stall},
        RequestRow{{"VendorRequest"}, {0xC0, 0, 0, 0, 1}, Stall}),
    support::rowName);

TEST(UsbDevice, StallsRequestsThatNeedAConfigurationUntilItHasOne) {
  UsbPrinter printer;
  EXPECT_EQ(printer.ask(GetConfiguration), bytes("00"));
  for (const UsbSetup& setup :
       {GetInterface, StatusOfIn, StatusOfOut, ClearIn, UsbSetup{0xA1, 0, 0, 0, 255},
        UsbSetup{0xA1, 1, 0, 0, 1}, UsbSetup{0x21, 2, 0, 0, 0}, UsbSetup{0x81, 0, 0, 0, 2}}) {
    EXPECT_EQ(printer.ask(setup), std::nullopt) << int{setup.type} << " " << int{setup.request};
  }
  EXPECT_EQ(printer.ask({0x80, 0, 0, 0, 2}), bytes("01 00"));
  printer.configure();
  EXPECT_EQ(printer.ask(GetInterface), bytes("00"));
  printer.ask({0x00, 9, 0, 0, 0});
  EXPECT_EQ(printer.ask(GetConfiguration), bytes("00"));
  EXPECT_EQ(printer.ask(GetInterface), std::nullopt);
}

TEST(UsbDevice, HasTheEndpointsOfItsAlternateSetting) {
  ReadyUsbPrinter printer({.alternates = 2});
  EXPECT_EQ(printer.ask(StatusOfIn), std::nullopt);
  printer.ask({0x01, 11, 1, 0, 0});
  EXPECT_EQ(printer.ask(GetInterface), bytes("01"));
  EXPECT_EQ(printer.ask(StatusOfIn), bytes("00 00"));
  printer.configure();
  EXPECT_EQ(printer.ask(GetInterface), bytes("00"));
}

TEST(UsbDevice, CanBeHaltedAndClearedByTheHost) {
  ReadyUsbPrinter printer;
  EXPECT_EQ(printer.ask(HaltIn), Nothing);
  EXPECT_EQ(printer.ask(StatusOfIn), bytes("01 00"));
  EXPECT_EQ(printer.ask(StatusOfOut), bytes("00 00"));
  EXPECT_EQ(printer.ask(ClearIn), Nothing);
  EXPECT_EQ(printer.ask(StatusOfIn), bytes("00 00"));
}

TEST(UsbDevice, HasNoHaltAfterANewSettingOrAReset) {
  for (const UsbSetup& setup :
       {UsbSetup{0x00, 9, 1, 0, 0}, UsbSetup{0x01, 11, 0, 0, 0}, UsbSetup{0x21, 2, 0, 0, 0}}) {
    ReadyUsbPrinter printer;
    printer.ask(HaltIn);
    printer.ask(setup);
    EXPECT_EQ(printer.ask(StatusOfIn), bytes("00 00"));
  }
}

TEST(UsbDevice, DiscardsBytesWhenItIsReset) {
  ReadyUsbPrinter printer;
  const Bytes& query = packets::QueryIp;
  printer.write(1, support::joined({query, Bytes(query.begin(), query.begin() + 4)}));
  printer.device.advance();
  printer.ask({0x21, 2, 0, 0, 0});
  EXPECT_EQ(printer.log, std::vector<std::string>{"   USB: reset by the host"});
  printer.read(2, 1024);
  EXPECT_TRUE(printer.device.advance().empty());
  printer.write(3, query);
  EXPECT_EQ(printer.device.advance().size(), 2U);
}

}  // namespace
