#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace emulator {

/// The speed of the bus: full (12 Mbit/s) or high (480 Mbit/s).
enum class UsbSpeed { Full, High };

/// The direction from the host's point of view: Out is from the host to the printer.
enum class UsbDirection { Out, In };

/// A fault of the transfers in one direction. It starts after `afterBytes` bytes in this direction.
struct UsbFault {
  enum class Kind {
    Stall,          ///< the endpoint is halted until the host clears the halt
    ProtocolError,  ///< every transfer fails
    Hold,           ///< no transfer ends
    Unplug,         ///< the printer is unplugged
  };

  Kind kind;
  UsbDirection direction;
  std::size_t afterBytes = 0;
};

inline constexpr std::size_t LargestAlternateCount = 4;
inline constexpr std::size_t LongestSerial = 64;

/// The properties and faults of an emulated printer as a USB device:
///
///     UsbTraits{.speed = UsbSpeed::Full,
///               .faults = {{UsbFault::Kind::Stall, UsbDirection::In, 64}}}
struct UsbTraits {
  UsbSpeed speed = UsbSpeed::High;
  /// The count of alternate settings of the interface, 1 to `LargestAlternateCount`.
  std::size_t alternates = 1;
  /// The faults. They end when the printer is unplugged.
  std::vector<UsbFault> faults{};
  /// The count of bytes per second that the printer accepts; 0 means no limit.
  std::size_t outBytesPerSecond = 0;
  /// The time from an `Unplug` fault until the printer is plugged in again. If this is empty, the
  /// printer stays unplugged.
  std::optional<std::chrono::seconds> replugAfter{};
  /// The serial number, at most `LongestSerial` printable ASCII characters other than a blank
  /// and ";".
  std::string serial = "0001";
};

}  // namespace emulator
