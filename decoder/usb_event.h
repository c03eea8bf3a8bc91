#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "npa/packet.h"

namespace decoder {

/// One event of usbmon's that has to do with a bulk transfer.
struct UsbEvent {
  enum class Kind { Submit, Complete, Error };

  Kind kind = Kind::Submit;
  std::uint64_t transfer = 0;  ///< the same for submission and completion
  std::uint16_t bus = 0;
  std::uint8_t device = 0;
  std::uint8_t endpoint = 0;        ///< bit 7: to the host
  std::size_t length = 0;           ///< submitted: wanted, completed: gone through
  std::span<const npa::Byte> data;  ///< as much of it as was captured

  bool toHost() const { return (endpoint & 0x80U) != 0; }
  std::string deviceName() const { return std::to_string(bus) + ":" + std::to_string(device); }
};

/// Reads a record of a capture, whose usbmon header has `headerSize` bytes (48 or 64), in the
/// host's byte order. Nothing when it is no bulk transfer's, or too short for its header. The data
/// stays in `record`.
std::optional<UsbEvent> readUsbEvent(std::span<const npa::Byte> record, std::size_t headerSize);

}  // namespace decoder
