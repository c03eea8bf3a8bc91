#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace emulator {

/// The speed of the bus: full (12 Mbit/s) or high (480 Mbit/s).
enum class UsbSpeed { Full, High };

/// The direction as the host names it: Out is from the host to the printer.
enum class UsbDirection { Out, In };

/// A fault of the transfers in one direction. It starts after `afterBytes` bytes.
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

/// The properties and faults of an emulated printer as a USB device:
///
///     UsbTraits{.speed = UsbSpeed::Full,
///               .faults = {{UsbFault::Kind::Stall, UsbDirection::In, 64}}}
struct UsbTraits {
  UsbSpeed speed = UsbSpeed::High;
  /// The count of alternate settings of the interface, 1 to `LargestAlternateCount`.
  std::size_t alternates = 1;
  /// The faults. They do not return after the printer is plugged in again.
  std::vector<UsbFault> faults{};
  /// How fast the printer accepts bytes; 0 means immediately.
  std::size_t outBytesPerSecond = 0;
  /// How long after an `Unplug` fault the printer is plugged in again. If this is empty, it stays
  /// unplugged.
  std::optional<std::chrono::seconds> replugAfter{};
};

}  // namespace emulator
