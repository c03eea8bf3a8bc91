#pragma once

#include <string>

namespace session {

/// Where this machine shows its devices and processes. Tests name folders with recorded files.
struct Machine {
  std::string sysfs = "/sys";
  std::string devices = "/dev";
  std::string processes = "/proc";
};

}  // namespace session
