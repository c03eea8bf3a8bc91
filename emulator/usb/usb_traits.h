#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace emulator {

enum class UsbSpeed { Full, High };

/// As the host sees it.
enum class UsbDirection { Out, In };

/// What goes wrong with the transfers of one direction once so many bytes have gone through.
struct UsbFault {
  enum class Kind {
    Stall,          ///< the endpoint is halted, until the host clears that
    ProtocolError,  ///< each transfer fails
    Hold,           ///< no transfer is completed
    Unplug,         ///< the printer is gone
  };

  Kind kind;
  UsbDirection direction;
  std::size_t afterBytes = 0;
};

inline constexpr std::size_t LargestAlternateCount = 4;

/// How an emulated printer looks and behaves as a USB device.
struct UsbTraits {
  UsbSpeed speed = UsbSpeed::High;
  /// How many alternate settings the interface has, 1 to `LargestAlternateCount`.
  std::size_t alternates = 1;
  /// They are over when the printer is plugged in again.
  std::vector<UsbFault> faults{};
  /// How fast the printer takes bytes; 0 for at once.
  std::size_t outBytesPerSecond = 0;
  /// How long after an unplug of its own the printer is plugged in again; without it, not.
  std::optional<std::chrono::seconds> replugAfter{};
};

}  // namespace emulator
