#pragma once

#include <cstddef>
#include <optional>

#include "catalogue/packet_reader.h"
#include "emulator/usb/usb_traits.h"

/// The printer's descriptions of itself as a USB device (USB 2.0, chapter 9; USB printer
/// class 1.1). Numbers of several bytes are little-endian, except the length of the device ID.
namespace emulator {

/// Descriptor types.
inline constexpr npa::Byte DescriptorDevice = 1;
inline constexpr npa::Byte DescriptorConfiguration = 2;
inline constexpr npa::Byte DescriptorString = 3;
inline constexpr npa::Byte DescriptorInterface = 4;
inline constexpr npa::Byte DescriptorEndpoint = 5;
inline constexpr npa::Byte DescriptorQualifier = 6;
inline constexpr npa::Byte DescriptorOtherSpeed = 7;

/// A vendor and product number for test devices. They belong to no manufacturer.
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

/// Returns the size of the largest bulk packet in bytes.
std::size_t bulkPacketSize(UsbSpeed speed);

/// Returns the interface protocol of an alternate setting. A single alternate setting is
/// bidirectional (2). Several alternate settings are, in this order, unidirectional (1),
/// bidirectional (2), IEEE 1284.4 (3) and vendor-specific (255).
npa::Byte interfaceProtocol(const UsbTraits& traits, std::size_t alternate);

/// Returns true if an alternate setting has the bulk IN endpoint. All alternate settings have the
/// bulk OUT endpoint.
bool hasInEndpoint(const UsbTraits& traits, std::size_t alternate);

/// Returns a complete descriptor, or nothing if the device does not have it. Only a high-speed
/// device has a device qualifier and an other-speed configuration, because only such a device
/// supports both speeds.
std::optional<npa::Bytes> usbDescriptor(const UsbTraits& traits, npa::Byte type, npa::Byte index);

/// Returns the IEEE 1284 device ID: a length of two bytes, high byte first, and the text. The
/// length includes its own two bytes.
npa::Bytes deviceId(const UsbTraits& traits);

}  // namespace emulator
