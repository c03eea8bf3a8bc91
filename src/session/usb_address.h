#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "session/machine.h"

namespace session {

/// The numbers by which lsusb names a device.
struct UsbAddress {
  int bus;
  int device;
  auto operator<=>(const UsbAddress&) const = default;

  /// Reads "BUS:DEVICE". Leading zeros are allowed. Returns nothing for any other text.
  [[nodiscard]] static std::optional<UsbAddress> parse(std::string_view text);

  /// Returns "BUS:DEVICE" without leading zeros.
  [[nodiscard]] std::string text() const;
  /// Returns the device file through which libusb reaches the device.
  [[nodiscard]] std::string node(const Machine& machine) const;
};

}  // namespace session
