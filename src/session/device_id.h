#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace session {

/// The names that a printer reports. A part that it leaves out is empty.
struct DeviceId {
  std::optional<std::string> make;
  std::optional<std::string> model;
  std::optional<std::string> serial;
};

/// Reads an IEEE 1284 device ID: "MFG:Acme;MDL:L100;SN:X12;". The text may start with the two bytes
/// of its length, may be cut, and may contain anything; the values have no control bytes. The first
/// of several values counts. Keys may have any case.
[[nodiscard]] DeviceId parseDeviceId(std::string_view text);

}  // namespace session
