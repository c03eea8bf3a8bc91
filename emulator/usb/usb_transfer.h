#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "catalogue/packet_reader.h"
#include "emulator/usb/usb_traits.h"

namespace emulator {

/// A request on the control endpoint (USB 2.0, section 9.3). On the bus its numbers are
/// little-endian.
struct UsbSetup {
  npa::Byte type = 0;
  npa::Byte request = 0;
  std::uint16_t value = 0;
  std::uint16_t index = 0;
  std::uint16_t length = 0;
};

/// The statuses of ended transfers: negative error numbers of Linux, which USB/IP uses on all
/// systems.
inline constexpr std::int32_t UsbDone = 0;
inline constexpr std::int32_t UsbStalled = -32;        ///< EPIPE
inline constexpr std::int32_t UsbProtocolFault = -71;  ///< EPROTO
inline constexpr std::int32_t UsbTooMuch = -75;        ///< EOVERFLOW: a packet did not fit
inline constexpr std::int32_t UsbUnlinked = -104;      ///< ECONNRESET
inline constexpr std::int32_t UsbShort = -121;         ///< EREMOTEIO: fewer bytes than required

/// A transfer that a host has submitted.
struct UsbTransfer {
  std::uint32_t id = 0;  ///< the number that the host gave to the transfer
  std::uint32_t endpoint = 0;
  UsbDirection direction = UsbDirection::Out;
  UsbSetup setup{};
  std::size_t length = 0;   ///< the size of the host's buffer in bytes
  npa::Bytes data{};        ///< OUT: `length` bytes. IN: the bytes so far
  bool mustBeFull = false;  ///< IN: fewer than `length` bytes are an error
  std::size_t done = 0;     ///< bytes transferred so far
};

/// A transfer that has ended.
struct UsbCompletion {
  std::uint32_t id = 0;
  std::int32_t status = UsbDone;
  std::size_t done = 0;
  npa::Bytes data{};  ///< IN: `done` bytes
};

}  // namespace emulator
