#pragma once

#include <string>
#include <vector>

#include "emulator/run/options.h"

namespace emulator {

/// Parses the arguments after the program's name. Throws `catalogue::UsageError` if they are
/// invalid.
Options parseOptions(const std::vector<std::string>& arguments);

/// Returns the help text.
std::string helpText();

}  // namespace emulator
