#pragma once

#include <cstddef>

struct usb_device;

/// A double of libusb 0.1 with one printer, which sends back the bytes that are written to it.
/// Unlike testing/fake_libusb.h, several threads may call it at the same time.
namespace loopback_libusb {

inline constexpr int Bus = 1;
inline constexpr int Device = 2;
inline constexpr int PacketSize = 64;

/// Returns how many written bytes have not been read yet.
std::size_t waiting();

}  // namespace loopback_libusb
