#pragma once

#include <string>

namespace session {

/// The folders in which this machine shows its devices and processes. Tests set folders with
/// recorded files.
struct Machine {
  std::string sysfs = "/sys";
  std::string devices = "/dev";
  std::string processes = "/proc";
};

}  // namespace session
