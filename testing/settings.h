#pragma once

#include <string>
#include <utility>
#include <vector>

#include "settings/config_details.h"

namespace support {

/// Returns the settings of a command line with these options.
inline configDetails settings(std::vector<std::string> options) {
  options.insert(options.begin(), "zvkconfig");
  const int count = static_cast<int>(options.size());
  configDetails result;
  result.parseParm(count, std::move(options));
  return result;
}

}  // namespace support
