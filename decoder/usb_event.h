#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "npa/packet.h"

namespace decoder {

/// An event of a bulk transfer, as usbmon captures it.
struct UsbEvent {
  enum class Kind { Submit, Complete, Error };

  Kind kind = Kind::Submit;
  std::uint64_t transfer = 0;  ///< the id; submission and completion have the same id
  std::uint16_t bus = 0;
  std::uint8_t device = 0;
  std::uint8_t endpoint = 0;        ///< bit 7 is set for transfers to the host
  std::size_t length = 0;           ///< Submit: the buffer's size. Others: bytes transferred
  std::span<const npa::Byte> data;  ///< the captured bytes; there may be fewer than `length`

  bool toHost() const { return (endpoint & 0x80U) != 0; }
  std::string deviceName() const { return std::to_string(bus) + ":" + std::to_string(device); }
};

/// Parses a frame of a capture. The usbmon header of the frame has `headerSize` bytes (48 or 64),
/// in the byte order of this machine. Returns nothing if the frame is too short or is not an event
/// of a bulk transfer. The data of the event points into `frame`.
std::optional<UsbEvent> readUsbEvent(std::span<const npa::Byte> frame, std::size_t headerSize);

}  // namespace decoder
