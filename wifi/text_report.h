#pragma once

#include <span>
#include <string>

#include "session/profile.h"
#include "session/session.h"

namespace wifi {

/// Returns a line for each printer: device, address, make and model, serial number, state.
[[nodiscard]] std::string listText(std::span<const session::Printer> printers);

/// Returns what the adapter reports, one line for each value.
[[nodiscard]] std::string statusText(const session::Report& report);

/// A label, translated, and its value.
struct LabelledValue {
  const char* label;
  std::string value;
};

/// Returns a line for each value. The values are aligned in a column.
[[nodiscard]] std::string labelledText(std::span<const LabelledValue> values);

/// Returns a sentence about a `set` that succeeded.
[[nodiscard]] std::string setText(const session::Report& report);

/// Returns an address in decimal, such as "192.168.1.20".
[[nodiscard]] std::string addressText(const npa::Address& address);

}  // namespace wifi
