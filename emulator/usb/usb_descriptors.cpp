// Builds the descriptors byte by byte, in the order of the tables in USB 2.0, section 9.6.

#include "emulator/usb/usb_descriptors.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "npa/packet.h"

namespace emulator {

namespace {

using npa::Byte;

// The largest packets in bytes, and the releases of USB in binary-coded decimal.
constexpr std::size_t FullSpeedPacket = 64;
constexpr std::size_t HighSpeedPacket = 512;
constexpr Byte ControlPacket = 64;
constexpr unsigned Usb11 = 0x0110;
constexpr unsigned Usb20 = 0x0200;

// The protocols of the printer class 1.1. The index is the alternate setting.
constexpr Byte ProtocolUnidirectional = 1;
constexpr Byte ProtocolBidirectional = 2;
constexpr std::array<Byte, LargestAlternateCount> Protocols = {ProtocolUnidirectional,
                                                               ProtocolBidirectional, 3, 0xFF};

constexpr Byte StringMaker = 1;
constexpr Byte StringProduct = 2;
constexpr Byte StringSerial = 3;
constexpr std::string_view Maker = "Emulated";
constexpr std::string_view Product = "Printer with wireless adapter";
constexpr Byte NoString = 0;
constexpr unsigned EnglishUs = 0x0409;

constexpr Byte BulkTransfers = 2;
// Attributes of the configuration. The power is in units of 2 mA.
constexpr Byte SelfPowered = 0xC0;
constexpr Byte TwoMilliampere = 1;

/// Returns a descriptor: its length, which includes the length byte itself, and `rest`.
npa::Bytes withLength(std::initializer_list<Byte> rest) {
  npa::Bytes bytes(rest.size() + 1);
  bytes[0] = static_cast<Byte>(bytes.size());
  std::ranges::copy(rest, bytes.begin() + 1);
  return bytes;
}

void append(npa::Bytes& bytes, const npa::Bytes& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
}

unsigned release(UsbSpeed speed) {
  return speed == UsbSpeed::High ? Usb20 : Usb11;
}

/// Returns the device descriptor (USB 2.0, table 9-8).
npa::Bytes deviceDescriptor(UsbSpeed speed) {
  return withLength({DescriptorDevice, npa::lowByte(release(speed)), npa::highByte(release(speed)),
                     0, 0, 0, ControlPacket, npa::lowByte(UsbVendor), npa::highByte(UsbVendor),
                     npa::lowByte(UsbProduct), npa::highByte(UsbProduct), npa::lowByte(UsbRelease),
                     npa::highByte(UsbRelease), StringMaker, StringProduct, StringSerial, 1});
}

/// Returns the device qualifier (USB 2.0, table 9-9). It describes the device at the other speed.
npa::Bytes qualifier() {
  return withLength({DescriptorQualifier, npa::lowByte(Usb20), npa::highByte(Usb20), 0, 0, 0,
                     ControlPacket, 1, 0});
}

/// Returns an endpoint descriptor (USB 2.0, table 9-13).
npa::Bytes endpointDescriptor(Byte address, std::size_t packet) {
  return withLength(
      {DescriptorEndpoint, address, BulkTransfers, npa::lowByte(packet), npa::highByte(packet), 0});
}

/// Returns a configuration (USB 2.0, table 9-10) with its interface, alternate settings and
/// endpoints.
npa::Bytes configuration(const UsbTraits& traits, Byte type, UsbSpeed speed) {
  constexpr std::size_t headSize = 9;
  npa::Bytes all(headSize);
  for (std::size_t alternate = 0; alternate < traits.alternates; ++alternate) {
    const bool isTwoWay = hasInEndpoint(traits, alternate);
    append(all, withLength({DescriptorInterface, 0, npa::lowByte(alternate),
                            static_cast<Byte>(isTwoWay ? 2 : 1), UsbPrinterClass,
                            UsbPrinterSubclass, interfaceProtocol(traits, alternate), NoString}));
    append(all, endpointDescriptor(EndpointOut, bulkPacketSize(speed)));
    if (isTwoWay) {
      append(all, endpointDescriptor(EndpointIn, bulkPacketSize(speed)));
    }
  }
  const npa::Bytes head =
      withLength({type, npa::lowByte(all.size()), npa::highByte(all.size()), 1,
                  UsbConfigurationValue, NoString, SelfPowered, TwoMilliampere});
  std::ranges::copy(head, all.begin());
  return all;
}

/// Returns a string descriptor (USB 2.0, tables 9-15 and 9-16), or nothing for an unknown index.
std::optional<npa::Bytes> stringDescriptor(const UsbTraits& traits, Byte index) {
  if (index == 0) {
    return withLength({DescriptorString, npa::lowByte(EnglishUs), npa::highByte(EnglishUs)});
  }
  // The strings from index 1 on.
  const std::array<std::string_view, StringSerial> strings = {Maker, Product, traits.serial};
  if (index > strings.size()) {
    return std::nullopt;
  }
  const std::string_view text = strings.at(index - 1U);
  // The characters are UTF-16, low byte first. The texts are ASCII, so the high bytes are 0.
  npa::Bytes bytes = {static_cast<Byte>(2 + 2 * text.size()), DescriptorString};
  for (const char c : text) {
    bytes.push_back(static_cast<Byte>(c));
    bytes.push_back(0);
  }
  return bytes;
}

}  // namespace

std::size_t bulkPacketSize(UsbSpeed speed) {
  return speed == UsbSpeed::High ? HighSpeedPacket : FullSpeedPacket;
}

Byte interfaceProtocol(const UsbTraits& traits, std::size_t alternate) {
  return traits.alternates == 1 ? ProtocolBidirectional : Protocols.at(alternate);
}

bool hasInEndpoint(const UsbTraits& traits, std::size_t alternate) {
  return interfaceProtocol(traits, alternate) != ProtocolUnidirectional;
}

std::optional<npa::Bytes> usbDescriptor(const UsbTraits& traits, Byte type, Byte index) {
  if (type == DescriptorString) {
    return stringDescriptor(traits, index);
  }
  if (index != 0) {
    return std::nullopt;
  }
  const bool knowsBothSpeeds = traits.speed == UsbSpeed::High;
  if (type == DescriptorDevice) {
    return deviceDescriptor(traits.speed);
  }
  if (type == DescriptorConfiguration) {
    return configuration(traits, type, traits.speed);
  }
  if (type == DescriptorQualifier && knowsBothSpeeds) {
    return qualifier();
  }
  if (type == DescriptorOtherSpeed && knowsBothSpeeds) {
    return configuration(traits, type, UsbSpeed::Full);
  }
  return std::nullopt;
}

npa::Bytes deviceId(const UsbTraits& traits) {
  std::string text;
  text.append("MFG:").append(Maker).append(";CMD:NPA;MDL:").append(Product);
  text.append(";CLS:PRINTER;SN:").append(traits.serial).append(";");
  const std::size_t size = 2 + text.size();
  npa::Bytes id = {npa::highByte(size), npa::lowByte(size)};
  std::ranges::copy(text, std::back_inserter(id));
  return id;
}

}  // namespace emulator
