#pragma once

#include <cstddef>

struct usb_device;

/// A libusb 0.1 with one printer, which sends back what is written to it. Unlike the double of the
/// other tests it may be called by several threads at once.
namespace loopback_libusb {

inline constexpr int Bus = 1;
inline constexpr int Device = 2;
inline constexpr int PacketSize = 64;

/// Bytes that were written and not read yet.
std::size_t waiting();

}  // namespace loopback_libusb
