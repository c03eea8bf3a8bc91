#include "emulator/usb/usb_descriptors.h"

#include <gtest/gtest.h>
#include <string>

#include "testing/bytes.h"

namespace {

using emulator::usbDescriptor;
using emulator::UsbSpeed;
using npa::Bytes;
using support::bytes;

TEST(UsbDescriptor, DescribesTheDevice) {
  EXPECT_EQ(usbDescriptor({}, 1, 0),
            bytes("12 01 00 02 00 00 00 40 09 12 01 00 00 01 01 02 03 01"));
  EXPECT_EQ(usbDescriptor({.speed = UsbSpeed::Full}, 1, 0),
            bytes("12 01 10 01 00 00 00 40 09 12 01 00 00 01 01 02 03 01"));
}

TEST(UsbDescriptor, DescribesABidirectionalPrinter) {
  EXPECT_EQ(usbDescriptor({}, 2, 0), bytes("09 02 20 00 01 01 00 C0 01 "
                                           "09 04 00 00 02 07 01 02 00 "
                                           "07 05 01 02 00 02 00 07 05 82 02 00 02 00"));
  EXPECT_EQ(usbDescriptor({.speed = UsbSpeed::Full}, 2, 0),
            bytes("09 02 20 00 01 01 00 C0 01 "
                  "09 04 00 00 02 07 01 02 00 "
                  "07 05 01 02 40 00 00 07 05 82 02 40 00 00"));
}

TEST(UsbDescriptor, ListsAlternateSettings) {
  EXPECT_EQ(usbDescriptor({.alternates = 2}, 2, 0), bytes("09 02 30 00 01 01 00 C0 01 "
                                                          "09 04 00 00 01 07 01 01 00 "
                                                          "07 05 01 02 00 02 00 "
                                                          "09 04 00 01 02 07 01 02 00 "
                                                          "07 05 01 02 00 02 00 "
                                                          "07 05 82 02 00 02 00"));
  const Bytes four = *usbDescriptor({.alternates = 4}, 2, 0);
  ASSERT_EQ(four.size(), 94U);
  EXPECT_EQ(four[2], 94);
  EXPECT_EQ(Bytes(four.begin() + 48, four.begin() + 57), bytes("09 04 00 02 02 07 01 03 00"));
  EXPECT_EQ(Bytes(four.begin() + 71, four.begin() + 80), bytes("09 04 00 03 02 07 01 FF 00"));
}

TEST(UsbDescriptor, DescribesTheOtherSpeedAtHighSpeedOnly) {
  EXPECT_EQ(usbDescriptor({}, 6, 0), bytes("0A 06 00 02 00 00 00 40 01 00"));
  EXPECT_EQ(usbDescriptor({}, 7, 0), bytes("09 07 20 00 01 01 00 C0 01 "
                                           "09 04 00 00 02 07 01 02 00 "
                                           "07 05 01 02 40 00 00 07 05 82 02 40 00 00"));
  EXPECT_FALSE(usbDescriptor({.speed = UsbSpeed::Full}, 6, 0));
  EXPECT_FALSE(usbDescriptor({.speed = UsbSpeed::Full}, 7, 0));
}

std::string text(npa::Byte index) {
  const Bytes descriptor = usbDescriptor({}, 3, index).value_or(Bytes());
  EXPECT_GE(descriptor.size(), 2U);
  EXPECT_EQ(descriptor.at(0), descriptor.size());
  EXPECT_EQ(descriptor.at(1), 3);
  std::string result;
  for (std::size_t i = 2; i + 1 < descriptor.size(); i += 2) {
    EXPECT_EQ(descriptor[i + 1], 0);
    result += static_cast<char>(descriptor[i]);
  }
  return result;
}

TEST(UsbDescriptor, HasStringsInUtf16) {
  EXPECT_EQ(usbDescriptor({}, 3, 0), bytes("04 03 09 04"));
  EXPECT_EQ(text(1), "Emulated");
  EXPECT_EQ(text(2), "Printer with wireless adapter");
  EXPECT_EQ(usbDescriptor({}, 3, 3), bytes("0A 03 30 00 30 00 30 00 31 00"));
}

TEST(UsbDescriptor, IsAbsentIfTheDeviceHasNone) {
  EXPECT_FALSE(usbDescriptor({}, 3, 4));
  EXPECT_FALSE(usbDescriptor({}, 3, 0xEE));
  EXPECT_FALSE(usbDescriptor({}, 1, 1));
  EXPECT_FALSE(usbDescriptor({}, 2, 1));
  EXPECT_FALSE(usbDescriptor({}, 0, 0));
  EXPECT_FALSE(usbDescriptor({}, 4, 0));
  EXPECT_FALSE(usbDescriptor({}, 0x0F, 0));
}

TEST(DeviceId, BeginsWithItsLength) {
  const std::string expected =
      "MFG:Emulated;CMD:NPA;MDL:Printer with wireless adapter;CLS:PRINTER;SN:0001;";
  EXPECT_EQ(emulator::deviceId({}),
            support::joined({bytes("00 4D"), support::textBytes(expected)}));
}

TEST(DeviceId, ContainsTheSerialNumber) {
  const Bytes id = emulator::deviceId({.serial = "X-1"});
  EXPECT_TRUE(std::string(id.begin(), id.end()).ends_with(";SN:X-1;"));
  EXPECT_EQ(usbDescriptor({.serial = "X-1"}, 3, 3), bytes("08 03 58 00 2D 00 31 00"));
}

}  // namespace
