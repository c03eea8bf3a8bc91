#pragma once

#include <span>
#include <string>
#include <string_view>

#include "emulator/run/options.h"

namespace emulator {

/// One option: what it does with its value, which is empty for a switch.
struct Option {
  std::string_view name;
  std::string_view valueName;  ///< of the value; empty for a switch
  std::string_view help;
  void (*apply)(Options& options, const std::string& value);
};

/// How the printer answers.
std::span<const Option> personalityOptions();
/// How it behaves as a USB device, and where.
std::span<const Option> usbOptions();
/// What else there is.
std::span<const Option> generalOptions();

/// The option of that name, or null.
const Option* findOption(std::string_view name);

}  // namespace emulator
