#pragma once

#include <string>
#include <vector>

#include "emulator/run/options.h"

namespace emulator {

/// Reads the arguments after the program's name; throws `catalogue::UsageError`.
Options parseOptions(const std::vector<std::string>& arguments);

/// The help text.
std::string helpText();

}  // namespace emulator
