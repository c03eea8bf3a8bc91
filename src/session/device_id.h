#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace session {

/// The names that a printer reports. A name that the printer leaves out has no value.
struct DeviceId {
  std::optional<std::string> make;
  std::optional<std::string> model;
  std::optional<std::string> serial;
};

/// Reads an IEEE 1284 device ID: "MFG:Acme;MDL:L100;SN:X12;". The text may start with its length in
/// two bytes, may be cut, and may contain any bytes. Control bytes are removed from the values. If
/// a name has several values, the first one counts. Keys may be in upper or lower case.
[[nodiscard]] DeviceId parseDeviceId(std::string_view text);

}  // namespace session
