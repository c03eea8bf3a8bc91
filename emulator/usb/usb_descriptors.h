#pragma once

#include <cstddef>
#include <optional>

#include "catalogue/packet_reader.h"
#include "emulator/usb/usb_traits.h"

/// What the printer tells about itself as a USB device (USB 2.0, chapter 9; the printer class 1.1).
/// Multi-byte numbers are little-endian, but for the length of the device ID.
namespace emulator {

/// Descriptor types.
inline constexpr npa::Byte DescriptorDevice = 1;
inline constexpr npa::Byte DescriptorConfiguration = 2;
inline constexpr npa::Byte DescriptorString = 3;
inline constexpr npa::Byte DescriptorInterface = 4;
inline constexpr npa::Byte DescriptorEndpoint = 5;
inline constexpr npa::Byte DescriptorQualifier = 6;
inline constexpr npa::Byte DescriptorOtherSpeed = 7;

/// A number that is given to test devices, so it is no maker's.
inline constexpr unsigned UsbVendor = 0x1209;
inline constexpr unsigned UsbProduct = 0x0001;
inline constexpr unsigned UsbRelease = 0x0100;

inline constexpr npa::Byte UsbConfigurationValue = 1;
inline constexpr npa::Byte UsbPrinterClass = 7;
inline constexpr npa::Byte UsbPrinterSubclass = 1;

/// Endpoint addresses.
inline constexpr npa::Byte EndpointOut = 0x01;
inline constexpr npa::Byte EndpointIn = 0x82;
inline constexpr npa::Byte EndpointDirectionIn = 0x80;

/// The size of a bulk packet in bytes.
std::size_t bulkPacketSize(UsbSpeed speed);

/// The interface protocol of an alternate setting. With one setting it is bidirectional (2); with
/// several they are unidirectional (1), bidirectional (2), IEEE 1284.4 (3), of the vendor's own.
npa::Byte interfaceProtocol(const UsbTraits& traits, std::size_t alternate);

/// Whether an alternate setting has the bulk IN endpoint; all have the bulk OUT endpoint.
bool hasInEndpoint(const UsbTraits& traits, std::size_t alternate);

/// A descriptor, whole; nothing for one that the device does not have. The device qualifier and
/// the other-speed configuration are for devices that know both speeds, so only at high speed.
std::optional<npa::Bytes> usbDescriptor(const UsbTraits& traits, npa::Byte type, npa::Byte index);

/// The IEEE 1284 device ID behind its length of two bytes, high byte first, which counts itself.
npa::Bytes deviceId();

}  // namespace emulator
